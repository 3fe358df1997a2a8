#include "platform/win32/ReparsePoints.h"

#include <windows.h>

namespace platform {

namespace {

// The entry and the four folders above it: a file of an event below its
// copy's folder lies that deep below the maker's folder.
constexpr int kLevelsChecked = 5;

bool IsReparsePoint(const std::string& path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace

bool LeadsThroughReparsePoint(const std::string& path)
{
    std::string level = path;
    for (int checked = 0; checked < kLevelsChecked && !level.empty(); ++checked) {
        if (IsReparsePoint(level))
            return true;
        const std::size_t separator = level.find_last_of('\\');
        if (separator == std::string::npos)
            return false;
        level.resize(separator);
    }
    return false;
}

}  // namespace platform
