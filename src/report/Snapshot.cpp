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

void SnapshotSection::Add(const std::string& name, const std::string& value, const std::string& owner,
                          ItemFields fields)
{
    const auto inserted = items.emplace(name, SnapshotItem{value, owner, ItemFields()});
    if (inserted.second) {
        inserted.first->second.fields = std::move(fields);
        return;
    }
    inserted.first->second.value += ", " + value;
    JoinValues(inserted.first->second.fields.values, fields.values);
}

void SnapshotSection::Mark(const std::string& name, const std::string& owner, ItemFields fields)
{
    items.emplace(name, SnapshotItem{std::string(), owner, std::move(fields)});
}
