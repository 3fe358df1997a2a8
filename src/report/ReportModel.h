// What the report tells, held apart from how it is written: the machine, the
// copies with their events in the order of History.ini, and for each event
// what changed during the install and since the copy's event before it.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "report/Snapshot.h"

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
};

// The changes of one section: things added, things removed, and things whose
// value changed, in the order of their names.
struct ItemChange {
    std::string name;
    std::string before;
    std::string after;
};

struct SectionChanges {
    std::vector<std::string> added;
    std::vector<std::string> removed;
    std::vector<ItemChange> changed;

    std::size_t Count() const { return added.size() + removed.size() + changed.size(); }
};

// One entry for each section, empty where the section can't be compared.
using SnapshotChanges = std::array<std::optional<SectionChanges>, kSnapshotPartCount>;

enum class EventOutcome { Succeeded, RestartNeeded, Failed, NoResult, NeverEnded };

// An installer's file that the event names.
struct InstallerLog {
    std::string kind;
    std::string name;
    bool inSource = false;
};

struct EventReport {
    EventRecord record;
    EventOutcome outcome = EventOutcome::NeverEnded;
    // Seconds from start to end, if both times can be read.
    std::optional<long long> durationSeconds;
    std::vector<std::string> messages;
    std::size_t messagesLeftOut = 0;
    std::vector<InstallerLog> installerLogs;
    // Where the event log lies in the source, or empty if it isn't there.
    std::string eventLogName;
    // What stood in the way of reading the event fully, in words.
    std::vector<std::string> notes;
    bool hasBefore = false;
    bool hasAfter = false;
    // Present when both snapshots are there.
    std::optional<SnapshotChanges> changes;
    // Present for an event that follows another of its copy, when that one's
    // after and this one's before are both there.
    std::optional<SnapshotChanges> drift;
};

struct CopyReport {
    // The group's name: the copy's name, or the EventID of an event without one.
    std::string name;
    std::vector<EventReport> events;
};

struct HistoryReport {
    std::string sourceName;
    std::string computerName;
    std::string operatingSystem;
    std::size_t eventCount = 0;
    std::string firstTime;
    std::string lastTime;
    std::vector<CopyReport> copies;
};
