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
std::string_view TrimmedPart(std::string_view text, std::size_t start, std::size_t count)
{
    std::size_t end = start + std::min(count, text.size() - start);
    while (start < end && IsBlank(text[start]))
        ++start;
    while (end > start && IsBlank(text[end - 1]))
        --end;
    return text.substr(start, end - start);
}

// Which side of a field's text the blanks that fill its column stand on: all
// fields of a row are padded on the same side.
enum class PadSide { AfterText, BeforeText };

bool IsAllBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), IsBlank);
}

// The readings of a row: of all in which each field keeps the recorder's
// rules, the one with the fewest fields that fill or overrun their columns,
// which rows seldom have; among those, the one whose fields run the fewest
// bytes past their columns, first those of fields whose text has a form (a
// version of three values joined by dots takes any text with two dots, and
// so may swallow its neighbours), then the others, as two overruns of a few
// bytes are likelier than one field that swallows the next; then each field
// as short as the rest allows.
// The best reading from each place is remembered, so that no row costs more
// than its fields times its length times the longest text.
class RowReading {
public:
    RowReading(std::string_view row, const RowField* fields, std::size_t count, PadSide side, bool strict,
               RowSearchBudget& budget)
        : row_(row), fields_(fields), count_(count), side_(side), strict_(strict), budget_(budget)
    {
    }

    // The fields of the best reading, or nothing if there is none.
    std::vector<std::string_view> Read()
    {
        std::vector<std::string_view> values;
        if (ReadFitted(values))
            return values;
        values.clear();
        if (budget_.left == 0)
            return values;
        best_.assign(count_ * (row_.size() + 1), kUnknown);
        next_.assign(best_.size(), 0);
        if (Best(0, 0) == kNone || OutOfWork())
            return values;
        std::size_t at = 0;
        for (std::size_t field = 0; field + 1 < count_; ++field) {
            const std::size_t next = next_[Place(field, at)];
            values.push_back(TextOf(field, at, next));
            at = next;
        }
        values.push_back(LastText(at));
        return values;
    }

private:
    // The reading of most rows, each field within its column and none filling
    // it: no reading has a lower cost, and none has shorter fields, so it is
    // the best one whenever it keeps the rules, and the search is spared.
    bool ReadFitted(std::vector<std::string_view>& values) const
    {
        std::size_t at = 0;
        std::string_view text;
        for (std::size_t field = 0; field + 1 < count_; ++field) {
            const RowField& column = fields_[field];
            if (at + column.width > row_.size() || !FittedText(at, column.width, text) || ColumnCost(column, text) != 0 ||
                !Accepts(column, text, false))
                return false;
            values.push_back(text);
            at += column.width;
        }
        text = LastText(at);
        if (ColumnCost(fields_[count_ - 1], text) != 0 || !Accepts(fields_[count_ - 1], text, true))
            return false;
        values.push_back(text);
        return true;
    }

    static constexpr int kUnknown = -1;
    // The readings weighed for one row at most: a row of the recorder's
    // needs a few hundred, and one that needs more, from a damaged or made-up
    // log, is cut at its columns instead of costing a search of its length
    // times its longest texts.
    static constexpr std::size_t kWorkLimit = 50000;

    bool OutOfWork() const { return work_ >= kWorkLimit || budget_.left == 0; }
    // What a field that fills or overruns its column costs, ahead of the
    // bytes it runs over: more than all the bytes of a row can. A byte of a
    // field with a form costs more than all bytes of those without one.
    static constexpr int kFillCost = 1 << 20;
    static constexpr int kFormedByteCost = 1 << 10;
    static constexpr int kNone = 1 << 30;

    std::size_t Place(std::size_t field, std::size_t at) const { return field * (row_.size() + 1) + at; }

    // A strict reading takes no text with two blanks in a row, which padding
    // has and names seldom do, but in a last field without a column, and no
    // last field that begins with padding.
    bool Accepts(const RowField& field, std::string_view text, bool last) const
    {
        if (strict_ && (!last || field.width != 0) && text.find("  ") != std::string_view::npos)
            return false;
        if (strict_ && last && !text.empty() && IsBlank(text.front()))
            return false;
        return text.size() <= field.longest && (field.accepts == nullptr || field.accepts(text));
    }

    // The text of a field that fits its column: padded on the row's side,
    // and not on the other.
    bool FittedText(std::size_t at, std::size_t width, std::string_view& text) const
    {
        const std::string_view column = row_.substr(at, width);
        if (IsAllBlank(column)) {
            text = std::string_view();
            return true;
        }
        const bool paddedRight = side_ == PadSide::AfterText;
        if (IsBlank(paddedRight ? column.front() : column.back()))
            return false;
        text = TrimmedPart(column, 0, column.size());
        return true;
    }

    std::string_view TextOf(std::size_t field, std::size_t at, std::size_t next) const
    {
        std::string_view text;
        if (next - at == fields_[field].width)
            FittedText(at, fields_[field].width, text);
        else
            text = row_.substr(at, next - at);
        return text;
    }

    // The last field is the rest of the row: a field without a column as it
    // stands, one with a column without its padding.
    std::string_view LastText(std::size_t at) const
    {
        const RowField& column = fields_[count_ - 1];
        const std::string_view rest = row_.substr(at);
        return column.width == 0 || rest.size() > column.width ? rest : TrimmedPart(rest, 0, rest.size());
    }

