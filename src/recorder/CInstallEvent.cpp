// An event made from the recorder's argument list, and the order in which its
// call does its work.
#include "recorder/CInstallEvent.h"

#include <string>

#include "history/ConsoleMessages.h"
#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "recorder/CLogger.h"
#include "recorder/EventTexts.h"
#include "recorder/RecorderOptions.h"
#include "zip/PathParts.h"

using texts::kEndMode;
using texts::kLogMessageMode;
using texts::kStartMode;

CInstallEvent::CInstallEvent(int& argc, char** argv)
    : Valid(false), SectionNumber(0), Ini(GetHistoryIniPath())
{
    ReadRecorderOptions(argc, argv, *this);
    Valid = !Mode.empty() && !EventID.empty();
    if (!Valid)
        return;
    EventFolder = GetHistoryFolder() + "\\" + EventID;
    EventLogPath = EventFolder + "\\" + texts::kEventLogName;
    if (Mode == kStartMode) {
        InitializeSection();
        MakeEventFolder();
    }
}

// A folder that can't be made is told, on the line of whatever follows, and the
// event goes on without it. An EventID that would lead out of the history
// folder is refused in the same way, before the disk is asked.
void CInstallEvent::MakeEventFolder()
{
    if (!StaysInsideFolder(EventID)) {
        PrintFailedToCreatePath(EventFolder);
        return;
    }
    if (DirectoryExists(EventFolder.c_str()))
        return;
    if (!platform::CreateFolder(EventFolder))
        PrintFailedToCreatePath(EventFolder);
}

// Each step goes on whatever the step before it achieved; the log is closed
// before the hand-over moves its folder.
void CInstallEvent::Dispatch()
{
    SectionNumber = 1;
    OpenLog();
    if (Mode == kStartMode) {
        WriteEventStart();
        WriteStartBanner();
        WriteSystemInfo();
        WriteSnapshot();
        CLogger::Instance().Close();
    } else if (Mode == kLogMessageMode) {
        WriteLogMessage();
        CLogger::Instance().Close();
    } else if (Mode == kEndMode) {
        WriteEventEnd();
        WriteSnapshot();
        WriteResultBlock();
        WriteEndBanner();
        CLogger::Instance().Close();
        HandOver();
    }
}
