// Builds the report from a history source: the events of History.ini in the
// groups of the summary, and for each event, its log streamed once. At any
// time it holds the current event's two snapshots and the after snapshot of
// the copy's event before it, and no more.
#pragma once

#include <cstddef>
#include <string>

#include "report/CEventLogReader.h"
#include "report/CHistorySource.h"
#include "report/HistoryEvents.h"
#include "report/ReportModel.h"

class CReportBuilder {
public:
    CReportBuilder(const CHistorySource& source, std::string sourceName);

    // False, with a one-line reason, if the source has no History.ini that
    // can be read; every other damage is told in the report.
    bool Build(HistoryReport& report, std::string& reason);

private:
    void BuildGroup(const EventGroup& group, HistoryReport& report);
    EventReport ReadEvent(const EventRecord& event, Snapshot& before, Snapshot& after, HistoryReport& history);
    void TakeMachine(const CEventLogReader& log, const EventRecord& event, HistoryReport& report);
    void TakeTimes(const EventRecord& event, HistoryReport& report) const;

    const CHistorySource& source_;
    std::string sourceName_;
    // The History.ini place of the event whose computer report the report
    // shows: the first one that has one.
    const EventRecord* machineEvent_ = nullptr;
};
