#!/bin/bash
# Runs one fuzz target with libFuzzer's arguments, its temporary stores in a
# folder of their own (in memory where the machine has /dev/shm), which goes
# when the run ends, also after a crash: libFuzzer ends a run without the
# clean-up of the target's own objects.
# Usage: run_fuzzer.sh <fuzz target> [libFuzzer arguments...]
set -uo pipefail
parent=/tmp
[ -d /dev/shm ] && [ -w /dev/shm ] && parent=/dev/shm
scratch=$(mktemp -d "$parent/zor-fuzz-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
TMPDIR=$scratch "$@"
