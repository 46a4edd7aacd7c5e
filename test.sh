#!/usr/bin/env bash
# ./test.sh [NAME]: installs what is missing, builds, and runs all tests (or those whose name matches) without a screen.
# The last line is "N passed, N failed" (", N skipped" where some were), counted in test functions.
# KX_PRESET chooses the build: debug (the default), release, asan, tsan. With tsan only the tests in which threads of ours
# meet are built and run: Qt 3D and the software renderer have threads of their own, which ThreadSanitizer can't follow.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
preset=${KX_PRESET:-debug}
. "$top/scripts/packages.sh"

kx_install_missing "${kx_build_packages[@]}" "${kx_run_packages[@]}" "${kx_headless_packages[@]}" "${kx_test_packages[@]}"
[ -z "${KX_FUZZ:-}" ] || kx_install_missing "${kx_fuzz_packages[@]}" ||
    echo "The readers of files won't be fuzzed: there is no clang."

cd "$top"
build=$top/build/$preset
targets=()
[ "$preset" != tsan ] || targets=(--target kx_thread_tests)
cmake --preset "$preset" && cmake --build "$build" "${targets[@]}" || {
    echo "The build failed."
    echo "0 passed, 1 failed"
    exit 1
}

# One X server for all windows of this run, on a display number of its own choice.
scratch=$(mktemp -d)
server=
finish() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -rf "$scratch"
}
trap finish EXIT
mkfifo "$scratch/display"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.log" &
server=$!
read -r -t 60 number <"$scratch/display" || {
    cat "$scratch/xvfb.log"
    echo "The X server did not start."
    echo "0 passed, 1 failed"
    exit 1
}
export DISPLAY=:$number LIBGL_ALWAYS_SOFTWARE=1 XDG_RUNTIME_DIR=$scratch
chmod 700 "$scratch"

chosen=()
[ $# -eq 0 ] || chosen=(-R "$1")
[ "$preset" != tsan ] || chosen+=(-L threads)
rc=0
ctest --test-dir "$build" --output-on-failure --no-tests=error -j "$(nproc)" "${chosen[@]}" || rc=$?

log=$build/Testing/Temporary/LastTest.log
counts=$(awk -f "$top/scripts/count-tests.awk" "$log") || counts="0 passed, 1 failed"
echo "$counts"
case $counts in
*" 0 failed"*) exit $rc ;;
*) exit 1 ;;
esac
