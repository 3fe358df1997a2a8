#include "report/HtmlContents.h"

#include "report/HtmlReport.h"
#include "report/ReportWords.h"

const char kComparisonAnchor[] = "comparison";

namespace {

std::string MachinePrefix(std::size_t machine)
{
    return machine == 0 ? std::string() : "m" + std::to_string(machine) + "-";
}

// The machine's timeline and its copies, each with its events.
void WriteMachineContents(const HistoryReport& machine, std::ostream& out)
{
    for (std::size_t c = 0; c < machine.copies.size(); ++c) {
        const CopyReport& copy = machine.copies[c];
        out << "<li><a href=\"#" << CopyAnchor(machine.machine, c) << "\">" << CopyTitle(copy) << "</a>\n<ul>\n";
        for (const EventReport& event : copy.events)
            out << "<li><a href=\"#" << EventAnchor(event) << "\">" << HtmlText(event.record.eventId) << "</a>: "
                << HtmlText(event.record.action) << ", <span class=\"" << OutcomeClass(event.outcome) << "\">"
                << HtmlText(OutcomeText(event)) << "</span></li>\n";
        out << "</ul>\n</li>\n";
    }
}

void WriteTimelineLink(const HistoryReport& machine, std::ostream& out)
{
    out << "<li><a href=\"#" << MachineTimelineAnchor(machine.machine)
        << "\">What happened on the machine, in order</a></li>\n";
}

void WriteComparisonLink(const EventComparison& comparison, std::ostream& out)
{
    out << "<li><a href=\"#" << kComparisonAnchor << "\">Comparison of " << HtmlText(EventNameText(comparison.first))
        << " and " << HtmlText(EventNameText(comparison.second)) << "</a></li>\n";
}

}  // namespace

std::string CopyAnchor(std::size_t machine, std::size_t copyIndex)
{
    return MachinePrefix(machine) + "copy-" + std::to_string(copyIndex);
}

std::string EventAnchor(const EventReport& event)
{
    return MachinePrefix(event.machine) + "event-" + std::to_string(event.place);
}

std::string MachineTimelineAnchor(std::size_t machine)
{
    return MachinePrefix(machine) + "machine-timeline";
}

std::string ComputerAnchor(std::size_t machine)
{
    return "computer-" + std::to_string(machine);
}

std::string CopyTitle(const CopyReport& copy)
{
    const bool unnamed = copy.events.size() == 1 && copy.events[0].record.copyName.empty();
    return (unnamed ? "No copy name: event " : "Copy ") + HtmlText(copy.name);
}

std::string ComputerTitle(const HistoryReport& machine)
{
    if (machine.computerName.empty())
        return "Unknown computer: " + HtmlText(JoinedNames(machine.sources));
    return "Computer " + HtmlText(machine.computerName);
}

void WriteContents(const ReportOfSources& report, std::ostream& out)
{
    out << "<nav class=\"contents\">\n<h2>Contents</h2>\n<ul>\n";
    if (!report.SeveralSources()) {
        WriteTimelineLink(report.machines.front(), out);
        if (report.comparison)
            WriteComparisonLink(*report.comparison, out);
        WriteMachineContents(report.machines.front(), out);
        out << "</ul>\n</nav>\n";
        return;
    }
    if (report.comparison)
        WriteComparisonLink(*report.comparison, out);
    for (const HistoryReport& machine : report.machines) {
        out << "<li><a href=\"#" << ComputerAnchor(machine.machine) << "\">" << ComputerTitle(machine)
            << "</a>\n<ul>\n";
        WriteTimelineLink(machine, out);
        WriteMachineContents(machine, out);
        out << "</ul>\n</li>\n";
    }
    out << "</ul>\n</nav>\n";
}
