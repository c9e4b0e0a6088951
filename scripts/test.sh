#!/bin/sh
# Builds the library and its tests and runs them all.
set -e
cd "$(dirname "$0")/.."
sh scripts/deps.sh
cmake -S . -B build -G Ninja >/dev/null
cmake --build build
ctest --test-dir build --output-on-failure -j2
