// The result block that an -end writes ahead of the end banner: what the
// event's section then holds.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kRule(69, '=');
const std::string kEndBanner = "---------- ZOR Installation History Logger ( End ) ----------<time>";

class ResultBlock : public RecorderTest {
protected:
    // The block's seventeen lines, which stand just ahead of the two lines of
    // the end banner.
    Strings BlockOf(const std::string& logPath)
    {
        const Strings tail = LastLines(FileLines(logPath), 19);
        ExpectLinesMatch(LinesAt(tail, 17, 2), {"", kEndBanner});
        return LinesAt(tail, 0, 17);
    }
};

TEST_F(ResultBlock, ShowsSectionAsEndLeftIt)
{
    Record({"-start", "x", "-Product", "ZOR Server", "-ServiceLevel", "SL1", "-Type", "GUI",
            "-Action", "Install", "-l", "C:\\first.log", "-t", "C:\\trace.txt"});
    Record({"-end", "x", "-Result", "Success", "-l", "C:\\setup.log"});
    ExpectLinesMatch(BlockOf(EventLog("x")),
                     {"", "", "", "", "Result of Install:", kRule,
                      "Start Time                   :<time>",
                      "End   Time                   :<time>",
                      "ZOR Products & Build Level   :ZOR Server",
                      "Service Level                :SL1",
                      "Install Type ( GUI | Silent ):GUI",
                      "Installation Action          :Install",
                      "Result                       :Success",
                      "Log File Name                :C:\\setup.log",
                      "Trace File Name              :C:\\trace.txt", kRule, ""});
}

TEST_F(ResultBlock, EmptyStoredActionGivesBareTitle)
{
    Record({"-start", "x"});
    Record({"-end", "x"});
    const Strings block = BlockOf(EventLog("x"));
    ASSERT_EQ(block.size(), 17u);
    EXPECT_EQ(block[4], "Result of :");
    EXPECT_EQ(block[11], "Installation Action          :");
}

TEST_F(ResultBlock, TitleShowsStoredActionWhenEndGivesNone)
{
    Record({"-start", "x", "-Action", "Upgrade"});
    Record({"-end", "x"});
    const Strings block = BlockOf(EventLog("x"));
    ASSERT_EQ(block.size(), 17u);
    EXPECT_EQ(block[4], "Result of Upgrade:");
}

TEST_F(ResultBlock, LongValueShowsCutTo255Characters)
{
    std::string product;
    for (int i = 0; i < 30; ++i)
        product += "Product" + std::to_string(i % 10) + "..";
    ASSERT_EQ(product.size(), 300u);
    Record({"-start", "x", "-Product", product});
    Record({"-end", "x"});
    const Strings block = BlockOf(EventLog("x"));
    ASSERT_EQ(block.size(), 17u);
    EXPECT_EQ(block[8], "ZOR Products & Build Level   :" + product.substr(0, 255));
}

TEST_F(ResultBlock, LeavesOutCopyVersionPathResponseAndCommand)
{
    Record({"-start", "x", "-Version", "VersionValue", "-Path", "PathValue", "-u", "ResponseValue",
            "-Command", "CommandValue"});
    Record({"-end", "x", "-CopyName", "CopyValue"});
    const std::string movedLog = machine.HistoryFolder() + "\\CopyValue\\x\\ZORInstallEvent.Log";
    for (const std::string& line : BlockOf(movedLog)) {
        for (const char* value :
             {"CopyValue", "VersionValue", "PathValue", "ResponseValue", "CommandValue"})
            EXPECT_EQ(line.find(value), std::string::npos) << line;
    }
}

TEST_F(ResultBlock, EndWithoutStartLeavesStartValuesBare)
{
    MakeFolders(EventFolder("x"));
    Record({"-end", "x", "-Result", "Done"});
    ExpectLinesMatch(BlockOf(EventLog("x")),
                     {"", "", "", "", "Result of :", kRule,
                      "Start Time                   :",
                      "End   Time                   :<time>",
                      "ZOR Products & Build Level   :",
                      "Service Level                :",
                      "Install Type ( GUI | Silent ):",
                      "Installation Action          :",
                      "Result                       :Done",
                      "Log File Name                :",
                      "Trace File Name              :", kRule, ""});
}

}  // namespace
