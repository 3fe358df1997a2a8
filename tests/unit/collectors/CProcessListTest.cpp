// The process report: what each path of collection lists and leaves out, the
// calls it makes and the order of them, and the report's lines.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ProcessReportCapture.h"

namespace {

const std::string kRule = std::string(51, '-') + " ";
const std::string kHeader = "Process ID         Process Name                     ";
const std::string kEnd = "---------- Process List ( end )-------------------- ";

// The id right-aligned in 19 columns, then the name.
std::string Row(const std::string& id, const std::string& name)
{
    return std::string(19 - id.size(), ' ') + id + name;
}

// The id left-aligned in 19 columns, then the name.
std::string LeftRow(const std::string& id, const std::string& name)
{
    return id + std::string(19 - id.size(), ' ') + name;
}

std::string Report(const std::string& count, std::initializer_list<std::string> rows)
{
    std::vector<std::string> lines = {"", "Processes:" + count, kRule, kHeader, kRule};
    lines.insert(lines.end(), rows.begin(), rows.end());
    lines.push_back(kEnd);
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return WithPlatformLineEnds(text);
}

std::vector<std::string> Names(const CProcessList& list)
{
    std::vector<std::string> names;
    for (const ProcessEntry& entry : list.processes)
        names.push_back(entry.name);
    return names;
}

std::vector<std::int32_t> Ids(const CProcessList& list)
{
    std::vector<std::int32_t> ids;
    for (const ProcessEntry& entry : list.processes)
        ids.push_back(entry.processId);
    return ids;
}

// ---- The report's lines ----

using ProcessReport = ProcessReportTest;

TEST_F(ProcessReport, EmptyListPrintsCountZeroHeaderBetweenRulesAndEndAtOnce)
{
    CProcessList list;
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
}

TEST_F(ProcessReport, OnFreshStreamIdsAreRightAlignedInNineteenColumns)
{
    CProcessList list = ListOf({{"smss.exe", 8}, {"winlogon.exe", 164}});
    EXPECT_EQ(WrittenReport(list),
              Report("2", {"                  8smss.exe", "                164winlogon.exe"}));
}

TEST_F(ProcessReport, AfterAnotherReportTurnedOnLeftIdsAreLeftAligned)
{
    CLogger::Instance().setf(std::ios_base::left);
    CProcessList list = ListOf({{"smss.exe", 8}, {"winlogon.exe", 164}});
    EXPECT_EQ(WrittenReport(list),
              Report("2", {"8                  smss.exe", "164                winlogon.exe"}));
}

TEST_F(ProcessReport, CollectedIdsAreLeftAlignedAfterAnotherReportTurnedOnLeft)
{
    OnWindowsNT();
    AddProcess(8, "smss.exe");
    CLogger::Instance().setf(std::ios_base::left);
    EXPECT_EQ(CollectedReport(), Report("1", {LeftRow("8", "smss.exe")}));
}

TEST_F(ProcessReport, ReportDoesNotTurnOnLeftItself)
{
    CProcessList list = ListOf({{"a.exe", 1}});
    WrittenReport(list);
    EXPECT_FALSE(CLogger::Instance().flags() & std::ios_base::left);
}

TEST_F(ProcessReport, WidestIdIsPaddedToNineteenColumns)
{
    CProcessList list = ListOf({{"x.exe", -2147483647 - 1}});
    EXPECT_EQ(WrittenReport(list), Report("1", {Row("-2147483648", "x.exe")}));
}

TEST_F(ProcessReport, IdsArePrintedAsSignedDecimals)
{
    OnWindowsNT();
    AddProcess(4294967280u, "high.exe");
    EXPECT_EQ(CollectedReport(), Report("1", {Row("-16", "high.exe")}));
}

TEST_F(ProcessReport, ProcessOfAnyNameIsListed)
{
    CProcessList list = ListOf({{"", 1}, {"ZOR.EXE", 2}, {"anything at all", 3}, {"zor", 4}});
    EXPECT_EQ(WrittenReport(list),
              Report("4", {Row("1", ""), Row("2", "ZOR.EXE"), Row("3", "anything at all"),
                           Row("4", "zor")}));
}

TEST_F(ProcessReport, EveryNameIsSelected)
{
    CProcessList list;
    EXPECT_TRUE(list.IsSelected({"", 1}));
    EXPECT_TRUE(list.IsSelected({"notepad.exe", 2}));
    EXPECT_TRUE(list.IsSelected({"msiexec.exe", 3}));
}

TEST_F(ProcessReport, ReportStartsWithEmptyLineOfItsOwn)
{
    CLogger::Instance() << "before";
    CProcessList list;
    const std::string text = WrittenReport(list);
    EXPECT_EQ(text.substr(0, 6), "before");
    EXPECT_EQ(text.substr(6), WithPlatformLineEnds("\nProcesses:0\n") +
                                  WithPlatformLineEnds(kRule + "\n" + kHeader + "\n" + kRule +
                                                       "\n" + kEnd + "\n"));
}

// ---- The status-library path of the NT family ----

using StatusLibraryPath = ProcessReportTest;

TEST_F(StatusLibraryPath, ListsProcessesInTheOrderGivenWithTheirBaseNames)
{
    OnWindowsNT();
    AddProcess(8, "smss.exe");
    AddProcess(412, "explorer.exe");
    AddProcess(164, "winlogon.exe");
    EXPECT_EQ(CollectedReport(), Report("3", {Row("8", "smss.exe"), Row("412", "explorer.exe"),
                                              Row("164", "winlogon.exe")}));
}

TEST_F(StatusLibraryPath, CollectReturnsZeroAndEmptiesAnEarlierList)
{
    OnWindowsNT();
    AddProcess(8, "smss.exe");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(Names(list), std::vector<std::string>{"smss.exe"});
}

TEST_F(StatusLibraryPath, PreparesWindowsFolderThenOwnIdThenLoadsLibrary)
{
    OnWindowsNT();
    Processes().windowsFolder = "C:\\WINNT";
    Processes().shortWindowsFolder = "C:\\WINNT";
    CProcessList list;
    list.Collect();
    const std::vector<std::string> expected = {
        "GetWindowsDirectoryA 260", "GetShortPathNameA C:\\WINNT 260", "GetCurrentProcessId",
        "LoadLibraryA psapi.dll"};
    ASSERT_GE(Processes().calls.size(), expected.size());
    EXPECT_EQ(std::vector<std::string>(Processes().calls.begin(),
                                       Processes().calls.begin() + expected.size()),
              expected);
}

TEST_F(StatusLibraryPath, FailingWindowsFolderChangesNothingInTheReport)
{
    OnWindowsNT();
    Processes().windowsFolder.clear();
    AddProcess(8, "smss.exe");
    EXPECT_EQ(CollectedReport(), Report("1", {Row("8", "smss.exe")}));
    EXPECT_TRUE(WasCalled("GetShortPathNameA  260"));
}

TEST_F(StatusLibraryPath, LooksUpAllFourFunctionsThenEnumeratesAndFreesTheLibrary)
{
    OnWindowsNT();
    AddProcess(8, "smss.exe");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(CallsStartingWith("GetProcAddress"),
              (std::vector<std::string>{"GetProcAddress psapi.dll EnumProcesses",
                                        "GetProcAddress psapi.dll EnumProcessModules",
                                        "GetProcAddress psapi.dll GetModuleBaseNameA",
                                        "GetProcAddress psapi.dll GetModuleFileNameExA"}));
    EXPECT_EQ(CallsStartingWith("EnumProcesses"),
              std::vector<std::string>{"EnumProcesses 32768"});
    EXPECT_EQ(Processes().calls.back(), "FreeLibrary psapi.dll");
}

TEST_F(StatusLibraryPath, EachProcessIsOpenedReadAndClosedInTurn)
{
    OnWindowsNT();
    AddProcess(8, "smss.exe");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(CallsStartingWith(""),
              (std::vector<std::string>{
                  "GetWindowsDirectoryA 260", "GetShortPathNameA C:\\WINDOWS 260",
                  "GetCurrentProcessId", "LoadLibraryA psapi.dll",
                  "GetProcAddress psapi.dll EnumProcesses",
                  "GetProcAddress psapi.dll EnumProcessModules",
                  "GetProcAddress psapi.dll GetModuleBaseNameA",
                  "GetProcAddress psapi.dll GetModuleFileNameExA", "EnumProcesses 32768",
                  "OpenProcess 0x410 FALSE 8", "EnumProcessModules process 8 32728",
                  "GetModuleBaseNameA process 8 260", "CloseHandle process 8",
                  "FreeLibrary psapi.dll"}));
}

TEST_F(StatusLibraryPath, OwnProcessIsNeverListedAndItsHandleStaysOpen)
{
    OnWindowsNT();
    Processes().ownId = 900;
    AddProcess(8, "smss.exe");
    AddProcess(900, "ZORRecordEvent.exe");
    AddProcess(412, "explorer.exe");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), (std::vector<std::int32_t>{8, 412}));
    EXPECT_TRUE(WasCalled("OpenProcess 0x410 FALSE 900"));
    EXPECT_FALSE(WasCalled("EnumProcessModules process 900 32728"));
    EXPECT_FALSE(WasCalled("CloseHandle process 900"));
}

