#include "collectors/CComputerInfo.h"

#include <ostream>

#include "collectors/MachineNames.h"
#include "collectors/ReportTexts.h"
#include "platform/Processor.h"
#include "platform/Registry.h"
#include "platform/SystemVersion.h"
#include "recorder/CLogger.h"

namespace {

const std::string kRule(texts::computer::kRuleLength, '=');

// Where an NT system too old for the extended version structure keeps its
// product type, and the size of the buffer it is read into.
const char kProductOptionsKey[] = "SYSTEM\\CurrentControlSet\\Control\\ProductOptions";
const char kProductTypeValue[] = "ProductType";
constexpr std::uint32_t kProductTypeBufferSize = 80;

// The "ProductType" text of the product options. The key is closed only after
// a good read: a failed read leaves it open.
bool ReadProductType(std::string& productType)
{
    platform::RegistryKey key = 0;
    if (platform::OpenMachineKey(kProductOptionsKey, platform::kKeyQueryValue, key) !=
        platform::kStatusSuccess)
        return false;
    platform::RegistryValue value;
    const std::int32_t status =
        platform::QueryRegistryValue(key, kProductTypeValue, kProductTypeBufferSize, value);
    if (status != platform::kStatusSuccess || value.length > kProductTypeBufferSize)
        return false;
    platform::CloseRegistryKey(key);
    productType = value.data.substr(0, value.data.find('\0'));
    return true;
}

}  // namespace

// The numbers are not printed; they start at zero so that a machine that
// can't tell its version leaves defined values. A machine that can't tell is
// no domain controller.
CComputerInfo::CComputerInfo()
    : isDomainController(false),
      majorVersion(0),
      minorVersion(0),
      buildNumber(0),
      servicePackMajor(0),
      servicePackMinor(0),
      productType(0),
      processorArchitecture(0),
      processorCount(0)
{
}

CComputerInfo::~CComputerInfo() {}

int CComputerInfo::Collect()
{
    ReadComputerName(computerName);
    CollectOSInfo();
    CollectCPUInfo();
    return 0;
}

// The extended structure first; a system that refuses it is asked again with
// the older one, and the product type then comes from the product options. A
// system without a Windows version, such as Linux, may name itself instead:
// its distribution as the OS and its kernel's release as the type, with no
// service pack.
void CComputerInfo::CollectOSInfo()
{
    platform::SystemVersion version;
    const bool extended = platform::GetVersionEx(platform::kExtendedVersionSize, version);
    if (!extended && !platform::GetVersionEx(platform::kVersionSize, version)) {
        platform::GetSystemRelease(osName, machineType);
        return;
    }

    majorVersion = version.majorVersion;
    minorVersion = version.minorVersion;
    buildNumber = version.buildNumber;
    servicePackMajor = version.servicePackMajor;
    servicePackMinor = version.servicePackMinor;
    productType = version.productType;
    servicePack = version.servicePack;
    isDomainController = false;

    switch (version.platformId) {
    case platform::kPlatformWin32s:
        osName = "Microsoft Win32s";
        return;
    case platform::kPlatformWindows:
        NameWindows95Family(majorVersion, minorVersion, osName);
        return;
    case platform::kPlatformWin32NT:
        break;
    default:
        return;
    }

    NameNtBase(majorVersion, minorVersion, osName);
    if (extended) {
        if (productType == kProductWorkstation) {
            machineType = "Workstation";
            NameWorkstation(majorVersion, version.suiteMask, osName);
        } else if (productType == kProductDomainController) {
            machineType = "Domain Controller";
            isDomainController = true;
            NameServer(majorVersion, minorVersion, version.suiteMask, osName);
        } else if (productType == kProductServer) {
            machineType = "Server";
            NameServer(majorVersion, minorVersion, version.suiteMask, osName);
        }
        return;
    }

    std::string productOptions;
    if (ReadProductType(productOptions))
        NameFromProductOptions(productOptions, osName);
}

void CComputerInfo::CollectCPUInfo()
{
    platform::ProcessorInfo processor;
    platform::QueryProcessorInfo(processor);
    processorCount = processor.processorCount;
    processorArchitecture = processor.architecture;
    cpuName = ProcessorName(processor.architecture, processor.level, processor.processorType);
}

int CComputerInfo::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << texts::computer::kTitle << std::endl;
    log << kRule << std::endl;
    log << texts::computer::kComputerNameLabel << computerName << std::endl;
    log << texts::computer::kOSLabel << osName << std::endl;
    log << texts::computer::kTypeLabel << machineType << std::endl;
    log << texts::computer::kServicePackLabel << servicePack << std::endl;
    log << texts::computer::kProcessorCountLabel << processorCount << std::endl;
    log << texts::computer::kCPULabel << cpuName << std::endl;
    log << kRule << std::endl;
    log << std::endl;
    return 0;
}
