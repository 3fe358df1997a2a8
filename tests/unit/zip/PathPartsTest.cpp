#include <gtest/gtest.h>

#include <string>

#include "zip/PathParts.h"

TEST(PathParts, SplitsDriveDirectoryNameAndExtension)
{
    const PathParts parts = SplitPath("C:\\x\\dir.old\\a.txt");
    EXPECT_EQ(parts.drive, "C:");
    EXPECT_EQ(parts.directory, "\\x\\dir.old\\");
    EXPECT_EQ(parts.name, "a");
    EXPECT_EQ(parts.extension, ".txt");
}

TEST(PathParts, TakesTheDirectoryUpToTheLastSlashOfEitherKind)
{
    const PathParts parts = SplitPath("/tmp/x\\sub/b");
    EXPECT_EQ(parts.drive, "");
    EXPECT_EQ(parts.directory, "/tmp/x\\sub/");
    EXPECT_EQ(parts.name, "b");
    EXPECT_EQ(parts.extension, "");
}

TEST(PathParts, TakesTheExtensionFromTheLastDotOfTheFilePart)
{
    const PathParts parts = SplitPath("C:\\a.b\\c.tar.gz");
    EXPECT_EQ(parts.directory, "\\a.b\\");
    EXPECT_EQ(parts.name, "c.tar");
    EXPECT_EQ(parts.extension, ".gz");
}

TEST(PathParts, ADotNamedFileIsAllExtension)
{
    const PathParts parts = SplitPath("x\\.hidden");
    EXPECT_EQ(parts.name, "");
    EXPECT_EQ(parts.extension, ".hidden");
}

TEST(PathParts, ADriveNeedsALetterAndAColonAtTheStart)
{
    EXPECT_EQ(SplitPath("1:\\x").drive, "");
    EXPECT_EQ(SplitPath("1:\\x").directory, "1:\\");
    EXPECT_EQ(SplitPath("ab:c").drive, "");
    EXPECT_EQ(SplitPath("d:").drive, "d:");
    EXPECT_EQ(SplitPath("d:").name, "");
}

TEST(PathParts, APathWithoutSeparatorIsOnlyNameAndExtension)
{
    const PathParts parts = SplitPath("x.zip");
    EXPECT_EQ(parts.drive, "");
    EXPECT_EQ(parts.directory, "");
    EXPECT_EQ(parts.name, "x");
    EXPECT_EQ(parts.extension, ".zip");
}

TEST(PathParts, ANullPathSplitsIntoEmptyParts)
{
    const PathParts parts = SplitPath(nullptr);
    EXPECT_EQ(parts.drive + parts.directory + parts.name + parts.extension, "");
}

TEST(PathParts, JoiningAddsTheBackslashBehindADirectoryAndTheDotAheadOfAnExtension)
{
    EXPECT_EQ(MakePath("C:", "\\x", "a", "zip"), "C:\\x\\a.zip");
    EXPECT_EQ(MakePath("C:", "\\x\\", "a", ".zip"), "C:\\x\\a.zip");
    EXPECT_EQ(MakePath("", "/tmp/x/", "a", ""), "/tmp/x/a");
}

TEST(PathParts, JoiningWithoutDirectoryAddsNoSeparator)
{
    EXPECT_EQ(MakePath("", "", "f.txt", ""), "f.txt");
    EXPECT_EQ(MakePath("", "", "*", "*"), "*.*");
}

TEST(PathParts, JoiningWhatWasSplitGivesThePathBack)
{
    const char* path = "C:\\x\\dir.old\\a.txt";
    const PathParts parts = SplitPath(path);
    EXPECT_EQ(MakePath(parts.drive, parts.directory, parts.name, parts.extension), path);
}

TEST(PathParts, StoringAPathThatFitsCopiesItWithItsTerminator)
{
    char buffer[261];
    const std::string longest(260, 'a');
    EXPECT_TRUE(StorePath(buffer, sizeof buffer, longest));
    EXPECT_EQ(std::string(buffer), longest);
}

TEST(PathParts, StoringAPathThatDoesNotFitLeavesTheBufferEmpty)
{
    char buffer[261];
    buffer[0] = 'x';
    buffer[1] = '\0';
    EXPECT_FALSE(StorePath(buffer, sizeof buffer, std::string(261, 'a')));
    EXPECT_EQ(std::string(buffer), "");
}

TEST(PathParts, BackslashAndSlashAreTheOnlySeparators)
{
    EXPECT_TRUE(IsSeparator('\\'));
    EXPECT_TRUE(IsSeparator('/'));
    EXPECT_FALSE(IsSeparator(':'));
    EXPECT_FALSE(IsSeparator('.'));
    EXPECT_FALSE(IsSeparator(' '));
    EXPECT_FALSE(IsSeparator('\0'));
}

TEST(StaysInsideFolder, PlainNamesAndNamesWithSubFoldersStayInside)
{
    EXPECT_TRUE(StaysInsideFolder("E1"));
    EXPECT_TRUE(StaysInsideFolder("C1\\E1\\setup.log"));
    EXPECT_TRUE(StaysInsideFolder("a/b"));
    EXPECT_TRUE(StaysInsideFolder("..x"));
    EXPECT_TRUE(StaysInsideFolder("x.."));
    EXPECT_TRUE(StaysInsideFolder("a\\..b\\c"));
    EXPECT_TRUE(StaysInsideFolder("a\\...\\c"));
    EXPECT_TRUE(StaysInsideFolder(".hidden"));
    EXPECT_TRUE(StaysInsideFolder("ab:c"));
}

TEST(StaysInsideFolder, AParentComponentAnywhereLeadsOut)
{
    EXPECT_FALSE(StaysInsideFolder(".."));
    EXPECT_FALSE(StaysInsideFolder("..\\..\\etc\\sudoers.d\\x"));
    EXPECT_FALSE(StaysInsideFolder("../../etc/cron.d/x"));
    EXPECT_FALSE(StaysInsideFolder("C1\\..\\..\\x"));
    EXPECT_FALSE(StaysInsideFolder("C1/E1/.."));
    EXPECT_FALSE(StaysInsideFolder("a\\.."));
    EXPECT_FALSE(StaysInsideFolder("a/../b"));
}

TEST(StaysInsideFolder, ALeadingSeparatorOrADriveLeadsOut)
{
    EXPECT_FALSE(StaysInsideFolder("\\etc\\passwd"));
    EXPECT_FALSE(StaysInsideFolder("/etc/passwd"));
    EXPECT_FALSE(StaysInsideFolder("\\\\server\\share\\x"));
    EXPECT_FALSE(StaysInsideFolder("C:\\Windows\\x"));
    EXPECT_FALSE(StaysInsideFolder("c:x"));
}
