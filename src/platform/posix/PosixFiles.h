// What the POSIX file operations share: the attribute word and the local
// last-write time of an entry, worked out from what stat reports, and a look
// through the files that this process holds open.
#pragma once

#include <sys/stat.h>
#include <time.h>

#include <cstdint>
#include <functional>
#include <string>

#include "platform/FileSystem.h"

namespace platform {
namespace posix {

// The path with "/" for every "\\", and nothing else changed: the entry as
// the caller spells it, before SystemPath looks up the case of its names.
std::string WithSystemSeparators(const std::string& path);

// Opens a regular file for reading: a symbolic link in the last component is
// not followed, and a FIFO or device is not waited on; anything but a regular
// file, and for root a file that RootMayRead refuses, is refused. The
// descriptor, or -1.
int OpenRegularFile(const std::string& systemPath);

// A descriptor that names (O_PATH) the regular file at `systemPath` and opens
// nothing, so a FIFO or device is never waited on; -1 for anything else. For a
// write, a link in the last component is not followed, and root is refused a
// file that RootMayWrite refuses (another user's, or one with a second name
// that a user may have made), and a path that leads, as deep as the store nests, through a folder link that
// another user owns or through another user's folder in the machine's store:
// such a file, link or folder in the store was put there by someone else, and
// root would write wherever it leads. Other callers are held by the file's
// permissions.
int OpenCheckedPath(const std::string& systemPath, bool writes);

// The name under which a descriptor's file is opened again: that very file,
// whatever its path names meanwhile.
std::string DescriptorPath(int descriptor);

// Whether root must not write through this entry of the store: a symbolic
// link, or a file, that another user owns.
bool PlantedForRoot(const struct stat& status);

// Whether root would use an entry through something that another user put in
// its way, among the folders that hold the entry as deep as the store nests: a
// link that another user owns, anywhere, or a folder of another user's in the
// machine's store. A user could have made either in a store that older code
// left writable by everyone. A link would lead root wherever that user chose;
// in a folder of their own, the user can swap what root checked for a link at
// any moment. Other callers are held by the folders' permissions.
bool LeadsThroughPlantedEntry(const std::string& systemPath);

// How root opens a file of the store by its path: -1 where root must not use
// it at all (it lies beyond what another user put in its way, or is another
// user's link), otherwise the flags to open it with: O_NOFOLLOW, unless it is
// a link that root made itself, the administrator's choice. Other callers: 0,
// so that a link leads where it leads, as it does on Windows.
int RootOpenFlags(const std::string& systemPath);

// Whether root may read the open file as a file of the store or a log to
// stage: not a file of root's with a second name that a user may have made,
// which may be any root-only file that the user linked into a store left
// writable by everyone.
bool RootMayRead(const struct stat& status);

// OthersMayChangeFolder for an entry's status: for root, a folder that
// another user owns or that others may write.
bool OthersMayChangeFolder(const struct stat& status);

// Whether the system lets a user give a second name only to a file that the
// user owns or may read and write (fs.protected_hardlinks is 1): then a file
// of root's that has a second name got it from root, or while it was open to
// everyone anyway, and the name leads nowhere that root's write or read would
// not go. Read once; where it can't be read, a user may link any file.
bool HardLinksProtected();

// Whether another name of a file of root's with `links` names may have been
// made by a user to lead root's reads and writes to a root-only file: where
// the system lets a user link any file.
bool SecondNameMayBePlanted(nlink_t links, bool hardLinksProtected);

// Whether this process may write the file: root writes only its own files,
// and of those only files of one name where a user's second name could lead
// the write elsewhere (a hard link that a user made in a store left writable
// by everyone). Other callers are held by the file's permissions.
bool RootMayWrite(const struct stat& status);

// The attribute word of an existing entry: the folder bit for a folder,
// otherwise the archive bit, plus the read-only bit when this process
// may not write it. Never 0.
std::uint32_t AttributesOf(const std::string& systemPath, const struct stat& status);

// Whether the system refuses to write the existing file: its attribute word
// has the read-only bit. False for a path that doesn't exist.
bool IsReadOnlyFile(const std::string& systemPath);

// The entry's last-write time as local calendar fields.
CalendarTime LocalLastWriteTime(const struct stat& status);

// Calendar fields from the C library's broken-down time.
CalendarTime CalendarTimeOf(const struct tm& fields, long nanoseconds);

// Whether two stat results name one and the same file.
bool SameFile(const struct stat& one, const struct stat& other);

// Whether `matches` holds for one of this process's open descriptors, each
// given by its number as text and its path below /proc/self/fd. The descriptor
// of the look itself is passed over. False where /proc can't be read.
bool AnyOwnDescriptor(
    const std::function<bool(const std::string& number, const std::string& path)>& matches);

}  // namespace posix
}  // namespace platform
