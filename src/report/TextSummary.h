// The short text that the report prints to standard output: the machine, and
// one line for each event with its copy, EventID, action, result and the
// number of changes in each section of the snapshot.
#pragma once

#include <ostream>

#include "report/ReportModel.h"

void WriteTextSummary(const HistoryReport& report, std::ostream& out);
