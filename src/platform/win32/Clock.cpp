#include "platform/Clock.h"

#include "platform/win32/Win32Time.h"

namespace platform {

CalendarTime CurrentUtcTime()
{
    SYSTEMTIME now;
    GetSystemTime(&now);
    return win32::CalendarTimeOf(now);
}

}  // namespace platform
