#include "history/CIniFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/profile/ProfileFolder.h"

namespace {

using Names = std::vector<std::string>;

std::string Letters(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += static_cast<char>('a' + i % 26);
    return text;
}

class CIniFileTest : public HistoryIniTest {};

}  // namespace

TEST_F(CIniFileTest, NewStoreHoldsHistorySectionWithCountZero)
{
    ini.WriteString("History", "Count", "0");
    EXPECT_EQ(ReadWholeFile(path), "[History]\r\nCount=0\r\n");
}

TEST_F(CIniFileTest, WriteStringReturnsZeroWhetherOrNotTheWriteSucceeds)
{
    EXPECT_EQ(ini.WriteString("History", "Count", "0"), 0);
    CIniFile unreachable(folder.PathOf("missing-folder\\History.ini"));
    EXPECT_EQ(unreachable.WriteString("History", "Count", "0"), 0);
    EXPECT_FALSE(PathExists(folder.PathOf("missing-folder")));
}

TEST_F(CIniFileTest, MissingFileSectionOrKeyReadsAsDefault)
{
    EXPECT_EQ(ini.GetString("History", "Count", "none", 256), "none");
    ini.WriteString("History", "Count", "0");
    EXPECT_EQ(ini.GetString("Other", "Count", "none", 256), "none");
    EXPECT_EQ(ini.GetString("History", "Other", "none", 256), "none");
    EXPECT_EQ(ini.GetString("History", "Other", "", 256), "");
}

TEST_F(CIniFileTest, ValueOf300CharactersIsStoredWholeAndReadBackAs255)
{
    const std::string value = Letters(300);
    ini.WriteString("EVT_1", "Path", value);
    EXPECT_EQ(ReadWholeFile(path), "[EVT_1]\r\nPath=" + value + "\r\n");
    EXPECT_EQ(ini.GetString("EVT_1", "Path", "", 256), value.substr(0, 255));
    EXPECT_EQ(ini.GetString("EVT_1", "Path", "", 301), value);
}

TEST_F(CIniFileTest, EmptyValueKeepsItsKeyAndReadsAsEmpty)
{
    ini.WriteString("EVT_1", "End_Time", "");
    EXPECT_EQ(ReadWholeFile(path), "[EVT_1]\r\nEnd_Time=\r\n");
    EXPECT_EQ(ini.GetString("EVT_1", "End_Time", "default", 256), "");
}

TEST_F(CIniFileTest, NewKeysGoToTheEndOfTheirSectionAndNewSectionsToTheEndOfTheFile)
{
    ini.WriteString("History", "Count", "0");
    ini.WriteString("EVT_1", "Event_ID", "EVT_1");
    ini.WriteString("EVT_2", "Event_ID", "EVT_2");
    ini.WriteString("EVT_1", "Result", "done");
    ini.WriteString("History", "Count", "2");
    EXPECT_EQ(ReadWholeFile(path), ProfileText({"[History]", "Count=2", "[EVT_1]", "Event_ID=EVT_1",
                                                "Result=done", "[EVT_2]", "Event_ID=EVT_2"}));
}

TEST_F(CIniFileTest, NamesIgnoreCaseAndKeepTheSpellingFirstWritten)
{
    ini.WriteString("History", "Count", "0");
    ini.WriteString("HISTORY", "count", "1");
    EXPECT_EQ(ReadWholeFile(path), "[History]\r\nCount=1\r\n");
    EXPECT_EQ(ini.GetString("hIsToRy", "COUNT", "", 256), "1");
}

TEST_F(CIniFileTest, EventIdHistoryWritesIntoTheStoresOwnSection)
{
    ini.WriteString("History", "Count", "0");
    ini.WriteString("History", "Event_ID", "History");
    EXPECT_EQ(ReadWholeFile(path), ProfileText({"[History]", "Count=0", "Event_ID=History"}));
    EXPECT_EQ(ini.GetSectionNames(), (Names{"History"}));
}

TEST_F(CIniFileTest, ReservedCharactersArePassedAsTheyStand)
{
    ini.WriteString("a]b", "k", "1");
    ini.WriteString("x=y", "k=ey", "2");
    ini.WriteString("E\r\nX", "k", "3");
    EXPECT_EQ(ReadWholeFile(path),
              ProfileText({"[a]b]", "k=1", "[x=y]", "k=ey=2", "[E", "X]", "k=3"}));
    // Read back as the format reads them: the last "]" closes a name, the
    // first "=" ends a key, a line end splits a line.
    EXPECT_EQ(ini.GetString("a]b", "k", "", 256), "1");
    EXPECT_EQ(ini.GetString("x=y", "k", "", 256), "ey=2");
    EXPECT_EQ(ini.GetString("x=y", "k=ey", "none", 256), "none");
    EXPECT_EQ(ini.GetSectionNames(), (Names{"a]b", "x=y"}));
}

