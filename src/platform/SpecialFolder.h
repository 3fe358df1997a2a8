// The special-folder look-up of the machine: SHGetFolderPathA, looked up at
// run time in "shfolder.dll" and never linked.
#pragma once

#include <string>

namespace platform {

// CSIDL_COMMON_APPDATA: the machine-wide application data folder.
constexpr int kFolderCommonAppData = 0x23;

// The folder's default path, whole, as the call gives it; empty when
// "shfolder.dll" or its export is missing, or when the call fails.
// GetSpecialFolder keeps what its buffer of 256 bytes holds.
std::string LookUpSpecialFolder(int folderId);

}  // namespace platform
