#!/usr/bin/env python3
"""Times ZORHistoryReport over archives of the sizes that a busy machine's
history reaches, and over archives made to be huge: the median wall time of
several runs and the peak memory of each workload, against its targets.

The workloads (--workloads, comma-separated; the first four by default):
  events         3 000 completed events with 510 MB of event logs (about
                 170 KB each: a machine with a smaller product inventory, whose
                 software list grows with the updates): peak memory at most
                 64 MB, independent of the number of events
  logs           1 200 completed events with 632 MB of event logs (about 527 KB
                 each): at most 2 s
  message-bomb   one event whose -logmessage is gigabytes of one letter, a
                 zip of about 4.2 MB: memory and time bounded by the report's
                 limits, not by the entry
  process-bomb   one event whose process list after the install is 420 MB
                 of rows, a zip of about 1 MB: the same
  history        200 completed events with 500 KB event logs (--events and
                 --log-kb change it): under 2 s and within 64 MB
  big-logs       60 completed events with 5 MB event logs, more than the
                 report reads ahead of an event: no target
  big-sections   12 completed events whose process, service and group lists
                 hold about 3.8 MB each in every snapshot, just under the
                 report's limits on a section: no target
The archives are kept in the work folder and made again only when missing.

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
Usage: bench/report_benchmark.py [--work DIR] [--runs N] [--workloads LIST] [--events N] [--log-kb N]
                                 [--program EXE]
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


# The product inventory of a machine whose event logs are smaller than the
# full one's (about 250 KB with the fewest software rows): two copies of four
# instances of 20 parameters, 150 services.
SMALL_MACHINE = dict(services=150, copies=2, instances=4, parameters=20)


def machine_for(rng, log_kb):
    """A machine whose event logs come out at about `log_kb` KB: the list of
    installed software, which each snapshot lists whole, makes up the rest."""
    shape = SMALL_MACHINE if log_kb < 250 else {}

    def size(software):
        probe = logtext.make_machine(random.Random(1), software=software, **shape)
        return len(logtext.event_log_text(random.Random(1), event_of(0), probe, probe, messages=30))

    fixed = size(0)
    per_product = (size(200) - fixed) / 200
    return logtext.make_machine(rng, software=max(50, int((log_kb * 1000 - fixed) / per_product)), **shape)


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


def with_big_lists(rng, machine, salt):
    """The machine with process, service and group lists of about 3.8 MB
    each, under the report's limits on a section (4 MB, 100 000 lines); `salt`
    makes the services and the users of every snapshot differ."""
    machine.processes = [[rng.randrange(4, 10 ** 9), ("proc_%06d_" % n).ljust(40, "p") + ".exe"]
                         for n in range(60000)]
    machine.services = [[("Service %06d %d " % (n, salt % 3)).ljust(58, "s"), rng.choice(["Started", "Stopped"])]
                        for n in range(48000)]
    machine.members = [(("group%03d" % (n % 500)).ljust(30), ("user_%06d_" % n).ljust(30, "u") + str(salt))
                       for n in range(52000)]
    return machine


def write_big_sections(path, events):
    """`events` events whose snapshots hold lists of about 3.8 MB each."""
    rng = random.Random(3)
    machine = logtext.make_machine(rng, software=50)
    records = [event_of(index) for index in range(events)]
    ini = ["[History]", "Count=%d" % events]
    for event in records:
        ini += history_section(event)
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr(file_entry("History.ini"), ("\r\n".join(ini) + "\r\n").encode("ascii"))
        for index, event in enumerate(records):
            before = with_big_lists(rng, machine, 2 * index)
            after = with_big_lists(rng, logtext.changed_machine(rng, before, event["copy"]), 2 * index + 1)
            log = logtext.event_log_text(rng, event, before, after, messages=5)
            archive.writestr(file_entry(event["copy"] + "\\" + event["id"] + "\\ZORInstallEvent.Log"), log)
            machine = after


def bomb_event():
    event = event_of(0)
    event["copy"] = "BOMB"
    return event


def write_bomb_log(path, log_head, body_line, body_bytes, log_tail):
    """An archive of one event whose log is `log_head`, then `body_line` over
    and over up to `body_bytes`, then `log_tail`, streamed into the entry."""
    event = bomb_event()
    ini = ["[History]", "Count=1"] + history_section(event)
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr(file_entry("History.ini"), ("\r\n".join(ini) + "\r\n").encode("ascii"))
        entry = file_entry("BOMB\\%s\\ZORInstallEvent.Log" % event["id"])
        with archive.open(entry, "w", force_zip64=True) as log:
            log.write(log_head)
            block = body_line * max(1, (1 << 20) // len(body_line))
            for _ in range(body_bytes // len(block)):
                log.write(block)
            log.write(log_tail)


def write_message_bomb(path):
    """One event whose message is 4.3 GB of "A" in lines of 1 MiB: a zip of about 4.2 MB."""
    rng = random.Random(5)
    machine = logtext.make_machine(rng, software=50)
    event = bomb_event()
    head = "\r\n".join(logtext.start_lines(event, machine)) + "\r\n"
    tail = "\r\n" + "\r\n".join(logtext.end_lines(event, machine)) + "\r\n"
    write_bomb_log(path, head.encode("cp1252"), b"A" * ((1 << 20) - 2) + b"\r\n", 4100 << 20,
                   tail.encode("cp1252"))


def write_process_bomb(path):
    """One event whose process list after the install has 420 MB of rows: a zip of about 1 MB."""
    rng = random.Random(6)
    machine = logtext.make_machine(rng, software=50)
    event = bomb_event()
    head = logtext.start_lines(event, machine) + logtext.end_lines(event, machine)
    heading = [n for n, line in enumerate(head) if line == "3) " + logtext.SECTION_TITLES[2]][-1]
    before, after = head[:heading + 6], head[heading + 6:]
    write_bomb_log(path, ("\r\n".join(before) + "\r\n").encode("cp1252"), b"%-19d%s\r\n" % (4242, b"bomb.exe"),
                   400 << 20, ("\r\n".join(after) + "\r\n").encode("cp1252"))


# name: (what it is, events, event log KB, runs, seconds target, MB target)
WORKLOADS = {
    "events": ("3 000 events, 510 MB of event logs", 3000, 120, 3, None, TARGET_MB),
    "logs": ("1 200 events, 632 MB of event logs", 1200, 501, 3, TARGET_SECONDS, None),
    "message-bomb": ("one event with a 4.3 GB message", 1, 0, 3, None, None),
    "process-bomb": ("one event with a 420 MB process list", 1, 0, 3, None, None),
    "history": ("%d events, %d KB event logs", None, None, None, TARGET_SECONDS, TARGET_MB),
    "big-logs": ("60 events, 5 MB event logs", 60, 5000, 3, None, None),
    "big-sections": ("12 events, 3.8 MB lists in each snapshot", 12, 0, 3, None, None),
}


def program_path(given):
    if given:
        return pathlib.Path(given)
    program = SOURCE / "build" / "linux-release" / "ZORHistoryReport"
    subprocess.run(["cmake", "--preset", "linux-release"], cwd=SOURCE, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", "--preset", "linux-release", "-j1", "--target", "ZORHistoryReport"],
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
        for told in (event["changes"], (event["sincePrevious"] or {}).get("changes")):
            for section in (told or {}).values():
                if section is None:
                    sys.exit("%s: a section was not compared" % event["eventId"])
                changes += sum(len(section[kind]) + section[kind + "LeftOut"]
                               for kind in ("added", "removed", "changed"))
    return changes


def archive_for(work, name, args):
    """The workload's archive, made if it isn't in the work folder yet; its description."""
    what, events, log_kb, _, _, _ = WORKLOADS[name]
    if name == "history":
        events, log_kb = args.events, args.log_kb
        what = what % (events, log_kb)
    archive = work / ("%s-%d-%d.zip" % (name, events, log_kb))
    if not archive.exists():
        began = time.perf_counter()
        partial = archive.with_suffix(".partial")
        if name == "message-bomb":
            write_message_bomb(partial)
        elif name == "process-bomb":
            write_process_bomb(partial)
        elif name == "big-sections":
            write_big_sections(partial, events)
        else:
            event_bytes, install_bytes = write_archive(partial, events, log_kb, "\\")
            print("  %s: %.1f MB of event logs (%.0f KB each on average), %.1f MB of installer logs"
                  % (name, event_bytes / 1e6, event_bytes / 1e3 / events, install_bytes / 1e6))
        partial.rename(archive)
        print("  %s: archive written in %.0f s" % (name, time.perf_counter() - began))
    return archive, what, events


def measure(program, work, name, args):
    """Runs the report over the workload's archive; one row of figures."""
    archive, what, events = archive_for(work, name, args)
    runs = args.runs or WORKLOADS[name][3] or 7
    results = [timed_run(program, archive, work) for _ in range(runs)]
    told = check_report(work / "report.json", events) if name not in ("message-bomb", "process-bomb") else None
    wall, user, system, peak = zip(*results)
    return dict(name=name, what=what, zip_mb=archive.stat().st_size / 1e6, runs=runs,
                median=statistics.median(wall), fastest=min(wall), user=statistics.median(user),
                system=statistics.median(system), peak=max(peak), changes=told,
                html_mb=(work / "report.html").stat().st_size / 1e6,
                json_mb=(work / "report.json").stat().st_size / 1e6)


