#!/usr/bin/env bash
# Makes the pictures of the README again. The real network is not part of this project: NETWORK and INSPECTIONS name its
# files (ISYBAU XML); without them only the sample is painted.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
pictures=$top/docs/pictures
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$pictures"

# What takes a hand on the screen is painted by the tests that have one.
labels() {
    KX_KEEP_PICTURES=$scratch "$top/test.sh" Labels
    cp "$scratch/label-with-pointer.png" "$pictures/label-dragged.png"
    cp "$scratch/label-lines.png" "$pictures/label-lines.png"
}
# A drawing, a PDF and an aerial photograph of the sample's quarter, which is invented: so they are computed.
plans() {
    local at=(--view 3d --distance 8300 --size 800x600)
    python3 "$top/samples/site_plan.py" "$scratch"
    "$top/run.sh" "${at[@]}" --screenshot "$pictures/plan-drawing.png" --plan "$scratch/site.dxf" --plan-at 561400,5934200
    "$top/run.sh" "${at[@]}" --screenshot "$pictures/plan-pdf.png" --plan "$scratch/site.pdf" \
        --plan-scale 5.3 --plan-at 561605,5934385
    "$top/run.sh" --view 3d --distance 6000 --go-to MB6 --size 1000x600 --screenshot "$pictures/plan-photo.png" \
        --plan "$scratch/photo.png" --plan-scale 5.3 --plan-at 561605,5934385
}
# The whole application, with the photograph, and a street map of the quarter.
window() {
    python3 "$top/samples/site_plan.py" "$scratch"
    "$top/run.sh" --screenshot "$pictures/window.png" --view 3d --whole-window --size 1280x800 \
        --plan "$scratch/photo.png" --plan-scale 5.3 --plan-at 561605,5934385
    python3 "$top/samples/street_tiles.py" "$scratch/tiles"
    "$top/run.sh" --screenshot "$pictures/map.png" --view 3d --size 1000x600 --tiles "$scratch/tiles"
    "$top/run.sh" --screenshot "$pictures/map-top.png" --view top --size 800x600 --go-to MB9 --distance 3000 --tiles "$scratch/tiles"
}
# "labels", "plans" or "window" alone makes those only.
case ${1:-} in
labels | plans | window)
    "$1"
    exit
    ;;
esac

"$top/run.sh" --screenshot "$pictures/sample-3d.png" --view 3d --size 1200x700
"$top/run.sh" --go-to QW2 --view 3d --distance 900 --size 800x500 --screenshot "$pictures/bends.png"
"$top/run.sh" --go-to QW2 --view 3d --distance 2400 --size 1000x500 --screenshot "$pictures/grid.png"
"$top/run.sh" --go-to KS1 --view 3d --distance 1000 --size 800x500 --screenshot "$pictures/laterals.png"
# A vehicle measures a pipe of which only the ends are known; what it finds is recorded from one whose course is.
"$top/run.sh" import "$pictures/bend.inp" "$scratch/known" --crs EPSG:25832
"$top/run.sh" record "$scratch/known" BEND "$scratch/run.csv" --noise 0.005 --seed 7
sqlite3 "$scratch/known/project.db" "UPDATE SECINSP SET INS_Shape_WKT = NULL WHERE INS_Section_FK =
    (SELECT OBJ_PK FROM SECTION WHERE OBJ_Key = 'BEND')"
for picture in 1 2 3 4; do
    rm -rf "$scratch/measured"
    cp -r "$scratch/known" "$scratch/measured"
    # The header, and a reading every 25 cm.
    head -n $((picture * 32 + 4)) "$scratch/run.csv" >"$scratch/part.csv"
    "$top/run.sh" "$scratch/measured" --inspect BEND --replay "$scratch/part.csv" --real-time \
        --go-to M --view 3d --distance 380 --size 640x380 --screenshot "$pictures/measuring-$picture.png"
done
KX_KEEP_PICTURES=$scratch "$top/test.sh" HandWork
cp "$scratch/connection-shown.png" "$pictures/connection-preview.png"
labels
plans
window
if [ -n "${NETWORK:-}" ]; then
    with=()
    [ -z "${INSPECTIONS:-}" ] || with=(--with "$INSPECTIONS")
    "$top/run.sh" import "$NETWORK" "$scratch/town" "${with[@]}"
    "$top/run.sh" "$scratch/town" --screenshot "$pictures/network-top.png" --view top --size 800x600
    "$top/run.sh" "$scratch/town" --screenshot "$pictures/network-close.png" --view 3d --size 800x600 \
        ${CLOSE_TO:+--go-to "$CLOSE_TO"} --distance "${CLOSE_DISTANCE:-1500}"
fi
