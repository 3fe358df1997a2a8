// Each section's reader over lines written by hand; the expected things and
// values are written out here too.
#include <gtest/gtest.h>

#include "ReportTestLogs.h"
#include <algorithm>
#include <iterator>

#include "report/CSoftwareTable.h"
#include "report/SectionReaders.h"
#include "report/SectionText.h"

using namespace reportlogs;

namespace {

std::map<std::string, std::string> Values(const SnapshotSection& section)
{
    std::map<std::string, std::string> values;
    for (const auto& item : section.items)
        values[std::string(item.first)] = std::string(item.second.value);
    return values;
}

// Lines written out here; a reader takes them as parts of their texts.
using TextLines = std::vector<std::string>;

SectionLines ViewsOf(const TextLines& lines)
{
    return SectionLines(lines.begin(), lines.end());
}

std::vector<std::string> Texts(const std::vector<std::string_view>& views)
{
    return std::vector<std::string>(views.begin(), views.end());
}

}  // namespace

TEST(SectionReaders, UsersGiveGroupsUsersWithTheirGroupsAndTheLoggedOnUser)
{
    const TextLines lines = {
        "", "Logged on User:alice", Rule('=', 83), "", "Local Group List:", Rule('-', 35), "Group Name ",
        Rule('-', 35), "Administrators", "A group with a very long name indeed", Rule('-', 35), "",
        "Local User List:", Rule('-', 74), "Group                                   user   ", Rule('-', 74),
        Left("Administrators", 30) + "          VM\\alice",
        "A group with a very long name indeed          VM\\bob",
        Left("Users", 30) + "          VM\\alice",
        Rule('-', 74), "", "Global Group List:", Rule('-', 35), "Group Name ", Rule('-', 35), "Domain Admins",
        Rule('-', 74), "Global User List:", Rule('-', 74), "Group                                   user   ",
        Rule('-', 74), Left("Domain Admins", 30) + "          alice", Rule('-', 74), Rule('=', 83),
    };
    SnapshotSection section;
    ReadUsersSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {
        {"logged-on user", "alice"},
        {"group Administrators", ""},
        {"group A group with a very long name indeed", ""},
        {"global group Domain Admins", ""},
        {"user VM\\alice", "member of Administrators, Users"},
        {"user VM\\bob", "member of A group with a very long name indeed"},
        {"global user alice", "member of Domain Admins"},
    };
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, SoftwareGivesEachProductByNameWithItsVersion)
{
    const std::string header =
        "Publisher                     Product Name                                                     "
        "Version             InstallDate   Language   Location";
    const TextLines lines = {
        "", Rule('-', 185), header, Rule('-', 185),
        Left("TAQ Inc.", 30) + Left("ZOR Client", 65) + Left("9.1.0", 20) + Left("20061012", 14) +
            Left("1033", 11) + "C:\\ZOR",
        Left("Microsoft Corporation", 30) + Left("Windows Installer 3.1", 65) + Left("3.1.4000", 20) +
            Left("", 14) + Left("0", 11),
        Rule('-', 185),
    };
    SnapshotSection section;
    ReadSoftwareSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {{"ZOR Client", "9.1.0"},
                                                         {"Windows Installer 3.1", "3.1.4000"}};
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, ProcessesAreCountedByImageNameWhateverTheAlignmentOfTheirIds)
{
    const TextLines lines = {
        "", "Processes:4", "--------------------------------------------------- ",
        "Process ID         Process Name                     ",
        "--------------------------------------------------- ",
        Right("4", 19) + "System", Left("812", 19) + "svchost.exe", Left("1204", 19) + "svchost.exe",
        Left("2000000000", 19) + "my tool.exe",
        "---------- Process List ( end )-------------------- ",
    };
    SnapshotSection section;
    ReadProcessesSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {
        {"System", "1"}, {"svchost.exe", "2"}, {"my tool.exe", "1"}};
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, ServicesGiveTheStateEvenBehindALongDisplayName)
{
    const std::string rule = "-------------------------------------------------------------------- ";
    const std::string longName(64, 'Z');
    const TextLines lines = {
        "", rule, "Service Name                                                Status   ", rule,
        Left("ZOR Database Server", 60) + Left("Started", 15),
        Left("Windows Installer", 60) + "The service continue is pending",
        longName + Left("Stopped", 15),
        Left("ZOR odd", 60) + Left("Uknown", 15),
        rule,
    };
    SnapshotSection section;
    ReadServicesSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {
        {"ZOR Database Server", "Started"},
        {"Windows Installer", "The service continue is pending"},
        {longName, "Stopped"},
        {"ZOR odd", "Uknown"},
    };
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, ProductCopiesGiveTheirProductsProfilesInstancesAndParameters)
{
    TextLines lines = {
        "", Rule('*', 93),
        "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *",
        Rule('*', 93), "", Rule('-', 48), "Total Products     :1", "Total ZOR Instances:0", Rule('-', 48), "",
        "Global Profiles:", Rule('-', 120), Right("ROOT:", 30) + "C:\\OLD", Rule('-', 120), "",
        "ZOR Products installed:", Rule('-', 128),
        "Product Name                            Product Code                            "
        "Version   Service Level       Last Modified Date",
        Rule('-', 128),
        Right("ZOR Server", 40) + Right("{OLD}", 40) + Right("8.0.1", 10) + Right("", 20) + Right("2001", 20),
        Rule('-', 128), "", "ZOR Instances:", Rule('-', 33), "Instance Name                    ", Rule('-', 33),
        Rule('-', 33), "",
        "", Rule('*', 93),
        "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *",
        Rule('*', 93), "", "Total ZOR Copies:1", Rule('-', 45), "ZOR Copy Name", Rule('-', 45), "C1",
        Rule('-', 45), "", "ZOR Installation Copy Name:C1", Rule('-', 48), "Total Products     :1",
        "Total ZOR Instances:1", Rule('-', 48), "", "Global Profiles:", Rule('-', 120),
        Left("ZOR_HOME:", 30) + "C:\\ZOR", Left("A_GLOBAL_NAME_LONGER_THAN_30_CHARS:", 30) + "yes",
        Rule('-', 120), "", "ZOR Products installed:", Rule('-', 128),
        "Product Name                            Product Code                            "
        "Version   Service Level       Last Modified Date",
        Rule('-', 128),
        Left("ZOR Client", 40) + Left("{C1-CODE}", 40) + Left("9.1.0", 10) + Left("SL2", 20) + Left("20061012", 20),
        Rule('-', 128), "", "ZOR Instances:", Rule('-', 33), "Instance Name                    ", Rule('-', 33),
        "PROD", Rule('-', 33), "", "ZOR Instance Name:PROD", Rule('-', 68),
        "Parameter Name                      Value                  ", Rule('-', 68),
        Left("Max_Users", 36) + "50", Left("Empty", 36), Rule('-', 68), "",
    };
    SnapshotSection section;
    ReadZORProductsSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {
        {"copy before V9 #1", ""},
        {"copy before V9 #1: global profile ROOT", "C:\\OLD"},
        {"copy before V9 #1: product ZOR Server",
         "version 8.0.1, service level , code {OLD}, last modified 2001"},
        {"copy C1", ""},
        {"copy C1: global profile ZOR_HOME", "C:\\ZOR"},
        {"copy C1: global profile A_GLOBAL_NAME_LONGER_THAN_30_CHARS", "yes"},
        {"copy C1: product ZOR Client", "version 9.1.0, service level SL2, code {C1-CODE}, last modified 20061012"},
        {"copy C1: instance PROD", ""},
        {"copy C1: instance PROD: Max_Users", "50"},
        {"copy C1: instance PROD: Empty", ""},
    };
    EXPECT_EQ(Values(section), expected);
    EXPECT_EQ(section.items.at("copy C1: instance PROD: Max_Users").owner, "copy C1: instance PROD");
    EXPECT_EQ(section.items.at("copy C1: instance PROD").owner, "copy C1");
    EXPECT_EQ(section.items.at("copy C1").owner, "");
}

