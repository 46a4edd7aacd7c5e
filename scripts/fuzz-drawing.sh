#!/usr/bin/env bash
# scripts/fuzz-drawing.sh [SECONDS [CORPUS]]: feeds the drawing reader with whatever libFuzzer comes upon, for 60 seconds
# by default, under AddressSanitizer. Needs clang. CORPUS is a folder of drawings to begin with.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-60}
command -v clang++ >/dev/null || {
    echo "clang++ is not there; nothing was tried." >&2
    exit 2
}
build=$top/build/fuzz
mkdir -p "$build/found"
cd "$top"
sources=()
for name in Drawing DrawingFile DrawingLosses DrawingMeshes DrawingPictures DrawingStyle DxfCensus OgrDrawingReader \
    OgrShapes StoppableFile StrokeFont; do
    sources+=("host/drawing/$name.cpp")
done
# shellcheck disable=SC2046
clang++ -std=c++17 -O1 -g1 -fPIC -fsanitize=fuzzer,address -I. $(pkg-config --cflags Qt5Core Qt5Gui gdal) \
    fuzz/DrawingFuzz.cpp "${sources[@]}" -o "$build/drawing" $(pkg-config --libs Qt5Core Qt5Gui gdal)
exec "$build/drawing" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -max_len=20000 \
    -artifact_prefix="$build/" "$build/found" ${2:+"$2"}
