#!/bin/sh
# A plain shell installer that records its install in the machine's
# installation history: -start before anything changes, a -logmessage for
# each step, -end with the copy and the result (Failed when a step fails).
# -l names the installer's own log, which ZORGetInstallLog -f later stages
# beside the event.
#
#   install-zorserver.sh [TARGET_FOLDER]   (default /opt/zorserver; as root)
#
# ZOR_RECORD_EVENT names the recorder (default ZORRecordEvent on the PATH);
# ZOR_INSTALLER_LOG the log (default /var/log/zorserver-install.log). The
# history never stops the install: the recorder's result is ignored.
set -u

target=${1:-/opt/zorserver}
recorder=${ZOR_RECORD_EVENT:-ZORRecordEvent}
log=${ZOR_INSTALLER_LOG:-/var/log/zorserver-install.log}
event="ZORServer-$(date +%Y%m%d-%H%M%S)-$(od -An -N2 -tx2 /dev/urandom | tr -d ' \n')"

record() {
    "$recorder" "$@" >/dev/null 2>&1 || true
}
say() {
    echo "$(date '+%Y-%m-%d %H:%M:%S') $*" >> "$log"
}

say "Installing ZOR Server into $target (event $event)"
record -start "$event" -Product "ZOR Server" -Version 9.2 -Action Install -Type Shell \
    -Path "$target" -Command "$0 $*" -l "$log"

result=Success
if mkdir -p "$target/bin" && printf '#!/bin/sh\necho ZOR Server 9.2\n' > "$target/bin/zorserver" \
        && chmod 0755 "$target/bin/zorserver"; then
    say "Copied the server files"
    record -logmessage "$event" -message "Copied the server files"
else
    say "Copying the server files failed"
    record -logmessage "$event" -message "Copying the server files failed"
    result=Failed
fi

record -end "$event" -CopyName ZORCopy1 -Result "$result" -l "$log"
say "Install ended: $result"
[ "$result" = Success ]