TEST(SectionReaders, DriversGiveTheirParameters)
{
    const TextLines lines = {
        "", "Total ZOR ODBC Drivers:1", Rule('-', 43), "Driver Name", Rule('-', 43), "TAQ ZOR Driver",
        Rule('-', 43), "", "ODBC Driver:TAQ ZOR Driver", Rule('-', 76),
        "Parameter Name                Value                ", Rule('-', 76),
        Left("Driver", 30) + "C:\\ZOR\\odbc.dll", Left("UsageCount", 30) + "1", Rule('-', 76),
    };
    SnapshotSection section;
    ReadODBCDriversSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {
        {"driver TAQ ZOR Driver", ""},
        {"driver TAQ ZOR Driver: Driver", "C:\\ZOR\\odbc.dll"},
        {"driver TAQ ZOR Driver: UsageCount", "1"},
    };
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, EmptyReportsNameNothing)
{
    SnapshotSection products;
    ReadZORProductsSection(ViewsOf(NoProductLines()), products);
    SnapshotSection drivers;
    ReadODBCDriversSection(ViewsOf(NoDriverLines()), drivers);
    EXPECT_TRUE(products.items.empty());
    EXPECT_TRUE(drivers.items.empty());
}

TEST(SectionReaders, AMemberRowShortOfTheGroupColumnIsAGroupWithoutAUser)
{
    const TextLines lines = {
        "Local User List:", Rule('-', 74), "Group                                   user   ", Rule('-', 74),
        "Users", Left("Guests", 34), Rule('-', 74),
    };
    SnapshotSection section;
    ReadUsersSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {{"user ", "member of Guests, Users"}};
    EXPECT_EQ(Values(section), expected);
}

