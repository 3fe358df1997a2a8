// The report over a history laid down by hand, read from its folder and from
// an archive of it that the system's own archive writer made.
#include <gtest/gtest.h>

#include <cstring>

#include "ReportTestLogs.h"
#include <nlohmann/json.hpp>
#include <sstream>

#include "platform/FileSystem.h"
#include "report/CEventForms.h"
#include "report/CHistorySource.h"
#include "report/CLineSplitter.h"
#include "report/CReportBuilder.h"
#include "report/CReportSources.h"
#include "report/EventFacts.h"
#include "report/HtmlReport.h"
#include "report/JsonReport.h"
#include "report/MachineTimeline.h"
#include "report/TextSummary.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "zip/CZipper.h"

using namespace reportlogs;

namespace {

ReportOfSources BuildOf(const std::vector<std::string>& sourcePaths)
{
    CReportSources sources;
    std::string reason;
    EXPECT_TRUE(sources.Open(sourcePaths, reason)) << reason;
    ReportOfSources report;
    EXPECT_TRUE(CReportBuilder(sources).Build(report, reason)) << reason;
    return report;
}

// The history of the one machine that the source holds.
HistoryReport Build(const std::string& sourcePath)
{
    ReportOfSources report = BuildOf({sourcePath});
    EXPECT_EQ(report.machines.size(), 1u);
    return report.machines.empty() ? HistoryReport() : report.machines.front();
}

// The three forms of the report written from the whole events, and from the
// forms that `forms` kept of each event as it was read: byte for byte the
// same, and the JSON form as json's own dump of the document would write it.
void ExpectTheSameForms(const ReportOfSources& whole, const ReportOfSources& light, CEventForms& forms)
{
    std::ostringstream html, json, text;
    WriteHtmlReport(whole, html);
    WriteJsonReport(whole, json);
    WriteTextSummary(whole, text);
    std::ostringstream lightHtml, lightJson, lightText;
    WriteHtmlReport(light, lightHtml, forms.Html());
    WriteJsonReport(light, lightJson, forms.Json());
    WriteTextSummary(light, lightText, forms.Summary());
    EXPECT_TRUE(forms.Good());
    EXPECT_EQ(lightHtml.str(), html.str());
    EXPECT_EQ(lightJson.str(), json.str());
    EXPECT_EQ(lightText.str(), text.str());
    EXPECT_EQ(nlohmann::ordered_json::parse(json.str()).dump(2) + "\n", json.str());
}

std::vector<std::string> Added(const std::optional<SectionChanges>& changes)
{
    std::vector<std::string> names;
    for (const ListedItem& item : changes->added)
        names.push_back(item.name);
    return names;
}

// The entries of a folder, those whose names begin with a dot included.
std::size_t AllEntries(const std::string& folder)
{
    platform::FolderSearch search;
    platform::FolderEntry entry;
    std::size_t count = 0;
    for (bool found = search.First(folder + "\\*", entry); found; found = search.Next(entry))
        count += entry.name != "." && entry.name != ".." ? 1 : 0;
    return count;
}

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
        EXPECT_FALSE(e1.installerLogs[0].entry.empty());
        ASSERT_TRUE(e1.changes.has_value());
        const SnapshotChanges& changes = *e1.changes;
        EXPECT_EQ(Added(changes[1]), std::vector<std::string>{"ZOR Server"});
        EXPECT_EQ(changes[1]->added[0].value, "9.0.0");
        EXPECT_EQ(Added(changes[2]), std::vector<std::string>{"zorsrv.exe"});
        EXPECT_EQ(changes[2]->added[0].value, "2");
        EXPECT_EQ(Added(changes[3]), std::vector<std::string>{"ZOR Listener"});
        EXPECT_EQ(changes[3]->added[0].value, "Started");
        EXPECT_EQ(changes[0]->Count() + changes[4]->Count() + changes[5]->Count(), 0u);
        EXPECT_FALSE(e1.sincePrevious.has_value());
        EXPECT_FALSE(e1.computer.has_value());

