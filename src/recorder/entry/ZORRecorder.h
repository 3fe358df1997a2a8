/* The export of ZORRecorder.dll, for C and C++ callers on Windows.
   argv holds argc elements followed by a null pointer, as a program's argument
   list does; element 0 is skipped. Result: 0 the call was carried out, 1 the
   history store could not be set up, 2 the options don't suffice. */
#ifndef ZOR_RECORDER_H
#define ZOR_RECORDER_H

#ifdef __cplusplus
extern "C" {
#endif

int __stdcall ZORRecordEvent(int argc, char** argv);

#ifdef __cplusplus
}
#endif

#endif
