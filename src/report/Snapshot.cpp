#include "report/Snapshot.h"

#include <utility>

namespace {

// The values of a name listed again joined to the first ones, field by field.
void JoinValues(std::vector<ItemField>& values, std::vector<ItemField>& more)
{
    for (std::size_t i = 0; i < values.size() && i < more.size(); ++i) {
        values[i].form = ItemField::Form::List;
        for (std::string& text : more[i].texts)
            values[i].texts.push_back(std::move(text));
    }
}

}  // namespace

ItemField TextField(const char* key, std::string text)
{
    return ItemField{key, {std::move(text)}, ItemField::Form::Text};
}

ItemField NumberField(const char* key, std::string digits)
{
    return ItemField{key, {std::move(digits)}, ItemField::Form::Number};
}

ItemField ListField(const char* key, std::vector<std::string> texts)
{
    return ItemField{key, std::move(texts), ItemField::Form::List};
}

// A name listed again gets fields of its own, whose values list each row's.
void SnapshotSection::Add(std::string_view name, std::string_view value, std::string_view owner, ItemFields fields)
{
    auto at = PlaceOf(name);
    if (at == items.end() || at->first != name) {
        namedLast_.Set(items.emplace_hint(at, texts_.Keep(name), SnapshotItem{texts_.Keep(value), KeepOwner(owner)}));
        if (!fields.kind.empty())
            Describe(name, std::move(fields));
        return;
    }
    namedLast_.Set(at);
    SnapshotItem& item = at->second;
    if (JoinsLater(name, owner, fields, item)) {
        std::vector<std::string_view>& values = rowValues_[at->first];
        if (values.empty())
            values.push_back(item.value);
        values.push_back(texts_.Keep(value));
    } else {
        JoinFields(name, item, value, owner, std::move(fields));
    }
    item.value = texts_.Join({item.value, ", ", value});
}

bool SnapshotSection::JoinsLater(std::string_view name, std::string_view owner, const ItemFields& fields,
                                 const SnapshotItem& item) const
{
    return fields.kind.empty() && fieldsRule != nullptr && owner.empty() && item.owner.empty() &&
           ownFields.find(name) == ownFields.end();
}

// The fields of a name listed again, joined at once: to its own, made first
// from its rows so far where it has none.
void SnapshotSection::JoinFields(std::string_view name, SnapshotItem& item, std::string_view value,
                                 std::string_view owner, ItemFields fields)
{
    if (fields.kind.empty() && fieldsRule != nullptr)
        fields = fieldsRule(*this, name, SnapshotItem{value, owner});
    auto own = ownFields.find(name);
    if (own == ownFields.end()) {
        own = ownFields.emplace(name, FieldsOf(name, item)).first;
        rowValues_.erase(name);
    }
    JoinValues(own->second.values, fields.values);
}

void SnapshotSection::Mark(std::string_view name, std::string_view owner, ItemFields fields)
{
    const auto at = PlaceOf(name);
    if (at != items.end() && at->first == name) {
        namedLast_.Set(at);
        return;
    }
    namedLast_.Set(items.emplace_hint(at, texts_.Keep(name), SnapshotItem{std::string_view(), KeepOwner(owner)}));
    if (!fields.kind.empty())
        Describe(name, std::move(fields));
}

void SnapshotSection::Describe(std::string_view name, ItemFields fields)
{
    ownFields.emplace(name, std::move(fields));
}

ItemFields SnapshotSection::FieldsOf(std::string_view name, const SnapshotItem& item) const
{
    const auto own = ownFields.find(name);
    if (own != ownFields.end())
        return own->second;
    if (fieldsRule == nullptr)
        return ItemFields();
    const auto rows = rowValues_.find(name);
    if (rows == rowValues_.end())
        return fieldsRule(*this, name, item);
    ItemFields fields = fieldsRule(*this, name, SnapshotItem{rows->second.front(), item.owner});
    for (std::size_t row = 1; row < rows->second.size(); ++row) {
        ItemFields more = fieldsRule(*this, name, SnapshotItem{rows->second[row], item.owner});
        JoinValues(fields.values, more.values);
    }
    return fields;
}

// The things below one owner come one after another: its name is kept once.
std::string_view SnapshotSection::KeepOwner(std::string_view owner)
{
    if (owner != ownerKept_)
        ownerKept_ = texts_.Keep(owner);
    return ownerKept_;
}

SnapshotSection::Items::iterator SnapshotSection::PlaceOf(std::string_view name)
{
    const Items::iterator* last = namedLast_.Get();
    if (last != nullptr && (*last)->first < name) {
        const auto next = std::next(*last);
        if (next == items.end() || !(next->first < name))
            return next;
    }
    return items.lower_bound(name);
}

void SnapshotSection::Forget(std::string_view name)
{
    namedLast_.Clear();
    const auto item = items.find(name);
    if (item != items.end())
        items.erase(item);
    const auto own = ownFields.find(name);
    if (own != ownFields.end())
        ownFields.erase(own);
    rowValues_.erase(name);
}

ItemFields NamedValueFields(const char* kind, const char* nameKey, const char* valueKey, ItemField::Form valueForm,
                            std::string_view name, std::string_view value)
{
    return ItemFields{kind, {TextField(nameKey, std::string(name))}, {ItemField{valueKey, {std::string(value)}, valueForm}}, 0};
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
