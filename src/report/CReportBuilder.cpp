#include "report/CReportBuilder.h"

#include <utility>

#include "report/CEventLogReader.h"
#include "report/CLineSplitter.h"
#include "report/EventFacts.h"
#include "report/HistoryEvents.h"
#include "report/SnapshotComparison.h"

namespace {

const char kHistoryIniName[] = "History.ini";

void UpdateEarliest(std::string& earliest, const std::string& time)
{
    if (!time.empty() && (earliest.empty() || time < earliest))
        earliest = time;
}

void UpdateLatest(std::string& latest, const std::string& time)
{
    if (!time.empty() && time > latest)
        latest = time;
}

}  // namespace

CReportBuilder::CReportBuilder(const CHistorySource& source, std::string sourceName)
    : source_(source), sourceName_(std::move(sourceName))
{
}

bool CReportBuilder::Build(HistoryReport& report, std::string& reason)
{
    std::string historyIni;
    if (!source_.Contains(kHistoryIniName) || !source_.ReadProfile(kHistoryIniName, historyIni)) {
        reason = sourceName_ + ": no History.ini that can be read in it";
        return false;
    }
    const std::vector<EventRecord> events = ReadHistoryEvents(historyIni);
    historyIni = std::string();
    report = HistoryReport();
    report.sourceName = sourceName_;
    report.eventCount = events.size();
    machineEvent_ = nullptr;
    for (const EventGroup& group : GroupByCopy(events))
        BuildGroup(group, report);
    return true;
}

// Each event is compared with itself (before and after the install), and
// with the after snapshot of the copy's event before it.
void CReportBuilder::BuildGroup(const EventGroup& group, HistoryReport& report)
{
    CopyReport copy;
    copy.name = group.name;
    Snapshot previousAfter;
    for (const EventRecord* event : group.events) {
        Snapshot before;
        Snapshot after;
        EventReport eventReport = ReadEvent(*event, before, after, report);
        if (before.present && after.present)
            eventReport.changes = CompareSnapshots(before, after);
        if (previousAfter.present && before.present)
            eventReport.drift = CompareSnapshots(previousAfter, before);
        previousAfter = std::move(after);
        TakeTimes(*event, report);
        copy.events.push_back(std::move(eventReport));
    }
    report.copies.push_back(std::move(copy));
}

EventReport CReportBuilder::ReadEvent(const EventRecord& event, Snapshot& before, Snapshot& after,
                                      HistoryReport& history)
{
    EventReport report;
    report.record = event;
    report.outcome = OutcomeOf(event);
    report.durationSeconds = SecondsBetween(event.startTime, event.endTime);
    report.eventLogName = FindEventLog(source_, event);
    report.installerLogs = InstallerLogsOf(source_, event, report.eventLogName);
    if (report.eventLogName.empty()) {
        report.notes.push_back("the event log is not in the source");
        return report;
    }
    CEventLogReader log(event.eventId);
    CLineSplitter lines([&log](const std::string& line) { log.Line(line); });
    const bool whole = source_.Stream(report.eventLogName,
                                      [&lines](const char* bytes, std::size_t size) { lines.Feed(bytes, size); });
    lines.Finish();
    log.Finish();
    if (!whole)
        report.notes.push_back("the event log is damaged: what could be read of it is shown");
    if (lines.CutLines() != 0)
        report.notes.push_back("lines of the event log too long to read were cut");
    report.notes.insert(report.notes.end(), log.notes.begin(), log.notes.end());
    report.messages = std::move(log.messages);
    report.messagesLeftOut = log.messagesLeftOut;
    report.hasBefore = log.before.present;
    report.hasAfter = log.after.present;
    before = std::move(log.before);
    after = std::move(log.after);
    TakeMachine(log, event, history);
    return report;
}

// The machine as the first event of History.ini that has a computer report
// shows it; the events are read in the order of their copies.
void CReportBuilder::TakeMachine(const CEventLogReader& log, const EventRecord& event, HistoryReport& report)
{
    if (log.computerName.empty() && log.operatingSystem.empty())
        return;
    if (machineEvent_ != nullptr && machineEvent_ < &event)
        return;
    machineEvent_ = &event;
    report.computerName = log.computerName;
    report.operatingSystem = log.operatingSystem;
}

void CReportBuilder::TakeTimes(const EventRecord& event, HistoryReport& report) const
{
    UpdateEarliest(report.firstTime, event.startTime);
    UpdateEarliest(report.firstTime, event.endTime);
    UpdateLatest(report.lastTime, event.startTime);
    UpdateLatest(report.lastTime, event.endTime);
}
