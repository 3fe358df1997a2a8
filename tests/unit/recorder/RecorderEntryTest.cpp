// The recorder's entry: set-up, the option list, validation and the results.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "history/CHistoryStore.h"
#include "recorder/CInstallEvent.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

class RecorderEntry : public RecorderTest {};

TEST_F(RecorderEntry, UpperCaseStartOptionStartsEventWithLowerCaseMode)
{
    machine.MakeHistoryFolder();
    ArgumentList arguments({"-START", "x"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_TRUE(event.Valid);
    EXPECT_EQ(event.Mode, "-start");
    EXPECT_EQ(event.EventID, "x");
}

TEST_F(RecorderEntry, UpperCaseStartOptionIsRecordedAsStart)
{
    EXPECT_EQ(Record({"-START", "x"}), 0);
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_EQ(CInstallEvent("x").GetCompleteFlag(), "FALSE");
    EXPECT_TRUE(PathExists(EventLog("x")));
}

TEST_F(RecorderEntry, EveryOptionMatchesWithoutRegardToCase)
{
    ArgumentList arguments({"-LOGMESSAGE", "x",     "-command", "c",      "-MESSAGE", "m",
                            "-copyname",   "copy",  "-TYPE",    "Silent", "-version", "9",
                            "-SERVICELEVEL", "sl",  "-result",  "r",      "-PRODUCT", "p",
                            "-path",       "d",     "-ACTION",  "a",      "-L",       "log",
                            "-T",          "trace", "-U",       "resp"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_EQ(event.Mode, "-logmessage");
    EXPECT_EQ(event.EventID, "x");
    EXPECT_EQ(event.CommandLine, "c");
    EXPECT_EQ(event.Message, "m");
    EXPECT_EQ(event.CopyName, "copy");
    EXPECT_EQ(event.Type, "Silent");
    EXPECT_EQ(event.Version, "9");
    EXPECT_EQ(event.ServiceLevel, "sl");
    EXPECT_EQ(event.Result, "r");
    EXPECT_EQ(event.Product, "p");
    EXPECT_EQ(event.Path, "d");
    EXPECT_EQ(event.Action, "a");
    EXPECT_EQ(event.LogFileName, "log");
    EXPECT_EQ(event.TraceFile, "trace");
    EXPECT_EQ(event.ResponseFile, "resp");
}

TEST_F(RecorderEntry, EndOptionSetsEndMode)
{
    ArgumentList arguments({"-End", "x"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_TRUE(event.Valid);
    EXPECT_EQ(event.Mode, "-end");
}

TEST_F(RecorderEntry, ListWithoutModeOptionReturnsTwoAndWritesNothing)
{
    machine.MakeHistoryFolder();
    Record({"-start", "first"});
    CapturedOutput output;
    EXPECT_EQ(Record({"-Product", "p", "-message", "m", "x"}), 2);
    EXPECT_EQ(output.Text(), "");
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_EQ(SectionNames(), (Strings{"History", "first"}));
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"History.ini", "first"}));
}

TEST_F(RecorderEntry, EmptyEventIDReturnsTwoAfterSetUpRan)
{
    CapturedOutput output;
    EXPECT_EQ(Record({"-start", ""}), 2);
    EXPECT_EQ(output.Text(), "");
    EXPECT_EQ(SectionLines(HistoryIni(), "History"), (Strings{"Count=0"}));
    EXPECT_EQ(SectionNames(), (Strings{"History"}));
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"History.ini"}));
}

TEST_F(RecorderEntry, SetUpRunsForCallsThatTurnOutInvalid)
{
    EXPECT_FALSE(PathExists(machine.AppData() + "\\TAQ"));
    EXPECT_EQ(Record({"-foo"}), 2);
    EXPECT_EQ(SectionLines(HistoryIni(), "History"), (Strings{"Count=0"}));
}

TEST_F(RecorderEntry, LastModeOptionSetsModeAndEvent)
{
    EXPECT_EQ(Record({"-end", "x", "-start", "y"}), 0);
    EXPECT_EQ(SectionNames(), (Strings{"History", "y"}));
    EXPECT_EQ(CInstallEvent("y").GetCompleteFlag(), "FALSE");
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_FALSE(PathExists(EventFolder("x")));
    EXPECT_TRUE(PathExists(EventLog("y")));
}

TEST_F(RecorderEntry, UnknownElementsBetweenOptionsAreSkipped)
{
    EXPECT_EQ(Record({"-foo", "-start", "x", "bar", "-Product", "p"}), 0);
    EXPECT_EQ(SectionNames(), (Strings{"History", "x"}));
    EXPECT_EQ(CInstallEvent("x").GetProduct(), "p");
}

