#!/bin/sh
# Installs the build tools and libraries that are missing (Debian packages).
set -e
need=""
command -v cmake >/dev/null 2>&1 || need="$need cmake"
command -v ninja >/dev/null 2>&1 || need="$need ninja-build"
command -v g++ >/dev/null 2>&1 || need="$need g++"
[ -f /usr/include/gtest/gtest.h ] || need="$need libgtest-dev"
[ -f /usr/include/benchmark/benchmark.h ] || need="$need libbenchmark-dev"
if [ -n "$need" ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "installing:$need"
    $sudo apt-get update
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y $need
fi
