// The companion report over any event log, or any History.ini.
//
// An input is the file's bytes, then up to 31 block-size bytes, then one
// last byte that says how the rest is read:
//   bit 7      History.ini instead of an event log
//   bits 5-6   the line splitter's limit: its default, 1, 40 or 200 bytes
//   bits 0-4   how many block-size bytes stand before it
// A block-size byte below 0x80 is a block of 1 to 128 bytes, one from 0x80 on
// a block of 64 to 8192 bytes; the sizes are used in turn until the log is
// fed. A plain text file is an input as well: its last bytes are read as
// such a tail.
//
// An event log goes through CLineSplitter and CEventLogReader twice, in one
// block and in the input's blocks, and the two reads must agree, line for
// line, with a plain split of the whole text. The snapshots are compared, and
// a small report of two events of one copy around that log is written as
// HTML, JSON and the text summary, the second compared with the first. What must hold:
//   - no fault, no exception;
//   - every name that a comparison tells is in the snapshot it is told of,
//     and every thing that came or went is told, itself or by its owner;
//   - the JSON parses back and holds the changes and messages as UTF-8;
//   - the HTML has no tag but the report's own (so no "<script" from the
//     input) and is valid UTF-8;
//   - the text summary has one line for each event and two more.
// A History.ini goes through ReadHistoryEvents and GroupByCopy: each event
// is in exactly one group, each group named once, in the order of its first
// event; the report of those events is written and checked the same way.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "FuzzSupport.h"
#include "platform/common/AsciiCase.h"
#include "report/CEventLogReader.h"
#include "report/CLineSplitter.h"
#include "report/EventFacts.h"
#include "report/HistoryEvents.h"
#include "report/HtmlReport.h"
#include "report/JsonReport.h"
#include "report/ReportModel.h"
#include "report/ReportWords.h"
#include "report/SnapshotComparison.h"
#include "report/TextDecoding.h"
#include "report/TextSummary.h"

namespace {

const char kEventId[] = "E1";

constexpr std::size_t kLineLimits[4] = {CLineSplitter::kDefaultLineLimit, 1, 40, 200};

// What the last byte of an input says, and the bytes it leaves to read.
struct Input {
    std::string text;
    std::vector<std::size_t> blockSizes;
    std::size_t lineLimit = CLineSplitter::kDefaultLineLimit;
    bool historyIni = false;
};

Input TakeInput(const std::uint8_t* bytes, std::size_t size)
{
    Input input;
    const std::uint8_t last = bytes[size - 1];
    input.historyIni = (last & 0x80) != 0;
    input.lineLimit = kLineLimits[(last >> 5) & 3];
    const std::size_t sizeBytes = std::min<std::size_t>(last & 0x1f, size - 1);
    const std::size_t textSize = size - 1 - sizeBytes;
    for (std::size_t i = textSize; i < size - 1; ++i) {
        const std::uint8_t b = bytes[i];
        input.blockSizes.push_back(b < 0x80 ? b + 1u : ((b & 0x7fu) + 1u) * 64u);
    }
    input.text.assign(reinterpret_cast<const char*>(bytes), textSize);
    return input;
}

// ---- The line splitter and the event log reader ----

// The lines of the whole text, split plainly: "\r\n", "\r" and "\n" end a
// line, the last one needs none, and each is kept up to the limit.
std::vector<std::string> PlainLines(const std::string& text, std::size_t limit, std::size_t& cut)
{
    std::vector<std::string> lines;
    cut = 0;
    std::size_t start = 0;
    auto take = [&](std::size_t end) {
        const std::size_t length = end - start;
        if (length > limit)
            ++cut;
        lines.push_back(text.substr(start, std::min(length, limit)));
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n')
            continue;
        take(i);
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
        start = i + 1;
    }
    if (start < text.size())
        take(text.size());
    return lines;
}

struct LogRead {
    // `memo`: the sections already read of another log, which this one's
    // reading takes where their texts come again.
    explicit LogRead(std::size_t lineLimit, std::shared_ptr<CSectionMemo> known = std::make_shared<CSectionMemo>())
        : memo(std::move(known)),
          reader(kEventId, memo),
          splitter([this](const std::string& line) {
              lines.push_back(line);
              reader.Line(line, splitter.BytesCutOfLine());
          },
                   lineLimit)
    {
    }

