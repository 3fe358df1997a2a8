#include "report/MachineHistories.h"

#include <map>
#include <utility>

#include "platform/common/AsciiCase.h"

namespace {

// How much a copy of an event tells: whether History.ini holds it, and
// whether it ended.
std::pair<bool, bool> WhatItTells(const EventRecord& event)
{
    return {event.inHistoryIni, !event.endTime.empty()};
}

// Adds the source's events to the machine: an event the machine has already
// (its EventID and start) gains a holder, and the copy that tells more.
void Merge(MachineEvents& machine, std::map<std::pair<std::string, std::string>, std::size_t>& places,
           std::size_t source, const std::vector<EventRecord>& events)
{
    machine.sources.push_back(source);
    for (const EventRecord& event : events) {
        const auto found = places.emplace(std::make_pair(event.eventId, event.startTime), machine.events.size());
        if (found.second) {
            machine.events.push_back(event);
            machine.events.back().source = source;
            machine.holders.push_back({source});
            continue;
        }
        const std::size_t place = found.first->second;
        std::vector<std::size_t>& holders = machine.holders[place];
        if (holders.back() == source)
            continue;
        if (WhatItTells(event) > WhatItTells(machine.events[place])) {
            machine.events[place] = event;
            machine.events[place].source = source;
            holders.insert(holders.begin(), source);
        } else {
            holders.push_back(source);
        }
    }
}

}  // namespace

std::vector<MachineEvents> MergeByComputer(const std::vector<SourceEvents>& sources)
{
    std::vector<MachineEvents> machines;
    std::vector<std::map<std::pair<std::string, std::string>, std::size_t>> places;
    std::map<std::string, std::size_t> machineOf;
    for (std::size_t source = 0; source < sources.size(); ++source) {
        const std::string& computer = sources[source].computer;
        std::size_t machine = machines.size();
        if (!computer.empty())
            machine = machineOf.emplace(platform::FoldedAsciiText(computer), machines.size()).first->second;
        if (machine == machines.size()) {
            machines.emplace_back();
            places.emplace_back();
        }
        Merge(machines[machine], places[machine], source, sources[source].events);
    }
    return machines;
}
