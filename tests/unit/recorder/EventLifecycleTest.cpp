// The life of one event through its calls: what each call leaves in History.ini
// and in the history folder.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "history/CHistoryStore.h"
#include "recorder/CInstallEvent.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

class EventLifecycle : public RecorderTest {};

TEST_F(EventLifecycle, StartAndEndLeaveAllSeventeenKeysInOrder)
{
    Record({"-start", "x", "-Command", "setup.exe /s", "-Type", "Silent", "-Version", "9.1",
            "-ServiceLevel", "SL3", "-Product", "ZOR Server", "-Path", "C:\\ZOR", "-Action",
            "Install", "-l", "C:\\setup.log", "-t", "C:\\trace.txt", "-u", "C:\\answers.rsp"});
    Record({"-end", "x", "-Result", "Success"});
    EXPECT_EQ(SectionKeys(HistoryIni(), "x"),
              (Strings{"Event_ID", "Command_Line", "Start_Time", "End_Time", "Action", "Type",
                       "Product", "Version", "Service_Level", "Path", "Copy_Name",
                       "Complete_Flag", "Log_File_Name", "Trace_File", "Response_File",
                       "Event_Log_File", "Result"}));
    ExpectLinesMatch(SectionLines(HistoryIni(), "x"),
                     {"Event_ID=x", "Command_Line=setup.exe /s", "Start_Time=<time>",
                      "End_Time=<time>", "Action=Install", "Type=Silent", "Product=ZOR Server",
                      "Version=9.1", "Service_Level=SL3", "Path=C:\\ZOR", "Copy_Name=",
                      "Complete_Flag=TRUE", "Log_File_Name=C:\\setup.log",
                      "Trace_File=C:\\trace.txt", "Response_File=C:\\answers.rsp",
                      "Event_Log_File=" + EventLog("x"), "Result=Success"});
    EXPECT_EQ(StoredCount(), 1);
}

TEST_F(EventLifecycle, StartKeepsCopyUnknownAndEndKeysOpen)
{
    Record({"-start", "x", "-CopyName", "copy", "-Result", "Success", "-Product", "p"});
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetCopyName(), "(Unknown)");
    EXPECT_EQ(stored.GetResult(), "");
    EXPECT_EQ(stored.GetEndTime(), "");
    EXPECT_EQ(stored.GetCompleteFlag(), "FALSE");
    EXPECT_EQ(stored.GetProduct(), "p");
    EXPECT_EQ(stored.GetEventLogFile(), EventLog("x"));
    EXPECT_TRUE(PathExists(EventLog("x")));
}

TEST_F(EventLifecycle, StartWithoutFileOptionsLeavesFileKeysEmpty)
{
    Record({"-start", "x"});
    const Strings lines = SectionLines(HistoryIni(), "x");
    ASSERT_EQ(lines.size(), 17u);
    const Strings fileKeys(lines.begin() + 12, lines.begin() + 15);
    EXPECT_EQ(fileKeys, (Strings{"Log_File_Name=", "Trace_File=", "Response_File="}));
}

TEST_F(EventLifecycle, EndWithoutOptionsLeavesCopyNameAndResultEmpty)
{
    Record({"-start", "x", "-Product", "p", "-Action", "Install", "-l", "setup.log"});
    Record({"-end", "x"});
    const Strings lines = SectionLines(HistoryIni(), "x");
    ASSERT_EQ(lines.size(), 17u);
    EXPECT_EQ(lines[10], "Copy_Name=");
    EXPECT_EQ(lines[11], "Complete_Flag=TRUE");
    EXPECT_EQ(lines[16], "Result=");
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetProduct(), "p");
    EXPECT_EQ(stored.GetAction(), "Install");
    EXPECT_EQ(stored.GetLogFileName(), "setup.log");
}

