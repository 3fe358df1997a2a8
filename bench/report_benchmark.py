#!/usr/bin/env python3
"""Times ZORHistoryReport over an archive of the size that a busy machine's
history reaches: the median wall time of several runs and the peak memory,
against the targets of 2 seconds and 64 MB.

The archive is synthetic and laid out as `ZORGetInstallLog -f` lays it out:
History.ini and Summary.txt at the top, a folder for each copy and one for
each event below it, entry names relative to the history folder with "\\"
between their parts, and folder entries without data. It holds 200 completed
events spread over five copies in the order they happened, each event folder
with its event log (about 500 KB in the recorder's exact format: start
banner, computer report, the snapshot before the install with hundreds of
software rows, processes and services and the product's copies, instances
and parameters, -logmessage lines, the snapshot after it with a few
differences, the result block and the end banner) and the installer's log.
It is written with Python's zipfile, deflated. One machine goes through all
the events, so that a copy's events also differ from one to the next.

Before timing, a small archive whose entry names use "/" checks that the
report finds the logs by either separator.

The program is the Linux Release build (preset linux-release), built first
if it isn't there. The peak memory comes from GNU time, whose own small
process starts the program.

This is a measurement, not a test: it asserts nothing about time.
Usage: bench/report_benchmark.py [--work DIR] [--runs N] [--events N] [--log-kb N] [--program EXE]
"""
import argparse
import json
import os
import pathlib
import random
import statistics
import subprocess
import sys
import time
import zipfile

import event_log_text as logtext
from archive_benchmark import installer_log

SOURCE = pathlib.Path(__file__).resolve().parent.parent
COPIES = ["COPY1", "COPY2", "COPY3", "COPY4", "COPY5"]
HISTORY = "C:\\ProgramData\\TAQ\\ZORHistory"
TARGET_SECONDS = 2.0
TARGET_MB = 64


