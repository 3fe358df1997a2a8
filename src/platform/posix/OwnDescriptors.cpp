// The files that this process holds open, as /proc lists them. POSIX has no
// share modes; where Windows would refuse an operation on a file that is held
// open, this look tells whether this process holds it.
#include <dirent.h>
#include <sys/stat.h>

#include <string>

#include "platform/posix/PosixFiles.h"

namespace platform {
namespace posix {

bool SameFile(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool AnyOwnDescriptor(
    const std::function<bool(const std::string& number, const std::string& path)>& matches)
{
    const std::string folder = "/proc/self/fd";
    DIR* descriptors = opendir(folder.c_str());
    if (descriptors == nullptr)
        return false;
    const std::string listing = std::to_string(dirfd(descriptors));
    bool found = false;
    while (const dirent* entry = readdir(descriptors)) {
        const std::string number = entry->d_name;
        if (number == "." || number == ".." || number == listing)
            continue;
        if (matches(number, folder + "/" + number)) {
            found = true;
            break;
        }
    }
    closedir(descriptors);
    return found;
}

}  // namespace posix
}  // namespace platform
