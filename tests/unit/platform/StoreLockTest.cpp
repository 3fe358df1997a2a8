// The store's lock: one holder at a time, a waiter that goes on once the
// holder lets go or once the bound is over, and nothing left in the store
// for it that the archive would take.
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

// The second holder names the folder as `secondSpelling` does.
void ExpectSecondHolderToWait(const std::string& folder, const std::string& secondSpelling)
{
    std::atomic<bool> secondHolds{false};
    std::thread second;
    {
        const platform::StoreLock first(folder);
        EXPECT_TRUE(first.Held());
        second = std::thread([&] {
            const platform::StoreLock lock(secondSpelling);
            secondHolds = lock.Held();
        });
        std::this_thread::sleep_for(kWhileHeld);
        EXPECT_FALSE(secondHolds);
    }
    second.join();
    EXPECT_TRUE(secondHolds);
}

}  // namespace

TEST(StoreLock, IsHeldOnTheHistoryFolderAndLeavesNothingThatTheArchiveTakes)
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
    ExpectSecondHolderToWait(folder, folder);
}

TEST(StoreLock, TheFolderNamedInAnotherCaseIsTheSameStore)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    ExpectSecondHolderToWait(folder, machine.AppData() + "\\taq\\ZORHISTORY");
}

TEST(StoreLock, TheLockCanBeTakenAgainOnceLetGo)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    { const platform::StoreLock first(folder); }
    const platform::StoreLock again(folder);
    EXPECT_TRUE(again.Held());
}

TEST(StoreLock, AHolderThatKeepsTheLockIsPassedByOnceTheBoundIsOver)
{
    TestMachine machine;
    const std::string folder = machine.MakeHistoryFolder();
    const platform::StoreLock first(folder);
    ASSERT_TRUE(first.Held());
    bool secondHolds = true;
    std::thread second([&] {
        const platform::StoreLock lock(folder, std::chrono::milliseconds(200));
        secondHolds = lock.Held();
    });
    second.join();
    EXPECT_FALSE(secondHolds);
}

TEST(StoreLock, TheBoundIsAMinute)
{
    EXPECT_EQ(platform::StoreLock::kWaitBound, std::chrono::seconds(60));
}
