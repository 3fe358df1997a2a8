// How this process ends when the run-time finds an invalid parameter.
#pragma once

namespace platform {

// Stops the process at once, as the run-time's invalid-parameter handler does:
// no message, no flush of buffered output, no exit handlers, and an exit status
// that is neither 0 nor 1.
[[noreturn]] void StopOnInvalidParameter();

}  // namespace platform
