// The Windows Installer session that runs one of our custom actions. Only the
// recorder's DLL reaches it, so it has a library of its own, which alone
// links the Windows Installer.
#pragma once

#include <string>

namespace platform {

// The session's handle, as the custom action receives it.
using InstallerSession = unsigned long;
// What a custom action returns to the installer.
using InstallerActionResult = unsigned int;
// The action succeeded: the install goes on.
constexpr InstallerActionResult kInstallerActionSucceeded = 0;

// MsiGetPropertyA(session, name, ...): the property's whole value, however
// long; empty when the property is unset or the call fails.
std::string GetInstallerProperty(InstallerSession session, const std::string& name);

// MsiSetPropertyA(session, name, value): false when the installer refuses it.
bool SetInstallerProperty(InstallerSession session, const std::string& name, const std::string& value);

}  // namespace platform
