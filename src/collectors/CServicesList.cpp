// The Win32 services of the machine, read from the service control manager in
// two enumeration calls: the first learns the size of the buffer, the second
// fills it. There is no retry: a service added between the two calls makes the
// buffer too small, and the list stays empty.
#include "collectors/CServicesList.h"

#include <iomanip>
#include <ostream>

#include "collectors/KeywordFilter.h"
#include "collectors/ReportTexts.h"
#include "platform/Services.h"
#include "recorder/CLogger.h"

namespace {

using texts::services::kHeader;
using texts::services::kRule;

}  // namespace

std::string ServiceStateWords(std::uint32_t currentState)
{
    static_assert(platform::kServiceStopped == 1 && platform::kServicePaused == 7,
                  "the words stand in the order of the states 1 to 7");
    if (currentState < platform::kServiceStopped || currentState > platform::kServicePaused)
        return texts::services::kUnknownState;
    return texts::services::kStateWords[currentState - platform::kServiceStopped];
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
        log << std::setw(texts::services::kDisplayNameWidth) << entry.displayName
            << std::setw(texts::services::kStateWidth) << entry.state << std::endl;
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
