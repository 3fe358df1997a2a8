#include "history/CHistoryStore.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "unit/history/StoreText.h"

namespace {

Lines EventsOf(const TestMachine& machine, const std::string& iniText)
{
    WriteWholeFile(machine.MakeHistoryFolder() + "\\History.ini", iniText);
    std::vector<std::string> events;
    CHistoryStore().ListEvents(events);
    return events;
}

// Neither of the two exit codes of a run: the stop on an invalid parameter.
bool StoppedOutsideTheExitCodes(int status)
{
    return !testing::ExitedWithCode(0)(status) && !testing::ExitedWithCode(1)(status);
}

}  // namespace

TEST(ListEvents, EverySectionButHistoryIsAnEventInFileOrder)
{
    TestMachine machine;
    EXPECT_EQ(EventsOf(machine, IniText({"[History]", "Count=3", "[EVT_C]", "[EVT_A]", "Type=GUI",
                                         "[EVT_B]"})),
              (Lines{"EVT_C", "EVT_A", "EVT_B"}));
}

TEST(ListEvents, FileWithoutSectionsHasNoEvents)
{
    TestMachine machine;
    EXPECT_TRUE(EventsOf(machine, "").empty());
}

TEST(ListEvents, StoreWithoutHistorySectionListsAllSections)
{
    TestMachine machine;
    EXPECT_EQ(EventsOf(machine, IniText({"[EVT_1]", "Count=1", "[EVT_2]"})), (Lines{"EVT_1", "EVT_2"}));
}

TEST(ListEvents, ComparisonWithHistoryIsCaseSensitive)
{
    TestMachine machine;
    EXPECT_EQ(EventsOf(machine, IniText({"[History]", "Count=1", "[EVT_1]", "[history]", "[HISTORY]"})),
              (Lines{"EVT_1", "history", "HISTORY"}));
}

TEST(ListEvents, HistoryInTheMiddleIsRemoved)
{
    TestMachine machine;
    EXPECT_EQ(EventsOf(machine, IniText({"[EVT_1]", "[History]", "Count=1", "[EVT_2]", "[EVT_3]"})),
              (Lines{"EVT_1", "EVT_2", "EVT_3"}));
}

TEST(ListEvents, SectionRightBehindAnErasedHistoryIsNotCompared)
{
    TestMachine machine;
    EXPECT_EQ(EventsOf(machine, IniText({"[History]", "Count=1", "[History]", "[EVT_1]"})),
              (Lines{"History", "EVT_1"}));
}

TEST(ListEvents, ResultIsTheArrayThatWasPassedIn)
{
    TestMachine machine;
    WriteWholeFile(machine.MakeHistoryFolder() + "\\History.ini", IniText({"[History]", "[EVT_1]"}));
    std::vector<std::string> events{"left over"};
    std::vector<std::string>& result = CHistoryStore().ListEvents(events);
    EXPECT_EQ(&result, &events);
    EXPECT_EQ(events, Lines{"EVT_1"});
}

TEST(ListEventsDeathTest, HistoryAsTheLastSectionStopsTheProcess)
{
    TestMachine machine;
    WriteWholeFile(machine.MakeHistoryFolder() + "\\History.ini",
                   IniText({"[EVT_1]", "[History]", "Count=1"}));
    std::vector<std::string> events;
    EXPECT_EXIT(CHistoryStore().ListEvents(events), StoppedOutsideTheExitCodes, "");
}

TEST(ListEventsDeathTest, HistoryAsTheOnlySectionStopsTheProcess)
{
    TestMachine machine;
    WriteWholeFile(machine.MakeHistoryFolder() + "\\History.ini", IniText({"[History]", "Count=0"}));
    std::vector<std::string> events;
    EXPECT_EXIT(CHistoryStore().ListEvents(events), StoppedOutsideTheExitCodes, "");
}
