// The exclusive read-only open on POSIX systems. POSIX has no share modes, so
// the open asks whether anyone holds the file open for writing: by a read lease,
// which the kernel grants only while no one does, or, where leases are not to
// be had, by a look through this process's own open descriptors. A profile
// file is read as the profile calls read it.
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/FileSystem.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/ProfileJournal.h"

namespace platform {

namespace {

constexpr std::intptr_t kClosed = -1;

enum class LeaseAnswer { NoWriter, WriterHolds, Unavailable };

// A lease that is broken while held sends SIGIO, whose default action ends the
// process; the signal is held back while the lease lives and dropped after.
class SigioHeldBack {
public:
    SigioHeldBack()
    {
        sigemptyset(&sigio_);
        sigaddset(&sigio_, SIGIO);
        sigprocmask(SIG_BLOCK, &sigio_, &previous_);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGIO) == 1;
    }
    ~SigioHeldBack()
    {
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        const struct timespec noWait = {0, 0};
        if (!wasPending_ && sigismember(&pending, SIGIO) == 1)
            sigtimedwait(&sigio_, nullptr, &noWait);
        sigprocmask(SIG_SETMASK, &previous_, nullptr);
    }
    SigioHeldBack(const SigioHeldBack&) = delete;
    SigioHeldBack& operator=(const SigioHeldBack&) = delete;

private:
    sigset_t sigio_;
    sigset_t previous_;
    bool wasPending_ = false;
};

LeaseAnswer TryReadLease(int descriptor)
{
    SigioHeldBack held;
    if (fcntl(descriptor, F_SETLEASE, F_RDLCK) == 0) {
        fcntl(descriptor, F_SETLEASE, F_UNLCK);
        return LeaseAnswer::NoWriter;
    }
    if (errno == EAGAIN || errno == EBUSY)
        return LeaseAnswer::WriterHolds;
    return LeaseAnswer::Unavailable;
}

// The access mode of one of this process's descriptors, from the "flags:"
// line (octal) of /proc/self/fdinfo.
bool DescriptorWrites(const std::string& descriptorName)
{
    std::ifstream info("/proc/self/fdinfo/" + descriptorName);
    std::string word;
    while (info >> word) {
        if (word != "flags:")
            continue;
        std::string flags;
        info >> flags;
        const long mode = std::strtol(flags.c_str(), nullptr, 8) & O_ACCMODE;
        return mode == O_WRONLY || mode == O_RDWR;
    }
    return false;
}

// Whether another descriptor of this process has the file open for writing.
bool ThisProcessWrites(int descriptor, const struct stat& file)
{
    const std::string own = std::to_string(descriptor);
    return posix::AnyOwnDescriptor([&](const std::string& number, const std::string& path) {
        struct stat other;
        return number != own && stat(path.c_str(), &other) == 0 && posix::SameFile(other, file) &&
               DescriptorWrites(number);
    });
}

bool HeldForWriting(int descriptor, const struct stat& file)
{
    const LeaseAnswer lease = TryReadLease(descriptor);
    if (lease != LeaseAnswer::Unavailable)
        return lease == LeaseAnswer::WriterHolds;
    return ThisProcessWrites(descriptor, file);
}

// A profile file that holds the journal of a writer that died is read as
// the content that it stands for, which the profile calls read: from a file
// in memory that holds that content alone. Any other file is read as it is.
std::intptr_t WithoutJournal(int descriptor)
{
    posix::JournalView view;
    if (!posix::ViewOfJournalFile(descriptor, view))
        return descriptor;
    close(descriptor);
    const int content = memfd_create("profile content", MFD_CLOEXEC);
    if (content < 0)
        return kClosed;
    if (!posix::WriteAt(content, view.content, 0)) {
        close(content);
        return kClosed;
    }
    return content;
}

}  // namespace

ExclusiveReadFile::ExclusiveReadFile() : handle_(kClosed) {}

ExclusiveReadFile::~ExclusiveReadFile()
{
    Close();
}

bool ExclusiveReadFile::Open(const std::string& path)
{
    Close();
    if (path.empty())
        return false;
    const int descriptor = posix::OpenRegularFile(SystemPath(path));
    if (descriptor < 0)
        return false;
    struct stat file;
    if (fstat(descriptor, &file) != 0 || HeldForWriting(descriptor, file)) {
        close(descriptor);
        return false;
    }
    handle_ = WithoutJournal(descriptor);
    return handle_ != kClosed;
}

bool ExclusiveReadFile::Read(void* buffer, std::uint32_t size, std::uint32_t& bytesRead)
{
    bytesRead = 0;
    if (handle_ == kClosed)
        return false;
    ssize_t got;
    do {
        got = read(static_cast<int>(handle_), buffer, size);
    } while (got < 0 && errno == EINTR);
    if (got < 0)
        return false;
    bytesRead = static_cast<std::uint32_t>(got);
    return true;
}

std::uint64_t ExclusiveReadFile::Size() const
{
    struct stat file;
    if (handle_ == kClosed || fstat(static_cast<int>(handle_), &file) != 0 || file.st_size < 0)
        return 0;
    return static_cast<std::uint64_t>(file.st_size);
}

void ExclusiveReadFile::Close()
{
    if (handle_ != kClosed)
        close(static_cast<int>(handle_));
    handle_ = kClosed;
}

void HoldBackLeaseSignalsInThisThread()
{
    sigset_t sigio;
    sigemptyset(&sigio);
    sigaddset(&sigio, SIGIO);
    pthread_sigmask(SIG_BLOCK, &sigio, nullptr);
}

}  // namespace platform
