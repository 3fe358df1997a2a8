// An event log read from its source into memory ahead of its reading, so
// that the next events' logs are inflated on one core while the one before is
// read on another. A log larger than kLimit is not held: it is streamed when
// it is read, so that what waits in memory stays bounded. A log that an
// archive declares larger is not read ahead at all, so that it is inflated
// once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "report/CEventLogReader.h"
#include "report/CHistorySource.h"
#include "report/EventLogStream.h"

class CLogReadAhead {
public:
    // The logs that an archive inflates on the reading thread.
    static constexpr std::uint64_t kLimit = CArchiveReader::kInflatedHereUpTo;

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
