// The machine's NetBIOS computer name, as GetComputerNameA reports it.
#pragma once

#include <cstdint>

namespace platform {

// GetComputerNameA(buffer, &length): the caller's buffer holds at least
// `length` bytes, and the name with its terminator must fit in them. True on
// success, with the name and its terminator in `buffer` and in `length` the
// characters written without the terminator. On a failure the buffer is left
// as it was and `length` is the size that the name would need.
bool QueryComputerName(char* buffer, std::uint32_t& length);

}  // namespace platform
