#include <gtest/gtest.h>

#include <ctime>
#include <regex>
#include <string>

#include "history/HistoryPaths.h"
#include "support/TestMachine.h"

namespace {

std::string StampOf(const std::tm* calendar)
{
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y%m%d %H:%M:%S", calendar);
    return text;
}

std::string LocalStampOf(std::time_t moment)
{
    return StampOf(std::localtime(&moment));
}

std::string UtcStampOf(std::time_t moment)
{
    return StampOf(std::gmtime(&moment));
}

void SetVersion(TestMachine& machine, unsigned major, unsigned minor, unsigned platformId)
{
    machine.Machine().version.majorVersion = major;
    machine.Machine().version.minorVersion = minor;
    machine.Machine().version.platformId = platformId;
}

}  // namespace

TEST(TimeStamp, HasSeventeenCharactersDateBlankTime)
{
    const std::string stamp = GetTimeStamp();

    EXPECT_EQ(17u, stamp.size());
    EXPECT_TRUE(std::regex_match(stamp, std::regex("[0-9]{8} [0-9]{2}:[0-9]{2}:[0-9]{2}"))) << stamp;
}

TEST(TimeStamp, IsTheLocalTimeNow)
{
    // Local time can only be told from UTC in a zone away from it: the test
    // runs with the zone IST-5:30 (set by the test's environment).
    const std::time_t before = std::time(nullptr);
    ASSERT_NE(LocalStampOf(before), UtcStampOf(before))
        << "this test needs a time zone away from UTC, e.g. TZ=IST-5:30";
    const std::string stamp = GetTimeStamp();
    const std::time_t after = std::time(nullptr);

    EXPECT_LE(LocalStampOf(before), stamp);
    EXPECT_GE(LocalStampOf(after), stamp);
}

struct VersionRow {
    unsigned major;
    unsigned minor;
    unsigned platformId;
    bool windowsNT;
};

// The row by its fields: printed as raw bytes, its padding would give the
// test another name at each run, and CTest, which lists the tests first,
// would then not find the one it listed.
void PrintTo(const VersionRow& row, std::ostream* out)
{
    *out << row.major << '.' << row.minor << " platform " << row.platformId << (row.windowsNT ? " NT" : " not NT");
}

class WindowsNTDecision : public ::testing::TestWithParam<VersionRow> {};

TEST_P(WindowsNTDecision, FollowsTheVersionTable)
{
    const VersionRow row = GetParam();
    EXPECT_EQ(row.windowsNT, IsWindowsNTVersion(row.major, row.minor, row.platformId))
        << row.major << "." << row.minor << " platform " << row.platformId;
}

INSTANTIATE_TEST_SUITE_P(EveryRow, WindowsNTDecision,
                         ::testing::Values(VersionRow{3, 10, 2, true}, VersionRow{3, 51, 1, true},
                                           VersionRow{3, 0, 0, true}, VersionRow{4, 0, 1, false},
                                           VersionRow{4, 0, 2, true}, VersionRow{4, 0, 0, true},
                                           VersionRow{4, 0, 3, true}, VersionRow{4, 10, 1, false},
                                           VersionRow{4, 10, 2, false}, VersionRow{4, 10, 0, false},
                                           VersionRow{4, 90, 1, false}, VersionRow{4, 90, 2, false},
                                           VersionRow{4, 1, 1, true}, VersionRow{4, 20, 1, true},
                                           VersionRow{4, 91, 2, true}, VersionRow{5, 0, 2, true},
                                           VersionRow{5, 1, 1, true}, VersionRow{6, 10, 1, true},
                                           VersionRow{10, 0, 2, true}, VersionRow{0, 0, 0, true}));

TEST(IsWindowsNT, AsksTheMachineEachTime)
{
    TestMachine machine;
    SetVersion(machine, 4, 10, 1);
    const bool windows98 = IsWindowsNT();
    SetVersion(machine, 5, 1, 2);
    const bool windowsXP = IsWindowsNT();
    SetVersion(machine, 4, 0, 1);
    const bool windows95 = IsWindowsNT();
    SetVersion(machine, 4, 0, 2);
    const bool windowsNT4 = IsWindowsNT();

    EXPECT_FALSE(windows98);
    EXPECT_TRUE(windowsXP);
    EXPECT_FALSE(windows95);
    EXPECT_TRUE(windowsNT4);
}

TEST(IsWindowsNT, AFailedVersionCallCountsAsWindowsNT)
{
    TestMachine machine;
    SetVersion(machine, 0, 0, 0);
    EXPECT_TRUE(IsWindowsNT());
}
