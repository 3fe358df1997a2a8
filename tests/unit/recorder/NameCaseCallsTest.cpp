// The calls of one event may spell its EventID and its copy's name in other
// cases: as on a Windows file system, they all reach the one event folder and
// the one copy folder.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "recorder/CInstallEvent.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

class NameCaseCalls : public RecorderTest {};

TEST_F(NameCaseCalls, EveryCallOfAnEventReachesItWhateverTheCaseOfItsEventID)
{
    ASSERT_EQ(Record({"-start", "EV1"}), 0);
    ASSERT_EQ(Record({"-logmessage", "ev1", "-message", "Copying the server files"}), 0);
    ASSERT_EQ(Record({"-end", "ev1", "-CopyName", "C1"}), 0);

    const std::string moved = machine.HistoryFolder() + "\\C1\\ev1";
    EXPECT_EQ(SectionNames(), (Strings{"History", "EV1"}));
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"C1", "History.ini"}));
    EXPECT_EQ(FolderNames(machine.HistoryFolder() + "\\C1"), Strings{"ev1"});
    EXPECT_EQ(CInstallEvent("EV1").GetEventLogFile(), moved + "\\ZORInstallEvent.Log");
    EXPECT_EQ(CInstallEvent("EV1").GetCompleteFlag(), "TRUE");
    const Strings log = FileLines(moved + "\\ZORInstallEvent.Log");
    ASSERT_FALSE(log.empty());
    EXPECT_NE(std::find(log.begin(), log.end(), "Copying the server files"), log.end());
    ExpectLinesMatch({log.front(), log.back()},
                     {"---------- ZOR Installation History Logger ( Start )----------<time>",
                      "---------- ZOR Installation History Logger ( End ) ----------<time>"});
}

TEST_F(NameCaseCalls, CopyNamesOfAnotherCaseShareOneCopyFolder)
{
    for (const std::string event : {"first", "second"}) {
        ASSERT_EQ(Record({"-start", event}), 0);
        ASSERT_EQ(Record({"-end", event, "-CopyName", event == "first" ? "Copy1" : "COPY1"}), 0);
    }
    EXPECT_EQ(FolderNames(machine.HistoryFolder()), (Strings{"Copy1", "History.ini"}));
    EXPECT_EQ(FolderNames(machine.HistoryFolder() + "\\Copy1"), (Strings{"first", "second"}));
    const std::string secondLog = machine.HistoryFolder() + "\\COPY1\\second\\ZORInstallEvent.Log";
    EXPECT_EQ(CInstallEvent("second").GetEventLogFile(), secondLog);
    EXPECT_FALSE(FileLines(secondLog).empty());
}

}  // namespace
