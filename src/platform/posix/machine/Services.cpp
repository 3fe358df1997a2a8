// There is no service control manager on POSIX systems: the open fails as for
// a services database that doesn't exist, and a call on a manager that was
// never opened answers as for an invalid handle. The buffer is the runtime
// library's, as on Windows.
#include "platform/Services.h"

#include <cstdlib>

namespace platform {

ServiceManager OpenServiceManager(std::uint32_t, std::uint32_t& error)
{
    error = kErrorDatabaseDoesNotExist;
    return 0;
}

ServiceBuffer AllocateServiceBuffer(std::uint32_t size, std::uint32_t& error)
{
    void* buffer = std::malloc(size);
    error = buffer == nullptr ? kErrorNotEnoughMemory : 0;
    return reinterpret_cast<ServiceBuffer>(buffer);
}

void FreeServiceBuffer(ServiceBuffer buffer)
{
    std::free(reinterpret_cast<void*>(buffer));
}

bool EnumerateServiceStatus(ServiceManager, std::uint32_t, std::uint32_t, ServiceBuffer,
                            std::uint32_t, ServiceEnumerationWords&,
                            std::vector<ServiceStatusEntry>& entries, std::uint32_t& error)
{
    entries.clear();
    error = kErrorInvalidHandle;
    return false;
}

void CloseServiceManager(ServiceManager) {}

}  // namespace platform
