#!/bin/bash
# Long runs of the fuzz targets, one at a time and at low priority, since the
# machine's cores are shared. Builds the fuzz preset, then runs each target
# over a scratch corpus in build/fuzz/long/<target>, seeded from
# fuzz/corpus/<target>, and prints for each how many inputs it ran, for how
# long, and whether it ran clean. A crash leaves its input in
# build/fuzz/long/artifacts/ and the run's log in build/fuzz/long/<target>.log.
#
# Usage: scripts/fuzz.sh [--runs N | --seconds S] [target ...]
#   --runs N     inputs per target (default 10000000)
#   --seconds S  time per target instead
#   targets      any of: profile options entry_names summary report (default: all five)
set -euo pipefail
cd "$(dirname "$0")/.."

limit="-runs=10000000"
case "${1:-}" in
    --runs) limit="-runs=$2"; shift 2 ;;
    --seconds) limit="-max_total_time=$2"; shift 2 ;;
esac
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(profile options entry_names summary report)

cmake --preset fuzz > /dev/null
cmake --build --preset fuzz

# Absolute paths: a target may change its current folder as it starts.
long=$PWD/build/fuzz/long
mkdir -p "$long/artifacts"
failed=0
for target in "${targets[@]}"; do
    mkdir -p "$long/$target"
    log="$long/$target.log"
    start=$SECONDS
    if nice -n 10 fuzz/run_fuzzer.sh "build/fuzz/fuzz/${target}_fuzzer" "$limit" \
            -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 \
            -artifact_prefix="$long/artifacts/$target-" \
            "$long/$target" "$PWD/fuzz/corpus/$target" > "$log" 2>&1; then
        outcome="clean"
    else
        outcome="FAILED (see $log)"
        failed=1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    echo "$target: ${runs:-0} inputs in $((SECONDS - start)) s, $outcome"
done
exit $failed
