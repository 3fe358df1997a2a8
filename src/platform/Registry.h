// The registry below HKEY_LOCAL_MACHINE, one call at a time: open a key, ask a
// value's type and data, enumerate value and subkey names, close a key. The
// statuses are those of the Windows calls; where a system has no registry,
// every open fails as for a key that doesn't exist.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// A key opened by OpenMachineKey; 0 is no key.
using RegistryKey = std::uintptr_t;

// Value types.
constexpr std::uint32_t kRegNone = 0;
constexpr std::uint32_t kRegSz = 1;
constexpr std::uint32_t kRegExpandSz = 2;
constexpr std::uint32_t kRegBinary = 3;
constexpr std::uint32_t kRegDword = 4;
constexpr std::uint32_t kRegMultiSz = 7;

// Statuses of the calls.
constexpr std::int32_t kStatusSuccess = 0;
constexpr std::int32_t kStatusFileNotFound = 2;
constexpr std::int32_t kStatusAccessDenied = 5;
constexpr std::int32_t kStatusInvalidHandle = 6;
constexpr std::int32_t kStatusMoreData = 234;
constexpr std::int32_t kStatusNoMoreItems = 259;

// Access masks: KEY_QUERY_VALUE, and KEY_READ with KEY_SET_VALUE.
constexpr std::uint32_t kKeyQueryValue = 0x1;
constexpr std::uint32_t kKeyReadAndSetValue = 0x2001B;

// Added to an access mask: the machine's native view of the registry
// (KEY_WOW64_64KEY) on 64-bit Windows, where a 32-bit program otherwise sees
// the 32-bit view (Wow6432Node) of the keys that Windows redirects. Where the
// program already sees the native view, or the system knows no views (32-bit
// Windows, which before XP would refuse the bit), it is left out.
constexpr std::uint32_t kKeyNativeView = 0x100;

// RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, access): the status, and the key
// when it is 0.
std::int32_t OpenMachineKey(const std::string& path, std::uint32_t access, RegistryKey& key);

// What RegQueryValueExA hands back.
struct RegistryValue {
    std::uint32_t type = kRegNone;
    // The bytes that the call wrote into the data buffer.
    std::string data;
    // The length word: the bytes written, or, when no buffer was given or the
    // buffer was too small, the bytes that the value needs.
    std::uint32_t length = 0;
};

// RegQueryValueExA with a data buffer of `bufferSize` bytes and that length
// word; a size of 0 passes no buffer and asks only for the type and the size.
// A buffer too small for the data gives kStatusMoreData and no data.
std::int32_t QueryRegistryValue(RegistryKey key, const std::string& valueName,
                                std::uint32_t bufferSize, RegistryValue& value);

// RegEnumValueA and RegEnumKeyExA for the name at `index`, with a length word
// of `nameSize` characters (terminator included). A name that doesn't fit
// gives kStatusMoreData; past the last one, kStatusNoMoreItems.
std::int32_t EnumRegistryValueName(RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                                   std::string& name);
std::int32_t EnumRegistrySubKeyName(RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                                    std::string& name);

// RegCloseKey.
void CloseRegistryKey(RegistryKey key);

// FormatMessageA for a status, with a buffer allocated by the call, which the
// callers never read and never release.
void FormatStatusMessage(std::int32_t status);

}  // namespace platform
