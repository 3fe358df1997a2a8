#include "report/MachineHistories.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/common/AsciiCase.h"
#include "report/EventFacts.h"

namespace {

// How much a copy of an event tells, in the order in which it counts.
using Telling = std::tuple<bool, bool, bool, bool>;

Telling WhatItTells(const SourceEvents& source, std::size_t event)
{
    const EventRecord& record = source.events[event];
    const bool logHeld = event < source.logsHeld.size() && source.logsHeld[event];
    return {record.inHistoryIni, source.whole, !record.endTime.empty(), logHeld};
}

// The event's start where it can be read, else empty: a start cut off in a
// damaged History.ini tells nothing.
std::string StartOf(const EventRecord& record)
{
    return SecondsOfStamp(record.startTime) ? record.startTime : std::string();
}

// A machine's history as its sources are added, with where each event
// stands by its EventID and start, and by its EventID alone.
class MachineMerge {
public:
    // The place of the event that the record is a copy of, or none.
    std::optional<std::size_t> Find(const EventRecord& record) const
    {
        const std::string start = StartOf(record);
        if (!start.empty()) {
            const auto found = places_.find({record.eventId, start});
            if (found != places_.end())
                return found->second;
        }
        const auto same = byId_.find(record.eventId);
        if (same == byId_.end())
            return std::nullopt;
        for (const std::size_t place : same->second) {
            if (start.empty() || StartOf(events_.events[place]).empty())
                return place;
        }
        return std::nullopt;
    }

    // Whether the machine holds every event of the source.
    bool HoldsAll(const SourceEvents& source) const
    {
        for (const EventRecord& record : source.events) {
            if (!Find(record))
                return false;
        }
        return !source.events.empty();
    }

    void Add(std::size_t place, SourceEvents& source)
    {
        if (events_.computer.empty())
            events_.computer = source.computer;
        events_.sources.push_back(place);
        for (std::size_t event = 0; event < source.events.size(); ++event)
            AddEvent(place, source, event);
    }

    // The place of its first source.
    std::size_t FirstSource() const { return *std::min_element(events_.sources.begin(), events_.sources.end()); }

    MachineEvents Take()
    {
        std::sort(events_.sources.begin(), events_.sources.end());
        return std::move(events_);
    }

private:
    // The record is moved into the machine where it is taken.
    void AddEvent(std::size_t place, SourceEvents& source, std::size_t event)
    {
        EventRecord& record = source.events[event];
        const Telling telling = WhatItTells(source, event);
        const std::optional<std::size_t> found = Find(record);
        if (!found) {
            Place(events_.events.size(), record);
            events_.events.push_back(std::move(record));
            events_.events.back().source = place;
            events_.holders.push_back({place});
            tellings_.push_back(telling);
            return;
        }
        std::vector<std::size_t>& holders = events_.holders[*found];
        if (std::find(holders.begin(), holders.end(), place) != holders.end())
            return;
        if (telling <= tellings_[*found]) {
            holders.push_back(place);
            return;
        }
        Place(*found, record);
        events_.events[*found] = std::move(record);
        events_.events[*found].source = place;
        tellings_[*found] = telling;
        holders.insert(holders.begin(), place);
    }

    void Place(std::size_t place, const EventRecord& record)
    {
        const std::string start = StartOf(record);
        if (!start.empty())
            places_.emplace(std::make_pair(record.eventId, start), place);
        std::vector<std::size_t>& same = byId_[record.eventId];
        if (same.empty() || same.back() != place)
            same.push_back(place);
    }

    MachineEvents events_;
    std::vector<Telling> tellings_;
    std::map<std::pair<std::string, std::string>, std::size_t> places_;
    std::map<std::string, std::vector<std::size_t>> byId_;
};

// The machine that the source belongs to: its computer's, or for an unknown
// computer, the first that holds all its events; `machines.size()` for a new one.
std::size_t MachineOf(const SourceEvents& source, const std::vector<MachineMerge>& machines,
                      std::map<std::string, std::size_t>& byComputer)
{
    if (!source.computer.empty())
        return byComputer.emplace(platform::FoldedAsciiText(source.computer), machines.size()).first->second;
    for (std::size_t machine = 0; machine < machines.size(); ++machine) {
        if (machines[machine].HoldsAll(source))
            return machine;
    }
    return machines.size();
}

}  // namespace

// The sources of known computers are grouped first, so that a source of
// an unknown one can join a machine that a later source names.
std::vector<MachineEvents> MergeByComputer(std::vector<SourceEvents> sources)
{
    std::vector<MachineMerge> merges;
    std::map<std::string, std::size_t> byComputer;
    for (const bool known : {true, false}) {
        for (std::size_t source = 0; source < sources.size(); ++source) {
            if (sources[source].computer.empty() == known)
                continue;
            const std::size_t machine = MachineOf(sources[source], merges, byComputer);
            if (machine == merges.size())
                merges.emplace_back();
            merges[machine].Add(source, sources[source]);
        }
    }
    std::stable_sort(merges.begin(), merges.end(), [](const MachineMerge& one, const MachineMerge& other) {
        return one.FirstSource() < other.FirstSource();
    });
    std::vector<MachineEvents> machines;
    for (MachineMerge& merge : merges)
        machines.push_back(merge.Take());
    return machines;
}
