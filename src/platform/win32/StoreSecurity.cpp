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

// The descriptor's DACL set on the folder once more, protected from what
// the parent would hand down, for a system that didn't take it over at the
// creation. A file system without security (FAT) keeps the folder as made.
void SetDaclOf(const std::string& path, PSECURITY_DESCRIPTOR descriptor)
{
    BOOL present = FALSE;
    BOOL defaulted = FALSE;
    PACL dacl = nullptr;
    if (!GetSecurityDescriptorDacl(descriptor, &present, &dacl, &defaulted) || !present)
        return;
    std::vector<char> name(path.begin(), path.end());
    name.push_back('\0');
    SetNamedSecurityInfoA(name.data(), SE_FILE_OBJECT,
                          DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr,
                          nullptr, dacl, nullptr);
}

}  // namespace

bool CreateStoreFolder(const std::string& path)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (path.empty() || !ConvertStringSecurityDescriptorToSecurityDescriptorA(
                            kStoreFolderSecurity, SDDL_REVISION_1, &descriptor, nullptr))
        return false;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    const bool made = CreateDirectoryA(path.c_str(), &attributes) != 0;
    if (made)
        SetDaclOf(path, descriptor);
    LocalFree(descriptor);
    return made;
}

// The folders' security is set as they are made; an existing store is left
// as it is.
void SecureExistingStore(const std::string&)
{
}

}  // namespace platform
