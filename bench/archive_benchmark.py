#!/usr/bin/env python3
"""Times the archive run against Info-ZIP's zip and 7-Zip over the same store:
the whole `ZORGetInstallLog -f <zip>` run (deflating on every core), the
archive alone with one deflating thread and with as many as the machine runs
(`zor_archive_pack`, which packs the history folder as -f does), `zip -r -q
<zip> .` and `7z a -tzip -mmt=N -mx=5 <zip> .` in the history folder. Every
repeat runs each program once, in turn, the order reversed from one repeat to
the next; the script prints the median of each, the ratios of the medians to
zip's and 7-Zip's, and each program's user and system time, peak memory and
minor page faults (from GNU time).

The store is synthetic and about 97 MB: 200 completed events in five copies,
each event folder holding its event log and an installer log of
installer-like text (actions, properties, file copies with their sizes and
versions), the installer logs of different sizes, so that what is measured is
reading and deflating text the way a real store asks for it. The store's
location is fixed when the program is built, so this script configures a
Release build of its own (no sanitizers, no tests) whose machine-wide
application data folder is a private folder below the work folder.

With --before REV, the `ZORGetInstallLog -f` of that commit (exported with
`git archive` and built beside the other) runs in every repeat too, so that
the archive with one thread can be set beside the program as it was.

The machine may be shared: each run waits for a moment in which the cores are
nearly idle (--quiet-wait), the table tells the CPU time that other processes
took during the runs, and the load average is printed before and after. A
figure taken while other work waits for the cores says little about the wall
time.

This is a measurement, not a test: it asserts nothing about time.
Usage: bench/archive_benchmark.py [--work DIR] [--runs N] [--events N] [--megabytes N] [--before REV]
"""
import argparse
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import time

from collect_benchmark import event_section
from private_build import SOURCE, build_program

ACTIONS = ["CostInitialize", "FileCost", "CostFinalize", "InstallValidate", "InstallInitialize",
           "ProcessComponents", "RemoveFiles", "InstallFiles", "WriteRegistryValues",
           "RegisterTypeLibraries", "InstallServices", "StartServices", "InstallFinalize"]
PROPERTIES = ["INSTALLDIR", "ZORCOPYNAME", "SERVICELEVEL", "ProductVersion", "ALLUSERS",
              "TARGETDIR", "ODBCDRIVER", "SourceDir", "UILevel", "REBOOT"]
MODULES = ["zorsrv", "zorodbc", "zorcli", "zorutil", "zornet", "zoradmin", "zorrepl", "zorjdbc"]


