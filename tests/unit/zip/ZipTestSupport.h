// Helpers of the archive tests: where a test's archive lies, how it is kept for
// the independent readers, and the order in which the file system lists a folder.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"

// A name for this test's archive among all kept archives.
inline std::string ArchiveNameOfThisTest(const std::string& suffix = "")
{
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    return std::string(info->test_suite_name()) + "." + info->name() + suffix;
}

inline void KeepThisTestsArchive(const std::string& zipPath, const std::string& suffix = "")
{
    KeepArchiveForCheck(zipPath, ArchiveNameOfThisTest(suffix));
}

// The entry names of a folder in the order in which the file system lists them.
inline std::vector<std::string> NamesInListingOrder(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(platform::SystemPath(folder)))
        names.push_back(entry.path().filename().string());
    return names;
}

// What a walk of `folder` should yield, by the file system's own listing: a
// folder's entry before its contents, names with a leading dot left out.
inline void ExpectedWalk(const std::string& folder, const std::string& prefix,
                         std::vector<std::string>& names)
{
    for (const std::string& name : NamesInListingOrder(folder)) {
        if (name[0] == '.')
            continue;
        names.push_back(prefix + name);
        const std::string child = folder + "\\" + name;
        if (std::filesystem::is_directory(platform::SystemPath(child)))
            ExpectedWalk(child, prefix + name + "\\", names);
    }
}

inline std::vector<std::string> ExpectedWalk(const std::string& folder)
{
    std::vector<std::string> names;
    ExpectedWalk(folder, "", names);
    return names;
}

inline std::string RepeatedText(const std::string& piece, std::size_t times)
{
    std::string text;
    for (std::size_t i = 0; i < times; ++i)
        text += piece;
    return text;
}
