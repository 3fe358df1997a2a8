#include "platform/InstallerSession.h"

#include <type_traits>
#include <vector>

#include <windows.h>
#include <msiquery.h>

// The plain types of the custom action's signature are the Windows
// Installer's own, on x86 as on x64.
static_assert(std::is_same<MSIHANDLE, platform::InstallerSession>::value,
              "an installer session is an MSIHANDLE");
static_assert(std::is_same<UINT, platform::InstallerActionResult>::value,
              "a custom action returns a UINT");
static_assert(platform::kInstallerActionSucceeded == ERROR_SUCCESS,
              "success is ERROR_SUCCESS");

namespace platform {

std::string GetInstallerProperty(InstallerSession session, const std::string& name)
{
    // The first call, with an empty buffer, tells the length without its
    // terminator; the value can't change between the two calls, as the
    // session runs this action alone.
    char empty[1] = "";
    DWORD length = 0;
    if (MsiGetPropertyA(session, name.c_str(), empty, &length) != ERROR_MORE_DATA)
        return std::string();
    std::vector<char> value(length + 1);
    length = static_cast<DWORD>(value.size());
    if (MsiGetPropertyA(session, name.c_str(), value.data(), &length) != ERROR_SUCCESS)
        return std::string();
    return std::string(value.data(), length);
}

bool SetInstallerProperty(InstallerSession session, const std::string& name, const std::string& value)
{
    return MsiSetPropertyA(session, name.c_str(), value.c_str()) == ERROR_SUCCESS;
}

}  // namespace platform
