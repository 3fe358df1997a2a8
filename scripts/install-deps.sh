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
    build-essential cmake ninja-build pkg-config dpkg-dev lintian file unzip python3 \
    clang libclang-rt-dev zip p7zip-full time \
    zlib1g-dev libminizip-dev googletest libgtest-dev \
    g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix \
    g++-mingw-w64-i686-posix gcc-mingw-w64-i686-posix \
    libz-mingw-w64-dev binutils-mingw-w64-x86-64 binutils-mingw-w64-i686 \
    wine wine64 strace \
    wixl msitools llvm nsis \
    nlohmann-json3-dev chromium fonts-dejavu-core python3-jsonschema

# Wine's 32-bit Windows modules beside wine64's own, so that wine64 runs the
# x86 build in its WoW64 mode, as 64-bit Windows runs 32-bit programs. They
# come from libwine:i386 of exactly the installed wine64's version, unpacked,
# never installed: no i386 package is ever installed (wine32's i386 loader
# can't start where the kernel runs no i386 Linux program, and Wine would
# prefer it when present). A stamp keeps the version copied, so the modules are
# copied again whenever wine64 changes. Where the package can't be had, the
# x86 tests' probe says that the modules are missing.
install_wow64_modules() {
    local target=/usr/lib/x86_64-linux-gnu/wine/i386-windows
    local stamp="$target/.zor-libwine-i386-version"
    local version scratch
    version="$(dpkg-query -W -f='${Version}' wine64)"
    if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$version" ]; then
        return 0
    fi
    scratch="$(mktemp -d)"
    dpkg --add-architecture i386
    # An i386 index of the security archive fails to download now and then;
    # the main archive's index is all that is needed.
    apt-get update -q || true
    if (cd "$scratch" && apt-get download -q "libwine:i386=$version"); then
        dpkg -x "$scratch"/libwine_*_i386.deb "$scratch/root"
        mkdir -p "$target"
        cp -a "$scratch/root/usr/lib/i386-linux-gnu/wine/i386-windows/." "$target/"
        echo "$version" > "$stamp"
    else
        echo "install-deps.sh: libwine:i386 $version can't be downloaded; the x86 build's tests won't run" >&2
    fi
    dpkg --remove-architecture i386
    apt-get update -q
    rm -rf "$scratch"
}

install_wow64_modules
