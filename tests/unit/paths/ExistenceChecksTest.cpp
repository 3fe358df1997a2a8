#include <gtest/gtest.h>

#include "history/HistoryPaths.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

struct SampleTree {
    explicit SampleTree(const TestMachine& machine)
        : file(machine.Root() + "\\file.txt"), folder(machine.Root() + "\\folder"),
          missing(machine.Root() + "\\missing")
    {
        WriteWholeFile(file, "x");
        MakeFolders(folder);
    }
    std::string file;
    std::string folder;
    std::string missing;
};

std::string Quoted(const std::string& path)
{
    return "\"" + path + "\"";
}

}  // namespace

TEST(ExistenceChecks, FileExistsOnlyForARegularFile)
{
    TestMachine machine;
    const SampleTree tree(machine);

    EXPECT_TRUE(FileExists(tree.file.c_str()));
    EXPECT_FALSE(FileExists(tree.folder.c_str()));
    EXPECT_FALSE(FileExists(tree.missing.c_str()));
}

TEST(ExistenceChecks, DirectoryExistsOnlyForAFolder)
{
    TestMachine machine;
    const SampleTree tree(machine);

    EXPECT_TRUE(DirectoryExists(tree.folder.c_str()));
    EXPECT_FALSE(DirectoryExists(tree.file.c_str()));
    EXPECT_FALSE(DirectoryExists(tree.missing.c_str()));
}

TEST(ExistenceChecks, PathInDoubleQuotesTestsAsThePathWithout)
{
    TestMachine machine;
    const SampleTree tree(machine);

    EXPECT_TRUE(FileExists(Quoted(tree.file).c_str()));
    EXPECT_TRUE(DirectoryExists(Quoted(tree.folder).c_str()));
    EXPECT_FALSE(DirectoryExists(Quoted(tree.file).c_str()));
    EXPECT_FALSE(FileExists(Quoted(tree.folder).c_str()));
    EXPECT_FALSE(FileExists(Quoted(tree.missing).c_str()));
}

TEST(ExistenceChecks, ALeadingOrATrailingQuoteAloneIsTakenOff)
{
    TestMachine machine;
    const SampleTree tree(machine);

    EXPECT_TRUE(FileExists(("\"" + tree.file).c_str()));
    EXPECT_TRUE(FileExists((tree.file + "\"").c_str()));
    EXPECT_TRUE(DirectoryExists(("\"" + tree.folder).c_str()));
    EXPECT_TRUE(DirectoryExists((tree.folder + "\"").c_str()));
}

TEST(ExistenceChecks, OnlyOneQuoteIsTakenOffEachEnd)
{
    TestMachine machine;
    const SampleTree tree(machine);

    EXPECT_FALSE(FileExists(("\"\"" + tree.file + "\"\"").c_str()));
    EXPECT_FALSE(DirectoryExists(("\"\"" + tree.folder + "\"\"").c_str()));
}

TEST(ExistenceChecks, EmptyPathAndLoneQuotesAreFalse)
{
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(DirectoryExists(""));
    EXPECT_FALSE(FileExists("\""));
    EXPECT_FALSE(DirectoryExists("\"\""));
}
