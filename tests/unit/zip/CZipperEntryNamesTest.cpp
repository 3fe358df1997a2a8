// No entry name leads an unpacking program out of the folder that it unpacks
// into: whatever the paths and the names found in the folders walked, an
// entry whose name would begin with a drive or climb out with a ".."
// component is never written.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "platform/FileSystem.h"
#include "unit/zip/ZipperFixture.h"

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

}  // namespace

using CZipperEntryNames = OpenArchiveFixture;

TEST_F(CZipperEntryNames, ARelativePathThatClimbsOutBehindItsFirstFolderFails)
{
    PutFile("store\\a.txt", "abc");
    PutFolder("store\\sub");
    EXPECT_FALSE(zipper.AddFile("sub\\..\\a.txt", false));
    EXPECT_FALSE(zipper.AddFile("sub/../a.txt", false));
    EXPECT_FALSE(zipper.AddFile(".\\..\\store\\a.txt", false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperEntryNames, AnAbsolutePathThatClimbsOutBehindTheRootFails)
{
    PutFile("store\\a.txt", "abc");
    PutFolder("store\\sub");
    EXPECT_FALSE(zipper.AddFile(At("store\\sub\\..\\a.txt").c_str(), false));
    EXPECT_FALSE(zipper.AddFile(At("store\\..\\store\\a.txt").c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperEntryNames, AFolderThatClimbsOutBehindTheRootGetsNoEntryNorDoItsContents)
{
    PutFile("store\\other\\f.txt", "abc");
    PutFolder("store\\sub");
    EXPECT_TRUE(zipper.AddFolder(At("store\\sub\\..\\other").c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

TEST_F(CZipperEntryNames, ABufferNamedToClimbOutFails)
{
    EXPECT_FALSE(zipper.AddBuffer("x", 1, "a\\..\\..\\x.txt"));
    EXPECT_FALSE(zipper.AddBuffer("x", 1, "a/../x.txt"));
    EXPECT_FALSE(zipper.AddBuffer("x", 1, ".."));
    ASSERT_TRUE(zipper.AddBuffer("x", 1, "a\\..x\\x..\\...\\x.txt"));
    EXPECT_EQ(CloseAndRead().Names(), Names{"a\\..x\\x..\\...\\x.txt"});
}

TEST_F(CZipperEntryNames, AFolderInZipThatClimbsOutFails)
{
    const std::string path = PutFile("store\\a.txt", "abc");
    EXPECT_FALSE(zipper.AddFileAs(path.c_str(), ".."));
    EXPECT_FALSE(zipper.AddFileAs(path.c_str(), "logs\\..\\.."));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(CloseAndRead().entries.empty());
}

// Only a file system that takes ":" and "\" as plain characters of a name can
// hold these folders; elsewhere there is nothing to walk.
TEST_F(CZipperEntryNames, FolderNamesThatReadAsADriveOrAClimbAreLeftOutOfTheWalk)
{
    const fs::path store = platform::SystemPath(At("store"));
    std::error_code failed;
    fs::create_directory(store / "E:", failed);
    fs::create_directory(store / "q\\..\\..\\w", failed);
    if (FolderNames(At("store")) != Names{"E:", "q\\..\\..\\w"})
        GTEST_SKIP() << "this file system keeps no such names";
    WriteWholeFile((store / "E:" / "d.txt").string(), "abc");
    PutFile("store\\kept.txt", "abc");
    EXPECT_TRUE(zipper.AddFolder(At("store").c_str(), false));
    EXPECT_EQ(CloseAndRead().Names(), Names{"kept.txt"});
}
