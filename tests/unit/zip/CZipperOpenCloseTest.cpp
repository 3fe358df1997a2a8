#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "support/WineHost.h"
#include "unit/zip/ZipperFixture.h"

namespace fs = std::filesystem;

using CZipperOpenClose = ZipperFixture;

namespace {

using Names = std::vector<std::string>;

// Runs the test body with the current directory set to `folder`.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const std::string& folder) : previous_(fs::current_path())
    {
        fs::current_path(platform::SystemPath(folder));
    }
    ~CurrentDirectory() { fs::current_path(previous_); }

private:
    fs::path previous_;
};

void MakeArchiveWithOneEntry(const std::string& zipPath, const char* name)
{
    CZipper zipper(zipPath.c_str(), nullptr, false);
    ASSERT_TRUE(zipper.AddBuffer("old", 3, name));
    ASSERT_TRUE(zipper.Close());
}

}  // namespace

TEST_F(CZipperOpenClose, OpenMakesTheFileUnderTheNameAsGivenWithoutAddingAnEnding)
{
    const std::string zipPath = At("x");
    CZipper zipper(nullptr, nullptr, false);
    ASSERT_TRUE(zipper.Open(zipPath.c_str(), machine.Root().c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_TRUE(PathExists(zipPath));
    EXPECT_FALSE(PathExists(At("x.zip")));
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}

TEST_F(CZipperOpenClose, OpenWithoutAFileNameFailsAndLeavesTheObjectClosed)
{
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_FALSE(zipper.Open(nullptr, machine.Root().c_str(), false));
    EXPECT_FALSE(zipper.AddBuffer("x", 1, "x.txt"));
    EXPECT_FALSE(zipper.Open("", machine.Root().c_str(), false));
    EXPECT_FALSE(zipper.AddBuffer("x", 1, "x.txt"));
}

TEST_F(CZipperOpenClose, OpenInAFolderThatDoesNotExistFails)
{
    const std::string zipPath = At("missing\\x.zip");
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_FALSE(zipper.Open(zipPath.c_str(), machine.Root().c_str(), false));
    EXPECT_FALSE(zipper.AddBuffer("x", 1, "x.txt"));
    EXPECT_FALSE(PathExists(zipPath));
}

TEST_F(CZipperOpenClose, OpenResolvesARelativeNameAgainstTheCurrentDirectory)
{
    PutFolder("work");
    {
        CurrentDirectory inWork(At("work"));
        CZipper zipper(nullptr, nullptr, false);
        ASSERT_TRUE(zipper.Open("relative.zip", machine.Root().c_str(), false));
        ASSERT_TRUE(zipper.AddBuffer("data", 4, "a.txt"));
        ASSERT_TRUE(zipper.Close());
    }
    EXPECT_EQ(Kept(At("work\\relative.zip")).Names(), Names{"a.txt"});
}

TEST_F(CZipperOpenClose, OpenReplacesAnExistingArchiveRatherThanExtendingIt)
{
    const std::string zipPath = At("x.zip");
    MakeArchiveWithOneEntry(zipPath, "old.txt");
    CZipper zipper(zipPath.c_str(), machine.Root().c_str(), false);
    ASSERT_TRUE(zipper.AddBuffer("new", 3, "new.txt"));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), Names{"new.txt"});
}

TEST_F(CZipperOpenClose, OpenReplacesAFileThatIsNoArchive)
{
    const std::string zipPath = PutFile("x.zip", "this is no archive");
    CZipper zipper(zipPath.c_str(), machine.Root().c_str(), false);
    ASSERT_TRUE(zipper.AddBuffer("new", 3, "new.txt"));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), Names{"new.txt"});
}

// The system refuses to write a file whose attribute is read-only, to every
// user: such an archive is neither replaced nor extended.
TEST_F(CZipperOpenClose, AReadOnlyArchiveIsNeitherReplacedNorExtended)
{
    if (WineWritesReadOnlyFiles())
        GTEST_SKIP() << kWineWritesReadOnlyFiles;
    const std::string zipPath = PutFile("x.zip", "an earlier archive");
    const ReadOnlyWhileAlive readOnly(zipPath);
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_FALSE(zipper.Open(zipPath.c_str(), machine.Root().c_str(), false));
    EXPECT_FALSE(zipper.Open(zipPath.c_str(), machine.Root().c_str(), true));
    EXPECT_FALSE(zipper.AddBuffer("new", 3, "new.txt"));
    EXPECT_EQ(ReadWholeFile(zipPath), "an earlier archive");
}

