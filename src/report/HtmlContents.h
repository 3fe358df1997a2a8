// The page's table of contents and the anchors that it and the timelines
// lead to: one for each copy, by its place among the copies, and one for each
// event, by its place in History.ini, so that no name from the history
// makes an anchor of its own. In a report over several machines, those of
// each machine after the first begin with its place: "m2-event-17".
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "report/ReportModel.h"

// "copy-2", "event-17", "machine-timeline"; "computer-1".
std::string CopyAnchor(std::size_t machine, std::size_t copyIndex);
std::string EventAnchor(const EventReport& event);
std::string MachineTimelineAnchor(std::size_t machine);
std::string ComputerAnchor(std::size_t machine);

// The machine's heading in a report over several sources: "Computer VM1", or
// for a source whose event logs name no computer, "Unknown computer: x.zip";
// escaped.
std::string ComputerTitle(const HistoryReport& machine);

// The copy's heading: "Copy C1", or for an event without a copy name,
// "No copy name: event E1"; escaped.
std::string CopyTitle(const CopyReport& copy);

extern const char kComparisonAnchor[];

// The machine's timeline and each copy with its events, their actions and
// results, each a link; in a report over several sources, below each machine.
void WriteContents(const ReportOfSources& report, std::ostream& out);
