// The computer name and the processors, answered from the scripted machine.
#include <cstring>

#include "platform/ComputerName.h"
#include "platform/Processor.h"
#include "platform/scripted/ScriptedMachine.h"

namespace platform {

bool QueryComputerName(char* buffer, std::uint32_t& length)
{
    const scripted::Computer& computer = scripted::CurrentMachine().computer;
    const std::string& name = computer.name;
    if (computer.refusesName)
        return false;
    if (name.size() + 1 > length) {
        length = static_cast<std::uint32_t>(name.size() + 1);
        return false;
    }
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    length = static_cast<std::uint32_t>(name.size());
    return true;
}

void QueryProcessorInfo(ProcessorInfo& info)
{
    info = scripted::CurrentMachine().computer.processor;
}

}  // namespace platform
