// The registry on Windows: the advapi32 calls below HKEY_LOCAL_MACHINE, each
// made once as the caller asks, with the caller's buffer sizes.
#include "platform/Registry.h"

#include <windows.h>

#include <vector>

namespace platform {

namespace {

HKEY KeyOf(RegistryKey key)
{
    return reinterpret_cast<HKEY>(key);
}

}  // namespace

std::int32_t OpenMachineKey(const std::string& path, std::uint32_t access, RegistryKey& key)
{
    HKEY opened = nullptr;
    const LONG status = RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, &opened);
    key = status == ERROR_SUCCESS ? reinterpret_cast<RegistryKey>(opened) : 0;
    return status;
}

std::int32_t QueryRegistryValue(RegistryKey key, const std::string& valueName,
                                std::uint32_t bufferSize, RegistryValue& value)
{
    DWORD type = REG_NONE;
    DWORD length = bufferSize;
    std::vector<BYTE> buffer(bufferSize);
    const LONG status = RegQueryValueExA(KeyOf(key), valueName.c_str(), nullptr, &type,
                                         bufferSize == 0 ? nullptr : buffer.data(), &length);
    value.type = type;
    value.length = length;
    value.data.clear();
    if (status == ERROR_SUCCESS && bufferSize != 0)
        value.data.assign(reinterpret_cast<const char*>(buffer.data()),
                          length < bufferSize ? length : bufferSize);
    return status;
}

namespace {

// RegEnumValueA and RegEnumKeyExA take the same leading arguments for a name
// alone; the rest, not asked for, are null.
template <typename EnumCall>
std::int32_t EnumName(EnumCall call, RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                      std::string& name)
{
    std::vector<char> buffer(nameSize + 1, '\0');
    DWORD length = nameSize;
    const LONG status =
        call(KeyOf(key), index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr);
    name = status == ERROR_SUCCESS ? std::string(buffer.data(), length) : std::string();
    return status;
}

}  // namespace

std::int32_t EnumRegistryValueName(RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                                   std::string& name)
{
    return EnumName(RegEnumValueA, key, index, nameSize, name);
}

std::int32_t EnumRegistrySubKeyName(RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                                    std::string& name)
{
    return EnumName(RegEnumKeyExA, key, index, nameSize, name);
}

void CloseRegistryKey(RegistryKey key)
{
    RegCloseKey(KeyOf(key));
}

// The text is left where the call put it, as the reader never shows it.
void FormatStatusMessage(std::int32_t status)
{
    char* text = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                   static_cast<DWORD>(status), 0, reinterpret_cast<LPSTR>(&text), 100, nullptr);
}

}  // namespace platform
