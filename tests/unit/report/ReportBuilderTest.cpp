// The report over a history laid down by hand, read from its folder and from
// an archive of it that the system's own archive writer made.
#include <gtest/gtest.h>

#include "ReportTestLogs.h"
#include "report/CHistorySource.h"
#include "report/CReportBuilder.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "zip/CZipper.h"

using namespace reportlogs;

namespace {

SnapshotContent Machine()
{
    SnapshotContent content;
    content.localGroups = {"Administrators", "Users"};
    content.localMembers = {{"Administrators", "VM\\alice"}};
    content.software = {{"TAQ Inc.", "ZOR Client", "9.0.0"}};
    content.processes = {{100, "explorer.exe"}, {200, "setup.exe"}};
    content.services = {{"ZOR Database Server", "Started"}};
    return content;
}

const char kHistoryIni[] =
    "[History]\r\nCount=4\r\n"
    "[E1]\r\nAction=Install\r\nProduct=ZOR 9.0\r\nCopy_Name=C1\r\nComplete_Flag=TRUE\r\nResult=Success\r\n"
    "Start_Time=20061012 10:00:00\r\nEnd_Time=20061012 10:05:30\r\nLog_File_Name=D:\\logs\\setup.log\r\n"
    "Event_Log_File=C:\\Documents and Settings\\All Users\\Application Data\\TAQ\\ZORHistory\\C1\\E1\\"
    "ZORInstallEvent.Log\r\n"
    "[LOOSE]\r\nAction=Repair\r\nCopy_Name=\r\nComplete_Flag=TRUE\r\nResult=1603\r\n"
    "Start_Time=20061013 09:00:00\r\nEnd_Time=20061013 09:00:10\r\n"
    "[E2]\r\nAction=Upgrade\r\nCopy_Name=C1\r\nComplete_Flag=TRUE\r\nResult=0\r\n"
    "Start_Time=20061014 08:00:00\r\nEnd_Time=20061014 08:00:05\r\n"
    "[E3]\r\nAction=Install\r\nCopy_Name=(Unknown)\r\nComplete_Flag=FALSE\r\nStart_Time=20061015 07:00:00\r\n";

class ReportBuilderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        history_ = machine_.MakeHistoryFolder();
        WriteWholeFile(history_ + "\\History.ini", kHistoryIni);

        SnapshotContent afterE1 = Machine();
        afterE1.software.push_back({"TAQ Inc.", "ZOR Server", "9.0.0"});
        afterE1.processes.push_back({300, "zorsrv.exe"});
        afterE1.processes.push_back({301, "zorsrv.exe"});
        afterE1.services.push_back({"ZOR Listener", "Started"});
        MakeFolders(history_ + "\\C1\\E1");
        WriteWholeFile(history_ + "\\C1\\E1\\ZORInstallEvent.Log",
                       StartHead("E1", "VM", "Microsoft Windows XP Professional") +
                           StartSnapshot("E1", "Install", Machine()) + "Copying <files>\n" +
                           EndSnapshot("E1", "Install", afterE1) + EndTail("Install"));
        WriteWholeFile(history_ + "\\C1\\E1\\setup.log", "installer log\n");

        // Between E1 and E2 the listener stopped, outside of any install.
        SnapshotContent beforeE2 = afterE1;
        beforeE2.services.back().state = "Stopped";
        SnapshotContent afterE2 = beforeE2;
        afterE2.software[1].version = "9.1.0";
        MakeFolders(history_ + "\\C1\\E2");
        WriteWholeFile(history_ + "\\C1\\E2\\ZORInstallEvent.Log",
                       StartHead("E2", "VM2", "other") + StartSnapshot("E2", "Upgrade", beforeE2) +
                           EndSnapshot("E2", "Upgrade", afterE2) + EndTail("Upgrade"));

