// The events of a History.ini, read from its bytes by the rules of the
// private-profile calls: every section but "History" is an event, in the
// order of the file; a second section of a name already read adds no event,
// since every read of a key finds the first one.
#pragma once

#include <string>
#include <vector>

#include "report/ReportModel.h"

std::vector<EventRecord> ReadHistoryEvents(const std::string& historyIniBytes);

// The events of what could be read of a damaged History.ini: only sections
// whose Event_ID names them, as -start lays it down first in each, and whose
// Event_Log_File names their own log. Past the damage, inflating yields text
// pieced from what came before it, which can hold a section's header of a
// name that no event has, or a cut one; the events of those sections are
// known by their logs instead.
std::vector<EventRecord> ReadHistoryEventsBeforeDamage(const std::string& historyIniBytes);

// The events whose logs an archive holds, for an archive without History.ini:
// "COPY\\EVENT\\ZORInstallEvent.Log" (or with "/") is the event EVENT of the
// copy COPY, "EVENT\\ZORInstallEvent.Log" an event without a copy name;
// nothing else is known of them.
std::vector<EventRecord> EventsOfTheLogs(const std::vector<std::string>& entryNames);

// The group of the summary that the event belongs to: its copy's name, or
// for an event without one, its EventID.
std::string CopyGroupOf(const EventRecord& event);

// The groups of the summary: the events that share a copy name, or an event
// without one alone, named after the event; in the order of their first event.
struct EventGroup {
    std::string name;
    std::vector<const EventRecord*> events;
};
std::vector<EventGroup> GroupByCopy(const std::vector<EventRecord>& events);
