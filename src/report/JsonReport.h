// The report as JSON, for scripts and ticketing tools.
#pragma once

#include <ostream>

#include "report/ReportModel.h"

void WriteJsonReport(const HistoryReport& report, std::ostream& out);
