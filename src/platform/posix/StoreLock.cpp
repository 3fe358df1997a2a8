// The store's lock on POSIX systems: flock on a dot-named file in the history
// folder. Only the folder's owner makes the file, with mode 0600, so that no
// other user can open it, let alone hold it. The kernel drops the lock when
// the descriptor closes, also when the process is killed or stops itself, so
// a holder that dies never blocks the next call.
#include "platform/StoreLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/FileSystem.h"
#include "platform/posix/LockWaits.h"
#include "platform/posix/ProfileFileCache.h"

namespace platform {

namespace {

constexpr std::intptr_t kNotHeld = -1;
constexpr char kLockFileName[] = ".StoreLock";
constexpr mode_t kLockFileMode = 0600;

bool OwnedByCaller(const struct stat& status)
{
    return status.st_uid == geteuid();
}

bool WritableByOthers(const struct stat& status)
{
    return (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

// The folder's owner's own file, which nobody else may open or replace.
bool IsOwnersLockFile(int file, const struct stat& folder)
{
    struct stat status;
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           status.st_uid == folder.st_uid && (status.st_mode & 077) == 0;
}

int OpenExisting(int folder)
{
    return openat(folder, kLockFileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
}

int MakeAnew(int folder)
{
    const int file = openat(folder, kLockFileName,
                            O_RDONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kLockFileMode);
    if (file >= 0)
        fchmod(file, kLockFileMode);
    return file;
}

// The file that stands in the lock file's place in a folder that others
// could write before it was set right (older code made it so) is taken away,
// and a new one made.
int Replace(int folder, const struct stat& status)
{
    if (unlinkat(folder, kLockFileName, 0) != 0 && errno != ENOENT)
        return -1;
    const int file = MakeAnew(folder);
    if (file >= 0 && IsOwnersLockFile(file, status))
        return file;
    if (file >= 0)
        close(file);
    return -1;
}

// The lock file of the open folder, made by the folder's owner where it is
// missing; -1 if there is none to be trusted.
int OpenLockFile(int folder)
{
    struct stat status;
    if (fstat(folder, &status) != 0)
        return -1;
    const bool maker = OwnedByCaller(status) && !WritableByOthers(status);
    int file = OpenExisting(folder);
    if (file < 0 && errno == ENOENT && maker)
        file = MakeAnew(folder);
    if (file < 0 && errno == EEXIST)
        file = OpenExisting(folder);
    if (file >= 0 && IsOwnersLockFile(file, status))
        return file;
    if (file >= 0)
        close(file);
    return maker ? Replace(folder, status) : -1;
}

int OpenLockFileIn(const std::string& folder)
{
    const int descriptor =
        open(SystemPath(folder).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    const int file = OpenLockFile(descriptor);
    close(descriptor);
    return file;
}

}  // namespace

StoreLock::StoreLock(const std::string& folder, std::chrono::milliseconds bound)
    : handle_(kNotHeld)
{
    posix::LockWaits::BeginCall(bound);
    // Other processes may have written the store since this one last read it.
    posix::ProfileFileCache::Instance().ForgetAll();
    const int file = OpenLockFileIn(folder);
    if (file < 0)
        return;
    if (posix::LockWaits::Take(file, LOCK_EX)) {
        handle_ = file;
        posix::LockWaits::CallGuarded();
    } else {
        close(file);
    }
}

StoreLock::~StoreLock()
{
    if (Held())
        close(static_cast<int>(handle_));
    posix::LockWaits::EndCall();
}

bool StoreLock::Held() const
{
    return handle_ != kNotHeld;
}

}  // namespace platform
