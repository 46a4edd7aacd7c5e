#!/usr/bin/env bash
# scripts/fuzz.sh [SECONDS [TARGET...]]: feeds the readers of drawings (drawing), pictures (picture) and plan.xml (planfile)
# with whatever libFuzzer comes upon, under AddressSanitizer and UndefinedBehaviorSanitizer, each for SECONDS (180 by
# default). Needs clang with its fuzzer, and a build of the library: KX_BUILD names its folder, build/debug by default.
# KX_CORPUS names a folder with files to begin with, in folders called like the targets. What is found lies in build/fuzz.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-180}
[ $# -eq 0 ] || shift
targets=("$@")
[ $# -gt 0 ] || targets=(drawing picture planfile)
library=${KX_BUILD:-$top/build/debug}/lib
work=$top/build/fuzz
skipped=77 # what ctest takes for "skipped"

skip() {
    echo "$1; nothing was fuzzed."
    echo "Totals: 0 passed, 0 failed, 1 skipped"
    exit $skipped
}
command -v clang++ >/dev/null || skip "clang++ is not there (package clang)"
echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' |
    clang++ -fsanitize=fuzzer,address -x c++ - -o /dev/null 2>/dev/null ||
    skip "clang++ has no fuzzer (package libclang-rt-14-dev)"
[ -e "$library/libKxView3d.so" ] || skip "$library has no libKxView3d.so; build it first"
if nm -D "$library/libKxView3d.so" | grep -e __asan_init -e __tsan_init >/dev/null; then
    skip "$library was built with a sanitizer of another compiler"
fi

mkdir -p "$work"
cmake -S "$top/fuzz" -B "$work/build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DKX_LIBRARIES="$library" >"$work/cmake.log" ||
    { cat "$work/cmake.log"; exit 1; }
cmake --build "$work/build" --target seeds "${targets[@]}" >"$work/build.log" || { cat "$work/build.log"; exit 1; }
"$work/build/seeds" "$work/seeds"
mkdir -p "$work/seeds/planfile"
cp "$top"/tests/plans/data/*.xml "$work/seeds/planfile/"

failed=0
for target in "${targets[@]}"; do
    mkdir -p "$work/corpus/$target" "$work/found/$target"
    corpora=("$work/corpus/$target" "$work/seeds/$target")
    [ -z "${KX_CORPUS:-}" ] || [ ! -d "$KX_CORPUS/$target" ] || corpora+=("$KX_CORPUS/$target")
    # 160 MB: a picture of 4048 x 4048 pixels with 16 bits a channel takes 131.
    if "$work/build/$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -malloc_limit_mb=160 \
        -max_len=20000 -print_final_stats=1 -dict="$top/fuzz/$target.dict" -artifact_prefix="$work/found/$target/" \
        "${corpora[@]}" >"$work/$target.log" 2>&1; then
        echo "$target: nothing found in $(awk '/number_of_executed_units/ { print $2 }' "$work/$target.log") inputs"
    else
        failed=$((failed + 1))
        tail -n 60 "$work/$target.log"
        echo "$target: see $work/$target.log; again with $work/build/$target FILE, FILE from $work/found/$target"
    fi
done
echo "Totals: $((${#targets[@]} - failed)) passed, $failed failed, 0 skipped"
[ $failed -eq 0 ]
