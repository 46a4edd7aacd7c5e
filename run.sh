#!/usr/bin/env bash
# ./run.sh [ARGUMENTS]: installs what is missing, builds in release mode and starts "kxviewer ARGUMENTS".
# Without arguments the sample opens. Without a display the view goes into a picture file, whose name is printed.
set -euo pipefail
# For --timing.
export KX_STARTED_MS=$(date +%s%3N)
top=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$top/scripts/packages.sh"

headless=no
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || headless=yes

packages=("${kx_build_packages[@]}" "${kx_run_packages[@]}")
[ $headless = no ] || packages+=("${kx_headless_packages[@]}")
kx_install_missing "${packages[@]}"

# The build speaks only when it takes a while or fails.
mkdir -p "$top/build"
log=$top/build/run-build.log
build() {
    cd "$top"
    # The build configures itself anew where its files say other things than before.
    [ -f build/release/build.ninja ] || cmake --preset release
    cmake --build build/release --target kxviewer
}
[ -x "$top/build/release/bin/kxviewer" ] || echo "Building kxviewer; the first time takes some minutes." >&2
(build) >"$log" 2>&1 || {
    tail -n 40 "$log" >&2
    echo "The build failed; all of its messages are in $log" >&2
    exit 1
}

viewer=$top/build/release/bin/kxviewer
if [ $headless = no ]; then
    exec "$viewer" "$@"
fi

# Commands that print or write files need no screen; only a window does.
window=yes
picture=
for argument in "$@"; do
    case $argument in
    --help | -h | --version | --dump | --dump=*) window=no ;;
    --screenshot | --screenshot=* | --print | --print=*) picture=given ;;
    esac
done
case ${1:-} in import | info | findings | record) window=no ;; esac
if [ $window = no ]; then
    exec "$viewer" "$@"
fi
if [ -z "$picture" ]; then
    picture=$top/build/kxviewer.png
    set -- "$@" --screenshot "$picture"
    rm -f "$picture"
fi
export LIBGL_ALWAYS_SOFTWARE=1
rc=0
xvfb-run -a -s "-screen 0 1920x1200x24" "$viewer" "$@" || rc=$?
if [ $rc -eq 0 ] && [ "$picture" != given ]; then
    echo "No display here; the view is in the picture $picture"
fi
exit $rc