        // LOOSE, whose log is missing, ran between E1 and E2: the listener
        // that stopped meanwhile may be its doing.
        const EventReport& e2 = report.copies[0].events[1];
        ASSERT_TRUE(e2.sincePrevious.has_value());
        const ChangesSince& since = *e2.sincePrevious;
        EXPECT_EQ(since.event.eventId, "E1");
        EXPECT_TRUE(since.afterSnapshot);
        ASSERT_EQ(since.ranBetween.size(), 1u);
        EXPECT_EQ(since.ranBetween[0].eventId, "LOOSE");
        ASSERT_EQ(since.changes[3]->changed.size(), 1u);
        EXPECT_EQ(since.changes[3]->changed[0].name, "ZOR Listener");
        EXPECT_EQ(since.changes[3]->changed[0].before, "Started");
        EXPECT_EQ(since.changes[3]->changed[0].after, "Stopped");
        // The computer report changed since E1's start, while E1 and LOOSE ran.
        ASSERT_TRUE(e2.computer.has_value());
        EXPECT_EQ(e2.computer->since.eventId, "E1");
        ASSERT_EQ(e2.computer->ranBetween.size(), 2u);
        EXPECT_EQ(e2.computer->ranBetween[0].eventId, "E1");
        EXPECT_EQ(e2.computer->ranBetween[1].eventId, "LOOSE");
        ASSERT_EQ(e2.computer->changes.changed.size(), 2u);
        EXPECT_EQ(e2.computer->changes.changed[0].name, "Computer Name");
        EXPECT_EQ(e2.computer->changes.changed[0].before, "VM");
        EXPECT_EQ(e2.computer->changes.changed[0].after, "VM2");
        EXPECT_EQ(e2.computer->changes.changed[1].name, "OS");
        ASSERT_EQ((*e2.changes)[1]->changed.size(), 1u);
        EXPECT_EQ((*e2.changes)[1]->changed[0].after, "9.1.0");

        const EventReport& loose = report.copies[1].events[0];
        EXPECT_EQ(loose.outcome, EventOutcome::Failed);
        EXPECT_TRUE(loose.eventLogName.empty());
        EXPECT_FALSE(loose.changes.has_value());
        EXPECT_EQ(loose.notes, std::vector<std::string>{"the event log is not in the source"});