TEST_F(EventLifecycle, EndReplacesOnlyTheOptionalValuesItGives)
{
    Record({"-start", "x", "-Action", "Install", "-Path", "C:\\A", "-l", "a.log", "-t", "a.trc",
            "-u", "a.rsp", "-Product", "p", "-Type", "GUI"});
    Record({"-end", "x", "-Action", "Upgrade", "-l", "b.log", "-u", "b.rsp", "-Product", "q",
            "-Type", "Silent"});
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetAction(), "Upgrade");
    EXPECT_EQ(stored.GetLogFileName(), "b.log");
    EXPECT_EQ(stored.GetResponseFile(), "b.rsp");
    EXPECT_EQ(stored.GetTraceFile(), "a.trc");
    EXPECT_EQ(stored.GetPath(), "C:\\A");
    EXPECT_EQ(stored.GetProduct(), "p");
    EXPECT_EQ(stored.GetType(), "GUI");
}

TEST_F(EventLifecycle, EndWithoutStartWritesOnlyItsKeysInItsOrderAndMakesCopyFolder)
{
    Record({"-start", "other"});
    EXPECT_EQ(Record({"-end", "x", "-u", "s.rsp", "-Path", "C:\\ZOR", "-t", "s.trc", "-l",
                      "s.log", "-Result", "Failed", "-Action", "Upgrade", "-CopyName", "copy"}),
              0);
    ExpectLinesMatch(SectionLines(HistoryIni(), "x"),
                     {"End_Time=<time>", "Copy_Name=copy", "Complete_Flag=TRUE", "Action=Upgrade",
                      "Result=Failed", "Log_File_Name=s.log", "Trace_File=s.trc",
                      "Response_File=s.rsp", "Path=C:\\ZOR"});
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_TRUE(PathExists(machine.HistoryFolder() + "\\copy"));
    EXPECT_TRUE(FolderNames(machine.HistoryFolder() + "\\copy").empty());
    EXPECT_FALSE(PathExists(EventFolder("x")));
}

TEST_F(EventLifecycle, SecondStartOfAnEventResetsItAndCountsAgain)
{
    Record({"-start", "x", "-Product", "first"});
    Record({"-logmessage", "x", "-message", "from the first start"});
    Record({"-end", "x", "-Result", "Failed"});
    Record({"-start", "x", "-Product", "second"});
    EXPECT_EQ(SectionNames(), (Strings{"History", "x"}));
    EXPECT_EQ(StoredCount(), 2);
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetProduct(), "second");
    EXPECT_EQ(stored.GetCompleteFlag(), "FALSE");
    EXPECT_EQ(stored.GetEndTime(), "");
    EXPECT_EQ(stored.GetResult(), "");
    const Strings log = FileLines(EventLog("x"));
    ExpectLinesMatch(LinesAt(log, 0, 3),
                     {"---------- ZOR Installation History Logger ( Start )----------<time>",
                      "EventID       :x", "Product       :second"});
    for (const std::string& line : log)
        EXPECT_NE(line, "from the first start");
}

TEST_F(EventLifecycle, EndWithCopyNameMovesEventBelowCopy)
{
    Record({"-start", "x"});
    Record({"-end", "x", "-CopyName", "ZORCopy1"});
    const std::string target = machine.HistoryFolder() + "\\ZORCopy1\\x";
    EXPECT_FALSE(PathExists(EventFolder("x")));
    EXPECT_TRUE(PathExists(target + "\\ZORInstallEvent.Log"));
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetEventLogFile(), target + "\\ZORInstallEvent.Log");
    EXPECT_EQ(stored.GetCopyName(), "ZORCopy1");
}

TEST_F(EventLifecycle, LogMessageAfterHandedOverEndIsLost)
{
    Record({"-start", "x"});
    Record({"-end", "x", "-CopyName", "copy"});
    const std::string movedLog = machine.HistoryFolder() + "\\copy\\x\\ZORInstallEvent.Log";
    const std::string logBefore = ReadWholeFile(movedLog);
    EXPECT_EQ(Record({"-logmessage", "x", "-message", "too late"}), 0);
    EXPECT_FALSE(PathExists(EventFolder("x")));
    EXPECT_EQ(ReadWholeFile(movedLog), logBefore);
}