namespace {

// A text of `length` characters with blanks inside it, as names have them.
std::string Text(const std::string& start, std::size_t length, char fill)
{
    std::string text = start;
    while (text.size() < length)
        text += text.size() % 7 == 3 ? ' ' : fill;
    text.resize(length);
    text.back() = fill;
    return text;
}

// The lengths each column is tested at: one shorter than the column, as long
// as it, one longer, and as long as the recorder writes it.
std::vector<std::size_t> LengthsAround(std::size_t width, std::size_t longest)
{
    return {width - 1, width, width + 1, longest};
}

}  // namespace

TEST(SectionReaders, SoftwareFieldsAsLongAsOrLongerThanTheirColumnsAreReadWhole)
{
    const std::string header =
        "Publisher                     Product Name                                                     "
        "Version             InstallDate   Language   Location";
    // Each registry text in turn at each length around its column, up to the
    // 99 bytes that the registry's read gives at most; the others as usual.
    const std::size_t widths[4] = {30, 65, 20, 14};
    for (std::size_t field = 0; field < 4; ++field) {
        for (const std::size_t length : LengthsAround(widths[field], 99)) {
            std::string texts[4] = {"TAQ Inc.", "ZOR Client", "9.1.0", "20061012"};
            texts[field] = Text(texts[field], length, 'x');
            const TextLines lines = {
                "", Rule('-', 185), header, Rule('-', 185),
                Left(texts[0], 30) + Left(texts[1], 65) + Left(texts[2], 20) + Left(texts[3], 14) +
                    Left("4294967295", 11) + "C:\\ZOR",
                Rule('-', 185),
            };
            SnapshotSection section;
            ReadSoftwareSection(ViewsOf(lines), section);
            const std::map<std::string, std::string> expected = {{texts[1], texts[2]}};
            ASSERT_EQ(Values(section), expected) << "field " << field << " of " << length;
        }
    }
}

