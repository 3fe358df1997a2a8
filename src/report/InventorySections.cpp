// The product's own copies and its ODBC drivers in a snapshot. Copies of the
// layout before V9 have no names in the log; they are told apart by their
// place. Each product, global profile value, instance and parameter belongs
// to its copy, each parameter of an instance to the instance.
#include <algorithm>
#include <cstring>

#include "inventory/InventoryTexts.h"
#include "inventory/RegistryReader.h"
#include "report/SectionReaders.h"
#include "report/SectionText.h"

namespace {

using namespace texts::products;

const std::string kCopyListRule(kCopyListRuleLength, '-');
const std::string kProfileRule(kProfileRuleLength, '-');
const std::string kProductRule(kProductRuleLength, '-');
const std::string kInstanceRule(kInstanceRuleLength, '-');
const std::string kParameterRule(kParameterRuleLength, '-');
const char kGlobalProfilePrefix[] = "global profile ";

// A text from the registry: at most the value buffer, less its terminator;
// a key's name at most the name buffer, less its terminator.
constexpr std::size_t kRegistryText = kRegistryValueBufferSize - 1;
constexpr std::size_t kRegistryName = kRegistryNameSize - 1;

bool IsProductKeyName(std::string_view text)
{
    return StartsWith(text, kProductKeyPrefix);
}

// The version column joins three values with a "." between each two.
bool IsJoinedVersion(std::string_view text)
{
    return std::count(text.begin(), text.end(), '.') >= 2;
}

// Name, product code, version, service level and last modified date, each in
// its column: the name a key's, the version three values joined.
std::vector<RowField> ProductFields()
{
    const std::size_t longest[kProductColumnCount] = {kRegistryName, kRegistryText, 3 * kRegistryText + 2,
                                                      kRegistryText, kRegistryText};
    std::vector<RowField> fields;
    for (int i = 0; i < kProductColumnCount; ++i)
        fields.push_back(RowField{static_cast<std::size_t>(kProductColumnWidths[i]), longest[i], nullptr});
    fields[0].accepts = IsProductKeyName;
    fields[2].accepts = IsJoinedVersion;
    return fields;
}

// A parameter row: the name in its column, padded on one side, and the value
// behind it. A name that fills its column runs into the value with nothing
// between them, so the two can't be told apart: the row's whole text then
// names the parameter.
void SplitParameter(std::string_view row, std::size_t width, std::string_view& name, std::string_view& value)
{
    const bool columnFull = row.size() >= width && row.front() != ' ' && row[width - 1] != ' ';
    if (columnFull) {
        name = row;
        value = std::string_view();
        return;
    }
    name = TrimmedView(row.substr(0, std::min(width, row.size())));
    value = width < row.size() ? row.substr(width) : std::string_view();
}

// A global parameter row: the name and its ":" in a column of 30, the value
// behind it. A name of 30 characters or more pushes the value along; the
// first ":" from the column's end on then ends the name.
void SplitGlobalParameter(std::string_view row, std::string_view& name, std::string_view& value)
{
    const std::size_t width = kGlobalNameWidth;
    const std::string_view column = TrimmedView(row.substr(0, std::min(width, row.size())));
    std::string_view::size_type colon = std::string_view::npos;
    if (row.size() >= width && !column.empty() && column.back() == ':') {
        name = column.substr(0, column.size() - 1);
        value = row.substr(width);
    } else if ((colon = row.find(':', width - 1)) != std::string_view::npos) {
        name = TrimmedView(row.substr(0, colon));
        value = row.substr(colon + 1);
    } else {
        name = TrimmedView(row);
        value = std::string_view();
    }
}

// A value below its owner, named by the owner's name, ": ", the kind's words
// and its own name; the name is put together in `key`, which the reader keeps
// from row to row rather than making a string for each.
void AddBelow(SnapshotSection& section, std::string& key, const std::string& owner, const char* kindWords,
              std::string_view name, std::string_view value)
{
    key.assign(owner);
    key += ": ";
    key += kindWords;
    key += name;
    section.Add(key, value, owner);
}

class ProductsReader {
public:
    ProductsReader(const SectionLines& lines, SnapshotSection& section) : lines_(lines), section_(section) {}

