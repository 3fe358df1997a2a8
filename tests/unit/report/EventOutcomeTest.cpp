// An event's outcome as the report names it, from what History.ini holds.
#include <gtest/gtest.h>

#include <string>

#include "report/EventFacts.h"
#include "report/ReportWords.h"

namespace {

EventRecord Ended(const std::string& result)
{
    EventRecord event;
    event.completeFlag = "TRUE";
    event.result = result;
    return event;
}

TEST(EventOutcome, ZeroAndTheWordsOfSuccessAreSuccessInAnyCase)
{
    for (const char* result : {"0", "Success", "SUCCESS", "succeeded", "Successful"})
        EXPECT_EQ(OutcomeOf(Ended(result)), EventOutcome::Succeeded) << result;
}

TEST(EventOutcome, TheInstallersRestartResultsAreSuccessThatNeedsARestart)
{
    EXPECT_EQ(OutcomeOf(Ended("3010")), EventOutcome::RestartNeeded);
    EXPECT_EQ(OutcomeOf(Ended("1641")), EventOutcome::RestartNeeded);
    EXPECT_STREQ(OutcomeWord(EventOutcome::RestartNeeded), "succeeded, restart needed");
}

TEST(EventOutcome, NumbersNearTheRestartResultsAreFailures)
{
    for (const char* result : {"1603", "30100", "301", "1641 ", " 3010", "-3010", "1"})
        EXPECT_EQ(OutcomeOf(Ended(result)), EventOutcome::Failed) << '"' << result << '"';
}

TEST(EventOutcome, AnEndWithoutResultAndAStartWithoutEndAreNamedSo)
{
    EXPECT_EQ(OutcomeOf(Ended("")), EventOutcome::NoResult);
    EventRecord started;
    started.completeFlag = "FALSE";
    started.result = "3010";
    EXPECT_EQ(OutcomeOf(started), EventOutcome::NeverEnded);
}

// Known by its log alone, or by a section that the damage to History.ini may
// have cut, an event without the mark of its end may have ended all the same.
TEST(EventOutcome, AnEventThatHistoryIniDoesntHoldWholeEndedAsItsMarkSays)
{
    EventRecord ofTheLog;
    ofTheLog.inHistoryIni = false;
    EXPECT_EQ(OutcomeOf(ofTheLog), EventOutcome::Unknown);
    EventRecord cut;
    cut.partlyRead = true;
    cut.completeFlag = "FALSE";
    EXPECT_EQ(OutcomeOf(cut), EventOutcome::Unknown);
    for (EventRecord event : {ofTheLog, cut}) {
        event.completeFlag = "TRUE";
        event.result = "1603";
        EXPECT_EQ(OutcomeOf(event), EventOutcome::Failed);
    }
}

}  // namespace