        const EventReport& open = report.copies[2].events[0];
        ASSERT_TRUE(open.sincePrevious.has_value());
        EXPECT_EQ(open.sincePrevious->event.eventId, "E2");
        EXPECT_TRUE(open.sincePrevious->ranBetween.empty());
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

// The three forms written whole, and written from each event's forms kept on
// disk as the event was read: byte for byte the same.
TEST_F(ReportBuilderTest, TheFormsKeptOnDiskForEachEventGiveTheSameReport)
{
    const ReportOfSources whole = BuildOf({history_});
    CReportSources sources;
    std::string reason;
    ASSERT_TRUE(sources.Open({history_}, reason));
    CEventForms forms;
    ASSERT_TRUE(forms.Open(machine_.Root() + "\\report.html", true, true));
    std::size_t taken = 0;
    ReportOfSources light;
    ASSERT_TRUE(CReportBuilder(sources).Build(light, reason, [&](EventReport& event) {
        forms.Take(event);
        ++taken;
    }));
    EXPECT_EQ(taken, 4u);
    EXPECT_TRUE(light.machines[0].copies[0].events[0].messages.empty());
    EXPECT_FALSE(light.machines[0].copies[0].events[0].changes.has_value());
    ExpectTheSameForms(whole, light, forms);
}

TEST_F(ReportBuilderTest, TheFormsFileIsRemovedWhenTheReportIsDone)
{
    {
        CEventForms forms;
        ASSERT_TRUE(forms.Open(machine_.Root() + "\\out\\report.html", false, true) == false);
        MakeFolders(machine_.Root() + "\\out");
        ASSERT_TRUE(forms.Open(machine_.Root() + "\\out\\report.html", false, true));
        EXPECT_EQ(AllEntries(machine_.Root() + "\\out"), 1u);
    }
    EXPECT_EQ(AllEntries(machine_.Root() + "\\out"), 0u);
}

// Lines longer than the splitter takes are cut, and the event says how many.
TEST_F(ReportBuilderTest, TheLinesCutAtTheLimitAreCountedInTheEventsNotes)
{
    const std::string longLine(CLineSplitter::kDefaultLineLimit + 10, 'x');
    const std::string limit = std::to_string(CLineSplitter::kDefaultLineLimit);
    for (const int lines : {1, 2}) {
        std::string log = StartHead("E3", "VM", "XP") + StartSnapshot("E3", "Install", Machine());
        for (int i = 0; i < lines; ++i)
            log += longLine + "\n";
        WriteWholeFile(history_ + "\\E3\\ZORInstallEvent.Log", log);
        const HistoryReport report = Build(history_);
        const std::vector<std::string>& notes = report.copies[2].events[0].notes;
        const std::string expected = lines == 1 ? "1 line of the event log longer than " + limit + " bytes was cut there"
                                                : "2 lines of the event log longer than " + limit + " bytes were cut there";
        EXPECT_EQ(notes, std::vector<std::string>{expected});
    }
}

// An installer's log is shown to its limit and the bytes behind it are
// counted, whether the folder holds it or an archive, which inflates no more
// of it than it shows.
TEST_F(ReportBuilderTest, AnInstallerLogIsShownToItsLimitAndTheRestIsCounted)
{
    for (const std::size_t size : {kInstallerLogTextLimit, kInstallerLogTextLimit + 1, std::size_t{50000}}) {
        const std::string zipPath = machine_.Root() + "\\history" + std::to_string(size) + ".zip";
        std::string text;
        for (std::size_t line = 0; text.size() < size; ++line)
            text += "line " + std::to_string(line) + " of the installer\n";
        text.resize(size);
        WriteWholeFile(history_ + "\\C1\\E1\\setup.log", text);
        CZipper zipper(nullptr, nullptr, false);
        ASSERT_TRUE(zipper.Open(zipPath.c_str(), history_.c_str(), false));
        ASSERT_TRUE(zipper.AddFolder(history_.c_str(), false));
        zipper.Close();
        for (const std::string& source : {history_, zipPath}) {
            const HistoryReport report = Build(source);
            ASSERT_EQ(report.copies[0].events[0].installerLogs.size(), 1u);
            const InstallerLog& log = report.copies[0].events[0].installerLogs[0];
            EXPECT_EQ(log.text, text.substr(0, kInstallerLogTextLimit)) << source << ", " << size << " bytes";
            EXPECT_EQ(log.bytesCut, size - kInstallerLogTextLimit) << source << ", " << size << " bytes";
        }
    }
}

// A Log_File_Name that names the event log (a garbled section's, say) names
// no installer's file: the event log beside it is the recorder's own.
TEST_F(ReportBuilderTest, TheEventLogIsNoInstallerLogWhateverTheSectionNames)
{
    std::string ini = kHistoryIni;
    ini.replace(ini.find("D:\\logs\\setup.log"), std::strlen("D:\\logs\\setup.log"), "D:\\C1\\E1\\zorinstallevent.log");
    WriteWholeFile(history_ + "\\History.ini", ini);
    const HistoryReport report = Build(history_);
    ASSERT_EQ(report.copies[0].events[0].installerLogs.size(), 1u);
    const InstallerLog& log = report.copies[0].events[0].installerLogs[0];
    EXPECT_EQ(log.name, "zorinstallevent.log");
    EXPECT_EQ(log.entry, "");
    EXPECT_EQ(log.text, "");
}

TEST_F(ReportBuilderTest, ASourceWithoutHistoryIniCantBeRead)
{
    const std::string empty = machine_.Root() + "\\empty";
    MakeFolders(empty);
    CReportSources sources;
    std::string reason;
    EXPECT_FALSE(sources.Open({empty}, reason));
    EXPECT_EQ(reason, empty + ": no History.ini that can be read in it");
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

namespace {

// A finished event of a copy, with its log in the copy's folder.
void WriteFinishedEvent(const std::string& history, const std::string& id, const std::string& copy,
                        const SnapshotContent& before, const SnapshotContent& after)
{
    MakeFolders(history + "\\" + copy + "\\" + id);
    WriteWholeFile(history + "\\" + copy + "\\" + id + "\\ZORInstallEvent.Log",
                   StartHead(id, "VM", "XP") + StartSnapshot(id, "Install", before) +
                       EndSnapshot(id, "Install", after) + EndTail("Install"));
}

}  // namespace

TEST(ReportBuilderMachine, ChangesSinceTheMachinesLastSnapshotAreDriftOnlyWhenNoRecordedEventRanMeanwhile)
{
    // A1 and A2 of copy CA with B1 of copy CB between them; N never ended;
    // A3 after N; A4 after a service stopped with no event running.
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    WriteWholeFile(history + "\\History.ini",
                   "[History]\r\nCount=6\r\n"
                   "[A1]\r\nCopy_Name=CA\r\nComplete_Flag=TRUE\r\nStart_Time=20240105 10:00:00\r\n"
                   "End_Time=20240105 10:10:00\r\n"
                   "[A2]\r\nCopy_Name=CA\r\nComplete_Flag=TRUE\r\nStart_Time=20240105 12:00:00\r\n"
                   "End_Time=20240105 12:10:00\r\n"
                   "[B1]\r\nCopy_Name=CB\r\nComplete_Flag=TRUE\r\nStart_Time=20240105 11:00:00\r\n"
                   "End_Time=20240105 11:10:00\r\n"
                   "[N]\r\nCopy_Name=(Unknown)\r\nComplete_Flag=FALSE\r\nStart_Time=20240105 13:00:00\r\n"
                   "[A3]\r\nCopy_Name=CA\r\nComplete_Flag=TRUE\r\nStart_Time=20240105 14:00:00\r\n"
                   "End_Time=20240105 14:10:00\r\n"
                   "[A4]\r\nCopy_Name=CA\r\nComplete_Flag=TRUE\r\nStart_Time=20240105 15:00:00\r\n"
                   "End_Time=20240105 15:10:00\r\n");
    SnapshotContent machineState;
    machineState.services = {{"ZOR Database Server", "Started"}};
    WriteFinishedEvent(history, "A1", "CA", machineState, machineState);
    SnapshotContent withB = machineState;
    withB.software = {{"TAQ Inc.", "B Tool", "1.0"}};
    WriteFinishedEvent(history, "B1", "CB", machineState, withB);
    WriteFinishedEvent(history, "A2", "CA", withB, withB);
    MakeFolders(history + "\\N");
    WriteWholeFile(history + "\\N\\ZORInstallEvent.Log",
                   StartHead("N", "VM", "XP") + StartSnapshot("N", "Install", withB));
    SnapshotContent withN = withB;
    withN.software.push_back({"TAQ Inc.", "N Tool", "2.0"});
    WriteFinishedEvent(history, "A3", "CA", withN, withN);
    SnapshotContent stopped = withN;
    stopped.services[0].state = "Stopped";
    WriteFinishedEvent(history, "A4", "CA", stopped, stopped);

    const HistoryReport report = Build(history);
    ASSERT_EQ(report.copies.size(), 3u);
    const std::vector<EventReport>& ca = report.copies[0].events;
    ASSERT_EQ(ca.size(), 4u);

    EXPECT_FALSE(ca[0].sincePrevious.has_value());
    // B1 of the other copy installed its tool: A2 starts where B1 ended.
    ASSERT_TRUE(ca[1].sincePrevious.has_value());
    EXPECT_EQ(ca[1].sincePrevious->event.eventId, "B1");
    EXPECT_TRUE(ca[1].sincePrevious->afterSnapshot);
    EXPECT_TRUE(ca[1].sincePrevious->ranBetween.empty());
    EXPECT_EQ(ca[1].sincePrevious->changes[1]->Count(), 0u);
    // N never ended: it ran from its start to A3's, and the tool that came
    // meanwhile is told with it, not as drift.
    ASSERT_TRUE(ca[2].sincePrevious.has_value());
    EXPECT_EQ(ca[2].sincePrevious->event.eventId, "N");
    EXPECT_FALSE(ca[2].sincePrevious->afterSnapshot);
    ASSERT_EQ(ca[2].sincePrevious->ranBetween.size(), 1u);
    EXPECT_EQ(ca[2].sincePrevious->ranBetween[0].eventId, "N");
    EXPECT_EQ(ca[2].sincePrevious->ranBetween[0].copy, "(Unknown)");
    EXPECT_EQ(Added(ca[2].sincePrevious->changes[1]), std::vector<std::string>{"N Tool"});
    // Nothing ran between A3 and A4: the stopped service is drift.
    ASSERT_TRUE(ca[3].sincePrevious.has_value());
    EXPECT_EQ(ca[3].sincePrevious->event.eventId, "A3");
    EXPECT_TRUE(ca[3].sincePrevious->ranBetween.empty());
    ASSERT_EQ(ca[3].sincePrevious->changes[3]->changed.size(), 1u);
    EXPECT_EQ(ca[3].sincePrevious->changes[3]->changed[0].after, "Stopped");
}

// The recorder's times count seconds: an event that never ended and the next
// one may start in one second. What came since the first one's snapshot
// before its install came while it ran, and is no drift.
TEST(ReportBuilderMachine, AnEventThatNeverEndedRanUntilTheNextOneThatStartedInTheSameSecond)
{
    TestMachine machine;
    const std::string history = machine.MakeHistoryFolder();
    WriteWholeFile(history + "\\History.ini",
                   "[History]\r\nCount=2\r\n"
                   "[N]\r\nCopy_Name=(Unknown)\r\nComplete_Flag=FALSE\r\nStart_Time=20240105 13:00:00\r\n"
                   "[A]\r\nCopy_Name=CA\r\nComplete_Flag=TRUE\r\nStart_Time=20240105 13:00:00\r\n"
                   "End_Time=20240105 13:00:00\r\n");
    SnapshotContent before;
    before.services = {{"ZOR Database Server", "Started"}};
    MakeFolders(history + "\\N");
    WriteWholeFile(history + "\\N\\ZORInstallEvent.Log", StartHead("N", "VM", "XP") + StartSnapshot("N", "Install", before));
    SnapshotContent withN = before;
    withN.software = {{"TAQ Inc.", "N Tool", "2.0"}};
    WriteFinishedEvent(history, "A", "CA", withN, withN);

    const HistoryReport report = Build(history);
    const EventReport& a = report.copies[1].events[0];
    ASSERT_EQ(a.record.eventId, "A");
    ASSERT_TRUE(a.sincePrevious.has_value());
    EXPECT_EQ(a.sincePrevious->event.eventId, "N");
    ASSERT_EQ(a.sincePrevious->ranBetween.size(), 1u);
    EXPECT_EQ(a.sincePrevious->ranBetween[0].eventId, "N");
    EXPECT_FALSE(a.driftCounts.has_value());
}

namespace {

// A history folder of `computer` with the events of History.ini `ini`: each
// of `finished` in copy CA with both snapshots of `state`, and `open`, if
// named, with its before snapshot alone.
std::string WriteHistoryOf(const std::string& folder, const std::string& computer, const std::string& ini,
                           const std::vector<std::pair<std::string, SnapshotContent>>& finished,
                           const std::string& open = "")
{
    MakeFolders(folder);
    WriteWholeFile(folder + "\\History.ini", ini);
    for (const auto& [id, state] : finished) {
        MakeFolders(folder + "\\CA\\" + id);
        WriteWholeFile(folder + "\\CA\\" + id + "\\ZORInstallEvent.Log",
                       StartHead(id, computer, "XP") + StartSnapshot(id, "Install", state) +
                           EndSnapshot(id, "Install", state) + EndTail("Install"));
    }
    if (!open.empty()) {
        MakeFolders(folder + "\\" + open);
        WriteWholeFile(folder + "\\" + open + "\\ZORInstallEvent.Log",
                       StartHead(open, computer, "XP") + StartSnapshot(open, "Install", Machine()));
    }
    return folder;
}

std::string Finished(const std::string& id, const std::string& start, const std::string& end)
{
    return "[" + id + "]\r\nCopy_Name=CA\r\nComplete_Flag=TRUE\r\nResult=0\r\nStart_Time=" + start +
           "\r\nEnd_Time=" + end + "\r\n";
}

// Two archives of the computer VM taken a week apart, and one of VM2.
class ReportOfSeveralSources : public ::testing::Test {
protected:
    void SetUp() override
    {
        SnapshotContent changed = Machine();
        changed.software.push_back({"TAQ Inc.", "Late Tool", "1.0"});
        week1_ = WriteHistoryOf(machine_.Root() + "\\week1", "VM",
                                "[History]\r\n" + Finished("A1", "20261101 10:00:00", "20261101 10:10:00") +
                                    "[A2]\r\nCopy_Name=(Unknown)\r\nComplete_Flag=FALSE\r\n"
                                    "Start_Time=20261102 10:00:00\r\n",
                                {{"A1", Machine()}}, "A2");
        week2_ = WriteHistoryOf(machine_.Root() + "\\week2", "vm",
                                "[History]\r\n" + Finished("A1", "20261101 10:00:00", "20261101 10:10:00") +
                                    Finished("A2", "20261102 10:00:00", "20261102 10:20:00") +
                                    Finished("A3", "20261108 10:00:00", "20261108 10:10:00"),
                                {{"A1", Machine()}, {"A2", Machine()}, {"A3", changed}});
        other_ = WriteHistoryOf(machine_.Root() + "\\other", "VM2",
                                "[History]\r\n" + Finished("A1", "20261105 10:00:00", "20261105 10:10:00"),
                                {{"A1", changed}});
    }

    bool Build(ReportOfSources& report, std::string& reason, const std::string& first = "",
               const std::string& second = "")
    {
        CReportSources sources;
        if (!sources.Open({week1_, other_, week2_}, reason))
            return false;
        CReportBuilder builder(sources);
        if (!first.empty())
            builder.Compare(first, second, false);
        return builder.Build(report, reason);
    }

    TestMachine machine_;
    std::string week1_;
    std::string week2_;
    std::string other_;
};

const EventReport& EventOf(const HistoryReport& machine, const std::string& id)
{
    for (const CopyReport& copy : machine.copies) {
        for (const EventReport& event : copy.events) {
            if (event.record.eventId == id)
                return event;
        }
    }
    throw std::runtime_error("no event " + id);
}

}  // namespace

TEST_F(ReportOfSeveralSources, TheSourcesOfOneComputerMakeOneHistoryAndEachComputerIsAMachine)
{
    ReportOfSources report;
    std::string reason;
    ASSERT_TRUE(Build(report, reason)) << reason;
    EXPECT_EQ(report.sources, (std::vector<std::string>{week1_, other_, week2_}));
    ASSERT_EQ(report.machines.size(), 2u);
    const HistoryReport& vm = report.machines[0];
    EXPECT_EQ(vm.computerName, "VM");
    EXPECT_EQ(vm.sources, (std::vector<std::string>{week1_, week2_}));
    EXPECT_EQ(vm.eventCount, 3u);
    // A2 never ended when the first archive was taken: the second tells how it ended.
    const EventReport& a2 = EventOf(vm, "A2");
    EXPECT_EQ(a2.outcome, EventOutcome::Succeeded);
    EXPECT_EQ(a2.sources, (std::vector<std::string>{week2_, week1_}));
    EXPECT_EQ(EventOf(vm, "A1").sources, (std::vector<std::string>{week1_, week2_}));
    // A3, of the second archive alone, is compared with A2's after snapshot,
    // read from the second archive: the tool came outside any recorded install.
    const EventReport& a3 = EventOf(vm, "A3");
    ASSERT_TRUE(a3.sincePrevious.has_value());
    EXPECT_EQ(a3.sincePrevious->event.eventId, "A2");
    EXPECT_EQ(a3.sincePrevious->event.source, week2_);
    EXPECT_TRUE(a3.sincePrevious->ranBetween.empty());
    EXPECT_EQ(Added(a3.sincePrevious->changes[1]), (std::vector<std::string>{"Late Tool"}));
    const HistoryReport& vm2 = report.machines[1];
    EXPECT_EQ(vm2.computerName, "VM2");
    EXPECT_EQ(vm2.machine, 1u);
    EXPECT_EQ(EventOf(vm2, "A1").machine, 1u);
    EXPECT_EQ(EventOf(vm2, "A1").sources, (std::vector<std::string>{other_}));
}

TEST_F(ReportOfSeveralSources, AnEventIsComparedByItsSourceAndEventIdAcrossMachines)
{
    ReportOfSources report;
    std::string reason;
    ASSERT_TRUE(Build(report, reason, "week2:A2", "other:A1")) << reason;
    ASSERT_TRUE(report.comparison.has_value());
    EXPECT_EQ(report.comparison->first.source, week2_);
    EXPECT_EQ(report.comparison->second.source, other_);
    ASSERT_TRUE(report.comparison->changes.has_value());
    EXPECT_EQ(Added((*report.comparison->changes)[1]), (std::vector<std::string>{"Late Tool"}));
    // The archive's path as given names it too, and an EventID that one
    // event of the sources has is enough.
    ASSERT_TRUE(Build(report, reason, week1_ + ":A1", "A3")) << reason;
    EXPECT_EQ(report.comparison->first.eventId, "A1");
    EXPECT_EQ(report.comparison->second.eventId, "A3");
}

TEST_F(ReportOfSeveralSources, ANameOfNoEventOrOfSeveralIsRefused)
{
    ReportOfSources report;
    std::string reason;
    EXPECT_FALSE(Build(report, reason, "A1", "A3"));
    EXPECT_EQ(reason, "A1 names 2 events of the sources: name one as SOURCE:A1");
    EXPECT_FALSE(Build(report, reason, "other:A3", "A3"));
    EXPECT_EQ(reason, "no event other:A3 to compare in the sources");
}

// Each machine's events kept on disk as they are read give the report that
// the whole events give.
TEST_F(ReportOfSeveralSources, TheFormsKeptOnDiskGiveTheSameReport)
{
    ReportOfSources whole;
    std::string reason;
    ASSERT_TRUE(Build(whole, reason)) << reason;
    CReportSources sources;
    ASSERT_TRUE(sources.Open({week1_, other_, week2_}, reason));
    CEventForms forms;
    ASSERT_TRUE(forms.Open(machine_.Root() + "\\report.html", true, true));
    ReportOfSources light;
    ASSERT_TRUE(CReportBuilder(sources).Build(light, reason, [&](EventReport& event) { forms.Take(event); }));
    ExpectTheSameForms(whole, light, forms);
    std::ostringstream html;
    WriteHtmlReport(whole, html);
    EXPECT_NE(html.str().find("id=\"m1-event-0\""), std::string::npos);
    EXPECT_NE(html.str().find("<h2 class=\"computer\" id=\"computer-1\">Computer VM2</h2>"), std::string::npos);
}

TEST_F(ReportOfSeveralSources, ASourceIsNamedWithoutRegardToCaseOrASeparatorAtItsEnd)
{
    ReportOfSources report;
    std::string reason;
    ASSERT_TRUE(Build(report, reason, "WEEK2:A3", week1_ + "\\:A1")) << reason;
    EXPECT_EQ(report.comparison->first.eventId, "A3");
    EXPECT_EQ(report.comparison->second.eventId, "A1");
    EXPECT_EQ(report.comparison->second.copy, "CA");
}

TEST_F(ReportOfSeveralSources, AnEventIdThatAnInstallerUsedAgainIsTwoEventsThatSaySo)
{
    const std::string week3 = WriteHistoryOf(
        machine_.Root() + "\\week3", "VM", "[History]\r\n" + Finished("A1", "20261110 10:00:00", "20261110 10:10:00"),
        {{"A1", Machine()}});
    CReportSources sources;
    std::string reason;
    ASSERT_TRUE(sources.Open({week2_, week3}, reason)) << reason;
    ReportOfSources report;
    ASSERT_TRUE(CReportBuilder(sources).Build(report, reason)) << reason;
    ASSERT_EQ(report.machines.size(), 1u);
    std::vector<std::vector<std::string>> notes;
    for (const EventReport& event : report.machines[0].copies[0].events) {
        if (event.record.eventId == "A1")
            notes.push_back(event.notes);
    }
    EXPECT_EQ(notes, (std::vector<std::vector<std::string>>{
                         {"the EventID is also recorded with the start 20261110 10:00:00, in " + week3 +
                          ": an installer used it again"},
                         {"the EventID is also recorded with the start 20261101 10:00:00, in " + week2_ +
                          ": an installer used it again"}}));
}

TEST_F(ReportOfSeveralSources, ASourceGivenTwiceIsRefused)
{
    CReportSources sources;
    std::string reason;
    EXPECT_FALSE(sources.Open({week1_, week2_, week1_ + "\\"}, reason));
    EXPECT_EQ(reason, week1_ + "\\: the source is given twice");
}

// The computer report is written at each start: the event that wrote the
// earlier one ran from it, however short it was.
TEST(MachineTimelineTest, AnEventOfNoTimeRanFromItsOwnStart)
{
    std::vector<EventRecord> events(2);
    events[0].startTime = events[0].endTime = "20261101 10:00:00";
    events[0].completeFlag = "TRUE";
    events[1].startTime = "20261101 11:00:00";
    const MachineTimeline timeline(events);
    EXPECT_EQ(timeline.RanBetween(*timeline.Start(0), 1), std::vector<std::size_t>{});
    EXPECT_EQ(timeline.RanFromStartOf(0, 1), std::vector<std::size_t>{0});
}
