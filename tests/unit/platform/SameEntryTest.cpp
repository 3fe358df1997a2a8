// One entry under several names: spellings with "." and "..", another case of
// the letters, a link; names not made yet; and whether a name lies within a folder.
#include <gtest/gtest.h>

#include <string>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

class SameEntry : public ::testing::Test {
protected:
    void SetUp() override
    {
        root_ = machine_.Root();
        MakeFolders(root_ + "\\store\\C1");
        WriteWholeFile(root_ + "\\x.zip", "archive");
        WriteWholeFile(root_ + "\\y.zip", "another");
    }

    TestMachine machine_;
    std::string root_;
};

TEST_F(SameEntry, AFileIsItselfUnderEverySpelling)
{
    EXPECT_TRUE(platform::SameEntry(root_ + "\\x.zip", root_ + "\\x.zip"));
    EXPECT_TRUE(platform::SameEntry(root_ + "\\x.zip", root_ + "\\store\\..\\x.zip"));
    EXPECT_TRUE(platform::SameEntry(root_ + "\\x.zip", root_ + "\\.\\X.ZIP"));
}

TEST_F(SameEntry, TwoFilesAreTwoEntries)
{
    EXPECT_FALSE(platform::SameEntry(root_ + "\\x.zip", root_ + "\\y.zip"));
    EXPECT_FALSE(platform::SameEntry(root_ + "\\x.zip", root_ + "\\store\\x.zip"));
}

TEST_F(SameEntry, NamesNotMadeYetAreOneWhenTheyWouldMakeOneEntry)
{
    EXPECT_TRUE(platform::SameEntry(root_ + "\\r.html", root_ + "\\R.HTML"));
    EXPECT_TRUE(platform::SameEntry(root_ + "\\r.html", root_ + "\\store\\..\\r.html"));
    EXPECT_FALSE(platform::SameEntry(root_ + "\\r.html", root_ + "\\r.json"));
    EXPECT_FALSE(platform::SameEntry(root_ + "\\r.html", root_ + "\\store\\r.html"));
    EXPECT_FALSE(platform::SameEntry(root_ + "\\missing\\r.html", root_ + "\\missing\\r.html"));
}

TEST_F(SameEntry, ALinkIsTheEntryItLeadsTo)
{
    if (!MakeSymbolicLink(root_ + "\\x.zip", root_ + "\\link.zip", false))
        GTEST_SKIP() << "this file system holds no symbolic links";
    EXPECT_TRUE(platform::SameEntry(root_ + "\\link.zip", root_ + "\\x.zip"));
}

TEST_F(SameEntry, NamesBelowAFolderLieWithinIt)
{
    const std::string store = root_ + "\\store";
    EXPECT_TRUE(platform::LiesWithin(store, store));
    EXPECT_TRUE(platform::LiesWithin(store + "\\C1", store));
    EXPECT_TRUE(platform::LiesWithin(store + "\\C1\\new\\report.html", store));
    EXPECT_TRUE(platform::LiesWithin(root_ + "\\STORE\\report.html", store));
    EXPECT_FALSE(platform::LiesWithin(store + "\\..\\report.html", store));
    EXPECT_FALSE(platform::LiesWithin(root_ + "\\x.zip", store));
    EXPECT_FALSE(platform::LiesWithin(root_ + "\\storeroom\\report.html", store));
}

TEST_F(SameEntry, AFolderLinkLeadsWithinTheFolderItNames)
{
    if (!MakeSymbolicLink(root_ + "\\store", root_ + "\\shortcut", true))
        GTEST_SKIP() << "this file system holds no symbolic links";
    EXPECT_TRUE(platform::LiesWithin(root_ + "\\shortcut\\report.html", root_ + "\\store"));
    EXPECT_TRUE(platform::LiesWithin(root_ + "\\store\\report.html", root_ + "\\shortcut"));
}

// An output replaces the entry at its name: a link inside the folder is the
// folder's own entry, wherever it leads.
TEST_F(SameEntry, ALinkInsideTheFolderLiesWithinItWhereverItLeads)
{
    const std::string store = root_ + "\\store";
    if (!MakeSymbolicLink(root_ + "\\x.zip", store + "\\out.zip", false))
        GTEST_SKIP() << "this file system holds no symbolic links";
    EXPECT_TRUE(platform::LiesWithin(store + "\\out.zip", store));
    EXPECT_FALSE(platform::LiesWithin(root_ + "\\x.zip", store));
    // A link outside it that leads to a file in it leads within it as well.
    WriteWholeFile(store + "\\History.ini", "[History]");
    ASSERT_TRUE(MakeSymbolicLink(store + "\\History.ini", root_ + "\\in.ini", false));
    EXPECT_TRUE(platform::LiesWithin(root_ + "\\in.ini", store));
}

}  // namespace
