// Small readers of the lines of a snapshot's section: blanks trimmed, a row
// cut into its columns, and the rows of a table found between its rules.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

std::string TrimmedText(std::string_view text);
// The same as a part of the text.
std::string_view TrimmedView(std::string_view text);
std::string TrimmedRight(std::string_view text);
// Most lines differ from the start in their first byte: they cost no more,
// and the readers of the log ask it of every line.
inline bool StartsWith(std::string_view text, const char* start)
{
    if (start[0] == '\0')
        return true;
    if (text.empty() || text[0] != start[0])
        return false;
    return text.compare(0, std::strlen(start), start) == 0;
}
// The text behind `start`, which it must begin with.
std::string TextBehind(std::string_view text, const char* start);

// The fields of a row written with these widths, each trimmed of the blanks
// that padded it on either side, and what follows the last width. A value as
// long as its column or longer pushes the rest of the row along; such a row
// is cut at the columns all the same, the same way each time it is read.
std::vector<std::string_view> RowColumns(std::string_view row, const int* widths, std::size_t count);

// A field of a row as the recorder writes it: padded with blanks to its
// column, or, as long as its column or longer, whole, so that the next field
// follows it at once. The last field of a row may have no column.
struct RowField {
    // The column's width; 0 for a last field without one.
    std::size_t width = 0;
    // The longest text that the recorder can write in the field.
    std::size_t longest = 0;
    // What the field's text must be, where the recorder says; null for any text.
    bool (*accepts)(std::string_view text) = nullptr;
};

// How many readings the rows of one table may weigh in all. The rows of the
// recorder's tables mostly fit their columns and need no search; a table
// whose rows do, as a damaged or made-up log's may, costs at most this much,
// and the rest of its rows are cut at their columns.
struct RowSearchBudget {
    std::size_t left = 500000;
};

// The fields of a row as the recorder wrote them, overflowed ones included:
// the one reading of the row in which every field fits its rules, all padded
// on one side, a field that fits its column taken before one that runs over
// it, and a field that runs over taken as short as the rest allows; a reading
// without two blanks in a row inside a field comes first. A row
// that has no such reading, as in a damaged log, or whose search would cost
// more than its share of the budget, is cut at the columns. Each field is a
// part of the row.
std::vector<std::string_view> RecordedRowFields(std::string_view row, const RowField* fields, std::size_t count,
                                                RowSearchBudget& budget);

// The rows of a table: after `rulesBeforeRows` lines that equal `rule`, up to
// the next line that equals `closingRule` or `rule`. A table cut off before
// its closing rule has its rows up to the end of the lines.
struct TableRows {
    std::size_t first = 0;
    std::size_t end = 0;
    // Where reading goes on: behind the closing rule.
    std::size_t next = 0;
    bool closed = false;
};
TableRows FindTableRows(const std::vector<std::string_view>& lines, std::size_t from, const std::string& rule,
                        int rulesBeforeRows, const std::string& closingRule);
