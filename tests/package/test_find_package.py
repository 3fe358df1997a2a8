#!/usr/bin/env python3
"""The installed library as another project uses it: `cmake --install` of the
build into a scratch prefix, then a tiny project that finds it with
find_package(ZORHistoryRecorder CONFIG) records an event, and the same source
built with pkg-config's flags for zorhistoryrecorder records another. Both
events go to the store compiled into the library (this build's own), and each
one's section of History.ini is checked."""
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
    result = subprocess.run([str(c) for c in command], capture_output=True, text=True, env=env)
    if result.returncode != 0:
        raise SystemExit(f"FAIL: {' '.join(map(str, command))} exited with {result.returncode}\n"
                         f"{result.stdout}{result.stderr}")
    return result.stdout


def record_and_check(program, store, event):
    copy = f"Copy-{event}"
    run(program, "-start", event, "-Product", "ZOR Server 9", "-Action", "Install")
    run(program, "-logmessage", event, "-message", "linked with the installed library")
    run(program, "-end", event, "-CopyName", copy, "-Result", "Success")
    lines = store_section_lines(store, event)
    for wanted in (f"Event_ID={event}", "Action=Install", "Product=ZOR Server 9",
                   f"Copy_Name={copy}", "Complete_Flag=TRUE", "Result=Success"):
        if wanted not in lines:
            raise SystemExit(f"FAIL: section [{event}] lacks {wanted!r}: {lines}")
    log = store / copy / event / "ZORInstallEvent.Log"
    if "linked with the installed library" not in log.read_text(errors="replace"):
        raise SystemExit(f"FAIL: {log} lacks the event's message")
    print(f"{program.name}: event {event} recorded")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build-dir", required=True)
    parser.add_argument("--libdir", required=True)
    parser.add_argument("--appdata", required=True)
    parser.add_argument("--work-dir", required=True)
    parser.add_argument("--cxx", required=True)
    parser.add_argument("--link-flags", default="")
    args = parser.parse_args()

    work = pathlib.Path(args.work_dir)
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    prefix = work / "prefix"
    store = pathlib.Path(args.appdata) / "TAQ" / "ZORHistory"
    shutil.rmtree(store.parent, ignore_errors=True)
    store.parent.parent.mkdir(parents=True, exist_ok=True)

    run("cmake", "--install", args.build_dir, "--prefix", prefix)
    for name in (f"{args.libdir}/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfig.cmake",
                 f"{args.libdir}/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfigVersion.cmake",
                 f"{args.libdir}/cmake/ZORHistoryRecorder/ZORHistoryRecorderTargets.cmake",
                 f"{args.libdir}/pkgconfig/zorhistoryrecorder.pc",
                 f"{args.libdir}/libZORHistoryRecorder.a",
                 "include/zor/history/CHistoryStore.h"):
        if not (prefix / name).is_file():
            raise SystemExit(f"FAIL: the install lacks {name}")

    # find_package, with nothing but the scratch prefix to find it in.
    build = work / "consumer-build"
    run("cmake", "-S", HERE / "consumer", "-B", build, "-DCMAKE_BUILD_TYPE=Debug",
        f"-DCMAKE_CXX_COMPILER={args.cxx}", f"-DCMAKE_PREFIX_PATH={prefix}",
        f"-DCMAKE_EXE_LINKER_FLAGS={args.link_flags}")
    run("cmake", "--build", build)
    record_and_check(build / "record_with_library", store, "FindPackage-1")

    # pkg-config, from the scratch prefix alone.
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

    count = store_section_lines(store, "History")
    if count != ["Count=2"]:
        raise SystemExit(f"FAIL: section [History] is {count}, not Count=2")
    shutil.rmtree(store.parent, ignore_errors=True)
    print("the installed library: found by find_package and pkg-config, both record")


if __name__ == "__main__":
    sys.exit(main())
