// Builds the report from a history source: the events of History.ini in the
// groups of the summary, and for each event, its log streamed once. The logs
// are read in the order of the events' starts on the machine, so that each
// event's before snapshot is compared with the snapshot that the machine had
// last before it, whichever event took it. At any time the builder holds the
// current event's two snapshots, that last snapshot, and the after snapshots
// of events still running at the current event's start; the events' reports
// are kept whole unless the caller lets each go as it comes.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "report/CEventLogReader.h"
#include "report/CHistorySource.h"
#include "report/CSectionMemo.h"
#include "report/HistoryEvents.h"
#include "report/MachineTimeline.h"
#include "report/ReportModel.h"
#include "report/TextDecoding.h"

class CReportBuilder {
public:
    // Texts of a history written on Windows are decoded from `ansiCodePage`;
    // of one written on Linux from UTF-8.
    CReportBuilder(const CHistorySource& source, std::string sourceName,
                   int ansiCodePage = CTextDecoder::kWindows1252);

    // Called with each event as soon as it is whole, in the order in which
    // the events are read; what it leaves of the event stays in the report.
    using EventHandler = std::function<void(EventReport& event)>;

    // Compares two events by their EventIDs as well: the first one's after
    // snapshot, or with `firstBefore` its before snapshot, against the second
    // one's after snapshot. The two snapshots are kept as their events are read.
    void Compare(std::string firstEventId, std::string secondEventId, bool firstBefore);

    // False, with a one-line reason, if the source has no History.ini that
    // can be read, or holds no event that Compare names; every other damage
    // is told in the report.
    bool Build(HistoryReport& report, std::string& reason, const EventHandler& onEvent = nullptr);

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

    // The two events to compare, their places in History.ini and the
    // snapshots taken of them so far.
    struct Comparison {
        std::string firstId;
        std::string secondId;
        bool firstBefore = false;
        std::size_t first = 0;
        std::size_t second = 0;
        Snapshot firstSnapshot;
        Snapshot secondSnapshot;
    };

    bool ReadEvents(std::vector<EventRecord>& events, std::vector<std::string>& notes) const;
    bool FindCompared(const std::vector<EventRecord>& events, std::string& reason);
    void TakeCompared(std::size_t event, const Snapshot& before, const Snapshot& after);
    EventComparison CompareTheTwo() const;
    void BuildEvent(std::size_t event, EventReport& report, HistoryReport& history);
    EventReport ReadEvent(const EventRecord& event, Snapshot& before, Snapshot& after, SnapshotSection& computer,
                          HistoryReport& history);
    void ReadEventLog(EventReport& report, CEventLogReader& log) const;
    void CompareWithTheMachine(std::size_t event, const Snapshot& before, EventReport& report);
    void TakeAfterSnapshotsUntil(long long time);
    void CompareComputers(std::size_t event, SnapshotSection& computer, EventReport& report);
    void Keep(std::size_t event, Snapshot& before, Snapshot& after);
    EventName NameOf(std::size_t event) const;
    std::vector<EventName> NamesOf(const std::vector<std::size_t>& events) const;
    void TakeMachine(const CEventLogReader& log, const EventRecord& event, HistoryReport& report);
    void TakeTimes(const EventRecord& event, HistoryReport& report) const;

    const CHistorySource& source_;
    std::string sourceName_;
    int ansiCodePage_;
    CTextDecoder decoder_;
    const std::vector<EventRecord>* events_ = nullptr;
    std::optional<MachineTimeline> timeline_;
    // The History.ini place of the event whose computer report the report
    // shows: the first one that has one.
    const EventRecord* machineEvent_ = nullptr;
    std::optional<HeldSnapshot> latest_;
    std::vector<HeldSnapshot> running_;
    std::optional<HeldComputer> lastComputer_;
    std::optional<Comparison> comparison_;
    // The sections that the machine's snapshots repeat, read once.
    std::shared_ptr<CSectionMemo> sectionMemo_ = std::make_shared<CSectionMemo>();
};
