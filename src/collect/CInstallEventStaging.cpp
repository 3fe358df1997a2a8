// Staging: the installer's log, trace and response file of an event are copied
// into the event's folder in the store, so that the archive holds them, and the
// keys are pointed at the copies. Copies never overwrite, so a second run over
// the same history finds its targets in place and changes nothing.
#include <string>

#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "recorder/CInstallEvent.h"

namespace {

// The event's folder, ending in a backslash: below its copy's folder once the
// event has been handed over, directly in the history folder before.
std::string EventFolderOf(const std::string& copyName, const std::string& eventId)
{
    std::string folder = GetHistoryFolder() + "\\";
    if (!copyName.empty())
        folder += copyName + "\\";
    return folder + eventId + "\\";
}

// True if the key is to name the target: the source is there and the target
// isn't. The copy's own result doesn't count; a failed copy still moves the key.
bool StageFile(const std::string& source, const std::string& target)
{
    if (!FileExists(source.c_str()))
        return false;
    if (FileExists(target.c_str()))
        return false;
    platform::CopyFileNoOverwrite(source, target);
    return true;
}

}  // namespace

std::string FileNameOf(std::string path)
{
    const std::string::size_type separator = path.rfind('\\');
    if (separator == std::string::npos)
        return path;
    return path.substr(separator + 1);
}

void CInstallEvent::StageFiles()
{
    const std::string logFile = GetLogFileName();
    const std::string traceFile = GetTraceFile();
    const std::string responseFile = GetResponseFile();
    const std::string copyName = GetCopyName();

    const std::string folder = EventFolderOf(copyName, EventID);
    const std::string logTarget = folder + FileNameOf(logFile);
    const std::string traceTarget = folder + FileNameOf(traceFile);
    const std::string responseTarget = folder + FileNameOf(responseFile);

    if (StageFile(logFile, logTarget))
        SetLogFileName(logTarget);
    if (StageFile(traceFile, traceTarget))
        SetTraceFile(traceTarget);
    if (StageFile(responseFile, responseTarget))
        SetResponseFile(responseTarget);
}
