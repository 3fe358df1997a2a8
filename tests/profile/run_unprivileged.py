#!/usr/bin/env python3
"""Runs a unit test program as an unprivileged user when the tests run as
root, so that file permissions bind it; as anyone else it runs as it is.
Fails unless at least one test ran and passed, with none skipped.
Usage: run_unprivileged.py SETPRIV PROGRAM [ARGS...]"""
import os
import subprocess
import sys


def main():
    setpriv, program, *arguments = sys.argv[1:]
    command = [program] + arguments
    if os.geteuid() == 0:
        command = [setpriv, "--reuid=nobody", "--regid=nogroup", "--clear-groups",
                   "--reset-env"] + command
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                         env={**os.environ, "TMPDIR": "/tmp"}, timeout=300)
    output = run.stdout.decode(errors="replace")
    print(output)
    if run.returncode != 0:
        return 1
    if "[  PASSED  ]" not in output or "[  SKIPPED ]" in output:
        print("FAIL: the test didn't run, or was skipped")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
