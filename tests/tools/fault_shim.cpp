// Faults on demand for the end-to-end tests on Linux, loaded into a real program
// with LD_PRELOAD: reads of one named file that fail part-way, and a file time
// that can't be turned into calendar fields. Each fault is off unless its
// environment variables are set.
//   ZOR_FAULT_READ_FILE  a file name; reads of a file of that name fail with
//   ZOR_FAULT_READ_AFTER EIO once this many bytes of it have been read.
//   ZOR_FAULT_TIME       a time in seconds since 1970 that localtime_r refuses.
#include <dlfcn.h>
#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

bool IsFaultyFile(int fd)
{
    const char* name = getenv("ZOR_FAULT_READ_FILE");
    if (name == nullptr)
        return false;
    char link[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    char target[4096];
    const ssize_t length = readlink(link, target, sizeof target - 1);
    if (length <= 0)
        return false;
    const std::string path(target, static_cast<std::size_t>(length));
    const std::string suffix = std::string("/") + name;
    return path.size() >= suffix.size() &&
           path.compare(path.size() - suffix.size(), suffix.size(), suffix) == 0;
}

template <typename Function>
Function Next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" ssize_t read(int fd, void* buffer, size_t count)
{
    static const auto next = Next<ssize_t (*)(int, void*, size_t)>("read");
    if (!IsFaultyFile(fd))
        return next(fd, buffer, count);
    const off_t at = lseek(fd, 0, SEEK_CUR);
    const off_t limit = static_cast<off_t>(atol(getenv("ZOR_FAULT_READ_AFTER") ?: "0"));
    if (at < 0 || at >= limit) {
        errno = EIO;
        return -1;
    }
    const size_t room = static_cast<size_t>(limit - at);
    return next(fd, buffer, count < room ? count : room);
}

extern "C" struct tm* localtime_r(const time_t* when, struct tm* fields)
{
    static const auto next = Next<struct tm* (*)(const time_t*, struct tm*)>("localtime_r");
    const char* refused = getenv("ZOR_FAULT_TIME");
    if (refused != nullptr && when != nullptr && *when == static_cast<time_t>(atoll(refused))) {
        errno = EOVERFLOW;
        return nullptr;
    }
    return next(when, fields);
}
