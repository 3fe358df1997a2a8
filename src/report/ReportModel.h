// What the report tells, held apart from how it is written: the machine, the
// copies with their events in the order of History.ini, and for each event
// what changed during the install and since the machine's snapshot before it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "report/Snapshot.h"

// A text of the history cut to its limit: which one (its place in its list)
// and how many of its bytes were left out.
struct CutText {
    std::size_t index = 0;
    std::uint64_t bytesCut = 0;
};

// An event's section in History.ini, as the recorder left it.
struct EventRecord {
    std::string eventId;
    std::string action;
    std::string product;
    std::string version;
    std::string serviceLevel;
    std::string type;
    std::string path;
    std::string copyName;
    std::string completeFlag;
    std::string startTime;
    std::string endTime;
    std::string result;
    std::string logFile;
    std::string traceFile;
    std::string responseFile;
    std::string eventLogFile;
    std::string wiLogFile;
    // False for an event known only by its log in a damaged archive that
    // lacks History.ini: how it ended is unknown.
    bool inHistoryIni = true;
    // True for an event of a damaged History.ini: past the damage, inflating
    // yields text pieced from what came before it, so any section read may
    // be cut or garbled, and what it lacks is not known.
    bool partlyRead = false;
    // The place among the report's sources of the one it is read from.
    std::size_t source = 0;
};

// The changes of one section: things added, things removed, and things whose
// value changed, in the order of their names. Each text is kept to a limit,
// and each list and each thing's details to a number; what is cut is counted.
struct ItemChange {
    std::string name;
    std::string before;
    std::string after;
    std::uint64_t bytesCut = 0;
    // Its kind, the fields that name it and those of its value after.
    ItemFields fields;
    // The fields of its value before.
    std::vector<ItemField> valuesBefore;
};

// A thing that a snapshot names, with its value.
struct ItemValue {
    std::string name;
    std::string value;
    ItemFields fields;
};

// A thing that came or went, with its value, and with the things that belong
// to it (a copy's products, a driver's parameters), named below it, which
// came or went with it.
struct ListedItem {
    std::string name;
    std::string value;
    std::vector<ItemValue> details;
    std::size_t detailsLeftOut = 0;
    // Bytes cut of its texts and its details' texts.
    std::uint64_t bytesCut = 0;
    ItemFields fields;
};

struct SectionChanges {
    std::vector<ListedItem> added;
    std::vector<ListedItem> removed;
    std::vector<ItemChange> changed;
    std::size_t addedLeftOut = 0;
    std::size_t removedLeftOut = 0;
    std::size_t changedLeftOut = 0;

    std::size_t Count() const
    {
        return added.size() + removed.size() + changed.size() + addedLeftOut + removedLeftOut + changedLeftOut;
    }
};

// One entry for each section, empty where the section can't be compared.
using SnapshotChanges = std::array<std::optional<SectionChanges>, kSnapshotPartCount>;

// The number of changes in each section, none where it can't be compared.
using ChangeCounts = std::array<std::optional<std::size_t>, kSnapshotPartCount>;

enum class EventOutcome { Succeeded, RestartNeeded, Failed, NoResult, NeverEnded, Unknown };

// An installer's file that the event names: its path as History.ini holds
// it, its name, and where the source holds a copy of it, the copy's name in
// the source and its text, cut to a limit.
struct InstallerLog {
    std::string kind;
    std::string name;
    std::string path;
    // Empty where the source holds no copy.
    std::string entry;
    std::string text;
    std::uint64_t bytesCut = 0;
};

// An event as the report names it elsewhere: its EventID and its group, and
// in a report over several sources, the source it is read from.
struct EventName {
    std::string eventId;
    std::string copy;
    std::string source;
};

