#include "report/CLogReadAhead.h"

// One byte past the limit is read, to tell a log of more bytes.
CLogReadAhead::CLogReadAhead(const CHistorySource& source, const std::string& name)
{
    const std::optional<std::uint64_t> declared = source.DeclaredSize(name);
    if (declared && *declared > kLimit)
        return;
    std::uint64_t size = 0;
    whole_ = source.Stream(
        name,
        [this, &size](const char* bytes, std::size_t count) {
            blocks_.emplace_back(bytes, count);
            size += count;
        },
        kLimit + 1);
    held_ = size <= kLimit;
    if (!held_)
        std::vector<std::string>().swap(blocks_);
}

EventLogReading CLogReadAhead::Feed(const CHistorySource& source, const std::string& name,
                                    CEventLogReader& log) const
{
    if (!held_)
        return StreamEventLog(source, name, log);
    return FeedEventLog(
        [this](const CHistorySource::BlockHandler& handler) {
            for (const std::string& block : blocks_)
                handler(block.data(), block.size());
            return whole_;
        },
        log);
}
