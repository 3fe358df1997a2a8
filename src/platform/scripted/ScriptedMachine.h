// The scripted machine: the facts that the platform layer would read from the
// machine, set by a test instead. Linked into the tests in place of the native
// implementation of the machine's facts (src/platform/<family>/machine), so
// that every report can be checked for any machine on any platform.
#pragma once

#include <string>

#include "platform/SystemVersion.h"
#include "platform/scripted/ScriptedAccounts.h"
#include "platform/scripted/ScriptedComputer.h"
#include "platform/scripted/ScriptedProcesses.h"
#include "platform/scripted/ScriptedRegistry.h"
#include "platform/scripted/ScriptedServices.h"

namespace platform {
namespace scripted {

struct Machine {
    // Whether "shfolder.dll" with its SHGetFolderPathA export is present.
    bool hasShellFolders = true;
    // The answer for CSIDL_COMMON_APPDATA; empty makes the call fail.
    std::string commonAppData;

    // What GetVersionExA answers, and which sizes of its structure it takes.
    // A 148-byte call gets the fields of the older structure only.
    SystemVersion version;
    bool acceptsExtendedVersion = true;
    bool acceptsVersion = true;
    // What GetSystemRelease answers: nothing, as on Windows, unless a test
    // makes the machine one that names itself, as a Linux system does.
    bool namesItself = false;
    std::string systemName;
    std::string systemRelease;

    Computer computer;
    Accounts accounts;
    Processes processes;
    Services services;
    Registry registry;
};

// The machine that the platform calls answer from, for this process.
Machine& CurrentMachine();

// Puts back a machine with no facts at all.
void ResetMachine();

}  // namespace scripted
}  // namespace platform
