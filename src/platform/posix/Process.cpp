// How the process stops on an invalid parameter, on POSIX systems: by the
// default action of SIGABRT, which prints nothing, flushes nothing, runs no
// exit handler and ends with a status that is neither 0 nor 1.
#include "platform/Process.h"

#include <signal.h>
#include <unistd.h>

namespace platform {

void StopOnInvalidParameter()
{
    signal(SIGABRT, SIG_DFL);
    sigset_t abortOnly;
    sigemptyset(&abortOnly);
    sigaddset(&abortOnly, SIGABRT);
    sigprocmask(SIG_UNBLOCK, &abortOnly, nullptr);
    raise(SIGABRT);
    _exit(134);
}

}  // namespace platform
