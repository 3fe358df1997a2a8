// The history's texts decoded from the code page that wrote them, and the
// UTF-8 that the page and the JSON form take.
#include <gtest/gtest.h>

#include "report/DecodedTexts.h"
#include "report/TextDecoding.h"

TEST(TextDecoding, EachKnownCodePageDecodesByItsTable)
{
    EXPECT_EQ(CTextDecoder(1252).Utf8("M\xE4schine \x80 \x9F"), "M\xC3\xA4schine \xE2\x82\xAC \xC5\xB8");
    // Central European: "Łódź", with the Polish letters where 1252 has others.
    EXPECT_EQ(CTextDecoder(1250).Utf8("\xA3\xF3\x64\x9F"), "\xC5\x81\xC3\xB3\x64\xC5\xBA");
    // Cyrillic: "Привет".
    EXPECT_EQ(CTextDecoder(1251).Utf8("\xCF\xF0\xE8\xE2\xE5\xF2"),
              "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82");
    // The DOS code page: box drawing and "é".
    EXPECT_EQ(CTextDecoder(437).Utf8("\xC9\xCD\x82"), "\xE2\x95\x94\xE2\x95\x90\xC3\xA9");
}

TEST(TextDecoding, BytesThatTheCodePageLeavesUndefinedBecomeTheReplacementCharacter)
{
    EXPECT_EQ(CTextDecoder(1252).Utf8("a\x81" "b\x8D\x8F\x90\x9D"),
              "a\xEF\xBF\xBD" "b\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CTextDecoder(1251).Utf8("\x98"), "\xEF\xBF\xBD");
}

TEST(TextDecoding, Utf8IsTakenAsItIsAndWhatIsNotUtf8BecomesTheReplacementCharacter)
{
    const CTextDecoder utf8(CTextDecoder::kUtf8);
    EXPECT_EQ(utf8.Utf8("M\xC3\xA4schine \xE2\x82\xAC \xF0\x9F\x98\x80"), "M\xC3\xA4schine \xE2\x82\xAC \xF0\x9F\x98\x80");
    // A lone continuation byte, a cut sequence, an overlong "/" and a surrogate.
    EXPECT_EQ(utf8.Utf8("\x80|\xE2\x82|\xC0\xAF|\xED\xA0\x80"),
              "\xEF\xBF\xBD|\xEF\xBF\xBD\xEF\xBF\xBD|\xEF\xBF\xBD\xEF\xBF\xBD|\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(utf8.Utf8("\xE2\x82"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(TextDecoding, AnUnknownCodePageIsWindows1252)
{
    EXPECT_FALSE(CTextDecoder::Knows(932));
    EXPECT_EQ(CTextDecoder(932).CodePage(), 1252);
    EXPECT_STREQ(CTextDecoder(932).Name(), "windows-1252");
    EXPECT_STREQ(CTextDecoder(CTextDecoder::kUtf8).Name(), "utf-8");
}

TEST(TextDecoding, ThePageAndTheJsonGetNoControlCharacter)
{
    EXPECT_EQ(CleanUtf8("a\tb\x1b[2J\x7f\xC2\x9B\xC2\xA0"),
              "a\tb\xEF\xBF\xBD[2J\xEF\xBF\xBD\xEF\xBF\xBD\xC2\xA0");
    EXPECT_EQ(CleanUtf8("\xE4"), "\xEF\xBF\xBD");
}

TEST(TextDecoding, AHistoryWhoseLogPathsBeginAtTheRootWasWrittenOnLinuxInUtf8)
{
    EventRecord windows;
    windows.eventLogFile = "C:\\ProgramData\\TAQ\\ZORHistory\\E1\\ZORInstallEvent.Log";
    EventRecord linux;
    linux.eventLogFile = "/var/lib/TAQ/ZORHistory/E1/ZORInstallEvent.Log";
    const EventRecord none;
    EXPECT_EQ(DecoderOf({none, linux}, 1251).CodePage(), CTextDecoder::kUtf8);
    EXPECT_EQ(DecoderOf({none, windows}, 1251).CodePage(), 1251);
    EXPECT_EQ(DecoderOf({windows}, 1252).CodePage(), 1252);
    EXPECT_EQ(DecoderOf({}, 437).CodePage(), 437);
}
