#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "unit/zip/ZipperFixture.h"

namespace {

using Names = std::vector<std::string>;

std::uint32_t DosMoment(std::uint16_t date, std::uint16_t time)
{
    return (static_cast<std::uint32_t>(date) << 16) | time;
}

}  // namespace

using CZipperSideOperations = OpenArchiveFixture;

TEST_F(CZipperSideOperations, AddFileAsPutsTheFileUnderTheFolderInZip)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), "logs"));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"logs\\a.txt"});
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32("abc"));
    EXPECT_EQ(archive.entries[0].uncompressedSize, 3u);
}

TEST_F(CZipperSideOperations, AddFileAsWithoutAFolderUsesTheBareFileName)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), nullptr));
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), ""));
    EXPECT_EQ(CloseAndRead().Names(), (Names{"a.txt", "a.txt"}));
}

TEST_F(CZipperSideOperations, AddFileAsTrimsTheEntryName)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), " logs\\sub\\"));
    EXPECT_EQ(CloseAndRead().Names(), Names{"logs\\sub\\a.txt"});
}

TEST_F(CZipperSideOperations, AddFileAsTakesARelativePathFromTheRoot)
{
    PutFile("store\\sub\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs("sub\\a.txt", "logs"));
    EXPECT_EQ(CloseAndRead().Names(), Names{"logs\\a.txt"});
}

TEST_F(CZipperSideOperations, AddFileAsRefusesAFolderInZipWithAColon)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    EXPECT_FALSE(zipper.AddFileAs(path.c_str(), "C:\\logs"));
    EXPECT_FALSE(zipper.AddFileAs(path.c_str(), "logs:old"));
    EXPECT_FALSE(zipper.AddFileAs(path.c_str(), ":"));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperSideOperations, AddFileAsTakesTheLeadingSeparatorOffTheFolderInZip)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), "\\logs"));
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), "/logs"));
    EXPECT_EQ(CloseAndRead().Names(), (Names{"logs\\a.txt", "logs\\a.txt"}));
}

TEST_F(CZipperSideOperations, AddFileAsKeepsTheAttributesAsTheyAre)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), "logs"));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.entries.size(), 1u);
    EXPECT_EQ(archive.entries[0].externalAttributes, platform::GetFileAttributes(path));
}

TEST_F(CZipperSideOperations, AddFileAsTakesTheAttributesOfThePathAsGivenNotAsResolved)
{
    // The relative name resolves under the root for the data, but the
    // attributes are asked of the name as it stands, in the current directory,
    // where no such file is: the invalid word goes in unchanged.
    const std::string name = "only-under-the-root.txt";
    ASSERT_FALSE(PathExists(name));
    PutFile("store\\" + name, "abc");
    ASSERT_TRUE(zipper.AddFileAs(name.c_str(), "logs"));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"logs\\" + name});
    EXPECT_EQ(archive.entries[0].externalAttributes, 0xFFFFFFFFu);
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32("abc"));
}

TEST_F(CZipperSideOperations, AddFileAsIsDatedWithTheFilesLastWriteTime)
{
    const std::string path = PutFile("x\\a.txt", "abc");
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), "logs"));
    platform::CalendarTime time;
    ASSERT_TRUE(CZipper::ModificationTime(path.c_str(), &time));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.entries.size(), 1u);
    EXPECT_EQ(archive.entries[0].dosDate, DosDateOf(time));
    EXPECT_EQ(archive.entries[0].dosTime, DosTimeOf(time));
}

TEST_F(CZipperSideOperations, AddFileAsOfAMissingFileFailsWithoutAnEntry)
{
    EXPECT_FALSE(zipper.AddFileAs(At("x\\missing.txt").c_str(), "logs"));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperSideOperations, AddFileAsCountsTheFileAndItsBytes)
{
    const std::string data = RepeatedText("0123456789", 300);
    const std::string path = PutFile("x\\a.txt", data);
    ASSERT_TRUE(zipper.AddFileAs(path.c_str(), "logs"));
    EXPECT_EQ(zipper.GetCounters().fileCount, 1u);
    EXPECT_EQ(zipper.GetCounters().uncompressedBytes, 3000u);
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.entries.size(), 1u);
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32(data));
}

TEST_F(CZipperSideOperations, AddBufferWritesTheDataUnderTheTrimmedName)
{
    const std::string data = RepeatedText("buffer data ", 500);
    ASSERT_TRUE(zipper.AddBuffer(data.data(), static_cast<std::uint32_t>(data.size()), " \\notes\\today.txt "));
    EXPECT_EQ(zipper.GetCounters().fileCount, 1u);
    EXPECT_EQ(zipper.GetCounters().uncompressedBytes, data.size());
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"notes\\today.txt"});
    EXPECT_EQ(archive.entries[0].uncompressedSize, data.size());
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32(data));
    EXPECT_EQ(archive.entries[0].externalAttributes, platform::kAttributeNormal);
}

TEST_F(CZipperSideOperations, AddBufferTakesTheLeadingSeparatorOffTheName)
{
    ASSERT_TRUE(zipper.AddBuffer("one", 3, "\\x.txt"));
    ASSERT_TRUE(zipper.AddBuffer("two", 3, "/x.txt"));
    EXPECT_EQ(CloseAndRead().Names(), (Names{"x.txt", "x.txt"}));
}

