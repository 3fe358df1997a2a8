// The processors on Windows.
#include "platform/Processor.h"

#include <windows.h>

namespace platform {

static_assert(PROCESSOR_ARCHITECTURE_INTEL == kArchitectureIntel, "architecture numbers");
static_assert(PROCESSOR_ARCHITECTURE_AMD64 == kArchitectureAmd64, "architecture numbers");
static_assert(PROCESSOR_ARCHITECTURE_IA32_ON_WIN64 == kArchitectureIa32OnWin64,
              "architecture numbers");

void QueryProcessorInfo(ProcessorInfo& info)
{
    SYSTEM_INFO system;
    ZeroMemory(&system, sizeof system);
    GetSystemInfo(&system);
    info.architecture = system.wProcessorArchitecture;
    info.level = system.wProcessorLevel;
    info.processorType = system.dwProcessorType;
    info.processorCount = system.dwNumberOfProcessors;
}

}  // namespace platform
