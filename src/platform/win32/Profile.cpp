// The private-profile calls on Windows: each is the one Windows call of the
// same name, with the caller's buffer and size. A file in a folder whose
// owner is another user than the caller, SYSTEM or the Administrators is not
// written, as if it were read-only: such a folder in ProgramData was made by
// a user who may have planted anything in it.
#include <windows.h>

// windows.h maps these names to its own calls; here they are this layer's.
#undef GetProfileString
#undef GetProfileInt
#undef WriteProfileString

#include "platform/Profile.h"
#include "platform/win32/StoreOwner.h"

namespace platform {

namespace {

std::string FolderOf(const std::string& path)
{
    const std::size_t separator = path.find_last_of('\\');
    return separator == std::string::npos ? std::string(".") : path.substr(0, separator);
}

}  // namespace

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
    if (!IsTrustedStoreFolder(FolderOf(path)))
        return false;
    return WritePrivateProfileStringA(section, key, value, path.c_str()) != FALSE;
}

// The file is the content itself: it is read as the profile calls read it,
// sharing it with their readers and writers.
bool ReadProfileFile(const std::string& path, std::string& content)
{
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    content.clear();
    char block[65536];
    DWORD got = 0;
    BOOL read;
    while ((read = ReadFile(file, block, sizeof block, &got, nullptr)) != FALSE && got > 0)
        content.append(block, got);
    CloseHandle(file);
    return read != FALSE;
}

}  // namespace platform
