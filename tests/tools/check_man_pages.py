#!/usr/bin/env python3
"""The manual pages name every option that each program's usage text names.

Usage: check_man_pages.py MAN_DIR BIN_DIR"""
import pathlib
import re
import subprocess
import sys

# Each program, and the arguments that make it print its usage.
PROGRAMS = {"ZORGetInstallLog": [], "ZORRecordEvent": ["-h"], "ZORHistoryReport": ["-h"]}
OPTION = re.compile(r"(?<![\w\\-])-[A-Za-z]+")


def usage_options(program, arguments):
    result = subprocess.run([str(program), *arguments], capture_output=True, text=True, timeout=60)
    return set(OPTION.findall(result.stdout + result.stderr))


def main():
    man_dir, bin_dir = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    failed = False
    for name, arguments in PROGRAMS.items():
        options = usage_options(bin_dir / name, arguments)
        page = (man_dir / f"{name}.1").read_text()
        missing = sorted(o for o in options if "\\" + o not in page)
        if not options or missing:
            print(f"FAIL {name}.1: usage options {sorted(options)}, not in the page: {missing}")
            failed = True
        else:
            print(f"PASS {name}.1: {' '.join(sorted(options))}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
