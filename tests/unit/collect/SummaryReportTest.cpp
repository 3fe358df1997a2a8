#include "history/CHistoryStore.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "support/WineHost.h"
#include "unit/collect/GoldenReports.h"
#include "unit/history/StoreText.h"

namespace {

void WriteHistoryIni(const std::string& history, const std::string& text)
{
    WriteWholeFile(history + "\\History.ini", text);
}

bool WriteSummary()
{
    return CHistoryStore().WriteSummary();
}

// Two events of COPY_A around one of COPY_B; the first event's log lies
// outside the store and is staged into its folder.
std::string LayDownThreeEventsOfTwoCopies(const TestMachine& machine)
{
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\COPY_A\\EVT_A1");
    MakeFolders(history + "\\COPY_A\\EVT_A2");
    MakeFolders(history + "\\COPY_B\\EVT_B1");
    MakeFolders(machine.Root() + "\\outside");
    WriteWholeFile(machine.Root() + "\\outside\\setup.log", "the installer's log");
    WriteHistoryIni(history, IniText({
        "[History]", "Count=3",
        "[EVT_A1]", "Event_ID=EVT_A1", "Command_Line=setup.exe -s -f1 resp.iss",
        "Start_Time=20040517 13:05:09", "End_Time=20040517 13:20:41", "Action=Install",
        "Type=Silent", "Product=ZOR Server Enterprise", "Version=9.1", "Service_Level=FP2",
        "Path=C:\\Program Files\\ZOR\\A", "Copy_Name=COPY_A", "Complete_Flag=TRUE",
        "Log_File_Name=" + machine.Root() + "\\outside\\setup.log",
        "Trace_File=C:\\missing\\trace.txt", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\COPY_A\\EVT_A1\\ZORInstallEvent.Log", "Result=0",
        "[EVT_B1]", "Event_ID=EVT_B1", "Command_Line=setup.exe",
        "Start_Time=20040518 09:00:00", "End_Time=20040518 09:45:12", "Action=Install",
        "Type=GUI", "Product=ZOR Client", "Version=9.1", "Service_Level=FP2",
        "Path=C:\\Program Files\\ZOR\\B", "Copy_Name=COPY_B", "Complete_Flag=TRUE",
        "Log_File_Name=", "Trace_File=", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\COPY_B\\EVT_B1\\ZORInstallEvent.Log", "Result=1603",
        "[EVT_A2]", "Event_ID=EVT_A2", "Command_Line=setup.exe -update",
        "Start_Time=20040601 17:30:00", "End_Time=20040601 17:31:05", "Action=Update",
        "Type=Silent", "Product=ZOR Server Enterprise", "Version=9.1.2", "Service_Level=FP3",
        "Path=C:\\Program Files\\ZOR\\A", "Copy_Name=COPY_A", "Complete_Flag=TRUE",
        "Log_File_Name=", "Trace_File=", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\COPY_A\\EVT_A2\\ZORInstallEvent.Log", "Result=0"}));
    return history;
}

}  // namespace

TEST(SummaryReport, MissingHistoryIniWritesNothing)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\EVT");
    EXPECT_FALSE(WriteSummary());
    EXPECT_EQ(FolderNames(history), Lines{"EVT"});
    EXPECT_TRUE(FolderNames(history + "\\EVT").empty());
}

TEST(SummaryReport, HistoryIniThatIsAFolderWritesNothing)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\History.ini");
    EXPECT_FALSE(WriteSummary());
    EXPECT_EQ(FolderNames(history), Lines{"History.ini"});
}

TEST(SummaryReport, StoreWithoutEventsGetsTheHeadAndTheLastLine)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    WriteHistoryIni(history, "");
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"),
              ExpectedReport("no_events/Summary.txt", history));
}

TEST(SummaryReport, CopiesStandInOrderOfTheirFirstEventWithAllTheirEvents)
{
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"), ExpectedReport("copies/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\Summary.txt"),
              ExpectedReport("copies/COPY_A/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_B\\Summary.txt"),
              ExpectedReport("copies/COPY_B/Summary.txt", history));
}

TEST(SummaryReport, StagedLogIsCopiedAndTheSourceStays)
{
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\EVT_A1\\setup.log"), "the installer's log");
    EXPECT_EQ(ReadWholeFile(machine.Root() + "\\outside\\setup.log"), "the installer's log");
}

TEST(SummaryReport, ReadOnlyReportsAreLeftAsTheyAreWhileTheLogIsStillStaged)
{
    if (WineWritesReadOnlyFiles())
        GTEST_SKIP() << kWineWritesReadOnlyFiles;
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    WriteWholeFile(history + "\\Summary.txt", "earlier overall report");
    WriteWholeFile(history + "\\COPY_A\\Summary.txt", "earlier copy report");
    {
        const ReadOnlyWhileAlive overall(history + "\\Summary.txt");
        const ReadOnlyWhileAlive copy(history + "\\COPY_A\\Summary.txt");
        EXPECT_TRUE(WriteSummary());
    }
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"), "earlier overall report");
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\Summary.txt"), "earlier copy report");
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\EVT_A1\\setup.log"), "the installer's log");
    EXPECT_NE(ReadWholeFile(history + "\\COPY_B\\Summary.txt"), "");
}

TEST(SummaryReport, EarlierReportsAreReplaced)
{
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    const std::string stale(20000, 'x');
    WriteWholeFile(history + "\\Summary.txt", stale);
    WriteWholeFile(history + "\\COPY_B\\Summary.txt", stale);
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"), ExpectedReport("copies/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_B\\Summary.txt"),
              ExpectedReport("copies/COPY_B/Summary.txt", history));
}

