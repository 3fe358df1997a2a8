#!/usr/bin/env python3
"""Tells whether this machine runs the x86 build's tests: whether wine64 runs a
32-bit Windows program in its WoW64 mode here.

Usage: x86-probe.py PREFIX PROBE.exe

PROBE.exe is a tiny 32-bit program that prints its token. It is started through
scripts/wine-run.py, as every test starts a Windows program (only the second,
diagnostic start under strace below calls Wine itself, also without address
space randomization). Only two outcomes mean that this
machine can't run 32-bit Windows code:
- Wine's 32-bit Windows modules are missing (scripts/install-deps.sh copies
  them from libwine:i386);
- the 32-bit process is killed by a signal: a kernel that runs 64-bit user code
  only kills it (SIGSEGV) at its first 32-bit instruction. Wine reports that
  through its start path, so the probe is started once more under strace,
  which sees the signal.
Exit status 0: run the x86 suite (when the probe printed no token for another
reason, the suite shows why). Exit status 3: can't, with one line on standard
output that names the reason."""
import os
import pathlib
import re
import subprocess
import sys

TOKEN = "zor-x86-probe"
MODULES = pathlib.Path("/usr/lib/x86_64-linux-gnu/wine/i386-windows")
LAUNCHER = pathlib.Path(__file__).resolve().parent / "wine-run.py"
CANT = 3


def cant(reason):
    print(f"x86 suite not run: this machine can't run 32-bit Windows programs: {reason}")
    return CANT


def killing_signal(prefix, probe):
    """The signal that killed a process of the probe's start, seen by strace, or None."""
    environment = dict(os.environ, WINEPREFIX=prefix, WINEDEBUG="-all")
    traced = subprocess.run(["setarch", "-R", "strace", "-f", "-q", "-e", "trace=none",
                             "wine", probe], env=environment, stdin=subprocess.DEVNULL,
                            capture_output=True, timeout=300)
    found = re.search(rb"\+\+\+ killed by (SIG[A-Z0-9]+)", traced.stderr)
    return found.group(1).decode() if found else None


def main(argv):
    if len(argv) != 3:
        sys.stderr.write("usage: x86-probe.py PREFIX PROBE.exe\n")
        return 2
    prefix, probe = os.path.abspath(argv[1]), argv[2]
    if not (MODULES / "kernel32.dll").is_file():
        return cant(f"Wine's 32-bit Windows modules are missing from {MODULES}")
    started = subprocess.run([sys.executable, str(LAUNCHER), prefix, probe],
                             stdin=subprocess.DEVNULL, capture_output=True, timeout=300)
    output = started.stdout.decode("latin-1")
    if started.returncode < 0:
        return cant(f"the 32-bit probe was killed by signal {-started.returncode}")
    if started.returncode == 0 and TOKEN in output:
        print(f"x86 probe: {output.strip()}")
        return 0
    signal_name = killing_signal(prefix, probe)
    if signal_name:
        return cant(f"the 32-bit probe was killed by {signal_name}")
    print(f"x86 probe: no token (exit code {started.returncode}, output {output.strip()!r}); "
          "the x86 suite runs and shows why")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
