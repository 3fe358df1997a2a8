// The store's security on Windows: the maker's folder and the history folder
// get a protected DACL of their own, so that neither what ProgramData grants
// every user nor the rights of whoever made a folder there first reach into
// the store.
#include "platform/StoreSecurity.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <vector>

namespace platform {

namespace {

// SYSTEM and Administrators full control, Users read, each inherited by the
// folders and files made inside; the parent's entries are not inherited.
const char* const kStoreFolderSecurity = "D:P(A;OICI;GA;;;SY)(A;OICI;GA;;;BA)(A;OICI;GR;;;BU)";

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

// The descriptor's DACL set on the folder once more, protected from what
// the parent would hand down, where the creation didn't take it over (Wine
// makes every folder with a default DACL of its own).
bool SetDaclOf(const std::string& path, PSECURITY_DESCRIPTOR descriptor)
{
    BOOL present = FALSE;
    BOOL defaulted = FALSE;
    PACL dacl = nullptr;
    if (!GetSecurityDescriptorDacl(descriptor, &present, &dacl, &defaulted) || !present)
        return false;
    std::vector<char> name(path.begin(), path.end());
    name.push_back('\0');
    return SetNamedSecurityInfoA(name.data(), SE_FILE_OBJECT,
                                 DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
                                 nullptr, nullptr, dacl, nullptr) == ERROR_SUCCESS;
}

bool HasTrustedOwner(const std::string& path)
{
    const std::string owner = ReadPathSecurity(path).owner;
    return owner == kSystemSid || owner == kAdministratorsSid ||
           (!owner.empty() && owner == CallerSid());
}

}  // namespace

bool CreateStoreFolder(const std::string& path)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (path.empty() || !ConvertStringSecurityDescriptorToSecurityDescriptorA(
                            kStoreFolderSecurity, SDDL_REVISION_1, &descriptor, nullptr))
        return false;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    bool made = CreateDirectoryA(path.c_str(), &attributes) != 0;
    if (made)
        made = SetDaclOf(path, descriptor);
    LocalFree(descriptor);
    return made;
}

void SecureExistingStore(const std::string&)
{
}

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
