#include "recorder/CInstallEvent.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "support/WineHost.h"
#include "unit/history/StoreText.h"

namespace {

std::string IniPathIn(const std::string& history)
{
    return history + "\\History.ini";
}

// A source file of the installer outside the store.
std::string Outside(const TestMachine& machine, const std::string& relative, const std::string& content)
{
    const std::string folder = machine.Root() + "\\outside";
    const std::string path = folder + "\\" + relative;
    MakeFolders(path.substr(0, path.rfind('\\')));
    WriteWholeFile(path, content);
    return path;
}

// An event EVT of copy COPY_A whose log, holding "log text", lies outside the
// store; its folder is made as `eventFolder` spells it below the history
// folder. Returns the log's path.
std::string LayDownEventWithOutsideLog(const TestMachine& machine, const std::string& eventFolder)
{
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\" + eventFolder);
    const std::string source = Outside(machine, "setup.log", "log text");
    WriteWholeFile(IniPathIn(history),
                   IniText({"[EVT]", "Copy_Name=COPY_A", "Log_File_Name=" + source}));
    return source;
}

}  // namespace

TEST(FileNameOf, IsTheTextBehindTheLastBackslash)
{
    EXPECT_EQ(FileNameOf("C:\\Temp\\logs\\setup.log"), "setup.log");
    EXPECT_EQ(FileNameOf("setup.log"), "setup.log");
    EXPECT_EQ(FileNameOf(""), "");
    EXPECT_EQ(FileNameOf("C:\\Temp\\"), "");
    EXPECT_EQ(FileNameOf("\\setup.log"), "setup.log");
}

// Only the backslash separates on Windows; on POSIX the slash does as well, so
// that the file name of a Linux installer's log is found. A colon never does.
TEST(FileNameOf, TheBackslashSeparatesEverywhereTheSlashOnPosixAlone)
{
    const bool windows = std::string(platform::kTextLineEnd) == "\r\n";
    EXPECT_EQ(std::string(platform::kFileNameSeparators), windows ? "\\" : "\\/");
    EXPECT_EQ(FileNameOf("/tmp/setup.log"), windows ? "/tmp/setup.log" : "setup.log");
    EXPECT_EQ(FileNameOf("C:setup.log"), "C:setup.log");
    EXPECT_EQ(FileNameOf("C:\\a/b\\c/d.log"), windows ? "c/d.log" : "d.log");
    EXPECT_EQ(FileNameOf("/tmp/logs/"), windows ? "/tmp/logs/" : "");
}

TEST(Staging, LogOutsideTheStoreIsCopiedIntoTheEventFolderAndTheKeyNamesTheCopy)
{
    TestMachine machine;
    const std::string source = LayDownEventWithOutsideLog(machine, "COPY_A\\EVT");
    const std::string history = machine.HistoryFolder();

    CInstallEvent("EVT").StageFiles();

    const std::string target = history + "\\COPY_A\\EVT\\setup.log";
    EXPECT_EQ(ReadWholeFile(target), "log text");
    EXPECT_EQ(ReadWholeFile(source), "log text");
    EXPECT_EQ(CInstallEvent("EVT").GetLogFileName(), target);
    EXPECT_EQ(FolderNames(history + "\\COPY_A\\EVT"), Lines{"setup.log"});
}

TEST(Staging, ACopyFolderOfAnotherCaseThanTheCopyNameTakesTheCopy)
{
    TestMachine machine;
    LayDownEventWithOutsideLog(machine, "Copy_A\\Evt");
    const std::string history = machine.HistoryFolder();

    CInstallEvent("EVT").StageFiles();

    EXPECT_EQ(CInstallEvent("EVT").GetLogFileName(), history + "\\COPY_A\\EVT\\setup.log");
    EXPECT_EQ(FolderNames(history), (Lines{"Copy_A", "History.ini"}));
    EXPECT_EQ(FolderNames(history + "\\Copy_A"), Lines{"Evt"});
    EXPECT_EQ(ReadWholeFile(history + "\\Copy_A\\Evt\\setup.log"), "log text");
}

TEST(Staging, AReadOnlyLogIsStagedAndItsCopyIsReadOnlyToo)
{
    TestMachine machine;
    const std::string source = LayDownEventWithOutsideLog(machine, "COPY_A\\EVT");
    const std::string history = machine.HistoryFolder();
    const std::string target = history + "\\COPY_A\\EVT\\setup.log";
    {
        const ReadOnlyWhileAlive readOnly(source);
        CInstallEvent("EVT").StageFiles();
    }
    EXPECT_EQ(ReadWholeFile(target), "log text");
    EXPECT_NE(platform::GetFileAttributes(target) & platform::kAttributeReadOnly, 0u);
    SetWritable(target, true);
    EXPECT_EQ(CInstallEvent("EVT").GetLogFileName(), target);
}

TEST(Staging, WithAReadOnlyHistoryIniTheFilesAreCopiedAndTheKeysKeepTheirPaths)
{
    if (WineWritesReadOnlyFiles())
        GTEST_SKIP() << kWineWritesReadOnlyFiles;
    TestMachine machine;
    const std::string source = LayDownEventWithOutsideLog(machine, "COPY_A\\EVT");
    const std::string history = machine.HistoryFolder();
    {
        const ReadOnlyWhileAlive readOnly(IniPathIn(history));
        CInstallEvent("EVT").StageFiles();
    }
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\EVT\\setup.log"), "log text");
    EXPECT_EQ(CInstallEvent("EVT").GetLogFileName(), source);
}

