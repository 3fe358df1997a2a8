// The words that the report's three forms share: the names of the six
// sections, taken from the snapshot's own titles, their keys in the JSON
// form, and the words for how an event ended.
#pragma once

#include <cstddef>
#include <string>

#include "report/ReportModel.h"

// "User Group & User Information", from ") User Group & User Information:".
std::string SectionTitle(std::size_t part);

// "users", "software", "processes", "services", "zorProducts", "odbcDrivers".
const char* SectionKey(std::size_t part);

// What the report says of an event whose log no source holds.
inline constexpr char kLogNotInSource[] = "the event log is not in the source";
// An event of a damaged History.ini that no log of the source confirms.
inline constexpr char kMayBeGarbled[] =
    "History.ini is damaged: what it says of this event may be cut or garbled, and no event log confirms it";
// An event that History.ini doesn't hold whole, whose log tells it never ended.
inline constexpr char kNeverEndedByTheLog[] =
    "History.ini doesn't hold this event whole: its event log, read whole, has no result block, so the install "
    "never ended";
// An event that History.ini doesn't hold whole, whose end its log tells.
inline constexpr char kEndFromTheResultBlock[] =
    "History.ini doesn't hold this event whole: how it ended is read from the result block of its event log";

// "succeeded", "succeeded, restart needed", "failed", "no result", "never
// ended" or "unknown".
const char* OutcomeWord(EventOutcome outcome);

// The outcome, with the installer's result text where it failed.
std::string OutcomeText(const EventReport& event);

// "1 h 02 min 05 s", "3 min 10 s", "12 s".
std::string DurationText(long long seconds);

// What an event that can't be compared lacks: "no snapshot after the install".
std::string MissingSnapshots(bool hasBefore, bool hasAfter);

// The number of changes in each section, "-" for one that can't be compared:
// "users 0 software 1 processes 2 services 1 zorProducts 1 odbcDrivers -".
std::string ChangeCountsText(const ChangeCounts& counts);

// What the install changed, section by section, or which snapshot it lacks
// (or that its log is missing altogether).
std::string InstallChangesText(const EventReport& event);

// The changes of all sections that can be compared.
std::size_t TotalOf(const ChangeCounts& counts);

// What -compare compared: "the after snapshot of E1 (copy C1) against the
// after snapshot of E2 (copy C2)".
std::string ComparisonTitle(const EventComparison& comparison);

// An event as -compare names it: "E1", or in a report over several sources
// "week1.zip:E1".
std::string EventNameText(const EventName& event);

// The names one after the other: "a.zip, b.zip".
std::string JoinedNames(const std::vector<std::string>& names);
