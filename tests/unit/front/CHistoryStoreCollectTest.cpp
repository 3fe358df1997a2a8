#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "history/CHistoryStore.h"
#include "platform/StoreLock.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "support/WineHost.h"
#include "unit/front/ConsoleCapture.h"
#include "unit/zip/ZipTestReader.h"
#include "unit/zip/ZipTestSupport.h"

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

const char* const kNoHistoryLine =
    "There is no ZOR Installation History Log ( no ZOR V9 or Later is installed )\n";

std::string SuccessLine(const std::string& name)
{
    return "The file '" + name + "' is created successfully\n";
}

std::string FailureLine(const std::string& name)
{
    return " Failed to create file '" + name + "'\n";
}

}  // namespace

class CHistoryStoreCollect : public ::testing::Test {
protected:
    std::string InStore(const std::string& relative) const { return machine.HistoryFolder() + "\\" + relative; }

    void FillStore() const
    {
        MakeFolders(InStore("Copy1\\E1"));
        WriteWholeFile(InStore("Copy1\\E1\\ZORInstallEvent.Log"), "event log");
        WriteWholeFile(InStore("Copy1\\Summary.txt"), "copy summary");
        MakeFolders(InStore("E2"));
        WriteWholeFile(InStore(".hidden"), "left out");
    }

    ZipTestArchive Kept(const std::string& zipPath) const
    {
        KeepThisTestsArchive(zipPath);
        ZipTestArchive archive = ReadZipDirectory(zipPath);
        EXPECT_TRUE(archive.valid) << zipPath;
        return archive;
    }

    TestMachine machine;
};

TEST_F(CHistoryStoreCollect, WithoutAHistoryFolderOnlyTheNoHistoryLineIsPrintedAndNoFileMade)
{
    const std::string zipPath = machine.Root() + "\\x.zip";
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_FALSE(store.CreateZip(zipPath));
    EXPECT_EQ(console.Text(), kNoHistoryLine);
    EXPECT_FALSE(PathExists(zipPath));
}

TEST_F(CHistoryStoreCollect, CollectingWithoutAHistoryFolderFailsWithTheNoHistoryLine)
{
    const std::string zipPath = machine.Root() + "\\x.zip";
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_FALSE(store.CollectHistory(zipPath));
    EXPECT_EQ(console.Text(), kNoHistoryLine);
    EXPECT_FALSE(PathExists(zipPath));
    EXPECT_FALSE(PathExists(machine.HistoryFolder()));
}

TEST_F(CHistoryStoreCollect, TheWholeHistoryFolderIsPackedWithItsEntryNamesRelativeToIt)
{
    machine.MakeHistoryFolder();
    FillStore();
    const std::string zipPath = machine.Root() + "\\x.zip";
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_TRUE(store.CreateZip(zipPath));
    EXPECT_EQ(console.Text(), SuccessLine(zipPath));
    const ZipTestArchive archive = Kept(zipPath);
    EXPECT_EQ(archive.Names(), ExpectedWalk(machine.HistoryFolder()));
    Names sorted = archive.Names();
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (Names{"Copy1", "Copy1\\E1", "Copy1\\E1\\ZORInstallEvent.Log", "Copy1\\Summary.txt", "E2"}));
}

TEST_F(CHistoryStoreCollect, CollectingPacksTheStoreAndTellsTheNameAsGiven)
{
    machine.MakeHistoryFolder();
    FillStore();
    const std::string zipPath = machine.Root() + "\\collected";
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_TRUE(store.CollectHistory(zipPath));
    EXPECT_EQ(console.Text(), SuccessLine(zipPath));
    const ZipTestArchive archive = Kept(zipPath);
    EXPECT_NE(archive.Find("Copy1\\E1\\ZORInstallEvent.Log"), nullptr);
    EXPECT_FALSE(PathExists(zipPath + ".zip"));
}

TEST_F(CHistoryStoreCollect, CollectingWaitsWhileARecorderCallHoldsTheStore)
{
    machine.MakeHistoryFolder();
    FillStore();
    const std::string zipPath = machine.Root() + "\\x.zip";
    std::atomic<bool> collected{false};
    std::thread run;
    ConsoleCapture console;
    {
        const platform::StoreLock held(machine.HistoryFolder());
        ASSERT_TRUE(held.Held());
        run = std::thread([&] {
            CHistoryStore store;
            collected = store.CollectHistory(zipPath);
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_FALSE(collected);
        EXPECT_FALSE(PathExists(zipPath));
    }
    run.join();
    EXPECT_TRUE(collected);
    EXPECT_EQ(console.Text(), SuccessLine(zipPath));
    Kept(zipPath);
}

TEST_F(CHistoryStoreCollect, CollectingOntoAReadOnlyArchiveFailsAndLeavesIt)
{
    if (WineWritesReadOnlyFiles())
        GTEST_SKIP() << kWineWritesReadOnlyFiles;
    machine.MakeHistoryFolder();
    FillStore();
    const std::string zipPath = machine.Root() + "\\x.zip";
    WriteWholeFile(zipPath, "an earlier archive");
    const ReadOnlyWhileAlive readOnly(zipPath);
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_FALSE(store.CollectHistory(zipPath));
    EXPECT_EQ(console.Text(), FailureLine(zipPath));
    EXPECT_EQ(ReadWholeFile(zipPath), "an earlier archive");
}

TEST_F(CHistoryStoreCollect, AnEmptyHistoryFolderGivesAnArchiveWithoutEntries)
{
    machine.MakeHistoryFolder();
    const std::string zipPath = machine.Root() + "\\x.zip";
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_TRUE(store.CreateZip(zipPath));
    EXPECT_EQ(console.Text(), SuccessLine(zipPath));
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}

TEST_F(CHistoryStoreCollect, AnArchiveThatCannotBeCreatedGivesTheFailureLine)
{
    machine.MakeHistoryFolder();
    FillStore();
    const std::string zipPath = machine.Root() + "\\missing\\x.zip";
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_FALSE(store.CreateZip(zipPath));
    EXPECT_EQ(console.Text(), FailureLine(zipPath));
    EXPECT_FALSE(PathExists(zipPath));
}

TEST_F(CHistoryStoreCollect, AnExistingArchiveIsReplacedNotExtended)
{
    machine.MakeHistoryFolder();
    WriteWholeFile(InStore("new.txt"), "new");
    const std::string zipPath = machine.Root() + "\\x.zip";
    WriteWholeFile(zipPath, "an older file of that name");
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_TRUE(store.CreateZip(zipPath));
    EXPECT_EQ(Kept(zipPath).Names(), Names{"new.txt"});
}

TEST_F(CHistoryStoreCollect, AnArchiveInsideTheHistoryFolderLeavesItselfOut)
{
    machine.MakeHistoryFolder();
    FillStore();
    const std::string zipPath = InStore("inside.zip");
    ConsoleCapture console;
    CHistoryStore store;
    EXPECT_TRUE(store.CreateZip(zipPath));
    EXPECT_EQ(console.Text(), SuccessLine(zipPath));
    const ZipTestArchive archive = Kept(zipPath);
    EXPECT_EQ(archive.Find("inside.zip"), nullptr);
    EXPECT_NE(archive.Find("Copy1\\E1\\ZORInstallEvent.Log"), nullptr);
}
