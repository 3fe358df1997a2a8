// Names are taken without regard to the case of their letters, as a Windows
// file system takes them: an existing entry is found however it is spelt, at
// every level of a path, and a new entry is made as the caller spells it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Profile.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

using Names = std::vector<std::string>;

// <root>\Store\Copy1\Event\Setup.Log, with "content" in it; returns <root>\Store.
std::string MakeStore(const TestMachine& machine)
{
    const std::string store = machine.Root() + "\\Store";
    MakeFolders(store + "\\Copy1\\Event");
    WriteWholeFile(store + "\\Copy1\\Event\\Setup.Log", "content");
    return store;
}

}  // namespace

TEST(NameCase, AnEntryIsFoundInAnyCaseAtEveryLevel)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    const std::string otherCase = store + "\\COPY1\\event\\SETUP.log";

    EXPECT_TRUE(platform::StatPath(otherCase).regularFile);
    EXPECT_TRUE(platform::StatPath(store + "\\copy1\\EVENT").directory);
    EXPECT_EQ(platform::GetFileAttributes(otherCase), platform::GetFileAttributes(store + "\\Copy1\\Event\\Setup.Log"));
    platform::ExclusiveReadFile file;
    ASSERT_TRUE(file.Open(otherCase));
    char buffer[16];
    std::uint32_t got = 0;
    EXPECT_TRUE(file.Read(buffer, sizeof buffer, got));
    EXPECT_EQ(std::string(buffer, got), "content");
}

TEST(NameCase, AFolderThatIsThereInAnotherCaseIsNotMadeAgain)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    EXPECT_FALSE(platform::CreateFolder(store + "\\COPY1"));
    EXPECT_EQ(FolderNames(store), Names{"Copy1"});
}

TEST(NameCase, ANewEntryIsMadeAsSpeltInAFolderFoundInAnotherCase)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    EXPECT_TRUE(platform::CreateFolder(store + "\\COPY1\\NewEvent"));
    EXPECT_TRUE(platform::CopyFileNoOverwrite(store + "\\copy1\\event\\setup.log",
                                              store + "\\copy1\\NewEvent\\Copied.Log"));
    EXPECT_EQ(FolderNames(store), Names{"Copy1"});
    EXPECT_EQ(FolderNames(store + "\\Copy1"), (Names{"Event", "NewEvent"}));
    EXPECT_EQ(FolderNames(store + "\\Copy1\\NewEvent"), Names{"Copied.Log"});
}

TEST(NameCase, ACopyOntoAFileThatIsThereInAnotherCaseIsRefused)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    WriteWholeFile(store + "\\other.log", "other");
    EXPECT_FALSE(platform::CopyFileNoOverwrite(store + "\\other.log", store + "\\Copy1\\Event\\SETUP.LOG"));
    EXPECT_EQ(ReadWholeFile(store + "\\Copy1\\Event\\Setup.Log"), "content");
    EXPECT_EQ(FolderNames(store + "\\Copy1\\Event"), Names{"Setup.Log"});
}

TEST(NameCase, AMovedFolderFoundInAnotherCaseTakesTheNewNameAsSpelt)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    MakeFolders(store + "\\Copy2");
    EXPECT_TRUE(platform::MovePath(store + "\\COPY1\\EVENT", store + "\\copy2\\event"));
    EXPECT_EQ(FolderNames(store + "\\Copy1"), Names{});
    EXPECT_EQ(FolderNames(store + "\\Copy2"), Names{"event"});
    EXPECT_EQ(ReadWholeFile(store + "\\Copy2\\event\\Setup.Log"), "content");
}

TEST(NameCase, AMoveOntoAFolderThatIsThereInAnotherCaseIsRefused)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    MakeFolders(store + "\\Copy2\\Event");
    EXPECT_FALSE(platform::MovePath(store + "\\Copy1\\Event", store + "\\COPY2\\EVENT"));
    EXPECT_EQ(FolderNames(store + "\\Copy1"), Names{"Event"});
}

TEST(NameCase, AFolderSearchFindsNamesInAnyCaseAndGivesThemAsOnDisk)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    for (const std::string pattern : {"\\COPY1\\EVENT\\setup.log", "\\Copy1\\Event\\*.LOG"}) {
        platform::FolderSearch search;
        platform::FolderEntry entry;
        ASSERT_TRUE(search.First(store + pattern, entry)) << pattern;
        EXPECT_EQ(entry.name, "Setup.Log") << pattern;
    }
}

TEST(NameCase, TheProfileCallsFindTheFileInAnotherCase)
{
    TestMachine machine;
    const std::string store = MakeStore(machine);
    ASSERT_TRUE(platform::WriteProfileString("History", "Count", "1", store + "\\History.ini"));
    ASSERT_TRUE(platform::WriteProfileString("History", "Count", "2", store + "\\HISTORY.INI"));
    char value[8] = {};
    platform::GetProfileString("History", "Count", "", value, sizeof value, store + "\\history.ini");
    EXPECT_EQ(std::string(value), "2");
    EXPECT_EQ(FolderNames(store), (Names{"Copy1", "History.ini"}));
}
