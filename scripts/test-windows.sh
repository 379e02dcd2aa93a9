#!/bin/bash
# Cross-builds orbel.dll and its Windows test programs with mingw-w64 into build-windows, and runs
# them under wine64 in a fresh Wine prefix against a Linux orbel-sim of the Linux build (build).
# Prints the time of each step. Needs the Debian packages mingw-w64, wine64, wine64-tools.
# Usage: scripts/test-windows.sh [JOBS]
set -uo pipefail
cd "$(dirname "$0")/.."
source=$PWD
jobs=${1:-2}
linux_build=${BUILD:-build}
windows_build=${WINDOWS_BUILD:-build-windows}
export PATH=/usr/lib/wine:$PATH WINEPREFIX=$source/$windows_build/wine-prefix WINEDEBUG=-all DISPLAY=
# No dialogs that offer to install the .NET or HTML runtimes.
export WINEDLLOVERRIDES="mscoree,mshtml="
failures=0
timings=()

seconds_since() {
    local tenths=$((($(date +%s%N) - $1) / 100000000))
    printf '%5d.%d s' $((tenths / 10)) $((tenths % 10))
}

step() {
    local name=$1
    shift
    local start verdict=ok
    start=$(date +%s%N)
    echo "=== $name"
    if ! "$@"; then
        verdict=FAILED
        failures=$((failures + 1))
    fi
    timings+=("$(printf '%-44s %s  %s' "$name" "$(seconds_since "$start")" "$verdict")")
}

build_windows() {
    cmake -S . -B "$windows_build" --toolchain cmake/mingw-w64-x86_64.cmake -DCMAKE_BUILD_TYPE=Release -DCMAKE_UNITY_BUILD=ON \
        -DORBEL_WERROR=ON >/dev/null && cmake --build "$windows_build" -j "$jobs"
}

build_sim() {
    cmake -S . -B "$linux_build" >/dev/null && cmake --build "$linux_build" -j "$jobs" --target orbel-sim
}

fresh_prefix() {
    rm -rf "$WINEPREFIX" && wine64 wineboot -i >/dev/null 2>&1 && wineserver -w
}

exports() {
    cmake -DOBJDUMP=x86_64-w64-mingw32-objdump -DLIBRARY="$windows_build/orbel.dll" \
        -P tests/windows/DllExports.cmake
}

# Only Windows' own DLLs may be needed beside orbel.dll.
no_runtime_dlls() {
    ! x86_64-w64-mingw32-objdump -p "$windows_build/orbel.dll" | grep -iE 'DLL Name: (libstdc|libgcc|libwinpthread)'
}

wine_host() {
    python3 tests/windows/WineHost.py "$linux_build/sim/orbel-sim" "$windows_build/$1.exe"
}

windows_path() {
    echo "Z:${1//\//\\}"
}

regsvr32() {
    wine64 regsvr32 /s "$@" "$(windows_path "$source/$windows_build/orbel.dll")"
}

# The line that the script prints at its very end.
vbscript() {
    local output
    output=$(wine64 cscript //nologo "$(windows_path "$source/tests/windows/OrbelCtrl.vbs")" | tr -d '\r')
    echo "$output"
    grep -qx 'SCRIPT OK' <<<"$output"
}

unregistered() {
    regsvr32 /u && wine64 "$windows_build/test_control_client.exe" --unregistered
}

started=$(date +%s%N)
step "cross-build orbel.dll and tests" build_windows
step "build the Linux orbel-sim" build_sim
step "fresh Wine prefix" fresh_prefix
step "exports of orbel.dll (objdump -p)" exports
step "no runtime DLL travels" no_runtime_dlls
step "C host: calibrate, measure, scan, emission" wine_host test_c_host_with_instrument
step "unplug, plug, second process refused" wine_host test_plug_and_second_process
step "regsvr32 orbel.dll" regsvr32
step "COM client: every method, arrays, drawing" wine_host test_control_client
step "VBScript through cscript reads Version" vbscript
step "regsvr32 /u removes every key" unregistered
wineserver -k 2>/dev/null

echo
printf '%s\n' "${timings[@]}"
printf '%-44s %s\n' "total" "$(seconds_since "$started")"
if [ "$failures" -ne 0 ]; then
    echo "make test-windows: $failures steps failed"
    exit 1
fi
echo "make test-windows: all steps passed"
