// The special-folder look-up on POSIX systems. There is no shell folder
// service: the machine-wide application data folder is the one the build was
// configured with, and every other folder is unknown, as when the call fails.
#include "platform/SpecialFolder.h"

namespace platform {

namespace {

// The Windows call fills a buffer of 256 bytes: at most 255 characters.
constexpr std::size_t kFolderBufferSize = 256;

}  // namespace

std::string LookUpSpecialFolder(int folderId)
{
    if (folderId != kFolderCommonAppData)
        return std::string();
    return std::string(ZOR_COMMON_APPDATA).substr(0, kFolderBufferSize - 1);
}

}  // namespace platform
