// The owner of the store's folders, read with the security calls and
// compared as SID text.
#include "platform/win32/StoreOwner.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <vector>

namespace platform {

namespace {

const char* const kSystemSid = "S-1-5-18";
const char* const kAdministratorsSid = "S-1-5-32-544";

std::string SidText(PSID sid)
{
    char* text = nullptr;
    if (sid == nullptr || !ConvertSidToStringSidA(sid, &text))
        return std::string();
    const std::string result = text;
    LocalFree(text);
    return result;
}

std::string DaclText(PSECURITY_DESCRIPTOR descriptor)
{
    char* text = nullptr;
    if (!ConvertSecurityDescriptorToStringSecurityDescriptorA(
            descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr))
        return std::string();
    const std::string result = text;
    LocalFree(text);
    return result;
}

std::string CallerSid()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return std::string();
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<char> buffer(size);
    std::string sid;
    if (size != 0 && GetTokenInformation(token, TokenUser, buffer.data(), size, &size))
        sid = SidText(reinterpret_cast<TOKEN_USER*>(buffer.data())->User.Sid);
    CloseHandle(token);
    return sid;
}

bool HasTrustedOwner(const std::string& path)
{
    const std::string owner = ReadPathSecurity(path).owner;
    return owner == kSystemSid || owner == kAdministratorsSid ||
           (!owner.empty() && owner == CallerSid());
}

}  // namespace

PathSecurity ReadPathSecurity(const std::string& path)
{
    PathSecurity security;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    std::vector<char> name(path.begin(), path.end());
    name.push_back('\0');
    if (GetNamedSecurityInfoA(name.data(), SE_FILE_OBJECT,
                              OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
                              nullptr, nullptr, nullptr, &descriptor) != ERROR_SUCCESS)
        return security;
    security.owner = SidText(owner);
    security.access = DaclText(descriptor);
    LocalFree(descriptor);
    return security;
}

bool IsTrustedStoreFolder(const std::string& folder)
{
    const std::size_t separator = folder.find_last_of('\\');
    const std::string parent = separator == std::string::npos ? folder : folder.substr(0, separator);
    return HasTrustedOwner(folder) && HasTrustedOwner(parent);
}

}  // namespace platform
