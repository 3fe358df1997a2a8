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

// Whether this is a 32-bit process on 64-bit Windows. IsWow64Process is
// looked up at run time: systems before XP SP2 have none, and know no WoW64.
bool RunsUnderWow64()
{
    using IsWow64ProcessCall = BOOL(WINAPI*)(HANDLE, PBOOL);
    const HMODULE kernel = GetModuleHandleA("kernel32.dll");
    const auto isWow64Process = kernel == nullptr ? nullptr
        : reinterpret_cast<IsWow64ProcessCall>(
              reinterpret_cast<void*>(GetProcAddress(kernel, "IsWow64Process")));
    BOOL wow64 = FALSE;
    return isWow64Process != nullptr && isWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

// The native view is asked for only where it differs from the program's own.
REGSAM AccessOf(std::uint32_t access)
{
    static const bool wow64 = RunsUnderWow64();
    if ((access & kKeyNativeView) != 0 && !wow64)
        access &= ~kKeyNativeView;
    return access;
}

}  // namespace

std::int32_t OpenMachineKey(const std::string& path, std::uint32_t access, RegistryKey& key)
{
    static_assert(kKeyNativeView == KEY_WOW64_64KEY, "the native view is KEY_WOW64_64KEY");
    HKEY opened = nullptr;
    const LONG status =
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, AccessOf(access), &opened);
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
