#include "report/CReportBuilder.h"

#include <algorithm>
#include <utility>

#include "platform/common/AsciiCase.h"
#include "recorder/EventTexts.h"
#include "report/CEventLogReader.h"
#include "report/CLineSplitter.h"
#include "report/CReadAhead.h"
#include "report/DecodedTexts.h"
#include "report/EventFacts.h"
#include "report/EventLogStream.h"
#include "report/HistoryEvents.h"
#include "report/ReportWords.h"
#include "report/SnapshotComparison.h"

namespace {

// The note on the lines of an event log that were cut at the line limit.
std::string CutLinesNote(std::uint64_t count)
{
    const bool one = count == 1;
    return std::to_string(count) + (one ? " line" : " lines") + " of the event log longer than " +
           std::to_string(CLineSplitter::kDefaultLineLimit) + (one ? " bytes was" : " bytes were") + " cut there";
}

// How History.ini says the install ended, for the reader of its log.
CEventLogReader::InstallEnd InstallEndOf(EventOutcome outcome)
{
    if (outcome == EventOutcome::Unknown)
        return CEventLogReader::InstallEnd::Unknown;
    return outcome == EventOutcome::NeverEnded ? CEventLogReader::InstallEnd::NeverEnded
                                               : CEventLogReader::InstallEnd::Ended;
}

// How many events may wait at each step ahead of the comparisons: logs read
// into memory (each at most CLogReadAhead::kLimit bytes), a few, so that the
// inflating goes on while the reading of one event takes longer than the
// others; an event read with its two snapshots, which may hold much more,
// one.
constexpr std::size_t kLogsReadAhead = 4;
constexpr std::size_t kEventsReadAhead = 1;

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

std::string WithoutEndSeparators(std::string path)
{
    while (path.size() > 1 && (path.back() == '/' || path.back() == '\\'))
        path.pop_back();
    return path;
}

}  // namespace

CReportBuilder::CReportBuilder(CReportSources& sources, int ansiCodePage)
    : sources_(sources), ansiCodePage_(ansiCodePage)
{
}

void CReportBuilder::Compare(std::string firstName, std::string secondName, bool firstBefore)
{
    comparison_ = Comparison();
    comparison_->firstName = std::move(firstName);
    comparison_->secondName = std::move(secondName);
    comparison_->firstBefore = firstBefore;
}

bool CReportBuilder::Build(ReportOfSources& report, std::string& reason, const EventHandler& onEvent)
{
    const std::vector<MachineEvents> machines = sources_.TakeMachines();
    if (!FindCompared(machines, reason))
        return false;
    report = ReportOfSources();
    for (std::size_t source = 0; source < sources_.Count(); ++source)
        report.sources.push_back(sources_.Name(source));
    decoders_.clear();
    for (machine_ = 0; machine_ < machines.size(); ++machine_) {
        report.machines.emplace_back();
        BuildMachine(machines[machine_], report.machines.back(), onEvent);
    }
    if (comparison_) {
        report.comparison = CompareTheTwo();
        DecodeComparison(*report.comparison, decoders_.at(comparison_->first.machine),
                         decoders_.at(comparison_->second.machine));
    }
    events_ = nullptr;
    return true;
}

// What the builder holds of a machine's history, made anew for each machine.
void CReportBuilder::StartMachine(const MachineEvents& machine)
{
    events_ = &machine;
    timeline_.emplace(machine.events);
    machineEvent_ = nullptr;
    latest_.reset();
    running_.clear();
    lastComputer_.reset();
    sectionMemo_ = std::make_shared<CSectionMemo>();
    placesById_.clear();
    for (std::size_t event = 0; sources_.Count() > 1 && event < machine.events.size(); ++event)
        placesById_[machine.events[event].eventId].push_back(event);
}

