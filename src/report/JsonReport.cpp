#include "report/JsonReport.h"

#include <string>

#include "report/CJsonWriter.h"
#include "report/EventFacts.h"
#include "report/ReportWords.h"
#include "report/SnapshotComparison.h"
#include "report/TextDecoding.h"

namespace {

// Raised whenever a field changes its meaning or goes away; fields may be
// added without it.
constexpr int kJsonSchemaVersion = 1;

// A text of the history, which may hold anything its writer put there.
CJsonWriter& Text(CJsonWriter& json, const std::string& text)
{
    return json.Text(CleanUtf8(text));
}

CJsonWriter& TextOrNull(CJsonWriter& json, const std::string& text)
{
    return text.empty() ? json.Null() : Text(json, text);
}

void Names(CJsonWriter& json, const std::vector<std::string>& names)
{
    json.Array();
    for (const std::string& name : names)
        Text(json, name);
    json.End();
}

// A field's value: its text, its number, or its list of texts.
void Field(CJsonWriter& json, const ItemField& field)
{
    json.Key(field.key);
    switch (field.form) {
    case ItemField::Form::Number:
        json.Number(std::stoull(field.texts.front()));
        return;
    case ItemField::Form::List:
        Names(json, field.texts);
        return;
    case ItemField::Form::Text:
        break;
    }
    Text(json, field.texts.front());
}

void Fields(CJsonWriter& json, const std::vector<ItemField>& fields)
{
    for (const ItemField& field : fields)
        Field(json, field);
}

// The value as `write` writes it, or null where there is none.
template <typename T, typename Writer>
void OrNull(CJsonWriter& json, const std::optional<T>& value, Writer write)
{
    if (value)
        write(json, *value);
    else
        json.Null();
}

void BytesCut(CJsonWriter& json, std::uint64_t bytesCut)
{
    if (bytesCut != 0)
        json.Key("bytesCut").Number(bytesCut);
}

// A thing's kind and its fields, and what was cut of their texts, as members
// of the object begun last.
void ItemMembers(CJsonWriter& json, const ItemFields& fields)
{
    json.Key("kind").Text(fields.kind);
    Fields(json, fields.names);
    Fields(json, fields.values);
    BytesCut(json, fields.bytesCut);
}

// Things that came or went: each with its fields and what came or went with it.
void Listed(CJsonWriter& json, const std::vector<ListedItem>& items)
{
    json.Array();
    for (const ListedItem& item : items) {
        json.Object();
        ItemMembers(json, item.fields);
        json.Key("details").Array();
        for (const ItemValue& detail : item.details) {
            json.Object();
            ItemMembers(json, detail.fields);
            json.End();
        }
        json.End();
        if (item.detailsLeftOut != 0)
            json.Key("detailsLeftOut").Number(item.detailsLeftOut);
        json.End();
    }
    json.End();
}

// A thing whose value changed: its kind, its names, and its value's fields
// before and after.
void Changed(CJsonWriter& json, const ItemChange& change)
{
    json.Object().Key("kind").Text(change.fields.kind);
    Fields(json, change.fields.names);
    json.Key("before").Object();
    Fields(json, change.valuesBefore);
    json.End().Key("after").Object();
    Fields(json, change.fields.values);
    json.End();
    BytesCut(json, change.fields.bytesCut);
    json.End();
}

void Section(CJsonWriter& json, const SectionChanges& changes)
{
    json.Object().Key("added");
    Listed(json, changes.added);
    json.Key("removed");
    Listed(json, changes.removed);
    json.Key("changed").Array();
    for (const ItemChange& change : changes.changed)
        Changed(json, change);
    json.End();
    json.Key("addedLeftOut").Number(changes.addedLeftOut);
    json.Key("removedLeftOut").Number(changes.removedLeftOut);
    json.Key("changedLeftOut").Number(changes.changedLeftOut);
    json.End();
}

void Changes(CJsonWriter& json, const SnapshotChanges& changes)
{
    json.Object();
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part) {
        OrNull(json.Key(SectionKey(part)), changes[part], Section);
    }
    json.End();
}

