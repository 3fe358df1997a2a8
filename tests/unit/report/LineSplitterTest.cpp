#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "report/CLineSplitter.h"

namespace {

std::vector<std::string> SplitInBlocks(const std::string& text, std::size_t blockSize, std::size_t limit = 1000)
{
    std::vector<std::string> lines;
    CLineSplitter splitter([&lines](const std::string& line) { lines.push_back(line); }, limit);
    for (std::size_t at = 0; at < text.size(); at += blockSize)
        splitter.Feed(text.data() + at, std::min(blockSize, text.size() - at));
    splitter.Finish();
    return lines;
}

const std::vector<std::string> kThreeLines = {"one", "", "three"};

}  // namespace

TEST(LineSplitter, EveryKindOfLineEndEndsALine)
{
    EXPECT_EQ(SplitInBlocks("one\n\nthree\n", 100), kThreeLines);
    EXPECT_EQ(SplitInBlocks("one\r\n\r\nthree\r\n", 100), kThreeLines);
    EXPECT_EQ(SplitInBlocks("one\r\rthree\r", 100), kThreeLines);
}

TEST(LineSplitter, TheLastLineNeedsNoLineEnd)
{
    EXPECT_EQ(SplitInBlocks("one\r\n\r\nthree", 100), kThreeLines);
}

TEST(LineSplitter, BlocksOfAnySizeGiveTheSameLines)
{
    const std::string text = "one\r\n\r\nthree\r\n";
    for (std::size_t size = 1; size <= text.size(); ++size)
        EXPECT_EQ(SplitInBlocks(text, size), kThreeLines) << "blocks of " << size;
}

TEST(LineSplitter, ALineFeedBehindAWholeLineEndInTheBlockBeforeIsALineEndOfItsOwn)
{
    const std::string text = "a\r\n\nb\r\n\r\r\n";
    const std::vector<std::string> expected = {"a", "", "b", "", ""};
    for (std::size_t size = 1; size <= text.size(); ++size)
        EXPECT_EQ(SplitInBlocks(text, size), expected) << "blocks of " << size;
}

TEST(LineSplitter, ACarriageReturnAtTheEndOfABlockThenAnotherOneGivesAnEmptyLine)
{
    EXPECT_EQ(SplitInBlocks("a\r\rb", 2), (std::vector<std::string>{"a", "", "b"}));
}

TEST(LineSplitter, ALineOverTheLimitIsCutAndCounted)
{
    std::vector<std::string> lines;
    CLineSplitter splitter([&lines](const std::string& line) { lines.push_back(line); }, 4);
    const std::string text = "abcdefgh\nxy\n";
    for (const char c : text)
        splitter.Feed(&c, 1);
    splitter.Finish();
    EXPECT_EQ(lines, (std::vector<std::string>{"abcd", "xy"}));
    EXPECT_EQ(splitter.CutLines(), 1u);
}

TEST(LineSplitter, TheHandlerLearnsHowManyBytesOfItsLineWereDropped)
{
    std::vector<std::uint64_t> dropped;
    CLineSplitter splitter(nullptr, 4);
    splitter = CLineSplitter([&](const std::string&) { dropped.push_back(splitter.BytesCutOfLine()); }, 4);
    const std::string text = "abcdefgh\nxy\n" + std::string(100000, 'z');
    for (std::size_t at = 0; at < text.size(); at += 7)
        splitter.Feed(text.data() + at, std::min<std::size_t>(7, text.size() - at));
    splitter.Finish();
    EXPECT_EQ(dropped, (std::vector<std::uint64_t>{4, 0, 100000 - 4}));
}

TEST(LineSplitter, NothingGivesNoLine)
{
    EXPECT_TRUE(SplitInBlocks("", 10).empty());
}
