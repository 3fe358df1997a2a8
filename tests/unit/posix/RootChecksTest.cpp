// What root refuses in the store because another user may have put it there:
// another user's link or folder, a folder that others may write, and a file of
// root's with a second name. These run only as root; another user's entries
// are made by giving them to the user id 65534.
#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/FileSystem.h"

namespace {

constexpr uid_t kOtherUser = 65534;

class RootChecks : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "needs root";
        char pattern[] = "/tmp/zor-root-checks-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder_ = pattern;
        chmod(folder_.c_str(), 0755);
    }
    void TearDown() override
    {
        if (!folder_.empty())
            std::system(("rm -rf " + folder_).c_str());
    }

    std::string File(const std::string& name, mode_t mode = 0644)
    {
        const std::string path = folder_ + "/" + name;
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, mode);
        EXPECT_GE(fd, 0) << path;
        close(fd);
        return path;
    }
    std::string Folder(const std::string& name, mode_t mode = 0755)
    {
        const std::string path = folder_ + "/" + name;
        EXPECT_EQ(mkdir(path.c_str(), mode), 0) << path;
        chmod(path.c_str(), mode);
        return path;
    }
    std::string Link(const std::string& name, const std::string& target)
    {
        const std::string path = folder_ + "/" + name;
        EXPECT_EQ(symlink(target.c_str(), path.c_str()), 0) << path;
        return path;
    }
    static struct stat Status(const std::string& path)
    {
        struct stat status;
        EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
        return status;
    }

    std::string folder_;
};

}  // namespace

TEST_F(RootChecks, AFileIsOpenedWithoutFollowingALinkAndARootLinkIsFollowed)
{
    using platform::posix::RootOpenFlags;
    const std::string file = File("History.ini");
    EXPECT_EQ(RootOpenFlags(file), O_NOFOLLOW);
    EXPECT_EQ(RootOpenFlags(Link("roots-link.ini", file)), 0);
    EXPECT_EQ(RootOpenFlags(folder_ + "/missing.ini"), O_NOFOLLOW);
}

TEST_F(RootChecks, AnotherUsersLinkIsRefusedInTheLastPlaceAndAboveIt)
{
    using platform::posix::RootOpenFlags;
    const std::string target = File("target.ini");
    const std::string link = Link("History.ini", target);
    ASSERT_EQ(lchown(link.c_str(), kOtherUser, kOtherUser), 0);
    EXPECT_EQ(RootOpenFlags(link), -1);

    const std::string inner = Folder("inner");
    File("inner/History.ini");
    const std::string folderLink = Link("linked", inner);
    ASSERT_EQ(lchown(folderLink.c_str(), kOtherUser, kOtherUser), 0);
    EXPECT_EQ(RootOpenFlags(folderLink + "/History.ini"), -1);
    EXPECT_EQ(RootOpenFlags(inner + "/History.ini"), O_NOFOLLOW);
}

TEST_F(RootChecks, RootWritesOnlyItsOwnFilesAndOfThoseWithASecondNameOnlyWhereNoUserCouldHaveMadeIt)
{
    using platform::posix::RootMayWrite;
    const std::string file = File("ZORInstallEvent.Log");
    EXPECT_TRUE(RootMayWrite(Status(file)));
    ASSERT_EQ(link(file.c_str(), (folder_ + "/second-name").c_str()), 0);
    EXPECT_EQ(RootMayWrite(Status(file)), platform::posix::HardLinksProtected());

    const std::string others = File("others.log");
    ASSERT_EQ(chown(others.c_str(), kOtherUser, kOtherUser), 0);
    EXPECT_FALSE(RootMayWrite(Status(others)));
}

TEST_F(RootChecks, RootReadsNoFileOfItsOwnWithASecondNameThatAUserCouldHaveMade)
{
    using platform::posix::RootMayRead;
    const std::string file = File("History.ini");
    EXPECT_TRUE(RootMayRead(Status(file)));
    ASSERT_EQ(link(file.c_str(), (folder_ + "/second-name").c_str()), 0);
    EXPECT_EQ(RootMayRead(Status(file)), platform::posix::HardLinksProtected());

    const std::string others = File("others.ini");
    ASSERT_EQ(chown(others.c_str(), kOtherUser, kOtherUser), 0);
    ASSERT_EQ(link(others.c_str(), (folder_ + "/others-second-name").c_str()), 0);
    EXPECT_TRUE(RootMayRead(Status(others)));
}

TEST_F(RootChecks, AFolderThatAnotherUserOwnsOrOthersMayWriteMayBeChangedByThem)
{
    EXPECT_FALSE(platform::OthersMayChangeFolder(Folder("roots")));
    EXPECT_TRUE(platform::OthersMayChangeFolder(Folder("open", 0777)));
    EXPECT_TRUE(platform::OthersMayChangeFolder(Folder("group", 0775)));
    const std::string others = Folder("others");
    ASSERT_EQ(chown(others.c_str(), kOtherUser, kOtherUser), 0);
    EXPECT_TRUE(platform::OthersMayChangeFolder(others));
    EXPECT_FALSE(platform::OthersMayChangeFolder(File("file", 0666)));
}

TEST(SecondNames, OnlyASystemThatLetsUsersLinkAnyFileMakesASecondNameSuspect)
{
    using platform::posix::SecondNameMayBePlanted;
    EXPECT_FALSE(SecondNameMayBePlanted(1, false));
    EXPECT_TRUE(SecondNameMayBePlanted(2, false));
    EXPECT_FALSE(SecondNameMayBePlanted(2, true));
    EXPECT_FALSE(SecondNameMayBePlanted(1, true));
}