    void Read()
    {
        for (std::size_t i = 0; i < lines_.size();)
            i = ReadLine(i);
        LeaveOutTheV9Parent();
    }

private:
    std::size_t ReadLine(std::size_t i)
    {
        const std::string_view line = lines_[i++];
        if (line == kPartABanner)
            priorToV9_ = true;
        else if (line == kPartBBanner)
            priorToV9_ = false;
        else if (line == kCopyListHeader)
            return FindTableRows(lines_, i, kCopyListRule, 1, kCopyListRule).next;
        else if (StartsWith(line, kCopyNameLabel))
            StartCopy("copy " + TextBehind(line, kCopyNameLabel),
                      ItemFields{"copy", {TextField("copy", TextBehind(line, kCopyNameLabel))}, {}});
        else if (StartsWith(line, kCopyCountLabel))
            v9Copies_ = TextBehind(line, kCopyCountLabel) != "0";
        else if (StartsWith(line, kProductCountLabel) && priorToV9_)
            StartPriorCopy(std::to_string(++priorCopies_));
        else if (line == kGlobalProfilesTitle)
            return ReadGlobalProfile(i);
        else if (line == kProductsTitle)
            return ReadProducts(i);
        else if (line == kInstancesTitle)
            return ReadInstanceList(i);
        else if (StartsWith(line, kInstanceNameLabel))
            return ReadInstance(i, TextBehind(line, kInstanceNameLabel));
        return i;
    }

    void StartCopy(const std::string& copy, ItemFields fields)
    {
        copy_ = copy;
        copyFields_ = fields.names;
        section_.Mark(copy_, std::string(), std::move(fields));
    }

    // A copy of the layout before V9, by its place among them.
    void StartPriorCopy(const std::string& place)
    {
        StartCopy("copy before V9 #" + place, ItemFields{"copyBeforeV9", {NumberField("copyBeforeV9", place)}, {}});
    }

    // The fields of a thing of the copy: the copy's, then the thing's own.
    ItemFields OfTheCopy(const char* kind, std::vector<ItemField> names, std::vector<ItemField> values) const
    {
        ItemFields fields{kind, copyFields_, std::move(values)};
        fields.names.insert(fields.names.end(), names.begin(), names.end());
        return fields;
    }

    // The key of the V9 copies' parent has the name of the copy before V9,
    // and the listing of that layout shows it as a copy, empty: where V9
    // copies stand, an empty copy before V9 is that key and no copy.
    void LeaveOutTheV9Parent()
    {
        if (!v9Copies_)
            return;
        for (int copy = 1; copy <= priorCopies_; ++copy) {
            const std::string name = "copy before V9 #" + std::to_string(copy);
            const std::string prefix = name + ":";
            const auto owned = section_.items.lower_bound(prefix);
            if (owned == section_.items.end() || !StartsWith(owned->first, prefix.c_str()))
                section_.Forget(name);
        }
    }

    std::size_t ReadGlobalProfile(std::size_t from)
    {
        const TableRows rows = FindTableRows(lines_, from, kProfileRule, 1, kProfileRule);
        for (std::size_t i = rows.first; i < rows.end; ++i) {
            std::string_view name;
            std::string_view value;
            SplitGlobalParameter(lines_[i], name, value);
            AddBelow(section_, key_, copy_, kGlobalProfilePrefix, name, value);
        }
        return rows.next;
    }

    std::size_t ReadProducts(std::size_t from)
    {
        static const std::vector<RowField> kFields = ProductFields();
        const TableRows rows = FindTableRows(lines_, from, kProductRule, 2, kProductRule);
        RowSearchBudget budget;
        for (std::size_t i = rows.first; i < rows.end; ++i) {
            const std::vector<std::string_view> views =
                RecordedRowFields(lines_[i], kFields.data(), kFields.size(), budget);
            const std::vector<std::string> fields(views.begin(), views.end());
            section_.Add(copy_ + ": product " + fields[0],
                         "version " + fields[2] + ", service level " + fields[3] + ", code " + fields[1] +
                             ", last modified " + fields[4],
                         copy_,
                         OfTheCopy("product", {TextField("product", fields[0])},
                                   {TextField("version", fields[2]), TextField("serviceLevel", fields[3]),
                                    TextField("code", fields[1]), TextField("lastModified", fields[4])}));
        }
        return rows.next;
    }

    std::size_t ReadInstanceList(std::size_t from)
    {
        const TableRows rows = FindTableRows(lines_, from, kInstanceRule, 2, kInstanceRule);
        for (std::size_t i = rows.first; i < rows.end; ++i)
            section_.Mark(copy_ + ": instance " + std::string(lines_[i]), copy_,
                          OfTheCopy("instance", {TextField("instance", std::string(lines_[i]))}, {}));
        return rows.next;
    }