TEST(SectionReaders, ProductRowsWithFieldsAsLongAsOrLongerThanTheirColumnsAreReadWhole)
{
    const std::string header = "Product Name                            Product Code                            "
                               "Version   Service Level       Last Modified Date";
    // Each field in turn at each length around its column, up to the longest
    // that the recorder writes: a key's name of 255 bytes, three registry
    // texts of 99 joined with dots, registry texts of 99.
    const std::size_t widths[5] = {40, 40, 10, 20, 20};
    const std::size_t longest[5] = {255, 99, 299, 99, 99};
    for (const bool left : {true, false}) {
        const auto pad = left ? Left : Right;
        for (std::size_t field = 0; field < 5; ++field) {
            for (const std::size_t length : LengthsAround(widths[field], longest[field])) {
                std::string texts[5] = {"ZOR Server", "{C0DE-1}", "9.1.0", "SL2", "20061012"};
                texts[field] = Text(texts[field], length, 'x');
                const TextLines lines = {
                    "", "ZOR Installation Copy Name:C1", "ZOR Products installed:", Rule('-', 128), header,
                    Rule('-', 128),
                    pad(texts[0], 40) + pad(texts[1], 40) + pad(texts[2], 10) + pad(texts[3], 20) +
                        pad(texts[4], 20),
                    Rule('-', 128),
                };
                SnapshotSection section;
                ReadZORProductsSection(ViewsOf(lines), section);
                const std::map<std::string, std::string> expected = {
                    {"copy C1", ""},
                    {"copy C1: product " + texts[0], "version " + texts[2] + ", service level " + texts[3] +
                                                         ", code " + texts[1] + ", last modified " + texts[4]},
                };
                ASSERT_EQ(Values(section), expected)
                    << (left ? "left" : "right") << ": field " << field << " of " << length;
            }
        }
    }
}

TEST(SectionReaders, AProductRowWithTwoFieldsOverTheirColumnsIsReadAsWritten)
{
    // A code that runs into a version that begins with a digit, and a service
    // level that runs into the date.
    const std::string texts[5] = {"ZOR Server", "{A1A1A1A1-0000-0000-0000-000000000095}-SERVER-X64", "9.5.12345",
                                  "SL0 with Cumulative Hotfix 7", "20250611"};
    for (const bool left : {true, false}) {
        const auto pad = left ? Left : Right;
        const TextLines lines = {
            "", "ZOR Installation Copy Name:C1", "ZOR Products installed:", Rule('-', 128),
            "Product Name                            Product Code                            "
            "Version   Service Level       Last Modified Date",
            Rule('-', 128),
            pad(texts[0], 40) + pad(texts[1], 40) + pad(texts[2], 10) + pad(texts[3], 20) + pad(texts[4], 20),
            Rule('-', 128),
        };
        SnapshotSection section;
        ReadZORProductsSection(ViewsOf(lines), section);
        const std::map<std::string, std::string> expected = {
            {"copy C1", ""},
            {"copy C1: product ZOR Server", "version 9.5.12345, service level SL0 with Cumulative Hotfix 7, code "
                                            "{A1A1A1A1-0000-0000-0000-000000000095}-SERVER-X64, last modified 20250611"},
        };
        EXPECT_EQ(Values(section), expected) << (left ? "left" : "right");
    }
}

TEST(SectionReaders, ServiceNamesAroundTheirColumnKeepTheirState)
{
    const std::string rule = "-------------------------------------------------------------------- ";
    // A display name has 256 characters at most.
    for (const std::size_t length : LengthsAround(60, 256)) {
        const std::string name = Text("ZOR Service", length, 's');
        const TextLines lines = {"", rule, "Service Name                                                Status   ",
                                    rule, Left(name, 60) + Left("Is stopping", 15), rule};
        SnapshotSection section;
        ReadServicesSection(ViewsOf(lines), section);
        const std::map<std::string, std::string> expected = {{name, "Is stopping"}};
        ASSERT_EQ(Values(section), expected) << length;
    }
}

TEST(SectionReaders, GroupNamesAroundTheirColumnKeepTheirUsers)
{
    // A name comes through a narrow buffer of 128 bytes: 127 characters.
    for (const std::size_t length : LengthsAround(30, 127)) {
        const std::string group = Text("Group", length, 'g');
        const std::string user = "VM\\" + Text("user", 124, 'u');
        const TextLines lines = {
            "Local User List:", Rule('-', 74), "Group                                   user   ", Rule('-', 74),
            Left(group, 30) + "          " + user, Rule('-', 74),
        };
        SnapshotSection section;
        ReadUsersSection(ViewsOf(lines), section);
        const std::map<std::string, std::string> expected = {{"user " + user, "member of " + group}};
        ASSERT_EQ(Values(section), expected) << length;
    }
}

