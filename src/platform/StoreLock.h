// The machine-wide lock of the history store: while one process holds it, no
// other recorder call or collection run of the store's owner touches the
// store. The lock guards only against the store's own programs: a holder that
// doesn't let go within the bound is passed by, so that no user of the
// machine can stop an installer by holding it.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace platform {

// Held from construction to destruction. The constructor waits while another
// holder has the lock of the store in `folder`, for at most `bound`; the call
// then goes on without it, in silence. A process that ends while holding it,
// however it ends, gives it up.
//
// On Windows the lock is a mutex of the global namespace, one for each
// folder, that only the system and administrators may open; an abandoned
// mutex counts as taken. On POSIX it is the flock of a dot-named file in the
// folder (the archive passes over dot-names), made with mode 0600 by the
// folder's owner; a caller who can't open it, or a folder that doesn't exist,
// leaves the lock not held. There, every flock that the call's file
// operations wait for while the lock lives shares the same bound.
class StoreLock {
public:
    // How long a call waits, all its waits together, before it goes on.
    static constexpr std::chrono::milliseconds kWaitBound{60000};

    explicit StoreLock(const std::string& folder, std::chrono::milliseconds bound = kWaitBound);
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    bool Held() const;

private:
    std::intptr_t handle_;
};

}  // namespace platform
