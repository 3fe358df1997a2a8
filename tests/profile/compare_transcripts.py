#!/usr/bin/env python3
"""Runs the profile transcript program of the Windows build under the
emulator and requires its transcript to equal, byte for byte, the one that
the Linux build's tests left behind."""
import argparse
import difflib
import pathlib
import shlex
import subprocess
import sys


def windows_path(path):
    """The emulator's name for a path of this machine."""
    return "Z:" + str(pathlib.Path(path).resolve()).replace("/", "\\")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--runner", required=True)
    parser.add_argument("--program", required=True)
    parser.add_argument("--work-dir", required=True)
    parser.add_argument("--transcript", required=True)
    parser.add_argument("--expected", required=True)
    args = parser.parse_args()

    expected_path = pathlib.Path(args.expected)
    if not expected_path.is_file():
        print(f"FAIL: the Linux transcript {expected_path} is missing: build and test the "
              "linux preset first (or set ZOR_PROFILE_LINUX_TRANSCRIPT)")
        return 1

    transcript = pathlib.Path(args.transcript)
    transcript.unlink(missing_ok=True)
    command = shlex.split(args.runner) + [args.program, windows_path(args.work_dir),
                                          windows_path(transcript)]
    # Output goes to a file, not a pipe: processes that the emulator leaves
    # running would hold a pipe open after the program has ended.
    log = transcript.with_suffix(".log")
    with open(log, "wb") as output:
        run = subprocess.run(command, stdout=output, stderr=subprocess.STDOUT, timeout=300)
    if run.returncode != 0 or not transcript.is_file():
        print(log.read_text(errors="replace"))
        print(f"FAIL: the program exited with {run.returncode}")
        return 1

    expected = expected_path.read_bytes()
    actual = transcript.read_bytes()
    if expected == actual:
        print(f"transcripts identical ({len(actual)} bytes)")
        return 0
    diff = difflib.unified_diff(
        expected.decode("latin-1").splitlines(), actual.decode("latin-1").splitlines(),
        "linux engine", "windows calls", lineterm="", n=2)
    for count, line in enumerate(diff):
        if count == 200:
            print("... (diff cut)")
            break
        print(line[:400])
    print("FAIL: the Windows calls and the Linux engine differ")
    return 1


if __name__ == "__main__":
    sys.exit(main())
