// Symbolic links, where the file system can hold them: a copy and an
// exclusive read refuse a link in the last component, and a folder search
// marks a link as a reparse point, so that the archive's walk passes over it.
#include <gtest/gtest.h>

#include <string>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

platform::FolderEntry EntryOf(const std::string& path)
{
    platform::FolderSearch search;
    platform::FolderEntry entry;
    EXPECT_TRUE(search.First(path, entry));
    return entry;
}

}  // namespace

TEST(Links, ACopyRefusesALinkToAFileAndMakesNoTarget)
{
    TestMachine machine;
    WriteWholeFile(machine.Root() + "\\secret", "secret");
    if (!MakeSymbolicLink(machine.Root() + "\\secret", machine.Root() + "\\link.log", false))
        GTEST_SKIP() << "this file system holds no symbolic links";

    EXPECT_FALSE(platform::CopyFileNoOverwrite(machine.Root() + "\\link.log", machine.Root() + "\\copy.log"));
    EXPECT_FALSE(PathExists(machine.Root() + "\\copy.log"));
}

TEST(Links, AnExclusiveReadRefusesALinkToAFile)
{
    TestMachine machine;
    WriteWholeFile(machine.Root() + "\\secret", "secret");
    if (!MakeSymbolicLink(machine.Root() + "\\secret", machine.Root() + "\\link.log", false))
        GTEST_SKIP() << "this file system holds no symbolic links";

    platform::ExclusiveReadFile file;
    EXPECT_FALSE(file.Open(machine.Root() + "\\link.log"));
    EXPECT_TRUE(file.Open(machine.Root() + "\\secret"));
}

TEST(Links, AFolderSearchMarksLinksAsReparsePointsAndNothingElse)
{
    TestMachine machine;
    MakeFolders(machine.Root() + "\\folder");
    WriteWholeFile(machine.Root() + "\\file", "x");
    if (!MakeSymbolicLink(machine.Root() + "\\folder", machine.Root() + "\\folder-link", true) ||
        !MakeSymbolicLink(machine.Root() + "\\file", machine.Root() + "\\file-link", false))
        GTEST_SKIP() << "this file system holds no symbolic links";

    EXPECT_NE(EntryOf(machine.Root() + "\\folder-link").attributes & platform::kAttributeReparsePoint, 0u);
    EXPECT_NE(EntryOf(machine.Root() + "\\file-link").attributes & platform::kAttributeReparsePoint, 0u);
    EXPECT_EQ(EntryOf(machine.Root() + "\\folder").attributes & platform::kAttributeReparsePoint, 0u);
    EXPECT_EQ(EntryOf(machine.Root() + "\\file").attributes & platform::kAttributeReparsePoint, 0u);
}
