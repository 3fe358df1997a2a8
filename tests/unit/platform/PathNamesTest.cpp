#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/FileSystem.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace {

// The current folder with backslashes, as the system's paths are written.
std::string CurrentFolder()
{
    std::string folder = fs::current_path().string();
    std::replace(folder.begin(), folder.end(), '/', '\\');
    while (folder.size() > 1 && folder.back() == '\\')
        folder.pop_back();
    return folder;
}

// Where paths name drives, their absolute paths begin with one.
bool PathsNameDrives()
{
    return fs::current_path().string().find(':') != std::string::npos;
}

}  // namespace

TEST(GetFullPathName, ResolvesARelativeNameAgainstTheCurrentFolder)
{
    std::string full;

    ASSERT_TRUE(platform::GetFullPathName("x.zip", 260, full));
    EXPECT_EQ(CurrentFolder() + "\\x.zip", full);
}

TEST(GetFullPathName, FoldsDotAndDotDotSegments)
{
    std::string full;

    ASSERT_TRUE(platform::GetFullPathName(".\\a\\..\\b", 260, full));
    EXPECT_EQ(CurrentFolder() + "\\b", full);
}

TEST(GetFullPathName, KeepsAnAbsolutePathAsItIs)
{
    TestMachine machine;
    std::string full;

    ASSERT_TRUE(platform::GetFullPathName(machine.Root() + "\\sub\\out.zip", 260, full));
    std::string expected = machine.Root() + "\\sub\\out.zip";
    std::replace(expected.begin(), expected.end(), '/', '\\');
    EXPECT_EQ(expected, full);
}

TEST(GetFullPathName, FailsCleanlyWhenTheNameIsLongerThanTheLimit)
{
    const std::string name(300, 'n');
    std::string full = "left over";

    EXPECT_FALSE(platform::GetFullPathName(name, 260, full));
    EXPECT_TRUE(full.empty());
}

TEST(GetFullPathName, LimitCountsTheTerminator)
{
    const std::string expected = CurrentFolder() + "\\limit.zip";
    std::string full;

    EXPECT_FALSE(platform::GetFullPathName("limit.zip", expected.size(), full));
    ASSERT_TRUE(platform::GetFullPathName("limit.zip", expected.size() + 1, full));
    EXPECT_EQ(expected, full);
}

TEST(IsAbsolutePath, RelativeNamesAreNotAbsolute)
{
    EXPECT_FALSE(platform::IsAbsolutePath(""));
    EXPECT_FALSE(platform::IsAbsolutePath("x.zip"));
    EXPECT_FALSE(platform::IsAbsolutePath("sub\\x.zip"));
    EXPECT_FALSE(platform::IsAbsolutePath(".\\x.zip"));
    EXPECT_FALSE(platform::IsAbsolutePath("..\\x.zip"));
}

TEST(IsAbsolutePath, TheSystemsOwnFoldersAreAbsolute)
{
    TestMachine machine;

    EXPECT_TRUE(platform::IsAbsolutePath(machine.Root()));
    EXPECT_TRUE(platform::IsAbsolutePath(fs::current_path().string()));
}

TEST(IsAbsolutePath, DriveNamesCountWhereThePlatformHasDrives)
{
    EXPECT_EQ(PathsNameDrives(), platform::IsAbsolutePath("C:\\x"));
    EXPECT_EQ(PathsNameDrives(), platform::IsAbsolutePath("x:y"));
    EXPECT_EQ(!PathsNameDrives(), platform::IsAbsolutePath("\\x"));
    EXPECT_EQ(!PathsNameDrives(), platform::IsAbsolutePath("/x"));
}

TEST(SystemPath, GivesAPathTheRuntimeCanOpen)
{
    TestMachine machine;
    const std::string file = machine.Root() + "\\sub\\f.txt";
    fs::create_directories(platform::SystemPath(machine.Root() + "\\sub"));

    std::ofstream(platform::SystemPath(file)) << "x";

    EXPECT_TRUE(fs::is_regular_file(platform::SystemPath(file)));
    EXPECT_EQ(std::string::npos, platform::SystemPath("a\\b").find(PathsNameDrives() ? '/' : '\\'));
}