TEST_F(StatusLibraryPath, IdZeroIsNeverListedThoughItIsOpenedFirst)
{
    OnWindowsNT();
    AddProcess(0, "System Idle Process");
    AddProcess(8, "smss.exe");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), std::vector<std::int32_t>{8});
    EXPECT_TRUE(WasCalled("OpenProcess 0x410 FALSE 0"));
    EXPECT_FALSE(WasCalled("EnumProcessModules process 0 32728"));
    EXPECT_FALSE(WasCalled("CloseHandle process 0"));
}

TEST_F(StatusLibraryPath, ProcessThatCannotBeOpenedIsNotListed)
{
    OnWindowsNT();
    AddProcess(4, "System");
    LastProcess().opens = false;
    AddProcess(8, "smss.exe");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), std::vector<std::int32_t>{8});
    EXPECT_TRUE(WasCalled("OpenProcess 0x410 FALSE 4"));
    EXPECT_EQ(CallsStartingWith("CloseHandle"), std::vector<std::string>{"CloseHandle process 8"});
}

TEST_F(StatusLibraryPath, ProcessThatOpensButHasNoModuleListIsLeftOutAndClosed)
{
    OnWindowsNT();
    AddProcess(4, "System");
    LastProcess().hasModules = false;
    AddProcess(8, "smss.exe");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), std::vector<std::int32_t>{8});
    EXPECT_TRUE(WasCalled("CloseHandle process 4"));
    EXPECT_FALSE(WasCalled("GetModuleBaseNameA process 4 260"));
}

