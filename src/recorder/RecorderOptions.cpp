#include "recorder/RecorderOptions.h"

#include <string>

#include "history/AsciiText.h"
#include "recorder/EventTexts.h"

using texts::kEndMode;
using texts::kLogMessageMode;
using texts::kStartMode;

const std::array<RecorderOption, 16> kRecorderOptions = {{
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
}};

namespace {

const RecorderOption* FindOption(const char* element)
{
    if (element == nullptr)
        return nullptr;
    for (const RecorderOption& option : kRecorderOptions) {
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

void ReadRecorderOptions(int argc, char** argv, CInstallEvent& event)
{
    event.CommandLine.clear();
    int i = 1;
    while (i < argc) {
        const RecorderOption* option = FindOption(argv[i]);
        if (option == nullptr) {
            i += 1;
            continue;
        }
        event.*(option->value) = ValueAt(argv, i + 1);
        if (option->mode != nullptr)
            event.Mode = option->mode;
        i += 2;
    }
}
