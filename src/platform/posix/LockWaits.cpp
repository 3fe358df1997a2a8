// Bounded flock waits: the lock is tried without blocking, and tried again
// after short pauses that grow up to a hundredth of a second, until it is held or
// the call's time is up.
#include "platform/posix/LockWaits.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <thread>
#include <utility>


namespace platform {
namespace posix {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kFirstPause(1);
constexpr std::chrono::milliseconds kLongestPause(10);

// The end of the waits of this thread's current call; none outside a call.
thread_local bool inCall = false;
thread_local bool guarded = false;
thread_local Clock::time_point callDeadline;

// The files (device and inode) whose holders kept them past a bound.
using FileKey = std::pair<dev_t, ino_t>;
thread_local std::set<FileKey> passedBy;

FileKey KeyOf(int fd)
{
    struct stat status;
    if (fstat(fd, &status) != 0)
        return FileKey();
    return FileKey(status.st_dev, status.st_ino);
}

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

// A file passed by once is only tried; otherwise the call's bound, or a
// bound of its own outside a call.
Clock::time_point DeadlineFor(const FileKey& file)
{
    const Clock::time_point now = Clock::now();
    if (passedBy.count(file) != 0)
        return now;
    if (!inCall)
        return now + LockWaits::kGuardedWait;
    return guarded ? std::min(callDeadline, now + LockWaits::kGuardedWait) : callDeadline;
}

}  // namespace

void LockWaits::BeginCall(std::chrono::milliseconds bound)
{
    inCall = true;
    guarded = false;
    callDeadline = Clock::now() + bound;
}

void LockWaits::CallGuarded()
{
    guarded = inCall;
}

void LockWaits::EndCall()
{
    inCall = false;
    guarded = false;
}

bool LockWaits::Take(int fd, int operation)
{
    const FileKey file = KeyOf(fd);
    const Clock::time_point deadline = DeadlineFor(file);
    std::chrono::milliseconds pause = kFirstPause;
    for (;;) {
        const Attempt attempt = TryOnce(fd, operation);
        if (attempt == Attempt::Held)
            passedBy.erase(file);
        if (attempt != Attempt::Busy)
            return attempt == Attempt::Held;
        const Clock::time_point now = Clock::now();
        if (now >= deadline) {
            passedBy.insert(file);
            return false;
        }
        std::this_thread::sleep_for(std::min<Clock::duration>(pause, deadline - now));
        pause = std::min(pause * 2, kLongestPause);
    }
}

}  // namespace posix
}  // namespace platform
