// Who owns the store's folders on Windows, where every user may make folders
// in ProgramData and whoever makes one first owns it.
#pragma once

#include <string>

namespace platform {

// Who owns an existing path and who may do what with it, as text: the owner's
// SID ("S-1-5-32-544") and the DACL in SDDL ("D:P(A;OICI;...)"). Both empty
// when the path can't be read.
struct PathSecurity {
    std::string owner;
    std::string access;
};
PathSecurity ReadPathSecurity(const std::string& path);

// Whether the caller may write into the store in `folder`: only when the
// owner of the folder and of the folder that holds it is SYSTEM, the
// Administrators group or the caller. A folder that another user made first
// is used read-only.
bool IsTrustedStoreFolder(const std::string& folder);

}  // namespace platform
