#!/usr/bin/env bash
# Makes the pictures of the README again. The real network is not part of this project: NETWORK and INSPECTIONS name its
# files (ISYBAU XML); without them only the sample is painted.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
pictures=$top/docs/pictures
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$pictures"

"$top/run.sh" --screenshot "$pictures/sample-3d.png" --view 3d --size 1200x700
"$top/run.sh" --screenshot "$pictures/window.png" --view 3d --whole-window --size 1200x750
if [ -n "${NETWORK:-}" ]; then
    with=()
    [ -z "${INSPECTIONS:-}" ] || with=(--with "$INSPECTIONS")
    "$top/run.sh" import "$NETWORK" "$scratch/town" "${with[@]}"
    "$top/run.sh" "$scratch/town" --screenshot "$pictures/network-top.png" --view top --size 800x600
    "$top/run.sh" "$scratch/town" --screenshot "$pictures/network-close.png" --view 3d --size 800x600 \
        ${CLOSE_TO:+--go-to "$CLOSE_TO"} --distance "${CLOSE_DISTANCE:-900}"
fi
