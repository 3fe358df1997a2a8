#!/usr/bin/env python3
"""Times the recorder's two calls that walk the whole machine: `ZORRecordEvent
-start` and `ZORRecordEvent -end`, each of which writes the machine snapshot
(and, at -start, the computer report) into the event log. Prints the median,
the fastest and the slowest of several runs of each call.

The store's location is fixed when the program is built, so this script
configures a Release build of its own (no sanitizers, no tests) whose
machine-wide application data folder is a private folder below the work folder.
With --program it times a given ZORRecordEvent instead (for example the
Windows build under Wine, with --runner "scripts/wine-run.py PREFIX").

This is a measurement, not a test: it asserts nothing about time.
Usage: bench/snapshot_benchmark.py [--work DIR] [--runs N] [--program EXE --runner CMD]
"""
import argparse
import pathlib
import shlex
import shutil
import statistics
import subprocess
import sys
import time

from private_build import SOURCE, build_program



def configure_and_build(work):
    program, appdata = build_program(work, "ZORRecordEvent")
    return program, appdata / "TAQ"


def timed(command):
    began = time.perf_counter()
    result = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    elapsed = time.perf_counter() - began
    if result.returncode != 0:
        sys.exit(f"{command} exited with {result.returncode}")
    return elapsed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--work", default=str(SOURCE / "build" / "bench-snapshot"))
    parser.add_argument("--runs", type=int, default=21)
    parser.add_argument("--program", help="a built ZORRecordEvent to time instead of building one")
    parser.add_argument("--runner", default="", help="command that runs the program (e.g. Wine)")
    args = parser.parse_args()
    work = pathlib.Path(args.work)
    if args.program:
        program, store = pathlib.Path(args.program), None
    else:
        program, store = configure_and_build(work)
    runner = shlex.split(args.runner)
    starts, ends = [], []
    for run in range(args.runs):
        event = f"BENCH_{run:04d}"
        starts.append(timed(runner + [str(program), "-start", event, "-Action", "Install"]))
        ends.append(timed(runner + [str(program), "-end", event, "-CopyName", "BENCH"]))
    if store is not None:
        shutil.rmtree(store, ignore_errors=True)
    print(f"ZORRecordEvent with the full snapshot, {args.runs} runs each ({program})")
    for name, times in (("-start", starts), ("-end", ends)):
        print(f"  {name:7} median {statistics.median(times) * 1000:7.1f} ms"
              f"   fastest {min(times) * 1000:7.1f} ms   slowest {max(times) * 1000:7.1f} ms")


if __name__ == "__main__":
    main()
