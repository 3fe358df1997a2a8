#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "unit/zip/ZipperFixture.h"

using CZipperAddFolder = ZipperFixture;

namespace {

using Names = std::vector<std::string>;

Names Sorted(Names names)
{
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

class CZipperStoreWalk : public ZipperFixture {
protected:
    void SetUp() override
    {
        PutFile("store\\History.ini", "[History]\nCount=2\n");
        PutFile("store\\Copy1\\Summary.txt", "summary of Copy1");
        PutFile("store\\Copy1\\E1\\ZORInstallEvent.Log", RepeatedText("log line\n", 600));
        PutFile("store\\E2\\setup.log", "");
        PutFolder("store\\Empty");
        PutFile("store\\.hidden", "not packed");
        PutFile("store\\.dotted\\inside.txt", "not packed either");
        PutFile("store\\Copy1\\.sub\\deep.txt", "not packed");
        zipPath = At("x.zip");
        store = At("store");
    }

    ZipTestArchive Walk(ZipCounters* counters = nullptr)
    {
        CZipper zipper(zipPath.c_str(), store.c_str(), false);
        EXPECT_TRUE(zipper.AddFolder(store.c_str(), false));
        EXPECT_TRUE(zipper.Close());
        if (counters != nullptr)
            *counters = zipper.GetCounters();
        return Kept(zipPath);
    }

    std::string zipPath;
    std::string store;
};

TEST_F(CZipperStoreWalk, EverythingUnderTheRootIsPackedButDotNamesAndTheRootItself)
{
    const ZipTestArchive archive = Walk();
    EXPECT_EQ(Sorted(archive.Names()),
              (Names{"Copy1", "Copy1\\E1", "Copy1\\E1\\ZORInstallEvent.Log", "Copy1\\Summary.txt", "E2",
                     "E2\\setup.log", "Empty", "History.ini"}));
}

TEST_F(CZipperStoreWalk, EntriesFollowTheWalkFolderFirstThenItsContentsInListingOrder)
{
    EXPECT_EQ(Walk().Names(), ExpectedWalk(store));
}

TEST_F(CZipperStoreWalk, FolderEntriesHaveNoDataAndCarryTheFolderBit)
{
    const ZipTestArchive archive = Walk();
    for (const char* folder : {"Copy1", "Copy1\\E1", "E2", "Empty"}) {
        const ZipTestEntry* entry = archive.Find(folder);
        ASSERT_NE(entry, nullptr) << folder;
        EXPECT_EQ(entry->uncompressedSize, 0u) << folder;
        EXPECT_EQ(entry->crc, 0u) << folder;
        EXPECT_EQ(entry->externalAttributes & 0xFFu, 0x10u) << folder;
    }
}

TEST_F(CZipperStoreWalk, FileEntriesHoldTheFilesDataDeflated)
{
    const ZipTestArchive archive = Walk();
    const std::string log = RepeatedText("log line\n", 600);
    const ZipTestEntry* entry = archive.Find("Copy1\\E1\\ZORInstallEvent.Log");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->method, 8u);
    EXPECT_EQ(entry->uncompressedSize, log.size());
    EXPECT_EQ(entry->crc, ZipCrc32(log));
    const ZipTestEntry* empty = archive.Find("E2\\setup.log");
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->uncompressedSize, 0u);
    EXPECT_EQ(archive.Find("History.ini")->crc, ZipCrc32("[History]\nCount=2\n"));
}

TEST_F(CZipperStoreWalk, FileEntriesCarryTheFilesAttributesWithoutTheFolderBit)
{
    const ZipTestArchive archive = Walk();
    const ZipTestEntry* entry = archive.Find("Copy1\\Summary.txt");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->externalAttributes,
              platform::GetFileAttributes(At("store\\Copy1\\Summary.txt")) & ~platform::kAttributeReadOnly);
    EXPECT_EQ(entry->externalAttributes & platform::kAttributeDirectory, 0u);
}

TEST_F(CZipperStoreWalk, EntriesAreDatedWithTheLocalLastWriteTime)
{
    const ZipTestArchive archive = Walk();
    for (const char* name : {"History.ini", "Copy1", "Copy1\\E1\\ZORInstallEvent.Log", "Empty"}) {
        platform::CalendarTime time;
        ASSERT_TRUE(CZipper::ModificationTime((store + "\\" + name).c_str(), &time)) << name;
        const ZipTestEntry* entry = archive.Find(name);
        ASSERT_NE(entry, nullptr) << name;
        EXPECT_EQ(entry->dosDate, DosDateOf(time)) << name;
        EXPECT_EQ(entry->dosTime, DosTimeOf(time)) << name;
    }
}