TEST_F(EventLifecycle, LogMessageDoesNotTouchHistoryIni)
{
    Record({"-start", "x"});
    const std::string iniBefore = ReadWholeFile(HistoryIni());
    Record({"-logmessage", "x", "-message", "m"});
    Record({"-logmessage", "never started", "-message", "m"});
    EXPECT_EQ(ReadWholeFile(HistoryIni()), iniBefore);
}

}  // namespace

// An event that a collection run finds unfinished is staged into the folder of
// the copy "(Unknown)", which doesn't exist: the copies fail and the keys name
// that folder. An -end given only some of the file options sets those anew;
// the keys of the others keep their paths into "(Unknown)".
TEST_F(EventLifecycle, EndAfterCollectingAnUnfinishedEventSetsOnlyTheFileKeysItGives)
{
    const std::string outside = machine.Root() + "\\outside";
    MakeFolders(outside);
    for (const char* name : {"setup.log", "trace.txt", "answers.iss"})
        WriteWholeFile(outside + "\\" + name, name);
    Record({"-start", "EVT", "-l", outside + "\\setup.log", "-t", outside + "\\trace.txt", "-u",
            outside + "\\answers.iss"});
    {
        CapturedOutput console;
        ASSERT_TRUE(CHistoryStore().CollectHistory(machine.Root() + "\\x.zip"));
    }
    const std::string unknown = machine.HistoryFolder() + "\\(Unknown)\\EVT\\";
    ASSERT_EQ(CInstallEvent("EVT").GetTraceFile(), unknown + "trace.txt");

    Record({"-end", "EVT", "-CopyName", "C1", "-l", outside + "\\setup2.log"});

    CInstallEvent stored("EVT");
    EXPECT_EQ(stored.GetLogFileName(), outside + "\\setup2.log");
    EXPECT_EQ(stored.GetTraceFile(), unknown + "trace.txt");
    EXPECT_EQ(stored.GetResponseFile(), unknown + "answers.iss");
    EXPECT_FALSE(PathExists(machine.HistoryFolder() + "\\(Unknown)"));
    EXPECT_EQ(ReadWholeFile(outside + "\\trace.txt"), "trace.txt");
}

// The store's own section is no event, and yet an EventID of that name is
// recorded like any other: its keys stand beside Count, and it has its folder.
TEST_F(EventLifecycle, StartOfEventHistoryWritesItsKeysBesideCount)
{
    Record({"-start", "History", "-Action", "Install"});
    EXPECT_EQ(SectionNames(), (Strings{"History"}));
    const Strings keys = SectionKeys(HistoryIni(), "History");
    ASSERT_EQ(keys.size(), 18u);
    EXPECT_EQ(keys[0], "Count");
    EXPECT_EQ(keys[1], "Event_ID");
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_EQ(CInstallEvent("History").GetAction(), "Install");
    EXPECT_TRUE(PathExists(EventLog("History")));
}

// Characters that the file format reserves go to the profile calls as they
// stand: what the store then holds is what those calls make of them.
TEST_F(EventLifecycle, EventIDsWithReservedCharactersArePassedOnUnescaped)
{
    for (const char* id : {"E]1", "=E2"}) {
        Record({"-start", id, "-Action", "Install"});
        Record({"-end", id, "-Result", "0"});
        EXPECT_EQ(CInstallEvent(id).GetAction(), "Install") << id;
        EXPECT_TRUE(PathExists(EventLog(id))) << id;
    }
    EXPECT_EQ(SectionNames(), (Strings{"History", "E]1", "=E2"}));
    EXPECT_EQ(StoredCount(), 2);
}