// An event's name as members of the object begun last.
void EventNameMembers(CJsonWriter& json, const EventName& event)
{
    Text(json.Key("eventId"), event.eventId);
    Text(json.Key("copy"), event.copy);
    if (!event.source.empty())
        Text(json.Key("source"), event.source);
}

// The events that ran between two snapshots, and whether what changed is
// drift: something changed, and no recorded event ran meanwhile.
void RanBetween(CJsonWriter& json, const std::vector<EventName>& events, bool changed)
{
    json.Key("eventsBetween").Array();
    for (const EventName& event : events) {
        json.Object();
        EventNameMembers(json, event);
        json.End();
    }
    json.End().Key("drift").Bool(changed && events.empty());
}

// The changes since the machine's snapshot before the event: drift when no
// recorded event ran between the two.
void Since(CJsonWriter& json, const ChangesSince& since)
{
    json.Object().Key("since").Object();
    EventNameMembers(json, since.event);
    json.Key("snapshot").Text(since.afterSnapshot ? "after" : "before").End();
    RanBetween(json, since.ranBetween, TotalOf(CountsOf(since.changes)) != 0);
    Changes(json.Key("changes"), since.changes);
    json.End();
}

void Computer(CJsonWriter& json, const ComputerChanges& computer)
{
    json.Object().Key("since").Object();
    EventNameMembers(json, computer.since);
    json.End();
    RanBetween(json, computer.ranBetween, computer.changes.Count() != 0);
    Section(json.Key("changes"), computer.changes);
    json.End();
}

void InstallerLogs(CJsonWriter& json, const std::vector<InstallerLog>& logs)
{
    json.Array();
    for (const InstallerLog& log : logs) {
        json.Object().Key("kind").Text(log.kind);
        Text(json.Key("name"), log.name);
        Text(json.Key("path"), log.path);
        json.Key("inSource").Bool(!log.entry.empty());
        TextOrNull(json.Key("entry"), log.entry);
        json.End();
    }
    json.End();
}

void Cut(CJsonWriter& json, const std::vector<CutText>& cut)
{
    json.Array();
    for (const CutText& text : cut)
        json.Object().Key("index").Number(text.index).Key("bytesCut").Number(text.bytesCut).End();
    json.End();
}

// A time stamp in ISO 8601, or null where it can't be read.
void Time(CJsonWriter& json, const std::string& stamp)
{
    OrNull(json, IsoTimeOfStamp(stamp), [](CJsonWriter& time, const std::string& iso) { time.Text(iso); });
}

// Where an event's object stands: in a report over one source, at depth 8;
// over several, where its event names the sources that hold it, at depth 12.
std::size_t EventIndent(const EventReport& event)
{
    return event.sources.empty() ? 8 : 12;
}

// The event's facts from History.ini and from its log.
void EventFactsMembers(CJsonWriter& json, const EventReport& event)
{
    const EventRecord& record = event.record;
    Text(json.Key("eventId"), record.eventId);
    TextOrNull(json.Key("copy"), record.copyName);
    Text(json.Key("action"), record.action);
    Text(json.Key("product"), record.product);
    Text(json.Key("serviceLevel"), record.serviceLevel);
    Time(json.Key("start"), record.startTime);
    Time(json.Key("end"), record.endTime);
    json.Key("result").Text(OutcomeWord(event.outcome));
    Text(json.Key("resultText"), record.result);
    OrNull(json.Key("durationSeconds"), event.durationSeconds,
           [](CJsonWriter& duration, long long seconds) { duration.SignedNumber(seconds); });
    TextOrNull(json.Key("eventLog"), event.eventLogName);
    json.Key("snapshotBefore").Bool(event.hasBefore);
    json.Key("snapshotAfter").Bool(event.hasAfter);
}

void Event(CJsonWriter& json, const EventReport& event)
{
    json.Object();
    EventFactsMembers(json, event);
    Names(json.Key("messages"), event.messages);
    json.Key("messagesLeftOut").Number(event.messagesLeftOut);
    Cut(json.Key("messagesCut"), event.messagesCut);
    InstallerLogs(json.Key("installerLogs"), event.installerLogs);
    Names(json.Key("notes"), event.notes);
    OrNull(json.Key("changes"), event.changes, Changes);
    OrNull(json.Key("sincePrevious"), event.sincePrevious, Since);
    OrNull(json.Key("computerChanges"), event.computer, Computer);
    if (!event.sources.empty())
        Names(json.Key("sources"), event.sources);
    json.End();
}

