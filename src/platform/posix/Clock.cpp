#include "platform/Clock.h"

#include <time.h>

#include "platform/posix/PosixFiles.h"

namespace platform {

CalendarTime CurrentUtcTime()
{
    struct timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    struct tm fields = {};
    gmtime_r(&now.tv_sec, &fields);
    return posix::CalendarTimeOf(fields, now.tv_nsec);
}

}  // namespace platform
