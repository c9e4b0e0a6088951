#!/bin/sh
# Builds vorex-zd and translates every listing of examples/ to .TP and back,
# with the built-in robot cell. Output goes to build/examples/.
set -e
cd "$(dirname "$0")/.."
sh scripts/deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build --target vorex-zd
out=build/examples
rm -rf "$out" && mkdir -p "$out"
cp examples/*.PE examples/*.PJ "$out"/ 2>/dev/null || true
status=0
for listing in "$out"/*.PE "$out"/*.PJ; do
    [ -f "$listing" ] || continue
    base="${listing%.*}"
    if ./build/vorex-zd to-bin "$listing"; then
        ./build/vorex-zd to-text -o "$base.back.${listing##*.}" "$base.TP" || status=1
        echo "$listing -> $base.TP -> $base.back.${listing##*.}"
    else
        status=1
    fi
done
exit $status
