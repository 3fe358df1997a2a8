// The page's views at a glance: the machine's timeline, every event of every
// copy in the order of their starts, and each copy's own timeline. A row
// gives the event's result and its number of changes in each section; a
// failed event and drift before an event stand out by a word as well as by
// colour, so that they show in print and to a reader who can't tell colours.
#pragma once

#include <ostream>

#include "report/ReportModel.h"

void WriteMachineTimeline(const HistoryReport& report, std::ostream& out);
void WriteCopyTimeline(const CopyReport& copy, std::ostream& out);
