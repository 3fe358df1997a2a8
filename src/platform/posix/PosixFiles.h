// What the POSIX file operations share: the attribute word and the local
// last-write time of an entry, worked out from what stat reports.
#pragma once

#include <sys/stat.h>
#include <time.h>

#include <cstdint>
#include <string>

#include "platform/FileSystem.h"

namespace platform {
namespace posix {

// The attribute word of an existing entry: the folder bit for a folder,
// otherwise the archive bit, plus the read-only bit when this process
// may not write it. Never 0.
std::uint32_t AttributesOf(const std::string& systemPath, const struct stat& status);

// The entry's last-write time as local calendar fields.
CalendarTime LocalLastWriteTime(const struct stat& status);

// Calendar fields from the C library's broken-down time.
CalendarTime CalendarTimeOf(const struct tm& fields, long nanoseconds);

}  // namespace posix
}  // namespace platform
