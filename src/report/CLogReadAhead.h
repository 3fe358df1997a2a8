// An event log read from its source into memory ahead of its reading, so
// that the next events' logs are inflated on one core while the one before is
// read on another. A log larger than kLimit is not held: it is streamed when
// it is read, so that what waits in memory stays bounded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "report/CEventLogReader.h"
#include "report/CHistorySource.h"
#include "report/EventLogStream.h"

class CLogReadAhead {
public:
    static constexpr std::uint64_t kLimit = 4 * 1024 * 1024;

    // Holds nothing: the log is streamed when it is read.
    CLogReadAhead() = default;
    // Reads the log named `name` in the source: as far as it can be read,
    // with the damage noted.
    CLogReadAhead(const CHistorySource& source, const std::string& name);

    // Feeds the bytes held, or else the log streamed from the source, to the
    // reader, and finishes it.
    EventLogReading Feed(const CHistorySource& source, const std::string& name, CEventLogReader& log) const;

private:
    bool held_ = false;
    bool whole_ = false;
    // The bytes in the blocks that they came in, which are not copied again
    // to make one text of them.
    std::vector<std::string> blocks_;
};
