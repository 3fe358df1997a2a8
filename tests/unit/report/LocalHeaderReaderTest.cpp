// An archive whose central directory is cut off, read by its entries' own
// headers; the archive is made by the system's own archive writer.
#include <gtest/gtest.h>

#include "report/CArchiveReader.h"
#include "report/CHistorySource.h"
#include "report/CLocalHeaderReader.h"
#include "report/SourceNames.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "zip/CZipper.h"

namespace {

// Text that deflate can't make much smaller, so that the archive's entries
// are about as long as the files.
std::string Scrambled(std::size_t size, unsigned seed)
{
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        seed = seed * 1103515245u + 12345u;
        text += static_cast<char>('!' + (seed >> 16) % 90);
    }
    return text;
}

const std::string kA = Scrambled(5000, 1);
const std::string kB = Scrambled(70000, 2);

class LocalHeaderReaderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const std::string history = machine_.MakeHistoryFolder();
        WriteWholeFile(history + "\\a.txt", kA);
        WriteWholeFile(history + "\\b.txt", kB);
        zipPath_ = machine_.Root() + "\\history.zip";
        CZipper zipper(nullptr, nullptr, false);
        ASSERT_TRUE(zipper.Open(zipPath_.c_str(), history.c_str(), false));
        ASSERT_TRUE(zipper.AddFolder(history.c_str(), false));
        zipper.Close();
    }

    std::string Read(const CLocalHeaderReader& reader, const std::string& name, bool& whole) const
    {
        std::string bytes;
        whole = reader.Stream(LookupName(name), 1 << 20,
                              [&bytes](const char* block, std::size_t size) { bytes.append(block, size); });
        return bytes;
    }

    TestMachine machine_;
    std::string zipPath_;
};

}  // namespace

TEST_F(LocalHeaderReaderTest, AWholeArchiveReadsByItsHeadersAsByItsDirectory)
{
    CLocalHeaderReader reader;
    ASSERT_TRUE(reader.Open(zipPath_));
    EXPECT_TRUE(reader.CutOffEntries().empty());
    EXPECT_EQ(reader.WalkEnd(), "");
    bool whole = false;
    EXPECT_EQ(Read(reader, "b.txt", whole), kB);
    EXPECT_TRUE(whole);
    EXPECT_FALSE(reader.Contains(LookupName("c.txt")));
}

TEST_F(LocalHeaderReaderTest, AnArchiveCutOffInAnEntryGivesTheEntriesBeforeItAndWhatStandsOfIt)
{
    // The archive is cut 1 000 bytes behind the name of the second of the
    // two files, in whichever order the folder listed them.
    const std::string bytes = ReadWholeFile(zipPath_);
    const bool aFirst = bytes.find("a.txt") < bytes.find("b.txt");
    const std::string first = aFirst ? "a.txt" : "b.txt";
    const std::string second = aFirst ? "b.txt" : "a.txt";
    WriteWholeFile(zipPath_, bytes.substr(0, bytes.find(second) + 1000));

    CArchiveReader directory;
    EXPECT_FALSE(directory.Open(zipPath_));
    CLocalHeaderReader reader;
    ASSERT_TRUE(reader.Open(zipPath_));
    ASSERT_EQ(reader.CutOffEntries().size(), 1u);
    EXPECT_EQ(LookupName(reader.CutOffEntries()[0]), second);
    bool read = false;
    EXPECT_EQ(Read(reader, first, read), aFirst ? kA : kB);
    EXPECT_TRUE(read);
    const std::string partial = Read(reader, second, read);
    EXPECT_FALSE(read);
    EXPECT_GT(partial.size(), 500u);
    EXPECT_EQ(partial, (aFirst ? kB : kA).substr(0, partial.size()));

    CHistorySource source;
    std::string reason;
    ASSERT_TRUE(source.Open(zipPath_, reason)) << reason;
    ASSERT_EQ(source.Damage().size(), 2u);
    EXPECT_EQ(source.Damage()[1], "the archive's entry " + reader.CutOffEntries()[0] +
                                      " is cut off: what stands of it is read");
}