def event_of(index):
    copy = COPIES[index % len(COPIES)]
    event_id = "EVT_%05d" % index
    minute = index * 7
    start = "202401%02d %02d:%02d:00" % (1 + minute // 1440 % 28, minute // 60 % 24, minute % 60)
    end = start[:-2] + "41"
    return dict(id=event_id, copy=copy, start=start, end=end, product="ZOR Database Server",
                level="SP%d" % (index % 3), action="Install" if index % 4 else "Upgrade", result="0",
                command="-start %s -Action Install -Product \"ZOR Database Server\" -CopyName %s" % (event_id, copy),
                log="%s\\%s\\%s\\install.log" % (HISTORY, copy, event_id))


def history_section(event):
    folder = "%s\\%s\\%s" % (HISTORY, event["copy"], event["id"])
    keys = [("Event_ID", event["id"]), ("Command_Line", event["command"]), ("Start_Time", event["start"]),
            ("End_Time", event["end"]), ("Action", event["action"]), ("Type", "GUI"), ("Product", event["product"]),
            ("Version", "11.0"), ("Service_Level", event["level"]),
            ("Path", "C:\\Program Files\\ZOR\\" + event["copy"]),
            ("Copy_Name", event["copy"]), ("Complete_Flag", "TRUE"), ("Log_File_Name", folder + "\\install.log"),
            ("Trace_File", ""), ("Response_File", ""), ("Event_Log_File", folder + "\\ZORInstallEvent.Log"),
            ("Result", event["result"])]
    return ["[%s]" % event["id"]] + ["%s=%s" % key for key in keys]


def machine_for(rng, log_kb):
    """A machine whose event logs come out at about `log_kb` KB: the list of
    installed software, which each snapshot lists whole, makes up the rest."""
    def size(software):
        probe = logtext.make_machine(random.Random(1), software=software)
        return len(logtext.event_log_text(random.Random(1), event_of(0), probe, probe, messages=30))

    fixed = size(0)
    per_product = (size(200) - fixed) / 200
    return logtext.make_machine(rng, software=max(50, int((log_kb * 1000 - fixed) / per_product)))


def folder_entry(name):
    info = zipfile.ZipInfo(name, date_time=(2024, 1, 5, 10, 0, 0))
    info.external_attr = 0x10
    return info


def file_entry(name):
    info = zipfile.ZipInfo(name, date_time=(2024, 1, 5, 10, 0, 0))
    info.compress_type = zipfile.ZIP_DEFLATED
    info.external_attr = 0x20
    return info


def write_archive(path, events, log_kb, separator, seed=97):
    """The archive of `events` events; returns the bytes of its event logs and
    of its installer logs."""
    rng = random.Random(seed)
    machine = machine_for(rng, log_kb)
    records = [event_of(index) for index in range(events)]
    ini = ["[History]", "Count=%d" % events]
    for event in records:
        ini += history_section(event)
    event_bytes = install_bytes = 0
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr(file_entry("History.ini"), ("\r\n".join(ini) + "\r\n").encode("ascii"))
        archive.writestr(file_entry("Summary.txt"), b"Overall summary\r\n")
        seen = set()
        for index, event in enumerate(records):
            copy = event["copy"]
            if copy not in seen:
                seen.add(copy)
                archive.writestr(folder_entry(copy), b"")
                archive.writestr(file_entry(copy + separator + "Summary.txt"), b"Copy summary\r\n")
            folder = copy + separator + event["id"]
            after = logtext.changed_machine(rng, machine, copy)
            log = logtext.event_log_text(rng, event, machine, after, messages=30)
            install = installer_log(rng, rng.randrange(20000, 80000))
            archive.writestr(folder_entry(folder), b"")
            archive.writestr(file_entry(folder + separator + "ZORInstallEvent.Log"), log)
            archive.writestr(file_entry(folder + separator + "install.log"), install)
            event_bytes += len(log)
            install_bytes += len(install)
            machine = logtext.machine_between(rng, after, update=index % 10 == 9)
    return event_bytes, install_bytes


def program_path(given):
    if given:
        return pathlib.Path(given)
    program = SOURCE / "build" / "linux-release" / "ZORHistoryReport"
    subprocess.run(["cmake", "--preset", "linux-release"], cwd=SOURCE, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", "--preset", "linux-release", "-j2", "--target", "ZORHistoryReport"],
                   cwd=SOURCE, check=True, stdout=subprocess.DEVNULL)
    return program


def timed_run(program, archive, work):
    """Wall, user and system seconds and peak memory in MB of one report run."""
    times = work / "time.txt"
    command = ["/usr/bin/time", "-f", "%U %S %M", "-o", str(times), str(program), str(archive),
               "-o", str(work / "report.html"), "-json", str(work / "report.json")]
    began = time.perf_counter()
    result = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    elapsed = time.perf_counter() - began
    if result.returncode != 0:
        sys.exit("%s exited with %d: %s" % (program, result.returncode, result.stderr.decode(errors="replace")))
    user, system, peak = times.read_text().split()[-3:]
    return elapsed, float(user), float(system), int(peak) / 1024


def check_report(report_json, events):
    """Every event's log was found and both its snapshots read; returns the number of changes told."""
    report = json.loads(pathlib.Path(report_json).read_text(encoding="utf-8"))
    found = [event for copy in report["copies"] for event in copy["events"]]
    missing = [event["eventId"] for event in found if not event["snapshotBefore"] or not event["snapshotAfter"]]
    if len(found) != events or missing:
        sys.exit("the report read %d of %d events; without both snapshots: %s" % (len(found), events, missing[:5]))
    changes = 0
    for event in found:
        for which in ("changes", "drift"):
            for section in (event[which] or {}).values():
                if section is None:
                    sys.exit("%s: a section was not compared" % event["eventId"])
                changes += len(section["added"]) + len(section["removed"]) + len(section["changed"])
    return changes


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--work", default=str(SOURCE / "build" / "bench-report"),
                        help="folder for the archives and the reports")
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--events", type=int, default=200)
    parser.add_argument("--log-kb", type=int, default=500, help="size of each event log")
    parser.add_argument("--program", help="a built ZORHistoryReport to time instead of the linux-release one")
    args = parser.parse_args()
    if not os.path.exists("/usr/bin/time"):
        sys.exit("GNU time is needed: scripts/install-deps.sh installs it")

    work = pathlib.Path(args.work).resolve()
    work.mkdir(parents=True, exist_ok=True)
    program = program_path(args.program)

    slashes = work / "slashes.zip"
    write_archive(slashes, 3, 20, "/")
    timed_run(program, slashes, work)
    check_report(work / "report.json", 3)
    print("entry names with \"/\": the report found the logs of all 3 events")

    archive = work / "history.zip"
    began = time.perf_counter()
    event_bytes, install_bytes = write_archive(archive, args.events, args.log_kb, "\\")
    print("archive: %d events in %d copies, %.1f MB of event logs (%.0f KB each on average) and %.1f MB of"
          " installer logs, %.1f MB deflated, written in %.0f s"
          % (args.events, len(COPIES), event_bytes / 1e6, event_bytes / 1e3 / args.events, install_bytes / 1e6,
             archive.stat().st_size / 1e6, time.perf_counter() - began))

    runs = [timed_run(program, archive, work) for _ in range(args.runs)]
    changes = check_report(work / "report.json", args.events)
    wall, user, system, peak = zip(*runs)
    median = statistics.median(wall)
    print("ZORHistoryReport, %d runs (%s)" % (args.runs, program))
    print("  median %.3f s   fastest %.3f s   slowest %.3f s   user %.3f s   system %.3f s   peak memory %.1f MB"
          % (median, min(wall), max(wall), statistics.median(user), statistics.median(system), max(peak)))
    print("  report: %d changes told; HTML %.1f MB, JSON %.1f MB"
          % (changes, (work / "report.html").stat().st_size / 1e6, (work / "report.json").stat().st_size / 1e6))
    print("  target: under %.0f s: %s; within %d MB: %s"
          % (TARGET_SECONDS, "met" if median < TARGET_SECONDS else "MISSED", TARGET_MB,
             "met" if max(peak) <= TARGET_MB else "MISSED"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
