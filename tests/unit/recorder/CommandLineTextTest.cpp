// The recorder reached with one text: its split into arguments by the rules of
// the Windows command line, and the call that records them.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "recorder/CInstallEvent.h"
#include "recorder/CommandLineText.h"

namespace {

using Strings = std::vector<std::string>;

TEST(SplitCommandLine, EmptyOrBlankTextHasNoArguments)
{
    EXPECT_EQ(SplitCommandLine(""), Strings{});
    EXPECT_EQ(SplitCommandLine(" \t  "), Strings{});
}

TEST(SplitCommandLine, BlanksAndTabsSeparateAndRunsOfThemCountOnce)
{
    EXPECT_EQ(SplitCommandLine("  -start\tx   -Type  Silent "),
              (Strings{"-start", "x", "-Type", "Silent"}));
}

TEST(SplitCommandLine, DoubleQuotesGroupBlanksAndAreDropped)
{
    EXPECT_EQ(SplitCommandLine("-Path \"C:\\Program Files\\ZOR\" -l x"),
              (Strings{"-Path", "C:\\Program Files\\ZOR", "-l", "x"}));
}

TEST(SplitCommandLine, QuotesInsideAnArgumentJoinItsParts)
{
    EXPECT_EQ(SplitCommandLine("a\"b c\"d"), Strings{"ab cd"});
}

TEST(SplitCommandLine, EmptyQuotesGiveAnEmptyArgument)
{
    EXPECT_EQ(SplitCommandLine("-CopyName \"\" -Result \"\""),
              (Strings{"-CopyName", "", "-Result", ""}));
}

TEST(SplitCommandLine, DoubledQuoteInsideAGroupStandsForOneQuote)
{
    EXPECT_EQ(SplitCommandLine("\"x\"\"y\" z"), (Strings{"x\"y", "z"}));
    EXPECT_EQ(SplitCommandLine("\"e\"\"\" f"), (Strings{"e\"", "f"}));
}

TEST(SplitCommandLine, BackslashesNotBeforeAQuoteArePlain)
{
    EXPECT_EQ(SplitCommandLine("C:\\Temp\\\\setup.log \\\\server\\share"),
              (Strings{"C:\\Temp\\\\setup.log", "\\\\server\\share"}));
}

TEST(SplitCommandLine, EvenBackslashesBeforeAQuoteHalveAndTheQuoteGroups)
{
    EXPECT_EQ(SplitCommandLine("\\\\\"g h\" i"), (Strings{"\\g h", "i"}));
    EXPECT_EQ(SplitCommandLine("\"C:\\Temp\\\\\" next"), (Strings{"C:\\Temp\\", "next"}));
}

TEST(SplitCommandLine, OddBackslashesBeforeAQuoteHalveAndTheQuoteIsPlain)
{
    EXPECT_EQ(SplitCommandLine("a\\\"b \\\\\\\"c"), (Strings{"a\"b", "\\\"c"}));
}

TEST(SplitCommandLine, UnclosedQuoteRunsToTheEnd)
{
    EXPECT_EQ(SplitCommandLine("-message \"one two  "), (Strings{"-message", "one two  "}));
}

class RecordCommandLineTest : public RecorderTest {};

TEST_F(RecordCommandLineTest, RecordsTheArgumentsOfTheText)
{
    EXPECT_EQ(RecordCommandLine("ZORRecorder.dll",
                                "-start Evt-1 -Product \"ZOR Server 9\" -Path \"C:\\Program Files\\ZOR\""),
              0);
    EXPECT_EQ(StoredCount(), 1);
    CInstallEvent event("Evt-1");
    EXPECT_EQ(event.GetProduct(), "ZOR Server 9");
    EXPECT_EQ(event.GetPath(), "C:\\Program Files\\ZOR");
    EXPECT_EQ(event.GetCompleteFlag(), "FALSE");
}

TEST_F(RecordCommandLineTest, FirstWordOfTheTextIsAnOptionNotTheCallersName)
{
    EXPECT_EQ(RecordCommandLine("caller", "-start Evt-2"), 0);
    EXPECT_EQ(SectionNames(), (Strings{"History", "Evt-2"}));
}

TEST_F(RecordCommandLineTest, EmptyTextRecordsNothing)
{
    EXPECT_EQ(RecordCommandLine("caller", ""), 2);
    EXPECT_EQ(StoredCount(), 0);
}

TEST_F(RecordCommandLineTest, OptionInTheLastPlaceReadsNoValue)
{
    EXPECT_EQ(RecordCommandLine("caller", "-start"), 2);
    EXPECT_EQ(StoredCount(), 0);
}

}  // namespace
