// The running processes on POSIX systems, read from /proc, in the terms of the
// process-status library. "psapi.dll" loads and has the functions looked up
// in it; "kernel32.dll" loads too but has no snapshot calls, so the snapshot
// path of the Windows 95 family finds nothing to call. There is no Windows
// folder: those calls fail.
//
// A process handle is the process id plus one, so that no handle is 0: a
// process opens while its /proc folder exists. A handle holds no descriptor,
// so a handle left open costs nothing: the collector leaves the one on its own
// process open, and an installer that records many events in one process
// must not run out of descriptors for that. A process's modules can be listed
// when its executable link can be read, which leaves out kernel threads and,
// without privilege, other users' processes, as Windows leaves out system
// processes. Its base name is the last part of that link.
#include "platform/Processes.h"
#include "platform/common/PrintableText.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstring>
#include <string>

namespace platform {

namespace {

// Library handles and function addresses: stand-ins that only need to be
// distinct and not 0.
constexpr std::uintptr_t kStatusLibrary = 1;
constexpr std::uintptr_t kKernelLibrary = 2;
constexpr std::uintptr_t kFirstFunction = 0x100;

const char* const kStatusFunctions[] = {"EnumProcesses", "EnumProcessModules",
                                        "GetModuleBaseNameA", "GetModuleFileNameExA"};

// The module handle of a process's executable.
constexpr std::uintptr_t kExecutableModule = 1;

std::string LowerCase(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// True for a name of digits only, the folders of processes in /proc.
bool IsProcessIdName(const char* name, std::uint32_t& id)
{
    if (*name == '\0')
        return false;
    unsigned long long value = 0;
    for (const char* p = name; *p != '\0'; ++p) {
        if (*p < '0' || *p > '9')
            return false;
        value = value * 10 + static_cast<unsigned>(*p - '0');
        if (value > UINT32_MAX)
            return false;
    }
    id = static_cast<std::uint32_t>(value);
    return true;
}

// What the kernel adds to the executable link of a program whose file was
// deleted while it runs.
const char kDeletedSuffix[] = " (deleted)";

std::string ProcessFolder(std::uint32_t processId)
{
    return "/proc/" + std::to_string(processId);
}

// The /proc folder of the process behind a handle, or the empty text for no handle.
std::string ProcessFolderOfHandle(std::uintptr_t handle)
{
    if (handle == 0 || handle > static_cast<std::uintptr_t>(UINT32_MAX) + 1)
        return std::string();
    return ProcessFolder(static_cast<std::uint32_t>(handle - 1));
}

// True when the executable behind the link has no name left on disk.
bool ExecutableWasDeleted(const std::string& link)
{
    struct stat status {};
    return stat(link.c_str(), &status) == 0 && status.st_nlink == 0;
}

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The executable link of an opened process, or false. A deleted executable
// is given by the name it had, without the kernel's " (deleted)".
bool ReadExecutableLink(std::uintptr_t process, std::string& target)
{
    const std::string folder = ProcessFolderOfHandle(process);
    if (folder.empty())
        return false;
    const std::string link = folder + "/exe";
    char buffer[PATH_MAX];
    const ssize_t length = readlink(link.c_str(), buffer, sizeof buffer);
    if (length <= 0)
        return false;
    target.assign(buffer, static_cast<std::size_t>(length));
    if (EndsWith(target, kDeletedSuffix) && ExecutableWasDeleted(link))
        target.resize(target.size() - (sizeof kDeletedSuffix - 1));
    return true;
}

}  // namespace

std::uint32_t GetWindowsFolder(std::string& folder)
{
    folder.clear();
    return 0;
}

std::uint32_t GetShortPathForm(const std::string&, std::string& shortPath)
{
    shortPath.clear();
    return 0;
}

std::uint32_t OwnProcessId()
{
    return static_cast<std::uint32_t>(getpid());
}

std::uintptr_t LoadLibraryNamed(const std::string& name)
{
    const std::string lower = LowerCase(name);
    if (lower == "psapi.dll")
        return kStatusLibrary;
    if (lower == "kernel32.dll")
        return kKernelLibrary;
    return 0;
}

std::uintptr_t FindLibraryFunction(std::uintptr_t library, const std::string& name)
{
    if (library != kStatusLibrary)
        return 0;
    const auto begin = std::begin(kStatusFunctions);
    const auto end = std::end(kStatusFunctions);
    const auto found =
        std::find_if(begin, end, [&](const char* known) { return name == known; });
    if (found == end)
        return 0;
    return kFirstFunction + static_cast<std::uintptr_t>(found - begin);
}

void FreeLibraryHandle(std::uintptr_t)
{
}

// A process handle holds nothing to release, and there are no snapshot handles.
void CloseSystemHandle(std::uintptr_t)
{
}

std::uintptr_t OpenProcessHandle(std::uint32_t, bool, std::uint32_t processId)
{
    struct stat status {};
    if (stat(ProcessFolder(processId).c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return 0;
    return static_cast<std::uintptr_t>(processId) + 1;
}

bool CallEnumProcesses(std::uintptr_t, std::uint32_t (&ids)[kProcessIdBufferCount],
                       std::uint32_t& bytesUsed)
{
    bytesUsed = 0;
    DIR* folder = opendir("/proc");
    if (folder == nullptr)
        return false;
    std::uint32_t count = 0;
    while (count < kProcessIdBufferCount) {
        const dirent* entry = readdir(folder);
        if (entry == nullptr)
            break;
        std::uint32_t id = 0;
        if (IsProcessIdName(entry->d_name, id))
            ids[count++] = id;
    }
    closedir(folder);
    bytesUsed = count * 4;
    return true;
}

bool CallEnumProcessModules(std::uintptr_t, std::uintptr_t process, std::uintptr_t& firstModule)
{
    std::string target;
    if (!ReadExecutableLink(process, target))
        return false;
    firstModule = kExecutableModule;
    return true;
}

std::uint32_t CallGetModuleBaseName(std::uintptr_t, std::uintptr_t process, std::uintptr_t module,
                                    char (&name)[kPathBufferSize])
{
    std::string target;
    if (module != kExecutableModule || !ReadExecutableLink(process, target))
        return 0;
    const std::size_t slash = target.rfind('/');
    // A Linux file name may hold line ends and other control characters, which
    // no Windows name can: the name keeps to its one line of the event log.
    const std::string base =
        PrintableText(slash == std::string::npos ? target : target.substr(slash + 1));
    if (base.empty())
        return 0;
    // Cut to the buffer, with its terminating zero.
    const std::size_t length = std::min(base.size(), sizeof name - 1);
    std::memcpy(name, base.data(), length);
    name[length] = '\0';
    return static_cast<std::uint32_t>(length);
}

std::uint32_t ProcessEntrySize()
{
    return 296;
}

std::uintptr_t CallCreateToolhelp32Snapshot(std::uintptr_t, std::uint32_t, std::uint32_t)
{
    return kInvalidHandle;
}

bool CallProcess32First(std::uintptr_t, std::uintptr_t, ProcessSnapshotEntry&)
{
    return false;
}

bool CallProcess32Next(std::uintptr_t, std::uintptr_t, ProcessSnapshotEntry&)
{
    return false;
}

}  // namespace platform
