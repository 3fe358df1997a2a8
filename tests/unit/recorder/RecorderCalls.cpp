// Calls of the recorder's entry made the way an installer makes them, and the
// readers that compare what they leave with lines written by hand.
#include "RecorderCalls.h"

#include <algorithm>
#include <iostream>
#include <regex>

#include "history/CHistoryStore.h"
#include "history/CIniFile.h"
#include "platform/FileSystem.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"

ArgumentList::ArgumentList(std::initializer_list<std::string> options)
{
    texts_.push_back("installer");
    texts_.insert(texts_.end(), options.begin(), options.end());
    for (std::string& text : texts_)
        pointers_.push_back(&text[0]);
    pointers_.push_back(nullptr);
    count_ = static_cast<int>(texts_.size());
}

int Record(std::initializer_list<std::string> options)
{
    ArgumentList arguments(options);
    CHistoryStore store;
    return store.Record(arguments.Count(), arguments.Elements());
}

CapturedOutput::CapturedOutput() : previous_(std::cout.rdbuf(captured_.rdbuf()))
{
}

CapturedOutput::~CapturedOutput()
{
    std::cout.rdbuf(previous_);
}

RecorderTest::RecorderTest()
{
    CLogger::Instance().Close();
    CLogger::Instance().clear();
    ResetLoggerFormat();
}

void ResetLoggerFormat()
{
    CLogger::Instance().flags(std::ios_base::skipws | std::ios_base::dec);
    CLogger::Instance().fill(' ');
    CLogger::Instance().width(0);
}

std::string RecorderTest::HistoryIni() const
{
    return machine.HistoryFolder() + "\\History.ini";
}

std::string RecorderTest::EventFolder(const std::string& eventID) const
{
    return machine.HistoryFolder() + "\\" + eventID;
}

std::string RecorderTest::EventLog(const std::string& eventID) const
{
    return EventFolder(eventID) + "\\ZORInstallEvent.Log";
}

int RecorderTest::StoredCount() const
{
    CIniFile ini(HistoryIni());
    int missing = -1;
    return ini.GetInt("History", "Count", missing);
}

std::vector<std::string> RecorderTest::SectionNames() const
{
    return CIniFile(HistoryIni()).GetSectionNames();
}

namespace {

std::vector<std::string> SplitLines(const std::string& text, const std::string& lineEnd)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find(lineEnd, start);
        if (end == std::string::npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        start = end + lineEnd.size();
    }
    return lines;
}

std::string WithoutCarriageReturn(std::string line)
{
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

std::string RegexEscaped(const std::string& text)
{
    static const std::string special = "\\^$.|?*+()[]{}";
    std::string escaped;
    for (char c : text) {
        if (special.find(c) != std::string::npos)
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

bool LineMatches(const std::string& actual, const std::string& expected)
{
    const std::string marker = "<time>";
    if (expected.find(marker) == std::string::npos)
        return actual == expected;
    std::string pattern;
    std::size_t start = 0;
    for (std::size_t at = expected.find(marker); at != std::string::npos;
         at = expected.find(marker, start)) {
        pattern += RegexEscaped(expected.substr(start, at - start)) + R"(\d{8} \d\d:\d\d:\d\d)";
        start = at + marker.size();
    }
    pattern += RegexEscaped(expected.substr(start));
    return std::regex_match(actual, std::regex(pattern));
}

}  // namespace

std::vector<std::string> SectionLines(const std::string& iniPath, const std::string& section)
{
    std::vector<std::string> lines;
    bool inSection = false;
    for (const std::string& raw : SplitLines(ReadWholeFile(iniPath), "\n")) {
        const std::string line = WithoutCarriageReturn(raw);
        if (!line.empty() && line[0] == '[') {
            inSection = line == "[" + section + "]";
            continue;
        }
        if (inSection && !line.empty())
            lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> SectionKeys(const std::string& iniPath, const std::string& section)
{
    std::vector<std::string> keys;
    for (const std::string& line : SectionLines(iniPath, section))
        keys.push_back(line.substr(0, line.find('=')));
    return keys;
}

std::vector<std::string> FileLines(const std::string& path)
{
    return SplitLines(ReadWholeFile(path), platform::kTextLineEnd);
}

void ExpectLinesMatch(const std::vector<std::string>& actual,
                      const std::vector<std::string>& expected)
{
    ASSERT_EQ(actual.size(), expected.size()) << "number of lines";
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_TRUE(LineMatches(actual[i], expected[i]))
            << "line " << i << "\n  expected: " << expected[i] << "\n  actual:   " << actual[i];
}

std::vector<std::string> LinesAt(const std::vector<std::string>& lines, std::size_t first,
                                 std::size_t count)
{
    if (first >= lines.size())
        return {};
    const std::size_t last = std::min(lines.size(), first + count);
    return std::vector<std::string>(lines.begin() + first, lines.begin() + last);
}

std::vector<std::string> LastLines(const std::vector<std::string>& lines, std::size_t count)
{
    if (count >= lines.size())
        return lines;
    return std::vector<std::string>(lines.end() - count, lines.end());
}