TEST(SummaryReport, ReportOfACopyWithoutEventsStaysAsItWas)
{
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    MakeFolders(history + "\\COPY_GONE");
    WriteWholeFile(history + "\\COPY_GONE\\Summary.txt", "an old report");
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_GONE\\Summary.txt"), "an old report");
}

TEST(SummaryReport, SecondRunWritesTheSameReportsAndLeavesHistoryIniAlone)
{
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    EXPECT_TRUE(WriteSummary());
    const std::string ini = ReadWholeFile(history + "\\History.ini");
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\History.ini"), ini);
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"), ExpectedReport("copies/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\Summary.txt"),
              ExpectedReport("copies/COPY_A/Summary.txt", history));
}

TEST(SummaryReport, EventWithoutCopyNameFormsAGroupNamedAfterItself)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\EVT_SOLO");
    WriteHistoryIni(history, IniText({
        "[History]", "Count=1",
        "[EVT_SOLO]", "Event_ID=EVT_SOLO", "Command_Line=setup.exe",
        "Start_Time=20040702 08:15:00", "End_Time=20040702 08:40:30", "Action=Uninstall",
        "Type=GUI", "Product=ZOR Server", "Version=9.0", "Service_Level=FP1", "Path=D:\\ZOR",
        "Copy_Name=", "Complete_Flag=TRUE", "Log_File_Name=", "Trace_File=", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\EVT_SOLO\\ZORInstallEvent.Log", "Result=0"}));
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"),
              ExpectedReport("no_copy_name/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\EVT_SOLO\\Summary.txt"),
              ExpectedReport("no_copy_name/EVT_SOLO/Summary.txt", history));
}

TEST(SummaryReport, UnfinishedEventsShareTheGroupUnknownWhichHasNoCopyReport)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\EVT_U1");
    MakeFolders(history + "\\EVT_U2");
    MakeFolders(history + "\\COPY_A\\EVT_DONE");
    WriteHistoryIni(history, IniText({
        "[History]", "Count=3",
        "[EVT_U1]", "Event_ID=EVT_U1", "Command_Line=setup.exe", "Start_Time=20040801 10:00:00",
        "End_Time=", "Action=Install", "Type=GUI", "Product=ZOR Server", "Version=9.2",
        "Service_Level=", "Path=C:\\ZOR\\U1", "Copy_Name=(Unknown)", "Complete_Flag=FALSE",
        "Log_File_Name=", "Trace_File=", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\EVT_U1\\ZORInstallEvent.Log", "Result=",
        "[EVT_DONE]", "Event_ID=EVT_DONE", "Command_Line=setup.exe -s",
        "Start_Time=20040802 11:00:00", "End_Time=20040802 11:30:00", "Action=Install",
        "Type=Silent", "Product=ZOR Client", "Version=9.2", "Service_Level=FP1",
        "Path=C:\\ZOR\\DONE", "Copy_Name=COPY_A", "Complete_Flag=TRUE", "Log_File_Name=",
        "Trace_File=", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\COPY_A\\EVT_DONE\\ZORInstallEvent.Log", "Result=0",
        "[EVT_U2]", "Event_ID=EVT_U2", "Command_Line=setup.exe -s", "Start_Time=20040803 12:00:00",
        "End_Time=", "Action=Install", "Type=Silent", "Product=ZOR Client", "Version=9.2",
        "Service_Level=", "Path=C:\\ZOR\\U2", "Copy_Name=(Unknown)", "Complete_Flag=FALSE",
        "Log_File_Name=", "Trace_File=", "Response_File=",
        "Event_Log_File=C:\\ZORHistory\\EVT_U2\\ZORInstallEvent.Log", "Result="}));
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"), ExpectedReport("unknown/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\Summary.txt"),
              ExpectedReport("unknown/COPY_A/Summary.txt", history));
    EXPECT_EQ(FolderNames(history), (Lines{"COPY_A", "EVT_U1", "EVT_U2", "History.ini", "Summary.txt"}));
    EXPECT_TRUE(FolderNames(history + "\\EVT_U1").empty());
}

TEST(SummaryReport, SectionWithoutKeysIsAnEventWithEmptyRows)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\BARE");
    WriteHistoryIni(history, IniText({"[History]", "Count=1", "[BARE]"}));
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"),
              ExpectedReport("bare_section/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\BARE\\Summary.txt"),
              ExpectedReport("bare_section/BARE/Summary.txt", history));
}

TEST(SummaryReport, CopyNamesDifferingOnlyInCaseMakeTwoGroups)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    WriteHistoryIni(history, IniText({"[History]", "Count=2", "[EVT_1]", "Event_ID=EVT_1",
                                      "Copy_Name=CopyX", "[EVT_2]", "Event_ID=EVT_2",
                                      "Copy_Name=COPYX"}));
    EXPECT_TRUE(WriteSummary());
    EXPECT_EQ(ReadWholeFile(history + "\\Summary.txt"), ExpectedReport("case_names/Summary.txt", history));
    EXPECT_EQ(FolderNames(history), (Lines{"History.ini", "Summary.txt"}));
}

TEST(SummaryReport, OverallReportThatCannotBeOpenedStillStagesAndWritesCopyReports)
{
    TestMachine machine;
    const std::string history = LayDownThreeEventsOfTwoCopies(machine);
    MakeFolders(history + "\\Summary.txt");
    EXPECT_TRUE(WriteSummary());
    EXPECT_TRUE(FolderNames(history + "\\Summary.txt").empty());
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\Summary.txt"),
              ExpectedReport("copies/COPY_A/Summary.txt", history));
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\EVT_A1\\setup.log"), "the installer's log");
}
