// The report as one self-contained HTML page: inline style, no script, no
// file or address outside itself, readable when printed. Every text from the
// machine or the installer is escaped.
#pragma once

#include <ostream>
#include <string>

#include "report/ReportModel.h"

// One event's part of the page.
void WriteHtmlEvent(const EventReport& event, std::ostream& out);
void WriteHtmlReport(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent = WriteHtmlEvent);

// The class that colours an outcome's word: "failed", "never-ended"...
const char* OutcomeClass(EventOutcome outcome);

// The UTF-8 text as CleanUtf8 makes it, with "&", "<", ">", '"' and "'" as
// character references.
std::string HtmlText(const std::string& utf8Text);
