// One group of the summary: the events that share a copy name, or a single
// event without one, named after the event.
#pragma once

#include <string>
#include <vector>

#include "recorder/CInstallEvent.h"

struct CopyGroup {
    // The group's key and printed name.
    std::string name;
    // The group's events, in the order of their sections in History.ini.
    std::vector<CInstallEvent> events;
};
