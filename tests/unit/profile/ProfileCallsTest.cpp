// The profile calls one by one, with the caller's buffers: what they return
// and which bytes they write.
#include "platform/Profile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "unit/profile/ProfileFolder.h"

namespace {

constexpr char kUntouched = '#';

struct Answer {
    std::uint32_t result;
    std::string bytes;  // the whole buffer, as the call left it
};

class ProfileCallsTest : public testing::Test {
protected:
    Answer Names(std::uint32_t size)
    {
        std::vector<char> buffer(size, kUntouched);
        const std::uint32_t result = platform::GetProfileSectionNames(buffer.data(), size, path);
        return {result, std::string(buffer.begin(), buffer.end())};
    }

    Answer Read(const char* section, const char* key, const char* fallback, std::uint32_t size)
    {
        return ReadFrom(path, section, key, fallback, size);
    }

    Answer ReadFrom(const std::string& file, const char* section, const char* key,
                    const char* fallback, std::uint32_t size)
    {
        std::vector<char> buffer(size, kUntouched);
        const std::uint32_t result =
            platform::GetProfileString(section, key, fallback, buffer.data(), size, file);
        return {result, std::string(buffer.begin(), buffer.end())};
    }

    std::uint32_t ReadInt(const char* key, int fallback)
    {
        return platform::GetProfileInt("I", key, fallback, path);
    }

    ProfileFolder folder;
    std::string path = folder.PathOf("calls.ini");
};

}  // namespace

TEST_F(ProfileCallsTest, SectionNamesEachEndedByZeroAndOneZeroBehindTheLast)
{
    WriteWholeFile(path, ProfileText({"[abc]", "[de]", "[fghij]"}));
    const Answer answer = Names(16);
    EXPECT_EQ(answer.result, 13u);
    EXPECT_EQ(answer.bytes, std::string("abc\0de\0fghij\0\0##", 16));
}

TEST_F(ProfileCallsTest, SectionNamesThatDontFitEndTwoBytesShortAndLeaveTheLastByte)
{
    WriteWholeFile(path, ProfileText({"[abc]", "[de]", "[fghij]"}));
    Answer answer = Names(14);
    EXPECT_EQ(answer.result, 12u);
    EXPECT_EQ(answer.bytes, std::string("abc\0de\0fghij\0#", 14));
    answer = Names(12);
    EXPECT_EQ(answer.result, 10u);
    EXPECT_EQ(answer.bytes, std::string("abc\0de\0fgh\0#", 12));
    answer = Names(9);
    EXPECT_EQ(answer.result, 7u);
    EXPECT_EQ(answer.bytes, std::string("abc\0de\0\0#", 9));
}

TEST_F(ProfileCallsTest, SectionNamesOfMissingFileAreOneZero)
{
    const Answer answer = Names(8);
    EXPECT_EQ(answer.result, 0u);
    EXPECT_EQ(answer.bytes, std::string("\0#######", 8));
}

TEST_F(ProfileCallsTest, StringIsTheValueAndOneZeroNothingMore)
{
    WriteWholeFile(path, ProfileText({"[S]", "k=value"}));
    const Answer answer = Read("S", "k", "", 10);
    EXPECT_EQ(answer.result, 5u);
    EXPECT_EQ(answer.bytes, std::string("value\0####", 10));
}

TEST_F(ProfileCallsTest, StringIsCutToSizeMinusOne)
{
    WriteWholeFile(path, ProfileText({"[S]", "k=value"}));
    const Answer answer = Read("S", "k", "", 4);
    EXPECT_EQ(answer.result, 3u);
    EXPECT_EQ(answer.bytes, std::string("val\0", 4));
}

TEST_F(ProfileCallsTest, SizeZeroLeavesTheBufferAlone)
{
    WriteWholeFile(path, ProfileText({"[S]", "k=value"}));
    const Answer answer = Read("S", "k", "", 0);
    EXPECT_EQ(answer.result, 0u);
    EXPECT_EQ(Names(0).result, 0u);
}

TEST_F(ProfileCallsTest, QuotedValueInBufferExactlyAsLongAsTheTextBehindTheQuoteLosesItsLastCharacter)
{
    WriteWholeFile(path, ProfileText({"[S]", "k=\"abcd\""}));
    EXPECT_EQ(Read("S", "k", "", 6).bytes, std::string("abcd\0#", 6));
    EXPECT_EQ(Read("S", "k", "", 5).bytes, std::string("abc\0#", 5));
    EXPECT_EQ(Read("S", "k", "", 4).bytes, std::string("abc\0", 4));
}

TEST_F(ProfileCallsTest, OnlyMatchingQuotesAreTakenOff)
{
    WriteWholeFile(path, ProfileText({"[S]", "a='x'", "b=\"x'", "c=\"", "d=\"\"", "e=x\""}));
    EXPECT_EQ(Read("S", "a", "", 16).result, 1u);
    EXPECT_EQ(Read("S", "b", "", 16).result, 3u);
    EXPECT_EQ(Read("S", "c", "", 16).result, 1u);
    EXPECT_EQ(Read("S", "d", "", 16).result, 0u);
    EXPECT_EQ(Read("S", "e", "", 16).result, 2u);
}