    std::shared_ptr<CSectionMemo> memo;
    CEventLogReader reader;
    std::vector<std::string> lines;
    CLineSplitter splitter;
};

void ReadInBlocks(LogRead& read, const std::string& text, const std::vector<std::size_t>& sizes)
{
    std::size_t at = 0;
    for (std::size_t turn = 0; at < text.size(); ++turn) {
        const std::size_t size =
            sizes.empty() ? text.size() : std::min(sizes[turn % sizes.size()], text.size() - at);
        read.splitter.Feed(text.data() + at, size);
        at += size;
    }
    read.splitter.Finish();
    read.reader.Finish();
}

bool SameItems(const SnapshotSection& one, const SnapshotSection& other)
{
    if (one.present != other.present || one.complete != other.complete || one.items.size() != other.items.size())
        return false;
    return std::equal(one.items.begin(), one.items.end(), other.items.begin(), [](const auto& a, const auto& b) {
        return a.first == b.first && a.second.value == b.second.value && a.second.owner == b.second.owner;
    });
}

bool SameSnapshot(const Snapshot& one, const Snapshot& other)
{
    if (one.present != other.present || one.complete != other.complete)
        return false;
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        if (!SameItems(one.Section(i), other.Section(i)))
            return false;
    }
    return true;
}

bool SameRead(const CEventLogReader& one, const CEventLogReader& other)
{
    return one.computerName == other.computerName && one.operatingSystem == other.operatingSystem &&
           one.messages == other.messages && one.messagesLeftOut == other.messagesLeftOut &&
           one.notes == other.notes && SameSnapshot(one.before, other.before) &&
           SameSnapshot(one.after, other.after);
}

void CheckLines(const LogRead& read, const std::vector<std::string>& plain, std::size_t plainCut,
                std::size_t limit)
{
    Require(read.lines == plain, "the splitter's lines are the plain split of the whole text");
    Require(read.splitter.CutLines() == plainCut, "the splitter counts each line cut at its limit");
    for (const std::string& line : read.lines)
        Require(line.size() <= limit && line.find_first_of("\r\n") == std::string::npos,
                "a line is within the limit and holds no line end");
}

void CheckSnapshot(const Snapshot& snapshot)
{
    Require(!snapshot.complete || snapshot.present, "a complete snapshot is present");
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        const SnapshotSection& section = snapshot.Section(i);
        Require(section.present || (!section.complete && section.items.empty()),
                "a section that never came is empty and not complete");
    }
}

// ---- The comparison ----

using Items = SnapshotSection::Items;

bool Has(const Items& items, std::string_view name)
{
    return items.count(name) != 0;
}

// A text as a change tells it: cut to its limit.
std::string Capped(std::string_view text)
{
    return std::string(text.substr(0, kItemTextLimit));
}

// What is told as added or removed is exactly the things on that side only,
// less those whose owner is also on that side only and so tells them, in the
// order of their names, up to the list's limit; the rest are counted. Each
// shows its name and value, cut to their limit.
void CheckOneSide(const std::vector<ListedItem>& listed, std::size_t leftOut, const Items& side, const Items& other)
{
    std::vector<Items::const_iterator> expected;
    for (auto item = side.begin(); item != side.end(); ++item) {
        if (Has(other, item->first))
            continue;
        const std::string_view owner = item->second.owner;
        if (owner.empty() || !Has(side, owner) || Has(other, owner))
            expected.push_back(item);
    }
    Require(listed.size() + leftOut == expected.size() && listed.size() == std::min(expected.size(), kListLimit),
            "a thing on one side only is told or counted past the limit, unless its owner is told instead");
    for (std::size_t i = 0; i < listed.size(); ++i) {
        Require(listed[i].name == Capped(expected[i]->first), "the things of a change are in the order of their names");
        Require(listed[i].value == Capped(expected[i]->second.value), "a thing that came or went shows its value");
        Require(listed[i].details.size() <= kDetailLimit, "no thing shows more details than the limit");
    }
}

void CheckSectionChanges(const SectionChanges& changes, const SnapshotSection& before, const SnapshotSection& after)
{
    CheckOneSide(changes.added, changes.addedLeftOut, after.items, before.items);
    CheckOneSide(changes.removed, changes.removedLeftOut, before.items, after.items);
    std::vector<std::pair<Items::const_iterator, Items::const_iterator>> differing;
    for (auto item = before.items.begin(); item != before.items.end(); ++item) {
        const auto found = after.items.find(item->first);
        if (found != after.items.end() && found->second.value != item->second.value)
            differing.emplace_back(item, found);
    }
    Require(changes.changed.size() + changes.changedLeftOut == differing.size() &&
                changes.changed.size() == std::min(differing.size(), kListLimit),
            "every thing whose value differs is told as changed, or counted past the limit");
    for (std::size_t i = 0; i < changes.changed.size(); ++i) {
        const ItemChange& change = changes.changed[i];
        Require(change.name == Capped(differing[i].first->first) &&
                    change.before == Capped(differing[i].first->second.value) &&
                    change.after == Capped(differing[i].second->second.value),
                "a change tells the values of the two snapshots");
    }
}

