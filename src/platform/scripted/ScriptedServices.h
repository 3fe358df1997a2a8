// The scripted machine's service control manager: whether it opens, the Win32
// services it knows in its own order, and the failures a test asks for. It
// also keeps count of what the calls did, so that a test can tell which
// handles and buffers were left behind. A buffer holds no memory here: the
// entries of an enumeration come straight from the list.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {
namespace scripted {

struct ScriptedService {
    std::string serviceName;
    std::string displayName;
    std::uint32_t currentState = 0;
};

struct Services {
    // Whether OpenSCManagerA gives a manager, and its error when it doesn't.
    bool managerOpens = true;
    std::uint32_t openError = 5;

    // The services, in the order in which the manager hands them out.
    std::vector<ScriptedService> services;
    // The bytes that the services need in the buffer; when not set, those of
    // one ENUM_SERVICE_STATUSA per service and its two names with their NULs.
    std::optional<std::uint32_t> bytesNeeded;

    // Services that join the list right after the first enumeration call.
    std::vector<ScriptedService> addedAfterFirstCall;
    // The enumeration call (counted from 1) that fails, and with which error.
    int failingCall = 0;
    std::uint32_t failingCallError = 0;
    // Whether the allocation of the buffer fails.
    bool allocationFails = false;

    // What the calls did.
    int managersOpened = 0;
    int managersClosed = 0;
    int enumerationCalls = 0;
    std::vector<std::uint32_t> bufferSizesPassed;
    // The size of each buffer handed out; a buffer is its index + 1.
    std::vector<std::uint32_t> allocationSizes;
    int buffersFreed = 0;
};

}  // namespace scripted
}  // namespace platform
