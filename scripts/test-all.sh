#!/bin/bash
# Sets up a fresh Debian 12 machine, builds all three targets and runs every
# test: Linux native (with ASan and UBSan), Windows x64 under wine64, and the
# Windows x86 build under wine64's WoW64 mode where this machine runs 32-bit
# code (scripts/x86-probe.py tells; where it can't, one line says why, and the
# x86 tests that start no Windows program still run). The fuzz targets are
# built with clang and each runs for a bounded time (ZOR_FUZZ_SECONDS, 30 s
# each); scripts/fuzz.sh runs them for long. Last, the Linux release build's
# Debian package is made and checked.
#
# It ends, pass or fail, with the time that each stage took.
set -euo pipefail
cd "$(dirname "$0")/.."

stage_times=()
current_stage=""
stage_began=0
x86_not_run=""
# stage NAME COMMAND...: runs one stage and keeps its time.
stage() {
    current_stage="$1"
    stage_began=$SECONDS
    shift
    "$@"
    stage_times+=("$current_stage $((SECONDS - stage_began)) s")
    current_stage=""
}

report_stages() {
    local status=$? line="" time
    # The report is made whatever went wrong: no failure here ends it early.
    set +e +o pipefail
    if [ -n "$current_stage" ]; then
        stage_times+=("$current_stage failed after $((SECONDS - stage_began)) s")
    fi
    echo
    for time in "${stage_times[@]}"; do
        line+="${line:+, }$time"
    done
    echo "Stage times: ${line:-none} (total $SECONDS s)"
    if [ -n "$x86_not_run" ]; then
        echo "$x86_not_run"
    fi
    exit $status
}
trap report_stages EXIT

install_deps() {
    if [ "$(id -u)" -eq 0 ]; then
        scripts/install-deps.sh
    else
        sudo scripts/install-deps.sh
    fi
}
# configure_and_build PRESET
configure_and_build() {
    cmake --preset "$1"
    cmake --build --preset "$1"
}

# Whether this machine runs the x86 build's programs: the probe, built first.
# Where it can't, the reason is kept for the closing lines, and the x86 build's
# tests are built but only those that start no Windows program are listed.
x86_probe() {
    local status=0
    cmake --preset win32
    cmake --build --preset win32 --target x86_probe
    x86_not_run="$(scripts/x86-probe.py build/win32/wineprefix build/win32/tests/windows/x86_probe.exe)" || status=$?
    echo "$x86_not_run"
    case $status in
        0) x86_not_run=""; cmake --preset win32 -DZOR_RUN_BUILT_PROGRAMS=ON ;;
        3) cmake --preset win32 -DZOR_RUN_BUILT_PROGRAMS=OFF ;;
        *) return 1 ;;
    esac
}

x86_tests() {
    if [ -z "$x86_not_run" ]; then
        ctest --preset win32
    else
        ctest --preset win32-static
    fi
}

# The x64 and x86 suites side by side. Each has its own prefix and store and
# runs its end-to-end tests one at a time (they share that store), waiting on
# Wine far more than on a core, so the two chains overlap. Each suite's output
# is shown whole once both have ended; either one's failure fails the stage.
windows_tests() {
    local logs pid64 pid32 status64=0 status32=0
    logs="$(mktemp -d)"
    ctest --preset win64 > "$logs/win64" 2>&1 &
    pid64=$!
    x86_tests > "$logs/win32" 2>&1 &
    pid32=$!
    wait "$pid64" || status64=$?
    wait "$pid32" || status32=$?
    echo "=== win64 tests (exit $status64)"
    cat "$logs/win64"
    echo "=== win32 tests (exit $status32)"
    cat "$logs/win32"
    rm -rf "$logs"
    [ "$status64" -eq 0 ] && [ "$status32" -eq 0 ]
}

# The release zips of both Windows builds, the binaries' formats and resources,
# and the NSIS example.
release_checks() {
    version="$(sed -n 's/^project(ZORGetInstallLog VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)"
    for arch in win32 win64; do
        cmake --build --preset "$arch" --target package
        python3 scripts/check-release.py zip "build/$arch/ZORGetInstallLog-$version-$arch.zip" "$arch"
    done
    for program in ZORGetInstallLog.exe ZORRecordEvent.exe ZORHistoryReport.exe ZORRecorder.dll; do
        scripts/check-windows-binary.sh "build/win32/$program" PE32 Intel
        scripts/check-windows-binary.sh "build/win64/$program" PE32+ x86-64
    done
    # The report program's resources (the tests read back those of the others).
    python3 scripts/check-windows-resources.py build/win32/ZORHistoryReport.exe "$version" --manifest
    # The NSIS example as the usual 32-bit installer, with the x86 DLL (the tests
    # build and run its 64-bit form).
    (cd build/win32 && makensis -NOCD -V2 -DRECORDER_DLL=ZORRecorder.dll ../../tests/installer/RecordEvent.nsi)
}

# The Debian package of the Linux release build: cpack, lintian, and its
# programs unpacked into a scratch root and run with a scratch /var/lib
# (tests/package/test_deb.py).
deb_package() {
    configure_and_build linux-release
    ctest --preset linux-release
}

stage setup install_deps
stage "linux build" configure_and_build linux
stage "linux tests" ctest --preset linux
stage "win64 build" configure_and_build win64
stage "win32 probe" x86_probe
stage "win32 build" cmake --build --preset win32
stage "windows tests" windows_tests
stage "fuzz build" configure_and_build fuzz
stage "fuzz runs" ctest --preset fuzz
stage "release checks" release_checks
stage "deb package" deb_package
