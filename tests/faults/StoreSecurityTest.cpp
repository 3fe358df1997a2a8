// The store's modes and lock on POSIX systems, against a caller whose umask
// gives everything away and a neighbour who holds every lock that it can.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "history/CHistoryStore.h"
#include "history/CIniFile.h"
#include "platform/FileSystem.h"
#include "platform/StoreLock.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds kShortBound(300);

mode_t ModeOf(const std::string& path)
{
    struct stat status;
    if (lstat(platform::SystemPath(path).c_str(), &status) != 0)
        return 0;
    return status.st_mode & 07777;
}

// The process's umask for the test's length.
class Umask {
public:
    explicit Umask(mode_t mask) : previous_(umask(mask)) {}
    ~Umask() { umask(previous_); }

private:
    mode_t previous_;
};

int Record(std::initializer_list<std::string> options)
{
    std::vector<std::string> texts{"installer"};
    texts.insert(texts.end(), options.begin(), options.end());
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(&text[0]);
    pointers.push_back(nullptr);
    int count = static_cast<int>(texts.size());
    CHistoryStore store;
    return store.Record(count, pointers.data());
}

// A descriptor that holds a flock on a path, as another process would.
class Holder {
public:
    Holder(const std::string& path, int flags)
        : fd_(open(platform::SystemPath(path).c_str(), flags | O_CLOEXEC))
    {
        held_ = fd_ >= 0 && flock(fd_, LOCK_EX | LOCK_NB) == 0;
    }
    ~Holder()
    {
        if (fd_ >= 0)
            close(fd_);
    }
    bool Held() const { return held_; }

private:
    int fd_;
    bool held_ = false;
};

class StoreSecurity : public ::testing::Test {
protected:
    StoreSecurity()
    {
        CLogger::Instance().Close();
        CLogger::Instance().clear();
    }

    std::string Store() const { return machine.HistoryFolder(); }
    std::string Ini() const { return Store() + "\\History.ini"; }

    TestMachine machine;
};

TEST_F(StoreSecurity, UnderAnOpenUmaskTheStoreIsWrittenOnlyByItsOwner)
{
    const Umask open(0);
    ASSERT_EQ(Record({"-start", "E1"}), 0);
    ASSERT_EQ(Record({"-end", "E1", "-CopyName", "C1"}), 0);
    EXPECT_EQ(ModeOf(machine.AppData() + "\\TAQ"), 0755u);
    EXPECT_EQ(ModeOf(Store()), 0755u);
    EXPECT_EQ(ModeOf(Ini()), 0644u);
    EXPECT_EQ(ModeOf(Store() + "\\C1"), 0755u);
    EXPECT_EQ(ModeOf(Store() + "\\C1\\E1"), 0755u);
    EXPECT_EQ(ModeOf(Store() + "\\C1\\E1\\ZORInstallEvent.Log"), 0644u);
    EXPECT_EQ(ModeOf(Store() + "\\.StoreLock"), 0600u);

    CHistoryStore store;
    store.CollectHistory(machine.Root() + "\\x.zip");
    EXPECT_EQ(ModeOf(Store() + "\\Summary.txt"), 0644u);
    EXPECT_EQ(ModeOf(Store() + "\\C1\\Summary.txt"), 0644u);
}

TEST_F(StoreSecurity, UnderAClosedUmaskTheStoreIsStillReadableByEveryone)
{
    const Umask closed(077);
    ASSERT_EQ(Record({"-start", "E1"}), 0);
    EXPECT_EQ(ModeOf(Store()), 0755u);
    EXPECT_EQ(ModeOf(Ini()), 0644u);
    EXPECT_EQ(ModeOf(Store() + "\\E1\\ZORInstallEvent.Log"), 0644u);
}

