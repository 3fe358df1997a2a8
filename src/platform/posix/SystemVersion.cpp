// The operating system's version on POSIX systems. There is no Windows version
// to report, so the answer is that of a failed call: every field zero.
#include "platform/SystemVersion.h"

namespace platform {

SystemVersion GetSystemVersion()
{
    return SystemVersion();
}

}  // namespace platform
