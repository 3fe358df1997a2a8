// Each section's reader over lines written by hand; the expected things and
// values are written out here too.
#include <gtest/gtest.h>

#include "ReportTestLogs.h"
#include "report/SectionReaders.h"

using namespace reportlogs;

namespace {

std::map<std::string, std::string> Values(const SnapshotSection& section)
{
    std::map<std::string, std::string> values;
    for (const auto& item : section.items)
        values[item.first] = item.second.value;
    return values;
}

}  // namespace

TEST(SectionReaders, UsersGiveGroupsUsersWithTheirGroupsAndTheLoggedOnUser)
{
    const SectionLines lines = {
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
    ReadUsersSection(lines, section);
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
    const SectionLines lines = {
        "", Rule('-', 185), header, Rule('-', 185),
        Left("TAQ Inc.", 30) + Left("ZOR Client", 65) + Left("9.1.0", 20) + Left("20061012", 14) +
            Left("1033", 11) + "C:\\ZOR",
        Left("Microsoft Corporation", 30) + Left("Windows Installer 3.1", 65) + Left("3.1.4000", 20) +
            Left("", 14) + Left("0", 11),
        Rule('-', 185),
    };
    SnapshotSection section;
    ReadSoftwareSection(lines, section);
    const std::map<std::string, std::string> expected = {{"ZOR Client", "9.1.0"},
                                                         {"Windows Installer 3.1", "3.1.4000"}};
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, ProcessesAreCountedByImageNameWhateverTheAlignmentOfTheirIds)
{
    const SectionLines lines = {
        "", "Processes:4", "--------------------------------------------------- ",
        "Process ID         Process Name                     ",
        "--------------------------------------------------- ",
        Right("4", 19) + "System", Left("812", 19) + "svchost.exe", Left("1204", 19) + "svchost.exe",
        Left("2000000000", 19) + "my tool.exe",
        "---------- Process List ( end )-------------------- ",
    };
    SnapshotSection section;
    ReadProcessesSection(lines, section);
    const std::map<std::string, std::string> expected = {
        {"System", "1"}, {"svchost.exe", "2"}, {"my tool.exe", "1"}};
    EXPECT_EQ(Values(section), expected);
}

TEST(SectionReaders, ServicesGiveTheStateEvenBehindALongDisplayName)
{
    const std::string rule = "-------------------------------------------------------------------- ";
    const std::string longName(64, 'Z');
    const SectionLines lines = {
        "", rule, "Service Name                                                Status   ", rule,
        Left("ZOR Database Server", 60) + Left("Started", 15),
        Left("Windows Installer", 60) + "The service continue is pending",
        longName + Left("Stopped", 15),
        Left("ZOR odd", 60) + Left("Uknown", 15),
        rule,
    };
    SnapshotSection section;
    ReadServicesSection(lines, section);
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
    SectionLines lines = {
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
    ReadZORProductsSection(lines, section);
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
    const SectionLines lines = {
        "", "Total ZOR ODBC Drivers:1", Rule('-', 43), "Driver Name", Rule('-', 43), "TAQ ZOR Driver",
        Rule('-', 43), "", "ODBC Driver:TAQ ZOR Driver", Rule('-', 76),
        "Parameter Name                Value                ", Rule('-', 76),
        Left("Driver", 30) + "C:\\ZOR\\odbc.dll", Left("UsageCount", 30) + "1", Rule('-', 76),
    };
    SnapshotSection section;
    ReadODBCDriversSection(lines, section);
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
    ReadZORProductsSection(NoProductLines(), products);
    SnapshotSection drivers;
    ReadODBCDriversSection(NoDriverLines(), drivers);
    EXPECT_TRUE(products.items.empty());
    EXPECT_TRUE(drivers.items.empty());
}

TEST(SectionReaders, AMemberRowShortOfTheGroupColumnIsAGroupWithoutAUser)
{
    const SectionLines lines = {
        "Local User List:", Rule('-', 74), "Group                                   user   ", Rule('-', 74),
        "Users", Left("Guests", 34), Rule('-', 74),
    };
    SnapshotSection section;
    ReadUsersSection(lines, section);
    const std::map<std::string, std::string> expected = {{"user ", "member of Guests, Users"}};
    EXPECT_EQ(Values(section), expected);
}
