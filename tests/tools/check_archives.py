#!/usr/bin/env python3
"""Checks every archive that the unit tests kept, with two independent readers:
Python's zipfile (testzip) and Info-ZIP's unzip -t. Fails if none was kept."""
import pathlib
import subprocess
import sys
import zipfile


def main():
    folder = pathlib.Path(sys.argv[1])
    archives = sorted(folder.glob("*.zip")) if folder.is_dir() else []
    if not archives:
        print(f"no archive was kept in {folder}")
        return 1
    failed = 0
    for archive in archives:
        with zipfile.ZipFile(archive) as z:
            bad = z.testzip()
        unzip = subprocess.run(["unzip", "-tqq", str(archive)], capture_output=True, text=True)
        # unzip -t says "No zipfiles found"/exit 1 with warnings for an empty archive
        empty = not zipfile.ZipFile(archive).namelist()
        if bad is not None or (unzip.returncode != 0 and not (empty and unzip.returncode == 1)):
            print(f"BAD {archive.name}: testzip={bad} unzip rc={unzip.returncode} {unzip.stdout}{unzip.stderr}")
            failed += 1
    print(f"{len(archives) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
