#!/usr/bin/env bash
# Times `pictrace trace` against the open vectorizer vtracer (npm package
# @neplex/vectorizer) on the same 2-megapixel photograph, end to end: file in,
# SVG out, process start-up included on both sides.
#
#   bench/compare_vtracer.sh [PICTURE]
#
# PICTURE defaults to ../shared/images/photo_fig_large.png; it is resampled to
# about 2 megapixels with pictrace's own painting code (`pictrace preview`).
# pictrace is asked for 8 colours; vtracer runs with its default colour
# settings (it has no colour-count option). Each program runs RUNS times
# (default 3) and the best time counts. Needs node and npm; vtracer is
# installed into a temporary directory that is removed afterwards.
# Environment: PICTRACE (the program), BUILD (its build directory), RUNS.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${BUILD:-$ROOT/build/release}
PICTRACE=${PICTRACE:-$BUILD/cli/pictrace}
SRC=${1:-$ROOT/../shared/images/photo_fig_large.png}
RUNS=${RUNS:-3}
TARGET_PIXELS=2000000

die() { echo "compare_vtracer: $*" >&2; exit 1; }
[ -x "$PICTRACE" ] || die "no pictrace program at $PICTRACE (build it, or set PICTRACE)"
[ -r "$SRC" ] || die "cannot read the picture $SRC"
command -v node >/dev/null || die "node is not installed"
command -v npm >/dev/null || die "npm is not installed"

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT

# --- the 2-megapixel picture
read -r W H < <("$PICTRACE" info "$SRC" | awk '/^file image:/ {print $3, $5; exit}')
[ -n "${W:-}" ] && [ -n "${H:-}" ] || die "cannot read the size of $SRC"
read -r NW NH < <(awk -v w="$W" -v h="$H" -v t="$TARGET_PIXELS" \
  'BEGIN { s = sqrt(t / (w * h)); printf "%d %d\n", w * s + 0.5, h * s + 0.5 }')
PIC=$WORK/photo-2mp.png
"$PICTRACE" preview "$SRC" -o "$PIC" --width "$NW" --height "$NH" >/dev/null
echo "picture: $(basename "$SRC") ${W}x${H} resampled to ${NW}x${NH} ($((NW * NH)) pixels)"

# --- vtracer
(cd "$WORK" && npm init -y >/dev/null 2>&1 &&
  npm install --silent --no-audit --no-fund @neplex/vectorizer >/dev/null 2>&1) ||
  die "npm could not install @neplex/vectorizer"
VT_VERSION=$(node -p "require('$WORK/node_modules/@neplex/vectorizer/package.json').version")
cat >"$WORK/vtrace.js" <<'EOF'
// vtracer with the defaults of its own command line (colour, stacked, spline).
const fs = require('fs');
const v = require(process.argv[2] + '/node_modules/@neplex/vectorizer');
const svg = v.vectorizeSync(fs.readFileSync(process.argv[3]), {
  colorMode: v.ColorMode.Color, hierarchical: v.Hierarchical.Stacked,
  filterSpeckle: 4, colorPrecision: 6, layerDifference: 16,
  mode: v.PathSimplifyMode.Spline, cornerThreshold: 60, lengthThreshold: 4,
  maxIterations: 10, spliceThreshold: 45, pathPrecision: 2,
});
fs.writeFileSync(process.argv[4], svg);
EOF

now() { date +%s.%N; }
# best_of NAME COMMAND...: runs the command RUNS times, prints the best wall time.
best_of() {
  local best="" t0 t1 t
  for _ in $(seq "$RUNS"); do
    t0=$(now)
    "$@" >/dev/null 2>"$WORK/stderr" || { cat "$WORK/stderr" >&2; die "failed: $*"; }
    t1=$(now)
    t=$(awk -v a="$t0" -v b="$t1" 'BEGIN { printf "%.3f", b - a }')
    if [ -z "$best" ] || awk -v t="$t" -v b="$best" 'BEGIN { exit !(t < b) }'; then best=$t; fi
  done
  echo "$best"
}

T_PT=$(best_of "$PICTRACE" trace "$PIC" -o "$WORK/pictrace.svg" --colors 8)
T_PTC=$(best_of "$PICTRACE" trace "$PIC" -o "$WORK/pictrace-curves.svg" --colors 8 --curves)
T_VT=$(best_of node "$WORK/vtrace.js" "$WORK" "$PIC" "$WORK/vtracer.svg")

paths() { grep -o '<path' "$1" | wc -l; }
size() { wc -c <"$1" | tr -d ' '; }
printf '%-34s %8s %8s %10s\n' "program" "seconds" "paths" "SVG bytes"
printf '%-34s %8s %8s %10s\n' "pictrace trace --colors 8" "$T_PT" "$(paths "$WORK/pictrace.svg")" "$(size "$WORK/pictrace.svg")"
printf '%-34s %8s %8s %10s\n' "pictrace trace --colors 8 --curves" "$T_PTC" "$(paths "$WORK/pictrace-curves.svg")" "$(size "$WORK/pictrace-curves.svg")"
printf '%-34s %8s %8s %10s\n' "vtracer $VT_VERSION (defaults)" "$T_VT" "$(paths "$WORK/vtracer.svg")" "$(size "$WORK/vtracer.svg")"
awk -v a="$T_PT" -v c="$T_PTC" -v b="$T_VT" 'BEGIN {
  printf "ratio pictrace / vtracer: %.2f straight, %.2f curves (below 1 is faster)\n", a / b, c / b }'
