#include "report/HtmlContents.h"

#include "report/HtmlReport.h"
#include "report/ReportWords.h"

const char kMachineTimelineAnchor[] = "machine-timeline";
const char kComparisonAnchor[] = "comparison";

std::string CopyAnchor(std::size_t copyIndex)
{
    return "copy-" + std::to_string(copyIndex);
}

std::string EventAnchor(const EventReport& event)
{
    return "event-" + std::to_string(event.place);
}

std::string CopyTitle(const CopyReport& copy)
{
    const bool unnamed = copy.events.size() == 1 && copy.events[0].record.copyName.empty();
    return (unnamed ? "No copy name: event " : "Copy ") + HtmlText(copy.name);
}

void WriteContents(const HistoryReport& report, std::ostream& out)
{
    out << "<nav class=\"contents\">\n<h2>Contents</h2>\n<ul>\n<li><a href=\"#" << kMachineTimelineAnchor
        << "\">What happened on the machine, in order</a></li>\n";
    if (report.comparison)
        out << "<li><a href=\"#" << kComparisonAnchor << "\">Comparison of "
            << HtmlText(report.comparison->first.eventId) << " and " << HtmlText(report.comparison->second.eventId)
            << "</a></li>\n";
    for (std::size_t c = 0; c < report.copies.size(); ++c) {
        const CopyReport& copy = report.copies[c];
        out << "<li><a href=\"#" << CopyAnchor(c) << "\">" << CopyTitle(copy) << "</a>\n<ul>\n";
        for (const EventReport& event : copy.events)
            out << "<li><a href=\"#" << EventAnchor(event) << "\">" << HtmlText(event.record.eventId) << "</a>: "
                << HtmlText(event.record.action) << ", <span class=\"" << OutcomeClass(event.outcome) << "\">"
                << HtmlText(OutcomeText(event)) << "</span></li>\n";
        out << "</ul>\n</li>\n";
    }
    out << "</ul>\n</nav>\n";
}
