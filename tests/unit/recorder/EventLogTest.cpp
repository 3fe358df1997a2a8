// The event log of an event: how each call opens it, the banners and the
// message lines.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kStartBanner = "---------- ZOR Installation History Logger ( Start )----------<time>";
const std::string kEndBanner = "---------- ZOR Installation History Logger ( End ) ----------<time>";

class EventLogFile : public RecorderTest {};

TEST_F(EventLogFile, StartBeginsLogWithBannerOfTheOptions)
{
    Record({"-start", "Install-42", "-Product", "ZOR Server 9 Build 17", "-ServiceLevel", "SL2",
            "-Command", "setup.exe -silent", "-Version", "9.0"});
    ExpectLinesMatch(LinesAt(FileLines(EventLog("Install-42")), 0, 5),
                     {kStartBanner, "EventID       :Install-42",
                      "Product       :ZOR Server 9 Build 17", "Service Level :SL2",
                      "CommandLine   :setup.exe -silent"});
}

TEST_F(EventLogFile, StartBannerWithEmptyValuesLeavesLabelsAlone)
{
    Record({"-start", "x"});
    ExpectLinesMatch(LinesAt(FileLines(EventLog("x")), 0, 5),
                     {kStartBanner, "EventID       :x", "Product       :", "Service Level :",
                      "CommandLine   :"});
}

TEST_F(EventLogFile, StartReplacesExistingLog)
{
    MakeFolders(EventFolder("x"));
    WriteWholeFile(EventLog("x"), "an earlier log\n");
    Record({"-start", "x"});
    const Strings log = FileLines(EventLog("x"));
    ASSERT_FALSE(log.empty());
    ExpectLinesMatch({log[0]}, {kStartBanner});
    for (const std::string& line : log)
        EXPECT_NE(line, "an earlier log");
}

TEST_F(EventLogFile, LogMessageAddsItsMessageAsOneLine)
{
    Record({"-start", "x"});
    const std::string before = ReadWholeFile(EventLog("x"));
    Record({"-logmessage", "x", "-message", "Copying files to C:\\ZOR"});
    Record({"-logmessage", "x", "-message", "  second message  "});
    EXPECT_EQ(ReadWholeFile(EventLog("x")),
              before + TextLines({"Copying files to C:\\ZOR", "  second message  "}));
}

TEST_F(EventLogFile, LogMessageWithoutMessageAddsEmptyLine)
{
    Record({"-start", "x"});
    const std::string before = ReadWholeFile(EventLog("x"));
    EXPECT_EQ(Record({"-logmessage", "x"}), 0);
    EXPECT_EQ(ReadWholeFile(EventLog("x")), before + TextLines({""}));
}

TEST_F(EventLogFile, LogMessageCreatesMissingLogInExistingFolder)
{
    machine.MakeHistoryFolder();
    MakeFolders(EventFolder("x"));
    EXPECT_EQ(Record({"-logmessage", "x", "-message", "only line"}), 0);
    EXPECT_EQ(ReadWholeFile(EventLog("x")), TextLines({"only line"}));
}

TEST_F(EventLogFile, LogMessageWithoutEventFolderIsLost)
{
    EXPECT_EQ(Record({"-logmessage", "x", "-message", "lost"}), 0);
    EXPECT_FALSE(PathExists(EventFolder("x")));
}

TEST_F(EventLogFile, EndAddsToLogAndClosesItWithEndBanner)
{
    Record({"-start", "x", "-Product", "p"});
    Record({"-logmessage", "x", "-message", "during the install"});
    Record({"-end", "x"});
    const Strings log = FileLines(EventLog("x"));
    ExpectLinesMatch(LinesAt(log, 0, 5),
                     {kStartBanner, "EventID       :x", "Product       :p", "Service Level :",
                      "CommandLine   :"});
    // The message follows the closing lines of the snapshot before the install.
    const auto closing =
        std::find(log.begin(), log.end(), "* End of Snapshoot for EventID: x Before  Starts  ");
    ASSERT_NE(closing, log.end());
    ASSERT_LT(closing + 2, log.end());
    EXPECT_EQ(*(closing + 2), "during the install");
    ExpectLinesMatch(LastLines(log, 2), {"", kEndBanner});
}

TEST_F(EventLogFile, EndWritesNoStartBanner)
{
    MakeFolders(EventFolder("x"));
    Record({"-end", "x"});
    for (const std::string& line : FileLines(EventLog("x")))
        EXPECT_EQ(line.find("( Start )"), std::string::npos) << line;
}

TEST_F(EventLogFile, LogIsClosedWhenCallReturns)
{
    Record({"-start", "x"});
    EXPECT_FALSE(CLogger::Instance().is_open());
    Record({"-logmessage", "x", "-message", "m"});
    EXPECT_FALSE(CLogger::Instance().is_open());
    Record({"-end", "x"});
    EXPECT_FALSE(CLogger::Instance().is_open());
}

}  // namespace
