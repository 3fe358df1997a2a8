#include <gtest/gtest.h>

#include "report/SnapshotComparison.h"

namespace {

std::vector<std::string> NamesOf(const std::vector<ListedItem>& items)
{
    std::vector<std::string> names;
    for (const ListedItem& item : items)
        names.push_back(item.name);
    return names;
}

SnapshotSection Section(std::initializer_list<std::pair<std::string, std::string>> items)
{
    SnapshotSection section;
    section.present = section.complete = true;
    for (const auto& item : items)
        section.Add(item.first, item.second);
    return section;
}

// The section, as the snapshot's own.
void Put(Snapshot& snapshot, SnapshotPart part, const SnapshotSection& section)
{
    snapshot.Set(part, std::make_shared<SnapshotSection>(section));
}

void PutInEverySection(Snapshot& snapshot, const SnapshotSection& section)
{
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i)
        Put(snapshot, static_cast<SnapshotPart>(i), section);
}

}  // namespace

TEST(SnapshotComparison, ThingsAddedRemovedAndChangedInTheOrderOfTheirNames)
{
    const SectionChanges changes = CompareSections(
        Section({{"b.exe", "1"}, {"a.exe", "2"}, {"gone.exe", "1"}, {"same.exe", "3"}}),
        Section({{"b.exe", "1"}, {"a.exe", "3"}, {"new2.exe", "1"}, {"new1.exe", "1"}, {"same.exe", "3"}}));
    EXPECT_EQ(NamesOf(changes.added), (std::vector<std::string>{"new1.exe", "new2.exe"}));
    EXPECT_EQ(NamesOf(changes.removed), (std::vector<std::string>{"gone.exe"}));
    ASSERT_EQ(changes.changed.size(), 1u);
    EXPECT_EQ(changes.changed[0].name, "a.exe");
    EXPECT_EQ(changes.changed[0].before, "2");
    EXPECT_EQ(changes.changed[0].after, "3");
    EXPECT_EQ(changes.Count(), 4u);
}

TEST(SnapshotComparison, AThingThatComesWithItsOwnerIsToldWithTheOwnerAlone)
{
    SnapshotSection before = Section({{"copy C1", ""}});
    before.Add("copy C1: instance A", "", "copy C1");
    SnapshotSection after = before;
    after.Mark("copy C2");
    after.Mark("copy C2: instance B", "copy C2");
    after.Add("copy C2: instance B: Port", "5000", "copy C2: instance B");
    after.Mark("copy C1: instance NEW", "copy C1");
    after.Add("copy C1: instance NEW: Port", "6000", "copy C1: instance NEW");
    after.Add("copy C1: instance A: Port", "7000", "copy C1: instance A");

    const SectionChanges added = CompareSections(before, after);
    EXPECT_EQ(NamesOf(added.added),
              (std::vector<std::string>{"copy C1: instance A: Port", "copy C1: instance NEW", "copy C2"}));
    const SectionChanges removed = CompareSections(after, before);
    EXPECT_EQ(NamesOf(removed.removed), NamesOf(added.added));
}

TEST(SnapshotComparison, ASectionCutOffOrMissingOnEitherSideIsNotCompared)
{
    Snapshot before;
    Snapshot after;
    before.present = after.present = true;
    PutInEverySection(before, Section({{"x", "1"}}));
    PutInEverySection(after, Section({{"x", "1"}}));
    SnapshotSection cutOff = Section({{"x", "1"}});
    cutOff.complete = false;
    Put(after, SnapshotPart::Services, cutOff);
    before.Set(SnapshotPart::ODBCDrivers, nullptr);

    const SnapshotChanges changes = CompareSnapshots(before, after);
    EXPECT_TRUE(changes[static_cast<std::size_t>(SnapshotPart::Users)].has_value());
    EXPECT_EQ(changes[static_cast<std::size_t>(SnapshotPart::Users)]->Count(), 0u);
    EXPECT_FALSE(changes[static_cast<std::size_t>(SnapshotPart::Services)].has_value());
    EXPECT_FALSE(changes[static_cast<std::size_t>(SnapshotPart::ODBCDrivers)].has_value());
}

TEST(SnapshotComparison, TwoRowsOfOneNameAreOneThingWithBothValues)
{
    const SnapshotSection section = Section({{"Tool", "1.0"}, {"Tool", "2.0"}});
    EXPECT_EQ(section.items.at("Tool").value, "1.0, 2.0");
}

