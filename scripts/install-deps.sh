#!/bin/bash
# Installs everything the three builds and their tests need on a Debian 12 machine.
# Idempotent: safe to run again. Must run as root.
set -euo pipefail

if [ "$(id -u)" -ne 0 ]; then
    echo "install-deps.sh must run as root" >&2
    exit 1
fi

# minizip is compiled for the MinGW targets from Debian's source package, which
# needs a deb-src entry for the same archive that apt already uses.
ensure_deb_src() {
    local list=/etc/apt/sources.list.d/zor-deb-src.sources
    [ -f "$list" ] && return 0
    local src=/etc/apt/sources.list.d/debian.sources
    if [ -f "$src" ]; then
        sed -e 's/^Types:.*/Types: deb-src/' "$src" > "$list"
    else
        grep -E '^deb ' /etc/apt/sources.list | sed 's/^deb /deb-src /' > /etc/apt/sources.list.d/zor-deb-src.list
        touch "$list"
    fi
}

ensure_deb_src
export DEBIAN_FRONTEND=noninteractive
apt-get update -q
apt-get install -y -q --no-install-recommends \
    build-essential cmake ninja-build pkg-config dpkg-dev file unzip python3 \
    clang libclang-rt-dev zip time \
    zlib1g-dev libminizip-dev googletest libgtest-dev \
    g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix \
    g++-mingw-w64-i686-posix gcc-mingw-w64-i686-posix \
    libz-mingw-w64-dev binutils-mingw-w64-x86-64 binutils-mingw-w64-i686 \
    wine wine64 strace \
    wixl llvm nsis \
    nlohmann-json3-dev chromium fonts-dejavu-core
