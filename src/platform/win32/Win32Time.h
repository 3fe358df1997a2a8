// Calendar fields from the system's SYSTEMTIME, shared by the Windows files.
#pragma once

#include <windows.h>

#include "platform/FileSystem.h"

namespace platform {
namespace win32 {

inline CalendarTime CalendarTimeOf(const SYSTEMTIME& fields)
{
    CalendarTime time;
    time.year = fields.wYear;
    time.month = fields.wMonth;
    time.dayOfWeek = fields.wDayOfWeek;
    time.day = fields.wDay;
    time.hour = fields.wHour;
    time.minute = fields.wMinute;
    time.second = fields.wSecond;
    time.milliseconds = fields.wMilliseconds;
    return time;
}

}  // namespace win32
}  // namespace platform
