#include "report/SnapshotComparison.h"

namespace {

using Items = std::map<std::string, SnapshotItem>;

// Whether the thing's owner is on the same side of the change.
bool OwnerAlsoListed(const SnapshotItem& item, const Items& side, const Items& other)
{
    return !item.owner.empty() && side.count(item.owner) != 0 && other.count(item.owner) == 0;
}

}  // namespace

// One walk over both sides in the order of their names: a snapshot's
// sections hold thousands of things, and a lookup of each in the other side
// would cost a search of its own.
SectionChanges CompareSections(const SnapshotSection& before, const SnapshotSection& after)
{
    SectionChanges changes;
    auto was = before.items.begin();
    auto is = after.items.begin();
    while (was != before.items.end() || is != after.items.end()) {
        // Below 0: only before has the name; above 0: only after has it.
        const int order = was == before.items.end() ? 1
                          : is == after.items.end()  ? -1
                                                     : was->first.compare(is->first);
        if (order < 0) {
            if (!OwnerAlsoListed(was->second, before.items, after.items))
                changes.removed.push_back(was->first);
            ++was;
        } else if (order > 0) {
            if (!OwnerAlsoListed(is->second, after.items, before.items))
                changes.added.push_back(is->first);
            ++is;
        } else {
            if (was->second.value != is->second.value)
                changes.changed.push_back(ItemChange{was->first, was->second.value, is->second.value});
            ++was;
            ++is;
        }
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
