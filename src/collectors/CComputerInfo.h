// What machine this is: computer name, a composed name of the operating
// system, workstation, server or domain controller, service pack, and the
// processors.
#pragma once

#include <cstdint>
#include <string>

#include "collectors/Info.h"

class CComputerInfo : public Info {
public:
    CComputerInfo();
    virtual ~CComputerInfo();
    virtual int Collect();
    virtual int Write();

    bool isDomainController;
    std::string computerName;
    std::string osName;
    std::string servicePack;
    std::string machineType;
    std::uint32_t majorVersion;
    std::uint32_t minorVersion;
    std::uint32_t buildNumber;
    std::uint16_t servicePackMajor;
    std::uint16_t servicePackMinor;
    std::uint8_t productType;
    std::uint16_t processorArchitecture;
    std::uint32_t processorCount;
    std::string cpuName;

private:
    void CollectOSInfo();
    void CollectCPUInfo();
};
