// A history folder as the report's source: the names that History.ini gives
// lead to regular files inside the folder only, never out of it through a
// climbing name or a link.
#include <gtest/gtest.h>

#include <string>

#include "platform/FileSystem.h"
#include "report/CFolderReader.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

class FolderReader : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder_ = machine_.Root() + "\\history";
        MakeFolders(folder_ + "\\C1\\E1");
        WriteWholeFile(folder_ + "\\C1\\E1\\ZORInstallEvent.Log", "event log");
        MakeFolders(machine_.Root() + "\\outside\\E1");
        WriteWholeFile(machine_.Root() + "\\outside\\secret", "secret");
        WriteWholeFile(machine_.Root() + "\\outside\\E1\\ZORInstallEvent.Log", "secret");
        reader_.Open(folder_);
    }

    std::string Read(const std::string& name) const
    {
        std::string bytes;
        if (!reader_.Stream(name, 1024, [&](const char* data, std::size_t size) { bytes.append(data, size); }))
            return "(not read)";
        return bytes;
    }

    TestMachine machine_;
    std::string folder_;
    CFolderReader reader_;
};

TEST_F(FolderReader, AFileInsideIsReadByEitherSeparator)
{
    EXPECT_TRUE(reader_.Contains("C1\\E1\\ZORInstallEvent.Log"));
    EXPECT_EQ(Read("C1/E1/ZORInstallEvent.Log"), "event log");
}

TEST_F(FolderReader, ANameThatClimbsOutOrBeginsAtARootIsNotThere)
{
    for (const char* name : {"..\\outside\\secret", "C1\\..\\..\\outside\\secret", "../outside/secret",
                             "\\outside\\secret", "C:\\outside\\secret"}) {
        EXPECT_FALSE(reader_.Contains(name)) << name;
        EXPECT_EQ(Read(name), "(not read)") << name;
    }
}

TEST_F(FolderReader, ALinkToAFileOutsideIsNotThere)
{
    if (!MakeSymbolicLink(machine_.Root() + "\\outside\\secret", folder_ + "\\C1\\E1\\setup.log", false))
        GTEST_SKIP() << "this file system holds no symbolic links";

    EXPECT_FALSE(reader_.Contains("C1\\E1\\setup.log"));
    EXPECT_EQ(Read("C1\\E1\\setup.log"), "(not read)");
}

TEST_F(FolderReader, AFolderLinkOnTheWayIsNotFollowed)
{
    if (!MakeSymbolicLink(machine_.Root() + "\\outside", folder_ + "\\C2", true))
        GTEST_SKIP() << "this file system holds no symbolic links";

    EXPECT_FALSE(reader_.Contains("C2\\E1\\ZORInstallEvent.Log"));
    EXPECT_EQ(Read("C2\\E1\\ZORInstallEvent.Log"), "(not read)");
    std::string bytes;
    EXPECT_FALSE(reader_.ReadProfile("C2\\E1\\ZORInstallEvent.Log", 1024, bytes));
}

}  // namespace
