#include "report/JsonReport.h"

#include <string>

#include <nlohmann/json.hpp>

#include "report/EventFacts.h"
#include "report/ReportWords.h"
#include "report/TextDecoding.h"

namespace {

using json = nlohmann::ordered_json;

// Raised whenever a field changes its meaning or goes away; fields may be
// added without it.
constexpr int kJsonSchemaVersion = 1;

json Text(const std::string& text)
{
    return CleanUtf8(text);
}

json Names(const std::vector<std::string>& names)
{
    json list = json::array();
    for (const std::string& name : names)
        list.push_back(Text(name));
    return list;
}

// A field's value: its text, its number, or its list of texts.
json FieldJson(const ItemField& field)
{
    switch (field.form) {
    case ItemField::Form::Number:
        return std::stoull(field.texts.front());
    case ItemField::Form::List:
        return Names(field.texts);
    case ItemField::Form::Text:
        break;
    }
    return Text(field.texts.front());
}

void AddFields(json& item, const std::vector<ItemField>& fields)
{
    for (const ItemField& field : fields)
        item[field.key] = FieldJson(field);
}

// A thing's kind and its fields, and what was cut of their texts.
json ItemJson(const ItemFields& fields)
{
    json item = {{"kind", fields.kind}};
    AddFields(item, fields.names);
    AddFields(item, fields.values);
    if (fields.bytesCut != 0)
        item["bytesCut"] = fields.bytesCut;
    return item;
}

// Things that came or went: each with its fields and what came or went with it.
json ListedJson(const std::vector<ListedItem>& items)
{
    json list = json::array();
    for (const ListedItem& item : items) {
        json details = json::array();
        for (const ItemValue& detail : item.details)
            details.push_back(ItemJson(detail.fields));
        json listed = ItemJson(item.fields);
        listed["details"] = details;
        if (item.detailsLeftOut != 0)
            listed["detailsLeftOut"] = item.detailsLeftOut;
        list.push_back(std::move(listed));
    }
    return list;
}

// A thing whose value changed: its kind, its names, and its value's fields
// before and after.
json ChangedJson(const ItemChange& change)
{
    json item = {{"kind", change.fields.kind}};
    AddFields(item, change.fields.names);
    json before = json::object();
    AddFields(before, change.valuesBefore);
    json after = json::object();
    AddFields(after, change.fields.values);
    item["before"] = before;
    item["after"] = after;
    if (change.fields.bytesCut != 0)
        item["bytesCut"] = change.fields.bytesCut;
    return item;
}

json SectionJson(const std::optional<SectionChanges>& changes)
{
    if (!changes)
        return nullptr;
    json changed = json::array();
    for (const ItemChange& change : changes->changed)
        changed.push_back(ChangedJson(change));
    return {{"added", ListedJson(changes->added)},
            {"removed", ListedJson(changes->removed)},
            {"changed", changed},
            {"addedLeftOut", changes->addedLeftOut},
            {"removedLeftOut", changes->removedLeftOut},
            {"changedLeftOut", changes->changedLeftOut}};
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

json EventNameJson(const EventName& event)
{
    json name = {{"eventId", Text(event.eventId)}, {"copy", Text(event.copy)}};
    if (!event.source.empty())
        name["source"] = Text(event.source);
    return name;
}

json EventNamesJson(const std::vector<EventName>& events)
{
    json list = json::array();
    for (const EventName& event : events)
        list.push_back(EventNameJson(event));
    return list;
}

// The changes since the machine's snapshot before the event: drift when no
// recorded event ran between the two.
json SinceJson(const std::optional<ChangesSince>& since)
{
    if (!since)
        return nullptr;
    json from = EventNameJson(since->event);
    from["snapshot"] = since->afterSnapshot ? "after" : "before";
    return {{"since", from},
            {"eventsBetween", EventNamesJson(since->ranBetween)},
            {"drift", since->ranBetween.empty()},
            {"changes", ChangesJson(since->changes)}};
}

json ComputerJson(const std::optional<ComputerChanges>& computer)
{
    if (!computer)
        return nullptr;
    return {{"since", EventNameJson(computer->since)},
            {"eventsBetween", EventNamesJson(computer->ranBetween)},
            {"drift", computer->ranBetween.empty()},
            {"changes", SectionJson(computer->changes)}};
}

json InstallerLogsJson(const std::vector<InstallerLog>& logs)
{
    json list = json::array();
    for (const InstallerLog& log : logs)
        list.push_back({{"kind", log.kind},
                        {"name", Text(log.name)},
                        {"path", Text(log.path)},
                        {"inSource", !log.entry.empty()},
                        {"entry", log.entry.empty() ? json(nullptr) : Text(log.entry)}});
    return list;
}

json CutJson(const std::vector<CutText>& cut)
{
    json list = json::array();
    for (const CutText& text : cut)
        list.push_back({{"index", text.index}, {"bytesCut", text.bytesCut}});
    return list;
}

// A time stamp in ISO 8601, or null where it can't be read.
json TimeJson(const std::string& stamp)
{
    const std::optional<std::string> time = IsoTimeOfStamp(stamp);
    return time ? json(*time) : json(nullptr);
}

// Where an event's object stands: in a report over one source, at depth 8;
// over several, where its event names the sources that hold it, at depth 12.
std::size_t EventIndent(const EventReport& event)
{
    return event.sources.empty() ? 8 : 12;
}

json EventJson(const EventReport& event)
{
    const EventRecord& record = event.record;
    json value = {
        {"eventId", Text(record.eventId)},
        {"copy", record.copyName.empty() ? json(nullptr) : Text(record.copyName)},
        {"action", Text(record.action)},
        {"product", Text(record.product)},
        {"serviceLevel", Text(record.serviceLevel)},
        {"start", TimeJson(record.startTime)},
        {"end", TimeJson(record.endTime)},
        {"result", OutcomeWord(event.outcome)},
        {"resultText", Text(record.result)},
        {"durationSeconds", event.durationSeconds ? json(*event.durationSeconds) : json(nullptr)},
        {"eventLog", event.eventLogName.empty() ? json(nullptr) : Text(event.eventLogName)},
        {"snapshotBefore", event.hasBefore},
        {"snapshotAfter", event.hasAfter},
        {"messages", Names(event.messages)},
        {"messagesLeftOut", event.messagesLeftOut},
        {"messagesCut", CutJson(event.messagesCut)},
        {"installerLogs", InstallerLogsJson(event.installerLogs)},
        {"notes", Names(event.notes)},
        {"changes", ChangesJson(event.changes)},
        {"sincePrevious", SinceJson(event.sincePrevious)},
        {"computerChanges", ComputerJson(event.computer)},
    };
    if (!event.sources.empty())
        value["sources"] = Names(event.sources);
    return value;
}

// The value's text with each line behind the first indented by `indent`
// blanks more, as it stands at that depth of the document; strings in it
// hold no line end of their own.
std::string Indented(const json& value, std::size_t indent)
{
    const std::string text = value.dump(2);
    std::string indented;
    indented.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        indented += c;
        if (c == '\n')
            indented.append(indent, ' ');
    }
    return indented;
}

// The two events that -compare named, or null.
json ComparisonJson(const std::optional<EventComparison>& comparison)
{
    if (!comparison)
        return nullptr;
    json first = EventNameJson(comparison->first);
    first["snapshot"] = comparison->firstBefore ? "before" : "after";
    json second = EventNameJson(comparison->second);
    second["snapshot"] = "after";
    return {{"first", first},
            {"second", second},
            {"missing", comparison->missing.empty() ? json(nullptr) : Text(comparison->missing)},
            {"changes", ChangesJson(comparison->changes)}};
}

// A machine's facts, as the head of its document or of its object.
json MachineJson(const HistoryReport& history)
{
    return {{"machine", {{"computer", Text(history.computerName)}, {"os", Text(history.operatingSystem)}}}};
}

void AddHistoryFacts(json& value, const HistoryReport& history)
{
    value["textEncoding"] = history.textEncoding;
    value["eventCount"] = history.eventCount;
    value["copyCount"] = history.copies.size();
    value["firstTime"] = TimeJson(history.firstTime);
    value["lastTime"] = TimeJson(history.lastTime);
    value["notes"] = Names(history.notes);
}

// The object's text without its closing brace, to go on with more members.
std::string OpenObject(const json& value, std::size_t indent)
{
    const std::string text = Indented(value, indent);
    return text.substr(0, text.size() - 2 - indent);
}

// The machine's copies with their events, as the member "copies" of an
// object at depth `indent`.
void WriteCopies(const HistoryReport& history, std::size_t indent, std::ostream& out, const EventWriter& writeEvent)
{
    const std::string at(indent, ' ');
    out << ",\n" << at << "  \"copies\": [";
    for (std::size_t c = 0; c < history.copies.size(); ++c) {
        const CopyReport& copy = history.copies[c];
        out << (c == 0 ? "\n" : ",\n") << at << "    {\n" << at << "      \"copy\": " << Text(copy.name).dump() << ",\n"
            << at << "      \"events\": [";
        for (std::size_t e = 0; e < copy.events.size(); ++e) {
            out << (e == 0 ? "\n" : ",\n") << at << "        ";
            writeEvent(copy.events[e], out);
        }
        out << (copy.events.empty() ? "]" : "\n" + at + "      ]") << "\n" << at << "    }";
    }
    out << (history.copies.empty() ? "]" : "\n" + at + "  ]") << "\n" << at << "}";
}

// A report over one source: the machine's facts and copies at the top.
void WriteOneSource(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    const HistoryReport& history = report.machines.front();
    json head = {{"schemaVersion", kJsonSchemaVersion}};
    head.update(MachineJson(history));
    head["source"] = Text(report.sources.front());
    AddHistoryFacts(head, history);
    head["comparison"] = ComparisonJson(report.comparison);
    out << OpenObject(head, 0);
    WriteCopies(history, 0, out, writeEvent);
}

// A report over several sources: each machine an object of its facts, its
// sources and its copies.
void WriteSeveralSources(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    const json head = {{"schemaVersion", kJsonSchemaVersion},
                       {"sources", Names(report.sources)},
                       {"computerCount", report.machines.size()},
                       {"comparison", ComparisonJson(report.comparison)}};
    out << OpenObject(head, 0) << ",\n  \"machines\": [";
    for (std::size_t m = 0; m < report.machines.size(); ++m) {
        const HistoryReport& history = report.machines[m];
        json machine = MachineJson(history);
        machine["sources"] = Names(history.sources);
        AddHistoryFacts(machine, history);
        out << (m == 0 ? "\n    " : ",\n    ") << OpenObject(machine, 4);
        WriteCopies(history, 4, out, writeEvent);
    }
    out << (report.machines.empty() ? "]" : "\n  ]") << "\n}";
}

}  // namespace

void WriteJsonEvent(const EventReport& event, std::ostream& out)
{
    out << Indented(EventJson(event), EventIndent(event));
}

// The document as json's dump with an indent of 2 would write it, written
// one copy and one event at a time so that no more than one event's value is
// ever held.
void WriteJsonReport(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    if (report.SeveralSources())
        WriteSeveralSources(report, out, writeEvent);
    else
        WriteOneSource(report, out, writeEvent);
    out << "\n";
}
