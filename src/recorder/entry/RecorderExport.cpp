// The recorder's entry as the exports of ZORRecorder.dll: one for installer
// scripts that call a DLL function, and two Windows Installer custom actions:
// one that records, and one that names the event.
#include "recorder/entry/ZORRecorder.h"

#include "history/CHistoryStore.h"
#include "platform/InstallerSession.h"
#include "recorder/CommandLineText.h"
#include "recorder/EventIdMaker.h"

// The export list names the x86 symbols ZORRecordEventAction@4 and
// ZORMakeEventIdAction@4: one 4-byte argument.
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

unsigned int __stdcall ZORMakeEventIdAction(unsigned long session)
{
    // An EventID that the package or its command line gives stays; the
    // action, like the recording one, never fails the install.
    try {
        if (platform::GetInstallerProperty(session, "ZOR_EVENT").empty()) {
            platform::SetInstallerProperty(
                session, "ZOR_EVENT",
                NewEventId({platform::GetInstallerProperty(session, "ZOR_EVENT_PREFIX"),
                            platform::GetInstallerProperty(session, "ProductName")}));
        }
    } catch (...) {
    }
    return platform::kInstallerActionSucceeded;
}
