// Files and folders, in the system's terms. Paths above this layer use the
// backslash, as the stored format does; the POSIX implementation turns it into
// "/" whenever it calls the operating system. Names are taken without regard
// to the case of their letters, as a Windows file system takes them: an
// existing entry is found in any case, a new one is made as it is spelt.
#pragma once

#include <cstdint>
#include <cstdio>
#include <iosfwd>
#include <ios>
#include <memory>
#include <string>

namespace platform {

// Attribute words as Windows reports them.
constexpr std::uint32_t kInvalidFileAttributes = 0xFFFFFFFFu;
constexpr std::uint32_t kAttributeReadOnly = 0x1;
constexpr std::uint32_t kAttributeDirectory = 0x10;
constexpr std::uint32_t kAttributeArchive = 0x20;
constexpr std::uint32_t kAttributeDevice = 0x40;
constexpr std::uint32_t kAttributeNormal = 0x80;
constexpr std::uint32_t kAttributeReparsePoint = 0x400;

// The platform's path limit, terminator included.
constexpr std::size_t kMaxPath = 260;

// Calendar fields of a moment, as the system's SYSTEMTIME holds them.
struct CalendarTime {
    std::uint16_t year = 0;
    std::uint16_t month = 0;  // 1 to 12
    std::uint16_t dayOfWeek = 0;
    std::uint16_t day = 0;
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
    std::uint16_t milliseconds = 0;
};

// GetFullPathNameA: the full path of a possibly relative name, resolved against
// the current directory. False when it can't be resolved or doesn't fit in
// `limit` characters with its terminator.
bool GetFullPathName(const std::string& name, std::size_t limit, std::string& fullPath);

// GetFileAttributesA: the attribute word, or kInvalidFileAttributes.
std::uint32_t GetFileAttributes(const std::string& path);

// The runtime's stat: what the path is, if it exists.
struct PathStatus {
    bool regularFile = false;
    bool directory = false;
};
PathStatus StatPath(const std::string& path);

// One entry of a folder search. A link (a junction or symbolic link) has the
// reparse-point bit; on POSIX a symbolic link has it too, and a FIFO, socket
// or device has the device bit.
struct FolderEntry {
    std::string name;
    std::uint32_t attributes = 0;
    CalendarTime lastWriteLocal;  // last-write time as local calendar fields
};

// FindFirstFileA / FindNextFileA / FindClose. The pattern is a path whose last
// component may be "*" or "*.*" (every entry, names without a dot included,
// "." and ".." too) or a plain name (that entry alone). Entries come in the
// order in which the file system lists them.
class FolderSearch {
public:
    FolderSearch();
    ~FolderSearch();
    FolderSearch(const FolderSearch&) = delete;
    FolderSearch& operator=(const FolderSearch&) = delete;

    bool First(const std::string& pattern, FolderEntry& entry);
    bool Next(FolderEntry& entry);
    void Close();

private:
    struct State;
    std::unique_ptr<State> state_;
};

// CreateFileA(GENERIC_READ, share mode 0, OPEN_EXISTING), ReadFile, CloseHandle.
// The open is exclusive: it fails while the file is held open for writing,
// by this process or (where the system can tell) another. On POSIX it opens a
// regular file only, never through a symbolic link in the last component, and
// never waits on a FIFO or device.
class ExclusiveReadFile {
public:
    ExclusiveReadFile();
    ~ExclusiveReadFile();
    ExclusiveReadFile(const ExclusiveReadFile&) = delete;
    ExclusiveReadFile& operator=(const ExclusiveReadFile&) = delete;

