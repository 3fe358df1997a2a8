/* The exports of ZORRecorder.dll, for C and C++ callers on Windows.

   ZORRecordEvent: argv holds argc elements followed by a null pointer, as a
   program's argument list does; element 0 is skipped. Result: 0 the call was
   carried out, 1 the history store could not be set up, 2 the options don't
   suffice.

   ZORRecordEventAction: a Windows Installer custom action (UINT __stdcall
   F(MSIHANDLE)). It reads the property CustomActionData, splits it into
   arguments as the command line of ZORRecordEvent.exe would be split, records
   them and always returns ERROR_SUCCESS (0), so that the history never fails
   an install.

   ZORMakeEventIdAction: a Windows Installer custom action for the immediate
   sequence. Unless the property ZOR_EVENT is set already, it sets it to a new
   EventID: a short name (the letters, digits, '-' and '_' of the property
   ZOR_EVENT_PREFIX, or else of ProductName, at most 16 of them, or else
   "ZOR"), the local date and time and four random hex digits, e.g.
   ZORServer-20261125-130512-3fa9. It always returns ERROR_SUCCESS. */
#ifndef ZOR_RECORDER_H
#define ZOR_RECORDER_H

#ifdef __cplusplus
extern "C" {
#endif

int __stdcall ZORRecordEvent(int argc, char** argv);
unsigned int __stdcall ZORRecordEventAction(unsigned long session);
unsigned int __stdcall ZORMakeEventIdAction(unsigned long session);

#ifdef __cplusplus
}
#endif

#endif
