// The installed-software report: the products under the installer's data for
// the local system account, the Language number, the publisher filter and the
// report's lines.
#include <cstdint>
#include <ios>
#include <string>

#include <gtest/gtest.h>

#include "ServicesProductsCapture.h"
#include "collectors/CProductsList.h"
#include "platform/Registry.h"

namespace {

const std::string kProducts =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Products";

// 185 hyphens: ten rows of 18, then 5.
const std::string kRule =
    "------------------" "------------------" "------------------" "------------------"
    "------------------" "------------------" "------------------" "------------------"
    "------------------" "------------------" "-----";
const std::string kHeader =
    "Publisher                     Product Name                                                     "
    "Version             InstallDate   Language   Location";

std::string Blanks(std::size_t count)
{
    return std::string(count, ' ');
}

class ProductsReport : public LoggedReportTest {
protected:
    std::string Properties(const std::string& product) const
    {
        return kProducts + "\\" + product + "\\InstallProperties";
    }

    void SetText(const std::string& product, const std::string& name, const std::string& text)
    {
        machine.Machine().registry.SetString(Properties(product), name, text);
    }

    // A product with a publisher and a name, and nothing else.
    void AddProduct(const std::string& product, const std::string& publisher,
                    const std::string& displayName)
    {
        SetText(product, "Publisher", publisher);
        SetText(product, "DisplayName", displayName);
    }

    void CollectAndWrite()
    {
        CProductsList list;
        EXPECT_EQ(list.Collect(), 0);
        list.Write();
    }

    static std::string Frame() { return TextLines({"", kRule, kHeader, kRule, kRule}); }
};

TEST(ProductLanguage, DecimalTextIsReadUpToTheFirstOtherCharacter)
{
    EXPECT_EQ(LanguageNumber("1033"), 1033u);
    EXPECT_EQ(LanguageNumber("  \t1033"), 1033u);
    EXPECT_EQ(LanguageNumber("+1031"), 1031u);
    EXPECT_EQ(LanguageNumber("1033,1031"), 1033u);
    EXPECT_EQ(LanguageNumber("12ab34"), 12u);
}

TEST(ProductLanguage, TextWithoutDigitsIsZero)
{
    EXPECT_EQ(LanguageNumber(""), 0u);
    EXPECT_EQ(LanguageNumber("English"), 0u);
    EXPECT_EQ(LanguageNumber("-"), 0u);
    EXPECT_EQ(LanguageNumber(" x1033"), 0u);
}

TEST(ProductLanguage, NegativeTextIsTheUnsignedValueOfItsBits)
{
    EXPECT_EQ(LanguageNumber("-1"), 4294967295u);
    EXPECT_EQ(LanguageNumber("-1033"), 4294966263u);
}

TEST(ProductLanguage, NumbersBeyondALongStopAtItsLimits)
{
    EXPECT_EQ(LanguageNumber("99999999999"), 2147483647u);
    EXPECT_EQ(LanguageNumber("-99999999999"), 2147483648u);
    EXPECT_EQ(LanguageNumber("4294967295"), 2147483647u);
}

TEST_F(ProductsReport, MachineWithoutInstallerDataGivesFrameOnly)
{
    CProductsList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_TRUE(list.products.empty());
    list.Write();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ProductsReport, ProductsKeyRefusedGivesFrameOnly)
{
    AddProduct("A1", "Microsoft", "Visual C++");
    machine.Machine().registry.RefuseKey(kProducts, platform::kStatusAccessDenied);
    CollectAndWrite();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ProductsReport, NothingSelectedGivesThreeRulesAndHeader)
{
    AddProduct("A1", "Contoso", "Contoso Tools");
    AddProduct("B2", "microsoft", "Lower Case Publisher");
    CollectAndWrite();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ProductsReport, RowHasItsSixFieldsInTheirColumns)
{
    AddProduct("A1", "TAQ", "ZOR Database");
    SetText("A1", "DisplayVersion", "9.1.0");
    SetText("A1", "InstallDate", "20260105");
    SetText("A1", "InstallLocation", "C:\\Program Files\\TAQ\\ZOR\\");
    machine.Machine().registry.SetDword(Properties("A1"), "Language", 1033);
    CollectAndWrite();
    // Columns start at 1, 31, 96, 116, 130 and 141, as the header's titles.
    const std::string row = "TAQ" + Blanks(27) + "ZOR Database" + Blanks(53) + "9.1.0" +
                            Blanks(15) + "20260105" + Blanks(6) + "1033" + Blanks(7) +
                            "C:\\Program Files\\TAQ\\ZOR\\";
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule, row, kRule}));
}

