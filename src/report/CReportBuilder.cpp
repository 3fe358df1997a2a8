#include "report/CReportBuilder.h"

#include <algorithm>
#include <utility>

#include "report/CEventLogReader.h"
#include "report/CLineSplitter.h"
#include "report/DecodedTexts.h"
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

CReportBuilder::CReportBuilder(const CHistorySource& source, std::string sourceName, int ansiCodePage)
    : source_(source), sourceName_(std::move(sourceName)), ansiCodePage_(ansiCodePage)
{
}

void CReportBuilder::Compare(std::string firstEventId, std::string secondEventId, bool firstBefore)
{
    comparison_ = Comparison();
    comparison_->firstId = std::move(firstEventId);
    comparison_->secondId = std::move(secondEventId);
    comparison_->firstBefore = firstBefore;
}

bool CReportBuilder::Build(HistoryReport& report, std::string& reason, const EventHandler& onEvent)
{
    std::vector<std::string> notes = source_.Damage();
    std::vector<EventRecord> events;
    if (!ReadEvents(events, notes)) {
        reason = sourceName_ + ": no History.ini that can be read in it";
        return false;
    }
    if (!FindCompared(events, reason))
        return false;
    report = HistoryReport();
    report.sourceName = sourceName_;
    report.notes = std::move(notes);
    decoder_ = DecoderOf(events, ansiCodePage_);
    report.textEncoding = decoder_.Name();
    report.eventCount = events.size();
    events_ = &events;
    timeline_.emplace(events);
    machineEvent_ = nullptr;
    latest_.reset();
    running_.clear();
    lastComputer_.reset();
    std::vector<EventReport> reports(events.size());
    report.machineOrder = timeline_->Order();
    for (const std::size_t event : report.machineOrder) {
        BuildEvent(event, reports[event], report);
        DecodeEventTexts(reports[event], decoder_);
        if (onEvent)
            onEvent(reports[event]);
    }
    for (const EventGroup& group : GroupByCopy(events)) {
        CopyReport copy;
        copy.name = group.name;
        for (const EventRecord* event : group.events)
            copy.events.push_back(std::move(reports[static_cast<std::size_t>(event - events.data())]));
        report.copies.push_back(std::move(copy));
    }
    if (comparison_)
        report.comparison = CompareTheTwo();
    DecodeHistoryTexts(report, decoder_);
    events_ = nullptr;
    return true;
}

// The events of History.ini, as far as it can be read; in a damaged archive
// without it, the events whose logs the archive holds. False if there are
// neither.
bool CReportBuilder::ReadEvents(std::vector<EventRecord>& events, std::vector<std::string>& notes) const
{
    std::string historyIni;
    const bool whole = source_.Contains(kHistoryIniName) && source_.ReadProfile(kHistoryIniName, historyIni);
    if (whole || !historyIni.empty()) {
        events = ReadHistoryEvents(historyIni);
        if (!whole)
            notes.push_back("History.ini is damaged: the events that could be read of it are shown");
        return true;
    }
    events = EventsOfTheLogs(source_.DamagedArchiveFiles());
    if (events.empty())
        return false;
    notes.push_back("History.ini is not in the damaged archive: the events are those whose logs it holds, "
                    "without what History.ini says of them");
    return true;
}

// Each event is compared with itself (before and after the install), and
// with the machine's snapshot before it.
void CReportBuilder::BuildEvent(std::size_t event, EventReport& report, HistoryReport& history)
{
    const EventRecord& record = (*events_)[event];
    Snapshot before;
    Snapshot after;
    SnapshotSection computer;
    report = ReadEvent(record, before, after, computer, history);
    if (before.present && after.present) {
        report.changes = CompareSnapshots(before, after);
        report.changeCounts = CountsOf(*report.changes);
    }
    CompareWithTheMachine(event, before, report);
    CompareComputers(event, computer, report);
    TakeCompared(event, before, after);
    Keep(event, before, after);
    TakeTimes(record, history);
}

// The last snapshot of the machine before this event's start: an after
// snapshot of an event that ended by then, or a before snapshot. The events
// that ran from it to this start are named; without any, the changes are drift.
void CReportBuilder::CompareWithTheMachine(std::size_t event, const Snapshot& before, EventReport& report)
{
    const std::optional<long long> start = timeline_->Start(event);
    if (!start)
        return;
    TakeAfterSnapshotsUntil(*start);
    if (!latest_ || !before.present)
        return;
    ChangesSince since;
    since.event = NameOf(latest_->event);
    since.afterSnapshot = latest_->after;
    since.ranBetween = NamesOf(timeline_->RanBetween(latest_->time, event));
    since.changes = CompareSnapshots(latest_->snapshot, before);
    if (since.ranBetween.empty())
        report.driftCounts = CountsOf(since.changes);
    report.sincePrevious = std::move(since);
}

// The after snapshots of the events that ended by `time`: the latest of them
// is the machine's last snapshot, if it is later than the one held.
void CReportBuilder::TakeAfterSnapshotsUntil(long long time)
{
    for (auto held = running_.begin(); held != running_.end();) {
        if (held->time > time) {
            ++held;
            continue;
        }
        if (!latest_ || held->time >= latest_->time)
            latest_ = std::move(*held);
        held = running_.erase(held);
    }
}

// The computer report is written at each start: this one against the one
// written last before it, with the events that ran from that start to this.
void CReportBuilder::CompareComputers(std::size_t event, SnapshotSection& computer, EventReport& report)
{
    const std::optional<long long> start = timeline_->Start(event);
    if (!start || !computer.present)
        return;
    if (lastComputer_ && lastComputer_->report.complete && computer.complete) {
        ComputerChanges changes;
        changes.since = NameOf(lastComputer_->event);
        changes.ranBetween = NamesOf(timeline_->RanBetween(lastComputer_->time, event));
        changes.changes = CompareSections(lastComputer_->report, computer);
        report.computer = std::move(changes);
    }
    lastComputer_ = HeldComputer{event, *start, std::move(computer)};
}

