#include "platform/Clock.h"

#include <time.h>

namespace platform {

CalendarTime CurrentUtcTime()
{
    struct timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    struct tm fields = {};
    gmtime_r(&now.tv_sec, &fields);
    CalendarTime time;
    time.year = static_cast<std::uint16_t>(fields.tm_year + 1900);
    time.month = static_cast<std::uint16_t>(fields.tm_mon + 1);
    time.dayOfWeek = static_cast<std::uint16_t>(fields.tm_wday);
    time.day = static_cast<std::uint16_t>(fields.tm_mday);
    time.hour = static_cast<std::uint16_t>(fields.tm_hour);
    time.minute = static_cast<std::uint16_t>(fields.tm_min);
    time.second = static_cast<std::uint16_t>(fields.tm_sec);
    time.milliseconds = static_cast<std::uint16_t>(now.tv_nsec / 1000000);
    return time;
}

}  // namespace platform