def verdict(row):
    _, _, _, _, seconds, megabytes = WORKLOADS[row["name"]]
    said = []
    if seconds is not None:
        said.append("under %.0f s: %s" % (seconds, "met" if row["median"] < seconds else "MISSED"))
    if megabytes is not None:
        said.append("within %d MB: %s" % (megabytes, "met" if row["peak"] <= megabytes else "MISSED"))
    return "; ".join(said) or "bounded by the report's limits"


def print_rows(rows, program, load_before):
    print("ZORHistoryReport (%s), load average before the runs: %s" % (program, load_before))
    print("%-14s %-40s %8s %5s %9s %9s %8s %8s %10s %8s %8s  %s"
          % ("workload", "archive", "zip MB", "runs", "median s", "fastest", "user s", "system", "peak MB",
             "HTML MB", "JSON MB", "target"))
    for row in rows:
        print("%-14s %-40s %8.1f %5d %9.3f %9.3f %8.3f %8.3f %10.1f %8.1f %8.1f  %s"
              % (row["name"], row["what"], row["zip_mb"], row["runs"], row["median"], row["fastest"], row["user"],
                 row["system"], row["peak"], row["html_mb"], row["json_mb"], verdict(row)))


def load_average():
    return "%.2f %.2f %.2f" % os.getloadavg()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--work", default=str(SOURCE / "build" / "bench-report"),
                        help="folder for the archives and the reports")
    parser.add_argument("--runs", type=int, help="runs of each workload (by default 3, and 7 of history)")
    parser.add_argument("--workloads", default="events,logs,message-bomb,process-bomb",
                        help="comma-separated: " + ", ".join(WORKLOADS))
    parser.add_argument("--events", type=int, default=200, help="events of the history workload")
    parser.add_argument("--log-kb", type=int, default=500, help="size of each event log of the history workload")
    parser.add_argument("--program", help="a built ZORHistoryReport to time instead of the linux-release one")
    args = parser.parse_args()
    if not os.path.exists("/usr/bin/time"):
        sys.exit("GNU time is needed: scripts/install-deps.sh installs it")
    names = [name for name in args.workloads.split(",") if name]
    unknown = [name for name in names if name not in WORKLOADS]
    if unknown:
        sys.exit("no such workload: %s" % ", ".join(unknown))

    work = pathlib.Path(args.work).resolve()
    work.mkdir(parents=True, exist_ok=True)
    program = program_path(args.program)

    slashes = work / "slashes.zip"
    write_archive(slashes, 3, 20, "/")
    timed_run(program, slashes, work)
    check_report(work / "report.json", 3)
    print("entry names with \"/\": the report found the logs of all 3 events")

    for name in names:
        archive_for(work, name, args)
    load_before = load_average()
    rows = [measure(program, work, name, args) for name in names]
    print_rows(rows, program, load_before)
    return 0


if __name__ == "__main__":
    sys.exit(main())
