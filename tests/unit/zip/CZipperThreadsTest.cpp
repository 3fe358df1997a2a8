// The archive of a folder is the same byte for byte whatever the number of
// threads that deflate its files, and each file's entry holds the bytes that
// minizip's own deflate writes for the same data.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "unit/zip/ZipperFixture.h"

namespace {

// Installer-log-like text that deflates as a real log does: repeated words,
// numbers that change from line to line.
std::string LogText(std::size_t size, std::uint32_t seed)
{
    std::string text;
    std::uint32_t state = seed;
    while (text.size() < size) {
        state = state * 1103515245u + 12345u;
        text += "MSI (s) (7C:44): Executing op: FileCopy(SourceName=zor" + std::to_string(state % 4000) +
                ".dll,FileSize=" + std::to_string(state % 9000000) + ",Version=9.1." +
                std::to_string(state % 97) + ")\r\n";
    }
    text.resize(size);
    return text;
}

// Bytes that deflate can't shrink: their compressed form is larger than the
// part of a file that a deflating thread holds in memory.
std::string NoiseBytes(std::size_t size, std::uint32_t seed)
{
    std::string bytes(size, '\0');
    std::uint32_t state = seed;
    for (char& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<char>(state & 0xFFu);
    }
    return bytes;
}

}  // namespace

class CZipperThreads : public ZipperFixture {
protected:
    void SetUp() override
    {
        store = At("store");
        PutFile("store\\History.ini", "[History]\r\nCount=24\r\n");
        for (int event = 0; event < 24; ++event) {
            const std::string folder = "store\\E" + std::to_string(event) + "\\";
            PutFile(folder + "ZORInstallEvent.Log", LogText(2000 + 700 * event, 7u + event));
            PutFile(folder + "install.log", LogText(9000 + 11000 * (event % 7), 100u + event));
        }
        PutFile("store\\E3\\empty.log", "");
        PutFile("store\\E5\\dump.bin", NoiseBytes(1536 * 1024, 5));
        PutFile("store\\Large\\huge.log", LogText(5 * 1024 * 1024 + 123, 11));
        PutFolder("store\\Empty\\Deeper");
        PutFile("store\\.lock", "passed over");
    }

    // Packs the store with `threads` threads; the archive's bytes.
    std::string Pack(unsigned threads, const std::string& archiveName, ZipCounters* counters = nullptr)
    {
        const std::string zipPath = At(archiveName);
        CZipper zipper(nullptr, nullptr, false);
        zipper.SetThreadCount(threads);
        EXPECT_TRUE(zipper.Open(zipPath.c_str(), store.c_str(), false));
        EXPECT_TRUE(zipper.AddFolder(store.c_str(), false));
        EXPECT_TRUE(zipper.Close());
        if (counters != nullptr)
            *counters = zipper.GetCounters();
        Kept(zipPath, "." + archiveName);
        return ReadWholeFile(zipPath);
    }

    std::string store;
};

TEST_F(CZipperThreads, OneAndFourThreadsWriteTheSameArchiveByteForByte)
{
    const std::string one = Pack(1, "one.zip");
    const std::string four = Pack(4, "four.zip");
    EXPECT_GT(one.size(), 1000000u);
    EXPECT_EQ(one.size(), four.size());
    EXPECT_TRUE(one == four) << "the archives differ";
}

TEST_F(CZipperThreads, TwoThreadsWriteTheSameArchiveAsOne)
{
    EXPECT_TRUE(Pack(1, "one.zip") == Pack(2, "two.zip")) << "the archives differ";
}

TEST_F(CZipperThreads, TheCountersAreTheSameWhateverTheNumberOfThreads)
{
    ZipCounters one;
    ZipCounters four;
    Pack(1, "one.zip", &one);
    Pack(4, "four.zip", &four);
    EXPECT_EQ(one.fileCount, 52u);
    EXPECT_EQ(four.fileCount, one.fileCount);
    EXPECT_EQ(four.folderCount, one.folderCount);
    EXPECT_EQ(four.uncompressedBytes, one.uncompressedBytes);
}

TEST_F(CZipperThreads, EntriesFollowTheWalkWithFourThreads)
{
    Pack(4, "four.zip");
    EXPECT_EQ(ReadZipDirectory(At("four.zip")).Names(), ExpectedWalk(store));
}

// minizip deflates an entry from memory itself; the same data packed from a
// file by the threads must come out as the same stored bytes, with the same
// checksum, sizes and text flag.
TEST_F(CZipperThreads, EachFilesEntryHoldsTheBytesOfMinizipsOwnDeflate)
{
    Pack(4, "four.zip");
    const ZipTestArchive threaded = ReadZipDirectory(At("four.zip"));
    const std::string referencePath = At("reference.zip");
    const char* names[] = {"E6\\install.log", "E3\\empty.log", "E5\\dump.bin", "Large\\huge.log", "History.ini"};
    {
        CZipper reference(referencePath.c_str(), store.c_str(), false);
        for (const char* name : names) {
            const std::string content = ReadWholeFile(store + "\\" + name);
            ASSERT_TRUE(reference.AddBuffer(content.data(), static_cast<std::uint32_t>(content.size()), name));
        }
        ASSERT_TRUE(reference.Close());
    }
    const ZipTestArchive minizips = Kept(referencePath, ".reference");
    for (const char* name : names) {
        const ZipTestEntry* ours = threaded.Find(name);
        const ZipTestEntry* theirs = minizips.Find(name);
        ASSERT_NE(ours, nullptr) << name;
        ASSERT_NE(theirs, nullptr) << name;
        EXPECT_EQ(ours->method, theirs->method) << name;
        EXPECT_EQ(ours->crc, theirs->crc) << name;
        EXPECT_EQ(ours->uncompressedSize, theirs->uncompressedSize) << name;
        EXPECT_EQ(ours->compressedSize, theirs->compressedSize) << name;
        EXPECT_EQ(ours->internalAttributes, theirs->internalAttributes) << name;
        EXPECT_TRUE(ours->data == theirs->data) << name;
    }
    EXPECT_EQ(threaded.Find("E6\\install.log")->internalAttributes, 1u);
    EXPECT_EQ(threaded.Find("E5\\dump.bin")->internalAttributes, 0u);
}

// A folder's entry, written among the files, is minizip's empty deflated entry.
TEST_F(CZipperThreads, FolderEntriesHoldTheEmptyDeflateStream)
{
    Pack(4, "four.zip");
    const ZipTestArchive archive = ReadZipDirectory(At("four.zip"));
    const ZipTestEntry* folder = archive.Find("Empty\\Deeper");
    ASSERT_NE(folder, nullptr);
    EXPECT_EQ(folder->data, std::string("\x03\x00", 2));
    EXPECT_EQ(folder->internalAttributes, 0u);
}
