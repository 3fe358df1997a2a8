// A stored event's section: one accessor pair per key, each reading and writing
// History.ini at every call, and the placeholders that a -start lays down.
#include "recorder/CInstallEvent.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "history/CHistoryStore.h"
#include "history/HistoryPaths.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "unit/history/StoreText.h"

namespace {

using Getter = std::string (CInstallEvent::*)();
using Setter = void (CInstallEvent::*)(const std::string&);

struct KeyAccessors {
    const char* key;
    Getter get;
    Setter set;
};

// Every key of an event's section with its pair, in the section's order.
const std::vector<KeyAccessors>& AllKeys()
{
    static const std::vector<KeyAccessors> keys = {
        {"Event_ID", &CInstallEvent::GetEventID, &CInstallEvent::SetEventID},
        {"Command_Line", &CInstallEvent::GetCommandLine, &CInstallEvent::SetCommandLine},
        {"Start_Time", &CInstallEvent::GetStartTime, &CInstallEvent::SetStartTime},
        {"End_Time", &CInstallEvent::GetEndTime, &CInstallEvent::SetEndTime},
        {"Action", &CInstallEvent::GetAction, &CInstallEvent::SetAction},
        {"Type", &CInstallEvent::GetType, &CInstallEvent::SetType},
        {"Product", &CInstallEvent::GetProduct, &CInstallEvent::SetProduct},
        {"Version", &CInstallEvent::GetVersion, &CInstallEvent::SetVersion},
        {"Service_Level", &CInstallEvent::GetServiceLevel, &CInstallEvent::SetServiceLevel},
        {"Path", &CInstallEvent::GetPath, &CInstallEvent::SetPath},
        {"Copy_Name", &CInstallEvent::GetCopyName, &CInstallEvent::SetCopyName},
        {"Complete_Flag", &CInstallEvent::GetCompleteFlag, &CInstallEvent::SetCompleteFlag},
        {"Log_File_Name", &CInstallEvent::GetLogFileName, &CInstallEvent::SetLogFileName},
        {"Trace_File", &CInstallEvent::GetTraceFile, &CInstallEvent::SetTraceFile},
        {"Response_File", &CInstallEvent::GetResponseFile, &CInstallEvent::SetResponseFile},
        {"Event_Log_File", &CInstallEvent::GetEventLogFile, &CInstallEvent::SetEventLogFile},
        {"Result", &CInstallEvent::GetResult, &CInstallEvent::SetResult},
        {"Wi_Log_File", &CInstallEvent::GetWiLogFile, &CInstallEvent::SetWiLogFile},
    };
    return keys;
}

std::string IniPathOf(const TestMachine& machine)
{
    return machine.HistoryFolder() + "\\History.ini";
}

}  // namespace

TEST(StoredEvent, ConstructorFromSectionNameReadsAndWritesNothing)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    CInstallEvent event("EVT_7");
    EXPECT_EQ(event.EventID, "EVT_7");
    EXPECT_FALSE(event.Valid);
    EXPECT_EQ(event.SectionNumber, 0);
    EXPECT_EQ(event.Ini.Path, GetHistoryIniPath());
    EXPECT_EQ(event.Mode, "");
    EXPECT_EQ(event.EventFolder, "");
    EXPECT_EQ(event.EventLogPath, "");
    EXPECT_EQ(event.CopyName, "");
    EXPECT_EQ(event.LogFileName, "");
    EXPECT_TRUE(FolderNames(machine.HistoryFolder()).empty());
}

TEST(StoredEvent, EachSetterWritesItsOwnKeyInTheEventsSection)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    CInstallEvent event("EVT");
    Lines expected{"[EVT]"};
    for (const KeyAccessors& key : AllKeys()) {
        const std::string value = std::string("value of ") + key.key;
        (event.*key.set)(value);
        expected.push_back(std::string(key.key) + "=" + value);
    }
    EXPECT_EQ(FileLines(IniPathOf(machine)), expected);
}

TEST(StoredEvent, EachGetterReadsItsOwnKeyFromTheFile)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    std::string ini = "[EVT]\r\n";
    for (const KeyAccessors& key : AllKeys())
        ini += std::string(key.key) + "=stored " + key.key + "\r\n";
    WriteWholeFile(IniPathOf(machine), ini);

    CInstallEvent event("EVT");
    for (const KeyAccessors& key : AllKeys())
        EXPECT_EQ((event.*key.get)(), std::string("stored ") + key.key) << key.key;
}

