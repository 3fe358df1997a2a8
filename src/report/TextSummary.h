// The short text that the report prints to standard output: for each machine,
// its computer and one line for each event with its copy, EventID, action, result and the
// number of changes in each section of the snapshot; and where two events are
// compared, what changed from one to the other, a line for each thing.
#pragma once

#include <ostream>

#include "report/ReportModel.h"

// An event's line behind its copy's name: "E1 | Install | succeeded | users 0 ...".
void WriteSummaryEvent(const EventReport& event, std::ostream& out);
void WriteTextSummary(const ReportOfSources& report, std::ostream& out,
                      const EventWriter& writeEvent = WriteSummaryEvent);
