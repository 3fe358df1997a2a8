// Files and folders on POSIX systems. Paths arrive with backslashes and are
// turned into "/" paths whenever the operating system is called.
#include "platform/FileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "platform/common/AsciiCase.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/StoreModes.h"

namespace platform {

const char* const kTextLineEnd = "\n";
const char* const kFileNameSeparators = "\\/";

namespace posix {

std::string WithSystemSeparators(const std::string& path)
{
    std::string converted = path;
    std::replace(converted.begin(), converted.end(), '\\', '/');
    return converted;
}

}  // namespace posix

namespace {

using posix::WithSystemSeparators;

bool EntryExists(const std::string& systemPath)
{
    struct stat status;
    return lstat(systemPath.c_str(), &status) == 0;
}

// The name of the entry of `folder` ("" for the current directory) that is
// `name` but for the case of its letters; empty when there is none. Where
// several are, the first that the file system lists.
std::string EntryNamedWithoutCase(const std::string& folder, const std::string& name)
{
    DIR* listing = opendir(folder.empty() ? "." : folder.c_str());
    if (listing == nullptr)
        return std::string();
    std::string found;
    while (const dirent* entry = readdir(listing)) {
        if (SameIgnoringAsciiCase(entry->d_name, name)) {
            found = entry->d_name;
            break;
        }
    }
    closedir(listing);
    return found;
}

bool IsPlainName(const std::string& component)
{
    return !component.empty() && component != "." && component != "..";
}

// A Windows file system takes names without regard to case: a component that
// isn't there as it is spelt, but is under another case of its letters, is
// that entry. The first component that isn't there in any case, and all
// behind it, keep the caller's spelling: that is what a new entry is made with.
std::string WithCaseOnDisk(const std::string& path)
{
    if (path.empty() || EntryExists(path))
        return path;
    std::string resolved;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        std::string component = path.substr(start, end - start);
        if (IsPlainName(component) && !EntryExists(resolved + component)) {
            component = EntryNamedWithoutCase(resolved, component);
            if (component.empty())
                return resolved + path.substr(start);
        }
        resolved += component;
        if (end == path.size())
            return resolved;
        resolved += '/';
        start = end + 1;
    }
}

}  // namespace

std::string SystemPath(const std::string& path)
{
    return WithCaseOnDisk(WithSystemSeparators(path));
}

bool IsAbsolutePath(const std::string& path)
{
    return !path.empty() && (path[0] == '/' || path[0] == '\\');
}

namespace {

std::string CurrentDirectory()
{
    std::vector<char> buffer(PATH_MAX + 1, '\0');
    if (getcwd(buffer.data(), buffer.size()) == nullptr)
        return std::string();
    return std::string(buffer.data());
}

// The path's components with "." dropped, ".." taking back the one before
// (never above the root) and repeated separators folded, as Windows does.
std::vector<std::string> FoldedComponents(const std::string& absolutePath)
{
    std::vector<std::string> components;
    std::size_t start = 0;
    while (start <= absolutePath.size()) {
        std::size_t end = absolutePath.find('/', start);
        if (end == std::string::npos)
            end = absolutePath.size();
        const std::string component = absolutePath.substr(start, end - start);
        if (component == "..") {
            if (!components.empty())
                components.pop_back();
        } else if (!component.empty() && component != ".") {
            components.push_back(component);
        }
        start = end + 1;
    }
    return components;
}

bool EndsWithSeparator(const std::string& path)
{
    return !path.empty() && path.back() == '/';
}

}  // namespace

// The result is given in the form that the paths above this layer use: with
// backslashes, the way the Windows call gives them.
bool GetFullPathName(const std::string& name, std::size_t limit, std::string& fullPath)
{
    fullPath.clear();
    // As the Windows call, from the name alone: the disk isn't asked.
    std::string path = WithSystemSeparators(name);
    if (path.empty())
        return false;
    if (path[0] != '/') {
        const std::string current = CurrentDirectory();
        if (current.empty())
            return false;
        path = current + "/" + path;
    }
    std::string result;
    for (const std::string& component : FoldedComponents(path))
        result += "\\" + component;
    if (result.empty() || (EndsWithSeparator(path) && result != "\\"))
        result += "\\";
    if (result.size() + 1 > limit)
        return false;
    fullPath = result;
    return true;
}

