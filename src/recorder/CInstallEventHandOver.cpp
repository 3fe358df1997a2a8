// At the end of an event that names its copy, the event folder moves below a
// folder of that copy, so that finished events are grouped by copy.
#include <string>

#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "recorder/CInstallEvent.h"
#include "recorder/EventTexts.h"
#include "zip/PathParts.h"

// Every failure is silent and leaves the event where it is, still valid. Only
// the last level of the copy folder is made, so a name with a separator needs
// its parent to be there; a copy folder made here stays when the move fails.
// A copy name or EventID that would lead out of the history folder fails so
// too, before anything is made or moved.
void CInstallEvent::HandOver()
{
    const std::string copyFolder = GetHistoryFolder() + "\\" + CopyName;
    if (CopyName.empty())
        return;
    if (!StaysInsideFolder(CopyName + "\\" + EventID))
        return;
    const std::string targetFolder = copyFolder + "\\" + EventID;
    if (!DirectoryExists(copyFolder.c_str()) && !platform::CreateFolder(copyFolder))
        return;
    if (!platform::MovePath(EventFolder, targetFolder))
        return;
    SetEventLogFile(targetFolder + "\\" + texts::kEventLogName);
}
