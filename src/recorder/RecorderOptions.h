// The recorder's option list: which element names which member of an event,
// and the scan of an argument list into an event's members.
#pragma once

#include <array>
#include <string>

#include "recorder/CInstallEvent.h"

// One recognised option: the member that takes its value, and the mode that it
// sets, if it is one of the three mode options. A mode option is named as the
// mode that it sets.
struct RecorderOption {
    const char* name;
    std::string CInstallEvent::*value;
    const char* mode;
};

// The options in the order in which each element is compared with them; the
// first match wins.
extern const std::array<RecorderOption, 16> kRecorderOptions;

// Reads the recorder's argument list into the event's option members and its
// Mode. Element 0 is the caller's name and is skipped; `argv[argc]` is the
// null pointer that ends the list. Options compare without regard to ASCII
// case and each takes the element behind it as its value, whatever it says;
// elements that name no option are passed over one by one. When an option
// comes twice, the last one wins. CommandLine starts empty; the other members
// keep what they held.
void ReadRecorderOptions(int argc, char** argv, CInstallEvent& event);