TEST(SectionReaders, ProcessIdsAroundTheirColumnLeaveTheNameWhole)
{
    // Ids are signed 32-bit numbers, names at most 259 characters.
    const std::string name = Text("zor", 259, 'z');
    const TextLines lines = {
        "", "Processes:3", "--------------------------------------------------- ",
        "Process ID         Process Name                     ",
        "--------------------------------------------------- ",
        Left("-2147483648", 19) + name, Right("2147483647", 19) + name, Left("4", 19) + "a",
        "---------- Process List ( end )-------------------- ",
    };
    SnapshotSection section;
    ReadProcessesSection(ViewsOf(lines), section);
    const std::map<std::string, std::string> expected = {{name, "2"}, {"a", "1"}};
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, ParameterNamesShorterThanTheirColumnAreSplitFromTheValue)
{
    const std::string driverName = Text("TAQ ZOR", 29, 'd');
    const std::string instanceName = Text("Port", 35, 'i');
    const std::string globalName = Text("ZOR", 28, 'g');
    const TextLines odbc = {
        "", "Total ZOR ODBC Drivers:1", "ODBC Driver:D", Rule('-', 76),
        "Parameter Name                Value                ", Rule('-', 76), Left(driverName, 30) + "x y",
        Right(driverName, 30) + "z", Rule('-', 76),
    };
    SnapshotSection drivers;
    ReadODBCDriversSection(ViewsOf(odbc), drivers);
    EXPECT_EQ(drivers.items.at("driver D: " + driverName).value, "x y, z");

    const TextLines products = {
        "", "ZOR Installation Copy Name:C1", "Global Profiles:", Rule('-', 120), Left(globalName + ":", 30) + "1",
        Left(globalName + "xx:", 30) + "2", Left(globalName + "xxx:", 30) + "3", Rule('-', 120),
        "ZOR Instance Name:PROD", Rule('-', 68), "Parameter Name                      Value                  ",
        Rule('-', 68), Left(instanceName, 36) + "5000", Rule('-', 68),
    };
    SnapshotSection copies;
    ReadZORProductsSection(ViewsOf(products), copies);
    const std::map<std::string, std::string> expected = {
        {"copy C1", ""},
        {"copy C1: global profile " + globalName, "1"},
        {"copy C1: global profile " + globalName + "xx", "2"},
        {"copy C1: global profile " + globalName + "xxx", "3"},
        {"copy C1: instance PROD: " + instanceName, "5000"},
    };
    EXPECT_EQ(Values(copies), expected);
}

// A field of a thing as the JSON form shows it: "key=text", a list's texts
// joined by "|".
std::vector<std::string> FieldTexts(const std::vector<ItemField>& fields)
{
    std::vector<std::string> texts;
    for (const ItemField& field : fields) {
        std::string joined;
        for (const std::string& text : field.texts)
            joined += (joined.empty() ? "" : "|") + text;
        texts.push_back(field.key + "=" + joined);
    }
    return texts;
}

