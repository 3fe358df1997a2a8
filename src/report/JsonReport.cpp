#include "report/JsonReport.h"

#include <nlohmann/json.hpp>

#include "report/ReportWords.h"

namespace {

using json = nlohmann::ordered_json;

json Text(const std::string& text)
{
    return Utf8FromAnsi(text);
}

json Names(const std::vector<std::string>& names)
{
    json list = json::array();
    for (const std::string& name : names)
        list.push_back(Text(name));
    return list;
}

json SectionJson(const std::optional<SectionChanges>& changes)
{
    if (!changes)
        return nullptr;
    json changed = json::array();
    for (const ItemChange& change : changes->changed)
        changed.push_back({{"name", Text(change.name)}, {"before", Text(change.before)}, {"after", Text(change.after)}});
    return {{"added", Names(changes->added)}, {"removed", Names(changes->removed)}, {"changed", changed}};
}

json ChangesJson(const std::optional<SnapshotChanges>& changes)
{
    if (!changes)
        return nullptr;
    json sections = json::object();
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part)
        sections[SectionKey(part)] = SectionJson((*changes)[part]);
    return sections;
}

json InstallerLogsJson(const std::vector<InstallerLog>& logs)
{
    json list = json::array();
    for (const InstallerLog& log : logs)
        list.push_back({{"kind", log.kind}, {"name", Text(log.name)}, {"inSource", log.inSource}});
    return list;
}

json EventJson(const EventReport& event)
{
    const EventRecord& record = event.record;
    json value = {
        {"eventId", Text(record.eventId)},
        {"action", Text(record.action)},
        {"product", Text(record.product)},
        {"serviceLevel", Text(record.serviceLevel)},
        {"start", Text(record.startTime)},
        {"end", Text(record.endTime)},
        {"result", OutcomeWord(event.outcome)},
        {"resultText", Text(record.result)},
        {"durationSeconds", event.durationSeconds ? json(*event.durationSeconds) : json(nullptr)},
        {"eventLog", event.eventLogName.empty() ? json(nullptr) : Text(event.eventLogName)},
        {"snapshotBefore", event.hasBefore},
        {"snapshotAfter", event.hasAfter},
        {"messages", Names(event.messages)},
        {"messagesLeftOut", event.messagesLeftOut},
        {"installerLogs", InstallerLogsJson(event.installerLogs)},
        {"notes", Names(event.notes)},
        {"changes", ChangesJson(event.changes)},
        {"drift", ChangesJson(event.drift)},
    };
    return value;
}

}  // namespace

void WriteJsonReport(const HistoryReport& report, std::ostream& out)
{
    json copies = json::array();
    for (const CopyReport& copy : report.copies) {
        json events = json::array();
        for (const EventReport& event : copy.events)
            events.push_back(EventJson(event));
        copies.push_back({{"copy", Text(copy.name)}, {"events", events}});
    }
    const json document = {
        {"machine", {{"computer", Text(report.computerName)}, {"os", Text(report.operatingSystem)}}},
        {"source", Text(report.sourceName)},
        {"eventCount", report.eventCount},
        {"copyCount", report.copies.size()},
        {"firstTime", Text(report.firstTime)},
        {"lastTime", Text(report.lastTime)},
        {"copies", copies},
    };
    out << document.dump(2) << '\n';
}
