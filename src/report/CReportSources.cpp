#include "report/CReportSources.h"

#include <utility>

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

}  // namespace

bool CReportSources::Open(const std::vector<std::string>& paths, std::string& reason)
{
    sources_.clear();
    for (const std::string& path : paths) {
        Opened opened;
        opened.name = path;
        opened.source = std::make_unique<CHistorySource>();
        if (!opened.source->Open(path, reason))
            return false;
        opened.notes = opened.source->Damage();
        if (!ReadEvents(opened)) {
            reason = path + ": no History.ini that can be read in it";
            return false;
        }
        for (EventRecord& event : opened.events.events)
            event.source = sources_.size();
        sources_.push_back(std::move(opened));
    }
    if (sources_.size() > 1) {
        for (Opened& opened : sources_)
            opened.events.computer = ComputerOf(opened);
    }
    return true;
}

std::vector<MachineEvents> CReportSources::Machines() const
{
    std::vector<SourceEvents> events;
    for (const Opened& opened : sources_)
        events.push_back(opened.events);
    return MergeByComputer(events);
}

// The events of History.ini, as far as it can be read; in a damaged archive
// without it, the events whose logs the archive holds. False if there are
// neither.
bool CReportSources::ReadEvents(Opened& opened) const
{
    const CHistorySource& source = *opened.source;
    std::string historyIni;
    const bool whole = source.Contains(kHistoryIniName) && source.ReadProfile(kHistoryIniName, historyIni);
    if (whole || !historyIni.empty()) {
        opened.events.events = ReadHistoryEvents(historyIni);
        if (!whole)
            opened.notes.push_back("History.ini is damaged: the events that could be read of it are shown");
        return true;
    }
    opened.events.events = EventsOfTheLogs(source.DamagedArchiveFiles());
    if (opened.events.events.empty())
        return false;
    opened.notes.push_back("History.ini is not in the damaged archive: the events are those whose logs it holds, "
                           "without what History.ini says of them");
    return true;
}

// The computer that the source's first event log naming one names.
std::string CReportSources::ComputerOf(const Opened& opened)
{
    std::size_t asked = 0;
    for (const EventRecord& event : opened.events.events) {
        const std::string log = FindEventLog(*opened.source, event);
        if (log.empty())
            continue;
        if (asked++ == kLogsAskedForTheComputer)
            break;
        CEventLogReader reader(event.eventId);
        StreamEventLog(*opened.source, log, reader);
        if (!reader.computerName.empty())
            return reader.computerName;
    }
    return std::string();
}