TEST_F(CZipperOpenClose, OpenWithAppendAddsToAnExistingArchive)
{
    const std::string zipPath = At("x.zip");
    MakeArchiveWithOneEntry(zipPath, "old.txt");
    CZipper zipper(zipPath.c_str(), machine.Root().c_str(), true);
    ASSERT_TRUE(zipper.AddBuffer("new", 3, "new.txt"));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), (Names{"old.txt", "new.txt"}));
}

TEST_F(CZipperOpenClose, OpenWithAppendCreatesAMissingArchive)
{
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), machine.Root().c_str(), true);
    ASSERT_TRUE(zipper.AddBuffer("new", 3, "new.txt"));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), Names{"new.txt"});
}

TEST_F(CZipperOpenClose, OpenOnAnOpenArchiveEndsTheFirstOneAndClearsTheCounters)
{
    const std::string first = At("first.zip");
    const std::string second = At("second.zip");
    CZipper zipper(first.c_str(), machine.Root().c_str(), false);
    ASSERT_TRUE(zipper.AddBuffer("one", 3, "one.txt"));
    ASSERT_TRUE(zipper.Open(second.c_str(), machine.Root().c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_EQ(zipper.GetCounters().uncompressedBytes, 0u);
    ASSERT_TRUE(zipper.AddBuffer("two", 3, "two.txt"));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(first, ".first").Names(), Names{"one.txt"});
    EXPECT_EQ(Kept(second, ".second").Names(), Names{"two.txt"});
}

TEST_F(CZipperOpenClose, CloseWithoutAnOpenArchiveSucceeds)
{
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_TRUE(zipper.Close());
    EXPECT_TRUE(zipper.Close());
}

TEST_F(CZipperOpenClose, CountersSurviveCloseAndTheNextOpenClearsThem)
{
    const std::string zipPath = At("x.zip");
    PutFile("store\\a.txt", "12345");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    ASSERT_TRUE(zipper.AddFolder(At("store").c_str(), false));
    ASSERT_TRUE(zipper.AddBuffer("678", 3, "b.txt"));
    ASSERT_TRUE(zipper.Close());
    const ZipCounters run = zipper.GetCounters();
    EXPECT_EQ(run.fileCount, 2u);
    EXPECT_EQ(run.folderCount, 1u);
    EXPECT_EQ(run.uncompressedBytes, 8u);
    Kept(zipPath);

    ASSERT_TRUE(zipper.Open(At("y.zip").c_str(), At("store").c_str(), false));
    const ZipCounters cleared = zipper.GetCounters();
    EXPECT_EQ(cleared.fileCount, 0u);
    EXPECT_EQ(cleared.folderCount, 0u);
    EXPECT_EQ(cleared.uncompressedBytes, 0u);
    ASSERT_TRUE(zipper.Close());
    Kept(At("y.zip"), ".second");
}

TEST_F(CZipperOpenClose, AClosedObjectRefusesEveryAdd)
{
    const std::string file = PutFile("store\\a.txt", "abc");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), At("store").c_str(), false);
    ASSERT_TRUE(zipper.Close());
    EXPECT_FALSE(zipper.AddFolder(At("store").c_str(), false));
    EXPECT_FALSE(zipper.AddFile(file.c_str(), false));
    EXPECT_FALSE(zipper.AddFileAs(file.c_str(), "logs"));
    EXPECT_FALSE(zipper.AddBuffer("abc", 3, "b.txt"));
    EXPECT_EQ(zipper.GetCounters().folderCount, 0u);
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}

TEST_F(CZipperOpenClose, TheDestructorEndsAnOpenArchive)
{
    const std::string zipPath = At("x.zip");
    {
        CZipper zipper(zipPath.c_str(), machine.Root().c_str(), false);
        ASSERT_TRUE(zipper.AddBuffer("abc", 3, "a.txt"));
    }
    EXPECT_EQ(Kept(zipPath).Names(), Names{"a.txt"});
}

TEST_F(CZipperOpenClose, TheConstructorWithAPathThatCannotBeOpenedLeavesAClosedObject)
{
    CZipper zipper(At("missing\\x.zip").c_str(), machine.Root().c_str(), false);
    EXPECT_FALSE(zipper.AddBuffer("abc", 3, "a.txt"));
    EXPECT_TRUE(zipper.Close());
}

TEST_F(CZipperOpenClose, WithoutARootTheArchivesOwnFolderIsTheRoot)
{
    const std::string file = PutFile("x\\a.txt", "abc");
    const std::string zipPath = At("x\\archive.zip");
    CZipper zipper(zipPath.c_str(), nullptr, false);
    ASSERT_TRUE(zipper.AddFile(file.c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), Names{"a.txt"});
}

