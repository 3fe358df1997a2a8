// The service control manager's calls, answered from the scripted machine.
#include "platform/scripted/ScriptedServices.h"

#include "platform/Services.h"
#include "platform/scripted/ScriptedMachine.h"

namespace platform {
namespace scripted {

namespace {

// The one manager that the scripted machine hands out.
constexpr ServiceManager kManager = 1;

Services& CurrentServices()
{
    return CurrentMachine().services;
}

// An ENUM_SERVICE_STATUSA: two name pointers and a SERVICE_STATUS of seven
// 32-bit words, padded to the pointers' alignment.
constexpr std::uint32_t kStatusWords = 7 * sizeof(std::uint32_t);
constexpr std::uint32_t kEntrySize =
    (2 * sizeof(void*) + kStatusWords + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*);

std::uint32_t BytesFor(const ScriptedService& service)
{
    return kEntrySize + static_cast<std::uint32_t>(service.serviceName.size() + 1 +
                                                   service.displayName.size() + 1);
}

// The bytes that the services from `first` on need.
std::uint32_t BytesNeededFrom(const Services& services, std::size_t first)
{
    if (services.bytesNeeded)
        return *services.bytesNeeded;
    std::uint32_t bytes = 0;
    for (std::size_t i = first; i < services.services.size(); ++i)
        bytes += BytesFor(services.services[i]);
    return bytes;
}

bool IsLiveBuffer(const Services& services, ServiceBuffer buffer, std::uint32_t bufferSize)
{
    if (buffer == 0)
        return bufferSize == 0;
    return buffer <= services.allocationSizes.size() &&
           services.allocationSizes[buffer - 1] >= bufferSize;
}

}  // namespace

}  // namespace scripted

ServiceManager OpenServiceManager(std::uint32_t, std::uint32_t& error)
{
    scripted::Services& services = scripted::CurrentServices();
    if (!services.managerOpens) {
        error = services.openError;
        return 0;
    }
    error = 0;
    ++services.managersOpened;
    return scripted::kManager;
}

ServiceBuffer AllocateServiceBuffer(std::uint32_t size, std::uint32_t& error)
{
    scripted::Services& services = scripted::CurrentServices();
    if (services.allocationFails) {
        error = kErrorNotEnoughMemory;
        return 0;
    }
    error = 0;
    services.allocationSizes.push_back(size);
    return services.allocationSizes.size();
}

void FreeServiceBuffer(ServiceBuffer)
{
    ++scripted::CurrentServices().buffersFreed;
}

// Fills the buffer from the resume handle on with as many entries as fit; a
// buffer too small for all of them fails with kErrorMoreData, the bytes that
// the rest need, and the resume handle at the first entry left out.
bool EnumerateServiceStatus(ServiceManager manager, std::uint32_t, std::uint32_t,
                            ServiceBuffer buffer, std::uint32_t bufferSize,
                            ServiceEnumerationWords& words,
                            std::vector<ServiceStatusEntry>& entries, std::uint32_t& error)
{
    scripted::Services& services = scripted::CurrentServices();
    entries.clear();
    const int call = ++services.enumerationCalls;
    services.bufferSizesPassed.push_back(bufferSize);
    bool succeeded = false;
    if (manager != scripted::kManager || !scripted::IsLiveBuffer(services, buffer, bufferSize)) {
        error = kErrorInvalidHandle;
    } else if (call == services.failingCall) {
        error = services.failingCallError;
    } else {
        const std::size_t first = words.resumeHandle;
        std::uint32_t used = 0;
        std::size_t next = first;
        for (; next < services.services.size(); ++next) {
            const std::uint32_t bytes = scripted::BytesFor(services.services[next]);
            if (used + bytes > bufferSize)
                break;
            used += bytes;
            const scripted::ScriptedService& service = services.services[next];
            entries.push_back(
                ServiceStatusEntry{service.serviceName, service.displayName, service.currentState});
        }
        const std::uint32_t needed = scripted::BytesNeededFrom(services, first);
        words.servicesReturned = static_cast<std::uint32_t>(entries.size());
        succeeded = needed <= bufferSize && next == services.services.size();
        if (succeeded) {
            words.bytesNeeded = 0;
            words.resumeHandle = 0;
            error = 0;
        } else {
            words.bytesNeeded = needed > used ? needed - used : 0;
            words.resumeHandle = static_cast<std::uint32_t>(next);
            error = kErrorMoreData;
        }
    }
    if (call == 1) {
        for (const scripted::ScriptedService& service : services.addedAfterFirstCall)
            services.services.push_back(service);
    }
    return succeeded;
}

void CloseServiceManager(ServiceManager)
{
    ++scripted::CurrentServices().managersClosed;
}

}  // namespace platform