TEST_F(StatusLibraryPath, FailingNameCallIsListedAsUnknownName)
{
    OnWindowsNT();
    AddProcess(8, "smss.exe");
    AddProcess(300, "hidden.exe");
    LastProcess().nameFails = true;
    AddProcess(412, "explorer.exe");
    EXPECT_EQ(CollectedReport(), Report("3", {Row("8", "smss.exe"), Row("300", "UNK_NAME"),
                                              Row("412", "explorer.exe")}));
    EXPECT_TRUE(WasCalled("CloseHandle process 300"));
}

TEST_F(StatusLibraryPath, UnknownNameOnlyWhenModuleListWorksAndNameCallFails)
{
    OnWindowsNT();
    AddProcess(4, "System");
    LastProcess().hasModules = false;
    LastProcess().nameFails = true;
    AddProcess(300, "hidden.exe");
    LastProcess().nameFails = true;
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), std::vector<std::int32_t>{300});
    EXPECT_EQ(Names(list), std::vector<std::string>{"UNK_NAME"});
}

TEST_F(StatusLibraryPath, TwoProcessesOfTheSameNameGiveTwoRows)
{
    OnWindowsNT();
    AddProcess(510, "svchost.exe");
    AddProcess(620, "svchost.exe");
    EXPECT_EQ(CollectedReport(),
              Report("2", {Row("510", "svchost.exe"), Row("620", "svchost.exe")}));
}

TEST_F(StatusLibraryPath, LongBaseNameIsCutToItsBuffer)
{
    OnWindowsNT();
    AddProcess(8, std::string(400, 'n'));
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Names(list), std::vector<std::string>{std::string(259, 'n')});
}

TEST_F(StatusLibraryPath, MissingLibraryGivesEmptyFrameWithoutFreeing)
{
    OnWindowsNT();
    Processes().missingLibraries.insert("psapi.dll");
    AddProcess(8, "smss.exe");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("FreeLibrary").empty());
    EXPECT_TRUE(CallsStartingWith("GetProcAddress").empty());
}

class MissingStatusFunction : public ProcessReportTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(MissingStatusFunction, GivesEmptyFrameAndFreesLibrary)
{
    OnWindowsNT();
    Processes().missingFunctions.insert(GetParam());
    AddProcess(8, "smss.exe");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("EnumProcesses").empty());
    EXPECT_EQ(Processes().calls.back(), "FreeLibrary psapi.dll");
}

INSTANTIATE_TEST_SUITE_P(EachOfTheFour, MissingStatusFunction,
                         ::testing::Values("EnumProcesses", "EnumProcessModules",
                                           "GetModuleBaseNameA", "GetModuleFileNameExA"));

