// Builds the report from its sources, one machine at a time: the events of
// the machine's History.ini in the groups of the summary, and for each
// event, its log streamed once from the source that it is read from. The logs
// are read in the order of the events' starts on the machine, so that each
// event's before snapshot is compared with the snapshot that the machine had
// last before it, whichever event took it. Two threads of the builder's own
// work ahead of the comparisons: one reads the next events' logs from the
// sources into memory, a few logs ahead, the other reads their lines into
// snapshots, one event ahead. At any time the builder holds the current
// event's two snapshots, that last snapshot, the after snapshots of events
// still running at the current event's start, and those few events; the
// events' reports are kept whole unless the caller lets each go as it comes.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "report/CEventLogReader.h"
#include "report/CHistorySource.h"
#include "report/CLogReadAhead.h"
#include "report/CReportSources.h"
#include "report/CSectionMemo.h"
#include "report/HistoryEvents.h"
#include "report/MachineTimeline.h"
#include "report/ReportModel.h"
#include "report/TextDecoding.h"

class CReportBuilder {
public:
    // Texts of a history written on Windows are decoded from `ansiCodePage`;
    // of one written on Linux from UTF-8.
    explicit CReportBuilder(CReportSources& sources, int ansiCodePage = CTextDecoder::kWindows1252);

    // Called with each event as soon as it is whole, in the order in which
    // the events are read; what it leaves of the event stays in the report.
    using EventHandler = std::function<void(EventReport& event)>;

    // Compares two events as well: the first one's after snapshot, or with
    // `firstBefore` its before snapshot, against the second one's after
    // snapshot. An event is named by its EventID, or, where several sources
    // hold events of that EventID, "SOURCE:EventID", SOURCE as the command
    // line names it or its file's name. The two snapshots are kept as their
    // events are read.
    void Compare(std::string firstName, std::string secondName, bool firstBefore);

    // False, with a one-line reason, if Compare names no event of the
    // sources, or more than one; every damage is told in the report. Takes
    // the sources' events: one build a builder.
    bool Build(ReportOfSources& report, std::string& reason, const EventHandler& onEvent = nullptr);

private:
    // A snapshot kept for the events that start after it was taken.
    struct HeldSnapshot {
        std::size_t event = 0;
        bool after = false;
        long long time = 0;
        Snapshot snapshot;
    };
    struct HeldComputer {
        std::size_t event = 0;
        long long time = 0;
        SnapshotSection report;
    };
    // An event's log as it is read ahead, from the first of the event's
    // sources, in their order from `holder` on, that holds it: its name there
    // (empty if none holds it), its bytes and the installer's files beside it.
    struct FetchedLog {
        std::size_t holder = 0;
        std::string name;
        CLogReadAhead bytes;
        std::vector<InstallerLog> installerLogs;
    };
    // What an event's log gives, read ahead of the comparisons that the
    // events before it wait for.
    struct EventRead {
        EventReport report;
        Snapshot before;
        Snapshot after;
        SnapshotSection computer;
        std::string computerName;
        std::string operatingSystem;
    };

    // An event of the report: its machine's place and its own in the machine.
    struct EventPlace {
        std::size_t machine = 0;
        std::size_t event = 0;
        bool operator==(const EventPlace& other) const
        {
            return machine == other.machine && event == other.event;
        }
    };

    // The two events to compare, as they were named, their places, and the
    // snapshots taken of them so far.
    struct Comparison {
        std::string firstName;
        std::string secondName;
        bool firstBefore = false;
        EventPlace first;
        EventPlace second;
        EventName firstEvent;
        EventName secondEvent;
        Snapshot firstSnapshot;
        Snapshot secondSnapshot;
        SnapshotSection firstComputer;
        SnapshotSection secondComputer;
    };

    void BuildMachine(const MachineEvents& machine, HistoryReport& report, const EventHandler& onEvent);
    void StartMachine(const MachineEvents& machine);
    bool FindCompared(const std::vector<MachineEvents>& machines, std::string& reason);
    bool FindEvent(const std::vector<MachineEvents>& machines, const std::string& name, EventPlace& place,
                   std::string& reason) const;
    enum class Naming { Not, ByFileName, Exactly };
    Naming Names(const EventRecord& event, const std::vector<std::size_t>& holders, const std::string& name,
                 std::size_t* holderNamed = nullptr) const;
    void Dispose(Snapshot&& snapshot);
    void FreeDisposed() const;
    EventName NameAsGiven(const std::vector<MachineEvents>& machines, const EventPlace& place,
                          const std::string& name) const;
    void TakeCompared(std::size_t event, const Snapshot& before, const Snapshot& after,
                      const SnapshotSection& computer);
    void CompareTheComputers(EventComparison& compared) const;
    EventComparison CompareTheTwo() const;
    void BuildEvent(std::size_t event, EventRead&& read, EventReport& report, HistoryReport& history);
    FetchedLog FetchLog(std::size_t event, std::size_t holder) const;
    EventRead ReadEvent(std::size_t event, FetchedLog&& fetched) const;
    void NoteTheSameEventId(EventReport& report) const;
    // Whether the event log was read whole, and from which source.
    struct LogRead {
        bool whole = false;
        std::size_t holder = 0;
    };
    void TakeTheResultBlock(const CEventLogReader& log, bool logWhole, std::size_t holder, EventReport& report) const;
    static void TakeTheBlocksFiles(const EventRecord& block, const CHistorySource& source, EventReport& report);
    static void NeverEndedByItsLog(const CEventLogReader& log, bool logWhole, EventReport& report);
    LogRead ReadTheBestLog(const EventRecord& event, FetchedLog&& fetched, EventReport& report,
                        std::optional<CEventLogReader>& log) const;
    bool ReadEventLog(std::size_t source, const FetchedLog& fetched, EventReport& report,
                      CEventLogReader& log) const;
    std::string PassedOver(std::size_t source, const std::string& logName) const;
    void CompareWithTheMachine(std::size_t event, const Snapshot& before, EventReport& report);
    void TakeAfterSnapshotsUntil(long long time);
    void CompareComputers(std::size_t event, SnapshotSection& computer, EventReport& report);
    void Keep(std::size_t event, Snapshot& before, Snapshot& after);
    EventName NameOf(std::size_t event) const;
    EventName NameOf(const EventRecord& event) const;
    std::vector<EventName> NamesOf(const std::vector<std::size_t>& events) const;
    void TakeMachine(const EventRead& read, const EventRecord& event, HistoryReport& report);
    void TakeTimes(const EventRecord& event, HistoryReport& report) const;

    CReportSources& sources_;
    int ansiCodePage_;
    // Each machine's decoder, as its history is read.
    std::vector<CTextDecoder> decoders_;
    // The machine being read: its place and its events.
    std::size_t machine_ = 0;
    const MachineEvents* events_ = nullptr;
    // With several sources, the places of the machine's events by EventID.
    std::map<std::string, std::vector<std::size_t>> placesById_;
    std::optional<MachineTimeline> timeline_;
    // The History.ini place of the event whose computer report the report
    // shows: the first one that has one.
    const EventRecord* machineEvent_ = nullptr;
    std::optional<HeldSnapshot> latest_;
    std::vector<HeldSnapshot> running_;
    // Snapshots done with, freed on the thread that read them.
    mutable std::mutex disposalLock_;
    mutable std::vector<Snapshot> disposal_;
    std::optional<HeldComputer> lastComputer_;
    std::optional<Comparison> comparison_;
    // The sections that the machine's snapshots repeat, read once.
    std::shared_ptr<CSectionMemo> sectionMemo_ = std::make_shared<CSectionMemo>();
};
