#include "report/SectionText.h"

#include <algorithm>
#include <cstring>

namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

// The part of the text from `start`, at most `count` bytes, without the blanks
// at either end.
std::string TrimmedPart(const std::string& text, std::size_t start, std::size_t count)
{
    std::size_t end = start + std::min(count, text.size() - start);
    while (start < end && IsBlank(text[start]))
        ++start;
    while (end > start && IsBlank(text[end - 1]))
        --end;
    return text.substr(start, end - start);
}

}  // namespace

std::string TrimmedRight(const std::string& text)
{
    std::size_t end = text.size();
    while (end > 0 && IsBlank(text[end - 1]))
        --end;
    return text.substr(0, end);
}

std::string TrimmedText(const std::string& text)
{
    return TrimmedPart(text, 0, text.size());
}

bool StartsWith(const std::string& text, const char* start)
{
    return text.compare(0, std::strlen(start), start) == 0;
}

std::string TextBehind(const std::string& text, const char* start)
{
    return text.substr(std::min(text.size(), std::strlen(start)));
}

std::vector<std::string> RowColumns(const std::string& row, const int* widths, std::size_t count)
{
    std::vector<std::string> fields;
    fields.reserve(count + 1);
    std::size_t position = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t width = static_cast<std::size_t>(widths[i]);
        fields.push_back(position < row.size() ? TrimmedPart(row, position, width) : std::string());
        position += width;
    }
    fields.push_back(position < row.size() ? TrimmedPart(row, position, row.size()) : std::string());
    return fields;
}

TableRows FindTableRows(const std::vector<std::string>& lines, std::size_t from, const std::string& rule,
                        int rulesBeforeRows, const std::string& closingRule)
{
    TableRows rows;
    std::size_t i = from;
    for (int seen = 0; i < lines.size() && seen < rulesBeforeRows; ++i) {
        if (lines[i] == rule)
            ++seen;
    }
    rows.first = i;
    while (i < lines.size() && lines[i] != closingRule && lines[i] != rule)
        ++i;
    rows.end = i;
    rows.closed = i < lines.size();
    rows.next = rows.closed ? i + 1 : i;
    return rows;
}
