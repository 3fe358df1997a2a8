// The scripted machine's computer: its name and its processors.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Processor.h"

namespace platform {
namespace scripted {

struct Computer {
    // The NetBIOS name that GetComputerNameA answers. As with the real call,
    // the name and its terminator must fit the caller's length word.
    std::string name;
    // Makes GetComputerNameA fail whatever the name.
    bool refusesName = false;
    // What GetSystemInfo fills in.
    ProcessorInfo processor;
};

}  // namespace scripted
}  // namespace platform
