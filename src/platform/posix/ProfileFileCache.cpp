#include "platform/posix/ProfileFileCache.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

#include "platform/posix/PosixFiles.h"

namespace platform {
namespace posix {

namespace {

// A file that changes while it is read is read again, this many times at most.
constexpr int kReadAttempts = 3;
// Names tried for the temporary file before a write gives up.
constexpr int kTemporaryNameAttempts = 100;

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

bool WriteWhole(int fd, const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(fd, bytes.data() + done, bytes.size() - done);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

// A new, empty file in the folder of `systemPath`, under a name that no
// other writer uses.
int CreateTemporaryBeside(const std::string& systemPath, std::string& temporaryPath)
{
    static std::atomic<unsigned> counter{0};
    const std::string prefix = FolderOf(systemPath) + "/.profile-" + std::to_string(getpid()) + "-";
    for (int attempt = 0; attempt < kTemporaryNameAttempts; ++attempt) {
        temporaryPath = prefix + std::to_string(counter++) + ".tmp";
        const int fd = open(temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

// The replacement keeps the old file's permissions and, where this process
// may set it, its owner.
void TakeOverAttributes(int fd, const std::string& systemPath)
{
    struct stat existing;
    if (stat(systemPath.c_str(), &existing) != 0 || !S_ISREG(existing.st_mode))
        return;
    if (fchmod(fd, existing.st_mode & 07777) != 0)
        return;
    if (existing.st_uid != geteuid() || existing.st_gid != getegid()) {
        if (fchown(fd, existing.st_uid, existing.st_gid) != 0) {
            // Not permitted: the file now belongs to this process's user.
        }
    }
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

ProfileOpenResult ProfileFileCache::OpenForWriting(const std::string& systemPath,
                                                   const ProfileDocument*& document)
{
    const ProfileOpenResult result = Open(systemPath, document);
    if (result == ProfileOpenResult::Opened && IsReadOnlyFile(systemPath)) {
        document = nullptr;
        return ProfileOpenResult::Failed;
    }
    return result;
}

bool ProfileFileCache::Replace(const std::string& systemPath, const std::string& bytes)
{
    std::string temporaryPath;
    const int fd = CreateTemporaryBeside(systemPath, temporaryPath);
    if (fd < 0)
        return false;
    TakeOverAttributes(fd, systemPath);
    struct stat written;
    bool complete = WriteWhole(fd, bytes) && fdatasync(fd) == 0 && fstat(fd, &written) == 0;
    if (close(fd) != 0)
        complete = false;
    if (!complete || rename(temporaryPath.c_str(), systemPath.c_str()) != 0) {
        unlink(temporaryPath.c_str());
        Forget(systemPath);
        return false;
    }
    Remember(systemPath, FileIdentity::Of(written), ProfileDocument::Parse(bytes));
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
                                                    ProfileDocument document)
{
    Entry* entry = Cached(systemPath);
    if (entry == nullptr) {
        entries_.push_front(Entry{systemPath, identity, ProfileDocument()});
        entry = &entries_.front();
        if (entries_.size() > kCapacity)
            entries_.pop_back();
    }
    entry->identity = identity;
    entry->document = std::move(document);
    return *entry;
}

void ProfileFileCache::Forget(const std::string& systemPath)
{
    entries_.remove_if([&](const Entry& entry) { return entry.systemPath == systemPath; });
}

ProfileOpenResult ProfileFileCache::Load(const std::string& systemPath,
                                         const ProfileDocument*& document)
{
    std::string bytes;
    FileIdentity identity;
    for (int attempt = 0; attempt < kReadAttempts; ++attempt) {
        const int fd = open(systemPath.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            Forget(systemPath);
            return ProfileOpenResult::Failed;
        }
        struct stat before, after;
        const bool read = fstat(fd, &before) == 0 && S_ISREG(before.st_mode) &&
                          ReadWhole(fd, bytes) && fstat(fd, &after) == 0;
        close(fd);
        if (!read) {
            Forget(systemPath);
            return ProfileOpenResult::Failed;
        }
        identity = FileIdentity::Of(after);
        if (FileIdentity::Of(before) == identity)
            break;
        // Changed while it was read: the parse is used once and not trusted
        // later, so the next call reads the file again.
        identity = FileIdentity();
    }
    document = &Remember(systemPath, identity, ProfileDocument::Parse(bytes)).document;
    return ProfileOpenResult::Opened;
}

}  // namespace posix
}  // namespace platform
