#!/usr/bin/env python3
"""Times the collection of a history store: `ZORGetInstallLog -f <zip>` over
stores of 250, 500 and 1000 events, several runs each, and prints the median
time and the time per event, to show that the run grows linearly with the
number of events.

The store's location is fixed when the program is built, so this script
configures a build of its own (Release, no sanitizers, no tests) whose
machine-wide application data folder is a private folder below the work
folder, and lays down each store there:

  <work>/appdata/TAQ/ZORHistory/History.ini
  <work>/appdata/TAQ/ZORHistory/<Copy_Name>/<EventID>/ZORInstallEvent.Log
  <work>/appdata/TAQ/ZORHistory/<Copy_Name>/<EventID>/install.log

Each event's section holds the seventeen keys of a completed event. Its log
file is already staged in the event's folder, so that a run only reads
History.ini and writes the summaries and the archive.

This is a measurement, not a test: it asserts nothing about time.
Usage: bench/collect_benchmark.py [--work DIR] [--runs N] [--events 250,500,1000]
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

from private_build import SOURCE, build_program

COPIES = ["ZOR_COPY_%d" % n for n in range(1, 6)]
EVENT_LOG_BYTES = 2048


def stored_path(path):
    """A path as the system stores it: the backslash separates."""
    return str(path).replace("/", "\\")


def configure_and_build(work):
    program, appdata = build_program(work, "ZORGetInstallLog")
    return program, appdata / "TAQ" / "ZORHistory"


def event_section(history, index):
    """The section of one completed event, and the folder it lives in."""
    event_id = "EVT_%05d" % index
    copy = COPIES[index % len(COPIES)]
    folder = history / copy / event_id
    keys = [
        ("Event_ID", event_id),
        ("Command_Line", "setup.exe -install -CopyName %s -Version 11.%d" % (copy, index % 7)),
        ("Start_Time", "20240105 10:%02d:%02d" % (index // 60 % 60, index % 60)),
        ("End_Time", "20240105 11:%02d:%02d" % (index // 60 % 60, index % 60)),
        ("Action", "Install"),
        ("Type", "GUI"),
        ("Product", "ZOR Database Server"),
        ("Version", "11.%d" % (index % 7)),
        ("Service_Level", "SP%d" % (index % 3)),
        ("Path", "C:\\Program Files\\ZOR\\%s" % copy),
        ("Copy_Name", copy),
        ("Complete_Flag", "TRUE"),
        ("Log_File_Name", stored_path(folder / "install.log")),
        ("Trace_File", ""),
        ("Response_File", ""),
        ("Event_Log_File", stored_path(folder / "ZORInstallEvent.Log")),
        ("Result", "0"),
    ]
    lines = ["[%s]" % event_id] + ["%s=%s" % (key, value) for key, value in keys]
    return lines, folder


def lay_down_store(history, events):
    if history.exists():
        shutil.rmtree(history)
    history.mkdir(parents=True)
    lines = ["[History]", "Count=%d" % events]
    log_text = ("x" * 63 + "\n") * (EVENT_LOG_BYTES // 64)
    for index in range(events):
        section, folder = event_section(history, index)
        lines += section
        folder.mkdir(parents=True)
        (folder / "ZORInstallEvent.Log").write_text(log_text)
        (folder / "install.log").write_text("installer log of event %d\n" % index)
    (history / "History.ini").write_bytes(("\r\n".join(lines) + "\r\n").encode("ascii"))


def time_runs(program, zip_path, runs):
    times = []
    for _ in range(runs):
        zip_path.unlink(missing_ok=True)
        start = time.perf_counter()
        result = subprocess.run([str(program), "-f", str(zip_path)], stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT)
        times.append(time.perf_counter() - start)
        if result.returncode != 0:
            sys.exit("ZORGetInstallLog failed: " + result.stdout.decode(errors="replace"))
    return times


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--work", default=str(SOURCE / "build" / "bench"),
                        help="folder for the build, the stores and the archives")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--events", default="250,500,1000")
    args = parser.parse_args()

    work = pathlib.Path(args.work).resolve()
    work.mkdir(parents=True, exist_ok=True)
    program, history = configure_and_build(work)
    counts = [int(n) for n in args.events.split(",")]

    print("%8s %12s %12s %16s" % ("events", "median s", "min s", "median ms/event"))
    rows = []
    for events in counts:
        lay_down_store(history, events)
        times = time_runs(program, work / ("history-%d.zip" % events), args.runs)
        median = statistics.median(times)
        rows.append((events, median))
        print("%8d %12.3f %12.3f %16.3f" % (events, median, min(times), 1000 * median / events))
    first_events, first_median = rows[0]
    for events, median in rows[1:]:
        print("%d events take %.2f times as long as %d (%.2f times the events)"
              % (events, median / first_median, first_events, events / first_events))
    return 0


if __name__ == "__main__":
    sys.exit(main())
