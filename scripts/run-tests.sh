#!/usr/bin/env bash
# Sets up, builds and runs every test suite headless through CTest, once
# against Qt 5 (into BUILD_DIR, default build) and once against Qt 6 (into
# BUILD_DIR-qt6). OV_QT_VERSIONS="5" or "6" limits the run to one of them.
# Extra arguments go to CMake for every build.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
base=${BUILD_DIR:-build}
failed=()
for qt in ${OV_QT_VERSIONS:-5 6}; do
    dir=$base
    [ "$qt" = 5 ] || dir=$base-qt$qt
    echo "== Qt $qt: building into $dir"
    BUILD_DIR=$dir bash scripts/build.sh -DOV_QT_MAJOR="$qt" "$@"
    echo "== Qt $qt: running the tests"
    (cd "$dir" && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)") || failed+=("Qt $qt")
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "Tests failed with ${failed[*]}" >&2
    exit 1
fi
