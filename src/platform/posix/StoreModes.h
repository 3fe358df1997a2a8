// The modes of what the store's programs make, whatever the caller's umask:
// folders readable and searchable by every user, files readable by every
// user, and both written only by their owner, as the store on Windows is
// readable by every user and written by administrators.
#pragma once

#include <sys/types.h>

#include <string>

namespace platform {
namespace posix {

constexpr mode_t kFolderMode = 0755;
constexpr mode_t kFileMode = 0644;

// Makes an empty file with kFileMode if nothing stands under the name; an
// existing entry is left as it is, and no link is followed.
void MakeMissingFile(const std::string& systemPath);

// mkdir with kFolderMode, set anew since the umask takes from it.
bool MakeFolderWithFolderMode(const std::string& systemPath);

}  // namespace posix
}  // namespace platform
