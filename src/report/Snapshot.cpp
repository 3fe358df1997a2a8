#include "report/Snapshot.h"

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
