// The private-profile calls on Windows: each is the one Windows call of the
// same name, with the caller's buffer and size.
#include <windows.h>

// windows.h maps these names to its own calls; here they are this layer's.
#undef GetProfileString
#undef GetProfileInt
#undef WriteProfileString

#include "platform/Profile.h"

namespace platform {

std::uint32_t GetProfileSectionNames(char* buffer, std::uint32_t size, const std::string& path)
{
    return GetPrivateProfileSectionNamesA(buffer, size, path.c_str());
}

std::uint32_t GetProfileString(const char* section, const char* key, const char* defaultValue,
                               char* buffer, std::uint32_t size, const std::string& path)
{
    return GetPrivateProfileStringA(section, key, defaultValue, buffer, size, path.c_str());
}

std::uint32_t GetProfileInt(const char* section, const char* key, int defaultValue,
                            const std::string& path)
{
    return GetPrivateProfileIntA(section, key, defaultValue, path.c_str());
}

bool WriteProfileString(const char* section, const char* key, const char* value,
                        const std::string& path)
{
    return WritePrivateProfileStringA(section, key, value, path.c_str()) != FALSE;
}

}  // namespace platform
