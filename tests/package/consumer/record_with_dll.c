/* Records an event through ZORRecorder.dll: its arguments go to the recorder
   as the console program's would, and its result is the exit code. */
#include <ZORRecorder.h>

int main(int argc, char** argv)
{
    return ZORRecordEvent(argc, argv);
}
