#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <vector>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace {

std::vector<platform::FolderEntry> SearchAll(const std::string& pattern)
{
    std::vector<platform::FolderEntry> entries;
    platform::FolderSearch search;
    platform::FolderEntry entry;
    for (bool found = search.First(pattern, entry); found; found = search.Next(entry))
        entries.push_back(entry);
    search.Close();
    return entries;
}

std::vector<std::string> SortedNames(const std::vector<platform::FolderEntry>& entries)
{
    std::vector<std::string> names;
    for (const platform::FolderEntry& entry : entries)
        names.push_back(entry.name);
    std::sort(names.begin(), names.end());
    return names;
}

const platform::FolderEntry* Find(const std::vector<platform::FolderEntry>& entries, const std::string& name)
{
    for (const platform::FolderEntry& entry : entries)
        if (entry.name == name)
            return &entry;
    return nullptr;
}

std::string MakeSampleFolder(const TestMachine& machine)
{
    const std::string folder = machine.Root() + "\\sample";
    MakeFolders(folder + "\\sub");
    WriteWholeFile(folder + "\\withdot.txt", "1");
    WriteWholeFile(folder + "\\nodot", "2");
    return folder;
}

// The entry's calendar fields read back as a moment of local time.
std::time_t AsLocalMoment(const platform::CalendarTime& time)
{
    std::tm fields = {};
    fields.tm_year = time.year - 1900;
    fields.tm_mon = time.month - 1;
    fields.tm_mday = time.day;
    fields.tm_hour = time.hour;
    fields.tm_min = time.minute;
    fields.tm_sec = time.second;
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

}  // namespace

TEST(FolderSearch, StarDotStarListsEveryEntryWithDotsAndNamesWithoutDot)
{
    TestMachine machine;
    const std::string folder = MakeSampleFolder(machine);

    const std::vector<std::string> expected = {".", "..", "nodot", "sub", "withdot.txt"};
    EXPECT_EQ(expected, SortedNames(SearchAll(folder + "\\*.*")));
}

TEST(FolderSearch, StarAloneListsTheSameEntries)
{
    TestMachine machine;
    const std::string folder = MakeSampleFolder(machine);

    const std::vector<std::string> expected = {".", "..", "nodot", "sub", "withdot.txt"};
    EXPECT_EQ(expected, SortedNames(SearchAll(folder + "\\*")));
}

TEST(FolderSearch, EntriesCarryTheirAttributes)
{
    TestMachine machine;
    const std::vector<platform::FolderEntry> entries = SearchAll(MakeSampleFolder(machine) + "\\*.*");

    ASSERT_NE(nullptr, Find(entries, "sub"));
    ASSERT_NE(nullptr, Find(entries, "nodot"));
    ASSERT_NE(nullptr, Find(entries, "."));
    EXPECT_EQ(0x10u, Find(entries, "sub")->attributes & 0x10u);
    EXPECT_EQ(0x10u, Find(entries, ".")->attributes & 0x10u);
    EXPECT_EQ(0u, Find(entries, "nodot")->attributes & 0x10u);
    EXPECT_EQ(0x20u, Find(entries, "nodot")->attributes & 0x20u);
}

TEST(FolderSearch, EmptyFolderStillListsDotAndDotDot)
{
    TestMachine machine;
    const std::string folder = machine.Root() + "\\empty";
    MakeFolders(folder);

    const std::vector<std::string> expected = {".", ".."};
    EXPECT_EQ(expected, SortedNames(SearchAll(folder + "\\*.*")));
}

TEST(FolderSearch, PlainNameFindsThatEntryAlone)
{
    TestMachine machine;
    const std::string folder = MakeSampleFolder(machine);

    const std::vector<platform::FolderEntry> entries = SearchAll(folder + "\\nodot");

    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ("nodot", entries[0].name);
    EXPECT_EQ(0u, entries[0].attributes & 0x10u);
}

TEST(FolderSearch, PlainNameOfAFolderFindsTheFolder)
{
    TestMachine machine;
    const std::vector<platform::FolderEntry> entries = SearchAll(MakeSampleFolder(machine) + "\\sub");

    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ("sub", entries[0].name);
    EXPECT_EQ(0x10u, entries[0].attributes & 0x10u);
}

TEST(FolderSearch, WildcardWithExtensionMatchesOnlyThoseNames)
{
    TestMachine machine;
    const std::vector<std::string> expected = {"withdot.txt"};
    EXPECT_EQ(expected, SortedNames(SearchAll(MakeSampleFolder(machine) + "\\*.txt")));
}

TEST(FolderSearch, NothingFoundInMissingFolderOrForMissingName)
{
    TestMachine machine;
    const std::string folder = MakeSampleFolder(machine);
    platform::FolderSearch search;
    platform::FolderEntry entry;

    EXPECT_FALSE(search.First(machine.Root() + "\\missing\\*.*", entry));
    EXPECT_FALSE(search.First(folder + "\\missing.txt", entry));
    EXPECT_FALSE(search.First(folder + "\\*.none", entry));
    EXPECT_FALSE(search.Next(entry));
}

TEST(FolderSearch, LastWriteTimeIsTheModificationTimeInLocalTime)
{
    TestMachine machine;
    const std::string file = machine.Root() + "\\stamp.txt";
    const std::time_t before = std::time(nullptr);
    WriteWholeFile(file, "now");
    const std::time_t after = std::time(nullptr);

    const std::vector<platform::FolderEntry> entries = SearchAll(file);

    ASSERT_EQ(1u, entries.size());
    const std::time_t written = AsLocalMoment(entries[0].lastWriteLocal);
    EXPECT_GE(written, before - 2);
    EXPECT_LE(written, after + 2);
    EXPECT_LT(entries[0].lastWriteLocal.milliseconds, 1000);
}

TEST(FolderSearch, LastWriteTimeFollowsAChangedModificationTime)
{
    TestMachine machine;
    const std::string first = machine.Root() + "\\first.txt";
    const std::string second = machine.Root() + "\\second.txt";
    WriteWholeFile(first, "1");
    WriteWholeFile(second, "2");
    const fs::file_time_type firstTime = fs::last_write_time(platform::SystemPath(first));
    fs::last_write_time(platform::SystemPath(second), firstTime - std::chrono::hours(50) - std::chrono::seconds(7));

    const std::vector<platform::FolderEntry> ofFirst = SearchAll(first);
    const std::vector<platform::FolderEntry> ofSecond = SearchAll(second);

    ASSERT_EQ(1u, ofFirst.size());
    ASSERT_EQ(1u, ofSecond.size());
    const double seconds = std::difftime(AsLocalMoment(ofFirst[0].lastWriteLocal),
                                         AsLocalMoment(ofSecond[0].lastWriteLocal));
    EXPECT_EQ(50 * 3600 + 7, static_cast<long>(seconds));
}

TEST(FolderSearch, DayOfWeekMatchesTheDate)
{
    TestMachine machine;
    const std::string file = machine.Root() + "\\day.txt";
    WriteWholeFile(file, "d");

    const std::vector<platform::FolderEntry> entries = SearchAll(file);

    ASSERT_EQ(1u, entries.size());
    const std::time_t moment = AsLocalMoment(entries[0].lastWriteLocal);
    const std::tm* local = std::localtime(&moment);
    ASSERT_NE(nullptr, local);
    EXPECT_EQ(local->tm_wday, entries[0].lastWriteLocal.dayOfWeek);
}