    // The cost of the field's text from `at` to `next`, and of the best
    // reading of the rest behind it.
    int Cost(std::size_t field, std::size_t next, std::string_view text)
    {
        if (!Accepts(fields_[field], text, false))
            return kNone;
        const int rest = Best(field + 1, next);
        return rest == kNone ? kNone : rest + ColumnCost(fields_[field], text);
    }

    static int ColumnCost(const RowField& field, std::string_view text)
    {
        if (field.width == 0 || text.size() < field.width)
            return 0;
        return LeastCost(field, text.size());
    }

    static int LeastCost(const RowField& field, std::size_t length)
    {
        const int byteCost = field.accepts != nullptr ? kFormedByteCost : 1;
        return field.width == 0 ? 0 : kFillCost + static_cast<int>(length - field.width) * byteCost;
    }

    void Consider(std::size_t field, std::size_t at, std::size_t next, std::string_view text)
    {
        if (OutOfWork())
            return;
        ++work_;
        --budget_.left;
        const int cost = Cost(field, next, text);
        if (cost < best_[Place(field, at)]) {
            best_[Place(field, at)] = cost;
            next_[Place(field, at)] = next;
        }
    }

    int Best(std::size_t field, std::size_t at)
    {
        if (field + 1 == count_) {
            const std::string_view text = LastText(at);
            return Accepts(fields_[field], text, true) ? ColumnCost(fields_[field], text) : kNone;
        }
        if (best_[Place(field, at)] != kUnknown)
            return best_[Place(field, at)];
        best_[Place(field, at)] = kNone;
        const RowField& column = fields_[field];
        std::string_view text;
        if (at + column.width <= row_.size() && FittedText(at, column.width, text))
            Consider(field, at, at + column.width, text);
        // A longer text costs at least what it runs over its column, so no
        // longer one beats a reading that costs less; a strict reading takes
        // no text past two blanks in a row.
        for (std::size_t length = column.width + 1; length <= column.longest && at + length <= row_.size() &&
                                                  !IsBlank(row_[at]) && best_[Place(field, at)] > LeastCost(column, length);
             ++length) {
            if (strict_ && length >= 2 && IsBlank(row_[at + length - 2]) && IsBlank(row_[at + length - 1]))
                break;
            if (!IsBlank(row_[at + length - 1]))
                Consider(field, at, at + length, row_.substr(at, length));
        }
        return best_[Place(field, at)];
    }

    std::string_view row_;
    const RowField* fields_;
    std::size_t count_;
    PadSide side_;
    bool strict_;
    std::vector<int> best_;
    std::vector<std::size_t> next_;
    RowSearchBudget& budget_;
    std::size_t work_ = 0;
};

// The longest row that the recorder can write with these fields.
std::size_t LongestRow(const RowField* fields, std::size_t count)
{
    std::size_t longest = 0;
    for (std::size_t i = 0; i < count; ++i)
        longest += std::max(fields[i].width, fields[i].longest);
    return longest;
}

// A row that can't be read as written, cut at its columns.
std::vector<std::string_view> CutAtColumns(std::string_view row, const RowField* fields, std::size_t count)
{
    std::vector<int> widths;
    for (std::size_t i = 0; i + 1 < count; ++i)
        widths.push_back(static_cast<int>(fields[i].width));
    std::vector<std::string_view> values = RowColumns(row, widths.data(), widths.size());
    values.back() = TrimmedPart(values.back(), 0, values.back().size());
    return values;
}

}  // namespace

std::vector<std::string_view> RecordedRowFields(std::string_view row, const RowField* fields, std::size_t count,
                                                RowSearchBudget& budget)
{
    if (count != 0 && row.size() <= LongestRow(fields, count)) {
        for (const bool strict : {true, false}) {
            for (const PadSide side : {PadSide::AfterText, PadSide::BeforeText}) {
                std::vector<std::string_view> values = RowReading(row, fields, count, side, strict, budget).Read();
                if (!values.empty())
                    return values;
            }
        }
    }
    return CutAtColumns(row, fields, count);
}

std::string TrimmedRight(std::string_view text)
{
    std::size_t end = text.size();
    while (end > 0 && IsBlank(text[end - 1]))
        --end;
    return std::string(text.substr(0, end));
}

std::string TrimmedText(std::string_view text)
{
    return std::string(TrimmedView(text));
}

std::string_view TrimmedView(std::string_view text)
{
    return TrimmedPart(text, 0, text.size());
}

std::string TextBehind(std::string_view text, const char* start)
{
    return std::string(text.substr(std::min(text.size(), std::strlen(start))));
}

std::vector<std::string_view> RowColumns(std::string_view row, const int* widths, std::size_t count)
{
    std::vector<std::string_view> fields;
    fields.reserve(count + 1);
    std::size_t position = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t width = static_cast<std::size_t>(widths[i]);
        fields.push_back(position < row.size() ? TrimmedPart(row, position, width) : std::string_view());
        position += width;
    }
    fields.push_back(position < row.size() ? TrimmedPart(row, position, row.size()) : std::string_view());
    return fields;
}

TableRows FindTableRows(const std::vector<std::string_view>& lines, std::size_t from, const std::string& rule,
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
