// An event log streamed from its source, line by line, into its reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "report/CEventLogReader.h"
#include "report/CHistorySource.h"

// How the log was read: whole or not, how many bytes were handed over, and
// how many of its lines were cut at the splitter's limit.
struct EventLogReading {
    bool whole = false;
    std::uint64_t bytes = 0;
    std::size_t cutLines = 0;
};

// Hands the log's bytes over to the handler; true if they are whole.
using EventLogBytes = std::function<bool(const CHistorySource::BlockHandler& handler)>;

// Feeds the log's bytes to the reader line by line, and finishes it.
EventLogReading FeedEventLog(const EventLogBytes& bytes, CEventLogReader& log);

// Feeds the log named `name` in the source to the reader, and finishes it.
EventLogReading StreamEventLog(const CHistorySource& source, const std::string& name, CEventLogReader& log);
