// The store's security on POSIX systems: explicit modes. Folders are made
// through CreateFolder, which sets 0755 whatever the umask.
#include "platform/StoreSecurity.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdint>
#include <random>
#include <string>

#include "platform/FileSystem.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/StoreModes.h"

namespace platform {

namespace {

constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;
constexpr char kIniFileName[] = "History.ini";
// Set-aside names tried for a planted entry, should one be taken already.
constexpr int kSetAsideAttempts = 8;

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

bool SetAsidePlanted(int folder, const char* name);

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
        // Dot-names are the store's own (its lock, what was set aside), and
        // what another user put in the store is set aside, not secured.
        if (entry->d_name[0] == '.' || SetAsidePlanted(folder, entry->d_name))
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

// Sixteen hex digits that no one can name in advance: a user who made every
// set-aside name beforehand would otherwise keep the planted entry in place.
std::string UnguessableSuffix()
{
    std::random_device source;
    std::uniform_int_distribution<std::uint64_t> digits;
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(digits(source)));
    return text;
}

// Whether root must set the entry aside: another user's link, folder or file.
// A file of root's with a second name is refused where a user may have made
// that name (RootMayRead, RootMayWrite), but never set aside: a user could
// give an honest file of the store a second name and so hide it.
bool PlantedForRootAt(int folder, const char* name)
{
    struct stat status;
    return geteuid() == 0 && fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && status.st_uid != 0;
}

// An entry that another user put in the store (in place of the history
// folder, History.ini, or in the history folder or a copy's folder), while the store
// was writable by everyone, is renamed to a dot-name beside it, which the
// archive passes over and the administrator finds; the store's own entry is
// then made anew in its place. Root would otherwise refuse it for ever (it
// leads where its maker chose) and lose what it would have recorded there.
bool SetAsidePlanted(int folder, const char* name)
{
    if (!PlantedForRootAt(folder, name))
        return false;
    for (int attempt = 0; attempt < kSetAsideAttempts; ++attempt) {
        const std::string aside = "." + std::string(name) + ".set-aside-" + UnguessableSuffix();
        if (renameat2(folder, name, folder, aside.c_str(), RENAME_NOREPLACE) == 0)
            return true;
        if (errno != EEXIST)
            return false;
    }
    return false;
}

}  // namespace

bool CreateStoreFolder(const std::string& path)
{
    return CreateFolder(path);
}

// The history folder's parent and the history folder lose the write right of
// others, each before what another user put in place of the history folder or
// History.ini is set aside; then every folder below and History.ini.
void SecureExistingStore(const std::string& historyFolder)
{
    const std::string path = SystemPath(historyFolder);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || slash == 0)
        return;
    const int parent = open(path.substr(0, slash).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (parent < 0)
        return;
    const std::string name = path.substr(slash + 1);
    // Each folder is closed to others before what stands in it is set aside,
    // so that no one puts another entry in place of the one set aside.
    SetModeIfOwnedAndOpen(parent, posix::kFolderMode);
    SetAsidePlanted(parent, name.c_str());
    const int history = OpenFolderAt(parent, name.c_str());
    if (history >= 0) {
        SetModeIfOwnedAndOpen(history, posix::kFolderMode);
        SetAsidePlanted(history, kIniFileName);
        // Every folder, not only when the top ones were open to others: a
        // single event folder left open would be passed over by root.
        SecureFoldersIn(history, 2);
        SecureIniFile(history);
        close(history);
    }
    close(parent);
}

}  // namespace platform
