#!/bin/sh
# Runs each fuzz target of a fuzzer build for a set time, from the seeds in the repository.
# What a run finds goes to a working corpus in the build directory, never into the seeds; a
# crash leaves its input there as crash-* and fails the run.
# Usage: scripts/fuzz.sh BUILD_DIRECTORY SECONDS_PER_TARGET
set -eu
build=$(cd "$1" && pwd)
seconds=$2
source_dir=$(cd "$(dirname "$0")/.." && pwd)
failed=0
for target in "$build"/tests/fuzz/fuzz_*; do
    name=$(basename "$target")
    seeds="$source_dir/tests/fuzz/corpus/${name#fuzz_}"
    work="$build/tests/fuzz/work/$name"
    mkdir -p "$work"
    echo "== $name, $seconds s"
    if ! (cd "$work" && "$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
        "$work" "$seeds" 2>"$work.log"); then
        tail -n 60 "$work.log"
        failed=1
    else
        grep -E "^stat::number_of_executed_units|^Done" "$work.log" || true
    fi
done
exit $failed
