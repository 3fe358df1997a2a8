// The store's security on Windows: the maker's folder and the history folder
// get a protected DACL of their own, so that neither what ProgramData grants
// every user nor the rights of whoever made a folder there first reach into
// the store.
#include "platform/StoreSecurity.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <vector>

#include "platform/win32/ReparsePoints.h"
#include "platform/win32/StoreOwner.h"

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

namespace {

// The store's DACL set on an existing folder whose DACL isn't protected yet,
// as older code made it, with the default security that lets every user
// plant files, folders and junctions in it. Setting it hands the entries down
// to what lies inside, so it is done once, not on every call.
void SecureExistingStoreFolder(const std::string& path)
{
    if (ReadPathSecurity(path).access.rfind("D:P", 0) == 0)
        return;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorA(kStoreFolderSecurity, SDDL_REVISION_1,
                                                              &descriptor, nullptr))
        return;
    SetDaclOf(path, descriptor);
    LocalFree(descriptor);
}

}  // namespace

// A store that older code made with default security gets the store's DACL
// on its two top folders, when their owners are ones the store may trust and
// neither is a junction or link: a folder that another user made first, or a
// link that leads elsewhere, is never given the administrators' protection.
void SecureExistingStore(const std::string& historyFolder)
{
    const std::size_t separator = historyFolder.find_last_of('\\');
    if (separator == std::string::npos || LeadsThroughReparsePoint(historyFolder) ||
        !IsTrustedStoreFolder(historyFolder))
        return;
    SecureExistingStoreFolder(historyFolder.substr(0, separator));
    SecureExistingStoreFolder(historyFolder);
}

}  // namespace platform
