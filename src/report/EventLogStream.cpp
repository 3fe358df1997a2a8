#include "report/EventLogStream.h"

#include "report/CLineSplitter.h"

EventLogReading StreamEventLog(const CHistorySource& source, const std::string& name, CEventLogReader& log)
{
    EventLogReading reading;
    CLineSplitter lines([&log, &lines](const std::string& line) { log.Line(line, lines.BytesCutOfLine()); });
    reading.whole = source.Stream(name, [&lines, &reading](const char* bytes, std::size_t size) {
        lines.Feed(bytes, size);
        reading.bytes += size;
    });
    lines.Finish();
    log.Finish();
    reading.cutLines = lines.CutLines();
    return reading;
}
