#include "report/SnapshotComparison.h"

#include "report/SectionReaders.h"

#include <utility>

namespace {

using Items = SnapshotSection::Items;

// Whether the thing's owner is on the same side of the change.
bool OwnerAlsoListed(const SnapshotItem& item, const Items& side, const Items& other)
{
    return !item.owner.empty() && side.count(item.owner) != 0 && other.count(item.owner) == 0;
}

// The text up to the limit; the bytes cut are counted.
std::string Capped(std::string_view text, std::uint64_t& bytesCut)
{
    if (text.size() <= kItemTextLimit)
        return std::string(text);
    bytesCut += text.size() - kItemTextLimit;
    return std::string(text.substr(0, kItemTextLimit));
}

// The fields' texts up to the limit, a list's first kDetailLimit texts; the
// bytes cut are counted.
std::vector<ItemField> CappedFields(const std::vector<ItemField>& fields, std::uint64_t& bytesCut)
{
    std::vector<ItemField> capped;
    for (const ItemField& field : fields) {
        ItemField kept{field.key, {}, field.form};
        for (const std::string& text : field.texts) {
            if (kept.texts.size() == kDetailLimit)
                bytesCut += text.size();
            else
                kept.texts.push_back(Capped(text, bytesCut));
        }
        capped.push_back(std::move(kept));
    }
    return capped;
}

// The thing's kind, and its names' and value's fields, capped, with the
// bytes cut of them.
ItemFields CappedFields(const ItemFields& fields)
{
    ItemFields capped;
    capped.kind = fields.kind;
    capped.names = CappedFields(fields.names, capped.bytesCut);
    capped.values = CappedFields(fields.values, capped.bytesCut);
    return capped;
}

// The thing with its value, and the things below it on its side: those whose
// names begin with its own and ": ", as the readers name what belongs to a thing.
ListedItem Listed(Items::const_iterator item, const SnapshotSection& section)
{
    const Items& side = section.items;
    ListedItem listed;
    listed.name = Capped(item->first, listed.bytesCut);
    listed.value = Capped(item->second.value, listed.bytesCut);
    listed.fields = CappedFields(section.FieldsOf(item->first, item->second));
    const std::string below = std::string(item->first) + ": ";
    for (auto detail = side.lower_bound(below);
         detail != side.end() && detail->first.compare(0, below.size(), below) == 0; ++detail) {
        if (listed.details.size() == kDetailLimit) {
            ++listed.detailsLeftOut;
            continue;
        }
        listed.details.push_back(ItemValue{Capped(detail->first.substr(below.size()), listed.bytesCut),
                                           Capped(detail->second.value, listed.bytesCut),
                                           CappedFields(section.FieldsOf(detail->first, detail->second))});
    }
    return listed;
}

void AddListed(std::vector<ListedItem>& list, std::size_t& leftOut, Items::const_iterator item,
               const SnapshotSection& section)
{
    if (list.size() == kListLimit)
        ++leftOut;
    else
        list.push_back(Listed(item, section));
}

void AddChanged(SectionChanges& changes, const Items::value_type& was, const SnapshotSection& before,
                const Items::value_type& is, const SnapshotSection& after)
{
    if (changes.changed.size() == kListLimit) {
        ++changes.changedLeftOut;
        return;
    }
    ItemChange change;
    change.name = Capped(was.first, change.bytesCut);
    change.before = Capped(was.second.value, change.bytesCut);
    change.after = Capped(is.second.value, change.bytesCut);
    change.fields = CappedFields(after.FieldsOf(is.first, is.second));
    change.valuesBefore = CappedFields(before.FieldsOf(was.first, was.second).values, change.fields.bytesCut);
    changes.changed.push_back(std::move(change));
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
                AddListed(changes.removed, changes.removedLeftOut, was, before);
            ++was;
        } else if (order > 0) {
            if (!OwnerAlsoListed(is->second, after.items, before.items))
                AddListed(changes.added, changes.addedLeftOut, is, after);
            ++is;
        } else {
            if (was->second.value != is->second.value)
                AddChanged(changes, *was, before, *is, after);
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
        const SnapshotSection& first = before.Section(i);
        const SnapshotSection& second = after.Section(i);
        if (first.complete && second.complete)
            changes[i] = before.Shares(after, i) ? SectionChanges() : CompareSections(first, second);
    }
    std::optional<SectionChanges>& users = changes[static_cast<std::size_t>(SnapshotPart::Users)];
    if (users && before.usersByGroupsAlone && after.usersByGroupsAlone)
        TellUsersByTheirGroups(*users);
    return changes;
}

ChangeCounts CountsOf(const SnapshotChanges& changes)
{
    ChangeCounts counts;
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        if (changes[i])
            counts[i] = changes[i]->Count();
    }
    return counts;
}
