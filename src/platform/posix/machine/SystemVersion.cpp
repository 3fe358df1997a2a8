// The operating system's version on POSIX systems. There is no Windows version
// to report, so the call fails at every size and leaves every field zero. The
// system names itself instead by its distribution's PRETTY_NAME from
// os-release and its kernel's release (uname -r).
#include "platform/SystemVersion.h"

#include <sys/utsname.h>

#include "platform/common/PrintableText.h"
#include "platform/posix/OsRelease.h"

namespace platform {

bool GetVersionEx(std::uint32_t, SystemVersion& version)
{
    version = SystemVersion();
    return false;
}

bool GetSystemRelease(std::string& systemName, std::string& release)
{
    systemName = PrintableText(posix::ReadPrettyName(posix::OsReleasePaths()));
    struct utsname names {};
    release = uname(&names) == 0 ? PrintableText(names.release) : std::string();
    return true;
}

}  // namespace platform
