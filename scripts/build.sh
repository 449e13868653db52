#!/usr/bin/env bash
# Configures and builds into BUILD_DIR (default: build). Extra arguments go to
# CMake, e.g. scripts/build.sh -DOV_SANITIZE=ON. OV_TARGETS limits the build to
# those targets (e.g. OV_TARGETS="ovviewer OvMeasurementTool"), else all.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${BUILD_DIR:-build}
# ccache, when installed, makes rebuilds in other checkouts of the tree cheap.
launcher=()
if command -v ccache >/dev/null; then
    launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} "${launcher[@]}" "$@" >/dev/null
targets=()
for target in ${OV_TARGETS:-}; do
    targets+=(--target "$target")
done
cmake --build "$BUILD_DIR" -j"$(nproc)" "${targets[@]}"
