#include "report/SnapshotComparison.h"

#include "report/SectionReaders.h"

namespace {

using Items = std::map<std::string, SnapshotItem>;

// Whether the thing's owner is on the same side of the change.
bool OwnerAlsoListed(const SnapshotItem& item, const Items& side, const Items& other)
{
    return !item.owner.empty() && side.count(item.owner) != 0 && other.count(item.owner) == 0;
}

// The thing with its value, and the things below it on its side: those whose
// names begin with its own and ": ", as the readers name what belongs to a thing.
ListedItem Listed(Items::const_iterator item, const Items& side)
{
    ListedItem listed{item->first, item->second.value, {}};
    const std::string below = item->first + ": ";
    for (auto detail = side.lower_bound(below);
         detail != side.end() && detail->first.compare(0, below.size(), below) == 0; ++detail)
        listed.details.push_back(ItemValue{detail->first.substr(below.size()), detail->second.value});
    return listed;
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
                changes.removed.push_back(Listed(was, before.items));
            ++was;
        } else if (order > 0) {
            if (!OwnerAlsoListed(is->second, after.items, before.items))
                changes.added.push_back(Listed(is, after.items));
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
    std::optional<SectionChanges>& users = changes[static_cast<std::size_t>(SnapshotPart::Users)];
    if (users && before.usersByGroupsAlone && after.usersByGroupsAlone)
        TellUsersByTheirGroups(*users);
    return changes;
}
