// Bounded flock waits: the lock is tried without blocking, and tried again
// after short pauses that grow up to a tenth of a second, until it is held or
// the call's time is up.
#include "platform/posix/LockWaits.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include "platform/StoreLock.h"

namespace platform {
namespace posix {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kFirstPause(1);
constexpr std::chrono::milliseconds kLongestPause(100);

// The end of the waits of this thread's current call; none outside a call.
thread_local bool inCall = false;
thread_local Clock::time_point callDeadline;

enum class Attempt { Held, Busy, Failed };

Attempt TryOnce(int fd, int operation)
{
    int locked;
    do {
        locked = flock(fd, operation | LOCK_NB);
    } while (locked != 0 && errno == EINTR);
    if (locked == 0)
        return Attempt::Held;
    return errno == EWOULDBLOCK ? Attempt::Busy : Attempt::Failed;
}

}  // namespace

void LockWaits::BeginCall(std::chrono::milliseconds bound)
{
    inCall = true;
    callDeadline = Clock::now() + bound;
}

void LockWaits::EndCall()
{
    inCall = false;
}

bool LockWaits::Take(int fd, int operation)
{
    const Clock::time_point deadline =
        inCall ? callDeadline : Clock::now() + StoreLock::kWaitBound;
    std::chrono::milliseconds pause = kFirstPause;
    for (;;) {
        const Attempt attempt = TryOnce(fd, operation);
        if (attempt != Attempt::Busy)
            return attempt == Attempt::Held;
        const Clock::time_point now = Clock::now();
        if (now >= deadline)
            return false;
        std::this_thread::sleep_for(std::min<Clock::duration>(pause, deadline - now));
        pause = std::min(pause * 2, kLongestPause);
    }
}

}  // namespace posix
}  // namespace platform