// The machine's events read in the order of their starts, then kept in the
// groups of the summary.
void CReportBuilder::BuildMachine(const MachineEvents& machine, HistoryReport& report, const EventHandler& onEvent)
{
    const std::vector<EventRecord>& events = machine.events;
    const bool several = sources_.Count() > 1;
    report.machine = machine_;
    for (const std::size_t source : machine.sources) {
        report.sources.push_back(sources_.Name(source));
        for (const std::string& note : sources_.Notes(source))
            report.notes.push_back(several ? sources_.Name(source) + ": " + note : note);
    }
    decoders_.push_back(DecoderOf(events, ansiCodePage_));
    const CTextDecoder& decoder = decoders_.back();
    report.textEncoding = decoder.Name();
    report.eventCount = events.size();
    StartMachine(machine);
    std::vector<EventReport> reports(events.size());
    const std::vector<std::size_t> order = timeline_->Order();
    report.machineOrder = order;
    CReadAhead<FetchedLog> fetching(
        order.size(), [this, &order](std::size_t at) { return FetchLog(order[at], 0); }, kLogsReadAhead);
    CReadAhead<EventRead> reading(
        order.size(), [this, &order, &fetching](std::size_t at) { return ReadEvent(order[at], fetching.Next()); },
        kEventsReadAhead);
    for (const std::size_t event : order) {
        BuildEvent(event, reading.Next(), reports[event], report);
        DecodeEventTexts(reports[event], decoder);
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
    if (several && !machine.computer.empty())
        report.computerName = machine.computer;
    DecodeHistoryTexts(report, decoder);
}

// Each event is compared with itself (before and after the install), and
// with the machine's snapshot before it.
void CReportBuilder::BuildEvent(std::size_t event, EventRead&& read, EventReport& report, HistoryReport& history)
{
    const EventRecord& record = events_->events[event];
    TakeMachine(read, record, history);
    report = std::move(read.report);
    Snapshot& before = read.before;
    Snapshot& after = read.after;
    if (before.present && after.present) {
        report.changes = CompareSnapshots(before, after);
        report.changeCounts = CountsOf(*report.changes);
    }
    CompareWithTheMachine(event, before, report);
    TakeCompared(event, before, after, read.computer);
    CompareComputers(event, read.computer, report);
    Keep(event, before, after);
    TakeTimes(record, history);
    Dispose(std::move(before));
    Dispose(std::move(after));
}

// A snapshot that the comparisons are done with goes back to the reading
// thread, which made its sections, to be freed there: the allocator frees
// memory of its own thread at a fraction of the cost of another's.
void CReportBuilder::Dispose(Snapshot&& snapshot)
{
    if (!snapshot.present)
        return;
    const std::lock_guard<std::mutex> lock(disposalLock_);
    disposal_.push_back(std::move(snapshot));
}

// On the reading thread, before and after each event it reads.
void CReportBuilder::FreeDisposed() const
{
    std::vector<Snapshot> done;
    const std::lock_guard<std::mutex> lock(disposalLock_);
    done.swap(disposal_);
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
    // A before snapshot is its event's start: that event ran from then on,
    // however short its time (the recorder's count seconds).
    since.ranBetween = NamesOf(latest_->after ? timeline_->RanBetween(latest_->time, event)
                                              : timeline_->RanFromStartOf(latest_->event, event));
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
        if (latest_ && held->time < latest_->time) {
            Dispose(std::move(held->snapshot));
        } else {
            if (latest_)
                Dispose(std::move(latest_->snapshot));
            latest_ = std::move(*held);
        }
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
        changes.ranBetween = NamesOf(timeline_->RanFromStartOf(lastComputer_->event, event));
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
    if (start && before.present) {
        if (latest_)
            Dispose(std::move(latest_->snapshot));
        latest_ = HeldSnapshot{event, false, *start, std::move(before)};
    }
    if (end && after.present)
        running_.push_back(HeldSnapshot{event, true, *end, std::move(after)});
}

// The places of the events that Compare names; false, with the reason, if
// the sources lack one or hold more than one event of its name.
bool CReportBuilder::FindCompared(const std::vector<MachineEvents>& machines, std::string& reason)
{
    if (!comparison_)
        return true;
    if (!FindEvent(machines, comparison_->firstName, comparison_->first, reason) ||
        !FindEvent(machines, comparison_->secondName, comparison_->second, reason))
        return false;
    comparison_->firstEvent = NameAsGiven(machines, comparison_->first, comparison_->firstName);
    comparison_->secondEvent = NameAsGiven(machines, comparison_->second, comparison_->secondName);
    return true;
}

// The event's name with the source that the command line named it by, where
// it named one: of the sources that hold the event, that one may not be the
// one it is read from.
EventName CReportBuilder::NameAsGiven(const std::vector<MachineEvents>& machines, const EventPlace& place,
                                      const std::string& name) const
{
    const EventRecord& event = machines[place.machine].events[place.event];
    EventName named = NameOf(event);
    if (name == event.eventId || named.source.empty())
        return named;
    std::size_t holder = 0;
    if (Names(event, machines[place.machine].holders[place.event], name, &holder) != Naming::Not)
        named.source = sources_.Name(holder);
    return named;
}

bool CReportBuilder::FindEvent(const std::vector<MachineEvents>& machines, const std::string& name,
                               EventPlace& place, std::string& reason) const
{
    // A source named as the command line gives it wins over one named by its
    // file's name, which two sources may share.
    std::size_t found = 0;
    for (const Naming naming : {Naming::Exactly, Naming::ByFileName}) {
        for (std::size_t machine = 0; machine < machines.size(); ++machine) {
            const std::vector<EventRecord>& events = machines[machine].events;
            for (std::size_t event = 0; event < events.size(); ++event) {
                if (Names(events[event], machines[machine].holders[event], name) == naming) {
                    place = EventPlace{machine, event};
                    ++found;
                }
            }
        }
        if (found != 0)
            break;
    }
    if (found == 1)
        return true;
    if (sources_.Count() == 1)
        reason = sources_.Name(0) + ": no event " + name + " to compare in it";
    else if (found == 0)
        reason = "no event " + name + " to compare in the sources";
    else if (name.find(':') == std::string::npos)
        reason = name + " names " + std::to_string(found) + " events of the sources: name one as SOURCE:" + name;
    else
        reason = name + " names " + std::to_string(found) +
                 " events of the sources: name its source as the command line gives it";
    return false;
}

// How `name` names the event: exactly, as its EventID or "SOURCE:EventID"
// with SOURCE as the command line gives a source that holds it, or by that
// source's file's name; without regard to the case of ASCII letters in
// SOURCE or a separator at its end.
CReportBuilder::Naming CReportBuilder::Names(const EventRecord& event, const std::vector<std::size_t>& holders,
                                             const std::string& name, std::size_t* holderNamed) const
{
    if (name == event.eventId)
        return Naming::Exactly;
    const std::size_t idAt = name.size() - std::min(name.size(), event.eventId.size());
    if (idAt < 2 || name.compare(idAt, std::string::npos, event.eventId) != 0 || name[idAt - 1] != ':')
        return Naming::Not;
    const std::string source = platform::FoldedAsciiText(WithoutEndSeparators(name.substr(0, idAt - 1)));
    Naming naming = Naming::Not;
    for (const std::size_t holder : holders) {
        const std::string given = platform::FoldedAsciiText(WithoutEndSeparators(sources_.Name(holder)));
        const std::string::size_type slash = given.find_last_of("/\\");
        Naming found = source == given ? Naming::Exactly : Naming::Not;
        if (found == Naming::Not && slash != std::string::npos && source == given.substr(slash + 1))
            found = Naming::ByFileName;
        if (found <= naming)
            continue;
        naming = found;
        if (holderNamed != nullptr)
            *holderNamed = holder;
        if (naming == Naming::Exactly)
            break;
    }
    return naming;
}

void CReportBuilder::TakeCompared(std::size_t event, const Snapshot& before, const Snapshot& after,
                                  const SnapshotSection& computer)
{
    if (!comparison_)
        return;
    const EventPlace place{machine_, event};
    if (place == comparison_->first) {
        comparison_->firstSnapshot = comparison_->firstBefore ? before : after;
        comparison_->firstComputer = computer;
    }
    if (place == comparison_->second) {
        comparison_->secondSnapshot = after;
        comparison_->secondComputer = computer;
    }
}

EventComparison CReportBuilder::CompareTheTwo() const
{
    EventComparison compared;
    compared.first = comparison_->firstEvent;
    compared.firstBefore = comparison_->firstBefore;
    compared.second = comparison_->secondEvent;
    if (!comparison_->firstSnapshot.present)
        compared.missing = comparison_->firstName + " has no snapshot " +
                           (comparison_->firstBefore ? "before" : "after") + " the install";
    else if (!comparison_->secondSnapshot.present)
        compared.missing = comparison_->secondName + " has no snapshot after the install";
    else
        compared.changes = CompareSnapshots(comparison_->firstSnapshot, comparison_->secondSnapshot);
    CompareTheComputers(compared);
    return compared;
}

// Each event's computer report, written at its start, read to its closing
// rule: a report cut off could show a line as gone that was only not read.
void CReportBuilder::CompareTheComputers(EventComparison& compared) const
{
    const SnapshotSection& first = comparison_->firstComputer;
    const SnapshotSection& second = comparison_->secondComputer;
    if (!first.present || !first.complete)
        compared.computerMissing = comparison_->firstName + " has no computer report read whole";
    else if (!second.present || !second.complete)
        compared.computerMissing = comparison_->secondName + " has no computer report read whole";
    else
        compared.computer = CompareSections(first, second);
}

EventName CReportBuilder::NameOf(std::size_t event) const
{
    return NameOf(events_->events[event]);
}

// In a report over several sources, an event is named with its source too.
EventName CReportBuilder::NameOf(const EventRecord& event) const
{
    return EventName{event.eventId, CopyGroupOf(event), sources_.Count() > 1 ? sources_.Name(event.source) : ""};
}

std::vector<EventName> CReportBuilder::NamesOf(const std::vector<std::size_t>& events) const
{
    std::vector<EventName> names;
    for (const std::size_t event : events)
        names.push_back(NameOf(event));
    return names;
}

// Runs on the fetching thread, or on the reading thread for a log that was
// fetched damaged. The sources are read one file at a time.
CReportBuilder::FetchedLog CReportBuilder::FetchLog(std::size_t place, std::size_t holder) const
{
    const EventRecord& event = events_->events[place];
    const std::vector<std::size_t>& holders = events_->holders[place];
    FetchedLog fetched;
    for (fetched.holder = holder; fetched.holder < holders.size(); ++fetched.holder) {
        const CHistorySource& source = sources_.Source(holders[fetched.holder]);
        fetched.name = FindEventLog(source, event);
        if (fetched.name.empty())
            continue;
        fetched.bytes = CLogReadAhead(source, fetched.name);
        fetched.installerLogs = InstallerLogsOf(source, event, fetched.name);
        break;
    }
    return fetched;
}

// Runs on the reading thread: it reads the sources and the section memo,
// which nothing else uses while the machine is read, and the machine's events.
CReportBuilder::EventRead CReportBuilder::ReadEvent(std::size_t place, FetchedLog&& fetched) const
{
    FreeDisposed();
    const EventRecord& event = events_->events[place];
    EventRead read;
    EventReport& report = read.report;
    report.place = place;
    report.machine = machine_;
    report.record = event;
    if (sources_.Count() > 1) {
        for (const std::size_t holder : events_->holders[report.place])
            report.sources.push_back(sources_.Name(holder));
    }
    NoteTheSameEventId(report);
    report.outcome = OutcomeOf(event);
    report.durationSeconds = SecondsBetween(event.startTime, event.endTime);
    std::optional<CEventLogReader> log;
    const LogRead logRead = ReadTheBestLog(event, std::move(fetched), report, log);
    if (!log)
        return read;
    report.notes.insert(report.notes.end(), log->notes.begin(), log->notes.end());
    TakeTheResultBlock(*log, logRead.whole, logRead.holder, report);
    report.messages = std::move(log->messages);
    report.messagesLeftOut = log->messagesLeftOut;
    report.messagesCut = std::move(log->messagesCut);
    report.hasBefore = log->before.present;
    report.hasAfter = log->after.present;
    read.before = std::move(log->before);
    read.after = std::move(log->after);
    read.before.usersByGroupsAlone = read.after.usersByGroupsAlone = RecordedOnLinux(event);
    read.computer = std::move(log->computer);
    read.computerName = std::move(log->computerName);
    read.operatingSystem = std::move(log->operatingSystem);
    FreeDisposed();
    return read;
}

// An event that History.ini doesn't hold whole (known by its log alone, or
// of a damaged History.ini, whose section may be cut or garbled) is as the
// result block of its log says, if the log has it: the recorder writes the
// block at -end from the event's section, whole. A section that says the
// same was read whole. The block names the installer's files where the
// installer had them; the section, where the archive holds them.
void CReportBuilder::TakeTheResultBlock(const CEventLogReader& log, bool logWhole, std::size_t holder,
                                        EventReport& report) const
{
    static std::string EventRecord::*const kFields[] = {
        &EventRecord::startTime, &EventRecord::endTime, &EventRecord::product, &EventRecord::serviceLevel,
        &EventRecord::type,      &EventRecord::action,  &EventRecord::result,  &EventRecord::completeFlag};
    EventRecord& record = report.record;
    if (record.inHistoryIni && !record.partlyRead)
        return;
    if (!log.resultBlock)
        return NeverEndedByItsLog(log, logWhole, report);
    const EventRecord& block = *log.resultBlock;
    const auto differs = [&](std::string EventRecord::*field) { return record.*field != block.*field; };
    if (std::none_of(std::begin(kFields), std::end(kFields), differs))
        return;
    for (std::string EventRecord::*field : kFields)
        record.*field = block.*field;
    report.outcome = OutcomeOf(record);
    report.durationSeconds = SecondsBetween(record.startTime, record.endTime);
    TakeTheBlocksFiles(block, sources_.Source(holder), report);
    report.notes.push_back(kEndFromTheResultBlock);
}

namespace {

std::size_t CountInSource(const std::vector<InstallerLog>& logs)
{
    return static_cast<std::size_t>(
        std::count_if(logs.begin(), logs.end(), [](const InstallerLog& log) { return !log.entry.empty(); }));
}

}  // namespace

// The installer's log and trace file as the result block names them, where
// the source holds more of them by those names than by the section's, which
// may be missing or garbled.
void CReportBuilder::TakeTheBlocksFiles(const EventRecord& block, const CHistorySource& source, EventReport& report)
{
    EventRecord named = report.record;
    named.logFile = block.logFile;
    named.traceFile = block.traceFile;
    std::vector<InstallerLog> logs = InstallerLogsOf(source, named, report.eventLogName);
    if (CountInSource(logs) <= CountInSource(report.installerLogs) && !report.installerLogs.empty())
        return;
    report.record.logFile = named.logFile;
    report.record.traceFile = named.traceFile;
    report.installerLogs = std::move(logs);
}

// A log read whole, with the snapshot before the install and neither the
// snapshot after it nor a result block: the recorder writes both at -end, so
// the install never ended.
void CReportBuilder::NeverEndedByItsLog(const CEventLogReader& log, bool logWhole, EventReport& report)
{
    if (!logWhole || !log.before.present || log.after.present || report.record.completeFlag == texts::kComplete)
        return;
    report.outcome = EventOutcome::NeverEnded;
    report.notes.push_back(kNeverEndedByTheLog);
}

// The event log and the installer's files from the source that the event is
// read from; where that source lacks the log or holds it damaged, from the
// next that holds it, in the order of the event's sources, and the report
// says which sources were passed over and why. Without any, the report says
// so and `log` stays empty.
CReportBuilder::LogRead CReportBuilder::ReadTheBestLog(const EventRecord& event, FetchedLog&& fetched,
                                                      EventReport& report, std::optional<CEventLogReader>& log) const
{
    const EventReport base = report;
    const std::vector<std::size_t>& holders = events_->holders[report.place];
    std::vector<std::string> passedOver;
    std::size_t readFrom = 0;
    bool whole = false;
    for (std::size_t next = 0; !fetched.name.empty(); fetched = FetchLog(report.place, next)) {
        if (log)
            passedOver.push_back(PassedOver(holders[readFrom], report.eventLogName));
        for (; next < fetched.holder; ++next)
            passedOver.push_back(PassedOver(holders[next], std::string()));
        readFrom = next++;
        report = base;
        report.eventLogName = fetched.name;
        report.installerLogs = std::move(fetched.installerLogs);
        log.emplace(event.eventId, sectionMemo_, InstallEndOf(report.outcome));
        whole = ReadEventLog(holders[readFrom], fetched, report, *log);
        if (whole)
            break;
    }
    for (const std::string& note : passedOver)
        report.notes.push_back(note + "; the event log is read from " + sources_.Name(holders[readFrom]));
    // The source that the event is read from is named first.
    if (log && readFrom < report.sources.size())
        std::rotate(report.sources.begin(), report.sources.begin() + static_cast<std::ptrdiff_t>(readFrom),
                    report.sources.begin() + static_cast<std::ptrdiff_t>(readFrom) + 1);
    if (log)
        return LogRead{whole, holders[readFrom]};
    report.installerLogs = InstallerLogsOf(sources_.Source(event.source), event, std::string());
    report.notes.push_back(kLogNotInSource);
    // Nothing confirms what the damage may have made up: how it ended is not known.
    if (event.partlyRead) {
        report.outcome = EventOutcome::Unknown;
        report.notes.push_back(kMayBeGarbled);
    }
    return LogRead{};
}

// Why the event log was not read from the source: it lacks the log (no name)
// or holds it damaged.
std::string CReportBuilder::PassedOver(std::size_t source, const std::string& logName) const
{
    std::string why = kLogNotInSource;
    if (!logName.empty() && sources_.Source(source).IsArchive())
        why = "the archive's entry " + logName + " is damaged";
    else if (!logName.empty())
        why = "the event log " + logName + " can't be read whole";
    return sources_.Name(source) + ": " + why;
}

// Sources of one machine can hold an EventID with two starts: the section
// that an installer used again between the times they were taken.
void CReportBuilder::NoteTheSameEventId(EventReport& report) const
{
    const auto same = placesById_.find(report.record.eventId);
    if (same == placesById_.end())
        return;
    for (const std::size_t other : same->second) {
        if (other == report.place)
            continue;
        const EventRecord& record = events_->events[other];
        report.notes.push_back("the EventID is also recorded with the start " + record.startTime + ", in " +
                               sources_.Name(record.source) + ": an installer used it again");
    }
}

// The event log streamed line by line into the reader, with notes of what
// stood in the way: damage (over several sources, named with its source),
// lines cut at their limit, the file's limit; false if it can't be read whole.
bool CReportBuilder::ReadEventLog(std::size_t holder, const FetchedLog& fetched, EventReport& report,
                                  CEventLogReader& log) const
{
    const CHistorySource& source = sources_.Source(holder);
    const std::string where = sources_.Count() > 1 ? sources_.Name(holder) + ": " : std::string();
    const EventLogReading reading = fetched.bytes.Feed(source, fetched.name, log);
    if (!reading.whole && source.IsArchive())
        report.notes.push_back(where + "the archive's entry " + report.eventLogName +
                               " is damaged: what could be read of it is shown");
    else if (!reading.whole)
        report.notes.push_back(where + "the event log can't be read whole: what could be read of it is shown");
    if (reading.cutLines != 0)
        report.notes.push_back(CutLinesNote(reading.cutLines));
    if (reading.bytes >= CHistorySource::kFileLimit)
        report.notes.push_back("the event log reaches " + std::to_string(CHistorySource::kFileLimit) +
                               " bytes, the most that the report reads of a file: the rest is not read");
    return reading.whole;
}

// The machine as the first event of History.ini that has a computer report
// shows it, whatever the order in which the events are read.
void CReportBuilder::TakeMachine(const EventRead& read, const EventRecord& event, HistoryReport& report)
{
    if (read.computerName.empty() && read.operatingSystem.empty())
        return;
    if (machineEvent_ != nullptr && machineEvent_ < &event)
        return;
    machineEvent_ = &event;
    report.computerName = read.computerName;
    report.operatingSystem = read.operatingSystem;
}

void CReportBuilder::TakeTimes(const EventRecord& event, HistoryReport& report) const
{
    UpdateEarliest(report.firstTime, event.startTime);
    UpdateEarliest(report.firstTime, event.endTime);
    UpdateLatest(report.lastTime, event.startTime);
    UpdateLatest(report.lastTime, event.endTime);
}
