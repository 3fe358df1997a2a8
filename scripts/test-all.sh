#!/bin/bash
# Sets up a fresh Debian 12 machine, builds all three targets and runs every
# test: Linux native (with ASan and UBSan), Windows x64 under wine64, and the
# Windows x86 build, which is built and checked but cannot run here. Then the
# fuzz targets are built with clang and each runs for a bounded time
# (ZOR_FUZZ_SECONDS, 45 s each); scripts/fuzz.sh runs them for long.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -eq 0 ]; then
    scripts/install-deps.sh
else
    sudo scripts/install-deps.sh
fi

cmake --preset linux
cmake --build --preset linux
ctest --preset linux

cmake --preset win64
cmake --build --preset win64
ctest --preset win64

cmake --preset fuzz
cmake --build --preset fuzz
ctest --preset fuzz

cmake --preset win32
cmake --build --preset win32

# The release zips of both Windows builds.
version="$(sed -n 's/^project(ZORGetInstallLog VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)"
for arch in win32 win64; do
    cmake --build --preset "$arch" --target package
    python3 scripts/check-release.py zip "build/$arch/ZORGetInstallLog-$version-$arch.zip" "$arch"
done
for program in ZORGetInstallLog.exe ZORRecordEvent.exe ZORHistoryReport.exe ZORRecorder.dll; do
    scripts/check-windows-binary.sh "build/win32/$program" PE32 Intel
    scripts/check-windows-binary.sh "build/win64/$program" PE32+ x86-64
done
# The x86 build has no tests of its own: its resources are read back here.
for program in ZORGetInstallLog.exe ZORRecordEvent.exe ZORHistoryReport.exe; do
    python3 scripts/check-windows-resources.py "build/win32/$program" "$version" --manifest
done
python3 scripts/check-windows-resources.py build/win32/ZORRecorder.dll "$version" --no-manifest
# The NSIS example as the usual 32-bit installer, with the x86 DLL (the tests
# build and run its 64-bit form).
(cd build/win32 && makensis -NOCD -V2 -DRECORDER_DLL=ZORRecorder.dll ../../tests/installer/RecordEvent.nsi)
