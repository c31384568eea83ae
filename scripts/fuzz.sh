#!/usr/bin/env bash
# Runs each fuzz target for some seconds, from seeds and what earlier runs came to, on all processors.
# Usage: fuzz.sh FOLDER SECONDS
#
# A decoder gets ten seconds in its child process; what takes twice that is a hang. The corpus stays in
# FOLDER/corpus. An input that makes a target fail stays in FOLDER/crashes: shorten it with
# TARGET -minimize_crash=1, mend the fault, and keep it in tests/fuzz/found.
set -euo pipefail

# run_target FOLDER SECONDS TARGET: prints what it came to, and its last lines where it failed.
run_target() {
    local folder=$1 seconds=$2 target=$3 log=$1/$3.log status=0
    mkdir -p "$folder/corpus/$target"
    "$folder/$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -max_len=16384 \
        -artifact_prefix="$folder/crashes/$target-" "$folder/corpus/$target" "$folder/seeds/$target" \
        >"$log" 2>&1 || status=1
    [ $status = 0 ] || tail -n 40 "$log"
    echo "$target: $(grep '^Done' "$log" || echo 'failed')"
    return $status
}
export -f run_target

folder=$1
seconds=$2
mkdir -p "$folder/crashes"
"$folder/write_seeds" "$folder/seeds"
find "$folder/seeds" -mindepth 1 -maxdepth 1 -name 'Fuzz*' -printf '%f\n' | sort |
    xargs -P "$(nproc)" -I TARGET bash -c 'run_target "$@"' run_target "$folder" "$seconds" TARGET
