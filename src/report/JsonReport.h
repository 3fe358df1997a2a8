// The report as JSON, for scripts and ticketing tools.
#pragma once

#include <ostream>

#include "report/ReportModel.h"

// One event's object, indented to its place in the document.
void WriteJsonEvent(const EventReport& event, std::ostream& out);
// The document is written as it goes, one event after the other.
void WriteJsonReport(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent = WriteJsonEvent);