// The two events that -compare named, or null.
void Comparison(CJsonWriter& json, const EventComparison& comparison)
{
    json.Object().Key("first").Object();
    EventNameMembers(json, comparison.first);
    json.Key("snapshot").Text(comparison.firstBefore ? "before" : "after").End();
    json.Key("second").Object();
    EventNameMembers(json, comparison.second);
    json.Key("snapshot").Text("after").End();
    TextOrNull(json.Key("missing"), comparison.missing);
    OrNull(json.Key("changes"), comparison.changes, Changes);
    TextOrNull(json.Key("computerMissing"), comparison.computerMissing);
    OrNull(json.Key("computerChanges"), comparison.computer, Section);
    json.End();
}

// A machine's facts, as members of its document or of its object.
void Machine(CJsonWriter& json, const HistoryReport& history)
{
    json.Key("machine").Object();
    Text(json.Key("computer"), history.computerName);
    Text(json.Key("os"), history.operatingSystem);
    json.End();
}

void HistoryFacts(CJsonWriter& json, const HistoryReport& history)
{
    json.Key("textEncoding").Text(history.textEncoding);
    json.Key("eventCount").Number(history.eventCount);
    json.Key("copyCount").Number(history.copies.size());
    Time(json.Key("firstTime"), history.firstTime);
    Time(json.Key("lastTime"), history.lastTime);
    Names(json.Key("notes"), history.notes);
}

// The machine's copies with their events, as the member "copies" of the
// object begun last.
void Copies(CJsonWriter& json, const HistoryReport& history, const EventWriter& writeEvent)
{
    json.Key("copies").Array();
    for (const CopyReport& copy : history.copies) {
        json.Object();
        Text(json.Key("copy"), copy.name);
        json.Key("events").Array();
        for (const EventReport& event : copy.events)
            writeEvent(event, json.ValueWrittenApart());
        json.End().End();
    }
    json.End();
}

// A report over one source: the machine's facts and copies at the top.
void WriteOneSource(const ReportOfSources& report, CJsonWriter& json, const EventWriter& writeEvent)
{
    const HistoryReport& history = report.machines.front();
    json.Object().Key("schemaVersion").Number(kJsonSchemaVersion);
    Machine(json, history);
    Text(json.Key("source"), report.sources.front());
    HistoryFacts(json, history);
    OrNull(json.Key("comparison"), report.comparison, Comparison);
    Copies(json, history, writeEvent);
    json.End();
}

// A report over several sources: each machine an object of its facts, its
// sources and its copies.
void WriteSeveralSources(const ReportOfSources& report, CJsonWriter& json, const EventWriter& writeEvent)
{
    json.Object().Key("schemaVersion").Number(kJsonSchemaVersion);
    Names(json.Key("sources"), report.sources);
    json.Key("computerCount").Number(report.machines.size());
    OrNull(json.Key("comparison"), report.comparison, Comparison);
    json.Key("machines").Array();
    for (const HistoryReport& history : report.machines) {
        json.Object();
        Machine(json, history);
        Names(json.Key("sources"), history.sources);
        HistoryFacts(json, history);
        Copies(json, history, writeEvent);
        json.End();
    }
    json.End().End();
}

}  // namespace

void WriteJsonEvent(const EventReport& event, std::ostream& out)
{
    CJsonWriter json(out, EventIndent(event));
    Event(json, event);
}

// The document is written one copy and one event at a time, so that no more
// than one event is ever held; each event's object stands at the depth that
// EventIndent gives it.
void WriteJsonReport(const ReportOfSources& report, std::ostream& out, const EventWriter& writeEvent)
{
    CJsonWriter json(out);
    if (report.SeveralSources())
        WriteSeveralSources(report, json, writeEvent);
    else
        WriteOneSource(report, json, writeEvent);
    out << "\n";
}
