// The page's table of contents and the anchors that it and the timelines
// lead to: one for each copy, by its place among the copies, and one for each
// event, by its place in History.ini, so that no name from the history
// makes an anchor of its own.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "report/ReportModel.h"

// "copy-2", "event-17".
std::string CopyAnchor(std::size_t copyIndex);
std::string EventAnchor(const EventReport& event);

// The copy's heading: "Copy C1", or for an event without a copy name,
// "No copy name: event E1"; escaped.
std::string CopyTitle(const CopyReport& copy);

extern const char kMachineTimelineAnchor[];
extern const char kComparisonAnchor[];

// Each copy with its events, their actions and results, each a link.
void WriteContents(const HistoryReport& report, std::ostream& out);