TEST_F(CIniFileTest, SectionNamesComeInFileOrder)
{
    WriteWholeFile(path, ProfileText({"[History]", "Count=3", "[EVT_C]", "[EVT_A]", "Type=GUI", "[EVT_B]"}));
    EXPECT_EQ(ini.GetSectionNames(), (Names{"History", "EVT_C", "EVT_A", "EVT_B"}));
}

TEST_F(CIniFileTest, FileWithoutSectionsOrNoFileHasNoSectionNames)
{
    EXPECT_TRUE(ini.GetSectionNames().empty());
    WriteWholeFile(path, ProfileText({"Count=1", "; note"}));
    EXPECT_TRUE(ini.GetSectionNames().empty());
}

TEST_F(CIniFileTest, SectionNamesStopWithinTheBufferOf10240Bytes)
{
    // "History" and 300 names of 36 characters: 11108 bytes with their zeros.
    std::string text = ProfileText({"[History]", "Count=300"});
    Names names{"History"};
    for (int i = 0; i < 300; ++i) {
        const std::string name = "EVT_" + std::to_string(1000 + i) + "_" + Letters(27);
        text += ProfileText({"[" + name + "]", "Event_ID=" + name});
        names.push_back(name);
    }
    WriteWholeFile(path, text);
    // 8 + 276 * 37 = 10220 bytes fit; the 277th name keeps what still fits
    // before the two closing zeros: 10240 - 2 - 10220 = 18 characters.
    Names expected(names.begin(), names.begin() + 277);
    expected.push_back(names[277].substr(0, 18));
    EXPECT_EQ(ini.GetSectionNames(), expected);
}

TEST_F(CIniFileTest, GetIntReadsTheNumberOrGivesTheDefault)
{
    int fallback = 7;
    EXPECT_EQ(ini.GetInt("History", "Count", fallback), 7);
    ini.WriteString("History", "Count", "42");
    EXPECT_EQ(ini.GetInt("History", "Count", fallback), 42);
    ini.WriteString("History", "Count", "");
    EXPECT_EQ(ini.GetInt("History", "Count", fallback), 7);
    ini.WriteString("History", "Count", "-3");
    EXPECT_EQ(ini.GetInt("History", "Count", fallback), -3);
}

TEST_F(CIniFileTest, WriteIntWritesDecimalAndReturnsThePlatformsResult)
{
    int value = -12;
    EXPECT_NE(ini.WriteInt("Numbers", "Value", value), 0);
    EXPECT_EQ(ReadWholeFile(path), "[Numbers]\r\nValue=-12\r\n");
    CIniFile unreachable(folder.PathOf("missing-folder\\History.ini"));
    EXPECT_EQ(unreachable.WriteInt("Numbers", "Value", value), 0);
}

TEST_F(CIniFileTest, BlanksAroundNamesAndValuesAndQuotesAroundValuesAreDroppedOnRead)
{
    WriteWholeFile(path, ProfileText({"  [ EVT_1 ]  ", "  Type  =  GUI  ", "Path=\"C:\\Program Files\"",
                                      "Copy_Name=' spaced '"}));
    EXPECT_EQ(ini.GetString("EVT_1", "Type", "", 256), "GUI");
    EXPECT_EQ(ini.GetString(" evt_1 ", " type ", "", 256), "GUI");
    EXPECT_EQ(ini.GetString("EVT_1", "Path", "", 256), "C:\\Program Files");
    EXPECT_EQ(ini.GetString("EVT_1", "Copy_Name", "", 256), " spaced ");
}

TEST_F(CIniFileTest, WriteOfTheValueAlreadyThereLeavesTheFileAsItIs)
{
    const std::string text = "; kept\r\n  [ EVT_1 ]  \r\n\r\n  Type  =  GUI  \n";
    WriteWholeFile(path, text);
    ini.WriteString("evt_1", "TYPE", "GUI");
    EXPECT_EQ(ReadWholeFile(path), text);
}

TEST_F(CIniFileTest, WriteRewritesTheWholeFileInTheCallsOwnLayout)
{
    WriteWholeFile(path, "; kept\r\n  [ EVT_1 ]  trailing\r\n\r\n  Type  =  GUI  \nflag\r\r[B]\n=x\n=y\n");
    ini.WriteString("EVT_1", "Type", "CLI");
    EXPECT_EQ(ReadWholeFile(path), ProfileText({"; kept", "[EVT_1]", "Type=CLI", "flag", "[B]", "=x"}));
}

TEST_F(CIniFileTest, LeadingBlanksOfWrittenValuesAreDroppedTrailingOnesStayInTheFile)
{
    ini.WriteString("  EVT_1", "  Type", "  GUI  ");
    EXPECT_EQ(ReadWholeFile(path), "[EVT_1]\r\nType=GUI  \r\n");
    EXPECT_EQ(ini.GetString("EVT_1", "Type", "", 256), "GUI");
}