TEST_F(CZipperSideOperations, AddBufferOfNoBytesGivesAnEmptyEntry)
{
    ASSERT_TRUE(zipper.AddBuffer("", 0, "empty.txt"));
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.Names(), Names{"empty.txt"});
    EXPECT_EQ(archive.entries[0].uncompressedSize, 0u);
}

TEST_F(CZipperSideOperations, AddBufferWithAColonInTheNameFailsAndLeavesTheArchiveAsItWas)
{
    ASSERT_TRUE(zipper.AddBuffer("first", 5, "first.txt"));
    EXPECT_FALSE(zipper.AddBuffer("second", 6, "C:second.txt"));
    EXPECT_FALSE(zipper.AddBuffer("second", 6, "dir\\a:b.txt"));
    EXPECT_FALSE(zipper.AddBuffer("second", 6, ":"));
    EXPECT_EQ(zipper.GetCounters().fileCount, 1u);
    EXPECT_EQ(zipper.GetCounters().uncompressedBytes, 5u);
    EXPECT_EQ(CloseAndRead().Names(), Names{"first.txt"});
}

TEST_F(CZipperSideOperations, AddBufferIsDatedWithTheCurrentUtcTime)
{
    const platform::CalendarTime before = platform::CurrentUtcTime();
    ASSERT_TRUE(zipper.AddBuffer("abc", 3, "now.txt"));
    const platform::CalendarTime after = platform::CurrentUtcTime();
    const ZipTestArchive archive = CloseAndRead();
    ASSERT_EQ(archive.entries.size(), 1u);
    const std::uint32_t stored = DosMoment(archive.entries[0].dosDate, archive.entries[0].dosTime);
    EXPECT_GE(stored, DosMoment(DosDateOf(before), DosTimeOf(before)));
    EXPECT_LE(stored, DosMoment(DosDateOf(after), DosTimeOf(after)));
}

TEST(CZipperOneCall, ZipOneFileMakesAnArchiveBesideTheFileNamedAfterIt)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\x";
    MakeFolders(folder);
    WriteWholeFile(folder + "\\a.txt", "one file");
    ASSERT_TRUE(CZipper::ZipOneFile((folder + "\\a.txt").c_str()));
    KeepThisTestsArchive(folder + "\\a.zip");
    const ZipTestArchive archive = ReadZipDirectory(folder + "\\a.zip");
    ASSERT_TRUE(archive.valid);
    ASSERT_EQ(archive.Names(), Names{"a.txt"});
    EXPECT_EQ(archive.entries[0].crc, ZipCrc32("one file"));
}

TEST(CZipperOneCall, ZipOneFileOfAMissingFileFails)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\x";
    MakeFolders(folder);
    EXPECT_FALSE(CZipper::ZipOneFile((folder + "\\a.txt").c_str()));
    KeepThisTestsArchive(folder + "\\a.zip");
    const ZipTestArchive archive = ReadZipDirectory(folder + "\\a.zip");
    ASSERT_TRUE(archive.valid);
    EXPECT_TRUE(archive.entries.empty());
}

TEST(CZipperOneCall, ZipOneFileInAFolderThatDoesNotExistFails)
{
    TestMachine machine;
    EXPECT_FALSE(CZipper::ZipOneFile((machine.Root() + "\\missing\\a.txt").c_str()));
    EXPECT_FALSE(PathExists(machine.Root() + "\\missing\\a.zip"));
}

TEST(CZipperOneCall, ZipWholeFolderMakesAnArchiveBesideTheFolderWithZipAddedToItsName)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\x\\dir.old";
    MakeFolders(folder + "\\sub");
    WriteWholeFile(folder + "\\a.txt", "a");
    WriteWholeFile(folder + "\\sub\\b.txt", "bb");
    ASSERT_TRUE(CZipper::ZipWholeFolder(folder.c_str(), false));
    const std::string zipPath = machine.Root() + "\\x\\dir.old.zip";
    KeepThisTestsArchive(zipPath);
    const ZipTestArchive archive = ReadZipDirectory(zipPath);
    ASSERT_TRUE(archive.valid);
    EXPECT_EQ(archive.Names(), ExpectedWalk(folder));
    EXPECT_NE(archive.Find("sub\\b.txt"), nullptr);
    EXPECT_FALSE(PathExists(machine.Root() + "\\x\\dir.zip"));
}

TEST(CZipperOneCall, ZipWholeFolderWithIgnorePathNamesEntriesByTheirBareNames)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\dir";
    MakeFolders(folder + "\\sub");
    WriteWholeFile(folder + "\\sub\\b.txt", "bb");
    ASSERT_TRUE(CZipper::ZipWholeFolder(folder.c_str(), true));
    const std::string zipPath = machine.Root() + "\\dir.zip";
    KeepThisTestsArchive(zipPath);
    const ZipTestArchive archive = ReadZipDirectory(zipPath);
    ASSERT_TRUE(archive.valid);
    EXPECT_EQ(archive.Names(), (Names{"dir", "sub", "b.txt"}));
}