TEST_F(RecorderEntry, OptionInLastPlaceTakesEmptyValue)
{
    machine.MakeHistoryFolder();
    ArgumentList arguments({"-start", "x", "-Product"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_TRUE(event.Valid);
    EXPECT_EQ(event.Product, "");
}

TEST_F(RecorderEntry, OptionInLastPlaceIsRecordedWithEmptyValue)
{
    EXPECT_EQ(Record({"-start", "x", "-Product", "p", "-Product"}), 0);
    EXPECT_EQ(CInstallEvent("x").GetProduct(), "");
}

TEST_F(RecorderEntry, ModeOptionInLastPlaceGivesNoEvent)
{
    EXPECT_EQ(Record({"-Product", "p", "-start"}), 2);
    EXPECT_EQ(SectionNames(), (Strings{"History"}));
}

TEST_F(RecorderEntry, ValueIsTakenWithoutLookingAtIt)
{
    ArgumentList arguments({"-start", "x", "-Type", "-Path", "d"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_EQ(event.Type, "-Path");
    EXPECT_EQ(event.Path, "");
}

TEST_F(RecorderEntry, RepeatedOptionKeepsItsLastValue)
{
    ArgumentList arguments({"-logmessage", "x", "-message", "one", "-message", "two"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_EQ(event.Message, "two");
}

TEST_F(RecorderEntry, ElementZeroIsSkipped)
{
    std::string name = "-start";
    std::string end = "-end";
    std::string id = "x";
    char* elements[] = {&name[0], &end[0], &id[0], nullptr};
    int count = 3;
    CInstallEvent event(count, elements);
    EXPECT_EQ(event.Mode, "-end");
}

TEST_F(RecorderEntry, EventFolderAndLogPathFollowEventID)
{
    ArgumentList arguments({"-end", "Install 7"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_EQ(event.EventFolder, machine.HistoryFolder() + "\\Install 7");
    EXPECT_EQ(event.EventLogPath, machine.HistoryFolder() + "\\Install 7\\ZORInstallEvent.Log");
}

TEST_F(RecorderEntry, EndAndLogMessageEventsTouchNothingWhenMade)
{
    machine.MakeHistoryFolder();
    ArgumentList end({"-end", "x", "-Result", "r"});
    CInstallEvent endEvent(end.Count(), end.Elements());
    ArgumentList message({"-logmessage", "y", "-message", "m"});
    CInstallEvent messageEvent(message.Count(), message.Elements());
    EXPECT_TRUE(FolderNames(machine.HistoryFolder()).empty());
}

TEST_F(RecorderEntry, StartEventLaysDownSectionAndFolderWhenMade)
{
    machine.MakeHistoryFolder();
    ArgumentList arguments({"-start", "x", "-Product", "p"});
    CInstallEvent event(arguments.Count(), arguments.Elements());
    EXPECT_TRUE(PathExists(EventFolder("x")));
    EXPECT_EQ(CInstallEvent("x").GetLogFileName(), "(none)");
    EXPECT_EQ(CInstallEvent("x").GetProduct(), "");
    EXPECT_EQ(CInstallEvent("x").GetEventLogFile(), EventLog("x"));
}

TEST_F(RecorderEntry, CountGrowsOnlyAtValidStart)
{
    CHistoryStore store;
    ArgumentList start({"-start", "x"});
    EXPECT_EQ(store.Record(start.Count(), start.Elements()), 0);
    EXPECT_EQ(store.Count, 1);
    ArgumentList message({"-logmessage", "x", "-message", "m"});
    store.Record(message.Count(), message.Elements());
    ArgumentList invalid({"-start", ""});
    store.Record(invalid.Count(), invalid.Elements());
    ArgumentList end({"-end", "x"});
    store.Record(end.Count(), end.Elements());
    EXPECT_EQ(store.Count, 1);
    EXPECT_EQ(StoredCount(), 1);
    ArgumentList second({"-start", "y"});
    store.Record(second.Count(), second.Elements());
    EXPECT_EQ(store.Count, 2);
    EXPECT_EQ(StoredCount(), 2);
}

TEST_F(RecorderEntry, CountContinuesFromStoredValue)
{
    Record({"-start", "x"});
    Record({"-start", "y"});
    Record({"-start", "z"});
    EXPECT_EQ(StoredCount(), 3);
}

TEST_F(RecorderEntry, MakerFolderThatCannotBeMadeReturnsOneWithMessage)
{
    WriteWholeFile(machine.AppData() + "\\TAQ", "not a folder");
    CapturedOutput output;
    EXPECT_EQ(Record({"-start", "x"}), 1);
    EXPECT_EQ(output.Text(), "Initialiation Failed:\n");
}

TEST_F(RecorderEntry, HistoryFolderThatCannotBeMadeIsToldOnTheFailureLine)
{
    MakeFolders(machine.AppData() + "\\TAQ");
    WriteWholeFile(machine.HistoryFolder(), "not a folder");
    CapturedOutput output;
    EXPECT_EQ(Record({"-start", "x"}), 1);
    EXPECT_EQ(output.Text(),
              " Failed to create path:" + machine.HistoryFolder() + "Initialiation Failed:\n");
}

TEST_F(RecorderEntry, EventFolderThatCannotBeMadeIsToldAndEventGoesOn)
{
    machine.MakeHistoryFolder();
    WriteWholeFile(EventFolder("x"), "not a folder");
    CapturedOutput output;
    EXPECT_EQ(Record({"-start", "x", "-Product", "p"}), 0);
    EXPECT_EQ(output.Text(), " Failed to create path:" + EventFolder("x"));
    EXPECT_EQ(StoredCount(), 1);
    EXPECT_EQ(CInstallEvent("x").GetProduct(), "p");
}

TEST_F(RecorderEntry, ValidCallsPrintNothing)
{
    CapturedOutput output;
    EXPECT_EQ(Record({"-start", "x"}), 0);
    EXPECT_EQ(Record({"-logmessage", "x", "-message", "m"}), 0);
    EXPECT_EQ(Record({"-end", "x", "-CopyName", "c"}), 0);
    EXPECT_EQ(output.Text(), "");
}

}  // namespace
