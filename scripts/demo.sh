#!/bin/sh
# The tour of `make demo`: plugs a virtual instrument into a private directory, runs `orbel demo`
# on it, and unplugs it again however the tour ends.
set -eu

build=${1:-build}
sim="$build/sim/orbel-sim"
orbel="$build/tools/orbel"

ORBEL_SIM_DIR=$(mktemp -d "${TMPDIR:-/tmp}/orbel-demo-sim.XXXXXX")
ORBEL_LOCK_DIR=$(mktemp -d "${TMPDIR:-/tmp}/orbel-demo-locks.XXXXXX")
export ORBEL_SIM_DIR ORBEL_LOCK_DIR

cleanup() {
    "$sim" stop >/dev/null 2>&1 || true
    rm -rf "$ORBEL_SIM_DIR" "$ORBEL_LOCK_DIR"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

"$sim" start --time-scale 0.2 >/dev/null
"$orbel" demo --sim "$sim" --plot demo-spectra.svg
