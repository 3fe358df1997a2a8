#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "unit/zip/ZipperFixture.h"

namespace {

using Names = std::vector<std::string>;

// The same path with another drive letter in front: C:, or D: when the path
// lies on C: itself.
std::string OnAnotherDrive(const std::string& path)
{
    std::string moved = path;
    moved[0] = (moved[0] == 'C' || moved[0] == 'c') ? 'D' : 'C';
    return moved;
}

}  // namespace

using CZipperAddFile = OpenArchiveFixture;

TEST_F(CZipperAddFile, AnAbsolutePathUnderTheRootIsNamedRelativeToIt)
{
    PutFile("store\\sub\\f.txt", "abc");
    ASSERT_TRUE(zipper.AddFile(At("store\\sub\\f.txt").c_str(), false));
    EXPECT_EQ(CloseAndRead().Names(), Names{"sub\\f.txt"});
}

TEST_F(CZipperAddFile, ADotBackslashPathIsTakenFromTheRootAndNamedWithoutTheDot)
{
    PutFile("store\\f.txt", "abc");
    ASSERT_TRUE(zipper.AddFile(".\\f.txt", false));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"f.txt"});
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32("abc"));
}

TEST_F(CZipperAddFile, ARelativePathKeepsItsSubFolderInTheName)
{
    PutFile("store\\sub\\f.txt", "abc");
    ASSERT_TRUE(zipper.AddFile("sub\\f.txt", false));
    EXPECT_EQ(CloseAndRead().Names(), Names{"sub\\f.txt"});
}

TEST_F(CZipperAddFile, APathThatClimbsOutOfTheRootFails)
{
    PutFile("f.txt", "abc");
    EXPECT_FALSE(zipper.AddFile("..\\f.txt", false));
    EXPECT_FALSE(zipper.AddFile("../f.txt", false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperAddFile, APathThatClimbsOutOfTheRootIsTakenWithIgnorePath)
{
    PutFile("f.txt", "outside");
    ASSERT_TRUE(zipper.AddFile("..\\f.txt", true));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"f.txt"});
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32("outside"));
}

TEST_F(CZipperAddFile, AnAbsolutePathOutsideTheRootFails)
{
    PutFile("other\\f.txt", "abc");
    EXPECT_FALSE(zipper.AddFile(At("other\\f.txt").c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperAddFile, APathOnAnotherDriveThanTheRootFails)
{
    if (!platform::IsAbsolutePath("C:\\x"))
        GTEST_SKIP() << "paths name no drives on this platform";
    const std::string path = PutFile("store\\f.txt", "abc");
    ASSERT_EQ(path[1], ':') << path;
    // The file lies under the fixture's root, on the temporary folder's drive;
    // a second archive has the same root on another drive.
    CZipper otherDrive(At("y.zip").c_str(), OnAnotherDrive(At("store")).c_str(), false);
    EXPECT_FALSE(otherDrive.AddFile(path.c_str(), false));
    EXPECT_EQ(otherDrive.GetCounters().fileCount, 0u);
    EXPECT_TRUE(otherDrive.Close());
    EXPECT_TRUE(Kept(At("y.zip"), ".other-drive").entries.empty());

    ASSERT_TRUE(zipper.AddFile(path.c_str(), false));
    EXPECT_EQ(CloseAndRead().Names(), Names{"f.txt"});
}

TEST_F(CZipperAddFile, IgnorePathNamesTheEntryByTheBareFileNameWhereverItLies)
{
    PutFile("other\\f.txt", "abc");
    ASSERT_TRUE(zipper.AddFile(At("other\\f.txt").c_str(), true));
    EXPECT_EQ(CloseAndRead().Names(), Names{"f.txt"});
}

TEST_F(CZipperAddFile, AFileThatDoesNotExistFailsWithoutAnEntry)
{
    EXPECT_FALSE(zipper.AddFile(At("store\\missing.txt").c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperAddFile, AFileHeldOpenForWritingIsRefused)
{
    const std::string path = PutFile("store\\busy.txt", "abc");
    std::ofstream held(platform::SystemPath(path), std::ios::app);
    ASSERT_TRUE(held.is_open());
    EXPECT_FALSE(zipper.AddFile(path.c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    held.close();
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperAddFile, AnEmptyFileGivesAnEntryOfLengthZero)
{
    PutFile("store\\empty.txt", "");
    ASSERT_TRUE(zipper.AddFile(At("store\\empty.txt").c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 1u);
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"empty.txt"});
    EXPECT_EQ(archive.entries[0].uncompressedSize, 0u);
}

TEST_F(CZipperAddFile, AFileOfManyBlocksIsCopiedWhole)
{
    std::string data;
    for (int i = 0; i < 7000; ++i)
        data += static_cast<char>((i * 7 + i / 13) & 0xFF);
    PutFile("store\\big.bin", data);
    ASSERT_TRUE(zipper.AddFile(At("store\\big.bin").c_str(), false));
    EXPECT_EQ(zipper.GetCounters().uncompressedBytes, 7000u);
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"big.bin"});
    EXPECT_EQ(archive.entries[0].uncompressedSize, 7000u);
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32(data));
    EXPECT_EQ(archive.entries[0].method, 8u);
}

TEST_F(CZipperAddFile, TheReadOnlyBitIsClearedFromTheStoredAttributes)
{
    const std::string path = PutFile("store\\locked.txt", "abc");
    const ReadOnlyWhileAlive readOnly(path);
    ASSERT_TRUE(zipper.AddFile(path.c_str(), false));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"locked.txt"});
    EXPECT_EQ(archive.entries[0].externalAttributes, platform::kAttributeArchive);
}

