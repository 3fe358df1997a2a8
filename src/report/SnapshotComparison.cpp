#include "report/SnapshotComparison.h"

namespace {

using Items = std::map<std::string, SnapshotItem>;

// Whether the thing's owner is on the same side of the change.
bool OwnerAlsoListed(const SnapshotItem& item, const Items& side, const Items& other)
{
    return !item.owner.empty() && side.count(item.owner) != 0 && other.count(item.owner) == 0;
}

std::vector<std::string> OnlyIn(const Items& side, const Items& other)
{
    std::vector<std::string> names;
    for (const auto& item : side) {
        if (other.count(item.first) == 0 && !OwnerAlsoListed(item.second, side, other))
            names.push_back(item.first);
    }
    return names;
}

}  // namespace

SectionChanges CompareSections(const SnapshotSection& before, const SnapshotSection& after)
{
    SectionChanges changes;
    changes.added = OnlyIn(after.items, before.items);
    changes.removed = OnlyIn(before.items, after.items);
    for (const auto& item : before.items) {
        const auto found = after.items.find(item.first);
        if (found != after.items.end() && found->second.value != item.second.value)
            changes.changed.push_back(ItemChange{item.first, item.second.value, found->second.value});
    }
    return changes;
}

SnapshotChanges CompareSnapshots(const Snapshot& before, const Snapshot& after)
{
    SnapshotChanges changes;
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        const SnapshotSection& first = before.sections[i];
        const SnapshotSection& second = after.sections[i];
        if (first.complete && second.complete)
            changes[i] = CompareSections(first, second);
    }
    return changes;
}
