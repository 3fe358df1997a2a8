// An event made from the recorder's argument list, and the order in which its
// call does its work.
#include "recorder/CInstallEvent.h"

#include <string>

#include "history/AsciiText.h"
#include "history/ConsoleMessages.h"
#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "recorder/CLogger.h"
#include "recorder/EventTexts.h"

namespace {

using texts::kEndMode;
using texts::kLogMessageMode;
using texts::kStartMode;

// One recognised option: the member that takes its value, and the mode that it
// sets, if it is one of the three mode options. A mode option is named as the
// mode that it sets.
struct Option {
    const char* name;
    std::string CInstallEvent::*value;
    const char* mode;
};

// Matched in this order; the first match wins.
const Option kOptions[] = {
    {kStartMode, &CInstallEvent::EventID, kStartMode},
    {kEndMode, &CInstallEvent::EventID, kEndMode},
    {kLogMessageMode, &CInstallEvent::EventID, kLogMessageMode},
    {"-Command", &CInstallEvent::CommandLine, nullptr},
    {"-message", &CInstallEvent::Message, nullptr},
    {"-CopyName", &CInstallEvent::CopyName, nullptr},
    {"-Type", &CInstallEvent::Type, nullptr},
    {"-Version", &CInstallEvent::Version, nullptr},
    {"-ServiceLevel", &CInstallEvent::ServiceLevel, nullptr},
    {"-Result", &CInstallEvent::Result, nullptr},
    {"-Product", &CInstallEvent::Product, nullptr},
    {"-Path", &CInstallEvent::Path, nullptr},
    {"-Action", &CInstallEvent::Action, nullptr},
    {"-l", &CInstallEvent::LogFileName, nullptr},
    {"-t", &CInstallEvent::TraceFile, nullptr},
    {"-u", &CInstallEvent::ResponseFile, nullptr},
};

const Option* FindOption(const char* element)
{
    if (element == nullptr)
        return nullptr;
    for (const Option& option : kOptions) {
        if (EqualIgnoringAsciiCase(element, option.name))
            return &option;
    }
    return nullptr;
}

// The element behind an option is its value, whatever it says. Behind an option
// in the last place stands the null pointer that ends the list: an empty value.
std::string ValueAt(char** argv, int index)
{
    const char* value = argv[index];
    return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

CInstallEvent::CInstallEvent(int& argc, char** argv)
    : Valid(false), SectionNumber(0), Ini(GetHistoryIniPath())
{
    ParseOptions(argc, argv);
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

// Element 0 is the caller's name and is skipped. Unknown elements are passed
// over one by one; when an option comes twice, the last one wins.
void CInstallEvent::ParseOptions(int argc, char** argv)
{
    CommandLine.clear();
    int i = 1;
    while (i < argc) {
        const Option* option = FindOption(argv[i]);
        if (option == nullptr) {
            i += 1;
            continue;
        }
        this->*(option->value) = ValueAt(argv, i + 1);
        if (option->mode != nullptr)
            Mode = option->mode;
        i += 2;
    }
}

// A folder that can't be made is told, on the line of whatever follows, and the
// event goes on without it.
void CInstallEvent::MakeEventFolder()
{
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