TEST_F(LocalHeaderReaderTest, BytesThatHoldNoLocalHeaderAreNoArchive)
{
    WriteWholeFile(zipPath_, "not a zip at all");
    CLocalHeaderReader reader;
    EXPECT_FALSE(reader.Open(zipPath_));
    CHistorySource source;
    std::string reason;
    EXPECT_FALSE(source.Open(zipPath_, reason));
}

// What an entry declares it holds, by the central directory or by its own
// header where the directory is cut off; a folder's files and missing
// entries declare nothing.
TEST_F(LocalHeaderReaderTest, EachEntryDeclaresItsSizeInTheDirectoryAndInItsHeader)
{
    std::string reason;
    CHistorySource whole;
    ASSERT_TRUE(whole.Open(zipPath_, reason)) << reason;
    EXPECT_EQ(whole.DeclaredSize("b.txt"), kB.size());
    EXPECT_EQ(whole.DeclaredSize("A.TXT"), kA.size());
    EXPECT_EQ(whole.DeclaredSize("c.txt"), std::nullopt);

    const std::string bytes = ReadWholeFile(zipPath_);
    WriteWholeFile(zipPath_, bytes.substr(0, std::max(bytes.rfind("a.txt"), bytes.rfind("b.txt"))));
    CHistorySource cut;
    ASSERT_TRUE(cut.Open(zipPath_, reason)) << reason;
    ASSERT_FALSE(cut.Damage().empty());
    EXPECT_EQ(cut.DeclaredSize("b.txt"), kB.size());
    EXPECT_EQ(cut.DeclaredSize("a.txt"), kA.size());

    CHistorySource folder;
    ASSERT_TRUE(folder.Open(machine_.HistoryFolder(), reason)) << reason;
    EXPECT_EQ(folder.DeclaredSize("b.txt"), std::nullopt);
}

// Deflated data damaged in the middle of a small entry of an installer's
// log, whose lines deflate to back-references, so that the damage makes one
// lead where no data is: the bytes inflated ahead of the damage are handed
// over, and the entry is not whole.
TEST_F(LocalHeaderReaderTest, ADamagedEntryGivesTheBytesAheadOfItsDamage)
{
    std::string log;
    for (int line = 0; line < 400; ++line)
        log += "Line " + std::to_string(10000 + line) + " of the installer's log: copying file C:\\ZOR\\bin\\f" +
               std::to_string(line % 37) + ".dll\r\n";
    const std::string history = machine_.HistoryFolder() + "\\logs";
    MakeFolders(history);
    WriteWholeFile(history + "\\setup.log", log);
    const std::string zipPath = machine_.Root() + "\\damaged.zip";
    CZipper zipper(nullptr, nullptr, false);
    ASSERT_TRUE(zipper.Open(zipPath.c_str(), history.c_str(), false));
    ASSERT_TRUE(zipper.AddFolder(history.c_str(), false));
    zipper.Close();
    std::string bytes = ReadWholeFile(zipPath);
    const std::size_t data = bytes.find("setup.log") + 9;
    const std::size_t middle = data + (bytes.find("setup.log", data) - data) / 2;
    for (std::size_t at = middle; at < middle + 8; ++at)
        bytes[at] = static_cast<char>(bytes[at] ^ 0x5A);
    WriteWholeFile(zipPath, bytes);

    CArchiveReader reader;
    ASSERT_TRUE(reader.Open(zipPath));
    std::string read;
    EXPECT_FALSE(reader.Stream(LookupName("setup.log"), 1 << 20,
                               [&read](const char* block, std::size_t size) { read.append(block, size); }));
    ASSERT_GT(read.size(), 1000u);
    EXPECT_LT(read.size(), log.size());
    EXPECT_EQ(read.substr(0, 1000), log.substr(0, 1000));
}