TEST_F(StatusLibraryPath, FailingEnumProcessesGivesEmptyFrameAndFreesLibrary)
{
    OnWindowsNT();
    Processes().enumProcessesFails = true;
    AddProcess(8, "smss.exe");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("OpenProcess").empty());
    EXPECT_EQ(Processes().calls.back(), "FreeLibrary psapi.dll");
}

TEST_F(StatusLibraryPath, NoProcessesGivesEmptyFrameAndFreesLibrary)
{
    OnWindowsNT();
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_EQ(Processes().calls.back(), "FreeLibrary psapi.dll");
}

TEST_F(StatusLibraryPath, BeyondEightThousandOneHundredNinetyTwoProcessesAreNotSeen)
{
    OnWindowsNT();
    for (std::uint32_t id = 1; id <= 8200; ++id)
        AddProcess(id * 4, "p.exe");
    CProcessList list;
    list.Collect();
    ASSERT_EQ(list.processes.size(), 8192u);
    EXPECT_EQ(list.processes.back().processId, 8192 * 4);
    EXPECT_FALSE(WasCalled("OpenProcess 0x410 FALSE 32772"));
}

// ---- The snapshot path of the Windows 95 family ----

using SnapshotPath = ProcessReportTest;

TEST_F(SnapshotPath, NamesAreCutFromFullPathsOfTheExecutables)
{
    OnWindows98();
    AddSnapshotEntry(0xFFF1A3C5u, "C:\\WINDOWS\\SYSTEM\\KERNEL32.DLL");
    AddSnapshotEntry(0xFFF3B2B1u, "C:\\WINDOWS\\EXPLORER.EXE");
    AddSnapshotEntry(0xFFF20F2Du, "C:\\Program Files\\TAQ\\zor setup.exe");
    EXPECT_EQ(CollectedReport(),
              Report("3", {Row("-941115", "KERNEL32.DLL"), Row("-806223", "EXPLORER.EXE"),
                           Row("-913619", "zor setup.exe")}));
}

TEST_F(SnapshotPath, WindowsNinetyFiveAndMillenniumTakeIt)
{
    SetVersion(4, 0, 1);
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(Names(list), std::vector<std::string>{"EXPLORER.EXE"});
    SetVersion(4, 90, 1);
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(Names(list), std::vector<std::string>{"EXPLORER.EXE"});
    EXPECT_TRUE(CallsStartingWith("LoadLibraryA psapi.dll").empty());
}

TEST_F(SnapshotPath, CallsInOrderFromPreparationToFreeing)
{
    OnWindows98();
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(CallsStartingWith(""),
              (std::vector<std::string>{
                  "GetWindowsDirectoryA 260", "GetShortPathNameA C:\\WINDOWS 260",
                  "GetCurrentProcessId", "LoadLibraryA kernel32.dll",
                  "GetProcAddress kernel32.dll CreateToolhelp32Snapshot",
                  "GetProcAddress kernel32.dll Process32First",
                  "GetProcAddress kernel32.dll Process32Next",
                  "GetProcAddress kernel32.dll Module32First",
                  "GetProcAddress kernel32.dll Module32Next", "CreateToolhelp32Snapshot 2 0",
                  "Process32First 296", "Process32Next 296", "CloseHandle snapshot",
                  "FreeLibrary kernel32.dll"}));
}

TEST_F(SnapshotPath, OwnProcessIsNeverListed)
{
    OnWindows98();
    Processes().ownId = 77;
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    AddSnapshotEntry(77, "C:\\TEMP\\ZORRECORDEVENT.EXE");
    AddSnapshotEntry(30, "C:\\WINDOWS\\TASKMON.EXE");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), (std::vector<std::int32_t>{20, 30}));
    EXPECT_EQ(Names(list), (std::vector<std::string>{"EXPLORER.EXE", "TASKMON.EXE"}));
}

TEST_F(SnapshotPath, EntryOfAnotherSizeIsSkipped)
{
    OnWindows98();
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    AddSnapshotEntry(25, "C:\\WINDOWS\\ODD.EXE", 300);
    AddSnapshotEntry(30, "C:\\WINDOWS\\TASKMON.EXE");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Ids(list), (std::vector<std::int32_t>{20, 30}));
    // The size the call left is what the next call is given.
    EXPECT_EQ(CallsStartingWith("Process32Next"),
              (std::vector<std::string>{"Process32Next 296", "Process32Next 300",
                                        "Process32Next 296"}));
}