void CheckChanges(const SnapshotChanges& changes, const Snapshot& before, const Snapshot& after)
{
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        const bool comparable = before.Section(i).complete && after.Section(i).complete;
        Require(changes[i].has_value() == comparable, "a section is compared if both snapshots hold it whole");
        if (changes[i])
            CheckSectionChanges(*changes[i], before.Section(i), after.Section(i));
    }
}

// ---- The three forms of the report ----

bool IsValidUtf8(const std::string& text)
{
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        std::size_t length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xe ? 3 : (c >> 3) == 0x1e ? 4 : 0;
        if (length == 0 || i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k) {
            if ((static_cast<unsigned char>(text[i + k]) & 0xc0) != 0x80)
                return false;
        }
        i += length;
    }
    return true;
}

// The tags that the page itself writes; text from the machine, the installer
// or History.ini is escaped and can bring no other.
const std::set<std::string> kPageTags = {
    "!DOCTYPE", "html", "head", "meta", "title", "style", "body", "h1", "h2", "h3", "h4", "table", "tr",
    "th", "td", "p", "ul", "li", "details", "summary", "section", "span", "code", "nav", "a", "pre",
};

void CheckHtml(const std::string& html)
{
    Require(IsValidUtf8(html), "the page is UTF-8");
    const std::string folded = platform::FoldedAsciiText(html);
    Require(folded.find("<script") == std::string::npos, "the page has no script");
    for (std::size_t at = html.find('<'); at != std::string::npos; at = html.find('<', at + 1)) {
        std::size_t start = at + 1;
        if (start < html.size() && html[start] == '/')
            ++start;
        const std::size_t end = html.find_first_of(" >", start);
        Require(end != std::string::npos && kPageTags.count(html.substr(start, end - start)) != 0,
                "every tag of the page is one of its own");
    }
}

nlohmann::json Utf8Names(const std::vector<std::string>& names)
{
    nlohmann::json list = nlohmann::json::array();
    for (const std::string& name : names)
        list.push_back(CleanUtf8(name));
    return list;
}

void CheckJsonChanges(const nlohmann::json& value, const std::optional<SnapshotChanges>& changes)
{
    Require(value.is_null() == !changes.has_value(), "the JSON has changes where the report has them");
    if (!changes)
        return;
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part) {
        const nlohmann::json& section = value.at(SectionKey(part));
        const std::optional<SectionChanges>& expected = (*changes)[part];
        Require(section.is_null() == !expected.has_value(), "the JSON has a section where the report compared it");
        if (!expected)
            continue;
        Require(section.at("added").size() == expected->added.size() &&
                    section.at("removed").size() == expected->removed.size() &&
                    section.at("changed").size() == expected->changed.size(),
                "the JSON holds the section's changes");
    }
}

nlohmann::json ParsedJson(const std::string& text)
{
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception& error) {
        Require(false, std::string("the JSON parses back: ") + error.what());
    }
    return nlohmann::json();
}

// The machine's part of the JSON form: the document over one source, or a
// machine's object in the document over several.
void CheckJson(const nlohmann::json& document, const HistoryReport& report)
{
    Require(document.at("eventCount") == report.eventCount, "the JSON counts the events");
    const nlohmann::json& copies = document.at("copies");
    Require(copies.size() == report.copies.size(), "the JSON has every copy");
    for (std::size_t c = 0; c < report.copies.size(); ++c) {
        const CopyReport& copy = report.copies[c];
        Require(copies[c].at("copy") == CleanUtf8(copy.name), "the JSON names the copy");
        const nlohmann::json& events = copies[c].at("events");
        Require(events.size() == copy.events.size(), "the JSON has every event of the copy");
        for (std::size_t e = 0; e < copy.events.size(); ++e) {
            const EventReport& event = copy.events[e];
            Require(events[e].at("eventId") == CleanUtf8(event.record.eventId), "the JSON names the event");
            Require(events[e].at("messages") == Utf8Names(event.messages), "the JSON holds the messages");
            Require(events[e].at("notes") == Utf8Names(event.notes), "the JSON holds the notes");
            CheckJsonChanges(events[e].at("changes"), event.changes);
            const nlohmann::json& since = events[e].at("sincePrevious");
            Require(since.is_null() == !event.sincePrevious.has_value(), "the JSON has the changes since before");
            if (event.sincePrevious)
                CheckJsonChanges(since.at("changes"), event.sincePrevious->changes);
        }
    }
}