// The event's before snapshot is now the machine's last; its after snapshot
// waits for the events that start after its end.
void CReportBuilder::Keep(std::size_t event, Snapshot& before, Snapshot& after)
{
    const std::optional<long long> start = timeline_->Start(event);
    const std::optional<long long> end = timeline_->AfterSnapshotTime(event);
    if (start && before.present)
        latest_ = HeldSnapshot{event, false, *start, std::move(before)};
    if (end && after.present)
        running_.push_back(HeldSnapshot{event, true, *end, std::move(after)});
}

// The places of the events that Compare names; false, with the reason, if
// the history lacks one.
bool CReportBuilder::FindCompared(const std::vector<EventRecord>& events, std::string& reason)
{
    if (!comparison_)
        return true;
    for (std::string* id : {&comparison_->firstId, &comparison_->secondId}) {
        const auto found = std::find_if(events.begin(), events.end(),
                                        [id](const EventRecord& event) { return event.eventId == *id; });
        if (found == events.end()) {
            reason = sourceName_ + ": no event " + *id + " to compare in it";
            return false;
        }
        (id == &comparison_->firstId ? comparison_->first : comparison_->second) =
            static_cast<std::size_t>(found - events.begin());
    }
    return true;
}

void CReportBuilder::TakeCompared(std::size_t event, const Snapshot& before, const Snapshot& after)
{
    if (!comparison_)
        return;
    if (event == comparison_->first)
        comparison_->firstSnapshot = comparison_->firstBefore ? before : after;
    if (event == comparison_->second)
        comparison_->secondSnapshot = after;
}

EventComparison CReportBuilder::CompareTheTwo() const
{
    EventComparison compared;
    compared.first = NameOf(comparison_->first);
    compared.firstBefore = comparison_->firstBefore;
    compared.second = NameOf(comparison_->second);
    if (!comparison_->firstSnapshot.present)
        compared.missing = comparison_->firstId + " has no snapshot " +
                           (comparison_->firstBefore ? "before" : "after") + " the install";
    else if (!comparison_->secondSnapshot.present)
        compared.missing = comparison_->secondId + " has no snapshot after the install";
    else
        compared.changes = CompareSnapshots(comparison_->firstSnapshot, comparison_->secondSnapshot);
    return compared;
}

EventName CReportBuilder::NameOf(std::size_t event) const
{
    const EventRecord& record = (*events_)[event];
    return EventName{record.eventId, CopyGroupOf(record)};
}

std::vector<EventName> CReportBuilder::NamesOf(const std::vector<std::size_t>& events) const
{
    std::vector<EventName> names;
    for (const std::size_t event : events)
        names.push_back(NameOf(event));
    return names;
}

EventReport CReportBuilder::ReadEvent(const EventRecord& event, Snapshot& before, Snapshot& after,
                                      SnapshotSection& computer, HistoryReport& history)
{
    EventReport report;
    report.place = static_cast<std::size_t>(&event - events_->data());
    report.record = event;
    report.outcome = OutcomeOf(event);
    report.durationSeconds = SecondsBetween(event.startTime, event.endTime);
    report.eventLogName = FindEventLog(source_, event);
    report.installerLogs = InstallerLogsOf(source_, event, report.eventLogName);
    if (report.eventLogName.empty()) {
        report.notes.push_back("the event log is not in the source");
        return report;
    }
    CEventLogReader log(event.eventId, sectionMemo_);
    ReadEventLog(report, log);
    report.notes.insert(report.notes.end(), log.notes.begin(), log.notes.end());
    report.messages = std::move(log.messages);
    report.messagesLeftOut = log.messagesLeftOut;
    report.messagesCut = std::move(log.messagesCut);
    report.hasBefore = log.before.present;
    report.hasAfter = log.after.present;
    before = std::move(log.before);
    after = std::move(log.after);
    before.usersByGroupsAlone = after.usersByGroupsAlone = RecordedOnLinux(event);
    computer = std::move(log.computer);
    TakeMachine(log, event, history);
    return report;
}

// The event log streamed line by line into the reader, with notes of what
// stood in the way: damage, lines cut at their limit, the file's limit.
void CReportBuilder::ReadEventLog(EventReport& report, CEventLogReader& log) const
{
    std::uint64_t total = 0;
    CLineSplitter lines([&log, &lines](const std::string& line) { log.Line(line, lines.BytesCutOfLine()); });
    const bool whole = source_.Stream(report.eventLogName, [&lines, &total](const char* bytes, std::size_t size) {
        lines.Feed(bytes, size);
        total += size;
    });
    lines.Finish();
    log.Finish();
    if (!whole && source_.IsArchive())
        report.notes.push_back("the archive's entry " + report.eventLogName +
                               " is damaged: what could be read of it is shown");
    else if (!whole)
        report.notes.push_back("the event log can't be read whole: what could be read of it is shown");
    if (lines.CutLines() != 0)
        report.notes.push_back(std::to_string(lines.CutLines()) + " lines of the event log longer than " +
                               std::to_string(CLineSplitter::kDefaultLineLimit) + " bytes were cut there");
    if (total >= CHistorySource::kFileLimit)
        report.notes.push_back("the event log reaches " + std::to_string(CHistorySource::kFileLimit) +
                               " bytes, the most that the report reads of a file: the rest is not read");
}

// The machine as the first event of History.ini that has a computer report
// shows it, whatever the order in which the events are read.
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
