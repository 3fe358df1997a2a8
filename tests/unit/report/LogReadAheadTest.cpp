// An event log read ahead into memory is read as the same log streamed from
// its source; one larger than the limit is not held but streamed.
#include <gtest/gtest.h>

#include <cstdio>

#include "ReportTestLogs.h"
#include "platform/FileSystem.h"
#include "report/CLogReadAhead.h"
#include "report/EventLogStream.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

using namespace reportlogs;

namespace {

class LogReadAheadTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        history_ = machine_.MakeHistoryFolder();
        std::string reason;
        ASSERT_TRUE(source_.Open(history_, reason)) << reason;
    }

    void WriteLog(const std::string& name, const std::string& text) { WriteWholeFile(history_ + "\\" + name, text); }
    void RemoveLog(const std::string& name)
    {
        ASSERT_EQ(std::remove(platform::SystemPath(history_ + "\\" + name).c_str()), 0);
    }

    TestMachine machine_;
    std::string history_;
    CHistorySource source_;
};

// A -start whose computer report names the computer, padded with a message
// line of `padding` bytes.
std::string StartLog(const std::string& computer, std::size_t padding)
{
    return StartHead("E1", computer, "XP") + std::string(padding, 'x') + "\r\n" +
           StartSnapshot("E1", "Install", SnapshotContent());
}

}  // namespace

TEST_F(LogReadAheadTest, ALogHeldIsReadAsTheSameLogStreamed)
{
    const std::string text = StartLog("HELD", 1000);
    WriteLog("E1.Log", text);
    const CLogReadAhead ahead(source_, "E1.Log");
    CEventLogReader streamed("E1");
    const EventLogReading streaming = StreamEventLog(source_, "E1.Log", streamed);
    CEventLogReader held("E1");
    const EventLogReading holding = ahead.Feed(source_, "E1.Log", held);
    EXPECT_TRUE(holding.whole);
    EXPECT_EQ(holding.bytes, text.size());
    EXPECT_EQ(holding.bytes, streaming.bytes);
    EXPECT_EQ(held.computerName, "HELD");
    EXPECT_EQ(held.computerName, streamed.computerName);
    EXPECT_EQ(held.before.present, streamed.before.present);
    EXPECT_TRUE(held.before.present);
}

TEST_F(LogReadAheadTest, ALogHeldIsReadEvenAfterItsFileIsGone)
{
    WriteLog("E1.Log", StartLog("HELD", 10));
    const CLogReadAhead ahead(source_, "E1.Log");
    RemoveLog("E1.Log");
    CEventLogReader log("E1");
    EXPECT_TRUE(ahead.Feed(source_, "E1.Log", log).whole);
    EXPECT_EQ(log.computerName, "HELD");
}

TEST_F(LogReadAheadTest, ALogAsLargeAsTheLimitIsHeld)
{
    const std::string head = StartLog("FULL", 0);
    const std::string text = head + std::string(CLogReadAhead::kLimit - head.size(), '\n');
    ASSERT_EQ(text.size(), CLogReadAhead::kLimit);
    WriteLog("E1.Log", text);
    const CLogReadAhead ahead(source_, "E1.Log");
    RemoveLog("E1.Log");
    CEventLogReader log("E1");
    const EventLogReading reading = ahead.Feed(source_, "E1.Log", log);
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(reading.bytes, CLogReadAhead::kLimit);
    EXPECT_EQ(log.computerName, "FULL");
}

TEST_F(LogReadAheadTest, ALogLargerThanTheLimitIsStreamedWhenItIsRead)
{
    const std::string head = StartLog("LARGE", 0);
    const std::string text = head + std::string(CLogReadAhead::kLimit + 1 - head.size(), '\n');
    WriteLog("E1.Log", text);
    const CLogReadAhead ahead(source_, "E1.Log");
    CEventLogReader log("E1");
    const EventLogReading reading = ahead.Feed(source_, "E1.Log", log);
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(reading.bytes, text.size());
    EXPECT_EQ(log.computerName, "LARGE");
    // Not held: with its file gone, nothing of it is read.
    RemoveLog("E1.Log");
    CEventLogReader gone("E1");
    EXPECT_FALSE(ahead.Feed(source_, "E1.Log", gone).whole);
    EXPECT_TRUE(gone.computerName.empty());
}

TEST_F(LogReadAheadTest, ALogThatCantBeReadIsNotWhole)
{
    const CLogReadAhead ahead(source_, "missing.Log");
    CEventLogReader log("E1");
    const EventLogReading reading = ahead.Feed(source_, "missing.Log", log);
    EXPECT_FALSE(reading.whole);
    EXPECT_EQ(reading.bytes, 0u);
}
