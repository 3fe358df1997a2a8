// The operating system's version, as GetVersionExA reports it in its 156-byte
// extended structure.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

constexpr std::uint32_t kPlatformWin32s = 0;
constexpr std::uint32_t kPlatformWindows = 1;    // the Windows 95 family
constexpr std::uint32_t kPlatformWin32NT = 2;

struct SystemVersion {
    std::uint32_t majorVersion = 0;
    std::uint32_t minorVersion = 0;
    std::uint32_t buildNumber = 0;
    std::uint32_t platformId = 0;
    std::string servicePack;  // szCSDVersion
    std::uint16_t servicePackMajor = 0;
    std::uint16_t servicePackMinor = 0;
    std::uint16_t suiteMask = 0;
    std::uint8_t productType = 0;
};

// The version fields; all zero when the call fails (its result isn't looked at).
SystemVersion GetSystemVersion();

}  // namespace platform
