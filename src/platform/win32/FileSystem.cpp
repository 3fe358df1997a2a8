// Files and folders on Windows: the kernel's own calls, with the arguments the
// system has always given them.
#include "platform/FileSystem.h"
#include "platform/win32/ReparsePoints.h"

#include <windows.h>
// The layer's own names, not the header's macros for the ANSI calls.
#undef GetFullPathName
#undef GetFileAttributes

#include <sys/stat.h>
#include <sys/types.h>

#include <fstream>
#include <vector>

namespace platform {

const char* const kTextLineEnd = "\r\n";

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
