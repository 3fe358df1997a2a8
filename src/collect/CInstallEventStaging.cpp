// Staging: the installer's log, trace and response file of an event are copied
// into the event's folder in the store, so that the archive holds them, and the
// keys are pointed at the copies. Copies never overwrite, so a second run over
// the same history finds its targets in place and changes nothing.
#include <string>

#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "recorder/CInstallEvent.h"
#include "zip/PathParts.h"

namespace {

// Where a file of the event is staged, relative to the history folder: in the
// event's folder, below its copy's folder once the event has been handed over,
// directly in the history folder before.
std::string StagedName(const std::string& copyName, const std::string& eventId,
                       const std::string& source)
{
    std::string name;
    if (!copyName.empty())
        name += copyName + "\\";
    return name + eventId + "\\" + FileNameOf(source);
}

std::string StagedPath(const std::string& stagedName)
{
    return GetHistoryFolder() + "\\" + stagedName;
}

// True if the key is to name the staged copy: the source is there and the
// target isn't. The copy's own result doesn't count; a failed copy still moves
// the key. A target that would lie outside the history folder is passed over.
bool StageFile(const std::string& source, const std::string& stagedName)
{
    if (!FileExists(source.c_str()) || !StaysInsideFolder(stagedName))
        return false;
    const std::string target = StagedPath(stagedName);
    if (FileExists(target.c_str()))
        return false;
    platform::CopyFileNoOverwrite(source, target);
    return true;
}

}  // namespace

std::string FileNameOf(std::string path)
{
    const std::string::size_type separator = path.find_last_of(platform::kFileNameSeparators);
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

    const std::string logName = StagedName(copyName, EventID, logFile);
    const std::string traceName = StagedName(copyName, EventID, traceFile);
    const std::string responseName = StagedName(copyName, EventID, responseFile);

    if (StageFile(logFile, logName))
        SetLogFileName(StagedPath(logName));
    if (StageFile(traceFile, traceName))
        SetTraceFile(StagedPath(traceName));
    if (StageFile(responseFile, responseName))
        SetResponseFile(StagedPath(responseName));
}
