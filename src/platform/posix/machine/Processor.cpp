// The processors on POSIX systems: the processors online, and the numbers that
// Windows gives the architecture this program was built for.
#include "platform/Processor.h"

#include <unistd.h>

namespace platform {

void QueryProcessorInfo(ProcessorInfo& info)
{
    info = ProcessorInfo();
#if defined(__x86_64__)
    info.architecture = kArchitectureAmd64;
    info.level = 6;
    info.processorType = 8664;  // PROCESSOR_AMD_X8664
#elif defined(__i386__)
    info.architecture = kArchitectureIntel;
    info.level = 6;
    info.processorType = 586;  // PROCESSOR_INTEL_PENTIUM
#elif defined(__aarch64__)
    info.architecture = kArchitectureArm64;
    info.level = 0;
    info.processorType = 0;
#else
    info.architecture = kArchitectureUnknown;
#endif
    const long online = sysconf(_SC_NPROCESSORS_ONLN);
    info.processorCount = online > 0 ? static_cast<std::uint32_t>(online) : 1;
}

}  // namespace platform