// The history twice, as two machines of a report over two sources.
ReportOfSources TwoMachinesOf(const HistoryReport& report)
{
    ReportOfSources two;
    two.sources = {"a.zip", "b.zip"};
    for (std::size_t machine = 0; machine < 2; ++machine) {
        HistoryReport history = report;
        history.machine = machine;
        history.sources = {two.sources[machine]};
        for (CopyReport& copy : history.copies) {
            for (EventReport& event : copy.events) {
                event.machine = machine;
                event.sources = history.sources;
            }
        }
        two.machines.push_back(std::move(history));
    }
    return two;
}

void CheckSeveralSources(const HistoryReport& report)
{
    const ReportOfSources two = TwoMachinesOf(report);
    std::ostringstream html;
    WriteHtmlReport(two, html);
    CheckHtml(html.str());
    std::ostringstream json;
    WriteJsonReport(two, json);
    const nlohmann::json document = ParsedJson(json.str());
    Require(document.at("machines").size() == 2, "the JSON over several sources has every machine");
    for (const nlohmann::json& machine : document.at("machines"))
        CheckJson(machine, report);
}

void CheckForms(const HistoryReport& report)
{
    ReportOfSources one;
    one.sources = report.sources;
    one.machines = {report};
    std::ostringstream html;
    WriteHtmlReport(one, html);
    CheckHtml(html.str());

    std::ostringstream json;
    WriteJsonReport(one, json);
    CheckJson(ParsedJson(json.str()), report);
    CheckSeveralSources(report);

    std::ostringstream summary;
    WriteTextSummary(one, summary);
    std::size_t events = 0;
    bool oneLineEach = true;
    for (const CopyReport& copy : report.copies) {
        for (const EventReport& event : copy.events) {
            ++events;
            for (const std::string* text : {&copy.name, &event.record.eventId, &event.record.action,
                                            &event.record.result})
                oneLineEach = oneLineEach && text->find('\n') == std::string::npos;
        }
    }
    oneLineEach = oneLineEach && report.computerName.find('\n') == std::string::npos &&
                  report.operatingSystem.find('\n') == std::string::npos &&
                  report.sources.front().find('\n') == std::string::npos;
    const std::string text = summary.str();
    if (oneLineEach)
        Require(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) == events + 2,
                "the text summary has a line for each event and two more");
}

// Every code page's decoding of any bytes is UTF-8, and what the page and
// the JSON form take of it is UTF-8 without a control character.
void CheckDecoders(const std::string& text)
{
    for (const int codePage : {437, 1250, 1251, 1252, CTextDecoder::kUtf8}) {
        const std::string decoded = CTextDecoder(codePage).Utf8(text);
        Require(IsValidUtf8(decoded), "a decoded text is UTF-8");
        const std::string clean = CleanUtf8(decoded);
        Require(CleanUtf8(clean) == clean, "cleaning UTF-8 twice changes nothing");
        Require(std::none_of(clean.begin(), clean.end(),
                             [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F; }),
                "the page and the JSON form get no control byte");
    }
}

// ---- The two kinds of input ----

EventRecord RecordOf(const char* eventId, const char* start, const char* end)
{
    EventRecord record;
    record.eventId = eventId;
    record.action = "Install";
    record.product = "ZOR Server";
    record.copyName = "COPY1";
    record.completeFlag = "TRUE";
    record.result = "0";
    record.startTime = start;
    record.endTime = end;
    return record;
}

EventReport EventOf(const EventRecord& record, const CEventLogReader& log)
{
    EventReport event;
    event.record = record;
    event.outcome = OutcomeOf(record);
    event.durationSeconds = SecondsBetween(record.startTime, record.endTime);
    event.eventLogName = "COPY1\\" + record.eventId + "\\ZORInstallEvent.Log";
    event.messages = log.messages;
    event.messagesLeftOut = log.messagesLeftOut;
    event.messagesCut = log.messagesCut;
    event.notes = log.notes;
    event.hasBefore = log.before.present;
    event.hasAfter = log.after.present;
    if (event.hasBefore && event.hasAfter) {
        event.changes = CompareSnapshots(log.before, log.after);
        CheckChanges(*event.changes, log.before, log.after);
    }
    return event;
}

