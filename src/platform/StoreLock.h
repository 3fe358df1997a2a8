// The machine-wide lock of the history store: while one process holds it, no
// other recorder call or collection run, of any process or user, touches the
// store. Nothing is written into the store for it.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// Held from construction to destruction. The constructor waits for as long as
// another holder has the lock of the store in `folder`. A process that ends
// while holding it, however it ends, gives it up, so that it never blocks the
// next one.
//
// On Windows the lock is a mutex of the global namespace, one for each
// folder; an abandoned mutex counts as taken. On POSIX it is the folder's own
// flock: a folder that doesn't exist can't be locked, and the lock is then
// not held (there is no store yet to keep in order).
class StoreLock {
public:
    explicit StoreLock(const std::string& folder);
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    bool Held() const;

private:
    std::intptr_t handle_;
};

}  // namespace platform
