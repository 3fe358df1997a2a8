// The service control manager, one call at a time: open the manager, size and
// allocate the enumeration buffer, enumerate the services' status into it,
// free the buffer, close the manager. The errors are those of the Windows
// calls. Where a system has no service manager (POSIX), the open fails with
// kErrorDatabaseDoesNotExist, the answer of OpenSCManagerA when the services
// database it is asked for doesn't exist, and every later call on a manager
// that was never opened answers kErrorInvalidHandle.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

// A manager opened by OpenServiceManager; 0 is no manager.
using ServiceManager = std::uintptr_t;
// A buffer allocated by AllocateServiceBuffer; 0 is no buffer.
using ServiceBuffer = std::uintptr_t;

// Access to the manager: SC_MANAGER_ALL_ACCESS.
constexpr std::uint32_t kScManagerAllAccess = 0xF003F;
// Which services: SERVICE_WIN32 (own and shared processes), SERVICE_STATE_ALL.
constexpr std::uint32_t kServiceWin32 = 0x30;
constexpr std::uint32_t kServiceStateAll = 3;

// Values of dwCurrentState.
constexpr std::uint32_t kServiceStopped = 1;
constexpr std::uint32_t kServiceStartPending = 2;
constexpr std::uint32_t kServiceStopPending = 3;
constexpr std::uint32_t kServiceRunning = 4;
constexpr std::uint32_t kServiceContinuePending = 5;
constexpr std::uint32_t kServicePausePending = 6;
constexpr std::uint32_t kServicePaused = 7;

// Error codes of the calls.
constexpr std::uint32_t kErrorAccessDenied = 5;
constexpr std::uint32_t kErrorInvalidHandle = 6;
constexpr std::uint32_t kErrorNotEnoughMemory = 8;
constexpr std::uint32_t kErrorMoreData = 234;
constexpr std::uint32_t kErrorDatabaseDoesNotExist = 1065;

// OpenSCManagerA(no machine, no database, access): the manager, or 0 and the
// GetLastError code in `error`.
ServiceManager OpenServiceManager(std::uint32_t access, std::uint32_t& error);

// malloc(size) for the enumeration: the buffer, or 0 and kErrorNotEnoughMemory
// in `error`.
ServiceBuffer AllocateServiceBuffer(std::uint32_t size, std::uint32_t& error);
// free().
void FreeServiceBuffer(ServiceBuffer buffer);

// The three words that EnumServicesStatusA reads and writes.
struct ServiceEnumerationWords {
    std::uint32_t bytesNeeded = 0;
    std::uint32_t servicesReturned = 0;
    std::uint32_t resumeHandle = 0;
};

// One ENUM_SERVICE_STATUS of the buffer: lpServiceName, lpDisplayName and
// dwCurrentState of its SERVICE_STATUS.
struct ServiceStatusEntry {
    std::string serviceName;
    std::string displayName;
    std::uint32_t currentState = 0;
};

// EnumServicesStatusA(manager, type, state, buffer, bufferSize, &bytesNeeded,
// &servicesReturned, &resumeHandle), with the words taken from and given back
// in `words`. A buffer of 0 with a size of 0 passes no buffer. True when the
// call succeeds; otherwise `error` holds the GetLastError code. `entries` gets
// the first servicesReturned entries of the buffer, in the manager's order.
bool EnumerateServiceStatus(ServiceManager manager, std::uint32_t serviceType,
                            std::uint32_t serviceState, ServiceBuffer buffer,
                            std::uint32_t bufferSize, ServiceEnumerationWords& words,
                            std::vector<ServiceStatusEntry>& entries, std::uint32_t& error);

// CloseServiceHandle.
void CloseServiceManager(ServiceManager manager);

}  // namespace platform