TEST(SectionReaders, EachThingOfACopyOrADriverHasItsFieldsWhereverItStands)
{
    const TextLines odbc = {
        "", "Total ZOR ODBC Drivers:1", "ODBC Driver:D", Rule('-', 76),
        "Parameter Name                Value                ", Rule('-', 76), Left("Port", 30) + "5000",
        Left("Port", 30) + "5001", Rule('-', 76),
    };
    SnapshotSection drivers;
    ReadODBCDriversSection(ViewsOf(odbc), drivers);
    const ItemFields parameter = drivers.FieldsOf("driver D: Port", drivers.items.at("driver D: Port"));
    EXPECT_EQ(parameter.kind, "driverParameter");
    EXPECT_EQ(FieldTexts(parameter.names), (std::vector<std::string>{"driver=D", "name=Port"}));
    EXPECT_EQ(FieldTexts(parameter.values), (std::vector<std::string>{"value=5000|5001"}));

    const TextLines products = {
        "", "ZOR Installation Copy Name:C1", "Global Profiles:", Rule('-', 120), Left("Home:", 30) + "/opt/zor",
        Rule('-', 120), "ZOR Instance Name:PROD", Rule('-', 68),
        "Parameter Name                      Value                  ", Rule('-', 68), Left("Port", 36) + "5000",
        Rule('-', 68),
    };
    SnapshotSection copies;
    ReadZORProductsSection(ViewsOf(products), copies);
    const std::string home = "copy C1: global profile Home";
    const ItemFields global = copies.FieldsOf(home, copies.items.at(home));
    EXPECT_EQ(global.kind, "globalProfileValue");
    EXPECT_EQ(FieldTexts(global.names), (std::vector<std::string>{"copy=C1", "name=Home"}));
    EXPECT_EQ(FieldTexts(global.values), (std::vector<std::string>{"value=/opt/zor"}));
    const std::string port = "copy C1: instance PROD: Port";
    const ItemFields instanceParameter = copies.FieldsOf(port, copies.items.at(port));
    EXPECT_EQ(instanceParameter.kind, "instanceParameter");
    EXPECT_EQ(FieldTexts(instanceParameter.names),
              (std::vector<std::string>{"copy=C1", "instance=PROD", "name=Port"}));
    EXPECT_EQ(FieldTexts(instanceParameter.values), (std::vector<std::string>{"value=5000"}));
}

TEST(SectionReaders, AParameterNameThatFillsItsColumnIsNamedWithTheWholeRow)
{
    // Nothing stands between such a name and its value: the row is all there is.
    const TextLines lines = {
        "", "ZOR Installation Copy Name:C1", "ZOR Instance Name:PROD", Rule('-', 68),
        "Parameter Name                      Value                  ", Rule('-', 68),
        Text("Port", 36, 'p') + "5000", Text("Port", 37, 'p') + "6000", Rule('-', 68),
    };
    SnapshotSection section;
    ReadZORProductsSection(ViewsOf(lines), section);
    EXPECT_EQ(section.items.count("copy C1: instance PROD: " + Text("Port", 36, 'p') + "5000"), 1u);
    EXPECT_EQ(section.items.count("copy C1: instance PROD: " + Text("Port", 37, 'p') + "6000"), 1u);
}

// The names of a driver's parameters (a column of 30), of a copy's global
// profiles (30 with their colon) and of an instance's parameters (36), one
// shorter than their column, as long as it, one longer and as long as a
// registry name the recorder writes: a name shorter than its column is split
// from its value; one that fills it leaves nothing between them, and the
// thing is named with the whole row.
TEST(SectionReaders, ParameterAndProfileNamesAroundTheirColumnsAreReadAsWritten)
{
    for (const std::size_t length : LengthsAround(30, 255)) {
        const std::string name = Text("Param", length, 'p');
        const TextLines odbc = {
            "", "Total ZOR ODBC Drivers:1", "ODBC Driver:D", Rule('-', 76),
            "Parameter Name                Value                ", Rule('-', 76), Left(name, 30) + "v1", Rule('-', 76),
        };
        SnapshotSection drivers;
        ReadODBCDriversSection(ViewsOf(odbc), drivers);
        const std::map<std::string, std::string> driver =
            length < 30 ? std::map<std::string, std::string>{{"driver D", ""}, {"driver D: " + name, "v1"}}
                        : std::map<std::string, std::string>{{"driver D", ""}, {"driver D: " + name + "v1", ""}};
        EXPECT_EQ(Values(drivers), driver) << length;
    }
    for (const std::size_t length : LengthsAround(30, 255)) {
        const std::string name = Text("Home", length - 1, 'h');
        const TextLines products = {
            "", "ZOR Installation Copy Name:C1", "Global Profiles:", Rule('-', 120), Left(name + ":", 30) + "/opt/zor",
            Rule('-', 120),
        };
        SnapshotSection copies;
        ReadZORProductsSection(ViewsOf(products), copies);
        const std::string profile = "copy C1: global profile " + name;
        EXPECT_EQ(copies.items.count(profile), 1u) << length;
        EXPECT_EQ(copies.items.count(profile) ? copies.items.at(profile).value : std::string(), "/opt/zor") << length;
    }
    for (const std::size_t length : LengthsAround(36, 255)) {
        const std::string name = Text("Port", length, 'i');
        const TextLines instance = {
            "", "ZOR Installation Copy Name:C1", "ZOR Instance Name:PROD", Rule('-', 68),
            "Parameter Name                      Value                  ", Rule('-', 68), Left(name, 36) + "5000",
            Rule('-', 68),
        };
        SnapshotSection copies;
        ReadZORProductsSection(ViewsOf(instance), copies);
        const std::string whole = "copy C1: instance PROD: " + name + (length < 36 ? "" : "5000");
        EXPECT_EQ(copies.items.count(whole), 1u) << length;
        EXPECT_EQ(copies.items.count(whole) ? copies.items.at(whole).value : std::string(), length < 36 ? "5000" : "")
            << length;
    }
}

