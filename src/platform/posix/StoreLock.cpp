// The store's lock on POSIX systems: flock on the history folder itself. The
// kernel drops it when the descriptor closes, also when the process is killed
// or stops itself, so a holder that dies never blocks the next call.
#include "platform/StoreLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "platform/FileSystem.h"
#include "platform/posix/ProfileFileCache.h"

namespace platform {

namespace {

constexpr std::intptr_t kNotHeld = -1;

}  // namespace

StoreLock::StoreLock(const std::string& folder) : handle_(kNotHeld)
{
    const int descriptor = open(SystemPath(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    int locked;
    do {
        locked = flock(descriptor, LOCK_EX);
    } while (locked != 0 && errno == EINTR);
    if (locked != 0) {
        close(descriptor);
        return;
    }
    handle_ = descriptor;
    // Other processes may have written the store while this one waited.
    posix::ProfileFileCache::Instance().ForgetAll();
}

StoreLock::~StoreLock()
{
    if (Held())
        close(static_cast<int>(handle_));
}

bool StoreLock::Held() const
{
    return handle_ != kNotHeld;
}

}  // namespace platform
