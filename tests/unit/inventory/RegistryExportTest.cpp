// Registry exports read into the scripted machine's registry, as regedit
// would import them, seen through the registry reader.
#include <string>

#include <gtest/gtest.h>

#include "inventory/RegistryReader.h"
#include "support/TestMachine.h"

namespace {

const std::string kKey = "SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\Copy1";

std::string ExportWithValue(const std::string& valueLine)
{
    return "Windows Registry Editor Version 5.00\r\n\r\n"
           "[HKEY_LOCAL_MACHINE\\SOFTWARE\\TAQ\\ZOR\\InstalledCopies\\Copy1]\r\n" +
           valueLine + "\r\n";
}

class RegistryExport : public ::testing::Test {
protected:
    bool Load(const std::string& valueLine)
    {
        return machine.Machine().registry.LoadExport(ExportWithValue(valueLine));
    }

    TestMachine machine;
};

TEST_F(RegistryExport, DwordOfEightDigitsIsRead)
{
    ASSERT_TRUE(Load("\"Port\"=dword:00001f90"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Port"), "8080");
}

TEST_F(RegistryExport, DwordOfOneDigitIsReadAsRegeditTakesIt)
{
    ASSERT_TRUE(Load("\"Enabled\"=dword:1"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Enabled"), "1");
}

TEST_F(RegistryExport, DwordOfFewerThanEightDigitsKeepsItsValue)
{
    ASSERT_TRUE(Load("\"Port\"=dword:1F90"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Port"), "8080");
}

TEST_F(RegistryExport, DwordOfEightDigitsWithTheTopBitSetReadsSigned)
{
    ASSERT_TRUE(Load("\"Mask\"=dword:ffffffff"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Mask"), "-1");
}

TEST_F(RegistryExport, DwordWithoutDigitsIsRefused)
{
    EXPECT_FALSE(Load("\"Empty\"=dword:"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Empty"), "");
}

TEST_F(RegistryExport, DwordOfNineDigitsIsRefused)
{
    EXPECT_FALSE(Load("\"Long\"=dword:000000001"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Long"), "");
}

TEST_F(RegistryExport, DwordWithANonHexadecimalDigitIsRefused)
{
    EXPECT_FALSE(Load("\"Bad\"=dword:12g4"));
    EXPECT_EQ(ReadRegistryValue(kKey, "Bad"), "");
}

}  // namespace
