#!/usr/bin/env bash
# Runs each fuzz target for some seconds, from seeds and what earlier runs came to. Usage: fuzz.sh FOLDER SECONDS
#
# A decoder gets ten seconds in its child process; what takes twice that is a hang. The corpus stays in
# FOLDER/corpus. An input that makes a target fail stays in FOLDER/crashes: shorten it with
# TARGET -minimize_crash=1, mend the fault, and keep it in tests/fuzz/found.
set -euo pipefail

folder=$1
seconds=$2
mkdir -p "$folder/corpus" "$folder/crashes"
"$folder/write_seeds" "$folder/seeds"
status=0
for seeds in "$folder"/seeds/Fuzz*; do
    target=${seeds##*/}
    mkdir -p "$folder/corpus/$target"
    echo "== $target"
    "$folder/$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -max_len=16384 -print_final_stats=1 \
        -artifact_prefix="$folder/crashes/$target-" "$folder/corpus/$target" "$seeds" >"$folder/$target.log" 2>&1 || {
        status=1
        tail -n 40 "$folder/$target.log"
    }
    grep -E 'Done|number_of_executed' "$folder/$target.log" || true
done
exit $status
