#!/usr/bin/env bash
# Configures and builds into BUILD_DIR (default: build). Extra arguments go to
# CMake, e.g. scripts/build.sh -DOV_SANITIZE=ON.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${BUILD_DIR:-build}
# ccache, when installed, makes rebuilds in other checkouts of the tree cheap.
launcher=()
if command -v ccache >/dev/null; then
    launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} "${launcher[@]}" "$@" >/dev/null
cmake --build "$BUILD_DIR" -j"$(nproc)"