// What changed on the machine from the snapshot taken last before an event's
// own before snapshot, whichever event took it, to that before snapshot.
struct ChangesSince {
    EventName event;
    // The event's after snapshot, else its before snapshot.
    bool afterSnapshot = false;
    // The recorded events that ran between the two snapshots, in the order of
    // their starts: where there are none, the changes are drift.
    std::vector<EventName> ranBetween;
    SnapshotChanges changes;
};

// What changed in the computer report, from the one that the recorder wrote
// last before this event's start, at the start of another event.
struct ComputerChanges {
    EventName since;
    std::vector<EventName> ranBetween;
    SectionChanges changes;
};

struct EventReport {
    // The event's place among the events of its machine's History.ini (or of
    // their union, where several sources hold the machine's history), and
    // its machine's place among the report's machines.
    std::size_t place = 0;
    std::size_t machine = 0;
    EventRecord record;
    // In a report over several sources, the sources that hold the event: the
    // one that it is read from first.
    std::vector<std::string> sources;
    EventOutcome outcome = EventOutcome::NeverEnded;
    // Seconds from start to end, if both times can be read.
    std::optional<long long> durationSeconds;
    std::vector<std::string> messages;
    std::size_t messagesLeftOut = 0;
    // The messages cut to their limit, with what was cut of each.
    std::vector<CutText> messagesCut;
    std::vector<InstallerLog> installerLogs;
    // Where the event log lies in the source, or empty if it isn't there.
    std::string eventLogName;
    // What stood in the way of reading the event fully, in words.
    std::vector<std::string> notes;
    bool hasBefore = false;
    bool hasAfter = false;
    // Present when both snapshots are there.
    std::optional<SnapshotChanges> changes;
    // Present when this event's before snapshot and an earlier one of the
    // machine are both there.
    std::optional<ChangesSince> sincePrevious;
    // Present when this event's computer report and an earlier one are there.
    std::optional<ComputerChanges> computer;
    // What the timelines show of the changes, kept when the event's details
    // are let go: present where `changes` is.
    std::optional<ChangeCounts> changeCounts;
    // Present where the changes since the machine's last snapshot are drift.
    std::optional<ChangeCounts> driftCounts;
};

// Two events compared as -compare names them: the first one's after
// snapshot, or its before snapshot, against the second one's after snapshot.
struct EventComparison {
    EventName first;
    bool firstBefore = false;
    EventName second;
    // What keeps them from being compared, in words, or empty.
    std::string missing;
    std::optional<SnapshotChanges> changes;
    // Their computer reports, each written at the event's start: what keeps
    // them from being compared, or what changed from the first to the second.
    std::string computerMissing;
    std::optional<SectionChanges> computer;
};

struct CopyReport {
    // The group's name: the copy's name, or the EventID of an event without one.
    std::string name;
    std::vector<EventReport> events;
};

// How a form of the report writes one event: from the event as it stands,
// or from what was written of it before it was let go.
using EventWriter = std::function<void(const EventReport& event, std::ostream& out)>;

// The history of one machine, as one source or several hold it.
struct HistoryReport {
    // Its place among the report's machines.
    std::size_t machine = 0;
    std::vector<std::string> sources;
    // The code page that the history's texts were decoded from: "utf-8",
    // "windows-1252", ...
    std::string textEncoding;
    // What is wrong with the source as a whole, in words: a damaged archive,
    // a damaged History.ini.
    std::vector<std::string> notes;
    std::string computerName;
    std::string operatingSystem;
    std::size_t eventCount = 0;
    std::string firstTime;
    std::string lastTime;
    std::vector<CopyReport> copies;
    // The events' places in History.ini, in the order of their starts on
    // the machine; those without a time that can be read last.
    std::vector<std::size_t> machineOrder;
};

// The report over the sources that the command line names: the machines
// whose histories they hold, in the order of the first source of each, and
// the two events that -compare names.
struct ReportOfSources {
    std::vector<std::string> sources;
    std::vector<HistoryReport> machines;
    std::optional<EventComparison> comparison;

    bool SeveralSources() const { return sources.size() > 1; }
};
