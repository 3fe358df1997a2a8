// The special-folder look-up on POSIX systems. There is no shell folder
// service: the machine-wide application data folder is the one the build was
// configured with, and every other folder is unknown, as when the call fails.
#include "platform/SpecialFolder.h"

namespace platform {

std::string LookUpSpecialFolder(int folderId)
{
    if (folderId != kFolderCommonAppData)
        return std::string();
    return ZOR_COMMON_APPDATA;
}

}  // namespace platform