def installer_line(rng, clock):
    """One line of an installer's log, at a time that moves on."""
    stamp = "%02d:%02d:%02d:%03d" % (10 + clock // 3600000 % 12, clock // 60000 % 60,
                                     clock // 1000 % 60, clock % 1000)
    kind = rng.random()
    if kind < 0.55:
        module = rng.choice(MODULES)
        number = rng.randrange(1, 4000)
        return ("MSI (s) (7C:44) [%s]: Executing op: FileCopy(SourceName=%s%d.dll|%s%d.dll,"
                "SourceCabKey=FILE%d,DestName=%s%d.dll,Attributes=512,FileSize=%d,PerTick=65536,"
                ",VerifyMedia=1,,,,,CheckCRC=0,Version=9.1.%d.%d,Language=1033,InstallMode=58982400,,,,,,,)"
                % (stamp, module, number, module, number, number, module, number,
                   rng.randrange(1000, 9000000), rng.randrange(100), rng.randrange(10000)))
    if kind < 0.75:
        return "MSI (s) (7C:44) [%s]: Property(S): %s = C:\\Program Files\\ZOR\\Copy%d\\%s" % (
            stamp, rng.choice(PROPERTIES), rng.randrange(5), rng.choice(MODULES))
    if kind < 0.9:
        return "Action start %s: %s." % (stamp[:8], rng.choice(ACTIONS))
    return "MSI (s) (7C:44) [%s]: Component: %s%d; Installed: Absent;   Request: Local;   Action: Local" % (
        stamp, rng.choice(MODULES), rng.randrange(4000))


def installer_log(rng, size):
    """About `size` bytes of installer log text."""
    lines = []
    written = 0
    clock = rng.randrange(10 ** 7)
    while written < size:
        clock += rng.randrange(1, 40)
        line = installer_line(rng, clock) + "\r\n"
        lines.append(line)
        written += len(line)
    return "".join(lines).encode("ascii")


def lay_down_store(history, events, megabytes):
    """The store of `events` completed events, about `megabytes` MB in all."""
    if history.exists():
        shutil.rmtree(history)
    history.mkdir(parents=True)
    rng = random.Random(97)
    average = megabytes * 1000 * 1000 // events
    # Installer logs spread evenly from a fifth of their average size to nearly
    # twice it, in a scattered order, so that the store's size is as asked.
    shortest = (average - average // 20) // 5
    longest = 2 * (average - average // 20) - shortest
    lines = ["[History]", "Count=%d" % events]
    total = 0
    for index in range(events):
        section, folder = event_section(history, index)
        lines += section
        folder.mkdir(parents=True)
        event_log = installer_log(rng, average // 20)
        spread = (index * 7919) % events / max(events - 1, 1)
        install_log = installer_log(rng, int(shortest + spread * (longest - shortest)))
        (folder / "ZORInstallEvent.Log").write_bytes(event_log)
        (folder / "install.log").write_bytes(install_log)
        total += len(event_log) + len(install_log)
    (history / "History.ini").write_bytes(("\r\n".join(lines) + "\r\n").encode("ascii"))
    return total


def busy_seconds():
    """CPU seconds that the machine's cores have spent busy since it started."""
    with open("/proc/stat") as stat:
        ticks = [int(field) for field in stat.readline().split()[1:]]
    return (sum(ticks) - ticks[3] - ticks[4]) / os.sysconf("SC_CLK_TCK")


def wait_for_quiet(limit):
    """Waits, at most `limit` seconds, for half a second in which the cores are
    busy less than a tenth of the time: other users' builds share the machine.
    Returns the seconds waited."""
    began = time.monotonic()
    cores = len(os.sched_getaffinity(0))
    while time.monotonic() - began < limit:
        before = busy_seconds()
        time.sleep(0.5)
        if busy_seconds() - before < 0.05 * cores:
            break
    return time.monotonic() - began


def timed_run(command, cwd, work):
    """Runs the command; returns its wall, user and system time in seconds, its
    peak memory in MB, its minor page faults, and the CPU seconds that other
    processes took meanwhile.

    These come from GNU time, whose own small process starts the program: a
    child started by this script would count this script's memory as its own."""
    report = work / "time-report.txt"
    busy = busy_seconds()
    began = time.perf_counter()
    result = subprocess.run(["/usr/bin/time", "-f", "%U %S %M %R", "-o", str(report)] + command, cwd=cwd,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    elapsed = time.perf_counter() - began
    others = max(0.0, busy_seconds() - busy)
    if result.returncode != 0:
        sys.exit(f"{command} exited with {result.returncode}")
    user, system, peak, faults = report.read_text().split()[-4:]
    others = max(0.0, others - float(user) - float(system))
    return elapsed, float(user), float(system), int(peak) / 1024, int(faults), others


def measure_large_file(history, megabytes, command, work):
    """Peak memory of one run over the store with one more, large, installer log."""
    chunk = installer_log(random.Random(1), 1000 * 1000)
    large = history / "large-install.log"
    with open(large, "wb") as out:
        for _ in range(megabytes):
            out.write(chunk)
    archive = command[1]
    archive.unlink(missing_ok=True)
    peak = timed_run(command[0], history, work)[3]
    large.unlink()
    print("with one more installer log of %d MB: peak memory of ZORGetInstallLog -f %.1f MB"
          % (megabytes, peak))


def machine_line():
    """The processor's model and the number of cores that this process may use."""
    model = "unknown processor"
    with open("/proc/cpuinfo") as info:
        for line in info:
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    return "%s, %d cores" % (model, len(os.sched_getaffinity(0)))


def load_line():
    return "load average %.2f %.2f %.2f" % os.getloadavg()


def the_commands(program, packer, history, work, cores):
    """Each program's command line and the archive that it writes."""
    archives = {name: work / (name + ".zip") for name in ("ours", "one", "all", "zip", "7z")}
    return {
        "ZORGetInstallLog -f": ([str(program), "-f", str(archives["ours"])], archives["ours"]),
        "archive, 1 thread": ([str(packer), "1", str(archives["one"]), str(history)], archives["one"]),
        "archive, %d threads" % cores: ([str(packer), str(cores), str(archives["all"]), str(history)],
                                        archives["all"]),
        "zip -r -q": (["zip", "-r", "-q", str(archives["zip"]), "."], archives["zip"]),
        "7z -mmt=%d -mx=5" % cores: (["7z", "a", "-bd", "-tzip", "-mmt=%d" % cores, "-mx=5",
                                      str(archives["7z"]), "."], archives["7z"]),
    }


def build_before(work, revision):
    """The ZORGetInstallLog of an earlier commit, with the same private store."""
    source = work / ("source-" + revision)
    if not source.exists():
        source.mkdir(parents=True)
        archive = subprocess.run(["git", "-C", str(SOURCE), "archive", revision], check=True,
                                 stdout=subprocess.PIPE).stdout
        subprocess.run(["tar", "-x", "-C", str(source)], input=archive, check=True)
    program, _ = build_program(work, "ZORGetInstallLog", source=source, build=work / ("build-" + revision))
    return program


def run_alternately(commands, history, work, runs, quiet_wait):
    """Each repeat runs every command once, in turn; every other repeat in the
    reverse order, so that no program always follows the same one. Each run
    waits for a quiet moment first (at most `quiet_wait` seconds). A first
    round, not counted, reads the store into the page cache and has -f write
    its summaries, which every later run packs too."""
    results = {name: [] for name in commands}
    order = list(commands)
    waited = 0.0
    for repeat in range(-1, runs):
        for name in (order if repeat % 2 == 0 else reversed(order)):
            command, archive = commands[name]
            archive.unlink(missing_ok=True)
            waited += wait_for_quiet(quiet_wait)
            measured = timed_run(command, history, work)
            if repeat >= 0:
                results[name].append(measured)
    print("waited %.0f s in all for quiet moments" % waited)
    return results


def print_table(results):
    """One row for each program; "others s" is the median of the CPU seconds
    that other processes took during its runs, which lengthen its wall time."""
    print("%-22s %9s %9s %9s %8s %8s %8s %9s %8s" % ("program", "median s", "fastest", "slowest", "user s",
                                                     "system s", "peak MB", "minor pf", "others s"))
    medians = {}
    for name, runs in results.items():
        wall, user, system, peak, faults, others = zip(*runs)
        medians[name] = statistics.median(wall)
        print("%-22s %9.3f %9.3f %9.3f %8.3f %8.3f %8.1f %9d %8.2f" % (
            name, medians[name], min(wall), max(wall), statistics.median(user),
            statistics.median(system), max(peak), int(statistics.median(faults)), statistics.median(others)))
    return medians


def print_ratios(medians, results, ours, references):
    """The ratio of the medians, and the median of the ratios within each repeat."""
    for name in ours:
        for reference in references:
            paired = [mine[0] / theirs[0] for mine, theirs in zip(results[name], results[reference])]
            print("%-22s / %-18s %6.3f (median of the paired ratios %.3f)" % (
                name, reference, medians[name] / medians[reference], statistics.median(paired)))


def check_same_archive(commands, one, every, history, work):
    """One thread and all of them must write the same bytes, run back to back."""
    for name in (one, every):
        commands[name][1].unlink(missing_ok=True)
        timed_run(commands[name][0], history, work)
    same = commands[one][1].read_bytes() == commands[every][1].read_bytes()
    print("archives of 1 thread and of all: %s" % ("identical" if same else "DIFFERENT"))
    return same


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--work", default=str(SOURCE / "build" / "bench-archive"),
                        help="folder for the build, the store and the archives")
    parser.add_argument("--runs", type=int, default=7, help="runs of each program")
    parser.add_argument("--events", type=int, default=200)
    parser.add_argument("--megabytes", type=int, default=97,
                        help="logs to lay down; lines run on past each size, so the store comes out a little larger")
    parser.add_argument("--quiet-wait", type=float, default=30,
                        help="seconds that each run waits at most for a quiet moment (0: none)")
    parser.add_argument("--before", metavar="REV",
                        help="also time the ZORGetInstallLog -f of this commit")
    parser.add_argument("--large-file-mb", type=int, default=500,
                        help="size of the one large log of the last run, which shows the peak "
                             "memory whatever the file size (0: no such run)")
    args = parser.parse_args()
    if shutil.which("zip") is None or shutil.which("7z") is None or not os.path.exists("/usr/bin/time"):
        sys.exit("Info-ZIP's zip, 7-Zip and GNU time are needed: scripts/install-deps.sh installs them")

    work = pathlib.Path(args.work).resolve()
    work.mkdir(parents=True, exist_ok=True)
    options = ["-DZOR_BUILD_BENCH_TOOLS=ON"]
    program, appdata = build_program(work, "ZORGetInstallLog", options)
    packer, _ = build_program(work, "zor_archive_pack", options)
    history = appdata / "TAQ" / "ZORHistory"
    total = lay_down_store(history, args.events, args.megabytes)
    print("store: %d events, %d files, %.1f MB of logs" % (args.events, 2 * args.events, total / 1e6))
    cores = len(os.sched_getaffinity(0))
    print("machine: %s; %s" % (machine_line(), load_line()))

    commands = the_commands(program, packer, history, work, cores)
    if args.before:
        before = work / "before.zip"
        commands["-f of " + args.before] = ([str(build_before(work, args.before)), "-f", str(before)], before)
    results = run_alternately(commands, history, work, args.runs, args.quiet_wait)
    print("%d repeats; after them, %s" % (args.runs, load_line()))
    medians = print_table(results)
    names = list(commands)
    print_ratios(medians, results, names[:3], names[3:5])
    if args.before:
        print_ratios(medians, results, names[:3], names[5:])
    for name in names:
        print("archive of %-22s %.2f MB" % (name + ":", commands[name][1].stat().st_size / 1e6))
    same = check_same_archive(commands, names[1], names[2], history, work)
    if args.large_file_mb > 0:
        measure_large_file(history, args.large_file_mb, commands[names[0]], work)
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())
