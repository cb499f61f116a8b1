#!/bin/sh
# Crash-safety soak of the grid store: 2,000 SIGKILLs of a process saving "grid.json" in a loop;
# after each one the file must hold one whole layout that was written.
# Usage: bench/grid_soak.sh [build directory] [kills]   (defaults: build, 2000)
set -eu
build=${1:-build}
kills=${2:-2000}
test_binary="$build/tests/grid/tst_gridcrashsafety"
if [ ! -x "$test_binary" ]; then
    echo "build the test first: cmake --build $build --target tst_gridcrashsafety" >&2
    exit 2
fi
start=$(date +%s)
TW_GRID_SOAK_KILLS=$kills QT_QPA_PLATFORM=offscreen "$test_binary" -silent
echo "$kills kills survived in $(( $(date +%s) - start )) s"