TEST_F(ProductsReport, LongerPublisherNameHoldingAKeywordIsListed)
{
    AddProduct("A1", "Microsoft Corporation", "Runtime");
    AddProduct("B2", "The TAQ Group", "Tools");
    CollectAndWrite();
    EXPECT_EQ(Logged(),
              TextLines({"", kRule, kHeader, kRule,
                         "Microsoft Corporation" + Blanks(9) + "Runtime" + Blanks(58) +
                             Blanks(20) + Blanks(14) + "0" + Blanks(10),
                         "The TAQ Group" + Blanks(17) + "Tools" + Blanks(60) + Blanks(20) +
                             Blanks(14) + "0" + Blanks(10),
                         kRule}));
}

TEST_F(ProductsReport, InstallShieldIsListedWhateverItsName)
{
    SetText("A1", "Publisher", "InstallShield Software Corporation");
    SetText("B2", "Publisher", "Tessaly Software");
    CollectAndWrite();
    // A publisher longer than its 30 columns runs into the name.
    EXPECT_EQ(Logged(),
              TextLines({"", kRule, kHeader, kRule,
                         "InstallShield Software Corporation" + Blanks(65) + Blanks(20) +
                             Blanks(14) + "0" + Blanks(10),
                         "Tessaly Software" + Blanks(14) + Blanks(65) + Blanks(20) + Blanks(14) +
                             "0" + Blanks(10),
                         kRule}));
}

TEST_F(ProductsReport, EmptyPublisherIsNotListed)
{
    SetText("A1", "DisplayName", "ZOR Database");
    SetText("A1", "Publisher", "");
    machine.Machine().registry.AddKey(kProducts + "\\B2");
    CProductsList list;
    list.Collect();
    ASSERT_EQ(list.products.size(), 2u);
    EXPECT_FALSE(list.IsSelected(list.products[0]));
    EXPECT_FALSE(list.IsSelected(list.products[1]));
    list.Write();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ProductsReport, SubkeyWithoutInstallPropertiesGivesEmptyRecord)
{
    machine.Machine().registry.AddKey(kProducts + "\\NoProperties");
    CProductsList list;
    list.Collect();
    ASSERT_EQ(list.products.size(), 1u);
    const ProductEntry& entry = list.products[0];
    EXPECT_EQ(entry.displayName, "");
    EXPECT_EQ(entry.displayVersion, "");
    EXPECT_EQ(entry.installDate, "");
    EXPECT_EQ(entry.installLocation, "");
    EXPECT_EQ(entry.publisher, "");
    EXPECT_EQ(entry.language, 0u);
}

TEST_F(ProductsReport, CollectKeepsEveryValueAsTheRegistryHoldsIt)
{
    AddProduct("A1", "  Contoso ", " Name with blanks ");
    SetText("A1", "DisplayVersion", "v 1.0 beta");
    SetText("A1", "InstallDate", "5 Jan 2026");
    SetText("A1", "InstallLocation", "D:\\Apps");
    SetText("A1", "Language", "1031");
    CProductsList list;
    list.Collect();
    ASSERT_EQ(list.products.size(), 1u);
    const ProductEntry& entry = list.products[0];
    EXPECT_EQ(entry.publisher, "  Contoso ");
    EXPECT_EQ(entry.displayName, " Name with blanks ");
    EXPECT_EQ(entry.displayVersion, "v 1.0 beta");
    EXPECT_EQ(entry.installDate, "5 Jan 2026");
    EXPECT_EQ(entry.installLocation, "D:\\Apps");
    EXPECT_EQ(entry.language, 1031u);
}

TEST_F(ProductsReport, LanguageAsNumberAsTextOrMissing)
{
    AddProduct("A1", "TAQ", "Dword");
    machine.Machine().registry.SetDword(Properties("A1"), "Language", 1033);
    AddProduct("B2", "TAQ", "Text");
    SetText("B2", "Language", "1033");
    AddProduct("C3", "TAQ", "Missing");
    AddProduct("D4", "TAQ", "Negative");
    SetText("D4", "Language", "-1");
    AddProduct("E5", "TAQ", "All bits");
    machine.Machine().registry.SetDword(Properties("E5"), "Language", 4294967295u);
    CollectAndWrite();
    const std::string before = Blanks(20) + Blanks(14);
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   "TAQ" + Blanks(27) + "Dword" + Blanks(60) + before + "1033" +
                                       Blanks(7),
                                   "TAQ" + Blanks(27) + "Text" + Blanks(61) + before + "1033" +
                                       Blanks(7),
                                   "TAQ" + Blanks(27) + "Missing" + Blanks(58) + before + "0" +
                                       Blanks(10),
                                   "TAQ" + Blanks(27) + "Negative" + Blanks(57) + before +
                                       "4294967295" + Blanks(1),
                                   "TAQ" + Blanks(27) + "All bits" + Blanks(57) + before +
                                       "4294967295" + Blanks(1),
                                   kRule}));
}

