#include "report/TextSummary.h"

#include "report/ReportWords.h"

namespace {

void WriteChangeCounts(const EventReport& event, std::ostream& out)
{
    if (!event.changes) {
        out << MissingSnapshots(event.hasBefore, event.hasAfter);
        return;
    }
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part) {
        out << (part == 0 ? "" : " ") << SectionKey(part) << ' ';
        const std::optional<SectionChanges>& changes = (*event.changes)[part];
        if (changes)
            out << changes->Count();
        else
            out << '-';
    }
}

}  // namespace

void WriteTextSummary(const HistoryReport& report, std::ostream& out)
{
    out << "Computer " << report.computerName;
    if (!report.operatingSystem.empty())
        out << ", " << report.operatingSystem;
    out << '\n';
    out << report.eventCount << " events of " << report.copies.size() << " copies in " << report.sourceName
        << '\n';
    for (const CopyReport& copy : report.copies) {
        for (const EventReport& event : copy.events) {
            out << copy.name << " | " << event.record.eventId << " | " << event.record.action << " | "
                << OutcomeText(event) << " | ";
            WriteChangeCounts(event, out);
            out << '\n';
        }
    }
}
