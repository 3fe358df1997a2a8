#include "platform/posix/ProfileFileCache.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

#include "platform/FileSystem.h"
#include "platform/posix/LockWaits.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/ProfileJournal.h"
#include "platform/posix/StoreModes.h"

namespace platform {
namespace posix {

namespace {

// A file that changes while it is read is read again, this many times at most.
constexpr int kReadAttempts = 3;

std::string FolderOf(const std::string& systemPath)
{
    const std::size_t slash = systemPath.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : systemPath.substr(0, slash);
}

bool FolderExists(const std::string& folder)
{
    struct stat status;
    return stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool ReadWhole(int fd, std::string& bytes)
{
    bytes.clear();
    char chunk[65536];
    for (;;) {
        const ssize_t count = read(fd, chunk, sizeof chunk);
        if (count == 0)
            return true;
        if (count < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.append(chunk, static_cast<std::size_t>(count));
    }
}

// Any user who may read the file may flock it and keep it: a lock that isn't
// had within the call's bound, or on a file system that offers no flock,
// leaves the file unguarded, as if there were no lock.
void Lock(int fd, int operation)
{
    LockWaits::Take(fd, operation);
}

// The file's bytes under a shared lock, and its identity as read.
bool ReadLocked(const std::string& systemPath, std::string& bytes, FileIdentity& identity)
{
    for (int attempt = 0; attempt < kReadAttempts; ++attempt) {
        // Not waited on when it is a FIFO: only a regular file is read.
        const int rootFlags = RootOpenFlags(systemPath);
        const int fd = rootFlags < 0 ? -1 : open(systemPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | rootFlags);
        if (fd < 0)
            return false;
        struct stat before, after;
        Lock(fd, LOCK_SH);
        const bool read = fstat(fd, &before) == 0 && S_ISREG(before.st_mode) && RootMayRead(before) &&
                          ReadWhole(fd, bytes) && fstat(fd, &after) == 0;
        close(fd);
        if (!read)
            return false;
        identity = FileIdentity::Of(after);
        if (FileIdentity::Of(before) == identity)
            return true;
    }
    // Changed under every read, by a writer that doesn't lock: this parse is
    // used once and not trusted later, so the next call reads the file again.
    identity = FileIdentity();
    return true;
}

// Brings the folder's names to the disk, so that a new name outlives a loss
// of power; a folder that can't be flushed is left as it is.
void FlushFolder(const std::string& folder)
{
    const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    fsync(fd);
    close(fd);
}

// A new file that appears whole or not at all: the bytes go into an unnamed
// file in the folder, which then gets the name. False where the system
// offers no unnamed files, or when the name was taken meanwhile; nothing is
// left behind either way.
bool CreateWhole(const std::string& systemPath, const std::string& bytes, FileIdentity& identity)
{
    const int fd = open(FolderOf(systemPath).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kFileMode);
    if (fd < 0)
        return false;
    fchmod(fd, kFileMode);
    const std::string unnamed = "/proc/self/fd/" + std::to_string(fd);
    struct stat status;
    const bool made = WriteAt(fd, bytes, 0) && Flush(fd) && fstat(fd, &status) == 0 &&
                      linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, systemPath.c_str(),
                             AT_SYMLINK_FOLLOW) == 0;
    close(fd);
    if (made) {
        identity = FileIdentity::Of(status);
        FlushFolder(FolderOf(systemPath));
    }
    return made;
}

bool NothingToChange(ProfileDocument&)
{
    return false;
}

// The document as a fresh read of the bytes written from it gives it.
ProfileDocument ReadBack(ProfileDocument document, const std::string& bytes)
{
    return document.ReadsBackAsItIs() ? std::move(document) : ProfileDocument::Parse(bytes);
}

}  // namespace

FileIdentity FileIdentity::Of(const struct stat& status)
{
    FileIdentity identity;
    identity.device = status.st_dev;
    identity.inode = status.st_ino;
    identity.size = status.st_size;
    identity.modifiedSeconds = status.st_mtim.tv_sec;
    identity.modifiedNanoseconds = status.st_mtim.tv_nsec;
    return identity;
}

bool FileIdentity::operator==(const FileIdentity& other) const
{
    return device == other.device && inode == other.inode && size == other.size &&
           modifiedSeconds == other.modifiedSeconds &&
           modifiedNanoseconds == other.modifiedNanoseconds;
}

ProfileFileCache& ProfileFileCache::Instance()
{
    static ProfileFileCache cache;
    return cache;
}

ProfileOpenResult ProfileFileCache::Open(const std::string& systemPath,
                                         const ProfileDocument*& document)
{
    document = nullptr;
    struct stat status;
    if (stat(systemPath.c_str(), &status) != 0) {
        const bool missingFile = errno == ENOENT && FolderExists(FolderOf(systemPath));
        Forget(systemPath);
        if (!missingFile)
            return ProfileOpenResult::Failed;
        document = &empty_;
        return ProfileOpenResult::NotFound;
    }
    if (!S_ISREG(status.st_mode)) {
        Forget(systemPath);
        return ProfileOpenResult::Failed;
    }
    Entry* cached = Cached(systemPath);
    if (cached != nullptr && cached->identity == FileIdentity::Of(status)) {
        document = &cached->document;
        return ProfileOpenResult::Opened;
    }
    return Load(systemPath, document);
}

bool ProfileFileCache::Change(const std::string& systemPath, const DocumentChange& change)
{
    struct stat status;
    if (RootOpenFlags(systemPath) < 0) {
        Forget(systemPath);
        return false;
    }
    if (stat(systemPath.c_str(), &status) == 0)
        return ChangeAt(systemPath, O_RDWR, change);
    if (errno == ENOENT && FolderExists(FolderOf(systemPath)))
        return ChangeMissingFile(systemPath, change);
    Forget(systemPath);
    return false;
}

void ProfileFileCache::ForgetAll()
{
    entries_.clear();
}

bool ProfileFileCache::ReadContent(const std::string& systemPath, std::string& content)
{
    std::string bytes;
    FileIdentity identity;
    if (!ReadLocked(systemPath, bytes, identity))
        return false;
    const JournalView view = ViewOf(bytes);
    if (view.interrupted)
        FinishWork(systemPath);
    content = view.content;
    return true;
}

// Made whole where the system allows it; elsewhere, or when another writer
// made it meanwhile, it is opened (made empty if need be) and changed in place.
bool ProfileFileCache::ChangeMissingFile(const std::string& systemPath, const DocumentChange& change)
{
    ProfileDocument document;
    if (!change(document))
        return true;
    const std::string bytes = document.Serialize();
    FileIdentity identity;
    if (CreateWhole(systemPath, bytes, identity)) {
        Remember(systemPath, identity, ReadBack(std::move(document), bytes), true);
        return true;
    }
    MakeMissingFile(systemPath);
    return ChangeAt(systemPath, O_RDWR, change);
}

// The file is changed where a link leads, as the Windows calls change it, but
// root follows no link that another user made, nothing below another user's
// folder, and writes no file that another user owns or that has a second
// name: those were put in the store by someone else (see ChangeOpenFile).
bool ProfileFileCache::ChangeAt(const std::string& systemPath, int openFlags,
                                const DocumentChange& change)
{
    const int rootFlags = RootOpenFlags(systemPath);
    const int fd = rootFlags < 0 ? -1 : open(systemPath.c_str(), openFlags | O_CLOEXEC | O_NONBLOCK | rootFlags);
    const bool changed = fd >= 0 && ChangeOpenFile(fd, systemPath, change);
    if (fd >= 0)
        close(fd);
    if (!changed)
        Forget(systemPath);
    return changed;
}

// Under the file's exclusive lock: the document as the file holds it now, the
// change, and the write in place.
bool ProfileFileCache::ChangeOpenFile(int fd, const std::string& systemPath,
                                      const DocumentChange& change)
{
    struct stat status;
    Lock(fd, LOCK_EX);
    if (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) || !RootMayWrite(status) ||
        (AttributesOf(systemPath, status) & kAttributeReadOnly) != 0)
        return false;
    ProfileDocument document;
    std::uint64_t size = 0;
    if (!TakeDocument(fd, systemPath, status, document, size))
        return false;
    if (change(document)) {
        const std::string bytes = document.Serialize();
        if (!WriteThroughJournal(fd, size, bytes))
            return false;
        document = ReadBack(std::move(document), bytes);
    }
    if (fstat(fd, &status) != 0)
        return false;
    Remember(systemPath, FileIdentity::Of(status), std::move(document), true);
    return true;
}

// The parsed copy if the file is still the one it was made from: taken, not
// copied, since a change that fails forgets the file anyway. Otherwise the
// file's bytes, once the work of a writer that died is finished. `size` is
// the file's size without any journal.
bool ProfileFileCache::TakeDocument(int fd, const std::string& systemPath,
                                    const struct stat& status, ProfileDocument& document,
                                    std::uint64_t& size)
{
    Entry* cached = Cached(systemPath);
    if (cached != nullptr && cached->whole && cached->identity == FileIdentity::Of(status)) {
        document = std::move(cached->document);
        cached->identity = FileIdentity();
        size = static_cast<std::uint64_t>(status.st_size);
        return true;
    }
    std::string bytes;
    if (!ReadWhole(fd, bytes))
        return false;
    const JournalView view = ViewOf(bytes);
    if (view.interrupted && !Repair(fd, view))
        return false;
    document = ProfileDocument::Parse(view.content);
    size = view.content.size();
    return true;
}

ProfileFileCache::Entry* ProfileFileCache::Cached(const std::string& systemPath)
{
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
        if (entry->systemPath == systemPath) {
            entries_.splice(entries_.begin(), entries_, entry);
            return &entries_.front();
        }
    }
    return nullptr;
}

ProfileFileCache::Entry& ProfileFileCache::Remember(const std::string& systemPath,
                                                    const FileIdentity& identity,
                                                    ProfileDocument document, bool whole)
{
    Entry* entry = Cached(systemPath);
    if (entry == nullptr) {
        entries_.push_front(Entry{systemPath, identity, ProfileDocument(), whole});
        entry = &entries_.front();
        if (entries_.size() > kCapacity)
            entries_.pop_back();
    }
    entry->identity = identity;
    entry->document = std::move(document);
    entry->whole = whole;
    return *entry;
}

void ProfileFileCache::Forget(const std::string& systemPath)
{
    entries_.remove_if([&](const Entry& entry) { return entry.systemPath == systemPath; });
}

// The work of a writer that died, finished where this process may write the
// file; false where it may not, or a step failed.
bool ProfileFileCache::FinishWork(const std::string& systemPath)
{
    return !IsReadOnlyFile(systemPath) && Change(systemPath, NothingToChange);
}

// A file that a writer left unfinished is finished here where this process
// may write it; otherwise its journal is only read.
ProfileOpenResult ProfileFileCache::Load(const std::string& systemPath,
                                         const ProfileDocument*& document)
{
    std::string bytes;
    FileIdentity identity;
    if (!ReadLocked(systemPath, bytes, identity)) {
        Forget(systemPath);
        return ProfileOpenResult::Failed;
    }
    const JournalView view = ViewOf(bytes);
    if (view.interrupted && FinishWork(systemPath)) {
        document = &Cached(systemPath)->document;
        return ProfileOpenResult::Opened;
    }
    document = &Remember(systemPath, identity, ProfileDocument::Parse(view.content),
                         !view.interrupted)
                    .document;
    return ProfileOpenResult::Opened;
}

}  // namespace posix
}  // namespace platform
