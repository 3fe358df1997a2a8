// The operating system's version on Windows: GetVersionExA on the extended
// structure, with the size field that the caller asks for. A system that knows
// only the older structure refuses the size of the extended one.
#include "platform/SystemVersion.h"

#include <windows.h>

// The platform's own GetVersionEx, not the system's macro for GetVersionExA.
#undef GetVersionEx

namespace platform {

namespace {

static_assert(sizeof(OSVERSIONINFOEXA) == kExtendedVersionSize, "the extended version structure");
static_assert(sizeof(OSVERSIONINFOA) == kVersionSize, "the version structure");

std::string ServicePackText(const OSVERSIONINFOEXA& info)
{
    const char* text = info.szCSDVersion;
    std::size_t length = 0;
    while (length < sizeof info.szCSDVersion && text[length] != '\0')
        ++length;
    return std::string(text, length);
}

}  // namespace

bool GetVersionEx(std::uint32_t structureSize, SystemVersion& version)
{
    OSVERSIONINFOEXA info;
    ZeroMemory(&info, sizeof info);
    info.dwOSVersionInfoSize = structureSize;
    const BOOL done = GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info));
    version.majorVersion = info.dwMajorVersion;
    version.minorVersion = info.dwMinorVersion;
    version.buildNumber = info.dwBuildNumber;
    version.platformId = info.dwPlatformId;
    version.servicePack = ServicePackText(info);
    version.servicePackMajor = info.wServicePackMajor;
    version.servicePackMinor = info.wServicePackMinor;
    version.suiteMask = info.wSuiteMask;
    version.productType = info.wProductType;
    return done != FALSE;
}

// Windows names itself through its version.
bool GetSystemRelease(std::string&, std::string&)
{
    return false;
}

}  // namespace platform
