#include "report/TextSummary.h"

#include "report/ReportWords.h"
#include "report/SnapshotComparison.h"

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

// Each thing that came, went or changed, one line each behind its section's
// key: "processes + zorsrv.exe: 1", "services ~ ZOR Listener: Running -> Stopped".
void WriteSectionLines(const std::string& key, const SectionChanges& changes, std::ostream& out)
{
    for (const auto* list : {&changes.added, &changes.removed}) {
        const char* sign = list == &changes.added ? " + " : " - ";
        for (const ListedItem& item : *list)
            out << key << sign << ConsoleText(item.name) << (item.value.empty() ? "" : ": ")
                << ConsoleText(item.value) << '\n';
    }
    for (const ItemChange& change : changes.changed)
        out << key << " ~ " << ConsoleText(change.name) << ": " << ConsoleText(change.before) << " -> "
            << ConsoleText(change.after) << '\n';
}

void WriteChangeLines(const SnapshotChanges& changes, std::ostream& out)
{
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part) {
        if (changes[part])
            WriteSectionLines(SectionKey(part), *changes[part], out);
    }
}

// The computer reports' changes, as lines of the key "computer": "computer ~
// Service Pack: Service Pack 2 -> Service Pack 3".
void WriteComputerLines(const EventComparison& comparison, std::ostream& out)
{
    if (comparison.computer)
        WriteSectionLines("computer", *comparison.computer, out);
    else
        out << "The computer reports not compared: " << ConsoleText(comparison.computerMissing) << '\n';
}

void WriteComparison(const EventComparison& comparison, std::ostream& out)
{
    out << "Compared " << ConsoleText(ComparisonTitle(comparison)) << '\n';
    if (!comparison.changes) {
        out << "Not compared: " << ConsoleText(comparison.missing) << '\n';
    } else {
        out << ChangeCountsText(CountsOf(*comparison.changes)) << '\n';
        WriteChangeLines(*comparison.changes, out);
    }
    WriteComputerLines(comparison, out);
}

}  // namespace

void WriteSummaryEvent(const EventReport& event, std::ostream& out)
{
    out << ConsoleText(event.record.eventId) << " | " << ConsoleText(event.record.action) << " | "
        << ConsoleText(OutcomeText(event)) << " | " << InstallChangesText(event) << '\n';
}

namespace {

// The machine's lines: its computer ("Unknown computer" where no computer
// report of its history names one), its events and copies and where they
// come from, the notes on its sources, and a line for each event.
void WriteMachine(const HistoryReport& report, std::ostream& out, const EventWriter& writeEvent)
{
    if (report.computerName.empty())
        out << "Unknown computer";
    else
        out << "Computer " << ConsoleText(report.computerName);
    if (!report.operatingSystem.empty())
        out << ", " << ConsoleText(report.operatingSystem);
    out << '\n';
    out << report.eventCount << (report.eventCount == 1 ? " event of " : " events of ") << report.copies.size()
        << (report.copies.size() == 1 ? " copy in " : " copies in ") << ConsoleText(JoinedNames(report.sources))
        << '\n';
    for (const std::string& note : report.notes)
        out << "Note: " << ConsoleText(note) << '\n';
    for (const CopyReport& copy : report.copies) {
        for (const EventReport& event : copy.events) {
            out << ConsoleText(copy.name) << " | ";
            writeEvent(event, out);
        }
    }
}

}  // namespace

void WriteTextSummary(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    if (report.SeveralSources())
        out << report.machines.size() << (report.machines.size() == 1 ? " computer" : " computers") << " in "
            << report.sources.size() << " sources\n";
    for (const HistoryReport& machine : report.machines)
        WriteMachine(machine, out, writeEvent);
    if (report.comparison)
        WriteComparison(*report.comparison, out);
}
