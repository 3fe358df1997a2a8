// The Win32 services of the machine, read from the service control manager in
// two enumeration calls: the first learns the size of the buffer, the second
// fills it. There is no retry: a service added between the two calls makes the
// buffer too small, and the list stays empty.
#include "collectors/CServicesList.h"

#include <iomanip>
#include <ostream>

#include "collectors/KeywordFilter.h"
#include "platform/Services.h"
#include "recorder/CLogger.h"

namespace {

const char kRule[] = "-------------------------------------------------------------------- ";
const char kHeader[] = "Service Name                                                Status   ";

}  // namespace

std::string ServiceStateWords(std::uint32_t currentState)
{
    switch (currentState) {
    case platform::kServiceStopped:
        return "Stopped";
    case platform::kServiceStartPending:
        return "Is starting";
    case platform::kServiceStopPending:
        return "Is stopping";
    case platform::kServiceRunning:
        return "Started";
    case platform::kServiceContinuePending:
        return "The service continue is pending";
    case platform::kServicePausePending:
        return "The service pause is pending";
    case platform::kServicePaused:
        return "Paused";
    default:
        return "Uknown";
    }
}

CServicesList::CServicesList() {}

CServicesList::~CServicesList() {}

// Each failure returns the step's error code and leaves behind what the step
// before had taken: the manager's handle once the buffer can't be had, the
// handle and the buffer once the second enumeration fails.
int CServicesList::Collect()
{
    services.clear();
    std::uint32_t error = 0;
    const platform::ServiceManager manager =
        platform::OpenServiceManager(platform::kScManagerAllAccess, error);
    if (manager == 0)
        return static_cast<int>(error);

    // The first call only learns the bytes needed; its result isn't looked at.
    platform::ServiceEnumerationWords words;
    std::vector<platform::ServiceStatusEntry> entries;
    platform::EnumerateServiceStatus(manager, platform::kServiceWin32, platform::kServiceStateAll,
                                     0, 0, words, entries, error);

    const std::uint32_t bufferSize = words.bytesNeeded;
    const platform::ServiceBuffer buffer = platform::AllocateServiceBuffer(bufferSize, error);
    if (buffer == 0)
        return static_cast<int>(error);

    if (!platform::EnumerateServiceStatus(manager, platform::kServiceWin32,
                                          platform::kServiceStateAll, buffer, bufferSize, words,
                                          entries, error))
        return static_cast<int>(error);

    for (const platform::ServiceStatusEntry& entry : entries)
        services.push_back(
            ServiceEntry{entry.serviceName, entry.displayName, ServiceStateWords(entry.currentState)});

    platform::FreeServiceBuffer(buffer);
    platform::CloseServiceManager(manager);
    return 0;
}

// The rows set the left-adjust bit alone, which then stays on for the rest of
// the run, and a blank fill before the first field.
int CServicesList::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kRule << std::endl;
    log << kHeader << std::endl;
    log << kRule << std::endl;
    for (const ServiceEntry& entry : services) {
        if (!IsSelected(entry))
            continue;
        log.setf(std::ios_base::left);
        log.fill(' ');
        log << std::setw(60) << entry.displayName << std::setw(15) << entry.state << std::endl;
    }
    log << kRule << std::endl;
    return 0;
}

// The display name decides; the key name is never looked at. A first keyword
// that begins with "ALL" would let every service through.
bool CServicesList::IsSelected(const ServiceEntry& entry)
{
    return MatchesKeywords(entry.displayName, ServiceKeywords, 2, AllSwitch::Prefix);
}
