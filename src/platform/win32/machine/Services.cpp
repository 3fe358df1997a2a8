// The service control manager on Windows: the advapi32 calls, each made once
// as the caller asks, and the runtime library's allocator for the buffer.
#include "platform/Services.h"

#include <windows.h>

#include <cstdlib>

namespace platform {

namespace {

SC_HANDLE ManagerOf(ServiceManager manager)
{
    return reinterpret_cast<SC_HANDLE>(manager);
}

std::string TextAt(const char* text)
{
    return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

ServiceManager OpenServiceManager(std::uint32_t access, std::uint32_t& error)
{
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, access);
    error = manager == nullptr ? GetLastError() : 0;
    return reinterpret_cast<ServiceManager>(manager);
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

bool EnumerateServiceStatus(ServiceManager manager, std::uint32_t serviceType,
                            std::uint32_t serviceState, ServiceBuffer buffer,
                            std::uint32_t bufferSize, ServiceEnumerationWords& words,
                            std::vector<ServiceStatusEntry>& entries, std::uint32_t& error)
{
    auto* statuses = reinterpret_cast<ENUM_SERVICE_STATUSA*>(buffer);
    DWORD bytesNeeded = words.bytesNeeded;
    DWORD servicesReturned = words.servicesReturned;
    DWORD resumeHandle = words.resumeHandle;
    const BOOL succeeded =
        EnumServicesStatusA(ManagerOf(manager), serviceType, serviceState, statuses, bufferSize,
                            &bytesNeeded, &servicesReturned, &resumeHandle);
    error = succeeded ? 0 : GetLastError();
    words.bytesNeeded = bytesNeeded;
    words.servicesReturned = servicesReturned;
    words.resumeHandle = resumeHandle;
    entries.clear();
    if (statuses == nullptr)
        return succeeded != FALSE;
    // Never more entries than the buffer can hold, whatever the word says.
    const DWORD capacity = bufferSize / sizeof(ENUM_SERVICE_STATUSA);
    for (DWORD i = 0; i < servicesReturned && i < capacity; ++i) {
        ServiceStatusEntry entry;
        entry.serviceName = TextAt(statuses[i].lpServiceName);
        entry.displayName = TextAt(statuses[i].lpDisplayName);
        entry.currentState = statuses[i].ServiceStatus.dwCurrentState;
        entries.push_back(entry);
    }
    return succeeded != FALSE;
}

void CloseServiceManager(ServiceManager manager)
{
    CloseServiceHandle(ManagerOf(manager));
}

}  // namespace platform
