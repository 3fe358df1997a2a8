#include "platform/posix/StoreModes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace posix {

void MakeMissingFile(const std::string& systemPath)
{
    const int made =
        open(systemPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kFileMode);
    if (made < 0)
        return;
    fchmod(made, kFileMode);
    close(made);
}

bool MakeFolderWithFolderMode(const std::string& systemPath)
{
    if (mkdir(systemPath.c_str(), kFolderMode) != 0)
        return false;
    // Set through the folder itself, so that a link put in its place at
    // this moment is never followed.
    const int folder = open(systemPath.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0)
        return true;
    struct stat status;
    if (fstat(folder, &status) == 0 && status.st_uid == geteuid())
        fchmod(folder, kFolderMode);
    close(folder);
    return true;
}

}  // namespace posix
}  // namespace platform
