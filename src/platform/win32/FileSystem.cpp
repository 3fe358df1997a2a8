// Files and folders on Windows: the kernel's own calls, with the arguments the
// system has always given them.
#include "platform/FileSystem.h"
#include "platform/win32/ReparsePoints.h"

#include <windows.h>
// The layer's own names, not the header's macros for the ANSI calls.
#undef GetFullPathName
#undef GetFileAttributes

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <fstream>
#include <vector>

namespace platform {

const char* const kTextLineEnd = "\r\n";
const char* const kFileNameSeparators = "\\";

std::string SystemPath(const std::string& path)
{
    return path;
}

// A path is absolute when it names a drive.
bool IsAbsolutePath(const std::string& path)
{
    return path.find(':') != std::string::npos;
}

bool GetFullPathName(const std::string& name, std::size_t limit, std::string& fullPath)
{
    fullPath.clear();
    if (limit == 0 || limit > MAXDWORD)
        return false;
    std::vector<char> buffer(limit, '\0');
    const DWORD length = GetFullPathNameA(name.c_str(), static_cast<DWORD>(limit), buffer.data(), nullptr);
    // Too small a buffer gives the size it would need, terminator included.
    if (length == 0 || length >= limit)
        return false;
    fullPath.assign(buffer.data(), length);
    return true;
}

std::uint32_t GetFileAttributes(const std::string& path)
{
    return GetFileAttributesA(path.c_str());
}

PathStatus StatPath(const std::string& path)
{
    PathStatus result;
    struct _stat status;
    if (_stat(path.c_str(), &status) != 0)
        return result;
    result.regularFile = (status.st_mode & _S_IFREG) != 0;
    result.directory = (status.st_mode & _S_IFDIR) != 0;
    return result;
}

bool OthersMayChangeFolder(const std::string&)
{
    return false;
}

// The system refuses a read-only file by itself. No write goes through a
// junction or symbolic link.
bool OpenFileBuffer(std::filebuf& buffer, const std::string& path, std::ios_base::openmode mode)
{
    const bool writes = (mode & (std::ios_base::out | std::ios_base::app)) != 0;
    if (writes && LeadsThroughReparsePoint(path))
        return false;
    return buffer.open(path, mode) != nullptr;
}

std::FILE* OpenRuntimeFile(const std::string& path, const char* mode)
{
    return std::fopen(path.c_str(), mode);
}

namespace {

// How many names the temporary file of CreateFileBeside tries before it gives up.
constexpr unsigned kTemporaryNameAttempts = 100;

// An exclusive new file as a runtime stream; null if it exists or can't be made.
std::FILE* CreateNewRuntimeFile(const std::string& path)
{
    const HANDLE handle =
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return nullptr;
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_BINARY);
    if (descriptor < 0) {
        CloseHandle(handle);
        DeleteFileA(path.c_str());
        return nullptr;
    }
    std::FILE* file = _fdopen(descriptor, "wb");
    if (file == nullptr) {
        _close(descriptor);
        DeleteFileA(path.c_str());
    }
    return file;
}

}  // namespace

// The target is looked at as the runtime's "wb" open would meet it: a folder
// or a read-only file can't be written. The new file is named after the
// target, this process and an attempt number, and made with CREATE_NEW.
std::FILE* CreateFileBeside(const std::string& path, std::string& temporaryPath)
{
    temporaryPath.clear();
    const DWORD attributes = GetFileAttributesA(path.c_str());
    const DWORD unwritable = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
    if (path.empty() || (attributes != INVALID_FILE_ATTRIBUTES && (attributes & unwritable) != 0))
        return nullptr;
    const std::size_t separator = path.find_last_of("\\/");
    const std::size_t nameStart = separator == std::string::npos ? 0 : separator + 1;
    const std::string stem = path.substr(0, nameStart) + "." + path.substr(nameStart) + "." +
                             std::to_string(GetCurrentProcessId()) + "-";
    for (unsigned attempt = 0; attempt < kTemporaryNameAttempts; ++attempt) {
        const std::string candidate = stem + std::to_string(attempt);
        if (std::FILE* file = CreateNewRuntimeFile(candidate)) {
            temporaryPath = candidate;
            return file;
        }
        if (GetLastError() != ERROR_FILE_EXISTS)
            return nullptr;
    }
    return nullptr;
}

bool PutFileInPlace(const std::string& temporaryPath, const std::string& path)
{
    if (MoveFileExA(temporaryPath.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE)
        return true;
    DeleteFileA(temporaryPath.c_str());
    return false;
}

bool CreateFolder(const std::string& path)
{
    return !LeadsThroughReparsePoint(path) && CreateDirectoryA(path.c_str(), nullptr) != FALSE;
}

bool CopyFileNoOverwrite(const std::string& source, const std::string& target)
{
    return !LeadsThroughReparsePoint(target) &&
           CopyFileA(source.c_str(), target.c_str(), TRUE) != FALSE;
}

bool MovePath(const std::string& source, const std::string& target)
{
    return !LeadsThroughReparsePoint(source) && !LeadsThroughReparsePoint(target) &&
           MoveFileA(source.c_str(), target.c_str()) != FALSE;
}

}  // namespace platform