    bool Open(const std::string& path);
    // Reads up to `size` bytes; false on a failed read. `bytesRead` 0 at the end.
    bool Read(void* buffer, std::uint32_t size, std::uint32_t& bytesRead);
    // The open file's size in bytes as it stands now; 0 when it can't be told.
    std::uint64_t Size() const;
    void Close();

private:
    std::intptr_t handle_;
};

// For a thread of this process that doesn't open ExclusiveReadFile files
// itself while another thread does: on POSIX the open's read lease, if
// something breaks it while it is held, sends the process SIGIO, whose default
// action ends it; the opening thread holds that signal back for the moment of
// the lease, and this keeps the calling thread from taking it instead. Nothing
// to do on Windows, whose opens take no lease.
void HoldBackLeaseSignalsInThisThread();

// CreateDirectoryA with default security: one level, fails if it exists. On
// POSIX the folder gets mode 0755 whatever the umask.
bool CreateFolder(const std::string& path);

// CopyFileA(source, target, TRUE): never overwrites an existing target. On
// POSIX the source is a regular file, opened as ExclusiveReadFile opens one,
// and the copy's mode is the source's within 0644.
bool CopyFileNoOverwrite(const std::string& source, const std::string& target);

// MoveFileA: moves a file or a whole folder; fails if the target exists, and
// while this process holds the file, or any file below the folder, open (the
// runtime's files are opened without leave to delete them).
bool MovePath(const std::string& source, const std::string& target);

// Whether a path is absolute: on Windows it names a drive (has a ":"),
// on POSIX it begins with "/" or "\".
bool IsAbsolutePath(const std::string& path);

// The path in the form that the C and C++ runtimes' file calls take
// (std::ofstream, fopen); unchanged on Windows. On POSIX every component that
// exists under another case of its letters (ASCII letters only) is spelt as
// on disk, and an exact spelling that exists wins.
std::string SystemPath(const std::string& path);

// The runtime's opens of a file (std::filebuf::open, fopen), refused as the
// system refuses them: an existing file whose attribute is read-only (as
// GetFileAttributes reports it) can't be opened for writing, by any user. On
// POSIX the file that OpenFileBuffer makes gets mode 0644 whatever the umask.
bool OpenFileBuffer(std::filebuf& buffer, const std::string& path, std::ios_base::openmode mode);
std::FILE* OpenRuntimeFile(const std::string& path, const char* mode);

// A new, empty file for writing beside `path`, under a temporary name that
// begins with a dot, made exclusively (never through an existing entry) and,
// on POSIX, with mode 0600; `temporaryPath` gets its name. Null where `path`
// couldn't be written as OpenRuntimeFile's "wb" would refuse it: its folder is
// missing or may not be written, it is a folder, or its attribute is read-only.
std::FILE* CreateFileBeside(const std::string& path, std::string& temporaryPath);

// Puts the file `temporaryPath` in the place of `path`, replacing the entry of
// that name (never writing through it). On failure the temporary file is removed.
bool PutFileInPlace(const std::string& temporaryPath, const std::string& path);

// Whether two paths name one and the same file or folder, however they are
// spelt: through a link, in another case of the letters, with "." or ".."
// components. A name that doesn't exist names the entry it would make: the
// same as another name in the same folder that differs only in case.
bool SameEntry(const std::string& first, const std::string& second);

// Whether `path` names `folder` itself or an entry anywhere below it, however
// either is spelt (as SameEntry takes them).
bool LiesWithin(const std::string& path, const std::string& folder);

// Whether another user may change what lies in the folder, when this process
// runs as root on POSIX: the folder is another user's, or writable by others.
// Whatever root checked in it could be swapped for a link before root opens
// it, so root reads and packs nothing below such a folder, and the folder
// search shows it as a link. Always false on Windows, where the store's DACL
// keeps others out, and for other callers, whom the permissions hold.
bool OthersMayChangeFolder(const std::string& path);

// What a text-mode stream writes for "\n" on this platform.
extern const char* const kTextLineEnd;

// The characters that end a component where the last component of a file name
// is looked for: the backslash on Windows; on POSIX "/" as well, since a Linux
// installer names its files with it.
extern const char* const kFileNameSeparators;

}  // namespace platform
