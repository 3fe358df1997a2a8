// The store's set-up and its count: which folders and which History.ini the
// set-up leaves, what it tells, and how the count is read and written.
#include "history/CHistoryStore.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "unit/history/StoreText.h"

namespace {

std::string IniPathOf(const TestMachine& machine)
{
    return machine.HistoryFolder() + "\\History.ini";
}

// Runs the set-up and returns what it printed.
std::string InitializeCapturingOutput(bool& result)
{
    CHistoryStore store;
    testing::internal::CaptureStdout();
    result = store.Initialize();
    return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(HistoryStoreSetUp, NewStoreHoldsOnlyTheHistorySectionWithCountZero)
{
    TestMachine machine;
    bool result = false;
    EXPECT_EQ(InitializeCapturingOutput(result), "");
    EXPECT_TRUE(result);
    EXPECT_EQ(FolderNames(machine.AppData()), Lines{"TAQ"});
    EXPECT_EQ(FolderNames(machine.AppData() + "\\TAQ"), Lines{"ZORHistory"});
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), Lines{"History.ini"});
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[History]", "Count=0"}));
}

TEST(HistoryStoreSetUp, CompleteStoreIsLeftExactlyAsItIs)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    // Bare line feeds, blanks around "=" and a count with leading zeros: a write
    // of any key through the profile calls, even of the count that is there,
    // would lay the file down again in their own form.
    const std::string ini = "[History]\nCount = 007\n[EVT]\nEvent_ID = EVT\n";
    WriteWholeFile(IniPathOf(machine), ini);

    bool result = false;
    EXPECT_EQ(InitializeCapturingOutput(result), "");
    EXPECT_TRUE(result);
    EXPECT_EQ(ReadWholeFile(IniPathOf(machine)), ini);
    EXPECT_EQ(CHistoryStore().Count, 7);
}

TEST(HistoryStoreSetUp, MissingHistoryIniIsCreatedWithCountZero)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    WriteWholeFile(machine.HistoryFolder() + "\\EVT.txt", "beside");

    bool result = false;
    InitializeCapturingOutput(result);
    EXPECT_TRUE(result);
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[History]", "Count=0"}));
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Lines{"EVT.txt", "History.ini"}));
}

// The write of Count is the set-up's last step, and its result isn't looked
// at: a History.ini that can't be written (here a folder stands in its place)
// leaves set-up successful and silent.
TEST(HistoryStoreSetUp, HistoryIniThatCannotBeWrittenLeavesSetUpSuccessful)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    MakeFolders(IniPathOf(machine));

    bool result = false;
    EXPECT_EQ(InitializeCapturingOutput(result), "");
    EXPECT_TRUE(result);
    EXPECT_TRUE(FolderNames(IniPathOf(machine)).empty());
}

TEST(HistoryStoreSetUp, MakerFolderBlockedByAFileFailsWithoutAMessage)
{
    TestMachine machine;
    WriteWholeFile(machine.AppData() + "\\TAQ", "a file where the folder belongs");

    bool result = true;
    EXPECT_EQ(InitializeCapturingOutput(result), "");
    EXPECT_FALSE(result);
    EXPECT_EQ(ReadWholeFile(machine.AppData() + "\\TAQ"), "a file where the folder belongs");
    EXPECT_EQ(FolderNames(machine.AppData()), Lines{"TAQ"});
}

TEST(HistoryStoreSetUp, MissingApplicationDataFolderIsNotMadeAndFailsWithoutAMessage)
{
    TestMachine machine;
    machine.Machine().commonAppData = machine.Root() + "\\Absent";

    bool result = true;
    EXPECT_EQ(InitializeCapturingOutput(result), "");
    EXPECT_FALSE(result);
    EXPECT_FALSE(PathExists(machine.Root() + "\\Absent"));
}

TEST(HistoryStoreSetUp, HistoryFolderBlockedByAFileIsReportedWithoutLineEnd)
{
    TestMachine machine;
    MakeFolders(machine.AppData() + "\\TAQ");
    WriteWholeFile(machine.HistoryFolder(), "a file where the folder belongs");

    bool result = true;
    EXPECT_EQ(InitializeCapturingOutput(result),
              " Failed to create path:" + machine.AppData() + "\\TAQ\\ZORHistory");
    EXPECT_FALSE(result);
    EXPECT_EQ(ReadWholeFile(machine.HistoryFolder()), "a file where the folder belongs");
}

TEST(HistoryStoreSetUp, HistoryFolderIsMadeBelowAnExistingMakerFolder)
{
    TestMachine machine;
    MakeFolders(machine.AppData() + "\\TAQ");

    bool result = false;
    EXPECT_EQ(InitializeCapturingOutput(result), "");
    EXPECT_TRUE(result);
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[History]", "Count=0"}));
}

TEST(HistoryStoreCount, ConstructorReadsCountFromHistoryIni)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    WriteWholeFile(IniPathOf(machine), IniText({"[History]", "Count=42"}));
    EXPECT_EQ(CHistoryStore().Count, 42);
}

TEST(HistoryStoreCount, MissingStoreGivesZeroAndMakesNothing)
{
    TestMachine machine;
    EXPECT_EQ(CHistoryStore().Count, 0);
    EXPECT_TRUE(FolderNames(machine.AppData()).empty());
}

TEST(HistoryStoreCount, MissingCountKeyGivesZero)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    WriteWholeFile(IniPathOf(machine), IniText({"[History]", "[EVT]", "Event_ID=EVT"}));
    EXPECT_EQ(CHistoryStore().Count, 0);
}

TEST(HistoryStoreCount, WriteCountWritesItsArgumentAndLeavesTheMember)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    WriteWholeFile(IniPathOf(machine), IniText({"[History]", "Count=3"}));

    CHistoryStore store;
    store.WriteCount(12);
    EXPECT_EQ(store.Count, 3);
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[History]", "Count=12"}));
    EXPECT_EQ(CHistoryStore().Count, 12);
}

TEST(HistoryStoreCount, WriteCountLaysDownTheSectionInANewFile)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    CHistoryStore().WriteCount(-5);
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[History]", "Count=-5"}));
}
