// The machine's running processes, one system call at a time: the Windows
// folder, the program's own id, libraries loaded and their functions looked up
// by name at run time, and the calls made through those functions, of the
// process-status library ("psapi.dll") on the NT family and of the snapshot
// calls of "kernel32.dll" on the Windows 95 family. Which calls are made, in
// what order, and what is done with their answers is the caller's.
//
// Handles are plain numbers: 0 is no handle. A looked-up function is a number
// too, 0 when it is not found, and is handed back to the call made through it.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// The size of the buffers of paths and names.
constexpr std::uint32_t kPathBufferSize = 260;
// The id buffer of EnumProcesses: 32768 bytes, 8192 ids of 4 bytes.
constexpr std::uint32_t kProcessIdBufferBytes = 32768;
constexpr std::uint32_t kProcessIdBufferCount = kProcessIdBufferBytes / 4;
// The module buffer of EnumProcessModules, in bytes.
constexpr std::uint32_t kModuleBufferBytes = 32728;
// What CreateToolhelp32Snapshot answers when it fails: INVALID_HANDLE_VALUE.
constexpr std::uintptr_t kInvalidHandle = ~static_cast<std::uintptr_t>(0);

// GetWindowsDirectoryA into a buffer of 260 bytes: its length, 0 on failure.
// `folder` gets the buffer's text, empty on failure.
std::uint32_t GetWindowsFolder(std::string& folder);

// GetShortPathNameA of `path` into a buffer of 260 bytes: its result.
// `shortPath` gets the buffer's text, empty when the call leaves it untouched.
std::uint32_t GetShortPathForm(const std::string& path, std::string& shortPath);

// GetCurrentProcessId.
std::uint32_t OwnProcessId();

// LoadLibraryA: the library's handle, or 0.
std::uintptr_t LoadLibraryNamed(const std::string& name);
// GetProcAddress: the function, or 0 when the library doesn't have it.
std::uintptr_t FindLibraryFunction(std::uintptr_t library, const std::string& name);
// FreeLibrary.
void FreeLibraryHandle(std::uintptr_t library);

// CloseHandle, on a process or a snapshot handle.
void CloseSystemHandle(std::uintptr_t handle);

// OpenProcess: a handle, or 0.
std::uintptr_t OpenProcessHandle(std::uint32_t access, bool inheritHandle,
                                 std::uint32_t processId);

// EnumProcesses, found as "EnumProcesses", with the buffer of 32768 bytes:
// true when it succeeds; `bytesUsed` gets the length word, which is never more
// than the buffer.
bool CallEnumProcesses(std::uintptr_t function, std::uint32_t (&ids)[kProcessIdBufferCount],
                       std::uint32_t& bytesUsed);

// EnumProcessModules, found as "EnumProcessModules", with a module buffer of
// 32728 bytes: true when it succeeds; `firstModule` gets the first handle of
// the buffer, the executable's.
bool CallEnumProcessModules(std::uintptr_t function, std::uintptr_t process,
                            std::uintptr_t& firstModule);

// GetModuleBaseNameA, found as "GetModuleBaseNameA", into `name`, of 260
// bytes: its result. When it fails, `name` keeps what the caller put there.
std::uint32_t CallGetModuleBaseName(std::uintptr_t function, std::uintptr_t process,
                                    std::uintptr_t module, char (&name)[kPathBufferSize]);

// One PROCESSENTRY32, as far as the caller reads it.
struct ProcessSnapshotEntry {
    std::uint32_t size = 0;       // dwSize: set by the caller, as the call leaves it
    std::uint32_t processId = 0;  // th32ProcessID
    std::string exeFile;          // szExeFile, up to its first zero byte, at most 260 bytes
};

// The dwSize of PROCESSENTRY32 in this build, which the caller sets before the
// first entry: 296 in the 32-bit program, more in a 64-bit one.
std::uint32_t ProcessEntrySize();

// CreateToolhelp32Snapshot, found as "CreateToolhelp32Snapshot": a handle, or
// kInvalidHandle.
std::uintptr_t CallCreateToolhelp32Snapshot(std::uintptr_t function, std::uint32_t flags,
                                            std::uint32_t processId);

// Process32First and Process32Next, found under these names, on an entry whose
// dwSize is `entry.size`: true while entries remain. The entry gets the fields
// that the call leaves.
bool CallProcess32First(std::uintptr_t function, std::uintptr_t snapshot,
                        ProcessSnapshotEntry& entry);
bool CallProcess32Next(std::uintptr_t function, std::uintptr_t snapshot,
                       ProcessSnapshotEntry& entry);

}  // namespace platform
