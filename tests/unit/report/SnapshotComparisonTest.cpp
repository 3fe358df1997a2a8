#include <gtest/gtest.h>

#include "report/SnapshotComparison.h"

namespace {

SnapshotSection Section(std::initializer_list<std::pair<std::string, std::string>> items)
{
    SnapshotSection section;
    section.present = section.complete = true;
    for (const auto& item : items)
        section.Add(item.first, item.second);
    return section;
}

}  // namespace

TEST(SnapshotComparison, ThingsAddedRemovedAndChangedInTheOrderOfTheirNames)
{
    const SectionChanges changes = CompareSections(
        Section({{"b.exe", "1"}, {"a.exe", "2"}, {"gone.exe", "1"}, {"same.exe", "3"}}),
        Section({{"b.exe", "1"}, {"a.exe", "3"}, {"new2.exe", "1"}, {"new1.exe", "1"}, {"same.exe", "3"}}));
    EXPECT_EQ(changes.added, (std::vector<std::string>{"new1.exe", "new2.exe"}));
    EXPECT_EQ(changes.removed, (std::vector<std::string>{"gone.exe"}));
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
    EXPECT_EQ(added.added,
              (std::vector<std::string>{"copy C1: instance A: Port", "copy C1: instance NEW", "copy C2"}));
    const SectionChanges removed = CompareSections(after, before);
    EXPECT_EQ(removed.removed, added.added);
}

TEST(SnapshotComparison, ASectionCutOffOrMissingOnEitherSideIsNotCompared)
{
    Snapshot before;
    Snapshot after;
    before.present = after.present = true;
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i)
        before.sections[i] = after.sections[i] = Section({{"x", "1"}});
    after[SnapshotPart::Services].complete = false;
    before[SnapshotPart::ODBCDrivers] = SnapshotSection();

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