TEST(SnapshotComparison, WhatComesOrGoesShowsItsValueAndWhatCameOrWentWithIt)
{
    SnapshotSection before = Section({{"ZOR Client", "9.0"}, {"Old Tool", "1.2"}});
    SnapshotSection after = Section({{"ZOR Client", "9.0"}});
    after.Mark("copy C2");
    after.Add("copy C2: product ZOR Server", "version 9.1.0", "copy C2");
    after.Mark("copy C2: instance B", "copy C2");
    after.Add("copy C2: instance B: Port", "5000", "copy C2: instance B");
    after.Mark("copy C20");

    const SectionChanges changes = CompareSections(before, after);
    ASSERT_EQ(changes.removed.size(), 1u);
    EXPECT_EQ(changes.removed[0].name, "Old Tool");
    EXPECT_EQ(changes.removed[0].value, "1.2");
    ASSERT_EQ(changes.added.size(), 2u);
    EXPECT_EQ(changes.added[0].name, "copy C2");
    std::vector<std::pair<std::string, std::string>> details;
    for (const ItemValue& detail : changes.added[0].details)
        details.emplace_back(detail.name, detail.value);
    EXPECT_EQ(details, (std::vector<std::pair<std::string, std::string>>{
                           {"instance B", ""}, {"instance B: Port", "5000"}, {"product ZOR Server", "version 9.1.0"}}));
    EXPECT_TRUE(changes.added[1].details.empty());
}

TEST(SnapshotComparison, OnLinuxAUserWhoJoinsOrLeavesGroupsIsAChangeOfGroups)
{
    // The Linux build lists a user only through the groups whose member lists
    // name them: joining a first group or leaving a last one shows a user
    // coming or going in the table.
    Snapshot before;
    Snapshot after;
    before.present = after.present = true;
    PutInEverySection(before, Section({}));
    PutInEverySection(after, Section({}));
    Put(before, SnapshotPart::Users, Section({{"user VM\\alice", "member of sudo"}, {"user VM\\carol", "member of adm"}}));
    Put(after, SnapshotPart::Users,
        Section({{"user VM\\alice", "member of docker, sudo"}, {"user VM\\bob", "member of docker"}}));
    before.usersByGroupsAlone = after.usersByGroupsAlone = true;

    const SectionChanges users = *CompareSnapshots(before, after)[0];
    EXPECT_TRUE(users.added.empty());
    EXPECT_TRUE(users.removed.empty());
    ASSERT_EQ(users.changed.size(), 3u);
    EXPECT_EQ(users.changed[0].name, "user VM\\alice");
    EXPECT_EQ(users.changed[0].before, "member of sudo");
    EXPECT_EQ(users.changed[0].after, "member of docker, sudo");
    EXPECT_EQ(users.changed[1].name, "user VM\\bob");
    EXPECT_EQ(users.changed[1].before, "in no group's member list");
    EXPECT_EQ(users.changed[1].after, "member of docker");
    EXPECT_EQ(users.changed[2].name, "user VM\\carol");
    EXPECT_EQ(users.changed[2].before, "member of adm");
    EXPECT_EQ(users.changed[2].after, "in no group's member list");

    before.usersByGroupsAlone = after.usersByGroupsAlone = false;
    const SectionChanges windowsUsers = *CompareSnapshots(before, after)[0];
    EXPECT_EQ(NamesOf(windowsUsers.added), std::vector<std::string>{"user VM\\bob"});
    EXPECT_EQ(windowsUsers.added[0].value, "member of docker");
    EXPECT_EQ(NamesOf(windowsUsers.removed), std::vector<std::string>{"user VM\\carol"});
}

TEST(SnapshotComparison, WhatOneSectionAndOneThingTellIsBoundedAndTheRestCounted)
{
    SnapshotSection before;
    before.present = before.complete = true;
    SnapshotSection after = before;
    for (std::size_t i = 0; i < kListLimit + 500; ++i) {
        const std::string name = "p" + std::to_string(100000 + i) + ".exe";
        after.Add(name, "1");
        before.Add("gone" + name, "1");
        before.Add("same" + name, "1");
        after.Add("same" + name, "2");
    }
    const std::string longName(kItemTextLimit + 976, 'n');
    after.Add(longName, std::string(kItemTextLimit + 24, 'v'));
    for (std::size_t i = 0; i < kDetailLimit + 50; ++i)
        after.Add(longName + ": detail " + std::to_string(1000 + i), "x", longName);
    const SectionChanges changes = CompareSections(before, after);
    ASSERT_EQ(changes.added.size(), kListLimit);
    EXPECT_EQ(changes.addedLeftOut, 501u);
    EXPECT_EQ(changes.removed.size(), kListLimit);
    EXPECT_EQ(changes.removedLeftOut, 500u);
    EXPECT_EQ(changes.changed.size(), kListLimit);
    EXPECT_EQ(changes.changedLeftOut, 500u);
    EXPECT_EQ(changes.Count(), 3 * (kListLimit + 500) + 1);
    // The long name sorts first among the added: "n" before "p".
    const ListedItem& bounded = changes.added[0];
    EXPECT_EQ(bounded.name, longName.substr(0, kItemTextLimit));
    EXPECT_EQ(bounded.value, std::string(kItemTextLimit, 'v'));
    EXPECT_EQ(bounded.details.size(), kDetailLimit);
    EXPECT_EQ(bounded.detailsLeftOut, 50u);
    EXPECT_EQ(bounded.bytesCut, 976u + 24u);
}
