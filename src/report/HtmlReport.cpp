#include "report/HtmlReport.h"

#include <cstdint>

#include "report/HtmlContents.h"
#include "report/HtmlTimelines.h"
#include "report/ReportWords.h"
#include "report/SnapshotComparison.h"
#include "report/TextDecoding.h"

namespace {

// Messages beyond this many are folded away.
constexpr std::size_t kOpenMessages = 10;

const char kStyle[] = R"(
body { font-family: "DejaVu Sans", Arial, sans-serif; margin: 2em; color: #222; max-width: 70em; }
h1 { font-size: 1.6em; margin-bottom: 0.2em; }
h2 { font-size: 1.3em; border-bottom: 2px solid #456; margin-top: 2em; }
h2.computer { font-size: 1.5em; background: #e4e8f0; padding: 0.2em 0.4em; border-bottom-width: 4px; }
h3 { font-size: 1.1em; margin: 1.2em 0 0.4em; }
h4 { font-size: 1em; margin: 0.8em 0 0.3em; color: #345; }
table { border-collapse: collapse; margin: 0.4em 0; }
th, td { border: 1px solid #bbb; padding: 0.2em 0.5em; text-align: left; vertical-align: top; }
th { background: #eef; }
.facts th { width: 10em; }
.event { border-left: 4px solid #89a; padding-left: 1em; margin: 1em 0; }
.succeeded { color: #060; font-weight: bold; }
.failed { color: #a00; font-weight: bold; }
.never-ended, .no-result, .unknown { color: #a60; font-weight: bold; }
.restart-needed { color: #a60; }
.drift { color: #a00; font-weight: bold; }
tr.stands-out td { background: #fde8e8; }
td.counts { font-size: 0.85em; }
ul.details { list-style: disc; padding-left: 2em; }
.none, .na { margin: 0.2em 0; }
.na, .note, .cut { color: #a60; }
.added::before { content: "+ "; color: #060; }
.removed::before { content: "\2212  "; color: #a00; }
ul.changes { list-style: none; padding-left: 1em; margin: 0.2em 0; }
summary { cursor: pointer; font-weight: bold; }
code, .mono, pre.log { font-family: "DejaVu Sans Mono", monospace; }
code { overflow-wrap: anywhere; }
pre.log { white-space: pre-wrap; overflow-wrap: anywhere; font-size: 0.85em; background: #f6f6f6; padding: 0.4em; }
nav.contents ul { margin: 0.2em 0; }
@media print { body { margin: 0; max-width: none; } .event { break-inside: avoid-page; } }
)";

}  // namespace

const char* OutcomeClass(EventOutcome outcome)
{
    switch (outcome) {
    case EventOutcome::Succeeded:
        return "succeeded";
    case EventOutcome::RestartNeeded:
        return "restart-needed";
    case EventOutcome::Failed:
        return "failed";
    case EventOutcome::NoResult:
        return "no-result";
    case EventOutcome::Unknown:
        return "unknown";
    case EventOutcome::NeverEnded:
        break;
    }
    return "never-ended";
}

namespace {

void WriteFact(std::ostream& out, const char* label, const std::string& value)
{
    out << "<tr><th>" << label << "</th><td>" << HtmlText(value) << "</td></tr>\n";
}

void WriteMachine(const HistoryReport& report, std::ostream& out)
{
    out << "<table class=\"facts\">\n";
    WriteFact(out, "Computer", report.computerName);
    WriteFact(out, "Operating system", report.operatingSystem);
    WriteFact(out, report.sources.size() == 1 ? "Source" : "Sources", JoinedNames(report.sources));
    WriteFact(out, "Texts written in", report.textEncoding);
    WriteFact(out, "Events", std::to_string(report.eventCount));
    WriteFact(out, "Copies", std::to_string(report.copies.size()));
    WriteFact(out, "First event", report.firstTime);
    WriteFact(out, "Last event", report.lastTime);
    out << "</table>\n";
    for (const std::string& note : report.notes)
        out << "<p class=\"note\">Note: " << HtmlText(note) << ".</p>\n";
}

// A thing with its value, if it has one: "ZOR Listener: Started".
std::string NamedValue(const std::string& name, const std::string& value)
{
    return HtmlText(name) + (value.empty() ? std::string() : ": " + HtmlText(value));
}

// What was cut of a text: " (1234 bytes cut)", or nothing.
std::string BytesCut(std::uint64_t bytes)
{
    return bytes == 0 ? std::string() : " <span class=\"cut\">(" + std::to_string(bytes) + " bytes cut)</span>";
}

// The line that tells how many more were left off a list.
void WriteLeftOut(std::ostream& out, std::size_t leftOut, const char* what)
{
    if (leftOut != 0)
        out << "<li class=\"cut\">... and " << leftOut << " more " << what << ", not shown</li>\n";
}

// Each thing that came or went with its value, and below it what came or
// went with it.
void WriteList(std::ostream& out, const std::vector<ListedItem>& items, std::size_t leftOut, const char* itemClass)
{
    for (const ListedItem& item : items) {
        out << "<li class=\"" << itemClass << "\">" << NamedValue(item.name, item.value) << BytesCut(item.bytesCut);
        if (!item.details.empty()) {
            out << "\n<ul class=\"details\">\n";
            for (const ItemValue& detail : item.details)
                out << "<li>" << NamedValue(detail.name, detail.value) << "</li>\n";
            WriteLeftOut(out, item.detailsLeftOut, "details");
            out << "</ul>\n";
        }
        out << "</li>\n";
    }
    WriteLeftOut(out, leftOut, itemClass);
}

std::string ChangeCounts(const SectionChanges& changes)
{
    return std::to_string(changes.added.size() + changes.addedLeftOut) + " added, " +
           std::to_string(changes.removed.size() + changes.removedLeftOut) + " removed, " +
           std::to_string(changes.changed.size() + changes.changedLeftOut) + " changed";
}

void WriteSection(const std::string& sectionTitle, const std::optional<SectionChanges>& changes, std::ostream& out)
{
    const std::string title = HtmlText(sectionTitle);
    if (!changes) {
        out << "<p class=\"na\">" << title << ": not compared, the section is missing or cut off.</p>\n";
        return;
    }
    if (changes->Count() == 0) {
        out << "<p class=\"none\">" << title << ": no change.</p>\n";
        return;
    }
    out << "<details open>\n<summary>" << title << ": " << ChangeCounts(*changes) << "</summary>\n";
    out << "<ul class=\"changes\">\n";
    WriteList(out, changes->added, changes->addedLeftOut, "added");
    WriteList(out, changes->removed, changes->removedLeftOut, "removed");
    out << "</ul>\n";
    if (!changes->changed.empty()) {
        out << "<table>\n<tr><th>Changed</th><th>Before</th><th>After</th></tr>\n";
        for (const ItemChange& change : changes->changed)
            out << "<tr><td>" << HtmlText(change.name) << BytesCut(change.bytesCut) << "</td><td>"
                << HtmlText(change.before) << "</td><td>" << HtmlText(change.after) << "</td></tr>\n";
        out << "</table>\n";
    }
    if (changes->changedLeftOut != 0)
        out << "<p class=\"cut\">... and " << changes->changedLeftOut << " more changed, not shown</p>\n";
    out << "</details>\n";
}

void WriteChanges(const std::string& heading, const SnapshotChanges& changes, std::ostream& out)
{
    out << "<h4>" << heading << "</h4>\n";
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part)
        WriteSection(SectionTitle(part), changes[part], out);
}

std::string EventNames(const std::vector<EventName>& events)
{
    std::string names;
    for (const EventName& event : events)
        names += (names.empty() ? "" : ", ") + HtmlText(event.eventId) + " (copy " + HtmlText(event.copy) + ")";
    return names;
}

// Drift stands out by its word and its colour; changes while other events
// ran name them. Where nothing changed, there is no drift to tell.
std::string SinceHeading(const ChangesSince& since)
{
    const std::string snapshot = std::string(since.afterSnapshot ? "after" : "before") + " snapshot of " +
                                 HtmlText(since.event.eventId) + " (copy " + HtmlText(since.event.copy) + ")";
    if (since.ranBetween.empty() && TotalOf(CountsOf(since.changes)) == 0)
        return "What changed since the " + snapshot + ", outside any recorded install";
    if (since.ranBetween.empty())
        return "What changed since the " + snapshot + ": <span class=\"drift\">drift</span>, outside any recorded "
               "install";
    return "What changed since the " + snapshot + ", while these recorded events ran: " +
           EventNames(since.ranBetween);
}

void WriteComputerChanges(const ComputerChanges& computer, std::ostream& out)
{
    out << "<h4>The computer report since the start of " << HtmlText(computer.since.eventId) << " (copy "
        << HtmlText(computer.since.copy) << ")"
        << (computer.ranBetween.empty() && computer.changes.Count() == 0 ? std::string(", outside any recorded install")
            : computer.ranBetween.empty() ? std::string(": <span class=\"drift\">drift</span>")
                                        : ", while these recorded events ran: " + EventNames(computer.ranBetween))
        << "</h4>\n";
    WriteSection("Computer", computer.changes, out);
}

// A failed install's messages stand open, however many; others beyond a
// few are folded away.
void WriteMessages(const EventReport& event, std::ostream& out)
{
    if (event.messages.empty())
        return;
    const bool failed = event.outcome == EventOutcome::Failed;
    const bool fold = failed || event.messages.size() > kOpenMessages;
    const char* opening = !fold ? "<h4>" : failed ? "<details open>\n<summary>" : "<details>\n<summary>";
    out << opening << "Messages (" << event.messages.size() + event.messagesLeftOut << ")"
        << (fold ? "</summary>\n" : "</h4>\n") << "<ul class=\"mono\">\n";
    auto cut = event.messagesCut.begin();
    for (std::size_t i = 0; i < event.messages.size(); ++i) {
        const bool wasCut = cut != event.messagesCut.end() && cut->index == i;
        out << "<li>" << HtmlText(event.messages[i]) << BytesCut(wasCut ? (cut++)->bytesCut : 0) << "</li>\n";
    }
    if (event.messagesLeftOut != 0)
        out << "<li>... and " << event.messagesLeftOut << " more</li>\n";
    out << "</ul>\n" << (fold ? "</details>\n" : "");
}

// The text of an installer's file, line by line, folded away; what was cut
// of it is said.
void WriteInstallerLogText(const InstallerLog& log, std::ostream& out)
{
    out << "<details>\n<summary>Text of " << HtmlText(log.name) << "</summary>\n<pre class=\"log\">";
    for (std::size_t at = 0; at < log.text.size();) {
        std::size_t end = log.text.find('\n', at);
        end = end == std::string::npos ? log.text.size() : end;
        std::string line = log.text.substr(at, end - at);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        out << HtmlText(line) << '\n';
        at = end + 1;
    }
    out << "</pre>\n";
    if (log.bytesCut != 0)
        out << "<p class=\"cut\">... and " << log.bytesCut << " more bytes, not shown</p>\n";
    out << "</details>\n";
}

// Each installer's file with its whole path as History.ini holds it, and
// where the source holds a copy, the copy's name there and its text.
void WriteFiles(const EventReport& event, std::ostream& out)
{
    out << "<p>Event log: "
        << (event.eventLogName.empty() ? std::string("not in the source") : HtmlText(event.eventLogName))
        << "</p>\n";
    if (event.installerLogs.empty())
        return;
    out << "<p>Installer files:</p>\n<ul>\n";
    for (const InstallerLog& log : event.installerLogs) {
        out << "<li>" << log.kind << ": <code>" << HtmlText(log.path) << "</code>";
        if (log.entry.empty()) {
            out << " (not in the source)</li>\n";
            continue;
        }
        out << ", in the source as <code>" << HtmlText(log.entry) << "</code>\n";
        WriteInstallerLogText(log, out);
        out << "</li>\n";
    }
    out << "</ul>\n";
}

// In a report over several sources: the source that the event is read from,
// and the others that hold it.
void WriteSources(const EventReport& event, std::ostream& out)
{
    if (event.sources.empty())
        return;
    out << "<p>Read from " << HtmlText(event.sources.front());
    if (event.sources.size() > 1)
        out << "; also in " << HtmlText(JoinedNames({event.sources.begin() + 1, event.sources.end()}));
    out << ".</p>\n";
}

}  // namespace

void WriteHtmlEvent(const EventReport& event, std::ostream& out)
{
    out << "<section class=\"event\" id=\"" << EventAnchor(event) << "\">\n<h3>" << HtmlText(event.record.eventId)
        << ": "
        << HtmlText(event.record.action) << ", <span class=\"" << OutcomeClass(event.outcome) << "\">"
        << HtmlText(OutcomeText(event)) << "</span></h3>\n";
    for (const std::string& note : event.notes)
        out << "<p class=\"note\">Note: " << HtmlText(note) << ".</p>\n";
    WriteSources(event, out);
    WriteFiles(event, out);
    WriteMessages(event, out);
    if (event.changes)
        WriteChanges("What the install changed", *event.changes, out);
    else
        out << "<h4>What the install changed</h4>\n<p class=\"na\">Not compared: "
            << MissingSnapshots(event.hasBefore, event.hasAfter) << ".</p>\n";
    if (event.sincePrevious)
        WriteChanges(SinceHeading(*event.sincePrevious), event.sincePrevious->changes, out);
    if (event.computer)
        WriteComputerChanges(*event.computer, out);
    out << "</section>\n";
}

namespace {

// The entity of a character that HTML gives a meaning to, or null.
const char* EntityOf(char c)
{
    switch (c) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\'': return "&#39;";
    default: return nullptr;
    }
}

}  // namespace

std::string HtmlText(const std::string& utf8Text)
{
    const std::string text = CleanUtf8(utf8Text);
    std::string escaped;
    escaped.reserve(text.size());
    std::size_t plain = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char* entity = EntityOf(text[at]);
        if (entity == nullptr)
            continue;
        escaped.append(text, plain, at - plain);
        escaped += entity;
        plain = at + 1;
    }
    escaped.append(text, plain, std::string::npos);
    return escaped;
}

namespace {

void WriteComparison(const EventComparison& comparison, std::ostream& out)
{
    out << "<h2 id=\"" << kComparisonAnchor << "\">Comparison of " << HtmlText(EventNameText(comparison.first))
        << " and " << HtmlText(EventNameText(comparison.second)) << "</h2>\n";
    const std::string title = "What changed from " + HtmlText(ComparisonTitle(comparison));
    if (comparison.changes)
        WriteChanges(title, *comparison.changes, out);
    else
        out << "<h4>" << title << "</h4>\n<p class=\"na\">Not compared: " << HtmlText(comparison.missing)
            << ".</p>\n";
    out << "<h4>What changed in the computer report from the start of " << HtmlText(EventNameText(comparison.first))
        << " to the start of " << HtmlText(EventNameText(comparison.second)) << "</h4>\n";
    if (comparison.computer)
        WriteSection("Computer", comparison.computer, out);
    else
        out << "<p class=\"na\">Not compared: " << HtmlText(comparison.computerMissing) << ".</p>\n";
}

void WriteCopy(const CopyReport& copy, std::size_t machine, std::size_t index, std::ostream& out,
               const EventWriter& writeEvent)
{
    out << "<h2 id=\"" << CopyAnchor(machine, index) << "\">" << CopyTitle(copy) << "</h2>\n";
    WriteCopyTimeline(copy, out);
    for (const EventReport& event : copy.events)
        writeEvent(event, out);
}

void WriteCopies(const HistoryReport& machine, std::ostream& out, const EventWriter& writeEvent)
{
    for (std::size_t c = 0; c < machine.copies.size(); ++c)
        WriteCopy(machine.copies[c], machine.machine, c, out, writeEvent);
}

// A report over one source: its machine's facts, the contents, the machine's
// timeline, the comparison and the copies.
void WriteOneSource(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    const HistoryReport& machine = report.machines.front();
    WriteMachine(machine, out);
    WriteContents(report, out);
    WriteMachineTimeline(machine, out);
    if (report.comparison)
        WriteComparison(*report.comparison, out);
    WriteCopies(machine, out, writeEvent);
}

// A report over several sources: the sources, the contents, the comparison,
// then each machine under its computer's heading.
void WriteSeveralSources(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    out << "<table class=\"facts\">\n";
    WriteFact(out, "Sources", JoinedNames(report.sources));
    WriteFact(out, "Computers", std::to_string(report.machines.size()));
    out << "</table>\n";
    WriteContents(report, out);
    if (report.comparison)
        WriteComparison(*report.comparison, out);
    for (const HistoryReport& machine : report.machines) {
        out << "<h2 class=\"computer\" id=\"" << ComputerAnchor(machine.machine) << "\">" << ComputerTitle(machine)
            << "</h2>\n";
        WriteMachine(machine, out);
        WriteMachineTimeline(machine, out);
        WriteCopies(machine, out, writeEvent);
    }
}

}  // namespace

void WriteHtmlReport(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<title>ZOR installation history report</title>\n<style>"
        << kStyle << "</style>\n</head>\n<body>\n<h1>ZOR installation history report</h1>\n";
    if (report.SeveralSources())
        WriteSeveralSources(report, out, writeEvent);
    else
        WriteOneSource(report, out, writeEvent);
    out << "</body>\n</html>\n";
}
