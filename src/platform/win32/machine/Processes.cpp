// The running processes on Windows. The functions of "psapi.dll" and the
// snapshot calls of "kernel32.dll" are looked up by name at run time and never
// linked; each call through a looked-up function takes its type from the
// system's own declaration, so that its calling convention is the system's.
#include "platform/Processes.h"

// The names of the process-status functions, not the K32 ones of newer systems.
#define PSAPI_VERSION 1
#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <cstring>

namespace platform {

namespace {

static_assert(sizeof(void*) != 4 || sizeof(PROCESSENTRY32) == 296,
              "the process entry of the 32-bit program");
static_assert(sizeof(DWORD) == 4, "the process ids of EnumProcesses");
static_assert(sizeof(PROCESSENTRY32::szExeFile) == kPathBufferSize, "the executable's path");

using EnumProcessesCall = decltype(&::EnumProcesses);
using EnumProcessModulesCall = decltype(&::EnumProcessModules);
using GetModuleBaseNameCall = decltype(&::GetModuleBaseNameA);
using CreateSnapshotCall = decltype(&::CreateToolhelp32Snapshot);
using Process32FirstCall = decltype(&::Process32First);
using Process32NextCall = decltype(&::Process32Next);

template <typename Call>
Call AsCall(std::uintptr_t function)
{
    return reinterpret_cast<Call>(function);
}

HANDLE AsHandle(std::uintptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

// The text of a buffer up to its first zero byte, never beyond its end.
std::string BufferText(const char* buffer, std::size_t size)
{
    std::size_t length = 0;
    while (length < size && buffer[length] != '\0')
        ++length;
    return std::string(buffer, length);
}

bool CallProcess32(BOOL(WINAPI* call)(HANDLE, LPPROCESSENTRY32), std::uintptr_t snapshot,
                   ProcessSnapshotEntry& entry)
{
    PROCESSENTRY32 raw;
    ZeroMemory(&raw, sizeof raw);
    raw.dwSize = entry.size;
    const BOOL found = call(AsHandle(snapshot), &raw);
    entry.size = raw.dwSize;
    entry.processId = raw.th32ProcessID;
    entry.exeFile = BufferText(raw.szExeFile, sizeof raw.szExeFile);
    return found != FALSE;
}

}  // namespace

std::uint32_t GetWindowsFolder(std::string& folder)
{
    char buffer[kPathBufferSize] = {};
    const UINT length = GetWindowsDirectoryA(buffer, kPathBufferSize);
    folder = length == 0 ? std::string() : BufferText(buffer, sizeof buffer);
    return length;
}

std::uint32_t GetShortPathForm(const std::string& path, std::string& shortPath)
{
    char buffer[kPathBufferSize] = {};
    const DWORD result = GetShortPathNameA(path.c_str(), buffer, kPathBufferSize);
    shortPath = BufferText(buffer, sizeof buffer);
    return result;
}

std::uint32_t OwnProcessId()
{
    return ::GetCurrentProcessId();
}

std::uintptr_t LoadLibraryNamed(const std::string& name)
{
    return reinterpret_cast<std::uintptr_t>(LoadLibraryA(name.c_str()));
}

std::uintptr_t FindLibraryFunction(std::uintptr_t library, const std::string& name)
{
    return reinterpret_cast<std::uintptr_t>(
        GetProcAddress(reinterpret_cast<HMODULE>(library), name.c_str()));
}

void FreeLibraryHandle(std::uintptr_t library)
{
    FreeLibrary(reinterpret_cast<HMODULE>(library));
}

void CloseSystemHandle(std::uintptr_t handle)
{
    CloseHandle(AsHandle(handle));
}

std::uintptr_t OpenProcessHandle(std::uint32_t access, bool inheritHandle,
                                 std::uint32_t processId)
{
    return reinterpret_cast<std::uintptr_t>(
        ::OpenProcess(access, inheritHandle ? TRUE : FALSE, processId));
}

bool CallEnumProcesses(std::uintptr_t function, std::uint32_t (&ids)[kProcessIdBufferCount],
                       std::uint32_t& bytesUsed)
{
    DWORD raw[kProcessIdBufferCount];
    DWORD used = 0;
    const BOOL done = AsCall<EnumProcessesCall>(function)(raw, sizeof raw, &used);
    if (used > sizeof raw)
        used = sizeof raw;
    for (DWORD i = 0; i < used / sizeof(DWORD); ++i)
        ids[i] = raw[i];
    bytesUsed = used;
    return done != FALSE;
}

bool CallEnumProcessModules(std::uintptr_t function, std::uintptr_t process,
                            std::uintptr_t& firstModule)
{
    HMODULE modules[kModuleBufferBytes / sizeof(HMODULE)] = {};
    DWORD needed = 0;
    const BOOL done =
        AsCall<EnumProcessModulesCall>(function)(AsHandle(process), modules, kModuleBufferBytes,
                                                 &needed);
    firstModule = reinterpret_cast<std::uintptr_t>(modules[0]);
    return done != FALSE;
}

std::uint32_t CallGetModuleBaseName(std::uintptr_t function, std::uintptr_t process,
                                    std::uintptr_t module, char (&name)[kPathBufferSize])
{
    // The call may change its buffer even when it fails; the caller's text
    // stays unless it succeeds.
    char buffer[kPathBufferSize];
    std::memcpy(buffer, name, sizeof buffer);
    const DWORD length = AsCall<GetModuleBaseNameCall>(function)(
        AsHandle(process), reinterpret_cast<HMODULE>(module), buffer, kPathBufferSize);
    if (length != 0)
        std::memcpy(name, buffer, sizeof buffer);
    return length;
}

std::uint32_t ProcessEntrySize()
{
    return sizeof(PROCESSENTRY32);
}

std::uintptr_t CallCreateToolhelp32Snapshot(std::uintptr_t function, std::uint32_t flags,
                                            std::uint32_t processId)
{
    return reinterpret_cast<std::uintptr_t>(
        AsCall<CreateSnapshotCall>(function)(flags, processId));
}

bool CallProcess32First(std::uintptr_t function, std::uintptr_t snapshot,
                        ProcessSnapshotEntry& entry)
{
    return CallProcess32(AsCall<Process32FirstCall>(function), snapshot, entry);
}

bool CallProcess32Next(std::uintptr_t function, std::uintptr_t snapshot,
                       ProcessSnapshotEntry& entry)
{
    return CallProcess32(AsCall<Process32NextCall>(function), snapshot, entry);
}

}  // namespace platform