TEST_F(CZipperOpenClose, TheRootLosesTrailingBlanksAndBackslashes)
{
    const std::string file = PutFile("store\\sub\\a.txt", "abc");
    const std::string zipPath = At("x.zip");
    const std::string root = At("store") + "\\\\ ";
    CZipper zipper(zipPath.c_str(), root.c_str(), false);
    ASSERT_TRUE(zipper.AddFile(file.c_str(), false));
    ASSERT_TRUE(zipper.Close());
    EXPECT_EQ(Kept(zipPath).Names(), Names{"sub\\a.txt"});
}

TEST_F(CZipperOpenClose, WithAnEmptyRootAnEntryIsNamedByItsWholePath)
{
    if (platform::IsAbsolutePath("C:\\x"))
        GTEST_SKIP() << "a whole path begins with a drive on this platform";
    const std::string file = PutFile("a.txt", "abc");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), "", false);
    ASSERT_TRUE(zipper.AddFile(file.c_str(), false));
    ASSERT_TRUE(zipper.Close());
    // Leading separators go, so that no name is absolute inside the archive.
    const std::string whole = file.substr(file.find_first_not_of("\\/"));
    EXPECT_EQ(Kept(zipPath).Names(), Names{whole});
}

// An entry named by a whole path would begin with its drive, which would take
// an unpacking program out of the folder that it unpacks into.
TEST_F(CZipperOpenClose, WithAnEmptyRootAWholePathThatBeginsWithADriveGetsNoEntry)
{
    if (!platform::IsAbsolutePath("C:\\x"))
        GTEST_SKIP() << "paths name no drives on this platform";
    const std::string file = PutFile("a.txt", "abc");
    const std::string zipPath = At("x.zip");
    CZipper zipper(zipPath.c_str(), "", false);
    EXPECT_FALSE(zipper.AddFile(file.c_str(), false));
    EXPECT_EQ(zipper.GetCounters().fileCount, 0u);
    ASSERT_TRUE(zipper.Close());
    EXPECT_TRUE(Kept(zipPath).entries.empty());
}

TEST_F(CZipperOpenClose, ARootLongerThanThePathLimitFailsBeforeTheFileIsMade)
{
    const std::string zipPath = At("x.zip");
    const std::string root = At(std::string(300, 'r'));
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_FALSE(zipper.Open(zipPath.c_str(), root.c_str(), false));
    EXPECT_FALSE(PathExists(zipPath));
}

TEST_F(CZipperOpenClose, ANameLongerThanThePathLimitFails)
{
    const std::string zipPath = At(std::string(300, 'z') + ".zip");
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_FALSE(zipper.Open(zipPath.c_str(), machine.Root().c_str(), false));
}

TEST_F(CZipperOpenClose, ResolvingPutsARelativePathUnderTheRoot)
{
    CZipper zipper(At("x.zip").c_str(), At("store").c_str(), false);
    char path[CZipper::kPathBufferSize] = "sub\\a.txt";
    zipper.ResolveSourcePath(path);
    EXPECT_EQ(std::string(path), At("store") + "\\sub\\a.txt");
    zipper.Close();
    Kept(At("x.zip"));
}

TEST_F(CZipperOpenClose, ResolvingLeavesAnAbsolutePathAsItIs)
{
    CZipper zipper(At("x.zip").c_str(), At("store").c_str(), false);
    const std::string absolute = At("elsewhere\\a.txt");
    char path[CZipper::kPathBufferSize];
    std::strcpy(path, absolute.c_str());
    zipper.ResolveSourcePath(path);
    EXPECT_EQ(std::string(path), absolute);
    zipper.Close();
    Kept(At("x.zip"));
}

TEST_F(CZipperOpenClose, ResolvingWithoutARootLeavesARelativePathAsItIs)
{
    CZipper zipper(At("x.zip").c_str(), "", false);
    char path[CZipper::kPathBufferSize] = "sub\\a.txt";
    zipper.ResolveSourcePath(path);
    EXPECT_EQ(std::string(path), "sub\\a.txt");
    zipper.Close();
    Kept(At("x.zip"));
}

TEST_F(CZipperOpenClose, ResolvingAPathThatWouldNotFitEmptiesIt)
{
    CZipper zipper(At("x.zip").c_str(), At("store").c_str(), false);
    char path[CZipper::kPathBufferSize];
    const std::string relative(CZipper::kPathBufferSize - 2, 'p');
    std::strcpy(path, relative.c_str());
    zipper.ResolveSourcePath(path);
    EXPECT_EQ(std::string(path), "");
    zipper.Close();
    Kept(At("x.zip"));
}
