#include "report/CSoftwareTable.h"

#include <algorithm>

#include "collectors/ReportTexts.h"
#include "inventory/RegistryReader.h"
#include "report/SectionText.h"

namespace {

// A text from the registry: at most the value buffer, less its terminator.
constexpr std::size_t kRegistryText = kRegistryValueBufferSize - 1;
// The language, an unsigned 32-bit number in decimal.
constexpr std::size_t kLanguageDigits = 10;

bool IsDecimalNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Publisher, name, version, install date and language in their columns, the
// location behind them; each from the registry but the language, a number.
std::vector<RowField> SoftwareFields()
{
    using namespace texts::software;
    std::vector<RowField> fields;
    for (std::size_t i = 0; i < kColumnCount; ++i)
        fields.push_back(RowField{static_cast<std::size_t>(kColumnWidths[i]), kRegistryText, nullptr});
    fields.back().longest = kLanguageDigits;
    fields.back().accepts = IsDecimalNumber;
    fields.push_back(RowField{0, kRegistryText, nullptr});
    return fields;
}

ItemFields SoftwareItemFields(const SnapshotSection&, std::string_view name, const SnapshotItem& item)
{
    return NamedValueFields("software", "name", "version", ItemField::Form::Text, name, item.value);
}

// Where a field read of a row stands in it; an empty field anywhere.
std::size_t PlaceIn(std::string_view row, std::string_view field)
{
    return field.empty() ? 0 : static_cast<std::size_t>(field.data() - row.data());
}

// A table of which more than one row in this many changed costs more to put
// into the section read before than to read whole.
constexpr std::size_t kPatchShare = 8;

}  // namespace

std::shared_ptr<SnapshotSection> CSoftwareTable::Read(const SectionLines& lines)
{
    CTextStore texts;
    std::vector<Row> rows;
    std::vector<bool> changed;
    const bool readAlone = ReadRows(lines, texts, rows, changed);
    const std::size_t changedRows = static_cast<std::size_t>(std::count(changed.begin(), changed.end(), true));
    const std::size_t goneRows = rows_.size() > rows.size() ? rows_.size() - rows.size() : 0;
    const std::shared_ptr<SnapshotSection> section =
        Patchable(changedRows + goneRows, rows.size()) ? Patched(rows, changed) : Whole(rows);
    texts_ = std::move(texts);
    rows_ = std::move(rows);
    readAlone_ = readAlone;
    section_ = section;
    return section;
}

// The table's rows, each kept in `kept`, and whether each changed; true if
// none of them needed a search of its readings.
bool CSoftwareTable::ReadRows(const SectionLines& lines, CTextStore& kept, std::vector<Row>& rows,
                              std::vector<bool>& changed) const
{
    const TableRows table = FindTableRows(lines, 0, texts::software::kRule, 2, texts::software::kRule);
    RowSearchBudget budget;
    const std::size_t fullBudget = budget.left;
    for (std::size_t i = table.first; i < table.end; ++i) {
        const std::string_view text = kept.Keep(lines[i]);
        const std::size_t place = i - table.first;
        changed.push_back(!Unchanged(place, text));
        if (changed.back()) {
            rows.push_back(ReadRow(text, budget));
        } else {
            rows.push_back(rows_[place]);
            rows.back().text = text;
        }
    }
    return budget.left == fullBudget;
}

std::shared_ptr<SnapshotSection> CSoftwareTable::Whole(const std::vector<Row>& rows)
{
    auto section = std::make_shared<SnapshotSection>();
    section->fieldsRule = SoftwareItemFields;
    for (const Row& row : rows)
        section->Add(row.Name(), row.Version());
    wholeBlocks_ = section->TextBlocks();
    return section;
}

CSoftwareTable::Row CSoftwareTable::ReadRow(std::string_view text, RowSearchBudget& budget)
{
    static const std::vector<RowField> kFields = SoftwareFields();
    const std::vector<std::string_view> fields = RecordedRowFields(text, kFields.data(), kFields.size(), budget);
    return Row{text, PlaceIn(text, fields[1]), fields[1].size(), PlaceIn(text, fields[2]), fields[2].size()};
}

bool CSoftwareTable::Patchable(std::size_t changedRows, std::size_t rows) const
{
    constexpr std::size_t kFewBlocks = 8;
    return readAlone_ && section_ != nullptr && section_->TextBlocks() < 2 * wholeBlocks_ + kFewBlocks &&
           changedRows * kPatchShare <= rows;
}

// Whether the row stands where it stood in the table read before, as it
// stood, read then without a search: it reads the same again.
bool CSoftwareTable::Unchanged(std::size_t place, std::string_view text) const
{
    return readAlone_ && place < rows_.size() && rows_[place].text == text;
}

// The names of the rows that changed, on either side, and of the rows
// before that are gone.
std::vector<std::string_view> CSoftwareTable::ChangedNames(const std::vector<Row>& rows,
                                                           const std::vector<bool>& changed) const
{
    std::vector<std::string_view> names;
    for (std::size_t place = 0; place < std::max(rows.size(), rows_.size()); ++place) {
        if (place < rows.size() && !changed[place])
            continue;
        if (place < rows.size())
            names.push_back(rows[place].Name());
        if (place < rows_.size())
            names.push_back(rows_[place].Name());
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

// The section read before, with the things of the changed rows' names read
// anew from all the rows of those names, in their order: each other name's
// rows stand as they stood, and so does its thing.
std::shared_ptr<SnapshotSection> CSoftwareTable::Patched(const std::vector<Row>& rows,
                                                         const std::vector<bool>& changed) const
{
    const std::vector<std::string_view> names = ChangedNames(rows, changed);
    auto section = std::make_shared<SnapshotSection>(*section_);
    for (const std::string_view name : names)
        section->Forget(name);
    for (const Row& row : rows) {
        if (std::binary_search(names.begin(), names.end(), row.Name()))
            section->Add(row.Name(), row.Version());
    }
    return section;
}
