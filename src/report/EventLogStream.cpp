#include "report/EventLogStream.h"

#include "report/CLineSplitter.h"

EventLogReading FeedEventLog(const EventLogBytes& bytes, CEventLogReader& log)
{
    EventLogReading reading;
    CLineSplitter lines([&log, &lines](const std::string& line) { log.Line(line, lines.BytesCutOfLine()); });
    reading.whole = bytes([&lines, &reading](const char* block, std::size_t size) {
        lines.Feed(block, size);
        reading.bytes += size;
    });
    lines.Finish();
    log.Finish();
    reading.cutLines = lines.CutLines();
    return reading;
}

EventLogReading StreamEventLog(const CHistorySource& source, const std::string& name, CEventLogReader& log)
{
    return FeedEventLog(
        [&source, &name](const CHistorySource::BlockHandler& handler) { return source.Stream(name, handler); }, log);
}
