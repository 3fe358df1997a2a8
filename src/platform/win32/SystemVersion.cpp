// The operating system's version on Windows: GetVersionExA in its extended,
// 156-byte form. Its result isn't looked at: a failed call leaves every field zero.
#include "platform/SystemVersion.h"

#include <windows.h>

namespace platform {

namespace {

constexpr DWORD kExtendedVersionSize = 156;
static_assert(sizeof(OSVERSIONINFOEXA) == kExtendedVersionSize, "the extended version structure");

std::string ServicePackText(const OSVERSIONINFOEXA& info)
{
    const char* text = info.szCSDVersion;
    std::size_t length = 0;
    while (length < sizeof info.szCSDVersion && text[length] != '\0')
        ++length;
    return std::string(text, length);
}

}  // namespace

SystemVersion GetSystemVersion()
{
    OSVERSIONINFOEXA info;
    ZeroMemory(&info, sizeof info);
    info.dwOSVersionInfoSize = kExtendedVersionSize;
    GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&info));
    SystemVersion version;
    version.majorVersion = info.dwMajorVersion;
    version.minorVersion = info.dwMinorVersion;
    version.buildNumber = info.dwBuildNumber;
    version.platformId = info.dwPlatformId;
    version.servicePack = ServicePackText(info);
    version.servicePackMajor = info.wServicePackMajor;
    version.servicePackMinor = info.wServicePackMinor;
    version.suiteMask = info.wSuiteMask;
    version.productType = info.wProductType;
    return version;
}

}  // namespace platform
