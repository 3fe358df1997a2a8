// The POSIX profile engine keeps each file parsed and trusts its copy while
// the file's identity (inode, size, modification time) stays. A write in
// place by another process, within one step of the system's coarse clock,
// may keep all three; every call of the system that meets other processes'
// writes holds the store's lock, and taking it reads every file anew.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/FileSystem.h"
#include "platform/Profile.h"
#include "platform/StoreLock.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace {

std::string ReadCount(const std::string& path)
{
    char value[16] = {};
    platform::GetProfileString("History", "Count", "", value, sizeof value, path);
    return value;
}

}  // namespace

TEST(ProfileCopiesAndStoreLock, TakingTheStoreLockReadsAFileThatKeptItsIdentityAnew)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    const std::string path = folder + "\\History.ini";
    ASSERT_TRUE(platform::WriteProfileString("History", "Count", "5", path));
    ASSERT_EQ(ReadCount(path), "5");
    const fs::file_time_type written = fs::last_write_time(platform::SystemPath(path));

    WriteWholeFile(path, "[History]\r\nCount=6\r\n");
    fs::last_write_time(platform::SystemPath(path), written);

    const platform::StoreLock lock(folder);
    EXPECT_EQ(ReadCount(path), "6");
}
