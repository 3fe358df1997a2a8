#include "zip/CZipper.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include "history/AsciiText.h"
#include "platform/Clock.h"
#include "zip.h"
#include "zip/EntryQueue.h"
#include "zip/PathParts.h"

namespace {

// Path characters compare without regard to ASCII case, and "\" and "/" are
// the same separator, as the file system takes them.
bool SamePathCharacter(char one, char other)
{
    return AsciiLower(one) == AsciiLower(other) || (IsSeparator(one) && IsSeparator(other));
}

bool IsWhiteSpace(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// "..\" (or "../") at the front: the path climbs out of the root.
bool ClimbsOutOfRoot(const char* path)
{
    return path[0] == '.' && path[1] == '.' && IsSeparator(path[2]);
}

// ".\" (or "./") at the front: the path starts in the root itself.
bool StartsInRoot(const char* path)
{
    return path[0] == '.' && IsSeparator(path[1]);
}

// A name inside the archive may not name a drive: readers on Windows would
// take it for a place on disk. It is a name, not a path on this machine, so
// the rule is the same everywhere; a leading "\" or "/" is trimmed off anyway.
bool NamesADrive(const char* name)
{
    return name != nullptr && std::strchr(name, ':') != nullptr;
}

// An entry name that an unpacking program would put outside the folder that
// it unpacks into: one that begins with a separator or a drive ("C:"), or
// climbs out with a ".." component anywhere. No such entry is ever written,
// whatever the paths and the folder's own names are.
bool LeavesUnpackFolder(const char* name)
{
    return !StaysInsideFolder(name);
}

// Whether the walk passes over an entry: a name with a leading dot ("." and
// ".." with them), and a link or special file, which may lead out of the root
// or never end (a FIFO); files and folders alone are packed.
bool PassedOver(const platform::FolderEntry& entry)
{
    const std::uint32_t linkOrSpecial = platform::kAttributeReparsePoint | platform::kAttributeDevice;
    return entry.name.empty() || entry.name[0] == '.' || (entry.attributes & linkOrSpecial) != 0;
}

zip_fileinfo MakeFileInfo(const platform::CalendarTime& time, std::uint32_t attributes)
{
    zip_fileinfo info;
    std::memset(&info, 0, sizeof info);
    info.tmz_date.tm_sec = time.second;
    info.tmz_date.tm_min = time.minute;
    info.tmz_date.tm_hour = time.hour;
    info.tmz_date.tm_mday = time.day;
    // A time that couldn't be read has month 0, which makes this -1.
    info.tmz_date.tm_mon = static_cast<uInt>(static_cast<int>(time.month) - 1);
    info.tmz_date.tm_year = time.year;
    info.dosDate = 0;
    info.internal_fa = 0;
    info.external_fa = attributes;
    return info;
}

// An archive that is made anew is written under a temporary name beside its
// target and put in the target's place at its close, so that an existing
// file of that name, or a link planted there, is replaced and never written
// into. minizip carries this record as the opaque value of its file calls,
// from the open that makes the file to the close that puts it in place and
// ends the record.
struct NewArchive {
    std::string target;
    std::string temporary;
};

// Makes the new archive's file beside its target; when that fails, the
// archive's record ends here, since no close will follow.
std::FILE* CreateNewArchive(NewArchive* archive, const char* path)
{
    std::FILE* file = nullptr;
    if (path != nullptr) {
        archive->target = path;
        file = platform::CreateFileBeside(archive->target, archive->temporary);
    }
    if (file == nullptr)
        delete archive;
    return file;
}

// minizip's own open of the archive, with its modes, through the platform's
// opens, which refuse to write a file whose attribute is read-only as the
// system does for every user. Only an archive made anew has a record.
voidpf ZCALLBACK OpenArchiveFile(voidpf opaque, const void* path, int mode)
{
    if (opaque != nullptr)
        return CreateNewArchive(static_cast<NewArchive*>(opaque), static_cast<const char*>(path));
    const char* fileMode = nullptr;
    if ((mode & ZLIB_FILEFUNC_MODE_READWRITEFILTER) == ZLIB_FILEFUNC_MODE_READ)
        fileMode = "rb";
    else if ((mode & ZLIB_FILEFUNC_MODE_EXISTING) != 0)
        fileMode = "r+b";
    else if ((mode & ZLIB_FILEFUNC_MODE_CREATE) != 0)
        fileMode = "wb";
    if (path == nullptr || fileMode == nullptr)
        return nullptr;
    return platform::OpenRuntimeFile(static_cast<const char*>(path), fileMode);
}

// Closes the archive's file; a new archive is then put in its target's place,
// whatever the close said, as a file written in place would stand as it is.
int ZCALLBACK CloseArchiveFile(voidpf opaque, voidpf stream)
{
    int result = std::fclose(static_cast<std::FILE*>(stream));
    NewArchive* archive = static_cast<NewArchive*>(opaque);
    if (archive != nullptr) {
        if (!platform::PutFileInPlace(archive->temporary, archive->target))
            result = EOF;
        delete archive;
    }
    return result;
}

zipFile OpenArchive(const std::string& path, int appendStatus)
{
    zlib_filefunc64_def calls;
    fill_fopen64_filefunc(&calls);
    calls.zopen64_file = OpenArchiveFile;
    calls.zclose_file = CloseArchiveFile;
    calls.opaque = appendStatus == APPEND_STATUS_CREATE ? new NewArchive() : nullptr;
    return zipOpen2_64(path.c_str(), appendStatus, nullptr, &calls);
}

int OpenEntry(void* zipHandle, const char* name, const zip_fileinfo& info)
{
    if (LeavesUnpackFolder(name))
        return ZIP_PARAMERROR;
    return zipOpenNewFileInZip(zipHandle, name, &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                               Z_DEFAULT_COMPRESSION);
}

// As many deflating threads as the machine runs at once; one where it can't tell.
unsigned MachineThreadCount()
{
    const unsigned count = std::thread::hardware_concurrency();
    return count > 0 ? count : 1;
}

}  // namespace

CZipper::CZipper(const char* zipPath, const char* root, bool append)
    : zipHandle(nullptr), rootFolder{}, counters(), threadCount(MachineThreadCount())
{
    if (zipPath != nullptr)
        Open(zipPath, root, append);
}

CZipper::~CZipper()
{
    if (IsOpen())
        zipClose(zipHandle, nullptr);
}

bool CZipper::IsOpen() const
{
    return zipHandle != nullptr;
}

bool CZipper::Open(const char* zipPath, const char* root, bool append)
{
    if (IsOpen())
        zipClose(zipHandle, nullptr);
    zipHandle = nullptr;
    rootFolder[0] = '\0';
    archivePath.clear();
    counters = ZipCounters();

    if (zipPath == nullptr || *zipPath == '\0')
        return false;
    std::string fullPath;
    if (!platform::GetFullPathName(zipPath, platform::kMaxPath, fullPath))
        return false;
    // A root that the buffer can't hold fails before the archive is touched.
    if (root != nullptr && std::strlen(root) >= kPathBufferSize)
        return false;
    if (append && platform::GetFileAttributes(fullPath) == platform::kInvalidFileAttributes)
        append = false;
    zipHandle = OpenArchive(fullPath, append ? APPEND_STATUS_ADDINZIP : APPEND_STATUS_CREATE);
    if (!IsOpen())
        return false;
    archivePath = fullPath;

    if (root == nullptr) {
        const PathParts parts = SplitPath(fullPath.c_str());
        StorePath(rootFolder, kPathBufferSize, MakePath(parts.drive, parts.directory, "", ""));
    } else {
        StorePath(rootFolder, kPathBufferSize, root);
    }
    if (rootFolder[0] != '\0')
        TrimPathEnd(rootFolder);
    return true;
}

bool CZipper::Close()
{
    bool closed = true;
    if (IsOpen())
        closed = zipClose(zipHandle, nullptr) == ZIP_OK;
    zipHandle = nullptr;
    rootFolder[0] = '\0';
    archivePath.clear();
    return closed;
}

ZipCounters CZipper::GetCounters() const
{
    return counters;
}

void CZipper::SetThreadCount(unsigned count)
{
    threadCount = count > 0 ? count : 1;
}

void CZipper::TrimPathEnd(char* path)
{
    if (path == nullptr || *path == '\0')
        return;
    std::size_t end = std::strlen(path);  // one behind the character reached
    while (end > 0 && IsWhiteSpace(path[end - 1]))
        --end;
    if (end > 0 && path[end - 1] == '\\') {
        while (end > 0 && path[end - 1] == '\\')
            --end;
    }
    path[end] = '\0';
}

void CZipper::TrimEntryName(char* name)
{
    if (name == nullptr || *name == '\0')
        return;
    TrimPathEnd(name);
    // A leading "/" goes as a leading "\" does: either would make the name
    // absolute inside the archive.
    std::size_t start = 0;
    while (IsWhiteSpace(name[start]))
        ++start;
    if (IsSeparator(name[start])) {
        while (IsSeparator(name[start]))
            ++start;
    }
    if (start > 0)
        std::memmove(name, name + start, std::strlen(name + start) + 1);
}

void CZipper::ResolveSourcePath(char* path)
{
    if (path == nullptr || platform::IsAbsolutePath(path))
        return;
    StorePath(path, kPathBufferSize, MakePath("", rootFolder, path, ""));
}

bool CZipper::ModificationTime(const char* path, platform::CalendarTime* time)
{
    if (time == nullptr)
        return false;
    *time = platform::CalendarTime();
    if (path == nullptr || platform::GetFileAttributes(path) == platform::kInvalidFileAttributes)
        return false;
    platform::FolderSearch search;
    platform::FolderEntry entry;
    if (!search.First(path, entry))
        return false;
    search.Close();
    *time = entry.lastWriteLocal;
    return true;
}

// The root compare is a plain prefix compare over the root's length.
bool CZipper::IsUnderRoot(const char* path) const
{
    for (std::size_t i = 0; rootFolder[i] != '\0'; ++i) {
        if (path[i] == '\0' || !SamePathCharacter(path[i], rootFolder[i]))
            return false;
    }
    return true;
}

// The archive never packs itself: while it is written under its temporary
// name, the file at its target's name is the archive that it replaces.
bool CZipper::IsArchiveItself(const char* path) const
{
    std::size_t i = 0;
    for (; path[i] != '\0' && i < archivePath.size(); ++i) {
        if (!SamePathCharacter(path[i], archivePath[i]))
            return false;
    }
    return path[i] == '\0' && i == archivePath.size();
}

// Copies `path` into the buffer `fullPath` and resolves it against the root;
// false when the path or its resolved form doesn't fit.
bool CZipper::ResolveCopy(const char* path, char* fullPath)
{
    if (path == nullptr || !StorePath(fullPath, kPathBufferSize, path))
        return false;
    ResolveSourcePath(fullPath);
    return *path == '\0' || *fullPath != '\0';
}

// The walk hands every entry to a queue, which writes them in the walk's order
// while its threads deflate the files ahead; all are written when this returns.
bool CZipper::AddFolder(const char* path, bool ignorePath)
{
    if (!IsOpen())
        return false;
    EntryQueue queue(zipHandle, threadCount, counters);
    const bool added = QueueFolder(path, ignorePath, queue);
    queue.WriteAll();
    return added;
}

bool CZipper::QueueFolder(const char* path, bool ignorePath, EntryQueue& queue)
{
    ++counters.folderCount;
    char fullPath[kPathBufferSize];
    if (!ResolveCopy(path, fullPath))
        return false;
    char name[kPathBufferSize];
    if (!FolderEntryName(fullPath, ignorePath, name))
        return false;
    TrimEntryName(name);
    if (name[0] != '\0')
        QueueFolderEntry(fullPath, name, queue);
    QueueFolderContents(fullPath, ignorePath, queue);
    return true;
}

bool CZipper::FolderEntryName(const char* fullPath, bool ignorePath, char* name) const
{
    if (ignorePath) {
        const PathParts parts = SplitPath(fullPath);
        return StorePath(name, kPathBufferSize, parts.name + parts.extension);
    }
    if (!IsUnderRoot(fullPath))
        return false;
    return StorePath(name, kPathBufferSize, fullPath + std::strlen(rootFolder));
}

// A folder's own entry has no data; whether it went in is not looked at.
void CZipper::QueueFolderEntry(const char* fullPath, const char* name, EntryQueue& queue)
{
    if (LeavesUnpackFolder(name))
        return;
    platform::CalendarTime time;
    ModificationTime(fullPath, &time);
    const std::uint32_t attributes = platform::GetFileAttributes(fullPath) | platform::kAttributeDirectory;
    queue.NextSlot().Begin(name, MakeFileInfo(time, attributes), false);
    queue.Submit();
}

// Walks the folder in the order in which the file system lists it, passing
// over what PassedOver says; nothing that fails below reaches the caller.
void CZipper::QueueFolderContents(const char* fullPath, bool ignorePath, EntryQueue& queue)
{
    const PathParts parts = SplitPath(fullPath);
    const std::string folder = parts.directory + parts.name + parts.extension;
    const std::string pattern = MakePath(parts.drive, folder, "*", "*");
    if (pattern.size() >= kPathBufferSize)
        return;
    platform::FolderSearch search;
    platform::FolderEntry entry;
    if (!search.First(pattern, entry))
        return;
    do {
        if (PassedOver(entry))
            continue;
        char childPath[kPathBufferSize];
        if (!StorePath(childPath, kPathBufferSize, MakePath(parts.drive, folder, entry.name, "")))
            continue;
        if ((entry.attributes & platform::kAttributeDirectory) != 0)
            QueueFolder(childPath, ignorePath, queue);
        else if (!IsArchiveItself(childPath))
            QueueFile(childPath, ignorePath, queue);
    } while (search.Next(entry));
    search.Close();
}

// One file goes in through a queue of its own, deflated by this thread.
bool CZipper::AddFile(const char* path, bool ignorePath)
{
    if (!IsOpen())
        return false;
    EntryQueue queue(zipHandle, 1, counters);
    return QueueFile(path, ignorePath, queue) && queue.WriteAll();
}

bool CZipper::QueueFile(const char* path, bool ignorePath, EntryQueue& queue)
{
    if (path == nullptr)
        return false;
    if (!ignorePath && ClimbsOutOfRoot(path))
        return false;
    char fullPath[kPathBufferSize];
    if (!ResolveCopy(path, fullPath))
        return false;
    char name[kPathBufferSize] = {};
    if (!FileEntryName(path, ignorePath, name))
        return false;
    TrimEntryName(name);
    // The attributes are those of the path as it was given; only the date
    // comes from the resolved path.
    const std::uint32_t attributes = platform::GetFileAttributes(path) & ~platform::kAttributeReadOnly;
    return QueueFileEntry(name, attributes, fullPath, queue);
}

bool CZipper::FileEntryName(const char* path, bool ignorePath, char* name) const
{
    if (ignorePath) {
        const PathParts parts = SplitPath(path);
        return StorePath(name, kPathBufferSize, parts.name + parts.extension);
    }
    if (platform::IsAbsolutePath(path)) {
        if (!IsUnderRoot(path))
            return false;
        return StorePath(name, kPathBufferSize, path + std::strlen(rootFolder));
    }
    if (StartsInRoot(path))
        return StorePath(name, kPathBufferSize, path + 2);
    return StorePath(name, kPathBufferSize, path);
}

bool CZipper::AddFileAs(const char* path, const char* folderInZip)
{
    if (!IsOpen() || NamesADrive(folderInZip))
        return false;
    char fullPath[kPathBufferSize];
    if (!ResolveCopy(path, fullPath))
        return false;
    // As in AddFile, the attributes are those of the path as it was given.
    const std::uint32_t attributes = platform::GetFileAttributes(path);
    const PathParts parts = SplitPath(path);
    char name[kPathBufferSize];
    if (!StorePath(name, kPathBufferSize,
                   MakePath("", folderInZip != nullptr ? folderInZip : "", parts.name, parts.extension)))
        return false;
    TrimEntryName(name);
    EntryQueue queue(zipHandle, 1, counters);
    return QueueFileEntry(name, attributes, fullPath, queue) && queue.WriteAll();
}

// Opens the file into the queue's next slot and puts its entry in flight,
// dated by the file's last write. A file that can't be opened, or whose name
// would leave the unpacking folder, gets no entry.
bool CZipper::QueueFileEntry(const char* name, std::uint32_t attributes, const char* fullPath,
                             EntryQueue& queue)
{
    if (LeavesUnpackFolder(name))
        return false;
    PendingEntry& entry = queue.NextSlot();
    if (!entry.File().Open(fullPath))
        return false;
    platform::CalendarTime time;
    ModificationTime(fullPath, &time);
    entry.Begin(name, MakeFileInfo(time, attributes), true);
    queue.Submit();
    return true;
}

bool CZipper::AddBuffer(const void* data, std::uint32_t length, const char* name)
{
    if (!IsOpen() || NamesADrive(name))
        return false;
    char entryName[kPathBufferSize];
    if (!StorePath(entryName, kPathBufferSize, name != nullptr ? name : ""))
        return false;
    TrimEntryName(entryName);
    if (data == nullptr)
        length = 0;
    int result = OpenEntry(zipHandle, entryName,
                           MakeFileInfo(platform::CurrentUtcTime(), platform::kAttributeNormal));
    if (result == ZIP_OK) {
        ++counters.fileCount;
        result = WriteBufferData(data, length);
        counters.uncompressedBytes += length;
    }
    zipCloseFileInZip(zipHandle);
    return result == ZIP_OK;
}

int CZipper::WriteBufferData(const void* data, std::uint32_t length)
{
    const char* next = static_cast<const char*>(data);
    int result = ZIP_OK;
    while (length > 0 && result == ZIP_OK) {
        const std::uint32_t block = length < kCopyBlockSize ? length : kCopyBlockSize;
        result = zipWriteInFileInZip(zipHandle, next, block);
        next += block;
        length -= block;
    }
    return result;
}

bool CZipper::ZipOneFile(const char* path)
{
    if (path == nullptr)
        return false;
    const PathParts parts = SplitPath(path);
    const std::string zipPath = MakePath(parts.drive, parts.directory, parts.name, "zip");
    CZipper zipper(nullptr, nullptr, false);
    if (!zipper.Open(zipPath.c_str(), nullptr, false))
        return false;
    return zipper.AddFile(path, false);
}

bool CZipper::ZipWholeFolder(const char* path, bool ignorePath)
{
    if (path == nullptr)
        return false;
    const PathParts parts = SplitPath(path);
    const std::string zipPath =
        MakePath(parts.drive, parts.directory, parts.name + parts.extension, "zip");
    CZipper zipper(nullptr, nullptr, false);
    if (!zipper.Open(zipPath.c_str(), path, false))
        return false;
    return zipper.AddFolder(path, ignorePath);
}
