// Bounded flock waits: a call that holds the store's lock waits only briefly
// for a store file's lock that another holder keeps, since every writer waits
// for the store's lock first; a call without it waits up to its bound.
#include "platform/posix/LockWaits.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

using platform::posix::LockWaits;
using Clock = std::chrono::steady_clock;

// Two opens of one file: flock holds each open apart, as it holds apart two
// processes.
class HeldElsewhere {
public:
    explicit HeldElsewhere(const std::string& path)
        : holder_(open(path.c_str(), O_RDONLY | O_CLOEXEC)),
          waiter_(open(path.c_str(), O_RDWR | O_CLOEXEC))
    {
        EXPECT_EQ(flock(holder_, LOCK_SH), 0);
    }
    ~HeldElsewhere()
    {
        close(holder_);
        close(waiter_);
    }
    int Waiter() const { return waiter_; }

private:
    int holder_;
    int waiter_;
};

// How long Take waited, in milliseconds; it must not have had the lock.
long long WaitedFor(int fd)
{
    const Clock::time_point began = Clock::now();
    EXPECT_FALSE(LockWaits::Take(fd, LOCK_EX));
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - began).count();
}

std::string HeldFile(TestMachine& machine)
{
    const std::string path = machine.MakeHistoryFolder() + "\\History.ini";
    WriteWholeFile(path, "[History]\r\nCount=0\r\n");
    return platform::SystemPath(path);
}

}  // namespace

TEST(LockWaits, ACallThatHoldsTheStoreWaitsBrieflyForAFileThatAnotherKeeps)
{
    TestMachine machine;
    const HeldElsewhere file(HeldFile(machine));
    LockWaits::BeginCall(std::chrono::seconds(60));
    LockWaits::CallGuarded();
    const long long waited = WaitedFor(file.Waiter());
    LockWaits::EndCall();
    EXPECT_GE(waited, LockWaits::kGuardedWait.count() - 50);
    EXPECT_LT(waited, 30000);
}

TEST(LockWaits, ACallWithoutTheStoreWaitsForItsWholeBound)
{
    TestMachine machine;
    const HeldElsewhere file(HeldFile(machine));
    const std::chrono::milliseconds bound = LockWaits::kGuardedWait * 2;
    LockWaits::BeginCall(bound);
    const long long waited = WaitedFor(file.Waiter());
    LockWaits::EndCall();
    EXPECT_GE(waited, bound.count() - 50);
}