namespace posix {

int OpenRegularFile(const std::string& systemPath)
{
    const int descriptor = open(systemPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0)
        return -1;
    struct stat status;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || !RootMayRead(status)) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

bool PlantedForRoot(const struct stat& status)
{
    return geteuid() == 0 && status.st_uid != 0;
}

bool OthersMayChangeFolder(const struct stat& status)
{
    return geteuid() == 0 && S_ISDIR(status.st_mode) &&
           (status.st_uid != 0 || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0);
}

bool HardLinksProtected()
{
    static const bool kProtected = [] {
        char setting = '0';
        const int fd = open("/proc/sys/fs/protected_hardlinks", O_RDONLY | O_CLOEXEC);
        if (fd >= 0) {
            if (read(fd, &setting, 1) != 1)
                setting = '0';
            close(fd);
        }
        return setting == '1';
    }();
    return kProtected;
}

bool SecondNameMayBePlanted(nlink_t links, bool hardLinksProtected)
{
    return links > 1 && !hardLinksProtected;
}

bool RootMayWrite(const struct stat& status)
{
    return geteuid() != 0 ||
           (!PlantedForRoot(status) && !SecondNameMayBePlanted(status.st_nlink, HardLinksProtected()));
}

namespace {

// The store nests its files four folders deep below the machine-wide folder:
// the maker's, the history, a copy's and an event's folder.
constexpr int kStoreFoldersAbove = 4;

// The folder below which the store's tools make everything: the maker's
// folder in the machine-wide application data folder.
bool LiesInMachineStore(const std::string& folder)
{
    static const std::string makers = std::string(ZOR_COMMON_APPDATA) + "/TAQ";
    return folder.compare(0, makers.size(), makers) == 0 &&
           (folder.size() == makers.size() || folder[makers.size()] == '/');
}

}  // namespace

bool LeadsThroughPlantedEntry(const std::string& systemPath)
{
    if (geteuid() != 0)
        return false;
    std::string folder = systemPath;
    for (int level = 0; level < kStoreFoldersAbove; ++level) {
        const std::size_t separator = folder.find_last_of('/');
        if (separator == std::string::npos || separator == 0)
            return false;
        folder.resize(separator);
        struct stat status;
        if (lstat(folder.c_str(), &status) == 0 && PlantedForRoot(status) &&
            (S_ISLNK(status.st_mode) || (S_ISDIR(status.st_mode) && LiesInMachineStore(folder))))
            return true;
    }
    return false;
}

int RootOpenFlags(const std::string& systemPath)
{
    if (geteuid() != 0)
        return 0;
    if (LeadsThroughPlantedEntry(systemPath))
        return -1;
    struct stat entry;
    if (lstat(systemPath.c_str(), &entry) == 0 && S_ISLNK(entry.st_mode))
        return PlantedForRoot(entry) ? -1 : 0;
    return O_NOFOLLOW;
}

bool RootMayRead(const struct stat& status)
{
    return geteuid() != 0 || status.st_uid != 0 || !SecondNameMayBePlanted(status.st_nlink, HardLinksProtected());
}

int OpenCheckedPath(const std::string& systemPath, bool writes)
{
    if (writes && LeadsThroughPlantedEntry(systemPath))
        return -1;
    const int flags = O_PATH | O_CLOEXEC | (writes ? O_NOFOLLOW : 0);
    const int descriptor = open(systemPath.c_str(), flags);
    if (descriptor < 0)
        return -1;
    struct stat status;
    const bool fits = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                      (!writes || RootMayWrite(status));
    if (!fits) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

std::string DescriptorPath(int descriptor)
{
    return "/proc/self/fd/" + std::to_string(descriptor);
}

std::uint32_t AttributesOf(const std::string& systemPath, const struct stat& status)
{
    if (S_ISDIR(status.st_mode))
        return kAttributeDirectory;
    std::uint32_t attributes = kAttributeArchive;
    const bool noWriteBit = (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
    if (noWriteBit || access(systemPath.c_str(), W_OK) != 0)
        attributes |= kAttributeReadOnly;
    return attributes;
}

bool IsReadOnlyFile(const std::string& systemPath)
{
    struct stat status;
    return stat(systemPath.c_str(), &status) == 0 &&
           (AttributesOf(systemPath, status) & kAttributeReadOnly) != 0;
}

CalendarTime LocalLastWriteTime(const struct stat& status)
{
    struct tm local = {};
    if (localtime_r(&status.st_mtim.tv_sec, &local) == nullptr)
        return CalendarTime();
    return CalendarTimeOf(local, status.st_mtim.tv_nsec);
}

CalendarTime CalendarTimeOf(const struct tm& fields, long nanoseconds)
{
    CalendarTime time;
    time.year = static_cast<std::uint16_t>(fields.tm_year + 1900);
    time.month = static_cast<std::uint16_t>(fields.tm_mon + 1);
    time.dayOfWeek = static_cast<std::uint16_t>(fields.tm_wday);
    time.day = static_cast<std::uint16_t>(fields.tm_mday);
    time.hour = static_cast<std::uint16_t>(fields.tm_hour);
    time.minute = static_cast<std::uint16_t>(fields.tm_min);
    time.second = static_cast<std::uint16_t>(fields.tm_sec);
    time.milliseconds = static_cast<std::uint16_t>(nanoseconds / 1000000);
    return time;
}

}  // namespace posix

std::uint32_t GetFileAttributes(const std::string& path)
{
    const std::string systemPath = SystemPath(path);
    struct stat status;
    if (path.empty() || stat(systemPath.c_str(), &status) != 0)
        return kInvalidFileAttributes;
    return posix::AttributesOf(systemPath, status);
}

PathStatus StatPath(const std::string& path)
{
    PathStatus result;
    struct stat status;
    if (path.empty() || stat(SystemPath(path).c_str(), &status) != 0)
        return result;
    result.regularFile = S_ISREG(status.st_mode);
    result.directory = S_ISDIR(status.st_mode);
    return result;
}

bool OthersMayChangeFolder(const std::string& path)
{
    struct stat status;
    return lstat(SystemPath(path).c_str(), &status) == 0 && posix::OthersMayChangeFolder(status);
}

// Root may write a file whatever its permissions say; the system decides by
// the read-only attribute, for every user alike.
bool OpenFileBuffer(std::filebuf& buffer, const std::string& path, std::ios_base::openmode mode)
{
    const std::string systemPath = SystemPath(path);
    const bool writes = (mode & (std::ios_base::out | std::ios_base::app)) != 0;
    if (writes && (posix::IsReadOnlyFile(systemPath) || posix::LeadsThroughPlantedEntry(systemPath)))
        return false;
    if (writes)
        posix::MakeMissingFile(systemPath);
    const int checked = posix::OpenCheckedPath(systemPath, writes);
    if (checked < 0)
        return false;
    const bool opened = buffer.open(posix::DescriptorPath(checked), mode) != nullptr;
    close(checked);
    return opened;
}

std::FILE* OpenRuntimeFile(const std::string& path, const char* mode)
{
    const std::string systemPath = SystemPath(path);
    const bool writes = std::strpbrk(mode, "wa+") != nullptr;
    if (writes && posix::IsReadOnlyFile(systemPath))
        return nullptr;
    return std::fopen(systemPath.c_str(), mode);
}

// The target is looked at as the runtime's "wb" open would meet it: a folder
// or a read-only file (through a link too) can't be written. The new file is
// made by mkostemp: exclusively, with mode 0600, whatever the umask.
std::FILE* CreateFileBeside(const std::string& path, std::string& temporaryPath)
{
    temporaryPath.clear();
    const std::string systemPath = SystemPath(path);
    struct stat status;
    if (path.empty() || systemPath.back() == '/' ||
        (stat(systemPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) ||
        posix::IsReadOnlyFile(systemPath))
        return nullptr;
    const std::size_t slash = systemPath.rfind('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    std::string pattern = systemPath.substr(0, nameStart) + "." + systemPath.substr(nameStart) + ".XXXXXX";
    const int descriptor = mkostemp(&pattern[0], O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    std::FILE* file = fdopen(descriptor, "wb");
    if (file == nullptr) {
        close(descriptor);
        unlink(pattern.c_str());
        return nullptr;
    }
    temporaryPath = pattern;
    return file;
}

// rename replaces the entry of the target's name, a link or another user's
// file alike, and never writes into what it was.
bool PutFileInPlace(const std::string& temporaryPath, const std::string& path)
{
    const std::string temporary = WithSystemSeparators(temporaryPath);
    if (rename(temporary.c_str(), SystemPath(path).c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

bool CreateFolder(const std::string& path)
{
    return !path.empty() && !posix::LeadsThroughPlantedEntry(SystemPath(path)) &&
           posix::MakeFolderWithFolderMode(SystemPath(path));
}

namespace {

bool WriteAll(int descriptor, const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = write(descriptor, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

// Copies the `size` bytes that the source held when it was opened, and no
// more: a file that its owner keeps appending to never holds the copy up.
bool CopyBytes(int source, int target, off_t size)
{
    char block[65536];
    off_t left = size;
    while (left > 0) {
        const std::size_t want = static_cast<std::size_t>(std::min<off_t>(left, sizeof block));
        const ssize_t got = read(source, block, want);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return false;
        if (got == 0)
            return true;
        if (!WriteAll(target, block, static_cast<std::size_t>(got)))
            return false;
        left -= got;
    }
    return true;
}

// The most that a copy's mode keeps of its source's: read and write for the
// owner, read for group and others. A Windows copy takes over attributes
// (read-only, hidden, archive), never a right to run or to run as another
// user; so a copy never has the setuid, setgid or sticky bit nor an execute
// bit, and never gives group or others more than the source gave them.
constexpr mode_t kCopyModeMask = 0644;

// The resolved path of an existing entry; empty if it can't be resolved.
std::string ResolvedPath(const std::string& systemPath)
{
    char* resolved = realpath(systemPath.c_str(), nullptr);
    if (resolved == nullptr)
        return std::string();
    const std::string path = resolved;
    free(resolved);
    return path;
}

// The most that a copy's mode keeps for group and others, by the folders
// above its source: a file below a folder that others can't search is
// private to those who reach it, whatever its own mode says, and its copy in
// the store, which every user may read, stays as private (owner only). A
// source whose folders can't be resolved or read counts as private.
mode_t ReachOfOthers(const std::string& sourceSystemPath)
{
    constexpr mode_t kOwnerOnly = 0700;
    std::string folder = ResolvedPath(sourceSystemPath);
    if (folder.empty())
        return kOwnerOnly;
    while (folder != "/") {
        const std::size_t separator = folder.find_last_of('/');
        if (separator == std::string::npos)
            return kOwnerOnly;
        folder.resize(separator == 0 ? 1 : separator);
        struct stat status;
        if (stat(folder.c_str(), &status) != 0 || (status.st_mode & S_IXOTH) == 0)
            return kOwnerOnly;
    }
    return 0777;
}

// The copy takes the source's mode, within kCopyModeMask and what its folders
// let others reach, and its last-write time, as the Windows copy keeps the
// source's attributes and times.
bool TakeOverModeAndTime(int target, const struct stat& sourceStatus, mode_t reach)
{
    const struct timespec times[2] = {sourceStatus.st_atim, sourceStatus.st_mtim};
    return fchmod(target, sourceStatus.st_mode & kCopyModeMask & reach) == 0 &&
           futimens(target, times) == 0;
}

bool CopyOpenFile(int source, const struct stat& sourceStatus, mode_t reach,
                  const std::string& targetPath)
{
    const int target = open(targetPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (target < 0)
        return false;
    bool copied = CopyBytes(source, target, sourceStatus.st_size) &&
                  TakeOverModeAndTime(target, sourceStatus, reach);
    if (close(target) != 0)
        copied = false;
    if (!copied)
        unlink(targetPath.c_str());
    return copied;
}

}  // namespace

// Only a regular file is copied: a symbolic link in the last component is
// refused, not followed, and a FIFO or device is refused without waiting for
// a writer, since the copy runs as whoever collects, over files that others
// may name.
bool CopyFileNoOverwrite(const std::string& source, const std::string& target)
{
    if (source.empty() || target.empty() || posix::LeadsThroughPlantedEntry(SystemPath(target)))
        return false;
    const int input = posix::OpenRegularFile(SystemPath(source));
    if (input < 0)
        return false;
    struct stat status;
    bool copied = fstat(input, &status) == 0 &&
                  CopyOpenFile(input, status, ReachOfOthers(SystemPath(source)), SystemPath(target));
    close(input);
    return copied;
}

namespace {

#ifndef RENAME_NOREPLACE
#define RENAME_NOREPLACE (1 << 0)
#endif

// renameat2 with RENAME_NOREPLACE; -1 with ENOSYS or EINVAL where the kernel
// or the file system doesn't offer it.
int RenameNoReplace(const std::string& source, const std::string& target)
{
#ifdef SYS_renameat2
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, source.c_str(), AT_FDCWD,
                                    target.c_str(), RENAME_NOREPLACE));
#else
    (void)source;
    (void)target;
    errno = ENOSYS;
    return -1;
#endif
}

// Where an open descriptor of this process leads; empty if /proc won't say.
std::string DescriptorTarget(const std::string& descriptorPath)
{
    std::vector<char> buffer(PATH_MAX + 1, '\0');
    const ssize_t length = readlink(descriptorPath.c_str(), buffer.data(), buffer.size() - 1);
    if (length <= 0)
        return std::string();
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

// Whether this process holds the entry, or a file below it, open. Windows
// refuses to move either then, as the runtime opens its files without leave to
// delete them. An open folder (a folder search) doesn't count, nor does what a
// symbolic link leads to, since the move takes the link alone.
bool HoldsOpenAtOrBelow(const std::string& systemPath)
{
    struct stat link;
    if (lstat(systemPath.c_str(), &link) != 0 || S_ISLNK(link.st_mode))
        return false;
    const std::string resolved = ResolvedPath(systemPath);
    if (resolved.empty())
        return false;
    const std::string below = resolved.back() == '/' ? resolved : resolved + "/";
    return posix::AnyOwnDescriptor([&](const std::string&, const std::string& path) {
        struct stat held;
        if (stat(path.c_str(), &held) != 0 || S_ISDIR(held.st_mode))
            return false;
        return posix::SameFile(held, link) ||
               DescriptorTarget(path).compare(0, below.size(), below) == 0;
    });
}

}  // namespace

bool MovePath(const std::string& source, const std::string& target)
{
    if (source.empty() || target.empty())
        return false;
    const std::string from = SystemPath(source);
    const std::string to = SystemPath(target);
    if (posix::LeadsThroughPlantedEntry(from) || posix::LeadsThroughPlantedEntry(to) ||
        HoldsOpenAtOrBelow(from))
        return false;
    if (RenameNoReplace(from, to) == 0)
        return true;
    if (errno != ENOSYS && errno != EINVAL)
        return false;
    struct stat status;
    if (lstat(to.c_str(), &status) == 0)
        return false;
    return rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace platform
