"""A whole -start of ZORRecordEvent over a store that holds some events,
killed before each of its calls that change a file (SIGKILL injected by
strace): whatever step it dies at, the next call of the recorder finds a
History.ini that is whole, lines of sections and keys and nothing else, with
Count as before or one more, and the store holds nothing but History.ini and
the event folders. The store is the build's own, shared with the end-to-end
tests.

Usage: test_recorder_faults.py --strace STRACE --recorder ZORRecordEvent --appdata DIR --work-dir DIR"""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys

# The calls that change a file, and those that reserve its space or bring it
# to the disk, between which the order of its steps is kept.
CHANGING_CALLS = ("pwrite64", "ftruncate", "linkat", "fallocate", "fdatasync", "fsync")
EARLIER_EVENTS = 20
# Under ptrace the leak checker can't run; the runs here are about the store.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")
LINE = re.compile(rb"\[[^\r\n]*\]|[^\r\n=\[][^\r\n=]*=[^\r\n]*")


def run(command, strace=None, options=()):
    if strace:
        command = [strace, "-qq", "-e", "trace=" + ",".join(CHANGING_CALLS), *options, *command]
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          env=ENVIRONMENT, timeout=120)


def lay_down_store(args, store, saved):
    """The earlier events, recorded once and then put back from a copy."""
    shutil.rmtree(store.parent, ignore_errors=True)
    if saved.exists():
        shutil.copytree(saved, store.parent, symlinks=True)
        return
    pathlib.Path(args.appdata).mkdir(parents=True, exist_ok=True)
    for number in range(EARLIER_EVENTS):
        for options in (["-start", f"E{number}"], ["-end", f"E{number}", "-Result", "0"]):
            assert run([args.recorder, *options]).returncode == 0
    shutil.copytree(store.parent, saved, symlinks=True)


def check_store(recorder, store, what):
    """The store as the next call leaves it: History.ini whole, nothing else."""
    result = run([recorder, "-logmessage", "E0", "-message", "after the fault"])
    assert result.returncode == 0, f"{what}: the next call failed"
    # The store's lock file has a leading dot, like every name the archive passes over.
    names = {name for name in os.listdir(store) if not name.startswith(".")}
    expected = {"History.ini"} | {f"E{number}" for number in range(EARLIER_EVENTS)}
    assert names - expected <= {"NEW"} and expected <= names, f"{what}: the store holds {sorted(names)}"
    text = (store / "History.ini").read_bytes()
    lines = text.split(b"\r\n")
    assert lines[-1] == b"" and all(LINE.fullmatch(line) for line in lines[:-1]), \
        f"{what}: History.ini isn't whole:\n{text[-300:]!r}"
    count = re.search(rb"\[History\]\r\nCount=(\d+)\r\n", text)
    assert count and int(count.group(1)) in (EARLIER_EVENTS, EARLIER_EVENTS + 1), \
        f"{what}: Count is {count and count.group(1)}"


def main():
    parser = argparse.ArgumentParser()
    for option in ("--strace", "--recorder", "--appdata", "--work-dir"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()
    store = pathlib.Path(args.appdata) / "TAQ" / "ZORHistory"
    saved = pathlib.Path(args.work_dir) / "earlier-events"
    shutil.rmtree(args.work_dir, ignore_errors=True)
    pathlib.Path(args.work_dir).mkdir(parents=True)
    lay_down_store(args, store, saved)
    trace = pathlib.Path(args.work_dir) / "trace.txt"
    result = run([args.recorder, "-start", "NEW"], args.strace, ["-o", str(trace)])
    assert result.returncode == 0
    calls = [line.split("(")[0] for line in trace.read_text().splitlines() if "(" in line]
    kills = 0
    for name in CHANGING_CALLS:
        for number in range(1, calls.count(name) + 1):
            lay_down_store(args, store, saved)
            result = run([args.recorder, "-start", "NEW"], args.strace,
                         ["-o", os.devnull, "-e", f"inject={name}:signal=KILL:when={number}"])
            assert result.returncode in (-9, 137), f"{name} #{number}: not killed"
            check_store(args.recorder, store, f"killed before {name} #{number}")
            kills += 1
    shutil.rmtree(store.parent, ignore_errors=True)
    print(f"-start killed at each of its {kills} steps that change a file")
    print("1 passed, 0 failed")


if __name__ == "__main__":
    main()
