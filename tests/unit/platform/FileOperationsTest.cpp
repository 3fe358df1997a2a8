#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace {

platform::CalendarTime LastWriteOf(const std::string& path)
{
    platform::FolderSearch search;
    platform::FolderEntry entry;
    EXPECT_TRUE(search.First(path, entry));
    return entry.lastWriteLocal;
}

bool SameMoment(const platform::CalendarTime& one, const platform::CalendarTime& other)
{
    return one.year == other.year && one.month == other.month && one.day == other.day &&
           one.hour == other.hour && one.minute == other.minute && one.second == other.second;
}

// A folder of its own in the test's machine, for tests that list what it holds.
std::string EmptyFolderIn(const TestMachine& machine)
{
    const std::string folder = machine.Root() + "\\beside";
    MakeFolders(folder);
    return folder;
}

}  // namespace

TEST(CreateFolder, MakesOneLevel)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\made";

    EXPECT_TRUE(platform::CreateFolder(folder));
    EXPECT_TRUE(platform::StatPath(folder).directory);
}

TEST(CreateFolder, FailsWhenItExistsOrItsParentIsMissing)
{
    TestMachine machine;
    WriteWholeFile(machine.Root() + "\\file", "x");

    EXPECT_FALSE(platform::CreateFolder(machine.Root()));
    EXPECT_FALSE(platform::CreateFolder(machine.Root() + "\\file"));
    EXPECT_FALSE(platform::CreateFolder(machine.Root() + "\\missing\\child"));
    EXPECT_FALSE(PathExists(machine.Root() + "\\missing"));
}

TEST(CopyFileNoOverwrite, CopiesContentAndKeepsTheModificationTime)
{
    TestMachine machine;
    const std::string source = machine.Root() + "\\source.log";
    const std::string target = machine.Root() + "\\target.log";
    WriteWholeFile(source, "line one\nline two\n");
    const fs::path sourcePath = platform::SystemPath(source);
    fs::last_write_time(sourcePath, fs::last_write_time(sourcePath) - std::chrono::hours(30));

    ASSERT_TRUE(platform::CopyFileNoOverwrite(source, target));

    EXPECT_EQ("line one\nline two\n", ReadWholeFile(target));
    EXPECT_TRUE(SameMoment(LastWriteOf(source), LastWriteOf(target)));
}

TEST(CopyFileNoOverwrite, RefusesAnExistingTargetAndLeavesItAlone)
{
    TestMachine machine;
    const std::string source = machine.Root() + "\\source.log";
    const std::string target = machine.Root() + "\\target.log";
    WriteWholeFile(source, "new");
    WriteWholeFile(target, "old");

    EXPECT_FALSE(platform::CopyFileNoOverwrite(source, target));
    EXPECT_EQ("old", ReadWholeFile(target));
}

TEST(CopyFileNoOverwrite, FailsForMissingSourceOrFolderWithoutLeavingATarget)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\folder";
    MakeFolders(folder);

    EXPECT_FALSE(platform::CopyFileNoOverwrite(machine.Root() + "\\missing", machine.Root() + "\\t1"));
    EXPECT_FALSE(platform::CopyFileNoOverwrite(folder, machine.Root() + "\\t2"));
    EXPECT_FALSE(PathExists(machine.Root() + "\\t1"));
    EXPECT_FALSE(PathExists(machine.Root() + "\\t2"));
}

TEST(CopyFileNoOverwrite, FailsWhenTheTargetFolderIsMissing)
{
    TestMachine machine;
    const std::string source = machine.Root() + "\\source.log";
    WriteWholeFile(source, "x");

    EXPECT_FALSE(platform::CopyFileNoOverwrite(source, machine.Root() + "\\nowhere\\target.log"));
}

TEST(MovePath, MovesAFolderWithItsContent)
{
    TestMachine machine;
    const std::string source = machine.Root() + "\\event";
    const std::string target = machine.Root() + "\\copy";
    MakeFolders(source + "\\inner");
    WriteWholeFile(source + "\\ZORInstallEvent.Log", "log");
    WriteWholeFile(source + "\\inner\\deep.txt", "deep");
    MakeFolders(target);

    ASSERT_TRUE(platform::MovePath(source, target + "\\event"));

    EXPECT_FALSE(PathExists(source));
    EXPECT_EQ("log", ReadWholeFile(target + "\\event\\ZORInstallEvent.Log"));
    EXPECT_EQ("deep", ReadWholeFile(target + "\\event\\inner\\deep.txt"));
}

