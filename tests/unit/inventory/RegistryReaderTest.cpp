// The registry reader over the scripted machine's registry: values as text,
// the two enumerations, the layout selector and the wide-to-narrow helper.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "inventory/RegistryReader.h"
#include "platform/Registry.h"
#include "support/TestMachine.h"

namespace {

const std::string kKey = "SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\Copy1";

using Names = std::vector<std::string>;

class RegistryReader : public ::testing::Test {
protected:
    ~RegistryReader() override { SetRegistryLayout(LAYOUT_V9); }

    platform::scripted::Registry& Registry() { return machine.Machine().registry; }

    TestMachine machine;
};

// Runs first in this program, before any test has set the selector.
TEST(RegistryLayout, DefaultRootIsTheInstalledCopiesKey)
{
    EXPECT_EQ(GetRegistryLayout(), 1);
    EXPECT_EQ(GetRegistryRoot(), "SOFTWARE\\TAQ\\ZOR\\InstalledCopies");
}

TEST_F(RegistryReader, PreV9LayoutRootIsTheMakersKey)
{
    SetRegistryLayout(LAYOUT_PRE_V9);
    EXPECT_EQ(GetRegistryLayout(), 0);
    EXPECT_EQ(GetRegistryRoot(), "SOFTWARE\\TAQ");
}

TEST_F(RegistryReader, SelectorOfTwoGivesTheSameRootAsOne)
{
    SetRegistryLayout(2);
    EXPECT_EQ(GetRegistryLayout(), 2);
    EXPECT_EQ(GetRegistryRoot(), "SOFTWARE\\TAQ\\ZOR\\InstalledCopies");
    SetRegistryLayout(-1);
    EXPECT_EQ(GetRegistryRoot(), "SOFTWARE\\TAQ\\ZOR\\InstalledCopies");
}

TEST_F(RegistryReader, DwordWithAllBitsSetReadsAsMinusOne)
{
    Registry().SetDword(kKey, "Number", 4294967295u);
    EXPECT_EQ(ReadRegistryValue(kKey, "Number"), "-1");
}

TEST_F(RegistryReader, DwordIsSignedDecimal)
{
    Registry().SetDword(kKey, "Big", 2147483648u);
    Registry().SetDword(kKey, "Lcid", 1033);
    EXPECT_EQ(ReadRegistryValue(kKey, "Big"), "-2147483648");
    EXPECT_EQ(ReadRegistryValue(kKey, "Lcid"), "1033");
}

TEST_F(RegistryReader, DwordZeroAndMissingValueAreToldApart)
{
    Registry().SetDword(kKey, "Zero", 0);
    EXPECT_EQ(ReadRegistryValue(kKey, "Zero"), "0");
    EXPECT_EQ(ReadRegistryValue(kKey, "Missing"), "");
}

TEST_F(RegistryReader, StringOfNinetyNineCharactersReadsWhole)
{
    const std::string text = std::string(90, 'a') + "123456789";
    ASSERT_EQ(text.size(), 99u);
    Registry().SetString(kKey, "Path", text);
    EXPECT_EQ(ReadRegistryValue(kKey, "Path"), text);
}

// The 100-byte buffer holds 99 characters and the NUL: a longer value makes
// the read fail, and the untouched buffer gives the empty string.
TEST_F(RegistryReader, StringTooLongForTheBufferReadsEmpty)
{
    Registry().SetString(kKey, "Path", std::string(100, 'b'));
    EXPECT_EQ(ReadRegistryValue(kKey, "Path"), "");
}

TEST_F(RegistryReader, StringEndsAtItsFirstNul)
{
    Registry().SetValue(kKey, "Two", platform::kRegSz, std::string("first\0second\0", 13));
    EXPECT_EQ(ReadRegistryValue(kKey, "Two"), "first");
}

TEST_F(RegistryReader, OtherTypesReadEmptyThoughTheyHoldData)
{
    Registry().SetValue(kKey, "Expand", platform::kRegExpandSz, std::string("%TEMP%\0", 7));
    Registry().SetValue(kKey, "Multi", platform::kRegMultiSz, std::string("a\0b\0\0", 5));
    Registry().SetValue(kKey, "Binary", platform::kRegBinary, std::string("\x01\x02", 2));
    EXPECT_EQ(ReadRegistryValue(kKey, "Expand"), "");
    EXPECT_EQ(ReadRegistryValue(kKey, "Multi"), "");
    EXPECT_EQ(ReadRegistryValue(kKey, "Binary"), "");
}

TEST_F(RegistryReader, AbsentOrRefusedKeyReadsEmpty)
{
    Registry().SetString(kKey, "Name", "ZOR");
    Registry().RefuseKey(kKey, platform::kStatusAccessDenied);
    EXPECT_EQ(ReadRegistryValue(kKey, "Name"), "");
    EXPECT_EQ(ReadRegistryValue("SOFTWARE\\Nowhere", "Name"), "");
    EXPECT_TRUE(EnumRegistryValues(kKey).empty());
    EXPECT_TRUE(EnumRegistrySubKeys(kKey).empty());
}

TEST_F(RegistryReader, KeyWithoutValuesListsLikeMissingKey)
{
    Registry().AddKey(kKey);
    EXPECT_EQ(EnumRegistryValues(kKey), Names());
    EXPECT_EQ(EnumRegistryValues(kKey + "\\Missing"), Names());
    EXPECT_EQ(EnumRegistryValues(kKey), EnumRegistryValues(kKey + "\\Missing"));
}

TEST_F(RegistryReader, EnumerationsGiveNamesInTheRegistrysOrder)
{
    Registry().SetString(kKey, "Version", "9");
    Registry().SetDword(kKey, "count", 1);
    Registry().SetString(kKey, "Banner", "");
    Registry().AddKey(kKey + "\\Instances");
    Registry().AddKey(kKey + "\\ODBC");
    Registry().AddKey(kKey + "\\clients");
    EXPECT_EQ(EnumRegistryValues(kKey), (Names{"Banner", "count", "Version"}));
    EXPECT_EQ(EnumRegistrySubKeys(kKey), (Names{"clients", "Instances", "ODBC"}));
}

TEST_F(RegistryReader, NameTooLongStopsTheEnumerationThere)
{
    const std::string fits(255, 'a');
    const std::string tooLong = "b" + std::string(255, 'x');
    Registry().SetString(kKey, fits, "");
    Registry().SetString(kKey, tooLong, "");
    Registry().SetString(kKey, "c", "");
    Registry().AddKey(kKey + "\\" + fits);
    Registry().AddKey(kKey + "\\" + tooLong);
    Registry().AddKey(kKey + "\\c");
    EXPECT_EQ(EnumRegistryValues(kKey), (Names{fits}));
    EXPECT_EQ(EnumRegistrySubKeys(kKey), (Names{fits}));
}

TEST_F(RegistryReader, KeysOpenedAreNeverClosed)
{
    Registry().SetString(kKey, "Name", "ZOR");
    ReadRegistryValue(kKey, "Name");
    EnumRegistryValues(kKey);
    EnumRegistrySubKeys(kKey);
    EXPECT_EQ(Registry().openKeys.size(), 3u);
    EXPECT_EQ(Registry().closedKeys, 0u);
}

TEST_F(RegistryReader, WideTextConvertsWithItsTerminator)
{
    char buffer[16];
    std::fill(buffer, buffer + sizeof buffer, 'z');
    EXPECT_EQ(WideToMultiByte(u"Administrators", buffer, sizeof buffer), 0);
    EXPECT_EQ(std::string(buffer), "Administrators");
}

TEST_F(RegistryReader, WideTextTooLongForTheBufferGivesTheErrorCode)
{
    char buffer[4];
    EXPECT_EQ(WideToMultiByte(u"Administrators", buffer, sizeof buffer), 122);
}

}  // namespace
