#!/usr/bin/env python3
"""Checks what a release holds.

check-release.py zip FILE.zip win32|win64
    The Windows zip: exactly the programs, the DLL, its header, both import
    libraries, the static library with the header of its C++ entry, the
    library's CMake package files and the documentation, below one folder
    named like the zip; the
    import libraries name the DLL's exports as callers of that architecture
    link them.
check-release.py install BUILD_DIR
    `cmake --install` of a Linux build into a fresh folder: exactly the
    programs and their manual pages, the static library, the header of the C++ entry, the library's
    CMake and pkg-config package files and the documentation with copyright
    and changelog.gz, in the usual
    places, its links whole as in the zip."""
import pathlib
import posixpath
import re
import subprocess
import sys
import tempfile
import zipfile

DOCS = ["README.md", "docs/event-log.md", "docs/faults.md", "docs/recording.md",
        "docs/report-json.md", "docs/report-json.schema.json",
        "docs/history-report.png",
        "examples/RecordWithProgram.wxs", "examples/RecordWithDll.wxs", "examples/RecordEvent.nsi",
        "examples/ZORRecord.nsh", "examples/zor-event-id.sh"]
# The static library, the header of its C++ entry and its CMake package files.
LIBRARY_FILES = ["lib/libZORHistoryRecorder.a",
                 "lib/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfig.cmake",
                 "lib/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfigVersion.cmake",
                 "lib/cmake/ZORHistoryRecorder/ZORHistoryRecorderTargets.cmake",
                 "lib/cmake/ZORHistoryRecorder/ZORHistoryRecorderTargets-<config>.cmake",
                 "include/zor/history/CHistoryStore.h"]
WINDOWS_FILES = ["bin/ZORGetInstallLog.exe", "bin/ZORRecordEvent.exe", "bin/ZORHistoryReport.exe",
                 "bin/ZORRecorder.dll",
                 "include/ZORRecorder.h", "lib/ZORRecorder.lib", "lib/libZORRecorder.dll.a"] + LIBRARY_FILES
LINUX_FILES = ["bin/ZORGetInstallLog", "bin/ZORRecordEvent", "bin/ZORHistoryReport",
               "share/man/man1/ZORGetInstallLog.1.gz", "share/man/man1/ZORRecordEvent.1.gz",
               "share/man/man1/ZORHistoryReport.1.gz",
               "lib/pkgconfig/zorhistoryrecorder.pc"] + LIBRARY_FILES
# Beside the documentation on Linux: the Debian copyright file (from LICENSE),
# changelog and the Linux installer examples.
LINUX_DOCS = ["copyright", "changelog.gz",
              "examples/zorserver.postinst", "examples/zorserver.prerm", "examples/zorserver.postrm",
              "examples/install-zorserver.sh"]
# The symbols that a caller's __stdcall declarations ask for.
IMPORTS = {
    "win32": ("i686-w64-mingw32-nm", {"__imp__ZORRecordEvent@8", "__imp__ZORRecordEventAction@4",
                                     "__imp__ZORMakeEventIdAction@4"}),
    "win64": ("x86_64-w64-mingw32-nm", {"__imp_ZORRecordEvent", "__imp_ZORRecordEventAction",
                                       "__imp_ZORMakeEventIdAction"}),
}


def any_config(name):
    """The name of a package file that depends on the build's configuration, for any one."""
    return re.sub(r"Targets-[a-z]+\.cmake$", "Targets-<config>.cmake", name)


def expect_files(actual, expected, where):
    if sorted(actual) != sorted(expected):
        missing = sorted(set(expected) - set(actual))
        extra = sorted(set(actual) - set(expected))
        raise SystemExit(f"FAIL: {where}: missing {missing}, unexpected {extra}")


def expect_links_whole(read, names, where):
    """Each link of the Markdown files among `names` (paths relative to the
    documentation's folder) that isn't a web address or an anchor alone
    names one of `names`. `read(name)` gives a file's text."""
    for name in names:
        if not name.endswith(".md"):
            continue
        for target in re.findall(r"\]\(([^)\s]+)\)", read(name)):
            target = target.split("#", 1)[0]
            if not target or re.match(r"[a-z]+:", target):
                continue
            resolved = posixpath.normpath(posixpath.join(posixpath.dirname(name), target))
            if resolved not in names:
                raise SystemExit(f"FAIL: {where}: {name} links {target}, which the release lacks")


def check_zip(path, arch):
    path = pathlib.Path(path)
    top = path.name[: -len(".zip")] + "/"
    with zipfile.ZipFile(path) as z:
        assert z.testzip() is None, f"bad entry in {path}"
        names = [n for n in z.namelist() if not n.endswith("/")]
        outside = [n for n in names if not n.startswith(top)]
        assert not outside, f"entries outside {top}: {outside}"
        expect_files([any_config(n[len(top):]) for n in names], WINDOWS_FILES + ["doc/" + d for d in DOCS],
                     path)
        expect_links_whole(lambda name: z.read(top + "doc/" + name).decode("utf-8"), DOCS, path)
        with tempfile.TemporaryDirectory() as folder:
            for library in ("lib/ZORRecorder.lib", "lib/libZORRecorder.dll.a"):
                check_import_library(z.extract(top + library, folder), arch)
    print(f"{path}: release complete")


def check_import_library(path, arch):
    nm, wanted = IMPORTS[arch]
    symbols = set(subprocess.run([nm, path], check=True, capture_output=True, text=True)
                  .stdout.split())
    assert wanted <= symbols, f"{path} lacks {sorted(wanted - symbols)}"


def check_install(build_dir):
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run(["cmake", "--install", build_dir, "--prefix", prefix],
                       check=True, capture_output=True)
        root = pathlib.Path(prefix)
        files = [p.relative_to(root).as_posix() for p in root.rglob("*") if p.is_file()]
        # The imported target's file for the build's configuration (-debug, -release).
        files = [any_config(f) for f in files]
        expect_files(files, LINUX_FILES + ["share/doc/zorgetinstalllog/" + d for d in DOCS + LINUX_DOCS],
                     f"cmake --install of {build_dir}")
        docs = root / "share/doc/zorgetinstalllog"
        expect_links_whole(lambda name: (docs / name).read_text(), DOCS, f"cmake --install of {build_dir}")
    print(f"cmake --install of {build_dir}: release complete")


if __name__ == "__main__":
    if sys.argv[1] == "zip":
        check_zip(sys.argv[2], sys.argv[3])
    else:
        check_install(sys.argv[2])
