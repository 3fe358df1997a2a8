#include "platform/scripted/ScriptedMachine.h"

#include "platform/SpecialFolder.h"
#include "platform/SystemVersion.h"

namespace platform {
namespace scripted {

Machine& CurrentMachine()
{
    static Machine machine;
    return machine;
}

void ResetMachine()
{
    CurrentMachine() = Machine();
}

}  // namespace scripted

std::string LookUpSpecialFolder(int folderId)
{
    const scripted::Machine& machine = scripted::CurrentMachine();
    if (!machine.hasShellFolders || folderId != kFolderCommonAppData)
        return std::string();
    return machine.commonAppData;
}

SystemVersion GetSystemVersion()
{
    return scripted::CurrentMachine().version;
}

}  // namespace platform
