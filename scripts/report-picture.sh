#!/bin/bash
# Makes docs/history-report.png, the picture of ZORHistoryReport's page in the
# README: the Windows x64 build records two installs of one copy in its own
# Wine prefix (the first adds a service and the copy's registry keys, the
# service is deleted before the second), collects them, writes the report, and
# headless chromium renders the page. Needs a built win64 preset.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/win64
prefix="$PWD/build/report-picture/wineprefix"
work="$PWD/build/report-picture/work"
rm -rf "$work" && mkdir -p "$work"
run() { scripts/wine-run.py "$prefix" "$@"; }
winpath() { echo "Z:$(echo "$1" | tr / '\\')"; }

run "$build/ZORRecordEvent.exe" -start E1 -Action Install -Product "ZOR 9.6 Server" -ServiceLevel SL1 \
    -Type Silent -Command "setup.exe /s"
run sc create ZORListener binPath= "C:\\zor\\listener.exe" DisplayName= "ZOR Listener (ReportCopy)" >/dev/null
run regedit /s "$(winpath "$PWD/tests/fixtures/report/one_v9_copy.reg")"
run "$build/ZORRecordEvent.exe" -logmessage E1 -message "Copying the server files to C:\\ZOR\\ReportCopy"
run "$build/ZORRecordEvent.exe" -end E1 -CopyName ReportCopy -Result Success
run sc delete ZORListener >/dev/null
run "$build/ZORRecordEvent.exe" -start E2 -Action Upgrade -Product "ZOR 9.6 Server"
run "$build/ZORRecordEvent.exe" -logmessage E2 -message "Error 1603: the upgrade was rolled back"
run "$build/ZORRecordEvent.exe" -end E2 -CopyName ReportCopy -Result 1603
run "$build/ZORGetInstallLog.exe" -f "$(winpath "$work/history.zip")"
run "$build/ZORHistoryReport.exe" "$(winpath "$work/history.zip")" -o "$(winpath "$work/report.html")"
profile="$(mktemp -d)"
chromium --headless --no-sandbox --disable-gpu --no-first-run --user-data-dir="$profile" --hide-scrollbars \
    --window-size=1000,1700 --screenshot="$PWD/docs/history-report.png" "file://$work/report.html" 2>/dev/null
rm -rf "$profile"
echo "docs/history-report.png written"