TEST_F(StoreSecurity, AStoreThatOthersCouldWriteIsSetRightByItsOwnersNextCall)
{
    const std::string folder = machine.MakeHistoryFolder();
    MakeFolders(folder + "\\E1");
    MakeFolders(folder + "\\C1");
    MakeFolders(folder + "\\C1\\E2");
    WriteWholeFile(Ini(), "[History]\r\nCount=2\r\n");
    const std::string outside = machine.Root() + "\\outside";
    MakeFolders(outside);
    fs::create_directory_symlink(platform::SystemPath(outside), platform::SystemPath(folder + "\\L"));
    for (const std::string& path : {machine.AppData() + "\\TAQ", folder, folder + "\\E1",
                                    folder + "\\C1", folder + "\\C1\\E2", outside})
        chmod(platform::SystemPath(path).c_str(), 0777);
    chmod(platform::SystemPath(Ini()).c_str(), 0666);

    ASSERT_EQ(Record({"-logmessage", "E1", "-message", "m"}), 0);

    EXPECT_EQ(ModeOf(machine.AppData() + "\\TAQ"), 0755u);
    EXPECT_EQ(ModeOf(folder), 0755u);
    EXPECT_EQ(ModeOf(folder + "\\E1"), 0755u);
    EXPECT_EQ(ModeOf(folder + "\\C1"), 0755u);
    EXPECT_EQ(ModeOf(folder + "\\C1\\E2"), 0755u);
    EXPECT_EQ(ModeOf(Ini()), 0644u);
    EXPECT_EQ(ModeOf(outside), 0777u) << "a link in the store is not followed";
}

TEST_F(StoreSecurity, ACollectionRunSetsAStoreThatOthersCouldWriteRight)
{
    const std::string folder = machine.MakeHistoryFolder();
    WriteWholeFile(Ini(), "[History]\r\nCount=1\r\n[E1]\r\nEvent_ID=E1\r\n");
    chmod(platform::SystemPath(folder).c_str(), 0777);
    chmod(platform::SystemPath(Ini()).c_str(), 0666);
    CHistoryStore store;
    store.CollectHistory(machine.Root() + "\\x.zip");
    EXPECT_EQ(ModeOf(folder), 0755u);
    EXPECT_EQ(ModeOf(Ini()), 0644u);
}

TEST_F(StoreSecurity, AFilePlantedAsTheLockFileIsReplacedByTheOwnersOwn)
{
    const std::string folder = machine.MakeHistoryFolder();
    const std::string lockFile = folder + "\\.StoreLock";
    WriteWholeFile(lockFile, "");
    chmod(platform::SystemPath(lockFile).c_str(), 0666);
    const Holder planted(lockFile, O_RDONLY);
    ASSERT_TRUE(planted.Held());
    const platform::StoreLock lock(folder, kShortBound);
    EXPECT_TRUE(lock.Held());
    EXPECT_EQ(ModeOf(lockFile), 0600u);
}

TEST_F(StoreSecurity, ALinkPlantedAsTheLockFileIsNotFollowed)
{
    const std::string folder = machine.MakeHistoryFolder();
    const std::string target = machine.Root() + "\\target";
    WriteWholeFile(target, "kept");
    chmod(platform::SystemPath(target).c_str(), 0644);
    fs::create_symlink(platform::SystemPath(target), platform::SystemPath(folder + "\\.StoreLock"));
    const platform::StoreLock lock(folder, kShortBound);
    EXPECT_TRUE(lock.Held());
    EXPECT_EQ(ModeOf(target), 0644u);
    EXPECT_EQ(ReadWholeFile(target), "kept");
    EXPECT_FALSE(fs::is_symlink(platform::SystemPath(folder + "\\.StoreLock")));
}

TEST_F(StoreSecurity, AHolderOfHistoryIniDoesNotStopTheWritesOfACall)
{
    const std::string folder = machine.MakeHistoryFolder();
    WriteWholeFile(Ini(), "[History]\r\nCount=0\r\n");
    const Holder neighbour(Ini(), O_RDONLY);
    const Holder folderHolder(folder, O_RDONLY | O_DIRECTORY);
    ASSERT_TRUE(neighbour.Held());
    ASSERT_TRUE(folderHolder.Held());
    const platform::StoreLock lock(folder, kShortBound);
    EXPECT_TRUE(lock.Held());
    CIniFile ini(Ini());
    for (int key = 0; key < 20; ++key)
        ini.WriteString("E1", "Key" + std::to_string(key), "value");
    EXPECT_EQ(ini.GetString("E1", "Key19", "", 256), "value");
    EXPECT_EQ(ini.GetSectionNames(), (std::vector<std::string>{"History", "E1"}));
}

}  // namespace
