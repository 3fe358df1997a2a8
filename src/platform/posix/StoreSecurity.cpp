// The store's security on POSIX systems: explicit modes. Folders are made
// through CreateFolder, which sets 0755 whatever the umask.
#include "platform/StoreSecurity.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "platform/FileSystem.h"
#include "platform/posix/StoreModes.h"

namespace platform {

namespace {

constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;
constexpr char kIniFileName[] = "History.ini";

bool OwnedAndWritableByOthers(const struct stat& status)
{
    return status.st_uid == geteuid() && (status.st_mode & kWritableByOthers) != 0;
}

// The folder `name` in the open folder `parent`, never through a link; -1 if
// there is none.
int OpenFolderAt(int parent, const char* name)
{
    return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

void SetModeIfOwnedAndOpen(int descriptor, mode_t mode)
{
    struct stat status;
    if (fstat(descriptor, &status) == 0 && OwnedAndWritableByOthers(status))
        fchmod(descriptor, mode);
}

bool IsPlainName(const char* name)
{
    return std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0;
}

// Each folder directly in the open folder gets kFolderMode; with `depth` 2,
// the folders in those as well (the events below a copy's folder).
void SecureFoldersIn(int folder, int depth)
{
    const int listed = dup(folder);
    DIR* listing = listed < 0 ? nullptr : fdopendir(listed);
    if (listing == nullptr) {
        if (listed >= 0)
            close(listed);
        return;
    }
    while (const dirent* entry = readdir(listing)) {
        if (!IsPlainName(entry->d_name))
            continue;
        const int child = OpenFolderAt(folder, entry->d_name);
        if (child < 0)
            continue;
        SetModeIfOwnedAndOpen(child, posix::kFolderMode);
        if (depth > 1)
            SecureFoldersIn(child, depth - 1);
        close(child);
    }
    closedir(listing);
}

void SecureIniFile(int folder)
{
    const int file = openat(folder, kIniFileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        SetModeIfOwnedAndOpen(file, posix::kFileMode);
    close(file);
}

bool NeedsSecuring(int folder)
{
    struct stat status;
    return fstat(folder, &status) == 0 && OwnedAndWritableByOthers(status);
}

}  // namespace

bool CreateStoreFolder(const std::string& path)
{
    return CreateFolder(path);
}

// The history folder and its parent are set last, so that a run cut short
// finds them still writable by others and does the whole work again.
void SecureExistingStore(const std::string& historyFolder)
{
    const int history = open(SystemPath(historyFolder).c_str(),
                             O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (history < 0)
        return;
    const int parent = OpenFolderAt(history, "..");
    if (NeedsSecuring(history) || (parent >= 0 && NeedsSecuring(parent))) {
        SecureFoldersIn(history, 2);
        SecureIniFile(history);
        SetModeIfOwnedAndOpen(history, posix::kFolderMode);
        if (parent >= 0)
            SetModeIfOwnedAndOpen(parent, posix::kFolderMode);
    }
    if (parent >= 0)
        close(parent);
    close(history);
}

}  // namespace platform