TEST(SectionReaders, TheEmptyParentOfV9CopiesIsNoCopyBeforeV9)
{
    // Under the layout before V9 the parent key of the V9 copies has the old
    // copy's name, and is listed as a copy with nothing in it.
    const std::vector<std::string> emptyCopy = {
        "", Rule('-', 48), "Total Products     :0", "Total ZOR Instances:0", Rule('-', 48), "",
        "Global Profiles:", Rule('-', 120), Rule('-', 120), "", "ZOR Products installed:", Rule('-', 128),
        "Product Name                            Product Code                            "
        "Version   Service Level       Last Modified Date",
        Rule('-', 128), Rule('-', 128), "", "ZOR Instances:", Rule('-', 33), "Instance Name                    ",
        Rule('-', 33), Rule('-', 33), "",
    };
    TextLines lines = {"", Rule('*', 93),
                          "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *",
                          Rule('*', 93)};
    lines.insert(lines.end(), emptyCopy.begin(), emptyCopy.end());
    const TextLines partB = {
        "", Rule('*', 93),
        "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *",
        Rule('*', 93), "", "Total ZOR Copies:1", Rule('-', 45), "ZOR Copy Name", Rule('-', 45), "C1", Rule('-', 45),
        "", "ZOR Installation Copy Name:C1",
    };
    SnapshotSection withoutV9;
    ReadZORProductsSection(ViewsOf(lines), withoutV9);
    EXPECT_EQ(Values(withoutV9), (std::map<std::string, std::string>{{"copy before V9 #1", ""}}));

    lines.insert(lines.end(), partB.begin(), partB.end());
    lines.insert(lines.end(), emptyCopy.begin() + 1, emptyCopy.end());
    SnapshotSection withV9;
    ReadZORProductsSection(ViewsOf(lines), withV9);
    EXPECT_EQ(Values(withV9), (std::map<std::string, std::string>{{"copy C1", ""}}));
}

// A row that no reading fits (here a language that isn't a number, which the
// recorder never writes) is cut at its columns; once a table's search budget
// is spent, its rows are cut at their columns without a search.
TEST(SectionReaders, RowsThatNoReadingFitsAreCutAtTheirColumnsAndTheirSearchIsBounded)
{
    const RowField fields[] = {{30, 99, nullptr}, {65, 99, nullptr}, {20, 99, nullptr}, {11, 10, nullptr}, {0, 99, nullptr}};
    RowField numbered[5];
    std::copy(std::begin(fields), std::end(fields), numbered);
    numbered[3].accepts = [](std::string_view text) { return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos; };
    const std::string row = Left("TAQ Inc.", 30) + Left(std::string(70, 'n'), 65) + Left("9.0", 20) + Left("", 11) + "C:\\";
    RowSearchBudget budget;
    const std::vector<std::string> cut = Texts(RecordedRowFields(row, numbered, 5, budget));
    EXPECT_EQ(cut, (std::vector<std::string>{"TAQ Inc.", std::string(65, 'n'), "nnnnn9.0", "", "C:\\"}));
    EXPECT_LT(budget.left, RowSearchBudget().left);

    RowSearchBudget spent;
    spent.left = 0;
    EXPECT_EQ(Texts(RecordedRowFields(row, numbered, 5, spent)), cut);
    // A row that fits its columns needs no search, budget or not.
    const std::string fitting = Left("TAQ Inc.", 30) + Left("ZOR Client", 65) + Left("9.0", 20) + Left("1033", 11) + "C:\\";
    EXPECT_EQ(Texts(RecordedRowFields(fitting, numbered, 5, spent)),
              (std::vector<std::string>{"TAQ Inc.", "ZOR Client", "9.0", "1033", "C:\\"}));
    // With budget, the overflowing name is read whole.
    const std::string overflowing = Left("TAQ Inc.", 30) + std::string(70, 'n') + Left("9.0", 20) + Left("1033", 11) + "C:\\";
    RowSearchBudget fresh;
    EXPECT_EQ(Texts(RecordedRowFields(overflowing, numbered, 5, fresh)),
              (std::vector<std::string>{"TAQ Inc.", std::string(70, 'n'), "9.0", "1033", "C:\\"}));
}

