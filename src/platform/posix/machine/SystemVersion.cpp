// The operating system's version on POSIX systems. There is no Windows version
// to report, so the call fails at every size and leaves every field zero.
#include "platform/SystemVersion.h"

namespace platform {

bool GetVersionEx(std::uint32_t, SystemVersion& version)
{
    version = SystemVersion();
    return false;
}

}  // namespace platform
