#!/usr/bin/env python3
"""Starts a Windows program under wine64 in a private, throw-away prefix: the
one way the tests start a Windows program (CTest's cross-compiling emulator for
test runs and test discovery, the end-to-end scripts, the benchmarks).

Usage: wine-run.py PREFIX PROGRAM [ARGS...]

Under a lock (CTest runs tests in parallel) the first call creates the prefix,
starts a persistent wineserver and lets Wine's background services start, all
with no inherited descriptors: a server or service started by the program's
own `wine` would keep the caller's output pipes open and hang it.

Every Wine process runs without address space randomization (`setarch -R`).
Debian's wine64 loader is linked at 0x7d000000 and has no preloader to reserve
Windows' fixed addresses, so the kernel puts the loader's heap at a random
place in the gigabyte above it; now and then the heap covers 0x7ffe0000, where
Wine must map the shared user data, and the start ends at once with exit code
1 ("failed to map the shared user data: c0000018", an error that WINEDEBUG=-all
keeps silent). Without randomization the heap starts right above the loader,
48 MB below that address.

The program's output is relayed as it comes; its exit code, or the signal that
ended it, is this launcher's own. A failure of the launcher itself ends it
with exit code 125 and a line on standard error.
"""
import fcntl
import os
import selectors
import signal
import subprocess
import sys
import time

# The exit code of a launcher that failed before or while it ran the program.
LAUNCHER_FAILED = 125

# Once the program has ended, what its descendants still hold of its output
# pipes is read for at most this long.
DRAIN_SECONDS = 10


# Every Wine process starts through this: no address space randomization (see above).
FIXED_ADDRESSES = ["setarch", "-R"]


def quiet(command):
    """Runs a Wine tool with no inherited descriptors; returns its exit code."""
    return subprocess.run(FIXED_ADDRESSES + command, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          close_fds=True).returncode


def prepare_prefix(prefix):
    """Creates the prefix once and makes sure its persistent server runs."""
    os.makedirs(os.path.dirname(prefix) or ".", exist_ok=True)
    with open(prefix + ".lock", "a") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not os.path.isfile(os.path.join(prefix, "system.reg")):
            quiet(["wineboot", "--init"])
            quiet(["wineserver", "-w"])
        # Exits with 2 when the server of this prefix runs already.
        if quiet(["wineserver", "-p"]) == 0:
            quiet(["wine", "cmd.exe", "/c", "exit"])


def write_all(fd, data):
    """Passes output on; a reader that went away no longer gets it."""
    try:
        while data:
            data = data[os.write(fd, data):]
    except OSError:
        pass


def relay(process):
    """Relays the program's standard output and error as they come until both end."""
    selector = selectors.DefaultSelector()
    selector.register(process.stdout, selectors.EVENT_READ, 1)
    selector.register(process.stderr, selectors.EVENT_READ, 2)
    drain_deadline = None
    while selector.get_map():
        if drain_deadline is None and process.poll() is not None:
            drain_deadline = time.monotonic() + DRAIN_SECONDS
        timeout = 0.1 if drain_deadline is None else max(0.0, drain_deadline - time.monotonic())
        events = selector.select(timeout)
        if not events and drain_deadline is not None and time.monotonic() >= drain_deadline:
            break
        for key, _ in events:
            data = os.read(key.fileobj.fileno(), 65536)
            if not data:
                selector.unregister(key.fileobj)
                continue
            write_all(key.data, data)
    selector.close()


def run_program(command, forwarded):
    """Runs the program; returns its exit status (minus the signal that ended it)."""
    # The program keeps the signal dispositions that Python gives this
    # launcher instead of having them reset: SIGXFSZ stays ignored, so that a
    # write past a file size limit (the disk-full tests set one) fails as on a
    # full disk instead of killing the program; SIGPIPE stays ignored, as
    # Wine itself sets it.
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               restore_signals=False)
    forwarded.append(process)
    try:
        relay(process)
        status = process.wait()
    finally:
        forwarded.remove(process)
        process.stdout.close()
        process.stderr.close()
    return status


def forward_signals(forwarded):
    def forward(signum, _frame):
        for process in list(forwarded):
            try:
                process.send_signal(signum)
            except OSError:
                pass
    for signum in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGQUIT):
        signal.signal(signum, forward)


def end_as(status):
    """Ends this launcher as the program ended: with its exit code, or by its signal."""
    sys.stdout.flush()
    if status < 0:
        if -status not in (signal.SIGKILL, signal.SIGSTOP):
            signal.signal(-status, signal.SIG_DFL)
        os.kill(os.getpid(), -status)
    sys.exit(status)


def main(argv):
    if len(argv) < 3:
        sys.stderr.write("usage: wine-run.py PREFIX PROGRAM [ARGS...]\n")
        return 2
    prefix = os.path.abspath(argv[1])
    os.environ.update(WINEPREFIX=prefix, WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml=")
    prepare_prefix(prefix)
    forwarded = []
    forward_signals(forwarded)
    # The program ends with this launcher, whatever ends the launcher (setpriv
    # sets that up without the cost of a Python function run in the child).
    command = FIXED_ADDRESSES + ["setpriv", "--pdeathsig", "KILL", "wine"] + argv[2:]
    return run_program(command, forwarded)


def launch(argv):
    """Runs main; a failure of the launcher itself is told apart from the program's."""
    try:
        status = main(argv)
    except Exception as failure:  # noqa: BLE001 - any failure of the launcher is reported the same way
        sys.stderr.write(f"wine-run.py: {failure!r}\n")
        sys.exit(LAUNCHER_FAILED)
    end_as(status)


if __name__ == "__main__":
    launch(sys.argv)
