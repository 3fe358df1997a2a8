#!/usr/bin/env python3
"""Times the recorder's two calls that walk the whole machine: `ZORRecordEvent
-start` and `ZORRecordEvent -end`, each of which writes the machine snapshot
(and, at -start, the computer report) into the event log. Prints the median,
the fastest and the slowest of several runs of each call. On Linux it also
prints what the flushes of History.ini cost: how many times one call brings
the file to the disk, and each call's median time under strace as it is and
with every flush answered at once (strace's injection), where strace is
installed.

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


def traced(command, *options):
    """`command` under strace, which stops it only at fdatasync and fsync."""
    return ["strace", "-f", "-qq", "--seccomp-bpf", "-e", "trace=fdatasync,fsync", *options, *command]


def flushes_per_call(command):
    """The fdatasync and fsync calls of one run of `command`, counted by strace."""
    result = subprocess.run(traced(command, "-c", "-U", "calls,name", "-o", "/dev/stdout"),
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return sum(int(line.split()[0]) for line in result.stdout.splitlines()
               if line.split()[-1:] in (["fdatasync"], ["fsync"]))


def print_flush_cost(program, runs):
    """What the flushes of History.ini cost a call: its median time under
    strace as it is, and with every flush answered at once without reaching
    the disk; the difference is the flushes' share."""
    if shutil.which("strace") is None:
        print("  (strace is not installed: the flushes are not measured)")
        return
    skipped = ["-e", "inject=fdatasync,fsync:retval=0"]
    print(f"Flushes of History.ini, {runs} runs each under strace")
    for name, end in (("-start", []), ("-end", ["-CopyName", "BENCH"])):
        times = {False: [], True: []}
        for run in range(runs):
            for skip in (False, True):
                event = f"FLUSH_{run:04d}_{int(skip)}"
                if name == "-end":
                    subprocess.run([str(program), "-start", event], stdout=subprocess.DEVNULL)
                times[skip].append(timed(traced([str(program), name, event, *end],
                                                *(skipped if skip else []))))
        flushed, unflushed = (statistics.median(times[skip]) * 1000 for skip in (False, True))
        count = flushes_per_call([str(program), name, f"FLUSH_COUNT{name}"])
        print(f"  {name:7} {count} flushes: median {flushed:7.1f} ms with them, {unflushed:7.1f} ms "
              f"without, {flushed - unflushed:6.1f} ms for the flushes")


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
    print(f"ZORRecordEvent with the full snapshot, {args.runs} runs each ({program})")
    for name, times in (("-start", starts), ("-end", ends)):
        print(f"  {name:7} median {statistics.median(times) * 1000:7.1f} ms"
              f"   fastest {min(times) * 1000:7.1f} ms   slowest {max(times) * 1000:7.1f} ms")
    if store is not None:
        print_flush_cost(program, args.runs)
        shutil.rmtree(store, ignore_errors=True)


if __name__ == "__main__":
    main()
