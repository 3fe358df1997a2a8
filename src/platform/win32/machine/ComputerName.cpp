// The computer name on Windows.
#include "platform/ComputerName.h"

#include <windows.h>

namespace platform {

static_assert(sizeof(DWORD) == sizeof(std::uint32_t), "the length word");

bool QueryComputerName(char* buffer, std::uint32_t& length)
{
    DWORD size = length;
    const BOOL done = GetComputerNameA(buffer, &size);
    length = size;
    return done != FALSE;
}

}  // namespace platform
