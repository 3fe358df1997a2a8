// The hand-over at an -end that names the copy: the event folder moves below a
// folder of that copy.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "platform/FileSystem.h"
#include "recorder/CInstallEvent.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"
#include "support/WineHost.h"

namespace {

using Strings = std::vector<std::string>;

class HandOver : public RecorderTest {};

TEST_F(HandOver, EndWithoutCopyNameChangesNoPath)
{
    Record({"-start", "x"});
    Record({"-end", "x"});
    EXPECT_TRUE(PathExists(EventLog("x")));
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), EventLog("x"));
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"History.ini", "x"}));
}

TEST_F(HandOver, WholeFolderMovesWithEveryFileInIt)
{
    Record({"-start", "x"});
    WriteWholeFile(EventFolder("x") + "\\setup.log", "installer's log");
    EXPECT_EQ(Record({"-end", "x", "-CopyName", "copy"}), 0);
    const std::string target = machine.HistoryFolder() + "\\copy\\x";
    EXPECT_EQ(FolderNames(target), (Strings{"ZORInstallEvent.Log", "setup.log"}));
    EXPECT_EQ(ReadWholeFile(target + "\\setup.log"), "installer's log");
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"History.ini", "copy"}));
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), target + "\\ZORInstallEvent.Log");
}

TEST_F(HandOver, MovedLogHoldsTheWholeEvent)
{
    Record({"-start", "x"});
    Record({"-end", "x", "-CopyName", "copy"});
    const Strings log = FileLines(machine.HistoryFolder() + "\\copy\\x\\ZORInstallEvent.Log");
    ASSERT_FALSE(log.empty());
    ExpectLinesMatch({log.front(), log.back()},
                     {"---------- ZOR Installation History Logger ( Start )----------<time>",
                      "---------- ZOR Installation History Logger ( End ) ----------<time>"});
}

// The -end writes the log in this process, and a folder that holds an open file
// can't be moved: the hand-over succeeds only because the log is closed first.
TEST_F(HandOver, EventLogIsClosedBeforeItsFolderMoves)
{
    if (RunsUnderWine())
        GTEST_SKIP() << kWineMovesHeldFolders;
    Record({"-start", "x"});
    CLogger::Instance().Open(EventLog("x"), static_cast<int>(std::ios_base::app));
    EXPECT_FALSE(platform::MovePath(EventFolder("x"), machine.HistoryFolder() + "\\elsewhere"));
    CLogger::Instance().Close();

    EXPECT_EQ(Record({"-end", "x", "-CopyName", "copy"}), 0);
    const std::string movedLog = machine.HistoryFolder() + "\\copy\\x\\ZORInstallEvent.Log";
    EXPECT_FALSE(PathExists(EventFolder("x")));
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), movedLog);
    ExpectLinesMatch(LastLines(FileLines(movedLog), 1),
                     {"---------- ZOR Installation History Logger ( End ) ----------<time>"});
}

TEST_F(HandOver, ExistingTargetFolderKeepsEventInPlace)
{
    MakeFolders(machine.HistoryFolder() + "\\copy\\x");
    Record({"-start", "x"});
    EXPECT_EQ(Record({"-end", "x", "-CopyName", "copy"}), 0);
    EXPECT_TRUE(PathExists(EventLog("x")));
    EXPECT_TRUE(FolderNames(machine.HistoryFolder() + "\\copy\\x").empty());
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetEventLogFile(), EventLog("x"));
    EXPECT_EQ(stored.GetCopyName(), "copy");
}

TEST_F(HandOver, EndWithoutEventFolderMakesCopyFolderAndStops)
{
    EXPECT_EQ(Record({"-end", "x", "-CopyName", "copy"}), 0);
    EXPECT_TRUE(FolderNames(machine.HistoryFolder() + "\\copy").empty());
    EXPECT_FALSE(PathExists(EventFolder("x")));
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), "");
}

TEST_F(HandOver, CopyNameWithSeparatorNamesNestedFolder)
{
    MakeFolders(machine.HistoryFolder() + "\\Server");
    Record({"-start", "x"});
    Record({"-end", "x", "-CopyName", "Server\\Copy1"});
    const std::string target = machine.HistoryFolder() + "\\Server\\Copy1\\x";
    EXPECT_TRUE(PathExists(target + "\\ZORInstallEvent.Log"));
    EXPECT_FALSE(PathExists(EventFolder("x")));
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetEventLogFile(), target + "\\ZORInstallEvent.Log");
    EXPECT_EQ(stored.GetCopyName(), "Server\\Copy1");
}

TEST_F(HandOver, NestedCopyFolderIsMadeOneLevelOnly)
{
    Record({"-start", "x"});
    EXPECT_EQ(Record({"-end", "x", "-CopyName", "Server\\Copy1"}), 0);
    EXPECT_FALSE(PathExists(machine.HistoryFolder() + "\\Server"));
    EXPECT_TRUE(PathExists(EventLog("x")));
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), EventLog("x"));
}

}  // namespace
