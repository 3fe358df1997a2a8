// Every call sees the file as it is on disk now, whoever changed it, and a
// write that can't be made leaves the file as it was.
#include "platform/Profile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "history/CIniFile.h"
#include "platform/FileSystem.h"
#include "support/WineHost.h"
#include "unit/profile/ProfileFolder.h"

namespace fs = std::filesystem;

namespace {

// Another writer that replaces the file through a new one renamed over it.
void ReplaceThroughRename(const std::string& path, const std::string& content)
{
    const std::string temporary = path + ".new";
    WriteWholeFile(temporary, content);
    fs::rename(platform::SystemPath(temporary), platform::SystemPath(path));
}

// Whether the permissions of a read-only folder stop this process from
// creating a file in it (they don't stop an administrator or root).
bool PermissionsBind(const std::string& folder)
{
    const std::string probe = folder + "\\probe.txt";
    { std::ofstream attempt(platform::SystemPath(probe)); }
    if (!PathExists(probe))
        return true;
    fs::remove(platform::SystemPath(probe));
    return false;
}

class ProfileFileChangesTest : public HistoryIniTest {};

}  // namespace

TEST_F(ProfileFileChangesTest, FileReplacedBehindTheCallsBackWithTheSameSizeIsReadAgain)
{
    ini.WriteString("EVT_1", "Result", "AAAA");
    EXPECT_EQ(ini.GetString("EVT_1", "Result", "", 256), "AAAA");
    const std::string replacement = ProfileText({"[EVT_1]", "Result=BBBB"});
    ASSERT_EQ(replacement.size(), ReadWholeFile(path).size());
    ReplaceThroughRename(path, replacement);
    EXPECT_EQ(ini.GetString("EVT_1", "Result", "", 256), "BBBB");
    EXPECT_EQ(ini.GetSectionNames(), (std::vector<std::string>{"EVT_1"}));
}

TEST_F(ProfileFileChangesTest, FileRewrittenInPlaceIsReadAgain)
{
    ini.WriteString("EVT_1", "Result", "short");
    EXPECT_EQ(ini.GetString("EVT_1", "Result", "", 256), "short");
    WriteWholeFile(path, ProfileText({"[EVT_2]", "Result=a longer value"}));
    EXPECT_EQ(ini.GetString("EVT_1", "Result", "gone", 256), "gone");
    EXPECT_EQ(ini.GetString("EVT_2", "Result", "", 256), "a longer value");
}

TEST_F(ProfileFileChangesTest, WriteAfterAChangeBehindItsBackKeepsThatChange)
{
    ini.WriteString("History", "Count", "1");
    ReplaceThroughRename(path, ProfileText({"[History]", "Count=5", "[EVT_9]"}));
    ini.WriteString("EVT_9", "Result", "ok");
    EXPECT_EQ(ReadWholeFile(path), ProfileText({"[History]", "Count=5", "[EVT_9]", "Result=ok"}));
}

TEST_F(ProfileFileChangesTest, RemovedFileReadsAsDefaultAndIsMadeAnewByTheNextWrite)
{
    ini.WriteString("History", "Count", "3");
    EXPECT_EQ(ini.GetString("History", "Count", "", 256), "3");
    fs::remove(platform::SystemPath(path));
    EXPECT_EQ(ini.GetString("History", "Count", "none", 256), "none");
    EXPECT_TRUE(ini.GetSectionNames().empty());
    ini.WriteString("EVT_1", "Result", "ok");
    EXPECT_EQ(ReadWholeFile(path), "[EVT_1]\r\nResult=ok\r\n");
}

TEST_F(ProfileFileChangesTest, WritesLeaveNoOtherFileBeside)
{
    ini.WriteString("History", "Count", "0");
    for (int i = 0; i < 5; ++i)
        ini.WriteString("EVT_" + std::to_string(i), "Event_ID", "EVT_" + std::to_string(i));
    EXPECT_EQ(FolderNames(folder.Folder()), (std::vector<std::string>{"History.ini"}));
}

// The file is written in place, as the Windows calls write it: a writable
// History.ini takes the write whatever its folder allows.
TEST_F(ProfileFileChangesTest, WritableFileInAReadOnlyFolderIsWrittenInPlace)
{
    ini.WriteString("History", "Count", "1");
    {
        const ReadOnlyWhileAlive readOnlyFolder(folder.Folder());
        EXPECT_TRUE(platform::WriteProfileString("History", "Count", "2", path));
        EXPECT_TRUE(platform::WriteProfileString("EVT_1", "Result", "ok", path));
        EXPECT_EQ(ini.GetString("History", "Count", "", 256), "2");
    }
    EXPECT_EQ(ReadWholeFile(path), "[History]\r\nCount=2\r\n[EVT_1]\r\nResult=ok\r\n");
    EXPECT_EQ(FolderNames(folder.Folder()), (std::vector<std::string>{"History.ini"}));
}

// Making a new file is the folder's matter: where its permissions bind the
// writer, the file isn't made and the write is lost in silence.
TEST_F(ProfileFileChangesTest, MissingFileInAReadOnlyFolderIsNotMade)
{
    const ReadOnlyWhileAlive readOnlyFolder(folder.Folder());
    if (!PermissionsBind(folder.Folder()))
        GTEST_SKIP() << "folder permissions don't bind this user; run unprivileged to test this";
    EXPECT_EQ(ini.WriteString("History", "Count", "1"), 0);
    EXPECT_FALSE(platform::WriteProfileString("EVT_1", "Result", "ok", path));
    EXPECT_EQ(ini.GetString("History", "Count", "none", 256), "none");
    EXPECT_TRUE(FolderNames(folder.Folder()).empty());
}

// The read-only attribute refuses the write to every user, root and
// administrators included.
TEST_F(ProfileFileChangesTest, WriteToReadOnlyFileFailsSilentlyAndLeavesIt)
{
    if (WineWritesReadOnlyFiles())
        GTEST_SKIP() << kWineWritesReadOnlyFiles;
    ini.WriteString("History", "Count", "1");
    {
        const ReadOnlyWhileAlive readOnly(path);
        EXPECT_FALSE(platform::WriteProfileString("History", "Count", "2", path));
        EXPECT_EQ(ini.WriteString("History", "Count", "3"), 0);
        EXPECT_FALSE(platform::WriteProfileString("EVT_1", "Result", "ok", path));
        EXPECT_EQ(ReadWholeFile(path), "[History]\r\nCount=1\r\n");
        EXPECT_EQ(ini.GetString("History", "Count", "", 256), "1");
    }
    EXPECT_EQ(FolderNames(folder.Folder()), (std::vector<std::string>{"History.ini"}));
}
