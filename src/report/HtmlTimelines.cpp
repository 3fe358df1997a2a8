#include "report/HtmlTimelines.h"

#include <string>
#include <vector>

#include "report/HtmlContents.h"
#include "report/HtmlReport.h"
#include "report/ReportWords.h"

namespace {

// The changes since the machine's snapshot before the event, where they are
// drift: "drift: 3 changes".
std::string DriftText(const EventReport& event)
{
    const std::size_t total = event.driftCounts ? TotalOf(*event.driftCounts) : 0;
    if (total == 0)
        return std::string();
    return "<span class=\"drift\">drift</span>: " + std::to_string(total) + (total == 1 ? " change" : " changes");
}

bool StandsOut(const EventReport& event)
{
    return event.outcome == EventOutcome::Failed || !DriftText(event).empty();
}

void WriteHeading(std::ostream& out, bool withCopy)
{
    out << "<table class=\"timeline\">\n<tr><th>Start</th>" << (withCopy ? "<th>Copy</th>" : "")
        << "<th>Event</th><th>Action</th><th>Product</th><th>End</th><th>Duration</th><th>Result</th>"
           "<th>Changes by the install</th><th>Drift before it</th></tr>\n";
}

// One event's row; `copy` is null in the copy's own timeline.
void WriteRow(const EventReport& event, const std::string* copy, std::ostream& out)
{
    const EventRecord& record = event.record;
    out << "<tr" << (StandsOut(event) ? " class=\"stands-out\"" : "") << "><td>" << HtmlText(record.startTime)
        << "</td>";
    if (copy != nullptr)
        out << "<td>" << HtmlText(*copy) << "</td>";
    out << "<td><a href=\"#" << EventAnchor(event) << "\">" << HtmlText(record.eventId) << "</a></td><td>"
        << HtmlText(record.action) << "</td><td>"
        << HtmlText(record.product) << "</td><td>" << HtmlText(record.endTime) << "</td><td>"
        << (event.durationSeconds ? DurationText(*event.durationSeconds) : std::string()) << "</td><td class=\""
        << OutcomeClass(event.outcome) << "\">" << HtmlText(OutcomeText(event)) << "</td><td class=\"counts\">"
        << InstallChangesText(event) << "</td><td>" << DriftText(event) << "</td></tr>\n";
}

}  // namespace

void WriteMachineTimeline(const HistoryReport& report, std::ostream& out)
{
    std::vector<const EventReport*> events(report.machineOrder.size());
    std::vector<const std::string*> copies(report.machineOrder.size());
    for (const CopyReport& copy : report.copies) {
        for (const EventReport& event : copy.events) {
            if (event.place >= events.size())
                continue;
            events[event.place] = &event;
            copies[event.place] = &copy.name;
        }
    }
    out << "<h2 id=\"" << MachineTimelineAnchor(report.machine) << "\">What happened on the machine, in order</h2>\n";
    WriteHeading(out, true);
    for (const std::size_t place : report.machineOrder) {
        if (place < events.size() && events[place] != nullptr)
            WriteRow(*events[place], copies[place], out);
    }
    out << "</table>\n";
}

void WriteCopyTimeline(const CopyReport& copy, std::ostream& out)
{
    WriteHeading(out, false);
    for (const EventReport& event : copy.events)
        WriteRow(event, nullptr, out);
    out << "</table>\n";
}
