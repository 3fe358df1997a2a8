#include "platform/Clock.h"

#include <windows.h>

namespace platform {

CalendarTime CurrentUtcTime()
{
    SYSTEMTIME now;
    GetSystemTime(&now);
    CalendarTime time;
    time.year = now.wYear;
    time.month = now.wMonth;
    time.dayOfWeek = now.wDayOfWeek;
    time.day = now.wDay;
    time.hour = now.wHour;
    time.minute = now.wMinute;
    time.second = now.wSecond;
    time.milliseconds = now.wMilliseconds;
    return time;
}

}  // namespace platform
