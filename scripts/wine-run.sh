#!/bin/bash
# Runs a Windows x64 program under wine64 in a private, throw-away prefix.
# Usage: wine-run.sh PREFIX PROGRAM [ARGS...]
# Under a lock (CTest runs tests in parallel) the first call creates the
# prefix, starts a persistent wineserver and lets Wine's background services
# start, all with no inherited descriptors: a server or service started by the
# program's own `wine` would keep CTest's output pipes open and hang the caller.
set -u
prefix="$1"; shift
export WINEPREFIX="$prefix"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
mkdir -p "$(dirname "$prefix")"
(
    flock 9
    if [ ! -f "$prefix/system.reg" ]; then
        wineboot --init </dev/null >/dev/null 2>&1 9>&-
        wineserver -w </dev/null >/dev/null 2>&1 9>&-
    fi
    # Exits with 2 when the server of this prefix runs already.
    if wineserver -p </dev/null >/dev/null 2>&1 9>&-; then
        wine cmd.exe /c exit </dev/null >/dev/null 2>&1 9>&-
    fi
) 9>"$prefix.lock"
exec wine "$@"
