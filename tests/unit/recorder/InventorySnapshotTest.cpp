// Sections 5 and 6 of the snapshot: the product's copies under both registry
// layouts and its ODBC drivers, read from a registry export that the Wine
// tests import into a real registry too.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "inventory/CODBCDriversList.h"
#include "inventory/CZORProductsList.h"
#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kSnapshotRule(94, '*');
const char kInstallerProducts[] =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Products";

std::string SourceFile(const std::string& relative)
{
    std::ifstream in(std::string(ZOR_GOLDEN_DIR) + "/" + relative, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

Strings GoldenLines(const std::string& name)
{
    std::ifstream in(std::string(ZOR_GOLDEN_DIR) + "/inventory/" + name, std::ios::binary);
    Strings lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::size_t IndexOf(const Strings& lines, const std::string& line, std::size_t from = 0)
{
    return static_cast<std::size_t>(std::find(lines.begin() + from, lines.end(), line) -
                                    lines.begin());
}

// The report lines of section 5 of the first snapshot in a log.
Strings ProductSection(const Strings& log)
{
    const std::size_t heading = IndexOf(log, "5) ZOR Products Installed:");
    const std::size_t next = IndexOf(log, "6) ZOR ODBC Driver Info:", heading);
    return Strings(log.begin() + heading + 1, log.begin() + next - 1);
}

// The report lines of section 6 of the first snapshot, up to its closing lines.
Strings DriverSection(const Strings& log)
{
    const std::size_t heading = IndexOf(log, "6) ZOR ODBC Driver Info:");
    const std::size_t closing = IndexOf(log, kSnapshotRule, heading);
    return Strings(log.begin() + heading + 1, log.begin() + closing);
}

class InventorySnapshot : public RecorderTest {
protected:
    void LoadFixture(const std::string& name)
    {
        ASSERT_TRUE(machine.Machine().registry.LoadExport(
            SourceFile("../fixtures/registry/" + name)));
    }

    // A Windows Installer product whose publisher is selected, so that the
    // software report prints a row and turns the left-adjust bit on.
    void AddSelectedInstallerProduct()
    {
        const std::string key = std::string(kInstallerProducts) + "\\1234\\InstallProperties";
        machine.Machine().registry.SetString(key, "Publisher", "TAQ Corporation");
        machine.Machine().registry.SetString(key, "DisplayName", "ZOR Setup Support");
    }

    Strings StartLog()
    {
        Record({"-start", "E1"});
        return FileLines(EventLog("E1"));
    }
};

// One registry fixture, shared with the tests under Wine, and the hand-written
// reports it must give.
class InventoryFixture : public InventorySnapshot,
                         public ::testing::WithParamInterface<const char*> {
protected:
    std::string Fixture() const { return GetParam(); }
    Strings Golden(const std::string& report, const char* alignment) const
    {
        return GoldenLines(Fixture() + "." + report + "." + alignment + ".txt");
    }
};

TEST_P(InventoryFixture, RightAlignedWhenNoEarlierRowWasPrinted)
{
    LoadFixture(Fixture() + ".reg");
    const Strings log = StartLog();
    ExpectLinesMatch(ProductSection(log), Golden("products", "right"));
    ExpectLinesMatch(DriverSection(log), Golden("odbc", "right"));
}

TEST_P(InventoryFixture, LeftAlignedAfterARowOfTheSoftwareReport)
{
    LoadFixture(Fixture() + ".reg");
    AddSelectedInstallerProduct();
    const Strings log = StartLog();
    ExpectLinesMatch(ProductSection(log), Golden("products", "left"));
    ExpectLinesMatch(DriverSection(log), Golden("odbc", "left"));
}

TEST_P(InventoryFixture, EndSnapshotReportsTheSameInventory)
{
    LoadFixture(Fixture() + ".reg");
    Record({"-start", "E1"});
    Record({"-end", "E1"});
    const Strings log = FileLines(EventLog("E1"));
    const std::size_t after = IndexOf(log, "*  Snapshoot for EventID: E1 -- After  Completed ");
    ASSERT_LT(after, log.size());
    const Strings second(log.begin() + after, log.end());
    ExpectLinesMatch(ProductSection(second), Golden("products", "right"));
    ExpectLinesMatch(DriverSection(second), Golden("odbc", "right"));
}

INSTANTIATE_TEST_SUITE_P(Registries, InventoryFixture,
                         ::testing::Values("nothing_installed", "pre_v9_only", "v9_only",
                                           "both_layouts"));

TEST_F(InventorySnapshot, SelectorStaysAtTheV9LayoutBehindTheSection)
{
    SetRegistryLayout(LAYOUT_PRE_V9);
    StartLog();
    EXPECT_EQ(GetRegistryLayout(), LAYOUT_V9);
}

TEST_F(InventorySnapshot, OnlyTheV9ParentKeyGivesAPartACopyNamedZOR)
{
    machine.Machine().registry.AddKey("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\C1");
    const Strings section = ProductSection(StartLog());
    const Strings partA(section.begin(), section.begin() + 15);
    EXPECT_EQ(partA, (Strings{"", std::string(93, '*'),
                              "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *",
                              std::string(93, '*'), "", std::string(48, '-'),
                              "Total Products     :0", "Total ZOR Instances:0", std::string(48, '-'),
                              "", "Global Profiles:", std::string(120, '-'), std::string(120, '-'), "",
                              "ZOR Products installed:"}));
    EXPECT_EQ(IndexOf(section, "There is no ZOR prior to V9 Installed "), section.size());
    EXPECT_LT(IndexOf(section, "ZOR Installation Copy Name:C1"), section.size());
}

// The product and driver collections on their own, without the snapshot.
class Inventory : public RecorderTest {
protected:
    void SetUp() override { SetRegistryLayout(LAYOUT_V9); }
    void TearDown() override { SetRegistryLayout(LAYOUT_V9); }
    platform::scripted::Registry& Registry() { return machine.Machine().registry; }
};

TEST_F(Inventory, OnlyAnExactZORIsACopyBeforeV9)
{
    SetRegistryLayout(LAYOUT_PRE_V9);
    EXPECT_TRUE(IsCopyKeyName("ZOR"));
    EXPECT_FALSE(IsCopyKeyName("ZOR "));
    EXPECT_FALSE(IsCopyKeyName("zor"));
    SetRegistryLayout(LAYOUT_V9);
    EXPECT_TRUE(IsCopyKeyName("anything"));
    const int other = 2;
    SetRegistryLayout(other);
    EXPECT_TRUE(IsCopyKeyName("zor"));
}

TEST_F(Inventory, AProductKeyBeginsWithZORAndABlank)
{
    EXPECT_TRUE(IsProductKeyName("ZOR Server"));
    EXPECT_TRUE(IsProductKeyName("ZOR "));
    EXPECT_FALSE(IsProductKeyName("ZOR"));
    EXPECT_FALSE(IsProductKeyName("ZORServer"));
    EXPECT_FALSE(IsProductKeyName("zor Server"));
    EXPECT_FALSE(IsProductKeyName("CurrentVersion"));
}

TEST_F(Inventory, CollectingTwiceWithoutClearDoublesTheCopies)
{
    Registry().AddKey("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\C1");
    CZORProductsList list;
    list.Collect();
    list.Collect();
    ASSERT_EQ(list.copies.size(), 2u);
    list.Clear();
    EXPECT_TRUE(list.copies.empty());
}

TEST_F(Inventory, CopyKeyWithoutSubkeysIsACopyWithEmptyFields)
{
    Registry().AddKey("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\Bare");
    CZORProductsList list;
    list.Collect();
    ASSERT_EQ(list.copies.size(), 1u);
    const CZORCopy& copy = list.copies[0];
    EXPECT_EQ(copy.name, "Bare");
    EXPECT_EQ(copy.layout, LAYOUT_V9);
    EXPECT_TRUE(copy.products.empty());
    EXPECT_TRUE(copy.instances.empty());
    EXPECT_TRUE(copy.globalProfile.empty());
    EXPECT_EQ(copy.version.version + copy.version.release + copy.version.modification +
                  copy.version.serviceLevel,
              "");
}

TEST_F(Inventory, TwoCopiesKeepInstancesOfTheSameName)
{
    Registry().SetString("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\C1\\PROFILES\\PROD", "A", "1");
    Registry().SetString("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\C2\\PROFILES\\PROD", "A", "2");
    CZORProductsList list;
    list.Collect();
    ASSERT_EQ(list.copies.size(), 2u);
    ASSERT_EQ(list.copies[0].instances.size(), 1u);
    ASSERT_EQ(list.copies[1].instances.size(), 1u);
    EXPECT_EQ(list.copies[0].instances[0].copyName, "C1");
    EXPECT_EQ(list.copies[1].instances[0].copyName, "C2");
    EXPECT_EQ(list.copies[0].instances[0].parameters[0].value, "1");
    EXPECT_EQ(list.copies[1].instances[0].parameters[0].value, "2");
}

TEST_F(Inventory, TLRInstancesAreListedOnlyBelowTheRootWithATrailingBlank)
{
    Registry().SetString("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\C1\\TLR_PROFILES\\T1", "A", "1");
    CZORProductsList plain;
    plain.Collect();
    ASSERT_EQ(plain.copies.size(), 1u);
    EXPECT_TRUE(plain.copies[0].tlrInstances.empty());

    Registry().AddKey("SOFTWARE\\TAQ\\ZOR\\InstalledCopies \\C1\\TLR_PROFILES\\T1");
    CZORProductsList withBlank;
    withBlank.Collect();
    ASSERT_EQ(withBlank.copies[0].tlrInstances.size(), 1u);
    const CTLRInstance& tlr = withBlank.copies[0].tlrInstances[0];
    EXPECT_EQ(tlr.name, "T1");
    ASSERT_EQ(tlr.parameters.size(), 1u);
    EXPECT_EQ(tlr.parameters[0].value, "1");
}

TEST_F(Inventory, ProductWithoutVersionValuesShowsTwoDots)
{
    Registry().AddKey("SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\C1\\ZOR Tools");
    CZORProductsList list;
    list.Collect();
    ASSERT_EQ(list.copies[0].products.size(), 1u);
    const CZORProduct& product = list.copies[0].products[0];
    EXPECT_EQ(product.version.version + "." + product.version.release + "." +
                  product.version.modification,
              "..");
}

TEST_F(Inventory, DriverNamesMustHoldTAQZORInItsCase)
{
    const std::string drivers = "SOFTWARE\\ODBC\\ODBCINST.INI\\ODBC Drivers";
    for (const char* name : {"TAQ ZOR", "A TAQ ZOR B", "Taq Zor Lower", "TAQ ZO", "TAQZOR"})
        Registry().SetString(drivers, name, "Installed");
    CODBCDriversList list;
    list.Collect();
    ASSERT_EQ(list.drivers.size(), 2u);
    EXPECT_EQ(list.drivers[0].name, "A TAQ ZOR B");
    EXPECT_EQ(list.drivers[1].name, "TAQ ZOR");
    EXPECT_TRUE(list.drivers[1].parameters.empty());
}

}  // namespace
