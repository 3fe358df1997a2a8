// Where the history store lies, and the small file and clock helpers. Nothing
// is cached: every call asks the platform again.
#include "history/HistoryPaths.h"

#include <cstring>
#include <ctime>
#include <new>

#include "platform/FileSystem.h"
#include "platform/SpecialFolder.h"
#include "platform/SystemVersion.h"

namespace {

// The shell's folder call fills a buffer of 256 bytes: a longer folder is
// kept to its first 255 characters.
constexpr std::size_t kSpecialFolderBufferSize = 256;

}  // namespace

std::string GetSpecialFolder(int folderId)
{
    return platform::LookUpSpecialFolder(folderId).substr(0, kSpecialFolderBufferSize - 1);
}

std::string GetCommonAppDataFolder()
{
    std::string folder = GetSpecialFolder(platform::kFolderCommonAppData);
    if (folder.empty())
        folder = "C:\\Documents and Settings\\All Users\\Application Data";
    return folder;
}

std::string GetHistoryFolder()
{
    return GetCommonAppDataFolder() + "\\TAQ\\" + "ZORHistory";
}

std::string GetHistoryIniPath()
{
    return GetHistoryFolder() + "\\" + "History.ini";
}

namespace {

// The path with one double quote taken off its front and one off its end,
// then asked of the runtime's stat.
platform::PathStatus StatUnquoted(const char* path)
{
    if (path == nullptr)
        return platform::PathStatus();
    const std::size_t length = std::strlen(path);
    char* scratch = new (std::nothrow) char[length + 1];
    if (scratch == nullptr)
        return platform::PathStatus();
    std::strcpy(scratch, path[0] == '"' ? path + 1 : path);
    const std::size_t copied = std::strlen(scratch);
    if (copied > 0 && scratch[copied - 1] == '"')
        scratch[copied - 1] = '\0';
    const platform::PathStatus status = platform::StatPath(scratch);
    delete[] scratch;
    return status;
}

}  // namespace

bool FileExists(const char* path)
{
    return StatUnquoted(path).regularFile;
}

bool DirectoryExists(const char* path)
{
    return StatUnquoted(path).directory;
}

std::string GetTimeStamp()
{
    char buffer[128] = {};
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    if (local != nullptr)
        std::strftime(buffer, sizeof buffer, "%Y%m%d %H:%M:%S", local);
    return buffer;
}

bool IsWindowsNT()
{
    // The result of the call isn't looked at: a failed call leaves zeros.
    platform::SystemVersion version;
    platform::GetVersionEx(platform::kExtendedVersionSize, version);
    return IsWindowsNTVersion(version.majorVersion, version.minorVersion, version.platformId);
}

// Only the Windows 95 family answers false: 4.0 on the Windows platform id,
// 4.10 (Windows 98) and 4.90 (Windows Me).
bool IsWindowsNTVersion(unsigned major, unsigned minor, unsigned platformId)
{
    if (major != 4)
        return true;
    if (minor == 0)
        return platformId != platform::kPlatformWindows;
    return minor != 10 && minor != 90;
}
