# zor_event_id NAME...: prints a new EventID for a shell installer, e.g.
# ZORServer-20261125-130512-3fa9: a short name (of the first NAME that holds
# any, its ASCII letters, digits, '-' and '_', at most 16 of them; "ZOR" if
# none does), the local date and time to the second, and four random hex
# digits. The same form as ZORRecorder.dll's ZORMakeEventIdAction gives. An
# EventID names a folder and a section of the history, so it keeps no blank.
# POSIX sh; source this file, and name the run's own log after its EventID,
# since the log is copied when the history is collected, not at -end:
#
#   . ./zor-event-id.sh
#   event=$(zor_event_id "$ZOR_EVENT_PREFIX" "ZOR Server")
#   log=/var/log/zorserver/$event.log
#   ZORRecordEvent -start "$event" -Action Install -l "$log" ...
#   ZORRecordEvent -end "$event" -CopyName ZORCopy1 -Result Success -l "$log"
zor_event_id() {
    zor_name=ZOR
    for zor_candidate in "$@"; do
        zor_kept=$(printf '%s' "$zor_candidate" | LC_ALL=C tr -cd 'A-Za-z0-9_-' | cut -c1-16)
        if [ -n "$zor_kept" ]; then
            zor_name=$zor_kept
            break
        fi
    done
    zor_random=$(od -An -N2 -tu2 /dev/urandom | tr -d ' \n')
    printf '%s-%s-%04x\n' "$zor_name" "$(date +%Y%m%d-%H%M%S)" "$zor_random"
    unset zor_name zor_candidate zor_kept zor_random
}