TEST(Staging, AllThreeFilesAreStagedEachUnderItsOwnName)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\COPY_A\\EVT");
    const std::string log = Outside(machine, "setup.log", "log");
    const std::string trace = Outside(machine, "trace.txt", "trace");
    const std::string response = Outside(machine, "answers.iss", "answers");
    WriteWholeFile(IniPathIn(history), IniText({"[EVT]", "Copy_Name=COPY_A", "Log_File_Name=" + log,
                                                "Trace_File=" + trace, "Response_File=" + response}));

    CInstallEvent event("EVT");
    event.StageFiles();

    const std::string folder = history + "\\COPY_A\\EVT\\";
    EXPECT_EQ(event.GetLogFileName(), folder + "setup.log");
    EXPECT_EQ(event.GetTraceFile(), folder + "trace.txt");
    EXPECT_EQ(event.GetResponseFile(), folder + "answers.iss");
    EXPECT_EQ(ReadWholeFile(folder + "trace.txt"), "trace");
    EXPECT_EQ(ReadWholeFile(folder + "answers.iss"), "answers");
}

TEST(Staging, SecondFileOfTheSameNameIsPassedOverAndKeepsItsKey)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\COPY_A\\EVT");
    const std::string log = Outside(machine, "first\\setup.log", "first");
    const std::string trace = Outside(machine, "second\\setup.log", "second");
    WriteWholeFile(IniPathIn(history),
                   IniText({"[EVT]", "Copy_Name=COPY_A", "Log_File_Name=" + log, "Trace_File=" + trace}));

    CInstallEvent event("EVT");
    event.StageFiles();

    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\EVT\\setup.log"), "first");
    EXPECT_EQ(event.GetLogFileName(), history + "\\COPY_A\\EVT\\setup.log");
    EXPECT_EQ(event.GetTraceFile(), trace);
}

TEST(Staging, EventWithoutCopyNameStagesIntoItsFolderInTheHistoryFolder)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\EVT");
    const std::string source = Outside(machine, "setup.log", "log text");
    WriteWholeFile(IniPathIn(history), IniText({"[EVT]", "Copy_Name=", "Log_File_Name=" + source}));

    CInstallEvent("EVT").StageFiles();

    EXPECT_EQ(ReadWholeFile(history + "\\EVT\\setup.log"), "log text");
    EXPECT_EQ(CInstallEvent("EVT").GetLogFileName(), history + "\\EVT\\setup.log");
}

TEST(Staging, UnfinishedEventPointsItsKeysIntoTheMissingUnknownFolder)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\EVT");
    const std::string log = Outside(machine, "setup.log", "log");
    const std::string trace = Outside(machine, "trace.txt", "trace");
    const std::string response = Outside(machine, "answers.iss", "answers");
    WriteWholeFile(IniPathIn(history), IniText({"[EVT]", "Copy_Name=(Unknown)", "Log_File_Name=" + log,
                                                "Trace_File=" + trace, "Response_File=" + response}));

    CInstallEvent event("EVT");
    event.StageFiles();

    const std::string folder = history + "\\(Unknown)\\EVT\\";
    EXPECT_EQ(event.GetLogFileName(), folder + "setup.log");
    EXPECT_EQ(event.GetTraceFile(), folder + "trace.txt");
    EXPECT_EQ(event.GetResponseFile(), folder + "answers.iss");
    EXPECT_FALSE(PathExists(history + "\\(Unknown)"));
    EXPECT_TRUE(FolderNames(history + "\\EVT").empty());
    EXPECT_EQ(ReadWholeFile(log), "log");
}

TEST(Staging, SecondRunChangesNothingInHistoryIni)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\COPY_A\\EVT");
    const std::string log = Outside(machine, "setup.log", "log");
    WriteWholeFile(IniPathIn(history), IniText({"[EVT]", "Copy_Name=COPY_A", "Log_File_Name=" + log,
                                                "Trace_File=", "Response_File=C:\\gone\\r.iss"}));
    CInstallEvent("EVT").StageFiles();
    const std::string afterFirst = ReadWholeFile(IniPathIn(history));

    CInstallEvent("EVT").StageFiles();

    EXPECT_EQ(ReadWholeFile(IniPathIn(history)), afterFirst);
    EXPECT_EQ(FolderNames(history + "\\COPY_A\\EVT"), Lines{"setup.log"});
}

TEST(Staging, TargetAlreadyThereLeavesTheKeyAndTheTargetAsTheyAre)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\COPY_A\\EVT");
    WriteWholeFile(history + "\\COPY_A\\EVT\\setup.log", "staged earlier");
    const std::string log = Outside(machine, "setup.log", "newer");
    const std::string ini = IniText({"[EVT]", "Copy_Name=COPY_A", "Log_File_Name=" + log});
    WriteWholeFile(IniPathIn(history), ini);

    CInstallEvent("EVT").StageFiles();

    EXPECT_EQ(ReadWholeFile(IniPathIn(history)), ini);
    EXPECT_EQ(ReadWholeFile(history + "\\COPY_A\\EVT\\setup.log"), "staged earlier");
}

TEST(Staging, MissingSourceEmptyKeyOrFolderIsPassedOver)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    MakeFolders(history + "\\COPY_A\\EVT");
    MakeFolders(machine.Root() + "\\outside\\logs");
    const std::string ini = IniText({"[EVT]", "Copy_Name=COPY_A",
                                     "Log_File_Name=" + machine.Root() + "\\outside\\gone.log",
                                     "Trace_File=", "Response_File=" + machine.Root() + "\\outside\\logs"});
    WriteWholeFile(IniPathIn(history), ini);

    CInstallEvent("EVT").StageFiles();

    EXPECT_EQ(ReadWholeFile(IniPathIn(history)), ini);
    EXPECT_TRUE(FolderNames(history + "\\COPY_A\\EVT").empty());
}
