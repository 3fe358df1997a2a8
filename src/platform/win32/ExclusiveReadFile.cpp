// The exclusive read-only open on Windows: share mode 0, so that a file that
// anyone holds open is refused, and no one may open it while it is read.
#include <windows.h>

#include "platform/FileSystem.h"

namespace platform {

namespace {

HANDLE AsHandle(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

const std::intptr_t kClosed = reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE);

}  // namespace

ExclusiveReadFile::ExclusiveReadFile() : handle_(kClosed) {}

ExclusiveReadFile::~ExclusiveReadFile()
{
    Close();
}

bool ExclusiveReadFile::Open(const std::string& path)
{
    Close();
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_READONLY, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    handle_ = reinterpret_cast<std::intptr_t>(file);
    return true;
}

bool ExclusiveReadFile::Read(void* buffer, std::uint32_t size, std::uint32_t& bytesRead)
{
    DWORD got = 0;
    const BOOL read = handle_ != kClosed && ReadFile(AsHandle(handle_), buffer, size, &got, nullptr);
    bytesRead = got;
    return read != FALSE;
}

std::uint64_t ExclusiveReadFile::Size() const
{
    LARGE_INTEGER size;
    if (handle_ == kClosed || !GetFileSizeEx(AsHandle(handle_), &size) || size.QuadPart < 0)
        return 0;
    return static_cast<std::uint64_t>(size.QuadPart);
}

void ExclusiveReadFile::Close()
{
    if (handle_ != kClosed)
        CloseHandle(AsHandle(handle_));
    handle_ = kClosed;
}

void HoldBackLeaseSignalsInThisThread() {}

}  // namespace platform
