// A section's things, in whatever order its rows name them, stand in the
// order of their names, each once, with the values of a name listed again
// joined in the order of its rows; a copy of a section, or one moved, keeps
// them whole after the section it came from is gone.
#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "report/Snapshot.h"

namespace {

// The things' names with their values, as the section holds them.
std::vector<std::pair<std::string, std::string>> Things(const SnapshotSection& section)
{
    std::vector<std::pair<std::string, std::string>> things;
    for (const auto& item : section.items)
        things.emplace_back(std::string(item.first), std::string(item.second.value));
    return things;
}

// Names added in the given order, each value its place among them: what the
// section should hold, by a plain map.
std::vector<std::pair<std::string, std::string>> Expected(const std::vector<std::string>& names)
{
    std::map<std::string, std::string> expected;
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto [at, added] = expected.emplace(names[i], std::to_string(i));
        if (!added)
            at->second += ", " + std::to_string(i);
    }
    return {expected.begin(), expected.end()};
}

SnapshotSection SectionOf(const std::vector<std::string>& names)
{
    SnapshotSection section;
    for (std::size_t i = 0; i < names.size(); ++i)
        section.Add(names[i], std::to_string(i));
    return section;
}

}  // namespace

TEST(SnapshotSectionTest, ThingsStandInTheOrderOfTheirNamesWhateverTheOrderOfTheRows)
{
    std::vector<std::string> names;
    for (int copy = 0; copy < 4; ++copy) {
        for (int instance = 0; instance < 8; ++instance) {
            for (int parameter = 0; parameter < 30; ++parameter)
                names.push_back("copy C" + std::to_string(copy) + ": instance I" + std::to_string(instance) +
                                ": P" + std::to_string(parameter));
        }
    }
    std::vector<std::vector<std::string>> orders = {names, {names.rbegin(), names.rend()}};
    std::mt19937 random(7);
    for (int shuffle = 0; shuffle < 3; ++shuffle) {
        std::vector<std::string> shuffled = names;
        // Some names listed twice, one after the other and far apart.
        shuffled.insert(shuffled.end(), names.begin(), names.begin() + 40);
        shuffled.insert(shuffled.begin() + 100, names[100]);
        std::shuffle(shuffled.begin() + shuffle * 300, shuffled.end(), random);
        orders.push_back(shuffled);
    }
    for (const std::vector<std::string>& order : orders)
        EXPECT_EQ(Things(SectionOf(order)), Expected(order));
}

TEST(SnapshotSectionTest, ACopyOrAMovedSectionKeepsItsThingsAfterTheOneItCameFromIsGone)
{
    const std::vector<std::string> names = {"b", "a", "c", "a", "d"};
    const auto expected = Expected(names);
    auto original = std::make_unique<SnapshotSection>(SectionOf(names));
    SnapshotSection copy(*original);
    SnapshotSection moved(std::move(*original));
    original.reset();
    EXPECT_EQ(Things(copy), expected);
    EXPECT_EQ(Things(moved), expected);

    // Things added to the copy are its own.
    copy.Add("e", "5");
    copy.Add("a", "6");
    EXPECT_EQ(Things(moved), expected);
    EXPECT_EQ(Things(copy), Expected({"b", "a", "c", "a", "d", "e", "a"}));

    // A section assigned another one, by copy or by move, holds that one's things.
    SnapshotSection assigned = SectionOf({"x"});
    assigned = copy;
    EXPECT_EQ(Things(assigned), Things(copy));
    assigned = SectionOf({"y", "z"});
    EXPECT_EQ(Things(assigned), Expected({"y", "z"}));
    assigned.Add("a", "2");
    EXPECT_EQ(Things(assigned), Expected({"y", "z", "a"}));
}

TEST(SnapshotSectionTest, AThingForgottenIsGoneAndTheRestStayInOrder)
{
    SnapshotSection section = SectionOf({"a", "b", "c"});
    section.Forget("b");
    section.Add("bb", "3");
    section.Add("b", "4");
    const std::vector<std::pair<std::string, std::string>> expected = {{"a", "0"}, {"b", "4"}, {"bb", "3"}, {"c", "2"}};
    EXPECT_EQ(Things(section), expected);
}

// A section moved from is empty and can be read into again, without the hint
// of the section it went to.
TEST(SnapshotSectionTest, ASectionMovedFromCanBeFilledAgain)
{
    SnapshotSection source = SectionOf({"a", "b"});
    SnapshotSection moved(std::move(source));
    source.items.clear();
    source.Add("c", "0");
    source.Add("d", "1");
    SnapshotSection assigned;
    assigned = std::move(source);
    source.items.clear();
    source.Add("e", "0");
    EXPECT_EQ(Things(moved), Expected({"a", "b"}));
    EXPECT_EQ(Things(assigned), Expected({"c", "d"}));
    EXPECT_EQ(Things(source), Expected({"e"}));
}
