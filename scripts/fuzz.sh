#!/bin/bash
# Long runs of the fuzz targets, one target at a time and at low priority,
# since the machine's cores are shared. Builds the fuzz preset, then runs each
# target over a scratch corpus in build/fuzz/long/<target>, seeded from
# fuzz/corpus/<target>, and prints for each how many inputs it ran, for how
# long, and whether it ran clean. A crash leaves its input in
# build/fuzz/long/artifacts/ and the run's log in build/fuzz/long/<target>.log
# (<target>-<n>.log for instance n of a parallel run).
#
# Usage: scripts/fuzz.sh [--runs N | --seconds S] [--parallel P] [target ...]
#   --runs N      inputs per target and instance (default 10000000)
#   --seconds S   time per target instead
#   --parallel P  P instances of each target at once, one per core, sharing
#                 the scratch corpus; the inputs of all of them are added up
#   targets       any of: profile options entry_names summary report local_headers (default: all six)
#
# Ctrl-C (or SIGINT to the fuzzers) ends the run: libFuzzer stops with its
# final figures, so the inputs that each instance ran are still added up, and
# the targets after it aren't started.
set -euo pipefail
cd "$(dirname "$0")/.."

limit="-runs=10000000"
parallel=1
while [ $# -gt 0 ]; do
    case "$1" in
        --runs) limit="-runs=$2"; shift 2 ;;
        --seconds) limit="-max_total_time=$2"; shift 2 ;;
        --parallel) parallel=$2; shift 2 ;;
        *) break ;;
    esac
done
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(profile options entry_names summary report local_headers)

cmake --preset fuzz > /dev/null
cmake --build --preset fuzz

# Absolute paths: a target may change its current folder as it starts.
long=$PWD/build/fuzz/long
mkdir -p "$long/artifacts"

# The log of instance $2 of target $1.
log_of() {
    if [ "$parallel" -eq 1 ]; then echo "$long/$1.log"; else echo "$long/$1-$2.log"; fi
}

# What a fuzzer ends with when it is interrupted.
interrupted_status=72
interrupted=0
trap 'interrupted=1' INT

# Runs instance $2 of target $1 to its end; its exit status is the fuzzer's.
run_instance() {
    local target=$1 instance=$2 tag=$1
    [ "$parallel" -gt 1 ] && tag=$1-$2
    nice -n 10 fuzz/run_fuzzer.sh "build/fuzz/fuzz/${target}_fuzzer" "$limit" \
        -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 \
        -interrupted_exitcode=$interrupted_status \
        -artifact_prefix="$long/artifacts/$tag-" \
        "$long/$target" "$PWD/fuzz/corpus/$target" > "$(log_of "$target" "$instance")" 2>&1
}

# The inputs that instance $2 of target $1 ran, from its final figures.
runs_of() {
    sed -n 's/^stat::number_of_executed_units: *//p' "$(log_of "$1" "$2")" | tail -1
}

# Waits for background process $1, also through an interrupt, and leaves its
# exit status in $status (not in a subshell: only this shell may wait for it).
wait_for() {
    while :; do
        if wait "$1"; then status=0; else status=$?; fi
        kill -0 "$1" 2>/dev/null || break
    done
}

failed=0
for target in "${targets[@]}"; do
    mkdir -p "$long/$target"
    start=$SECONDS
    pids=()
    for instance in $(seq 1 "$parallel"); do
        run_instance "$target" "$instance" &
        pids+=($!)
    done
    outcome="clean"
    total=0
    counts=()
    for instance in $(seq 1 "$parallel"); do
        wait_for "${pids[$((instance - 1))]}"
        case $status in
            0) ;;
            "$interrupted_status") [ "$outcome" = "clean" ] && outcome="clean, interrupted" ;;
            *) outcome="FAILED (see $(log_of "$target" "$instance"))" ;;
        esac
        runs=$(runs_of "$target" "$instance")
        counts+=("${runs:-0}")
        total=$((total + ${runs:-0}))
    done
    [[ "$outcome" == clean* ]] || failed=1
    detail=""
    [ "$parallel" -gt 1 ] && detail=" ($(IFS=+; echo "${counts[*]}"))"
    echo "$target: $total inputs$detail in $((SECONDS - start)) s, $outcome"
    [ "$interrupted" -eq 0 ] || break
done
exit $failed