TEST_F(ProductsReport, DisplayNameOfSixtyFiveCharactersRunsIntoTheVersion)
{
    const std::string sixtyFive = std::string(60, 'n') + "12345";
    const std::string sixtySix = std::string(60, 'm') + "123456";
    AddProduct("A1", "TAQ", sixtyFive);
    SetText("A1", "DisplayVersion", "1.0");
    AddProduct("B2", "TAQ", sixtySix);
    SetText("B2", "DisplayVersion", "2.0");
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   "TAQ" + Blanks(27) + sixtyFive + "1.0" + Blanks(17) +
                                       Blanks(14) + "0" + Blanks(10),
                                   "TAQ" + Blanks(27) + sixtySix + "2.0" + Blanks(17) +
                                       Blanks(14) + "0" + Blanks(10),
                                   kRule}));
}

TEST_F(ProductsReport, EmptyLocationEndsWithTheLanguagePadding)
{
    AddProduct("A1", "Microsoft", "Runtime");
    SetText("A1", "Language", "1033");
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   "Microsoft" + Blanks(21) + "Runtime" + Blanks(58) + Blanks(20) +
                                       Blanks(14) + "1033       ",
                                   kRule}));
}

TEST_F(ProductsReport, ValueOfAnotherTypeIsEmptyAndTheRestStands)
{
    AddProduct("A1", "TAQ", "ZOR");
    machine.Machine().registry.SetValue(Properties("A1"), "InstallLocation", platform::kRegExpandSz,
                                        std::string("%ProgramFiles%\\ZOR\0", 20));
    SetText("A1", "DisplayVersion", "9");
    CProductsList list;
    list.Collect();
    ASSERT_EQ(list.products.size(), 1u);
    EXPECT_EQ(list.products[0].installLocation, "");
    EXPECT_EQ(list.products[0].displayVersion, "9");
    EXPECT_EQ(list.products[0].publisher, "TAQ");
}

TEST_F(ProductsReport, RowsFollowTheRegistrysOrder)
{
    AddProduct("B2", "TAQ", "Second");
    AddProduct("a1", "TAQ", "First");
    AddProduct("C3", "Contoso", "Skipped");
    AddProduct("d4", "Microsoft", "Third");
    CollectAndWrite();
    const std::string tail = Blanks(20) + Blanks(14) + "0" + Blanks(10);
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   "TAQ" + Blanks(27) + "First" + Blanks(60) + tail,
                                   "TAQ" + Blanks(27) + "Second" + Blanks(59) + tail,
                                   "Microsoft" + Blanks(21) + "Third" + Blanks(60) + tail,
                                   kRule}));
}

TEST_F(ProductsReport, SecondCollectAppendsEverythingAgain)
{
    AddProduct("A1", "TAQ", "ZOR");
    CProductsList list;
    list.Collect();
    list.Collect();
    EXPECT_EQ(list.products.size(), 2u);
}

TEST_F(ProductsReport, EachValueOpensItsKeyAndNoKeyIsClosed)
{
    AddProduct("A1", "TAQ", "ZOR");
    AddProduct("B2", "TAQ", "ZOR 2");
    CProductsList list;
    list.Collect();
    // One open for the products key, six for each product.
    EXPECT_EQ(machine.Machine().registry.openKeys.size(), 13u);
    EXPECT_EQ(machine.Machine().registry.closedKeys, 0u);
}

// The fill is set to a blank after the publisher, so the publisher's padding
// takes whatever fill the stream had.
TEST_F(ProductsReport, PublisherIsPaddedBeforeTheFillIsSet)
{
    AddProduct("A1", "TAQ", "ZOR");
    CLogger::Instance().fill('*');
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   "TAQ" + std::string(27, '*') + "ZOR" + Blanks(62) + Blanks(20) +
                                       Blanks(14) + "0" + Blanks(10),
                                   kRule}));
}

TEST_F(ProductsReport, RowTurnsOnLeftBitAloneAndLeavesItOn)
{
    AddProduct("A1", "TAQ", "ZOR");
    CLogger& log = CLogger::Instance();
    log.setf(std::ios_base::internal);
    CollectAndWrite();
    EXPECT_EQ(log.flags() & std::ios_base::adjustfield,
              std::ios_base::left | std::ios_base::internal);
}

TEST(ProductLiterals, RuleIsOneHundredEightyFiveHyphens)
{
    EXPECT_EQ(kRule, std::string(185, '-'));
    EXPECT_EQ(kHeader.find("Product Name"), 30u);
    EXPECT_EQ(kHeader.find("Version"), 95u);
    EXPECT_EQ(kHeader.find("InstallDate"), 115u);
    EXPECT_EQ(kHeader.find("Language"), 129u);
    EXPECT_EQ(kHeader.find("Location"), 140u);
}

}  // namespace
