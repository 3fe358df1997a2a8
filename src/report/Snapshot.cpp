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
void SnapshotSection::Add(const std::string& name, const std::string& value, const std::string& owner,
                          ItemFields fields)
{
    const auto inserted = items.emplace(name, SnapshotItem{value, owner});
    if (inserted.second) {
        if (!fields.kind.empty())
            ownFields.emplace(name, std::move(fields));
        return;
    }
    SnapshotItem& item = inserted.first->second;
    ItemFields joined = FieldsOf(name, item.value);
    if (fields.kind.empty())
        fields = FieldsOf(name, value);
    JoinValues(joined.values, fields.values);
    ownFields[name] = std::move(joined);
    item.value += ", " + value;
}

void SnapshotSection::Mark(const std::string& name, const std::string& owner, ItemFields fields)
{
    if (items.emplace(name, SnapshotItem{std::string(), owner}).second && !fields.kind.empty())
        ownFields.emplace(name, std::move(fields));
}

ItemFields SnapshotSection::FieldsOf(const std::string& name, const std::string& value) const
{
    const auto own = ownFields.find(name);
    if (own != ownFields.end())
        return own->second;
    if (plainFields == nullptr)
        return ItemFields();
    return ItemFields{plainFields->kind,
                      {TextField(plainFields->nameKey, name)},
                      {ItemField{plainFields->valueKey, {value}, plainFields->valueForm}},
                      0};
}