void FuzzEventLog(const Input& input)
{
    std::size_t plainCut = 0;
    const std::vector<std::string> plain = PlainLines(input.text, input.lineLimit, plainCut);
    LogRead whole(input.lineLimit);
    ReadInBlocks(whole, input.text, {});
    CheckLines(whole, plain, plainCut, input.lineLimit);
    LogRead blocks(input.lineLimit, whole.memo);
    ReadInBlocks(blocks, input.text, input.blockSizes);
    CheckLines(blocks, plain, plainCut, input.lineLimit);
    Require(SameRead(whole.reader, blocks.reader),
            "a log read in one block and in many, with the sections of the first known, reads the same");

    const CEventLogReader& log = blocks.reader;
    CheckSnapshot(log.before);
    CheckSnapshot(log.after);
    Require(log.messages.size() <= CEventLogReader::kMessageLimit, "no more messages are kept than the limit");
    for (const std::string& message : log.messages)
        Require(message.size() <= CEventLogReader::kMessageTextLimit, "no message is kept past its limit");
    CheckDecoders(input.text);

    // The log as two events of one copy: the second is compared with the
    // first's after snapshot, its snapshot before it on the machine.
    HistoryReport report;
    report.sources = {"fuzz.zip"};
    report.computerName = log.computerName;
    report.operatingSystem = log.operatingSystem;
    report.eventCount = 2;
    report.firstTime = "20240105 10:00:00";
    report.lastTime = "20240105 11:30:00";
    CopyReport copy;
    copy.name = "COPY1";
    copy.events.push_back(EventOf(RecordOf("E1", "20240105 10:00:00", "20240105 10:30:00"), log));
    EventReport second = EventOf(RecordOf("E2", "20240105 11:00:00", "20240105 11:30:00"), log);
    if (log.after.present && log.before.present) {
        ChangesSince since;
        since.event = EventName{"E1", "COPY1", ""};
        since.afterSnapshot = true;
        since.changes = CompareSnapshots(log.after, log.before);
        CheckChanges(since.changes, log.after, log.before);
        second.sincePrevious = std::move(since);
    }
    copy.events.push_back(std::move(second));
    report.copies.push_back(std::move(copy));
    CheckForms(report);
}

void FuzzHistoryIni(const Input& input)
{
    const std::vector<EventRecord> events = ReadHistoryEvents(input.text);
    std::set<std::string> ids;
    for (const EventRecord& event : events) {
        Require(!event.eventId.empty() && event.eventId != "History", "every event has an EventID of its own");
        Require(ids.insert(platform::FoldedAsciiText(event.eventId)).second,
                "no two events share an EventID, whatever its case");
    }
    const std::vector<EventGroup> groups = GroupByCopy(events);
    std::vector<int> seen(events.size(), 0);
    std::set<std::string> names;
    std::size_t lastFirst = 0;
    for (const EventGroup& group : groups) {
        Require(!group.events.empty(), "a group has an event");
        Require(names.insert(group.name).second, "each group is named once");
        for (const EventRecord* event : group.events) {
            Require(event >= events.data() && event < events.data() + events.size(),
                    "a group's event is one of the events");
            ++seen[static_cast<std::size_t>(event - events.data())];
            const std::string& key = event->copyName.empty() ? event->eventId : event->copyName;
            Require(key == group.name, "a group's events share its name");
        }
        const std::size_t first = static_cast<std::size_t>(group.events.front() - events.data());
        Require(&group == &groups.front() || first > lastFirst, "the groups stand in the order of their first event");
        lastFirst = first;
    }
    for (const int count : seen)
        Require(count == 1, "every event is in exactly one group");

    HistoryReport report;
    report.sources = {"History.ini"};
    report.eventCount = events.size();
    const CEventLogReader noLog(kEventId);
    for (const EventGroup& group : groups) {
        CopyReport copy;
        copy.name = group.name;
        for (const EventRecord* record : group.events) {
            EventReport event = EventOf(*record, noLog);
            if (event.durationSeconds)
                Require(*event.durationSeconds >= 0, "a duration is never negative");
            event.installerLogs.push_back(
                InstallerLog{"installer log", record->logFile, record->logFile, std::string(), std::string(), 0});
            copy.events.push_back(std::move(event));
        }
        report.copies.push_back(std::move(copy));
    }
    CheckForms(report);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    if (size == 0)
        return 0;
    const Input input = TakeInput(bytes, size);
    if (input.historyIni)
        FuzzHistoryIni(input);
    else
        FuzzEventLog(input);
    return 0;
}
