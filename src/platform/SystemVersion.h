// The operating system's version, as GetVersionExA reports it.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

constexpr std::uint32_t kPlatformWin32s = 0;
constexpr std::uint32_t kPlatformWindows = 1;    // the Windows 95 family
constexpr std::uint32_t kPlatformWin32NT = 2;

// The size words of the version structure: the extended OSVERSIONINFOEXA, and
// the older OSVERSIONINFOA that systems before NT 4.0 SP6 and the Windows 95
// family know.
constexpr std::uint32_t kExtendedVersionSize = 156;
constexpr std::uint32_t kVersionSize = 148;

struct SystemVersion {
    std::uint32_t majorVersion = 0;
    std::uint32_t minorVersion = 0;
    std::uint32_t buildNumber = 0;
    std::uint32_t platformId = 0;
    std::string servicePack;  // szCSDVersion
    // The fields of the extended structure only; zero from a 148-byte call.
    std::uint16_t servicePackMajor = 0;
    std::uint16_t servicePackMinor = 0;
    std::uint16_t suiteMask = 0;
    std::uint8_t productType = 0;
};

// GetVersionExA on a zeroed structure whose size field is `structureSize`
// (kExtendedVersionSize or kVersionSize). True when the call succeeds; on a
// failure `version` holds the zeros of the cleared structure.
bool GetVersionEx(std::uint32_t structureSize, SystemVersion& version);

// What a system that has no Windows version tells of itself instead: the name
// of its distribution and the release of its kernel, each written with its
// control characters as "?". False, with both left as they were, on a system
// that has no such names, as Windows, whose version GetVersionEx tells.
bool GetSystemRelease(std::string& systemName, std::string& release);

}  // namespace platform