namespace {

// A software table of these rows, each a name and a version.
TextLines SoftwareTable(const std::vector<std::pair<std::string, std::string>>& rows)
{
    TextLines lines = {"", Rule('-', 185),
                       "Publisher                     Product Name                                                     "
                       "Version             InstallDate   Language   Location",
                       Rule('-', 185)};
    for (const auto& row : rows)
        lines.push_back(Left("TAQ Inc.", 30) + (row.first.size() < 65 ? Left(row.first, 65) : row.first) +
                        Left(row.second, 20) + Left("20240105", 14) + Left("1033", 11) + "C:\\ZOR");
    lines.push_back(Rule('-', 185));
    return lines;
}

// Each thing's value and the texts of its fields.
std::map<std::string, std::vector<std::string>> ValuesAndFields(const SnapshotSection& section)
{
    std::map<std::string, std::vector<std::string>> values;
    for (const auto& item : section.items) {
        const ItemFields fields = section.FieldsOf(item.first, item.second);
        std::vector<std::string> texts = FieldTexts(fields.names);
        const std::vector<std::string> valueTexts = FieldTexts(fields.values);
        texts.insert(texts.end(), valueTexts.begin(), valueTexts.end());
        texts.push_back(std::string(item.second.value));
        values[std::string(item.first)] = texts;
    }
    return values;
}

}  // namespace

// Each table read from the one read before it gives what reading it whole
// gives: rows changed, added and gone, names listed more than once, a row
// that only a search reads, and the table behind it.
TEST(SectionReaders, SoftwareReadFromTheTableBeforeItIsReadAsWhole)
{
    std::vector<std::pair<std::string, std::string>> rows;
    for (int i = 0; i < 40; ++i)
        rows.emplace_back("Product " + std::to_string(i % 30), "1." + std::to_string(i));
    std::vector<std::vector<std::pair<std::string, std::string>>> tables = {rows};
    rows[3].second = "9.9";   // a name listed twice
    rows[35].second = "8.8";  // its other row
    rows[20].second = "7.7";  // a name listed once
    rows.emplace_back("Product new", "1.0");
    tables.push_back(rows);
    rows.pop_back();
    rows.pop_back();
    rows[10].first = "Product 11";  // now listed twice
    tables.push_back(rows);
    rows[12].first = std::string(70, 'n');  // read only by a search
    tables.push_back(rows);
    rows[13].second = "6.6";
    tables.push_back(rows);
    rows[12].first = "Product 12";
    tables.push_back(rows);
    rows[14].second = "5.5";
    tables.push_back(rows);
    CSoftwareTable table;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const TextLines lines = SoftwareTable(tables[i]);
        SnapshotSection whole;
        ReadSoftwareSection(ViewsOf(lines), whole);
        const std::shared_ptr<SnapshotSection> again = table.Read(ViewsOf(lines));
        EXPECT_EQ(ValuesAndFields(*again), ValuesAndFields(whole)) << "table " << i;
    }
}
