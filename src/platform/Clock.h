// The system clock, in the system's terms.
#pragma once

#include "platform/FileSystem.h"

namespace platform {

// GetSystemTime: the current moment as UTC calendar fields.
CalendarTime CurrentUtcTime();

}  // namespace platform
