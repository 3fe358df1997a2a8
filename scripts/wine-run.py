#!/usr/bin/env python3
"""Starts a Windows program under wine64 in a private, throw-away prefix: the
one way the tests start a Windows program (CTest's cross-compiling emulator for
test runs and test discovery, the end-to-end scripts, the benchmarks).

Usage: wine-run.py PREFIX PROGRAM [ARGS...]

Under a lock (CTest runs tests in parallel) the first call creates the prefix,
starts a persistent wineserver and lets Wine's background services start, all
with no inherited descriptors: a server or service started by the program's
own `wine` would keep the caller's output pipes open and hang it.

Wine now and then ends a program's start at once, before the program's own
code runs: exit code 1, not one byte on standard output or standard error,
within a few milliseconds. Such a start, and only such a start, is made once
more; every retry is logged, one line each, in PREFIX.retries, which
scripts/test-all.sh counts. Any other outcome is the caller's as it happened:
the program's output is relayed as it comes, its exit code or the signal that
ended it is this launcher's own.
"""
import fcntl
import os
import selectors
import signal
import subprocess
import sys
import time

# A start that ended with the flake's signature within this many seconds is
# made once more. Wine's failed starts end within 10 ms; the quickest of 1 000
# real runs of a Windows program that returns at once took 52 ms here, and the
# quickest run of a program of ours 61 ms (see the README's Wine section).
# The launcher's own test sets another bound (ZOR_WINE_FLAKE_BOUND_MS), so that
# its stand-in for Wine counts as quick however busy the machine is.
FLAKE_BOUND_SECONDS = float(os.environ.get("ZOR_WINE_FLAKE_BOUND_MS", "30")) / 1000
FLAKE_EXIT_CODE = 1

# Once the program has ended, what its descendants still hold of its output
# pipes is read for at most this long.
DRAIN_SECONDS = 10



def quiet(command):
    """Runs a Wine tool with no inherited descriptors; returns its exit code."""
    return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, close_fds=True).returncode


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
    """Relays the program's standard output and error as they come until both
    end; returns how many bytes came."""
    selector = selectors.DefaultSelector()
    selector.register(process.stdout, selectors.EVENT_READ, 1)
    selector.register(process.stderr, selectors.EVENT_READ, 2)
    count = 0
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
            count += len(data)
            write_all(key.data, data)
    selector.close()
    return count


def start(command, forwarded):
    """One start of the program; returns (exit status, bytes of output, seconds)."""
    began = time.monotonic()
    # The program keeps the signal dispositions that Python gives this
    # launcher instead of having them reset: SIGXFSZ stays ignored, so that a
    # write past a file size limit (the disk-full tests set one) fails as on a
    # full disk instead of killing the program; SIGPIPE stays ignored, as
    # Wine itself sets it.
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               restore_signals=False)
    forwarded.append(process)
    try:
        count = relay(process)
        status = process.wait()
    finally:
        forwarded.remove(process)
        process.stdout.close()
        process.stderr.close()
    return status, count, time.monotonic() - began


def log_retry(prefix, seconds, arguments):
    line = "%s %.1f ms: %s\n" % (time.strftime("%Y-%m-%dT%H:%M:%S"), seconds * 1000,
                                 " ".join(arguments))
    fd = os.open(prefix + ".retries", os.O_WRONLY | os.O_APPEND | os.O_CREAT, 0o644)
    try:
        os.write(fd, line.encode("utf-8", "replace"))
    finally:
        os.close(fd)


def is_flake(status, count, seconds):
    return status == FLAKE_EXIT_CODE and count == 0 and seconds < FLAKE_BOUND_SECONDS


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
    command = ["setpriv", "--pdeathsig", "KILL", "wine"] + argv[2:]
    status, count, seconds = start(command, forwarded)
    if is_flake(status, count, seconds):
        log_retry(prefix, seconds, argv[2:])
        status, count, seconds = start(command, forwarded)
    end_as(status)


if __name__ == "__main__":
    main(sys.argv)
