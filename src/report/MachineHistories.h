// The histories of the machines that several sources hold: the sources of
// one computer (two archives of one machine, taken a week apart) make one
// history, in which an event that more than one of them holds (the same
// EventID and start) is one event.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "report/ReportModel.h"

// What one source holds: its events, each marked with the source's place,
// and the computer whose history it is, as its first event log that names
// one says, or empty.
struct SourceEvents {
    std::string computer;
    std::vector<EventRecord> events;
};

// One machine's history: the places of its sources, its events (those of
// its first source in their order, then each later source's events that
// the earlier ones lack), and for each event, the sources that hold it, the
// one that it is read from first.
struct MachineEvents {
    std::vector<std::size_t> sources;
    std::vector<EventRecord> events;
    std::vector<std::vector<std::size_t>> holders;
};

// The machines in the order of their first sources. Sources of one computer
// (its name compared without regard to the case of ASCII letters) are one
// machine; a source whose computer is unknown is a machine of its own. Of
// the copies of one event, the one that History.ini holds wins over one
// known by its log alone, then one that ended over one that didn't, then
// the first source's.
std::vector<MachineEvents> MergeByComputer(const std::vector<SourceEvents>& sources);
