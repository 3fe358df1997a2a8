// CZipper writes zip archives from files and folders on disk, on top of
// minizip. An archive has a root folder: entry names are paths relative to it,
// and whatever doesn't lie under it is refused. One archive is open at a time,
// and the counters tell what went into it. The files of a folder are deflated
// on several threads and written in the order of the folder walk (EntryQueue),
// so the archive's bytes don't depend on the number of threads.
#pragma once

#include <cstdint>
#include <string>

#include "platform/FileSystem.h"
#include "zip/ZipCounters.h"

class EntryQueue;

class CZipper {
public:
    // Size of the path and entry-name buffers: the platform's 260 characters
    // and the terminator.
    static constexpr std::size_t kPathBufferSize = platform::kMaxPath + 1;

    // With a null zipPath the object only starts empty (closed); otherwise it
    // opens as Open does and a failed open leaves it closed.
    CZipper(const char* zipPath, const char* root, bool append);
    virtual ~CZipper();
    CZipper(const CZipper&) = delete;
    CZipper& operator=(const CZipper&) = delete;

    // Creates (or, with append, extends) the archive; a null root makes the
    // archive's own folder the root, an empty one leaves no root.
    bool Open(const char* zipPath, const char* root, bool append);
    // Ends the archive; the counters stay until the next Open.
    bool Close();

    // Adds a folder's own entry and, recursively, everything in it.
    bool AddFolder(const char* path, bool ignorePath);
    // Adds one file; with ignorePath the entry is named by the bare file name.
    bool AddFile(const char* path, bool ignorePath);
    // Adds one file under folderInZip, named by its file name.
    bool AddFileAs(const char* path, const char* folderInZip);
    // Adds an entry from memory, dated now (UTC).
    bool AddBuffer(const void* data, std::uint32_t length, const char* name);

    ZipCounters GetCounters() const;

    // How many threads deflate the files of a folder: by default as many as
    // the machine runs at once; with one, the caller's thread deflates every
    // file itself. The archive's bytes are the same whatever the number; 0
    // counts as one.
    void SetThreadCount(unsigned count);

    // Last-write time of a file or folder as local calendar fields; all zero
    // and false when the path can't be found.
    static bool ModificationTime(const char* path, platform::CalendarTime* time);
    // Cuts trailing white space and then, if one stands there, the trailing backslashes.
    static void TrimPathEnd(char* path);
    // TrimPathEnd, then leading white space and, behind it, leading backslashes.
    static void TrimEntryName(char* name);

    // A relative path becomes rootFolder + "\" + path; an absolute one stays.
    // `path` is a buffer of kPathBufferSize bytes; a result that doesn't fit
    // empties it.
    void ResolveSourcePath(char* path);

    // Zips a file into <its folder>\<its base name>.zip.
    static bool ZipOneFile(const char* path);
    // Zips a folder, as its root, into <its name>.zip beside it.
    static bool ZipWholeFolder(const char* path, bool ignorePath);

private:
    bool IsOpen() const;
    bool IsUnderRoot(const char* path) const;
    bool IsArchiveItself(const char* path) const;
    bool ResolveCopy(const char* path, char* fullPath);
    bool FolderEntryName(const char* fullPath, bool ignorePath, char* name) const;
    bool FileEntryName(const char* path, bool ignorePath, char* name) const;
    bool QueueFolder(const char* path, bool ignorePath, EntryQueue& queue);
    void QueueFolderEntry(const char* fullPath, const char* name, EntryQueue& queue);
    void QueueFolderContents(const char* fullPath, bool ignorePath, EntryQueue& queue);
    bool QueueFile(const char* path, bool ignorePath, EntryQueue& queue);
    bool QueueFileEntry(const char* name, std::uint32_t attributes, const char* fullPath, EntryQueue& queue);
    int WriteBufferData(const void* data, std::uint32_t length);

    void* zipHandle;
    char rootFolder[kPathBufferSize];
    // The full path of the archive's target, which a new archive replaces only
    // at its close: until then an earlier file of that name may stand there.
    std::string archivePath;
    ZipCounters counters;
    unsigned threadCount;
};
