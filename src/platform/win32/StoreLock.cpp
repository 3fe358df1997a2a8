// The store's lock on Windows: a named mutex of the global namespace, so that
// every session of the machine meets the same one. The system releases a
// mutex whose owner ends without releasing it, and hands it to the next waiter
// as abandoned; the store's writes are each whole, so the next call takes it
// as it would any other. A holder that keeps it past the bound is passed by.
#include "platform/StoreLock.h"

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <cstdio>

#include "platform/common/AsciiCase.h"

namespace platform {

namespace {

// One name for each store folder, however its letters are cased, and short
// enough for any folder: a 64-bit FNV-1a hash of the folded path.
std::string MutexName(const std::string& folder)
{
    std::uint64_t hash = 14695981039346656037ull;
    for (char c : FoldedAsciiText(folder)) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 1099511628211ull;
    }
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return std::string("Global\\ZORHistoryStore-") + digits;
}

// SYSTEM and Administrators alone may open the mutex: no other user can take
// it and hold it, and a caller who can't open it goes on without it.
const char* const kMutexSecurity = "D:P(A;;GA;;;SY)(A;;GA;;;BA)";

HANDLE OpenStoreMutex(const std::string& folder)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorA(kMutexSecurity, SDDL_REVISION_1,
                                                              &descriptor, nullptr))
        return nullptr;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    const HANDLE mutex = CreateMutexA(&attributes, FALSE, MutexName(folder).c_str());
    LocalFree(descriptor);
    return mutex;
}

DWORD WaitMilliseconds(std::chrono::milliseconds bound)
{
    return static_cast<DWORD>(std::min<std::chrono::milliseconds::rep>(bound.count(), INFINITE - 1));
}

}  // namespace

StoreLock::StoreLock(const std::string& folder, std::chrono::milliseconds bound) : handle_(0)
{
    const HANDLE mutex = OpenStoreMutex(folder);
    if (mutex == nullptr)
        return;
    const DWORD waited = WaitForSingleObject(mutex, WaitMilliseconds(bound));
    if (waited != WAIT_OBJECT_0 && waited != WAIT_ABANDONED) {
        CloseHandle(mutex);
        return;
    }
    handle_ = reinterpret_cast<std::intptr_t>(mutex);
}

StoreLock::~StoreLock()
{
    if (!Held())
        return;
    const HANDLE mutex = reinterpret_cast<HANDLE>(handle_);
    ReleaseMutex(mutex);
    CloseHandle(mutex);
}

bool StoreLock::Held() const
{
    return handle_ != 0;
}

}  // namespace platform