    std::size_t ReadInstance(std::size_t from, const std::string& instanceName)
    {
        const std::string instance = copy_ + ": instance " + instanceName;
        section_.Describe(instance, OfTheCopy("instance", {TextField("instance", instanceName)}, {}));
        const TableRows rows = FindTableRows(lines_, from, kParameterRule, 2, kParameterRule);
        for (std::size_t i = rows.first; i < rows.end; ++i) {
            std::string_view name;
            std::string_view value;
            SplitParameter(lines_[i], kParameterNameWidth, name, value);
            AddBelow(section_, key_, instance, "", name, value);
        }
        return rows.next;
    }

    const SectionLines& lines_;
    SnapshotSection& section_;
    bool priorToV9_ = false;
    bool v9Copies_ = false;
    int priorCopies_ = 0;
    std::string copy_ = "copy (no name)";
    std::string key_;
    // The fields that name the copy that the lines are of; the copy without a
    // name has an empty one.
    std::vector<ItemField> copyFields_{TextField("copy", "")};
};

// The fields of a value below its owner, which keeps none of its own: a
// parameter of an instance or a driver, a global profile value of a copy.
// It is named by its owner's fields and the text behind the owner's name.
ItemFields BelowItsOwner(const SnapshotSection& section, std::string_view name, const SnapshotItem& item)
{
    if (name.size() < item.owner.size() + 2)
        return ItemFields();
    // Every copy, instance and driver is described before the values below
    // it, but the copy without a name, which a damaged log may begin with.
    const auto owner = section.ownFields.find(item.owner);
    const ItemFields ownerFields =
        owner == section.ownFields.end() ? ItemFields{"copy", {TextField("copy", "")}, {}, 0} : owner->second;
    std::string own(name.substr(item.owner.size() + 2));
    const char* kind = ownerFields.kind == "instance" ? "instanceParameter" : "driverParameter";
    if (ownerFields.kind == "copy" || ownerFields.kind == "copyBeforeV9") {
        kind = "globalProfileValue";
        own.erase(0, std::strlen(kGlobalProfilePrefix));
    }
    ItemFields fields{kind, ownerFields.names, {TextField("value", std::string(item.value))}, 0};
    fields.names.push_back(TextField("name", own));
    return fields;
}

// A driver by its name; returns the name that the things below it begin with.
std::string MarkDriver(const std::string& driverName, SnapshotSection& section)
{
    const std::string driver = "driver " + driverName;
    section.Mark(driver, std::string(), ItemFields{"odbcDriver", {TextField("driver", driverName)}, {}});
    return driver;
}

}  // namespace

void ReadZORProductsSection(const SectionLines& lines, SnapshotSection& section)
{
    section.fieldsRule = BelowItsOwner;
    ProductsReader(lines, section).Read();
}

void ReadODBCDriversSection(const SectionLines& lines, SnapshotSection& section)
{
    namespace odbc = texts::odbc;
    const std::string driverRule(odbc::kDriverRuleLength, '-');
    const std::string parameterRule(odbc::kParameterRuleLength, '-');
    section.fieldsRule = BelowItsOwner;
    for (std::size_t i = 0; i < lines.size();) {
        const std::string_view line = lines[i++];
        if (line == odbc::kDriverListHeader) {
            const TableRows rows = FindTableRows(lines, i, driverRule, 1, driverRule);
            for (std::size_t row = rows.first; row < rows.end; ++row)
                MarkDriver(std::string(lines[row]), section);
            i = rows.next;
        } else if (StartsWith(line, odbc::kDriverNameLabel)) {
            const std::string driverName = TextBehind(line, odbc::kDriverNameLabel);
            const std::string driver = MarkDriver(driverName, section);
            const TableRows rows = FindTableRows(lines, i, parameterRule, 2, parameterRule);
            std::string key;
            for (std::size_t row = rows.first; row < rows.end; ++row) {
                std::string_view name;
                std::string_view value;
                SplitParameter(lines[row], odbc::kParameterNameWidth, name, value);
                AddBelow(section, key, driver, "", name, value);
            }
            i = rows.next;
        }
    }
}

void ReadSection(SnapshotPart part, const SectionLines& lines, SnapshotSection& section)
{
    switch (part) {
    case SnapshotPart::Users:
        return ReadUsersSection(lines, section);
    case SnapshotPart::Software:
        return ReadSoftwareSection(lines, section);
    case SnapshotPart::Processes:
        return ReadProcessesSection(lines, section);
    case SnapshotPart::Services:
        return ReadServicesSection(lines, section);
    case SnapshotPart::ZORProducts:
        return ReadZORProductsSection(lines, section);
    case SnapshotPart::ODBCDrivers:
        return ReadODBCDriversSection(lines, section);
    }
}