TEST_F(CZipperAddFile, TheAttributesAreThoseOfThePathAsGivenNotAsResolved)
{
    // The relative name resolves under the root for the data, but the
    // attributes are asked of the name as it stands, in the current directory,
    // where no such file is.
    const std::string name = "only-under-the-root.txt";
    ASSERT_FALSE(PathExists(name));
    PutFile("store\\" + name, "abc");
    ASSERT_TRUE(zipper.AddFile(name.c_str(), false));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{name});
    EXPECT_EQ(archive.entries[0].externalAttributes, 0xFFFFFFFEu);
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32("abc"));
}

TEST_F(CZipperAddFile, TheEntryIsDatedWithTheFilesLocalLastWriteTime)
{
    const std::string path = PutFile("store\\f.txt", "abc");
    ASSERT_TRUE(zipper.AddFile(path.c_str(), false));
    platform::CalendarTime time;
    ASSERT_TRUE(CZipper::ModificationTime(path.c_str(), &time));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.entries.size(), 1u);
    EXPECT_EQ(archive.entries[0].dosDate, DosDateOf(time));
    EXPECT_EQ(archive.entries[0].dosTime, DosTimeOf(time));
}

TEST_F(CZipperAddFile, EntryNamesLoseBlanksAndBackslashesAtTheirEnds)
{
    PutFile("store\\f.txt", "abc");
    ASSERT_TRUE(zipper.AddFile(".\\\\f.txt", false));
    EXPECT_EQ(CloseAndRead().Names(), Names{"f.txt"});
}

TEST_F(CZipperAddFile, APathLongerThanThePathLimitFailsCleanly)
{
    EXPECT_FALSE(zipper.AddFile((At("store\\") + std::string(300, 'f')).c_str(), false));
    EXPECT_FALSE(zipper.AddFile(std::string(CZipper::kPathBufferSize - 2, 'f').c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST(CZipperModificationTime, AMissingPathFailsAndLeavesAnAllZeroTime)
{
    TestMachine machine;
    platform::CalendarTime time;
    time.year = 2000;
    time.month = 5;
    EXPECT_FALSE(CZipper::ModificationTime((machine.Root() + "\\missing.txt").c_str(), &time));
    EXPECT_EQ(time.year, 0);
    EXPECT_EQ(time.month, 0);
    EXPECT_EQ(time.day, 0);
    EXPECT_EQ(time.hour, 0);
}

TEST(CZipperModificationTime, AFileGivesTheLocalLastWriteTimeOfItsFolderEntry)
{
    TestMachine machine;
    const std::string path = machine.Root() + "\\f.txt";
    WriteWholeFile(path, "abc");
    platform::FolderSearch search;
    platform::FolderEntry entry;
    ASSERT_TRUE(search.First(machine.Root() + "\\*.*", entry));
    while (entry.name != "f.txt")
        ASSERT_TRUE(search.Next(entry));
    platform::CalendarTime time;
    ASSERT_TRUE(CZipper::ModificationTime(path.c_str(), &time));
    EXPECT_EQ(time.year, entry.lastWriteLocal.year);
    EXPECT_EQ(time.month, entry.lastWriteLocal.month);
    EXPECT_EQ(time.day, entry.lastWriteLocal.day);
    EXPECT_EQ(time.hour, entry.lastWriteLocal.hour);
    EXPECT_EQ(time.minute, entry.lastWriteLocal.minute);
    EXPECT_EQ(time.second, entry.lastWriteLocal.second);
    EXPECT_GE(time.year, 2000);
}