TEST_F(SnapshotPath, NameWithoutPathGetsTheNameOfTheEntryBefore)
{
    OnWindows98();
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    AddSnapshotEntry(21, "RUNDLL32.EXE");
    AddSnapshotEntry(22, "\\MPREXE.EXE");
    AddSnapshotEntry(23, "C:\\WINDOWS\\TASKMON.EXE");
    AddSnapshotEntry(24, "C:\\WINDOWS\\");
    AddSnapshotEntry(25, "");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Names(list), (std::vector<std::string>{"EXPLORER.EXE", "EXPLORER.EXE",
                                                      "EXPLORER.EXE", "TASKMON.EXE", "", ""}));
}

TEST_F(SnapshotPath, FirstEntryWithoutPathGetsTheEmptyName)
{
    OnWindows98();
    AddSnapshotEntry(20, "KERNEL32.DLL");
    AddSnapshotEntry(21, "C:\\WINDOWS\\EXPLORER.EXE");
    EXPECT_EQ(CollectedReport(), Report("2", {Row("20", ""), Row("21", "EXPLORER.EXE")}));
}

TEST_F(SnapshotPath, NameOfTheOwnProcessIsNotTaken)
{
    OnWindows98();
    Processes().ownId = 77;
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    AddSnapshotEntry(77, "C:\\TEMP\\ZORRECORDEVENT.EXE");
    AddSnapshotEntry(30, "TASKMON.EXE");
    CProcessList list;
    list.Collect();
    EXPECT_EQ(Names(list), (std::vector<std::string>{"EXPLORER.EXE", "EXPLORER.EXE"}));
}

TEST_F(SnapshotPath, TwoProcessesOfTheSameNameGiveTwoRows)
{
    OnWindows98();
    AddSnapshotEntry(20, "C:\\WINDOWS\\RUNDLL32.EXE");
    AddSnapshotEntry(21, "C:\\WINDOWS\\RUNDLL32.EXE");
    EXPECT_EQ(CollectedReport(),
              Report("2", {Row("20", "RUNDLL32.EXE"), Row("21", "RUNDLL32.EXE")}));
}

TEST_F(SnapshotPath, LongPathIsReadWithinItsBuffer)
{
    OnWindows98();
    AddSnapshotEntry(20, "C:\\" + std::string(300, 'd') + "\\LONG.EXE");
    AddSnapshotEntry(21, "C:\\" + std::string(200, 'd') + "\\" + std::string(100, 'n'));
    CProcessList list;
    list.Collect();
    // szExeFile holds 259 characters: the first path keeps only its folder
    // after "C:\", and the second loses its name's end.
    EXPECT_EQ(Names(list),
              (std::vector<std::string>{std::string(256, 'd'), std::string(259 - 204, 'n')}));
}

TEST_F(SnapshotPath, NoEntriesGiveEmptyFrameAndFreeTheLibrary)
{
    OnWindows98();
    CProcessList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("Process32Next").empty());
    EXPECT_TRUE(WasCalled("CloseHandle snapshot"));
    EXPECT_EQ(Processes().calls.back(), "FreeLibrary kernel32.dll");
}

TEST_F(SnapshotPath, MissingKernelLibraryReturnsOneWithEmptyFrame)
{
    OnWindows98();
    Processes().missingLibraries.insert("kernel32.dll");
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 1);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("FreeLibrary").empty());
}

class MissingSnapshotFunction : public ProcessReportTest,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(MissingSnapshotFunction, ReturnsOneWithEmptyFrameAndLibraryKept)
{
    OnWindows98();
    Processes().missingFunctions.insert(GetParam());
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 1);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("CreateToolhelp32Snapshot").empty());
    EXPECT_TRUE(CallsStartingWith("FreeLibrary").empty());
}

INSTANTIATE_TEST_SUITE_P(EachOfTheFive, MissingSnapshotFunction,
                         ::testing::Values("CreateToolhelp32Snapshot", "Process32First",
                                           "Process32Next", "Module32First", "Module32Next"));

TEST_F(SnapshotPath, FailingSnapshotReturnsOneWithLibraryKept)
{
    OnWindows98();
    Processes().snapshotFails = true;
    AddSnapshotEntry(20, "C:\\WINDOWS\\EXPLORER.EXE");
    CProcessList list;
    EXPECT_EQ(list.Collect(), 1);
    EXPECT_EQ(WrittenReport(list), Report("0", {}));
    EXPECT_TRUE(CallsStartingWith("Process32First").empty());
    EXPECT_TRUE(CallsStartingWith("CloseHandle").empty());
    EXPECT_TRUE(CallsStartingWith("FreeLibrary").empty());
}

}  // namespace
