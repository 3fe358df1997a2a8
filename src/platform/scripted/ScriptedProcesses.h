// The scripted machine's processes: the Windows folder, the program's own id,
// which libraries load and which functions they have, the processes that the
// process-status library lists, and the entries of the snapshot calls. Every
// call made on them is written down, in order, for the tests to check.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace platform {
namespace scripted {

// One process as the process-status library sees it.
struct ScriptedProcess {
    std::uint32_t id = 0;
    bool opens = true;        // OpenProcess gives a handle
    bool hasModules = true;   // EnumProcessModules succeeds
    bool nameFails = false;   // GetModuleBaseNameA fails and leaves its buffer
    std::string baseName;     // what GetModuleBaseNameA writes, cut to its buffer
};

// One PROCESSENTRY32 as the snapshot calls give it.
struct ScriptedSnapshotEntry {
    std::uint32_t size = 296;   // dwSize
    std::uint32_t processId = 0;
    std::string exeFile;        // szExeFile, cut to its 260 bytes with the zero
};

struct Processes {
    // GetWindowsDirectoryA's answer; empty makes it fail.
    std::string windowsFolder = "C:\\WINDOWS";
    // GetShortPathNameA's answer; empty makes it fail.
    std::string shortWindowsFolder = "C:\\WINDOWS";
    std::uint32_t ownId = 4242;

    // Library names (as the caller spells them) that LoadLibraryA doesn't find.
    std::set<std::string> missingLibraries;
    // Function names that GetProcAddress doesn't find, in any library.
    std::set<std::string> missingFunctions;

    bool enumProcessesFails = false;
    // In the order EnumProcesses gives them; beyond 8192 they aren't seen.
    std::vector<ScriptedProcess> processes;

    bool snapshotFails = false;
    std::vector<ScriptedSnapshotEntry> snapshotEntries;

    // Each call made, as its name and arguments, e.g. "OpenProcess 0x410 FALSE 8"
    // and "CloseHandle process 8"; processes are named by their id.
    std::vector<std::string> calls;

    // The state of the snapshot calls: the next entry to give.
    std::size_t nextSnapshotEntry = 0;
};

}  // namespace scripted
}  // namespace platform
