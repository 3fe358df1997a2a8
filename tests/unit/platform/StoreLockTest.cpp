// The store's lock: one holder at a time, a waiter that goes on once the
// holder lets go, and nothing left in the store for it.
#include "platform/StoreLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

// Long enough for a waiter that wasn't held up to have taken the lock.
constexpr std::chrono::milliseconds kWhileHeld(300);

}  // namespace

TEST(StoreLock, IsHeldOnTheHistoryFolderAndLeavesNothingInIt)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    {
        const platform::StoreLock lock(folder);
        EXPECT_TRUE(lock.Held());
    }
    EXPECT_TRUE(FolderNames(folder).empty());
}

TEST(StoreLock, ASecondHolderWaitsUntilTheFirstLetsGo)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    std::atomic<bool> secondHolds{false};
    std::thread second;
    {
        const platform::StoreLock first(folder);
        ASSERT_TRUE(first.Held());
        second = std::thread([&] {
            const platform::StoreLock lock(folder);
            secondHolds = lock.Held();
        });
        std::this_thread::sleep_for(kWhileHeld);
        EXPECT_FALSE(secondHolds);
    }
    second.join();
    EXPECT_TRUE(secondHolds);
}

TEST(StoreLock, TheLockCanBeTakenAgainOnceLetGo)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    { const platform::StoreLock first(folder); }
    const platform::StoreLock again(folder);
    EXPECT_TRUE(again.Held());
}
