// The machine snapshot of an event log: its two frames, the six numbered
// sections in both calls, and the computer report at -start only.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kRule(94, '*');
const std::string kBlankFrameLine = "*" + std::string(93, ' ');

// The lines of a hand-written expected log in tests/golden/eventlog.
Strings GoldenLines(const std::string& name)
{
    std::ifstream in(std::string(ZOR_GOLDEN_DIR) + "/eventlog/" + name, std::ios::binary);
    Strings lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::size_t IndexOf(const Strings& lines, const std::string& line, std::size_t from = 0)
{
    const auto found = std::find(lines.begin() + from, lines.end(), line);
    return static_cast<std::size_t>(found - lines.begin());
}

// The section headings of a log, in order.
Strings SectionHeadings(const Strings& log)
{
    Strings headings;
    for (const std::string& line : log) {
        if (line.size() > 2 && line[0] >= '1' && line[0] <= '9' && line[1] == ')')
            headings.push_back(line);
    }
    return headings;
}

const Strings kSixHeadings = {
    "1) User Group & User Information:", "2) Software Installed on the machine:",
    "3) Current Running Processes:",     "4) Services & Service Status:",
    "5) ZOR Products Installed:",        "6) ZOR ODBC Driver Info:"};

class Snapshot : public RecorderTest {
protected:
    // The scripted machine answers no call but the processor's, which always
    // answers; the version call refuses both sizes of its structure.
    void SetUp() override
    {
        machine.Machine().acceptsExtendedVersion = false;
        machine.Machine().acceptsVersion = false;
    }
};

TEST_F(Snapshot, StartOnAMachineWhereEveryCallFailsGivesTheWholeFrameAndEmptyReports)
{
    Record({"-start", "E1", "-Product", "ZOR Server", "-ServiceLevel", "SL1", "-Action",
            "Install"});
    ExpectLinesMatch(FileLines(EventLog("E1")), GoldenLines("every_call_fails.start.txt"));
}

TEST_F(Snapshot, EndWritesTheSnapshotAfterTheInstallBetweenLogAndResultBlock)
{
    Record({"-start", "E1", "-Product", "ZOR Server", "-ServiceLevel", "SL1", "-Action",
            "Install"});
    Record({"-end", "E1"});
    const Strings log = FileLines(EventLog("E1"));
    const Strings start = GoldenLines("every_call_fails.start.txt");
    const Strings after = GoldenLines("every_call_fails.end-snapshot.txt");
    ExpectLinesMatch(LinesAt(log, start.size(), after.size()), after);
    EXPECT_EQ(log.at(start.size() + after.size() + 4), "Result of Install:");
}

TEST_F(Snapshot, StartFrameHasFourLinesAndEndFrameFive)
{
    Record({"-start", "x", "-Action", "Upgrade"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    const std::size_t before = IndexOf(log, "*  Snapshoot for EventID: x -- Before Upgrade Starts ");
    ASSERT_LT(before, log.size());
    EXPECT_EQ(LinesAt(log, before - 1, 4),
              (Strings{kRule, "*  Snapshoot for EventID: x -- Before Upgrade Starts ",
                       kBlankFrameLine, kRule}));
    const std::size_t after = IndexOf(log, "*  Snapshoot for EventID: x -- After Upgrade Completed ");
    ASSERT_LT(after, log.size());
    EXPECT_EQ(LinesAt(log, after - 2, 5),
              (Strings{kRule, kBlankFrameLine,
                       "*  Snapshoot for EventID: x -- After Upgrade Completed ", kBlankFrameLine,
                       kRule}));
    EXPECT_EQ(log.at(after + 3), "");
    EXPECT_EQ(log.at(after + 4), "1) User Group & User Information:");
}

TEST_F(Snapshot, ClosingLinesDifferBetweenStartAndEnd)
{
    Record({"-start", "x", "-Action", "Upgrade"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    const std::size_t before = IndexOf(log, "* End of Snapshoot for EventID: x Before Upgrade Starts  ");
    ASSERT_LT(before, log.size());
    EXPECT_EQ(log.at(before - 1), kRule);
    EXPECT_EQ(log.at(before + 1), kRule);
    const std::size_t after =
        IndexOf(log, "*End of Snapshoot for EventID: x -- After Upgrade Completed ");
    ASSERT_LT(after, log.size());
    EXPECT_EQ(log.at(after - 1), kRule);
    EXPECT_EQ(log.at(after + 1), kRule);
}

TEST_F(Snapshot, EndWithEmptyStoredActionHasTwoBlanksInItsTitle)
{
    Record({"-start", "x"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    EXPECT_LT(IndexOf(log, "*  Snapshoot for EventID: x -- After  Completed "), log.size());
    EXPECT_LT(IndexOf(log, "*End of Snapshoot for EventID: x -- After  Completed "), log.size());
}

TEST_F(Snapshot, EndTitleShowsTheActionStoredAtStart)
{
    Record({"-start", "x", "-Action", "Repair"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    EXPECT_LT(IndexOf(log, "*  Snapshoot for EventID: x -- After Repair Completed "), log.size());
}

TEST_F(Snapshot, SectionsAreNumberedOneToSixInBothSnapshots)
{
    Record({"-start", "x"});
    Record({"-end", "x"});
    Strings twice = kSixHeadings;
    twice.insert(twice.end(), kSixHeadings.begin(), kSixHeadings.end());
    EXPECT_EQ(SectionHeadings(FileLines(EventLog("x"))), twice);
}

TEST_F(Snapshot, EndWithoutStartStillNumbersItsSectionsFromOne)
{
    MakeFolders(EventFolder("x"));
    Record({"-end", "x"});
    EXPECT_EQ(SectionHeadings(FileLines(EventLog("x"))), kSixHeadings);
}

TEST_F(Snapshot, ComputerIsReportedAtStartOnly)
{
    Record({"-start", "x"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    EXPECT_EQ(std::count(log.begin(), log.end(), "System Information: "), 1);
    EXPECT_LT(IndexOf(log, "System Information: "),
              IndexOf(log, "*  Snapshoot for EventID: x -- Before  Starts "));
}

TEST_F(Snapshot, MessagesStandBetweenTheTwoSnapshots)
{
    Record({"-start", "x"});
    Record({"-logmessage", "x", "-message", "copying files"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    const std::size_t message = IndexOf(log, "copying files");
    EXPECT_EQ(message, IndexOf(log, "* End of Snapshoot for EventID: x Before  Starts  ") + 2);
    EXPECT_EQ(log.at(message + 1), kRule);
    EXPECT_EQ(log.at(message + 2), kBlankFrameLine);
}

TEST_F(Snapshot, EndWithoutEventFolderLeavesNoLog)
{
    Record({"-logmessage", "x", "-message", "lost"});
    Record({"-end", "x"});
    EXPECT_FALSE(PathExists(EventLog("x")));
}

}  // namespace
