// The processors of the machine, as GetSystemInfo reports them.
#pragma once

#include <cstdint>

namespace platform {

// The processor architectures of SYSTEM_INFO that the system knows by name.
constexpr std::uint16_t kArchitectureIntel = 0;
constexpr std::uint16_t kArchitectureMips = 1;
constexpr std::uint16_t kArchitectureAlpha = 2;
constexpr std::uint16_t kArchitecturePpc = 3;
constexpr std::uint16_t kArchitectureIa64 = 6;
constexpr std::uint16_t kArchitectureAmd64 = 9;
constexpr std::uint16_t kArchitectureIa32OnWin64 = 10;
constexpr std::uint16_t kArchitectureArm64 = 12;
constexpr std::uint16_t kArchitectureUnknown = 0xFFFF;

struct ProcessorInfo {
    std::uint16_t architecture = 0;    // wProcessorArchitecture
    std::uint16_t level = 0;           // wProcessorLevel
    std::uint32_t processorType = 0;   // dwProcessorType
    std::uint32_t processorCount = 0;  // dwNumberOfProcessors
};

// GetSystemInfo, which always fills its structure.
void QueryProcessorInfo(ProcessorInfo& info);

}  // namespace platform
