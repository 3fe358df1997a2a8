// Recorder calls and the store's lock: a call waits while another holds the
// store, and counts on from the count that the store holds once it may go on.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "RecorderCalls.h"
#include "history/CHistoryStore.h"
#include "platform/StoreLock.h"

namespace {

// Long enough for a call that wasn't held up to have finished.
constexpr std::chrono::milliseconds kWhileHeld(300);

class StoreLockCalls : public RecorderTest {};

TEST_F(StoreLockCalls, ACallWaitsWhileAnotherHoldsTheStore)
{
    ASSERT_EQ(Record({"-start", "first"}), 0);
    std::atomic<bool> recorded{false};
    std::thread call;
    {
        const platform::StoreLock held(machine.HistoryFolder());
        ASSERT_TRUE(held.Held());
        call = std::thread([&] { recorded = Record({"-start", "second"}) == 0; });
        std::this_thread::sleep_for(kWhileHeld);
        EXPECT_FALSE(recorded);
        EXPECT_EQ(StoredCount(), 1);
    }
    call.join();
    EXPECT_TRUE(recorded);
    EXPECT_EQ(StoredCount(), 2);
}

TEST_F(StoreLockCalls, AStoreMadeBeforeAnotherCallCountedCountsOnFromTheStoredCount)
{
    CHistoryStore early;
    ASSERT_EQ(early.Count, 0);
    ASSERT_EQ(Record({"-start", "first"}), 0);
    ArgumentList arguments({"-start", "second"});
    EXPECT_EQ(early.Record(arguments.Count(), arguments.Elements()), 0);
    EXPECT_EQ(early.Count, 2);
    EXPECT_EQ(StoredCount(), 2);
}

TEST_F(StoreLockCalls, TheCallLeavesTheStoreFreeForTheNext)
{
    ASSERT_EQ(Record({"-start", "first"}), 0);
    const platform::StoreLock next(machine.HistoryFolder());
    EXPECT_TRUE(next.Held());
}

}  // namespace