TEST(StoredEvent, GettersReadTheFileAtEachCall)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    CInstallEvent event("EVT");
    WriteWholeFile(IniPathOf(machine), IniText({"[EVT]", "Result=first"}));
    EXPECT_EQ(event.GetResult(), "first");
    WriteWholeFile(IniPathOf(machine), IniText({"[EVT]", "Result=second"}));
    EXPECT_EQ(event.GetResult(), "second");
}

TEST(StoredEvent, MissingKeySectionOrFileReadsAsEmpty)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    EXPECT_EQ(CInstallEvent("EVT").GetProduct(), "");
    WriteWholeFile(IniPathOf(machine), IniText({"[OTHER]", "Product=ZOR", "[EVT]", "Type=GUI"}));
    EXPECT_EQ(CInstallEvent("EVT").GetProduct(), "");
    EXPECT_EQ(CInstallEvent("NONE").GetType(), "");
}

TEST(StoredEvent, ValueOf300CharactersIsStoredWholeAndReadBackAs255)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    std::string value;
    for (int i = 0; i < 30; ++i)
        value += "0123456789";
    CInstallEvent event("EVT");
    event.SetPath(value);
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[EVT]", "Path=" + value}));
    EXPECT_EQ(event.GetPath(), value.substr(0, 255));
}

TEST(StoredEvent, EmptyValueKeepsItsKey)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    CInstallEvent event("EVT");
    event.SetResult("1603");
    event.SetResult("");
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[EVT]", "Result="}));
}

TEST(StoredEvent, EventIdHistoryWritesIntoTheStoresOwnSection)
{
    TestMachine machine;
    ASSERT_TRUE(CHistoryStore().Initialize());
    CInstallEvent event("History");
    event.SetProduct("ZOR Server");
    EXPECT_EQ(FileLines(IniPathOf(machine)), (Lines{"[History]", "Count=0", "Product=ZOR Server"}));
    EXPECT_EQ(event.GetProduct(), "ZOR Server");
}

TEST(StoredEvent, EventIdHistoryIsNotListedAsAnEvent)
{
    TestMachine machine;
    ASSERT_TRUE(CHistoryStore().Initialize());
    CInstallEvent("History").SetProduct("ZOR Server");
    CInstallEvent("EVT").SetProduct("ZOR Client");
    std::vector<std::string> events;
    CHistoryStore().ListEvents(events);
    EXPECT_EQ(events, Lines{"EVT"});
}

TEST(StoredEvent, SetIniFileMovesTheAccessorsToAnotherFile)
{
    TestMachine machine;
    machine.MakeHistoryFolder();
    const std::string other = machine.Root() + "\\Other.ini";
    CInstallEvent event("EVT");
    event.SetIniFile(other);
    event.SetVersion("9.1");
    EXPECT_EQ(FileLines(other), (Lines{"[EVT]", "Version=9.1"}));
    EXPECT_EQ(event.GetVersion(), "9.1");
    EXPECT_FALSE(PathExists(IniPathOf(machine)));
}

TEST(StoredEvent, StartLaysDownEveryKeyWithItsPlaceholder)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    std::vector<std::string> words{"recorder", "-start", "EVT", "-CopyName", "COPY_A", "-l", "C:\\setup.log"};
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(&word[0]);
    int argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);  // as behind a program's own arguments

    testing::internal::CaptureStdout();
    CInstallEvent event(argc, argv.data());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

    EXPECT_EQ(FileLines(IniPathOf(machine)),
              (Lines{"[EVT]", "Event_ID=EVT", "Command_Line=", "Start_Time=", "End_Time=", "Action=",
                     "Type=", "Product=", "Version=", "Service_Level=", "Path=",
                     "Copy_Name=(Unknown)", "Complete_Flag=FALSE", "Log_File_Name=(none)",
                     "Trace_File=(none)", "Response_File=(none)",
                     "Event_Log_File=" + history + "\\EVT\\ZORInstallEvent.Log", "Result="}));
    EXPECT_EQ(CInstallEvent("EVT").GetCopyName(), "(Unknown)");
}
