#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

TEST(FileAttributes, PlainFileHasArchiveBitAndNoOther)
{
    TestMachine machine;
    const std::string file = machine.Root() + "\\plain.txt";
    WriteWholeFile(file, "content");

    const std::uint32_t attributes = platform::GetFileAttributes(file);

    EXPECT_NE(platform::kInvalidFileAttributes, attributes);
    EXPECT_EQ(0x20u, attributes & 0x20u);
    EXPECT_EQ(0u, attributes & 0x10u);
    EXPECT_EQ(0u, attributes & 0x1u);
}

TEST(FileAttributes, FolderHasDirectoryBit)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\sub";
    MakeFolders(folder);

    const std::uint32_t attributes = platform::GetFileAttributes(folder);

    EXPECT_NE(platform::kInvalidFileAttributes, attributes);
    EXPECT_EQ(0x10u, attributes & 0x10u);
}

TEST(FileAttributes, FileWithoutWriteAccessHasReadOnlyBit)
{
    TestMachine machine;
    const std::string file = machine.Root() + "\\locked.txt";
    WriteWholeFile(file, "content");
    SetWritable(file, false);

    const std::uint32_t attributes = platform::GetFileAttributes(file);

    SetWritable(file, true);
    EXPECT_EQ(0x1u, attributes & 0x1u);
    EXPECT_EQ(0u, attributes & 0x10u);
}

TEST(FileAttributes, MissingPathIsInvalid)
{
    TestMachine machine;
    EXPECT_EQ(0xFFFFFFFFu, platform::GetFileAttributes(machine.Root() + "\\missing.txt"));
}

TEST(StatPath, TellsFileFolderAndMissing)
{
    TestMachine machine;
    const std::string file = machine.Root() + "\\f.txt";
    WriteWholeFile(file, "x");

    const platform::PathStatus ofFile = platform::StatPath(file);
    const platform::PathStatus ofFolder = platform::StatPath(machine.Root());
    const platform::PathStatus ofMissing = platform::StatPath(machine.Root() + "\\none");

    EXPECT_TRUE(ofFile.regularFile && !ofFile.directory);
    EXPECT_TRUE(ofFolder.directory && !ofFolder.regularFile);
    EXPECT_FALSE(ofMissing.regularFile || ofMissing.directory);
}
