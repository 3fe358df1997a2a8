// The special-folder look-up on Windows: SHGetFolderPathA, found by name in
// "shfolder.dll" at run time, so that a machine without it still runs. The
// call through it takes its type from the system's own declaration, so that
// its calling convention is the system's (__stdcall in the 32-bit program).
#include "platform/SpecialFolder.h"

#include <windows.h>
#include <shlobj.h>

namespace platform {

namespace {

using ShellFolderPathCall = decltype(&::SHGetFolderPathA);

// The default path of the folder, not the one it may have been moved to.
constexpr DWORD kFolderDefaultPath = 1;

std::string CallShellFolderPath(FARPROC found, int folderId)
{
    // The call may write a whole MAX_PATH buffer; it gets one, and a zero
    // behind, so that whatever it writes ends in the buffer.
    char buffer[MAX_PATH + 1] = {};
    const auto call = reinterpret_cast<ShellFolderPathCall>(reinterpret_cast<void (*)()>(found));
    call(nullptr, folderId, nullptr, kFolderDefaultPath, buffer);
    return std::string(buffer);
}

}  // namespace

std::string LookUpSpecialFolder(int folderId)
{
    const HMODULE module = LoadLibraryA("shfolder.dll");
    if (module == nullptr)
        return std::string();
    const FARPROC found = GetProcAddress(module, "SHGetFolderPathA");
    std::string folder;
    if (found != nullptr)
        folder = CallShellFolderPath(found, folderId);
    FreeLibrary(module);
    return folder;
}

}  // namespace platform
