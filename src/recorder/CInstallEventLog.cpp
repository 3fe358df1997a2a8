// Opening the event log for a call, and the lines of the log that need no
// report of their own: the two banners and a message.
#include <ios>
#include <ostream>
#include <string>

#include "history/HistoryPaths.h"
#include "recorder/CInstallEvent.h"
#include "recorder/CLogger.h"
#include "recorder/EventTexts.h"
#include "zip/PathParts.h"

// A -start begins the log afresh; every other call adds to its end, creating
// the file if the folder is there. The log of an EventID that would lead out
// of the history folder is opened nowhere, as if its folder couldn't be made:
// every line of the call goes nowhere.
bool CInstallEvent::OpenLog()
{
    const std::ios_base::openmode mode =
        Mode == texts::kStartMode ? std::ios_base::out : std::ios_base::app;
    const std::string path = StaysInsideFolder(EventID) ? EventLogPath : std::string();
    CLogger::Instance().Open(path, static_cast<int>(mode));
    return true;
}

// The values are this call's options, as given.
void CInstallEvent::WriteStartBanner()
{
    if (Mode != texts::kStartMode)
        return;
    CLogger& log = CLogger::Instance();
    log << texts::kStartBanner << GetTimeStamp()
        << std::endl;
    log << texts::kBannerEventIdLabel << EventID << std::endl;
    log << texts::kBannerProductLabel << Product << std::endl;
    log << texts::kBannerServiceLevelLabel << ServiceLevel << std::endl;
    log << texts::kBannerCommandLineLabel << CommandLine << std::endl;
}

void CInstallEvent::WriteEndBanner()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << texts::kEndBanner << GetTimeStamp()
        << std::endl;
}

// The message as given: no time, no EventID, no prefix.
void CInstallEvent::WriteLogMessage()
{
    CLogger::Instance() << Message << std::endl;
}
