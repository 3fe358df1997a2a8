// Bounded waits for flock. A lock that another process keeps, whoever it is,
// is waited for only until the bound of the current call has passed; the
// caller then goes on without it, as if there were no lock at all. The waits
// of one call (from the store's lock to its release, on one thread) share
// one bound. A wait outside such a call is for a store file's own lock, which
// honest holders keep for one read or one write: it ends within kGuardedWait. A file whose
// holder kept it past the bound once is not waited for again by the thread
// until the thread gets its lock again, so that a holder who never lets go
// costs a process one bound, not one for each call.
#pragma once

#include <chrono>

namespace platform {
namespace posix {

class LockWaits {
public:
    static constexpr std::chrono::milliseconds kGuardedWait{2000};

    // Starts a call on this thread: its waits end at the latest `bound` from now.
    static void BeginCall(std::chrono::milliseconds bound);
    // The call of this thread holds the store's lock: every writer waits for
    // it, so another holder of a store file's lock can only be a reader, which
    // reads for a moment, or someone who keeps it to hold up the call. The
    // call's later waits end within kGuardedWait.
    static void CallGuarded();
    // Ends the call of this thread: a later wait has the full bound to itself.
    static void EndCall();
    // flock(fd, operation) (LOCK_EX or LOCK_SH), waited for within the bound.
    // True once held; false when the bound passed first, or the lock can't
    // be had at all.
    static bool Take(int fd, int operation);
};

}  // namespace posix
}  // namespace platform
