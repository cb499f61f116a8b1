#!/bin/sh
# Crash-safety soak of restoring a layout: 2,000 SIGKILLs of a process that backs up and restores
# in a loop; after each one, once the next start has finished a committed restore, the data
# directory and the preferences hold one whole setup.
# Usage: bench/restore_soak.sh [build directory] [kills]   (defaults: build, 2000)
set -eu
build=${1:-build}
kills=${2:-2000}
test_binary="$build/tests/backup/tst_restorecrashsafety"
if [ ! -x "$test_binary" ]; then
    echo "build the test first: cmake --build $build --target tst_restorecrashsafety" >&2
    exit 2
fi
start=$(date +%s)
TW_RESTORE_SOAK_KILLS=$kills QT_QPA_PLATFORM=offscreen "$test_binary" -silent
echo "$kills kills survived in $(( $(date +%s) - start )) s"
