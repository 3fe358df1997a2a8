#include "report/CReportSources.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/FileSystem.h"
#include "platform/common/AsciiCase.h"
#include "report/CEventLogReader.h"
#include "report/EventFacts.h"
#include "report/EventLogStream.h"
#include "report/HistoryEvents.h"

namespace {

const char kHistoryIniName[] = "History.ini";
// The event logs asked for the computer's name before the source counts as
// one of an unknown computer: a log without it is damaged, and a source of
// damaged logs mustn't cost a second reading of them all.
constexpr std::size_t kLogsAskedForTheComputer = 4;

// Why an archive's events are known by their logs alone.
std::string WithoutHistoryIni(const CHistorySource& source)
{
    if (!source.Damage().empty())
        return "History.ini is not in the damaged archive";
    if (source.Contains(kHistoryIniName))
        return "History.ini can't be read in the archive";
    return "History.ini is not in the archive";
}

// The events whose logs an archive holds that the part of History.ini that
// could be read lacks (its sections past the damage), known by their logs
// alone. An event of the part read takes its copy's name from the folder of
// its log, where it has one, which the damage may have cut or garbled in its
// section.
std::size_t AddEventsOfTheLogs(std::vector<EventRecord>& events, const std::vector<std::string>& entryNames)
{
    const std::size_t before = events.size();
    std::map<std::string, std::size_t> known;
    for (std::size_t i = 0; i < events.size(); ++i)
        known.emplace(platform::FoldedAsciiText(events[i].eventId), i);
    for (EventRecord& event : EventsOfTheLogs(entryNames)) {
        const auto place = known.emplace(platform::FoldedAsciiText(event.eventId), events.size());
        if (place.second)
            events.push_back(std::move(event));
        else if (events[place.first->second].partlyRead && !event.copyName.empty())
            events[place.first->second].copyName = event.copyName;
    }
    return events.size() - before;
}

void MarkAsPartlyRead(std::vector<EventRecord>& events)
{
    for (EventRecord& event : events)
        event.partlyRead = true;
}

}  // namespace

bool CReportSources::Open(const std::vector<std::string>& paths, std::string& reason)
{
    sources_.clear();
    for (const std::string& path : paths) {
        if (GivenBefore(path)) {
            reason = path + ": the source is given twice";
            return false;
        }
        Opened opened;
        opened.name = path;
        opened.source = std::make_unique<CHistorySource>();
        if (!opened.source->Open(path, reason))
            return false;
        opened.notes = opened.source->Damage();
        if (!ReadEvents(opened)) {
            reason = path + (opened.notes.empty() ? ": no History.ini that can be read in it"
                                                  : ": the archive is cut off or damaged, and holds neither a History.ini "
                                                    "nor an event log that can be read");
            return false;
        }
        for (EventRecord& event : opened.events.events)
            event.source = sources_.size();
        sources_.push_back(std::move(opened));
    }
    if (sources_.size() > 1) {
        for (Opened& opened : sources_)
            TellWhatItHolds(opened);
    }
    return true;
}

bool CReportSources::GivenBefore(const std::string& path) const
{
    for (const Opened& opened : sources_) {
        if (platform::SameEntry(opened.name, path))
            return true;
    }
    return false;
}

// What the merge of several sources weighs: the computer, which event logs
// the source holds, and whether it is whole.
void CReportSources::TellWhatItHolds(Opened& opened)
{
    SourceEvents& events = opened.events;
    events.computer = ComputerOf(opened);
    events.whole = opened.notes.empty();
    events.logsHeld.clear();
    for (const EventRecord& event : events.events)
        events.logsHeld.push_back(!FindEventLog(*opened.source, event).empty());
}

std::vector<MachineEvents> CReportSources::TakeMachines()
{
    std::vector<SourceEvents> events;
    for (Opened& opened : sources_)
        events.push_back(std::move(opened.events));
    return MergeByComputer(std::move(events));
}

// The events of History.ini, as far as it can be read, and in an archive,
// those whose logs it holds that History.ini lacks (past its damage, or of a
// History.ini emptied or replaced); in an archive without a History.ini that
// can be read, the events whose logs it holds. False if there are neither.
bool CReportSources::ReadEvents(Opened& opened) const
{
    const CHistorySource& source = *opened.source;
    std::string historyIni;
    const bool whole = source.Contains(kHistoryIniName) && source.ReadProfile(kHistoryIniName, historyIni);
    if (whole || !historyIni.empty()) {
        opened.events.events = whole ? ReadHistoryEvents(historyIni) : ReadHistoryEventsBeforeDamage(historyIni);
        if (!whole) {
            opened.notes.push_back("History.ini is damaged: the events that could be read of it are shown");
            MarkAsPartlyRead(opened.events.events);
        }
        const std::size_t added = AddEventsOfTheLogs(opened.events.events, source.ArchiveFiles());
        if (whole && added != 0)
            opened.notes.push_back("History.ini has no section of " + std::to_string(added) +
                                   (added == 1 ? " event whose log the archive holds: it is known by its log alone"
                                               : " events whose logs the archive holds: they are known by their "
                                                 "logs alone"));
        return true;
    }
    opened.events.events = EventsOfTheLogs(source.ArchiveFiles());
    if (opened.events.events.empty())
        return false;
    opened.notes.push_back(WithoutHistoryIni(source) +
                           ": the events are those whose logs it holds, without what History.ini says of them");
    return true;
}

// The computer as the event log of the source's last event by its start
// that names one names it: the machine's name when the source was taken,
// which a machine cloned from another's image, history and all, doesn't
// share with it.
std::string CReportSources::ComputerOf(const Opened& opened)
{
    std::size_t asked = 0;
    std::vector<const EventRecord*> events;
    for (const EventRecord& event : opened.events.events)
        events.push_back(&event);
    std::stable_sort(events.begin(), events.end(), [](const EventRecord* one, const EventRecord* other) {
        return one->startTime > other->startTime;
    });
    for (const EventRecord* event : events) {
        const std::string log = FindEventLog(*opened.source, *event);
        if (log.empty())
            continue;
        if (asked++ == kLogsAskedForTheComputer)
            break;
        CEventLogReader reader(event->eventId);
        StreamEventLog(*opened.source, log, reader);
        if (!reader.computerName.empty())
            return reader.computerName;
    }
    return std::string();
}
