// The EventID that an installer gets when it has none of its own: its short
// name, its time stamp and random digits, and the form of a fresh one.
#include <algorithm>
#include <ctime>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "recorder/EventIdMaker.h"

namespace {

using Strings = std::vector<std::string>;

std::tm Moment(int year, int month, int day, int hour, int minute, int second)
{
    std::tm local = {};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    return local;
}

TEST(ShortEventName, KeepsLettersDigitsDashesAndUnderscoresOfTheFirstCandidate)
{
    EXPECT_EQ(ShortEventName({"ZOR-Server_9", "Other"}), "ZOR-Server_9");
}

TEST(ShortEventName, DropsBlanksAndSignsThatPathsSectionsOrCommandLinesRead)
{
    EXPECT_EQ(ShortEventName({"ZOR Server (9) \"x\\y/z:[a]=b;c'$%\t\xe9"}), "ZORServer9xyzabc");
}

TEST(ShortEventName, IsCutToItsLength)
{
    EXPECT_EQ(ShortEventName({"ZOR Server (recorded by ZORRecorder.dll)"}), "ZORServerrecorde");
    EXPECT_EQ(ShortEventName({"ZOR Server (recorded by ZORRecorder.dll)"}).size(), kEventNameLength);
}

TEST(ShortEventName, PassesOverCandidatesWithoutAnyKeptCharacter)
{
    EXPECT_EQ(ShortEventName({"", " ()!", "ZOR Server"}), "ZORServer");
}

TEST(ShortEventName, IsZorWhenNoCandidateHoldsOne)
{
    EXPECT_EQ(ShortEventName({"", "..."}), "ZOR");
    EXPECT_EQ(ShortEventName({}), "ZOR");
}

TEST(MakeEventId, JoinsNameDateTimeAndFourHexDigits)
{
    EXPECT_EQ(MakeEventId("ZORServer", Moment(2026, 11, 25, 13, 5, 12), 0x3FA9),
              "ZORServer-20261125-130512-3fa9");
}

TEST(MakeEventId, PadsEveryFieldWithZeros)
{
    EXPECT_EQ(MakeEventId("Z", Moment(2027, 1, 2, 3, 4, 5), 0xA), "Z-20270102-030405-000a");
}

TEST(MakeEventId, KeepsTheLowSixteenBitsOfTheRandomNumber)
{
    EXPECT_EQ(MakeEventId("Z", Moment(2026, 12, 31, 23, 59, 59), 0xFFFF1234u),
              "Z-20261231-235959-1234");
}

TEST(NewEventId, HasTheFormOfAnEventIdForTheShortName)
{
    const std::string id = NewEventId({"", "ZOR Server"});
    EXPECT_TRUE(std::regex_match(id, std::regex("ZORServer-20[0-9]{6}-[0-9]{6}-[0-9a-f]{4}"))) << id;
}

TEST(NewEventId, TwoInTheSameSecondDifferMostOfTheTime)
{
    // Sixteen random bits: eight ids made at once all alike would be a fault
    // of the random source, not chance.
    Strings ids;
    for (int i = 0; i < 8; ++i)
        ids.push_back(NewEventId({"Z"}).substr(18));
    EXPECT_FALSE(std::all_of(ids.begin(), ids.end(), [&](const std::string& id) { return id == ids[0]; }));
}

}  // namespace
