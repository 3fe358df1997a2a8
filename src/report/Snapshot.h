// One snapshot of the machine as the report reads it back from an event log:
// for each of the six sections, the things it names, each with the value that
// a change would show. A section read to its end is complete; one that was cut
// off, or never came, can't be compared.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "recorder/EventTexts.h"
#include "report/ArenaAllocator.h"
#include "report/CTextStore.h"

// The sections in the snapshot's order.
enum class SnapshotPart : std::size_t {
    Users,
    Software,
    Processes,
    Services,
    ZORProducts,
    ODBCDrivers,
};

inline constexpr std::size_t kSnapshotPartCount = texts::kSnapshotSectionCount;

// One field of a thing, under its key in the JSON form: a text, a number, or
// a list of texts (a user's groups; the values of a name listed twice).
struct ItemField {
    enum class Form { Text, Number, List };
    std::string key;
    std::vector<std::string> texts;
    Form form = Form::Text;
};

ItemField TextField(const char* key, std::string text);
ItemField NumberField(const char* key, std::string digits);
ItemField ListField(const char* key, std::vector<std::string> texts);

// A thing in fields of its own, for scripts: its kind ("software", "user",
// "product"...), the fields that name it (its copy, its instance, its own
// name) and the fields of its value.
struct ItemFields {
    std::string kind;
    std::vector<ItemField> names;
    std::vector<ItemField> values;
    // Bytes cut of the texts, where the report keeps them to a limit.
    std::uint64_t bytesCut = 0;
};

// The fields of a thing that has a name and one value: a software's name and
// version, a process's image and count.
ItemFields NamedValueFields(const char* kind, const char* nameKey, const char* valueKey, ItemField::Form valueForm,
                            std::string_view name, std::string_view value);

// A thing that a section names, and its value. A thing that belongs to
// another one (a parameter to its instance, an instance to its copy) names
// that one as its owner, so that a copy that comes or goes is told once,
// without each of its parameters. The texts are the section's own, kept in
// its store.
struct SnapshotItem {
    std::string_view value;
    std::string_view owner;
};

struct SnapshotSection {
    using Items = std::map<std::string_view, SnapshotItem, std::less<std::string_view>,
                           ArenaAllocator<std::pair<const std::string_view, SnapshotItem>>>;

    bool present = false;
    bool complete = false;
    // The things by their names, which the section's store keeps, as it does
    // their values and owners.
    Items items;
    // How the things' fields follow from their names, values and owners, for
    // the things that keep none of their own: the largest sections' things
    // keep none, and their fields are made only for those that a change lists.
    using FieldsRule = ItemFields (*)(const SnapshotSection& section, std::string_view name,
                                      const SnapshotItem& item);
    FieldsRule fieldsRule = nullptr;
    // The fields of the things that keep their own, by their names; kept
    // apart from the things, whose map stays as small as it can be.
    std::map<std::string, ItemFields, std::less<>> ownFields;

    // Adds a thing; a name that is there already gets the new value joined
    // to its old one, and each field of the value made a list of both, so
    // that two rows of one name both show. The texts are copied into the store.
    void Add(std::string_view name, std::string_view value, std::string_view owner = std::string_view(),
             ItemFields fields = ItemFields());
    // A thing that has no value of its own: named once, however often it is.
    void Mark(std::string_view name, std::string_view owner = std::string_view(), ItemFields fields = ItemFields());
    // The fields of a name that the things below it are named by, whether or
    // not it is a thing of the section itself.
    void Describe(std::string_view name, ItemFields fields);
    // The thing's fields: its own, or those that the rule gives it.
    ItemFields FieldsOf(std::string_view name, const SnapshotItem& item) const;
    // Leaves the thing out, with its fields, as if it had never been added.
    void Forget(std::string_view name);
    // The blocks of text that the section holds, shared with the sections it
    // was copied from.
    std::size_t TextBlocks() const { return texts_.Blocks(); }

private:
    // Whether a name listed again keeps its rows' values for its fields to be
    // made from when asked for: a thing without an owner, whose fields the
    // rule makes from its name and value alone, and which has none of its own.
    bool JoinsLater(std::string_view name, std::string_view owner, const ItemFields& fields,
                    const SnapshotItem& item) const;
    void JoinFields(std::string_view name, SnapshotItem& item, std::string_view value, std::string_view owner,
                    ItemFields fields);
    // Where the name stands or would stand among the things.
    Items::iterator PlaceOf(std::string_view name);
    std::string_view KeepOwner(std::string_view owner);

    // The thing named last: a section lists its things mostly in the order
    // of their names, so the place behind it is tried before the map is
    // searched. A copy of the section, or one moved, starts without it, and
    // a section moved from is left without it.
    class NamedLast {
    public:
        NamedLast() = default;
        NamedLast(const NamedLast&) noexcept {}
        NamedLast(NamedLast&& other) noexcept { other.Clear(); }
        NamedLast& operator=(const NamedLast&) noexcept
        {
            Clear();
            return *this;
        }
        NamedLast& operator=(NamedLast&& other) noexcept
        {
            Clear();
            other.Clear();
            return *this;
        }
        void Set(Items::iterator at)
        {
            at_ = at;
            set_ = true;
        }
        void Clear() { set_ = false; }
        const Items::iterator* Get() const { return set_ ? &at_ : nullptr; }

    private:
        Items::iterator at_;
        bool set_ = false;
    };

    CTextStore texts_;
    // The values of each row of a name listed more than once, in their order,
    // where the fields are made when asked for: the software list names many
    // products more than once, and few of them show in a change.
    std::map<std::string_view, std::vector<std::string_view>> rowValues_;
    NamedLast namedLast_;
    // The owner kept last, in the store.
    std::string_view ownerKept_;
};

// A machine's snapshots repeat most sections from one to the next (an install
// changes a few things): the snapshots that hold a section unchanged share
// it, read once.
class Snapshot {
public:
    bool present = false;
    // The closing line was read.
    bool complete = false;
    // Written where the user table lists a user only through the groups that
    // name their members, apart from each user's own group, as on Linux.
    bool usersByGroupsAlone = false;

    // A section that never came is absent and empty.
    const SnapshotSection& operator[](SnapshotPart part) const { return Section(static_cast<std::size_t>(part)); }
    const SnapshotSection& Section(std::size_t index) const;
    void Set(SnapshotPart part, std::shared_ptr<const SnapshotSection> section);
    // Whether both snapshots hold this very section, so that it is unchanged
    // between them.
    bool Shares(const Snapshot& other, std::size_t index) const;

private:
    std::array<std::shared_ptr<const SnapshotSection>, kSnapshotPartCount> sections_;
};
