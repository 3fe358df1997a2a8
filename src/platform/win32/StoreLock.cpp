// The store's lock on Windows: a named mutex of the global namespace, so that
// every session of the machine meets the same one. The system releases a
// mutex whose owner ends without releasing it, and hands it to the next waiter
// as abandoned; the store's writes are each whole, so the next call takes it
// as it would any other.
#include "platform/StoreLock.h"

#include <windows.h>

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

// Whoever made the mutex first, an administrator's installer or a user's
// collection run, every other user must be able to wait on it: it gets a
// security descriptor without a DACL, which grants everyone all access.
HANDLE OpenStoreMutex(const std::string& folder)
{
    SECURITY_DESCRIPTOR everyone;
    if (!InitializeSecurityDescriptor(&everyone, SECURITY_DESCRIPTOR_REVISION) ||
        !SetSecurityDescriptorDacl(&everyone, TRUE, nullptr, FALSE))
        return nullptr;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, &everyone, FALSE};
    return CreateMutexA(&attributes, FALSE, MutexName(folder).c_str());
}

}  // namespace

StoreLock::StoreLock(const std::string& folder) : handle_(0)
{
    const HANDLE mutex = OpenStoreMutex(folder);
    if (mutex == nullptr)
        return;
    const DWORD waited = WaitForSingleObject(mutex, INFINITE);
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