TEST_F(CZipperStoreWalk, CountersCountEveryFolderWalkedEveryFileBegunAndTheBytesRead)
{
    ZipCounters counters;
    Walk(&counters);
    // store, Copy1, Copy1\E1, E2, Empty
    EXPECT_EQ(counters.folderCount, 5u);
    EXPECT_EQ(counters.fileCount, 4u);
    const std::size_t bytes = std::string("[History]\nCount=2\n").size() +
                              std::string("summary of Copy1").size() + 600 * std::string("log line\n").size();
    EXPECT_EQ(counters.uncompressedBytes, bytes);
}

TEST_F(CZipperStoreWalk, IgnorePathNamesEveryEntryByItsBareName)
{
    CZipper zipper(zipPath.c_str(), store.c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(At("store\\Copy1").c_str(), true));
    ASSERT_TRUE(zipper.Close());
    const ZipTestArchive archive = Kept(zipPath);
    EXPECT_EQ(Sorted(archive.Names()), (Names{"Copy1", "E1", "Summary.txt", "ZORInstallEvent.Log"}));
    EXPECT_EQ(archive.Names().front(), "Copy1");
}

TEST_F(CZipperStoreWalk, ARelativeFolderIsTakenUnderTheRoot)
{
    CZipper zipper(zipPath.c_str(), store.c_str(), false);
    ASSERT_TRUE(zipper.AddFolder("E2", false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), (Names{"E2", "E2\\setup.log"}));
}

TEST_F(CZipperStoreWalk, AFileHeldOpenForWritingIsLeftOutAndTheWalkStillSucceeds)
{
    std::ofstream held(platform::SystemPath(At("store\\Copy1\\Summary.txt")), std::ios::app);
    ASSERT_TRUE(held.is_open());
    const ZipTestArchive archive = Walk();
    EXPECT_EQ(archive.Find("Copy1\\Summary.txt"), nullptr);
    EXPECT_NE(archive.Find("Copy1\\E1\\ZORInstallEvent.Log"), nullptr);
}

TEST_F(CZipperAddFolder, AnEmptyFolderUnderTheRootIsOneEntryOfLengthZeroWithoutTrailingSeparator)
{
    PutFolder("store\\Empty");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(At("store\\Empty").c_str(), false));
    ASSERT_TRUE(zipper.Close());
    const ZipTestArchive archive = Kept(zipPath);
    ASSERT_EQ(archive.Names(), Names{"Empty"});
    EXPECT_EQ(archive.entries[0].uncompressedSize, 0u);
    EXPECT_EQ(archive.entries[0].externalAttributes & 0x10u, 0x10u);
}

TEST_F(CZipperAddFolder, TheRootItselfGetsNoEntryButIsCounted)
{
    PutFolder("store");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(At("store").c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(zipper.GetCounters().folderCount, 1u);
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}

TEST_F(CZipperAddFolder, AFolderNotUnderTheRootFailsAndIsStillCounted)
{
    PutFolder("store");
    PutFile("other\\a.txt", "abc");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    EXPECT_FALSE(zipper.AddFolder(At("other").c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(zipper.GetCounters().folderCount, 1u);
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}

TEST_F(CZipperAddFolder, TheRootCompareIsAPlainPrefixCompare)
{
    PutFolder("A");
    PutFile("ab\\f.txt", "abc");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("A").c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(At("ab").c_str(), false));
    ASSERT_TRUE(zipper.AddFile(At("ab\\f.txt").c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), (Names{"b", "b\\f.txt", "b\\f.txt"}));
}

TEST_F(CZipperAddFolder, TheRootCompareIgnoresTheCaseOfLetters)
{
    PutFile("Store\\f.txt", "abc");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("STORE").c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(At("Store").c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), Names{"f.txt"});
}

TEST_F(CZipperAddFolder, ForwardSlashesAndBackslashesCompareAsTheSameSeparator)
{
    PutFile("store\\sub\\f.txt", "abc");
    std::string slashed = At("store\\sub");
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(slashed.c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), (Names{"sub", "sub\\f.txt"}));
}

TEST_F(CZipperAddFolder, AFolderThatDoesNotExistSucceedsWithItsOwnEntryOnly)
{
    PutFolder("store");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    EXPECT_TRUE(zipper.AddFolder(At("store\\gone").c_str(), false));
    ASSERT_TRUE(zipper.Close());
    const ZipTestArchive archive = Kept(zipPath);
    ASSERT_EQ(archive.Names(), Names{"gone"});
    // Neither attributes nor a time could be read: every attribute bit is set
    // and the date is that of an all-zero time.
    EXPECT_EQ(archive.entries[0].externalAttributes, 0xFFFFFFFFu);
}

TEST_F(CZipperAddFolder, AFolderPathLongerThanThePathLimitFails)
{
    PutFolder("store");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    EXPECT_FALSE(zipper.AddFolder((At("store\\") + std::string(300, 'd')).c_str(), false));
    EXPECT_FALSE(zipper.AddFolder(std::string(CZipper::kPathBufferSize - 2, 'd').c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}
