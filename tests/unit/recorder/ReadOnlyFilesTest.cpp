// Files of the store whose attribute is read-only refuse the recorder's
// writes, whoever runs it, as Windows refuses them even to an administrator;
// the rest of each call goes on, and a folder still moves with such a file.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "recorder/CInstallEvent.h"
#include "support/TestFiles.h"
#include "support/WineHost.h"

namespace {

using Strings = std::vector<std::string>;

class ReadOnlyFiles : public RecorderTest {
protected:
    void SetUp() override
    {
        if (WineWritesReadOnlyFiles())
            GTEST_SKIP() << kWineWritesReadOnlyFiles;
    }


    std::string MovedLog() const { return machine.HistoryFolder() + "\\copy\\x\\ZORInstallEvent.Log"; }
};

TEST_F(ReadOnlyFiles, AReadOnlyHistoryIniKeepsItsContentWhileTheEventIsStillLogged)
{
    ASSERT_EQ(Record({"-start", "first"}), 0);
    const std::string before = ReadWholeFile(HistoryIni());
    {
        const ReadOnlyWhileAlive readOnly(HistoryIni());
        EXPECT_EQ(Record({"-start", "second", "-Product", "p"}), 0);
    }
    EXPECT_EQ(ReadWholeFile(HistoryIni()), before);
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_EQ(SectionNames(), (Strings{"History", "first"}));
    EXPECT_FALSE(FileLines(EventLog("second")).empty());
}

TEST_F(ReadOnlyFiles, AReadOnlyEventLogTakesNoMoreLinesButMovesWithItsFolder)
{
    ASSERT_EQ(Record({"-start", "x"}), 0);
    const std::string log = ReadWholeFile(EventLog("x"));
    {
        const ReadOnlyWhileAlive readOnly(EventLog("x"));
        EXPECT_EQ(Record({"-logmessage", "x", "-message", "Copying the server files"}), 0);
        EXPECT_EQ(Record({"-end", "x", "-CopyName", "copy"}), 0);
    }
    EXPECT_EQ(ReadWholeFile(MovedLog()), log);
    SetWritable(MovedLog(), true);
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), MovedLog());
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"History.ini", "copy"}));
}

TEST_F(ReadOnlyFiles, WithAReadOnlyHistoryIniTheHandOverMovesTheFolderAndNoKeyChanges)
{
    ASSERT_EQ(Record({"-start", "x"}), 0);
    {
        const ReadOnlyWhileAlive readOnly(HistoryIni());
        EXPECT_EQ(Record({"-end", "x", "-CopyName", "copy", "-Result", "Success"}), 0);
    }
    EXPECT_FALSE(FileLines(MovedLog()).empty());
    CInstallEvent stored("x");
    EXPECT_EQ(stored.GetEventLogFile(), EventLog("x"));
    EXPECT_EQ(stored.GetCopyName(), "(Unknown)");
    EXPECT_EQ(stored.GetCompleteFlag(), "FALSE");
    EXPECT_EQ(stored.GetResult(), "");
}

}  // namespace
