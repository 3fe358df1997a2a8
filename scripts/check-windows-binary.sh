#!/bin/bash
# Checks a Windows binary: a console executable (or DLL) of the expected format that
# imports nothing but system DLLs (the runtimes are linked in).
# Usage: check-windows-binary.sh FILE FORMAT MACHINE   (e.g. PE32 Intel)
set -euo pipefail
file="$1"; format="$2"; machine="$3"
description="$(file -b "$file")"
echo "$file: $description"
kind="executable (console)"
case "$file" in
    *.dll) kind="executable (DLL) (console)" ;;
esac
case "$description" in
    "$format $kind $machine"*) ;;
    *) echo "FAIL: expected a $format $kind for $machine"; exit 1 ;;
esac
objdump=$( [ "$format" = PE32 ] && echo i686-w64-mingw32-objdump || echo x86_64-w64-mingw32-objdump )
imports="$($objdump -p "$file" | sed -n 's/^\s*DLL Name: //p' | tr 'A-Z' 'a-z' | sort -u)"
echo "imports: $(echo $imports)"
# Exactly the system DLLs that the programs link; psapi.dll and shfolder.dll are
# loaded at run time and must never appear here. The DLL alone also links the
# Windows Installer, for its custom action.
allowed=" kernel32.dll msvcrt.dll advapi32.dll netapi32.dll secur32.dll "
case "$file" in
    *.dll) allowed="$allowed msi.dll " ;;
esac
for dll in $imports; do
    case "$allowed" in
        *" $dll "*) ;;
        *) echo "FAIL: imports $dll, which is not a system DLL we allow"; exit 1 ;;
    esac
done
# The DLL's exports carry no x86 decoration: installers look them up by name.
case "$file" in
    *.dll)
        exports="$($objdump -p "$file" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' | sed -n 's/^\s*\[\s*[0-9]*\] //p' | sort | tr '\n' ' ')"
        echo "exports: $exports"
        if [ "$exports" != "ZORMakeEventIdAction ZORRecordEvent ZORRecordEventAction " ]; then
            echo "FAIL: the DLL must export exactly ZORMakeEventIdAction, ZORRecordEvent and ZORRecordEventAction"; exit 1
        fi ;;
esac
echo "check passed"
