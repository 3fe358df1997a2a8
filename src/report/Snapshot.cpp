#include "report/Snapshot.h"

#include <utility>

void SnapshotSection::Add(const std::string& name, const std::string& value, const std::string& owner)
{
    const auto inserted = items.emplace(name, SnapshotItem{value, owner});
    if (!inserted.second)
        inserted.first->second.value += ", " + value;
}

void SnapshotSection::Mark(const std::string& name, const std::string& owner)
{
    items.emplace(name, SnapshotItem{std::string(), owner});
}

const SnapshotSection& Snapshot::Section(std::size_t index) const
{
    static const SnapshotSection kAbsent;
    return sections_[index] ? *sections_[index] : kAbsent;
}

void Snapshot::Set(SnapshotPart part, std::shared_ptr<const SnapshotSection> section)
{
    sections_[static_cast<std::size_t>(part)] = std::move(section);
}

bool Snapshot::Shares(const Snapshot& other, std::size_t index) const
{
    return sections_[index] != nullptr && sections_[index] == other.sections_[index];
}
