// The process calls, answered from the scripted machine's processes. Each
// call is written down in the machine's list of calls.
#include "platform/scripted/ScriptedProcesses.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <sstream>

#include "platform/Processes.h"
#include "platform/scripted/ScriptedMachine.h"

namespace platform {

namespace {

scripted::Processes& Machine()
{
    return scripted::CurrentMachine().processes;
}

void Note(const std::string& call)
{
    Machine().calls.push_back(call);
}

// Library handles are 0x1000 and up, in a fixed order of the names that the
// machine knows; any other name loads as well, with a handle after them.
const char* const kLibraries[] = {"psapi.dll", "kernel32.dll"};
constexpr std::uintptr_t kFirstLibrary = 0x1000;

// Functions are 0x100 and up, by their place here; a call through a function
// checks that it is the one of its name, and fails otherwise.
const char* const kFunctions[] = {
    "EnumProcesses",        "EnumProcessModules", "GetModuleBaseNameA",
    "GetModuleFileNameExA", "CreateToolhelp32Snapshot", "Process32First",
    "Process32Next",        "Module32First",      "Module32Next"};
constexpr std::uintptr_t kFirstFunction = 0x100;

// A process handle is 0x10000 plus its place in the list; the snapshot has one.
constexpr std::uintptr_t kFirstProcess = 0x10000;
constexpr std::uintptr_t kSnapshot = 0x8000000;

std::uintptr_t FunctionNamed(const std::string& name)
{
    const auto begin = std::begin(kFunctions);
    const auto end = std::end(kFunctions);
    const auto found = std::find_if(begin, end, [&](const char* known) { return name == known; });
    return found == end ? 0 : kFirstFunction + static_cast<std::uintptr_t>(found - begin);
}

bool IsFunction(std::uintptr_t function, const char* name)
{
    return function != 0 && function == FunctionNamed(name);
}

std::string LibraryName(std::uintptr_t library)
{
    const std::size_t known = std::size(kLibraries);
    if (library >= kFirstLibrary && library < kFirstLibrary + known)
        return kLibraries[library - kFirstLibrary];
    return "library " + std::to_string(library);
}

// The scripted process of a handle, or null.
const scripted::ScriptedProcess* ProcessOf(std::uintptr_t handle)
{
    const auto& processes = Machine().processes;
    if (handle < kFirstProcess || handle - kFirstProcess >= processes.size())
        return nullptr;
    return &processes[handle - kFirstProcess];
}

std::string ProcessName(std::uintptr_t handle)
{
    const scripted::ScriptedProcess* process = ProcessOf(handle);
    return process == nullptr ? "handle " + std::to_string(handle)
                              : "process " + std::to_string(process->id);
}

std::string Cut(const std::string& text)
{
    return text.substr(0, kPathBufferSize - 1);
}

bool GiveSnapshotEntry(std::uintptr_t snapshot, ProcessSnapshotEntry& entry)
{
    scripted::Processes& machine = Machine();
    if (snapshot != kSnapshot || machine.nextSnapshotEntry >= machine.snapshotEntries.size())
        return false;
    const scripted::ScriptedSnapshotEntry& given =
        machine.snapshotEntries[machine.nextSnapshotEntry++];
    entry.size = given.size;
    entry.processId = given.processId;
    entry.exeFile = Cut(given.exeFile);
    return true;
}

}  // namespace

std::uint32_t GetWindowsFolder(std::string& folder)
{
    Note("GetWindowsDirectoryA " + std::to_string(kPathBufferSize));
    folder = Cut(Machine().windowsFolder);
    return static_cast<std::uint32_t>(folder.size());
}

std::uint32_t GetShortPathForm(const std::string& path, std::string& shortPath)
{
    Note("GetShortPathNameA " + path + " " + std::to_string(kPathBufferSize));
    shortPath = path.empty() ? std::string() : Cut(Machine().shortWindowsFolder);
    return static_cast<std::uint32_t>(shortPath.size());
}

std::uint32_t OwnProcessId()
{
    Note("GetCurrentProcessId");
    return Machine().ownId;
}

std::uintptr_t LoadLibraryNamed(const std::string& name)
{
    Note("LoadLibraryA " + name);
    if (Machine().missingLibraries.count(name) != 0)
        return 0;
    const auto begin = std::begin(kLibraries);
    const auto end = std::end(kLibraries);
    const auto found = std::find_if(begin, end, [&](const char* known) { return name == known; });
    return kFirstLibrary + static_cast<std::uintptr_t>(found - begin);
}

std::uintptr_t FindLibraryFunction(std::uintptr_t library, const std::string& name)
{
    Note("GetProcAddress " + LibraryName(library) + " " + name);
    if (Machine().missingFunctions.count(name) != 0)
        return 0;
    return FunctionNamed(name);
}

void FreeLibraryHandle(std::uintptr_t library)
{
    Note("FreeLibrary " + LibraryName(library));
}

void CloseSystemHandle(std::uintptr_t handle)
{
    Note("CloseHandle " + (handle == kSnapshot ? std::string("snapshot") : ProcessName(handle)));
}

std::uintptr_t OpenProcessHandle(std::uint32_t access, bool inheritHandle,
                                 std::uint32_t processId)
{
    std::ostringstream call;
    call << "OpenProcess 0x" << std::hex << access << (inheritHandle ? " TRUE " : " FALSE ")
         << std::dec << processId;
    Note(call.str());
    const auto& processes = Machine().processes;
    for (std::size_t i = 0; i < processes.size(); ++i) {
        if (processes[i].id == processId)
            return processes[i].opens ? kFirstProcess + i : 0;
    }
    return 0;
}

bool CallEnumProcesses(std::uintptr_t function, std::uint32_t (&ids)[kProcessIdBufferCount],
                       std::uint32_t& bytesUsed)
{
    Note("EnumProcesses " + std::to_string(kProcessIdBufferBytes));
    bytesUsed = 0;
    const scripted::Processes& machine = Machine();
    if (!IsFunction(function, "EnumProcesses") || machine.enumProcessesFails)
        return false;
    const std::size_t count =
        std::min<std::size_t>(machine.processes.size(), kProcessIdBufferCount);
    for (std::size_t i = 0; i < count; ++i)
        ids[i] = machine.processes[i].id;
    bytesUsed = static_cast<std::uint32_t>(count * 4);
    return true;
}

bool CallEnumProcessModules(std::uintptr_t function, std::uintptr_t process,
                            std::uintptr_t& firstModule)
{
    Note("EnumProcessModules " + ProcessName(process) + " " + std::to_string(kModuleBufferBytes));
    const scripted::ScriptedProcess* found = ProcessOf(process);
    if (!IsFunction(function, "EnumProcessModules") || found == nullptr || !found->hasModules)
        return false;
    firstModule = process;
    return true;
}

std::uint32_t CallGetModuleBaseName(std::uintptr_t function, std::uintptr_t process,
                                    std::uintptr_t module, char (&name)[kPathBufferSize])
{
    Note("GetModuleBaseNameA " + ProcessName(process) + " " + std::to_string(kPathBufferSize));
    const scripted::ScriptedProcess* found = ProcessOf(process);
    if (!IsFunction(function, "GetModuleBaseNameA") || found == nullptr || module != process ||
        found->nameFails)
        return 0;
    const std::string base = Cut(found->baseName);
    std::memcpy(name, base.c_str(), base.size() + 1);
    return static_cast<std::uint32_t>(base.size());
}

// The size of the shipped 32-bit program's entry.
std::uint32_t ProcessEntrySize()
{
    return 296;
}

std::uintptr_t CallCreateToolhelp32Snapshot(std::uintptr_t function, std::uint32_t flags,
                                            std::uint32_t processId)
{
    Note("CreateToolhelp32Snapshot " + std::to_string(flags) + " " + std::to_string(processId));
    if (!IsFunction(function, "CreateToolhelp32Snapshot") || Machine().snapshotFails)
        return kInvalidHandle;
    Machine().nextSnapshotEntry = 0;
    return kSnapshot;
}

bool CallProcess32First(std::uintptr_t function, std::uintptr_t snapshot,
                        ProcessSnapshotEntry& entry)
{
    Note("Process32First " + std::to_string(entry.size));
    if (!IsFunction(function, "Process32First"))
        return false;
    Machine().nextSnapshotEntry = 0;
    return GiveSnapshotEntry(snapshot, entry);
}

bool CallProcess32Next(std::uintptr_t function, std::uintptr_t snapshot,
                       ProcessSnapshotEntry& entry)
{
    Note("Process32Next " + std::to_string(entry.size));
    if (!IsFunction(function, "Process32Next"))
        return false;
    return GiveSnapshotEntry(snapshot, entry);
}

}  // namespace platform
