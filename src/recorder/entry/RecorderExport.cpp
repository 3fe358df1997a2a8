// The recorder's entry as the exports of ZORRecorder.dll: one for installer
// scripts that call a DLL function, one for Windows Installer custom actions.
#include "recorder/entry/ZORRecorder.h"

#include "history/CHistoryStore.h"
#include "platform/InstallerSession.h"
#include "recorder/CommandLineText.h"

// The export list names the x86 symbol ZORRecordEventAction@4: one 4-byte
// argument.
static_assert(sizeof(platform::InstallerSession) == 4, "the session handle takes 4 bytes");

int __stdcall ZORRecordEvent(int argc, char** argv)
{
    CHistoryStore store;
    return store.Record(argc, argv);
}

unsigned int __stdcall ZORRecordEventAction(unsigned long session)
{
    // A history that can't be written must never fail or roll back the
    // install: whatever the call meets, even an exception, the action succeeds.
    try {
        RecordCommandLine("ZORRecorder.dll",
                          platform::GetInstallerProperty(session, "CustomActionData"));
    } catch (...) {
    }
    return platform::kInstallerActionSucceeded;
}
