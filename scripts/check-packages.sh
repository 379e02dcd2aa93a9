#!/bin/sh
# Builds the Debian packages, checks them with lintian, installs them with dpkg, builds a small C
# host against the installed module once through CMake and once through pkg-config, and runs both
# on the installed virtual instrument. The packages are removed again at the end. Needs root.
# The build directory (default build-package) is configured for the prefix /usr; CI passes its
# test build, so that only the two files that name the installed folders compile again.
set -eu
cd "$(dirname "$0")/.."
build=${1:-build-package}
packages="liborbel1 liborbel-dev orbel-tools"

cmake -S . -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_INSTALL_ALL_DEPENDENCY=ON >/dev/null
cmake --build "$build" -j "$(nproc)" --target orbel orbel-cli orbel-sim
rm -rf "$build/packages"
(cd "$build" && cpack -G DEB -B "$PWD/packages" >/dev/null)
lintian --fail-on error "$build"/packages/*.deb

work=$(mktemp -d "${TMPDIR:-/tmp}/orbel-packages.XXXXXX")
ORBEL_SIM_DIR=$work/sim
ORBEL_LOCK_DIR=$work/locks
export ORBEL_SIM_DIR ORBEL_LOCK_DIR
cleanup() {
    orbel-sim stop >/dev/null 2>&1 || true
    dpkg --purge $packages >/dev/null 2>&1 || true
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

dpkg -i "$build"/packages/*.deb
dpkg-query -W $packages

cmake -S tests/consumer -B "$work/cmake" >/dev/null
cmake --build "$work/cmake"
cc tests/consumer/Consumer.c $(pkg-config --cflags --libs orbel) -o "$work/consumer-pkg-config"

orbel-sim start --noise off --time-scale 0.05 >/dev/null
orbel-sim place tile
"$work/cmake/orbel-consumer"
"$work/consumer-pkg-config"
