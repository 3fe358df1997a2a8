// How the process stops on an invalid parameter, on Windows: as the run-time's
// own handler ends it, at once and with STATUS_STACK_BUFFER_OVERRUN, printing
// nothing and flushing nothing.
#include "platform/Process.h"

#include <windows.h>

namespace platform {

namespace {

constexpr UINT kInvalidParameterStatus = 0xC0000409;

}  // namespace

void StopOnInvalidParameter()
{
    TerminateProcess(GetCurrentProcess(), kInvalidParameterStatus);
    ExitProcess(kInvalidParameterStatus);
}

}  // namespace platform
