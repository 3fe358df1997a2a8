// The name of a Linux distribution, as its os-release file gives it: lines of
// KEY=value, a value bare or in double or single quotes, with the shell's
// backslash escapes inside double quotes and in bare values.
#pragma once

#include <string>
#include <vector>

namespace platform {
namespace posix {

// The places of the os-release file, the first that can be read counting.
const std::vector<std::string>& OsReleasePaths();

// The PRETTY_NAME that the text of an os-release file sets, its quotes and
// escapes undone; the last assignment counts. "Linux", the default that the
// format gives, when the text doesn't set it. Lines that begin with "#" and
// lines that can't be read (a quote left open) are passed over.
std::string PrettyNameOf(const std::string& osReleaseText);

// The PRETTY_NAME of the first of `paths` that is a regular file and can be
// read; empty when none can. A file is read up to its first 64 KiB.
std::string ReadPrettyName(const std::vector<std::string>& paths);

}  // namespace posix
}  // namespace platform
