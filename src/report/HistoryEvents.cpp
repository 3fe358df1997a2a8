#include "report/HistoryEvents.h"

#include <unordered_map>
#include <unordered_set>

#include "history/HistoryKeys.h"
#include "platform/common/AsciiCase.h"
#include "platform/common/ProfileDocument.h"
#include "recorder/EventKeys.h"
#include "recorder/EventTexts.h"
#include "report/EventFacts.h"

namespace {

std::string Value(const platform::ProfileDocument& document, const std::string& section, const char* key)
{
    const platform::ProfileEntry* entry = document.Find(section, key);
    return entry == nullptr ? std::string() : entry->value;
}

EventRecord ReadEvent(const platform::ProfileDocument& document, const std::string& section)
{
    EventRecord event;
    event.eventId = section;
    event.action = Value(document, section, keys::Action);
    event.product = Value(document, section, keys::Product);
    event.version = Value(document, section, keys::Version);
    event.serviceLevel = Value(document, section, keys::ServiceLevel);
    event.type = Value(document, section, keys::Type);
    event.path = Value(document, section, keys::Path);
    event.copyName = Value(document, section, keys::CopyName);
    event.completeFlag = Value(document, section, keys::CompleteFlag);
    event.startTime = Value(document, section, keys::StartTime);
    event.endTime = Value(document, section, keys::EndTime);
    event.result = Value(document, section, keys::Result);
    event.logFile = Value(document, section, keys::LogFileName);
    event.traceFile = Value(document, section, keys::TraceFile);
    event.responseFile = Value(document, section, keys::ResponseFile);
    event.eventLogFile = Value(document, section, keys::EventLogFile);
    event.wiLogFile = Value(document, section, keys::WiLogFile);
    return event;
}

// The events of the sections that `taken` takes.
template <typename Taken>
std::vector<EventRecord> ReadEvents(const std::string& historyIniBytes, Taken taken)
{
    const platform::ProfileDocument document = platform::ProfileDocument::Parse(historyIniBytes);
    std::vector<EventRecord> events;
    std::unordered_set<std::string> seen;
    for (const platform::ProfileSection& section : document.Sections()) {
        // The lines ahead of the first header form a section without a name.
        if (section.name.empty() || section.name == kHistorySection ||
            !seen.insert(platform::FoldedAsciiText(section.name)).second)
            continue;
        EventRecord event = ReadEvent(document, section.name);
        if (taken(document, event))
            events.push_back(std::move(event));
    }
    return events;
}

}  // namespace

std::vector<EventRecord> ReadHistoryEvents(const std::string& historyIniBytes)
{
    return ReadEvents(historyIniBytes, [](const platform::ProfileDocument&, const EventRecord&) { return true; });
}

std::vector<EventRecord> ReadHistoryEventsBeforeDamage(const std::string& historyIniBytes)
{
    return ReadEvents(historyIniBytes, [](const platform::ProfileDocument& document, const EventRecord& event) {
        return Value(document, event.eventId, keys::EventID) == event.eventId && NamesItsOwnLog(event);
    });
}

std::vector<EventRecord> EventsOfTheLogs(const std::vector<std::string>& entryNames)
{
    std::vector<EventRecord> events;
    std::unordered_set<std::string> seen;
    for (const std::string& name : entryNames) {
        std::vector<std::string> parts(1);
        for (const char c : name) {
            if (c == '\\' || c == '/')
                parts.emplace_back();
            else
                parts.back() += c;
        }
        const bool eventLog = platform::FoldedAsciiText(parts.back()) == platform::FoldedAsciiText(texts::kEventLogName);
        if (parts.size() < 2 || parts.size() > 3 || !eventLog)
            continue;
        EventRecord event;
        event.eventId = parts[parts.size() - 2];
        event.copyName = parts.size() == 3 ? parts[0] : std::string();
        event.inHistoryIni = false;
        if (!event.eventId.empty() && seen.insert(platform::FoldedAsciiText(event.eventId)).second)
            events.push_back(std::move(event));
    }
    return events;
}

std::string CopyGroupOf(const EventRecord& event)
{
    return event.copyName.empty() ? event.eventId : event.copyName;
}

std::vector<EventGroup> GroupByCopy(const std::vector<EventRecord>& events)
{
    std::vector<EventGroup> groups;
    // The group's place in the list, by its name, compared byte for byte.
    std::unordered_map<std::string, std::size_t> places;
    for (const EventRecord& event : events) {
        const std::string key = CopyGroupOf(event);
        const auto place = places.emplace(key, groups.size());
        if (place.second)
            groups.push_back(EventGroup{key, {}});
        groups[place.first->second].events.push_back(&event);
    }
    return groups;
}
