// The recorder's entry as the one export of ZORRecorder.dll, for installer
// scripts that call a DLL function rather than link a library.
#include "recorder/entry/ZORRecorder.h"

#include "history/CHistoryStore.h"

int __stdcall ZORRecordEvent(int argc, char** argv)
{
    CHistoryStore store;
    return store.Record(argc, argv);
}
