// There is no registry on POSIX systems: every key is one that doesn't exist,
// and a call on a key that was never opened answers as for an invalid handle.
#include "platform/Registry.h"

namespace platform {

std::int32_t OpenMachineKey(const std::string&, std::uint32_t, RegistryKey& key)
{
    key = 0;
    return kStatusFileNotFound;
}

std::int32_t QueryRegistryValue(RegistryKey, const std::string&, std::uint32_t, RegistryValue&)
{
    return kStatusInvalidHandle;
}

std::int32_t EnumRegistryValueName(RegistryKey, std::uint32_t, std::uint32_t, std::string&)
{
    return kStatusInvalidHandle;
}

std::int32_t EnumRegistrySubKeyName(RegistryKey, std::uint32_t, std::uint32_t, std::string&)
{
    return kStatusInvalidHandle;
}

void CloseRegistryKey(RegistryKey) {}

void FormatStatusMessage(std::int32_t) {}

}  // namespace platform
