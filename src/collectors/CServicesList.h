// The Win32 services of the machine with their state in words, reported when
// the display name holds one of the service keywords.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "collectors/Info.h"

struct ServiceEntry {
    std::string serviceName;
    std::string displayName;
    std::string state;
};

// The words for a service's dwCurrentState; "Uknown" for any value but 1 to 7.
std::string ServiceStateWords(std::uint32_t currentState);

class CServicesList : public Info {
public:
    CServicesList();
    virtual ~CServicesList();
    virtual int Collect();
    virtual int Write();

    bool IsSelected(const ServiceEntry& entry);

    std::vector<ServiceEntry> services;
};
