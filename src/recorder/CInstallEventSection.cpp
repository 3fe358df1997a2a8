// The second pass of a -start over the event's section, and the keys that an
// -end writes.
#include <string>

#include "history/HistoryPaths.h"
#include "recorder/CInstallEvent.h"
#include "recorder/EventTexts.h"

// Every key gets this call's value, empty or not; the copy stays unknown until
// the -end names it.
void CInstallEvent::WriteEventStart()
{
    SetStartTime(GetTimeStamp());
    SetEndTime("");
    SetProduct(Product);
    SetVersion(Version);
    SetServiceLevel(ServiceLevel);
    SetType(Type);
    SetPath(Path);
    SetAction(Action);
    SetCopyName(texts::kUnknownCopy);
    SetCompleteFlag(texts::kIncomplete);
    SetLogFileName(LogFileName);
    SetTraceFile(TraceFile);
    SetResponseFile(ResponseFile);
    SetCommandLine(CommandLine);
}

// The copy's name and the result belong to the -end alone and are written even
// when empty; the other values of the -start survive unless this call gives new
// ones.
void CInstallEvent::WriteEventEnd()
{
    SetEndTime(GetTimeStamp());
    SetCopyName(CopyName);
    SetCompleteFlag(texts::kComplete);
    if (!Action.empty())
        SetAction(Action);
    SetResult(Result);
    if (!LogFileName.empty())
        SetLogFileName(LogFileName);
    if (!TraceFile.empty())
        SetTraceFile(TraceFile);
    if (!ResponseFile.empty())
        SetResponseFile(ResponseFile);
    if (!Path.empty())
        SetPath(Path);
}