TEST(MovePath, RefusesAnExistingTargetFolder)
{
    TestMachine machine;
    const std::string source = machine.Root() + "\\event";
    const std::string target = machine.Root() + "\\earlier";
    MakeFolders(source);
    WriteWholeFile(source + "\\new.txt", "new");
    MakeFolders(target);
    WriteWholeFile(target + "\\old.txt", "old");

    EXPECT_FALSE(platform::MovePath(source, target));

    EXPECT_EQ("new", ReadWholeFile(source + "\\new.txt"));
    EXPECT_EQ("old", ReadWholeFile(target + "\\old.txt"));
    EXPECT_FALSE(PathExists(target + "\\new.txt"));
}

TEST(MovePath, RefusesAnExistingTargetFile)
{
    TestMachine machine;
    const std::string source = machine.Root() + "\\a.txt";
    const std::string target = machine.Root() + "\\b.txt";
    WriteWholeFile(source, "a");
    WriteWholeFile(target, "b");

    EXPECT_FALSE(platform::MovePath(source, target));
    EXPECT_EQ("a", ReadWholeFile(source));
    EXPECT_EQ("b", ReadWholeFile(target));
}

TEST(MovePath, FailsForAMissingSource)
{
    TestMachine machine;
    EXPECT_FALSE(platform::MovePath(machine.Root() + "\\missing", machine.Root() + "\\target"));
}

TEST(CreateFileBeside, MakesANewDotNamedFileInTheTargetsFolderAndLeavesTheTargetAlone)
{
    TestMachine machine;
    const std::string folder = EmptyFolderIn(machine);
    const std::string target = folder + "\\x.zip";
    WriteWholeFile(target, "old");
    std::string temporary;
    std::FILE* file = platform::CreateFileBeside(target, temporary);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fputs("new", file) >= 0, true);
    EXPECT_EQ(std::fclose(file), 0);

    EXPECT_EQ(ReadWholeFile(target), "old");
    EXPECT_EQ(ReadWholeFile(temporary), "new");
    const std::size_t cut = temporary.find_last_of("\\/");
    ASSERT_NE(cut, std::string::npos) << temporary;
    EXPECT_EQ(platform::SystemPath(temporary.substr(0, cut)), platform::SystemPath(folder));
    EXPECT_EQ(temporary.compare(cut + 1, 7, ".x.zip."), 0) << temporary;
    EXPECT_EQ(FolderNames(folder), std::vector<std::string>{"x.zip"});
}

TEST(CreateFileBeside, TwoCallsMakeTwoFiles)
{
    TestMachine machine;
    const std::string folder = EmptyFolderIn(machine);
    const std::string target = folder + "\\x.zip";
    std::string first;
    std::string second;
    std::FILE* one = platform::CreateFileBeside(target, first);
    std::FILE* other = platform::CreateFileBeside(target, second);
    ASSERT_NE(one, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(first, second);
    std::fclose(one);
    std::fclose(other);
}

TEST(CreateFileBeside, RefusesAFolderAMissingFolderAndAReadOnlyFile)
{
    TestMachine machine;
    const std::string folder = EmptyFolderIn(machine);
    MakeFolders(folder + "\\folder");
    const std::string readOnly = folder + "\\read-only.zip";
    WriteWholeFile(readOnly, "kept");
    const ReadOnlyWhileAlive held(readOnly);
    std::string temporary;

    EXPECT_EQ(platform::CreateFileBeside(folder + "\\folder", temporary), nullptr);
    EXPECT_EQ(platform::CreateFileBeside(folder + "\\missing\\x.zip", temporary), nullptr);
    EXPECT_EQ(platform::CreateFileBeside(readOnly, temporary), nullptr);
    EXPECT_EQ(temporary, "");
    EXPECT_EQ(FolderNames(folder), (std::vector<std::string>{"folder", "read-only.zip"}));
}

TEST(PutFileInPlace, ReplacesTheTargetWithTheTemporaryFile)
{
    TestMachine machine;
    const std::string folder = EmptyFolderIn(machine);
    const std::string target = folder + "\\x.zip";
    WriteWholeFile(target, "old");
    std::string temporary;
    std::FILE* file = platform::CreateFileBeside(target, temporary);
    ASSERT_NE(file, nullptr);
    std::fputs("new", file);
    std::fclose(file);

    EXPECT_TRUE(platform::PutFileInPlace(temporary, target));
    EXPECT_EQ(ReadWholeFile(target), "new");
    EXPECT_EQ(FolderNames(folder), std::vector<std::string>{"x.zip"});
}

TEST(PutFileInPlace, RemovesTheTemporaryFileWhenTheTargetCantBeReplaced)
{
    TestMachine machine;
    const std::string folder = EmptyFolderIn(machine);
    const std::string target = folder + "\\x.zip";
    std::string temporary;
    std::FILE* file = platform::CreateFileBeside(target, temporary);
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    MakeFolders(target + "\\inside");

    EXPECT_FALSE(platform::PutFileInPlace(temporary, target));
    EXPECT_EQ(FolderNames(folder), std::vector<std::string>{"x.zip"});
    EXPECT_TRUE(platform::StatPath(target).directory);
}
