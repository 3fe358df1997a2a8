#!/usr/bin/env python3
"""Runs a unit test program as an unprivileged user when the tests run as
root, so that file permissions bind it; as anyone else it runs as it is.
The program is run from a copy in a temporary folder that the unprivileged
user can reach. Fails unless at least one test ran and passed, with none
skipped.
Usage: run_unprivileged.py SETPRIV PROGRAM [ARGS...]"""
import os
import shutil
import subprocess
import sys
import tempfile


def run(command):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300)
    output = result.stdout.decode(errors="replace")
    print(output)
    if result.returncode != 0:
        return 1
    if "[  PASSED  ]" not in output or "[  SKIPPED ]" in output:
        print("FAIL: no test ran, or a test was skipped")
        return 1
    return 0


def main():
    setpriv, program, *arguments = sys.argv[1:]
    if os.geteuid() != 0:
        return run([program] + arguments)
    folder = tempfile.mkdtemp(prefix="zor-unprivileged-")
    try:
        os.chmod(folder, 0o755)
        copy = os.path.join(folder, os.path.basename(program))
        shutil.copy2(program, copy)
        os.chmod(copy, 0o755)
        return run([setpriv, "--reuid=nobody", "--regid=nogroup", "--clear-groups", "--reset-env",
                    copy] + arguments)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
