// The scripted machine: the facts that the platform layer would read from the
// machine, set by a test instead. Linked into the tests in place of the native
// implementation of SpecialFolder.h and SystemVersion.h, so that every report
// can be checked for any machine on any platform.
#pragma once

#include <string>

#include "platform/SystemVersion.h"

namespace platform {
namespace scripted {

struct Machine {
    // Whether "shfolder.dll" with its SHGetFolderPathA export is present.
    bool hasShellFolders = true;
    // The answer for CSIDL_COMMON_APPDATA; empty makes the call fail.
    std::string commonAppData;
    SystemVersion version;
};

// The machine that the platform calls answer from, for this process.
Machine& CurrentMachine();

// Puts back a machine with no facts at all.
void ResetMachine();

}  // namespace scripted
}  // namespace platform