TEST_F(ProfileCallsTest, DefaultLosesBlanksAtItsEndAndItsQuotes)
{
    EXPECT_EQ(Read("S", "k", "  def  ", 16).bytes.substr(0, 6), std::string("  def\0", 6));
    EXPECT_EQ(Read("S", "k", "\"def\"", 16).bytes.substr(0, 4), std::string("def\0", 4));
    EXPECT_EQ(Read("S", "k", "def\t", 16).bytes.substr(0, 5), std::string("def\t\0", 5));
    EXPECT_EQ(Read("S", "k", "   ", 16).bytes.substr(0, 2), std::string(" \0", 2));
}

TEST_F(ProfileCallsTest, UnreachableFileGivesTheDefaultWithItsQuotes)
{
    const std::string unreachable = folder.PathOf("missing-folder\\calls.ini");
    const Answer answer = ReadFrom(unreachable, "S", "k", "\"def\"  ", 16);
    EXPECT_EQ(answer.result, 5u);
    EXPECT_EQ(answer.bytes.substr(0, 6), std::string("\"def\"\0", 6));
}

TEST_F(ProfileCallsTest, LineWithoutEqualsSignReadsAsTheDefault)
{
    WriteWholeFile(path, ProfileText({"[S]", "flag", "empty="}));
    EXPECT_EQ(Read("S", "flag", "def", 16).result, 3u);
    EXPECT_EQ(Read("S", "empty", "def", 16).result, 0u);
}

TEST_F(ProfileCallsTest, NumbersReadAsTheSystemsConversionReadsThem)
{
    WriteWholeFile(path, ProfileText({"[I]", "dec=42", "neg=-5", "hex=0x1F", "upper=0X1F", "oct=0o17",
                                      "bin=0b101", "zero=012", "tail=12abc", "word=abc", "quoted=\"33\"",
                                      "wrap=4294967297", "long=123456789012345678901234567890123",
                                      "empty=", "sign=-"}));
    EXPECT_EQ(ReadInt("dec", -1), 42u);
    EXPECT_EQ(ReadInt("neg", -1), 4294967291u);
    EXPECT_EQ(ReadInt("hex", -1), 31u);
    EXPECT_EQ(ReadInt("upper", -1), 0u);  // only a small "x" marks the base
    EXPECT_EQ(ReadInt("oct", -1), 15u);
    EXPECT_EQ(ReadInt("bin", -1), 5u);
    EXPECT_EQ(ReadInt("zero", -1), 12u);
    EXPECT_EQ(ReadInt("tail", -1), 12u);
    EXPECT_EQ(ReadInt("word", -1), 0u);
    EXPECT_EQ(ReadInt("quoted", -1), 33u);
    EXPECT_EQ(ReadInt("wrap", -1), 1u);
    // Only the first 29 characters are read: 12345678901234567890123456789 modulo 2^32.
    EXPECT_EQ(ReadInt("long", -1), 1849262357u);
    EXPECT_EQ(ReadInt("empty", -1), 4294967295u);
    EXPECT_EQ(ReadInt("sign", -1), 0u);
    EXPECT_EQ(ReadInt("missing", 6), 6u);
}

TEST_F(ProfileCallsTest, WriteOfNewKeyReturnsTrueAndIntoMissingFolderFalse)
{
    EXPECT_TRUE(platform::WriteProfileString("S", "k", "v", path));
    EXPECT_TRUE(platform::WriteProfileString("S", "k", "v", path));
    EXPECT_FALSE(platform::WriteProfileString("S", "k", "v", folder.PathOf("missing-folder\\x.ini")));
    EXPECT_FALSE(PathExists(folder.PathOf("missing-folder")));
}

TEST_F(ProfileCallsTest, WriteToAPathThatIsAFolderFails)
{
    MakeFolders(path);
    EXPECT_FALSE(platform::WriteProfileString("S", "k", "v", path));
}

TEST_F(ProfileCallsTest, LinesBeforeTheFirstSectionFormASectionWithoutName)
{
    WriteWholeFile(path, ProfileText({"k=v", "[A]", "b=c"}));
    EXPECT_EQ(Read("", "k", "def", 8).result, 1u);
    EXPECT_TRUE(platform::WriteProfileString("  ", "top", "1", path));
    EXPECT_EQ(ReadWholeFile(path), ProfileText({"k=v", "top=1", "[A]", "b=c"}));
}

TEST_F(ProfileCallsTest, SecondLineWithEmptyNameInARowIsDropped)
{
    WriteWholeFile(path, ProfileText({"[S]", "=first", "=second", "k=v"}));
    EXPECT_EQ(Read("S", "", "def", 16).bytes.substr(0, 6), std::string("first\0", 6));
    EXPECT_TRUE(platform::WriteProfileString("S", "k", "w", path));
    EXPECT_EQ(ReadWholeFile(path), ProfileText({"[S]", "=first", "k=w"}));
}

TEST_F(ProfileCallsTest, Utf8MarkStaysInFrontOnRewrite)
{
    WriteWholeFile(path, "\xEF\xBB\xBF[A]\r\nb=c\r\n");
    EXPECT_EQ(Names(8).bytes, std::string("A\0\0#####", 8));
    EXPECT_TRUE(platform::WriteProfileString("A", "d", "e", path));
    EXPECT_EQ(ReadWholeFile(path), "\xEF\xBB\xBF[A]\r\nb=c\r\nd=e\r\n");
}
