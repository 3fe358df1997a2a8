// What the report makes of an event's keys: how it ended, how long it took,
// where its log lies in the source and which installer files it names.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report/CHistorySource.h"
#include "report/ReportModel.h"

// Unknown for an event that History.ini doesn't hold; never ended while
// Complete_Flag isn't "TRUE"; then succeeded for a result
// of 0 or "Success" (any case), succeeded with a restart needed for 3010 or
// 1641, no result for an empty one, failed otherwise.
EventOutcome OutcomeOf(const EventRecord& event);

// Whether the Linux build recorded the event: its event log's path, as
// History.ini gives it, begins at "/".
bool RecordedOnLinux(const EventRecord& event);

// Seconds from 1 January 1970 to one of the recorder's time stamps
// ("%Y%m%d %H:%M:%S"), if it can be read.
std::optional<long long> SecondsOfStamp(const std::string& stamp);

// One of the recorder's time stamps in ISO 8601 ("2024-01-05T14:03:09", the
// machine's local time, as recorded), if it can be read.
std::optional<std::string> IsoTimeOfStamp(const std::string& stamp);

// Seconds between two of the recorder's time stamps ("%Y%m%d %H:%M:%S"), if
// both can be read and the end doesn't come first.
std::optional<long long> SecondsBetween(const std::string& start, const std::string& end);

// Whether Event_Log_File, where the section has it, names the event's own
// log: ZORInstallEvent.Log in a folder named by the EventID, as the recorder
// lays it down. One that names another event's log is not this event's.
bool NamesItsOwnLog(const EventRecord& event);

// The event log's name in the source, or empty if the source hasn't got it:
// where Event_Log_File says below the history folder, if it names the
// event's own log, else below the copy's folder, else directly in the
// history folder.
std::string FindEventLog(const CHistorySource& source, const EventRecord& event);

// The most of an installer's file that the report shows.
inline constexpr std::size_t kInstallerLogTextLimit = 16 * 1024;

// The installer's files that the event names, and for each that the source
// holds beside the event log, its name there and its first
// kInstallerLogTextLimit bytes; the bytes past them are counted.
std::vector<InstallerLog> InstallerLogsOf(const CHistorySource& source, const EventRecord& event,
                                          const std::string& eventLogName);
