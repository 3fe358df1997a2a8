// The software, processes and services of a snapshot: one table each.
#include <map>

#include "collectors/ReportTexts.h"
#include "report/CSoftwareTable.h"
#include "report/SectionReaders.h"
#include "report/SectionText.h"

namespace {

// The state's words end the row, padded to their column; the display name
// stands ahead of them in its column of 60, or longer.
std::string::size_type StateWordsAt(const std::string& row)
{
    for (const char* words : texts::services::kStateWords) {
        const std::string state = words;
        if (row.size() >= state.size() && row.compare(row.size() - state.size(), state.size(), state) == 0)
            return row.size() - state.size();
    }
    const std::string unknown = texts::services::kUnknownState;
    if (row.size() >= unknown.size() && row.compare(row.size() - unknown.size(), unknown.size(), unknown) == 0)
        return row.size() - unknown.size();
    return std::string::npos;
}

}  // namespace

void ReadSoftwareSection(const SectionLines& lines, SnapshotSection& section)
{
    section = std::move(*CSoftwareTable().Read(lines));
}

void ReadProcessesSection(const SectionLines& lines, SnapshotSection& section)
{
    section.fieldsRule = [](const SnapshotSection&, std::string_view name, const SnapshotItem& item) {
        return NamedValueFields("process", "image", "count", ItemField::Form::Number, name, item.value);
    };
    using namespace texts::processes;
    const TableRows rows = FindTableRows(lines, 0, kRule, 2, kEnd);
    std::map<std::string, unsigned long> counts;
    for (std::size_t i = rows.first; i < rows.end; ++i) {
        const std::string_view row = lines[i];
        ++counts[std::string(row.size() > static_cast<std::size_t>(kIdWidth) ? row.substr(kIdWidth) : std::string_view())];
    }
    for (const auto& count : counts)
        section.Add(count.first, std::to_string(count.second));
}

void ReadServicesSection(const SectionLines& lines, SnapshotSection& section)
{
    section.fieldsRule = [](const SnapshotSection&, std::string_view name, const SnapshotItem& item) {
        return NamedValueFields("service", "displayName", "state", ItemField::Form::Text, name, item.value);
    };
    using namespace texts::services;
    const TableRows rows = FindTableRows(lines, 0, kRule, 2, kRule);
    for (std::size_t i = rows.first; i < rows.end; ++i) {
        const std::string row = TrimmedRight(lines[i]);
        std::string::size_type stateAt = StateWordsAt(row);
        if (stateAt == std::string::npos)
            stateAt = std::min<std::size_t>(row.size(), kDisplayNameWidth);
        section.Add(TrimmedRight(row.substr(0, stateAt)), row.substr(stateAt));
    }
}