        MakeFolders(history_ + "\\E3");
        WriteWholeFile(history_ + "\\E3\\ZORInstallEvent.Log",
                       StartHead("E3", "VM", "XP") + StartSnapshot("E3", "Install", Machine()));
    }

    HistoryReport Build(const std::string& sourcePath)
    {
        CHistorySource source;
        std::string reason;
        EXPECT_TRUE(source.Open(sourcePath, reason)) << reason;
        HistoryReport report;
        EXPECT_TRUE(CReportBuilder(source, sourcePath).Build(report, reason)) << reason;
        return report;
    }

    void ExpectTheHistory(const HistoryReport& report)
    {
        EXPECT_EQ(report.computerName, "VM");
        EXPECT_EQ(report.operatingSystem, "Microsoft Windows XP Professional");
        EXPECT_EQ(report.eventCount, 4u);
        EXPECT_EQ(report.firstTime, "20061012 10:00:00");
        EXPECT_EQ(report.lastTime, "20061015 07:00:00");
        ASSERT_EQ(report.copies.size(), 3u);
        EXPECT_EQ(report.copies[0].name, "C1");
        EXPECT_EQ(report.copies[1].name, "LOOSE");
        EXPECT_EQ(report.copies[2].name, "(Unknown)");
        ASSERT_EQ(report.copies[0].events.size(), 2u);

        const EventReport& e1 = report.copies[0].events[0];
        EXPECT_EQ(e1.outcome, EventOutcome::Succeeded);
        EXPECT_EQ(e1.durationSeconds, 330);
        EXPECT_EQ(e1.eventLogName, "C1\\E1\\ZORInstallEvent.Log");
        EXPECT_EQ(e1.messages, std::vector<std::string>{"Copying <files>"});
        ASSERT_EQ(e1.installerLogs.size(), 1u);
        EXPECT_EQ(e1.installerLogs[0].name, "setup.log");
        EXPECT_TRUE(e1.installerLogs[0].inSource);
        ASSERT_TRUE(e1.changes.has_value());
        const SnapshotChanges& changes = *e1.changes;
        EXPECT_EQ(changes[1]->added, std::vector<std::string>{"ZOR Server"});
        EXPECT_EQ(changes[2]->added, std::vector<std::string>{"zorsrv.exe"});
        EXPECT_EQ(changes[3]->added, std::vector<std::string>{"ZOR Listener"});
        EXPECT_EQ(changes[0]->Count() + changes[4]->Count() + changes[5]->Count(), 0u);
        EXPECT_FALSE(e1.drift.has_value());

        const EventReport& e2 = report.copies[0].events[1];
        ASSERT_TRUE(e2.drift.has_value());
        ASSERT_EQ((*e2.drift)[3]->changed.size(), 1u);
        EXPECT_EQ((*e2.drift)[3]->changed[0].name, "ZOR Listener");
        EXPECT_EQ((*e2.drift)[3]->changed[0].before, "Started");
        EXPECT_EQ((*e2.drift)[3]->changed[0].after, "Stopped");
        ASSERT_EQ((*e2.changes)[1]->changed.size(), 1u);
        EXPECT_EQ((*e2.changes)[1]->changed[0].after, "9.1.0");

        const EventReport& loose = report.copies[1].events[0];
        EXPECT_EQ(loose.outcome, EventOutcome::Failed);
        EXPECT_TRUE(loose.eventLogName.empty());
        EXPECT_FALSE(loose.changes.has_value());
        EXPECT_EQ(loose.notes, std::vector<std::string>{"the event log is not in the source"});

        const EventReport& open = report.copies[2].events[0];
        EXPECT_EQ(open.outcome, EventOutcome::NeverEnded);
        EXPECT_TRUE(open.hasBefore);
        EXPECT_FALSE(open.hasAfter);
        EXPECT_FALSE(open.changes.has_value());
    }

    TestMachine machine_;
    std::string history_;
};

}  // namespace

TEST_F(ReportBuilderTest, AHistoryFolderGivesEveryEventWithItsChangesAndDrift)
{
    ExpectTheHistory(Build(history_));
}

TEST_F(ReportBuilderTest, AnArchiveOfTheFolderGivesTheSameReport)
{
    const std::string zipPath = machine_.Root() + "\\history.zip";
    CZipper zipper(nullptr, nullptr, false);
    ASSERT_TRUE(zipper.Open(zipPath.c_str(), history_.c_str(), false));
    ASSERT_TRUE(zipper.AddFolder(history_.c_str(), false));
    zipper.Close();
    ExpectTheHistory(Build(zipPath));
}

TEST_F(ReportBuilderTest, ASourceWithoutHistoryIniCantBeRead)
{
    const std::string empty = machine_.Root() + "\\empty";
    MakeFolders(empty);
    CHistorySource source;
    std::string reason;
    ASSERT_TRUE(source.Open(empty, reason));
    HistoryReport report;
    EXPECT_FALSE(CReportBuilder(source, "empty").Build(report, reason));
    EXPECT_EQ(reason, "empty: no History.ini that can be read in it");
}

TEST_F(ReportBuilderTest, AFileThatIsNoZipOrNothingAtAllCantBeOpened)
{
    const std::string notZip = machine_.Root() + "\\not.zip";
    WriteWholeFile(notZip, "PK but not really a zip archive");
    CHistorySource source;
    std::string reason;
    EXPECT_FALSE(source.Open(notZip, reason));
    EXPECT_EQ(reason, notZip + ": not a zip archive that can be read");
    EXPECT_FALSE(source.Open(machine_.Root() + "\\missing.zip", reason));
    EXPECT_EQ(reason, machine_.Root() + "\\missing.zip: no such file or folder");
}

TEST_F(ReportBuilderTest, NamesThatClimbOutOfTheSourceAreNeverRead)
{
    WriteWholeFile(machine_.Root() + "\\outside.txt", "outside");
    CHistorySource source;
    std::string reason;
    ASSERT_TRUE(source.Open(history_, reason));
    EXPECT_TRUE(source.Contains("History.ini"));
    EXPECT_TRUE(source.Contains("c1/e1/zorinstallevent.log"));
    EXPECT_FALSE(source.Contains("..\\outside.txt"));
    EXPECT_FALSE(source.Contains("C1\\..\\..\\outside.txt"));
    EXPECT_FALSE(source.Contains(machine_.Root() + "\\outside.txt"));
}
