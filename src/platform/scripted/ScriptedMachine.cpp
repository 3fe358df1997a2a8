#include "platform/scripted/ScriptedMachine.h"

#include "platform/SpecialFolder.h"
#include "platform/SystemVersion.h"

namespace platform {
namespace scripted {

Machine& CurrentMachine()
{
    static Machine machine;
    return machine;
}

void ResetMachine()
{
    CurrentMachine() = Machine();
}

}  // namespace scripted

std::string LookUpSpecialFolder(int folderId)
{
    const scripted::Machine& machine = scripted::CurrentMachine();
    if (!machine.hasShellFolders || folderId != kFolderCommonAppData)
        return std::string();
    return machine.commonAppData;
}

// The 148-byte structure ends before the service-pack numbers, the suite mask
// and the product type, which stay as the caller cleared them.
bool GetVersionEx(std::uint32_t structureSize, SystemVersion& version)
{
    const scripted::Machine& machine = scripted::CurrentMachine();
    version = SystemVersion();
    const bool extended = structureSize == kExtendedVersionSize;
    if (extended ? !machine.acceptsExtendedVersion
                 : structureSize != kVersionSize || !machine.acceptsVersion)
        return false;
    version.majorVersion = machine.version.majorVersion;
    version.minorVersion = machine.version.minorVersion;
    version.buildNumber = machine.version.buildNumber;
    version.platformId = machine.version.platformId;
    version.servicePack = machine.version.servicePack;
    if (extended) {
        version.servicePackMajor = machine.version.servicePackMajor;
        version.servicePackMinor = machine.version.servicePackMinor;
        version.suiteMask = machine.version.suiteMask;
        version.productType = machine.version.productType;
    }
    return true;
}

bool GetSystemRelease(std::string& systemName, std::string& release)
{
    const scripted::Machine& machine = scripted::CurrentMachine();
    if (!machine.namesItself)
        return false;
    systemName = machine.systemName;
    release = machine.systemRelease;
    return true;
}

}  // namespace platform
