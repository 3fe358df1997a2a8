#!/usr/bin/env python3
"""Times `ZORRecordEvent -start` of the Windows x64 build under Wine, in a
private prefix, first over a registry that holds no copy of ZOR and then over
one that holds 5 copies of V9 and later, each with 20 instances of 20
parameters (and 3 products and a global profile of 5 values). The difference
is what the product inventory costs: both snapshot passes over the copies and
the printing of some 2 000 parameter lines per pass.

The registry is imported with Wine's regedit from an export written here, in
the UTF-16LE form of real exports. Prints the median, the fastest and the
slowest of several runs, and the size of the event log of each kind.

This is a measurement, not a test: it asserts nothing about time.
Usage: bench/inventory_benchmark.py [--program ZORRecordEvent.exe] [--work DIR] [--runs N]
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

SOURCE = pathlib.Path(__file__).resolve().parent.parent
WINE_RUN = SOURCE / "scripts" / "wine-run.py"
COPIES, INSTANCES, PARAMETERS = 5, 20, 20


def export_text():
    """A registry export of COPIES copies of INSTANCES instances of PARAMETERS parameters."""
    root = "HKEY_LOCAL_MACHINE\\SOFTWARE\\TAQ\\ZOR\\InstalledCopies"
    lines = ["Windows Registry Editor Version 5.00", ""]
    for copy in range(1, COPIES + 1):
        key = f"{root}\\BenchCopy{copy}"
        lines += [f"[{key}\\CurrentVersion]", '"Version"="9"', '"Release"="5"',
                  '"Modification"="0"', '"Service Level"="SL1"', ""]
        lines += [f"[{key}\\GLOBAL_PROFILE]"]
        lines += [f'"GlobalParameter{n:02d}"="global value {n}"' for n in range(5)] + [""]
        for product in ("Server", "Client", "Replication"):
            lines += [f"[{key}\\ZOR {product}\\CurrentVersion]", '"Version"="9"', '"Release"="5"',
                      '"Modification"="0"', '"Service Level"="SL1"',
                      f'"ProductCode"="{{{copy:08d}-0000-0000-0000-000000000000}}"',
                      '"Last Modified Date"="20260101"', ""]
        for instance in range(INSTANCES):
            lines += [f"[{key}\\PROFILES\\INSTANCE{instance:02d}]"]
            for n in range(PARAMETERS):
                if n % 2:
                    lines.append(f'"Parameter{n:02d}"=dword:{instance * 100 + n:08x}')
                else:
                    lines.append(f'"Parameter{n:02d}"="C:\\\\ZOR\\\\Copy{copy}\\\\Data{n}"')
            lines.append("")
    return "\r\n".join(lines) + "\r\n"


class Prefix:
    def __init__(self, path):
        self.path = path

    def run(self, *args):
        result = subprocess.run([str(WINE_RUN), str(self.path), *args],
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return result.returncode

    @property
    def store(self):
        return self.path / "drive_c" / "ProgramData" / "TAQ"


def timed_starts(prefix, program, runs, label):
    times, log_size = [], 0
    for run in range(runs):
        event = f"{label}_{run:03d}"
        began = time.perf_counter()
        code = prefix.run(str(program), "-start", event, "-Action", "Install")
        times.append(time.perf_counter() - began)
        if code != 0:
            sys.exit(f"ZORRecordEvent -start {event} exited with {code}")
        log_size = (prefix.store / "ZORHistory" / event / "ZORInstallEvent.Log").stat().st_size
    shutil.rmtree(prefix.store, ignore_errors=True)
    return times, log_size


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", default=str(SOURCE / "build" / "win64" / "ZORRecordEvent.exe"))
    parser.add_argument("--work", default=str(SOURCE / "build" / "bench-inventory"))
    parser.add_argument("--runs", type=int, default=15)
    args = parser.parse_args()
    program = pathlib.Path(args.program).resolve()
    if not program.is_file():
        sys.exit(f"no program at {program}: build the win64 preset first")
    work = pathlib.Path(args.work).resolve()
    work.mkdir(parents=True, exist_ok=True)
    prefix = Prefix(work / "wineprefix")
    prefix.run("reg", "delete", "HKLM\\SOFTWARE\\TAQ", "/f")
    shutil.rmtree(prefix.store, ignore_errors=True)

    empty, empty_size = timed_starts(prefix, program, args.runs, "EMPTY")
    export = work / "inventory.reg"
    export.write_bytes(b"\xff\xfe" + export_text().encode("utf-16-le"))
    if prefix.run("regedit", "/s", "Z:" + str(export).replace("/", "\\")) != 0:
        sys.exit("regedit could not import the registry of the benchmark")
    full, full_size = timed_starts(prefix, program, args.runs, "FULL")
    prefix.run("reg", "delete", "HKLM\\SOFTWARE\\TAQ", "/f")

    print(f"ZORRecordEvent -start under Wine, {args.runs} runs each ({program})")
    for name, times, size in (("no copy of ZOR", empty, empty_size),
                              (f"{COPIES} copies x {INSTANCES} instances x {PARAMETERS} parameters",
                               full, full_size)):
        print(f"  {name:45} median {statistics.median(times) * 1000:7.1f} ms"
              f"   fastest {min(times) * 1000:7.1f} ms   slowest {max(times) * 1000:7.1f} ms"
              f"   event log {size:8d} bytes")


if __name__ == "__main__":
    os.environ.setdefault("WINEDEBUG", "-all")
    main()
