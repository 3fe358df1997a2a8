#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

std::string ReadInBlocks(platform::ExclusiveReadFile& file, std::uint32_t blockSize,
                         std::vector<std::uint32_t>& blockSizes)
{
    std::string content;
    std::vector<char> block(blockSize);
    std::uint32_t got = 0;
    while (file.Read(block.data(), blockSize, got)) {
        blockSizes.push_back(got);
        if (got == 0)
            break;
        content.append(block.data(), got);
    }
    return content;
}

}  // namespace

TEST(ExclusiveReadFile, RefusesFileThisProcessHoldsOpenForWriting)
{
    TestMachine machine;
    const std::string path = machine.Root() + "\\busy.txt";
    WriteWholeFile(path, "first");
    std::ofstream writer(platform::SystemPath(path), std::ios::app);
    ASSERT_TRUE(writer.is_open());
    platform::ExclusiveReadFile file;

    EXPECT_FALSE(file.Open(path));
}

TEST(ExclusiveReadFile, AcceptsTheFileOnceTheWriterClosedIt)
{
    TestMachine machine;
    const std::string path = machine.Root() + "\\busy.txt";
    std::ofstream writer(platform::SystemPath(path), std::ios::binary);
    writer << "written";
    platform::ExclusiveReadFile file;
    ASSERT_FALSE(file.Open(path));
    writer.close();

    ASSERT_TRUE(file.Open(path));
    std::vector<std::uint32_t> blocks;
    EXPECT_EQ("written", ReadInBlocks(file, 64, blocks));
}

TEST(ExclusiveReadFile, ReadsInBlocksAndEndsWithAnEmptyRead)
{
    TestMachine machine;
    const std::string path = machine.Root() + "\\data.bin";
    std::string content;
    for (int i = 0; i < 5000; ++i)
        content += static_cast<char>('a' + i % 26);
    WriteWholeFile(path, content);
    platform::ExclusiveReadFile file;
    ASSERT_TRUE(file.Open(path));

    std::vector<std::uint32_t> blocks;
    const std::string read = ReadInBlocks(file, 2048, blocks);

    EXPECT_EQ(content, read);
    const std::vector<std::uint32_t> expected = {2048, 2048, 904, 0};
    EXPECT_EQ(expected, blocks);
}

TEST(ExclusiveReadFile, RefusesFolderAndMissingFile)
{
    TestMachine machine;
    platform::ExclusiveReadFile file;

    EXPECT_FALSE(file.Open(machine.Root()));
    EXPECT_FALSE(file.Open(machine.Root() + "\\missing.txt"));
}

TEST(ExclusiveReadFile, ClosedFileReadsNothing)
{
    platform::ExclusiveReadFile file;
    char block[16];
    std::uint32_t got = 99;

    EXPECT_FALSE(file.Read(block, sizeof block, got));
    EXPECT_EQ(0u, got);
}

TEST(ExclusiveReadFile, CanBeOpenedAgainAfterClose)
{
    TestMachine machine;
    const std::string path = machine.Root() + "\\again.txt";
    WriteWholeFile(path, "again");
    platform::ExclusiveReadFile file;

    ASSERT_TRUE(file.Open(path));
    file.Close();
    platform::ExclusiveReadFile other;
    EXPECT_TRUE(other.Open(path));
}
