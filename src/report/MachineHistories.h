// The histories of the machines that several sources hold: the sources of
// one computer (two archives of one machine, taken a week apart) make one
// history, in which an event that more than one of them holds (the same
// EventID and start) is one event.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "report/ReportModel.h"

// What one source holds: its events, each marked with the source's place;
// for each event, whether the source holds its event log; whether the
// source is whole (not a damaged archive); and the computer whose history
// it is, as its event logs name it, or empty.
struct SourceEvents {
    std::string computer;
    std::vector<EventRecord> events;
    std::vector<bool> logsHeld;
    bool whole = true;
};

// One machine's history: the places of its sources, its events (those of
// its first source in their order, then each later source's events that
// the earlier ones lack), and for each event, the sources that hold it, the
// one that it is read from first.
struct MachineEvents {
    // The computer as the first of the machine's sources that names one
    // names it, or empty.
    std::string computer;
    // In the order of the command line.
    std::vector<std::size_t> sources;
    std::vector<EventRecord> events;
    std::vector<std::vector<std::size_t>> holders;
};

// The machines in the order of their first sources. Sources of one computer
// (its name compared without regard to the case of ASCII letters) are one
// machine. A source whose computer is unknown joins the first machine that
// holds every one of its events, else is a machine of its own.
//
// An event of one machine is one event in every source that holds it: the
// same EventID and start, or the same EventID where a damaged source knows
// the event without a start that can be read (by its log alone, or from a
// History.ini cut off in its section). Of its copies, the one that
// History.ini holds wins, then one of a whole source, then one that ended,
// then one whose source holds its log, then the first source's.
std::vector<MachineEvents> MergeByComputer(std::vector<SourceEvents> sources);
