#!/usr/bin/env python3
"""The installed library as another project uses it: `cmake --install` of the
build into a scratch prefix, then a tiny project that finds it with
find_package(ZORHistoryRecorder CONFIG) records an event through
ZOR::HistoryRecorder. On Linux the same source built with pkg-config's flags
for zorhistoryrecorder records another; on Windows (cross-compiled with the
build's toolchain file, run by its launcher) a C program records one through
ZOR::Recorder, ZORRecorder.dll's import library. The events go to the store
compiled into the library (this build's own), and each one's section of
History.ini is checked."""
import argparse
import os
import pathlib
import shlex
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
from e2e_support import store_section_lines  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent


def run(*command, env=None):
    result = subprocess.run([str(c) for c in command], capture_output=True, text=True, env=env,
                            timeout=300)
    if result.returncode != 0:
        raise SystemExit(f"FAIL: {' '.join(map(str, command))} exited with {result.returncode}\n"
                         f"{result.stdout}{result.stderr}")
    return result.stdout


def record_and_check(program, store, event, runner=()):
    copy = f"Copy-{event}"
    run(*runner, program, "-start", event, "-Product", "ZOR Server 9", "-Action", "Install")
    run(*runner, program, "-logmessage", event, "-message", "linked with the installed library")
    run(*runner, program, "-end", event, "-CopyName", copy, "-Result", "Success")
    lines = store_section_lines(store, event)
    for wanted in (f"Event_ID={event}", "Action=Install", "Product=ZOR Server 9",
                   f"Copy_Name={copy}", "Complete_Flag=TRUE", "Result=Success"):
        if wanted not in lines:
            raise SystemExit(f"FAIL: section [{event}] lacks {wanted!r}: {lines}")
    log = store / copy / event / "ZORInstallEvent.Log"
    if "linked with the installed library" not in log.read_text(errors="replace"):
        raise SystemExit(f"FAIL: {log} lacks the event's message")
    print(f"{program.name}: event {event} recorded")


# What the install holds for another project, on every build and on each.
PACKAGE_FILES = ["{libdir}/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfig.cmake",
                 "{libdir}/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfigVersion.cmake",
                 "{libdir}/cmake/ZORHistoryRecorder/ZORHistoryRecorderTargets.cmake",
                 "{libdir}/libZORHistoryRecorder.a",
                 "include/zor/history/CHistoryStore.h"]
LINUX_FILES = ["{libdir}/pkgconfig/zorhistoryrecorder.pc"]
WINDOWS_FILES = ["{libdir}/libZORRecorder.dll.a", "bin/ZORRecorder.dll", "include/ZORRecorder.h"]


def check_installed(prefix, libdir, windows):
    for name in PACKAGE_FILES + (WINDOWS_FILES if windows else LINUX_FILES):
        name = name.format(libdir=libdir)
        if not (prefix / name).is_file():
            raise SystemExit(f"FAIL: the install lacks {name}")


def build_consumer(args, prefix, build):
    """The consumer project, with nothing but the scratch prefix to find the
    package in (a cross build names the package's folder: its toolchain looks
    for packages below the MinGW root only)."""
    options = [f"-DCMAKE_PREFIX_PATH={prefix}",
               f"-DZORHistoryRecorder_DIR={prefix / args.libdir / 'cmake' / 'ZORHistoryRecorder'}",
               f"-DCMAKE_EXE_LINKER_FLAGS={args.link_flags}"]
    if args.toolchain:
        options.append(f"-DCMAKE_TOOLCHAIN_FILE={args.toolchain}")
    else:
        options += [f"-DCMAKE_CXX_COMPILER={args.cxx}", f"-DCMAKE_C_COMPILER={args.cc}"]
    run("cmake", "-S", HERE / "consumer", "-B", build, "-DCMAKE_BUILD_TYPE=Debug", *options)
    run("cmake", "--build", build)


def check_pkg_config(args, prefix, work, store):
    """The same source built with pkg-config's flags, from the scratch prefix alone."""
    env = dict(os.environ, PKG_CONFIG_PATH=str(prefix / args.libdir / "pkgconfig"))
    env.pop("PKG_CONFIG_LIBDIR", None)
    flags = shlex.split(run("pkg-config", "--cflags", "--libs", "zorhistoryrecorder", env=env))
    includes = {os.path.realpath(f[2:]) for f in flags if f.startswith("-I")}
    libdirs = {os.path.realpath(f[2:]) for f in flags if f.startswith("-L")}
    for wanted, found, what in ((os.path.realpath(prefix / "include"), includes, "-I"),
                                (os.path.realpath(prefix / args.libdir), libdirs, "-L")):
        if wanted not in found:
            raise SystemExit(f"FAIL: pkg-config gives no {what}{wanted}: {flags}")
    for library in ("-lZORHistoryRecorder", "-lminizip", "-lz"):
        if library not in flags:
            raise SystemExit(f"FAIL: pkg-config gives no {library}: {flags}")
    program = work / "record_with_pkg_config"
    run(args.cxx, "-std=c++17", HERE / "consumer" / "record_with_library.cpp", "-o", program,
        *flags, *shlex.split(args.link_flags))
    record_and_check(program, store, "PkgConfig-1")


def check_dll_import(prefix, build, store, runner):
    """The C program beside the DLL, as an installer ships them."""
    shutil.copy2(prefix / "bin" / "ZORRecorder.dll", build)
    record_and_check(build / "record_with_dll.exe", store, "DllImport-1", runner)


def main():
    parser = argparse.ArgumentParser()
    for option in ("--build-dir", "--libdir", "--appdata", "--work-dir"):
        parser.add_argument(option, required=True)
    for option in ("--cxx", "--cc", "--link-flags", "--toolchain", "--runner", "--exe-suffix"):
        parser.add_argument(option, default="")
    args = parser.parse_args()
    windows = args.exe_suffix == ".exe"
    runner = shlex.split(args.runner)

    work = pathlib.Path(args.work_dir)
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    prefix = work / "prefix"
    store = pathlib.Path(args.appdata) / "TAQ" / "ZORHistory"
    shutil.rmtree(store.parent, ignore_errors=True)
    store.parent.parent.mkdir(parents=True, exist_ok=True)

    run("cmake", "--install", args.build_dir, "--prefix", prefix)
    check_installed(prefix, args.libdir, windows)
    build = work / "consumer-build"
    build_consumer(args, prefix, build)
    record_and_check(build / f"record_with_library{args.exe_suffix}", store, "FindPackage-1", runner)
    if windows:
        check_dll_import(prefix, build, store, runner)
    else:
        check_pkg_config(args, prefix, work, store)

    count = store_section_lines(store, "History")
    if count != ["Count=2"]:
        raise SystemExit(f"FAIL: section [History] is {count}, not Count=2")
    shutil.rmtree(store.parent, ignore_errors=True)
    print("the installed library: found by find_package, and both ways record")


if __name__ == "__main__":
    sys.exit(main())
