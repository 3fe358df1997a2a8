#include "report/TextSummary.h"

#include "report/ReportWords.h"

namespace {

// Text from the history as the console gets it: a control character (a line
// end, an escape that would drive the terminal, and the C1 controls of UTF-8,
// which some terminals obey as well) shows as "?", so that each event stays
// one line and nothing from the history acts on the terminal.
std::string ConsoleText(const std::string& text)
{
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const unsigned char byte = static_cast<unsigned char>(text[at]);
        const bool c1 = byte == 0xC2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) >= 0x80 &&
                        static_cast<unsigned char>(text[at + 1]) < 0xA0;
        shown += byte < 0x20 || byte == 0x7F || c1 ? '?' : text[at];
        at += c1 ? 1 : 0;
    }
    return shown;
}

}  // namespace

void WriteSummaryEvent(const EventReport& event, std::ostream& out)
{
    out << ConsoleText(event.record.eventId) << " | " << ConsoleText(event.record.action) << " | "
        << ConsoleText(OutcomeText(event)) << " | " << InstallChangesText(event) << '\n';
}

void WriteTextSummary(const HistoryReport& report, std::ostream& out, const EventWriter& writeEvent)
{
    out << "Computer " << ConsoleText(report.computerName);
    if (!report.operatingSystem.empty())
        out << ", " << ConsoleText(report.operatingSystem);
    out << '\n';
    out << report.eventCount << " events of " << report.copies.size() << " copies in "
        << ConsoleText(report.sourceName) << '\n';
    for (const std::string& note : report.notes)
        out << "Note: " << ConsoleText(note) << '\n';
    for (const CopyReport& copy : report.copies) {
        for (const EventReport& event : copy.events) {
            out << ConsoleText(copy.name) << " | ";
            writeEvent(event, out);
        }
    }
}
