#!/bin/sh
# A plain shell installer that records its install in the machine's
# installation history: -start before anything changes, a -logmessage for
# each step, -end with the copy and the result (Failed, and exit code 1, when
# a step fails). Every run is an event of its own: a new EventID from
# zor-event-id.sh, which lies beside this script, and a log of its own named
# after it, which -l records and ZORGetInstallLog -f later stages beside the
# event (a log that a later run wrote again would be staged in its place).
#
#   install-zorserver.sh [TARGET_FOLDER]   (default /opt/zorserver; as root)
#
# ZOR_RECORD_EVENT names the recorder (default ZORRecordEvent on the PATH);
# ZOR_LOG_DIR the folder of the logs (default /var/log/zorserver). The
# history never stops the install: the recorder's result is ignored.
set -u

. "$(dirname "$0")/zor-event-id.sh"
target=${1:-/opt/zorserver}
recorder=${ZOR_RECORD_EVENT:-ZORRecordEvent}
event=$(zor_event_id ZORServer)
# An absolute path: the collection looks the log up from a folder of its own.
log_dir=${ZOR_LOG_DIR:-/var/log/zorserver}
mkdir -p "$log_dir"
log=$(cd "$log_dir" && pwd)/$event.log

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
# The steps' own error messages go to the log too.
if { mkdir -p "$target/bin" && printf '#!/bin/sh\necho ZOR Server 9.2\n' > "$target/bin/zorserver" \
        && chmod 0755 "$target/bin/zorserver"; } 2>> "$log"; then
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
