#!/bin/sh
# Runs a test program once more over USB: a virtual instrument of its own, shown as a USB device by
# orbel-sim usb-run, so that the module reaches it only through libusb. Skipped (exit 77) where
# umockdev is missing.
# usage: run-over-usb.sh ORBEL_SIM PROGRAM [ARGS...]
sim=$1
shift
if ! command -v umockdev-wrapper >/dev/null ||
    ! /usr/bin/python3 -c "import gi; gi.require_version('UMockdev', '1.0')" 2>/dev/null; then
    echo "SKIPPED: the run over USB needs umockdev (apt-get install umockdev gir1.2-umockdev-1.0 python3-gi)"
    exit 77
fi
# umockdev's preload comes before the sanitizer's runtime in a sanitized build.
ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}verify_asan_link_order=0"
export ASAN_OPTIONS
ORBEL_SIM_DIR=$(mktemp -d /tmp/orbel-usb-test-XXXXXX)
export ORBEL_SIM_DIR
trap '"$sim" stop >/dev/null 2>&1; rm -rf "$ORBEL_SIM_DIR"' EXIT
"$sim" start --noise off --time-scale 0 >/dev/null || exit 1
"$sim" usb-run -- "$@"
