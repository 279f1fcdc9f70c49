#!/usr/bin/env bash
# Times `pictrace trace` against the open vectorizer vtracer on one
# photograph resampled to several sizes, end to end (file in, SVG out,
# process start-up included on both sides), the two programs taking turns in
# the same run so that they meet the same machine load.
#
#   bench/compare_vtracer.sh [PICTURE]
#
# PICTURE defaults to ../shared/images/photo_fig_large.png (2572x1740); it is
# resampled with pictrace's own painting code (`pictrace preview`) to each of
# SIZES megapixels (default "0.5 1 2 4 8"; 8 is larger than the photo).
# pictrace is asked for 8 colours; vtracer runs with the defaults of its own
# command line (it has no colour-count option). Each program runs RUNS times
# (default 3) per size. Printed per size and program: the best and the mean
# wall time, the best CPU time (user + system), the largest resident memory
# (/usr/bin/time), and per pixel: wall and CPU microseconds and memory bytes;
# then the ratio of vtracer's best wall and CPU times to pictrace's (above 1:
# pictrace is faster).
#
# vtracer is the `vtracer` program when one is on the PATH, else the npm
# package @neplex/vectorizer (vtracer's native library for node), installed
# into a temporary directory that is removed afterwards. Without either,
# pictrace alone is measured and the comparison is skipped with a message.
# Environment: PICTRACE (the program), BUILD (its build directory), RUNS, SIZES.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${BUILD:-$ROOT/build/release}
PICTRACE=${PICTRACE:-$BUILD/cli/pictrace}
SRC=${1:-$ROOT/../shared/images/photo_fig_large.png}
RUNS=${RUNS:-3}
SIZES=${SIZES:-0.5 1 2 4 8}

die() { echo "compare_vtracer: $*" >&2; exit 1; }
[ -x "$PICTRACE" ] || die "no pictrace program at $PICTRACE (build it, or set PICTRACE)"
[ -r "$SRC" ] || die "cannot read the picture $SRC"
[ -x /usr/bin/time ] || die "needs /usr/bin/time (Debian package time) for the memory figures"

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT

# --- vtracer: a program on the PATH, or the node package
VT=""
if command -v vtracer >/dev/null; then
  VT=cli
  VT_NAME="vtracer ($(command -v vtracer))"
elif command -v node >/dev/null && command -v npm >/dev/null &&
  (cd "$WORK" && npm init -y >/dev/null 2>&1 &&
    npm install --silent --no-audit --no-fund @neplex/vectorizer >/dev/null 2>&1); then
  VT=node
  VT_NAME="vtracer (@neplex/vectorizer $(node -p "require('$WORK/node_modules/@neplex/vectorizer/package.json').version"))"
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
else
  echo "compare_vtracer: vtracer is not installed (no vtracer program, and node/npm could not" \
    "install @neplex/vectorizer): measuring pictrace alone, comparison skipped" >&2
fi

# measure NAME PICTURE: one timed run of pictrace or vtracer, appended to
# $WORK/NAME.times as "wall cpu maxrss_kb".
measure() {
  local out=$WORK/$1.svg cmd
  case $1-$VT in
    pictrace-*) cmd=("$PICTRACE" trace "$2" -o "$out" --colors 8) ;;
    vtracer-cli) cmd=(vtracer --input "$2" --output "$out") ;;
    vtracer-node) cmd=(node "$WORK/vtrace.js" "$WORK" "$2" "$out") ;;
  esac
  /usr/bin/time -f "%e %U %S %M" -o "$WORK/time" "${cmd[@]}" >/dev/null 2>"$WORK/stderr" ||
    { cat "$WORK/stderr" >&2; die "$1 failed on $2"; }
  awk '{ printf "%s %.2f %s\n", $1, $2 + $3, $4 }' "$WORK/time" >>"$WORK/$1.times"
}

# summary NAME PIXELS: one table row from NAME.times; sets BEST_WALL, BEST_CPU.
summary() {
  read -r BEST_WALL MEAN_WALL BEST_CPU RSS < <(awk '
    NR == 1 || $1 < w { w = $1 } NR == 1 || $2 < c { c = $2 } $3 > m { m = $3 } { s += $1 }
    END { printf "%.2f %.2f %.2f %d\n", w, s / NR, c, m }' "$WORK/$1.times")
  awk -v n="$3" -v p="$2" -v w="$BEST_WALL" -v mw="$MEAN_WALL" -v c="$BEST_CPU" -v m="$RSS" 'BEGIN {
    printf "  %-40s %6.2f %6.2f %6.2f %7.0f  %7.2f %7.2f %6.0f\n", n, w, mw, c, m / 1024, w / p * 1e6, c / p * 1e6, m * 1024 / p }'
}

W_H=$("$PICTRACE" info "$SRC" | awk '/^file image:/ {print $3, $5; exit}')
read -r W H <<<"$W_H"
[ -n "${W:-}" ] && [ -n "${H:-}" ] || die "cannot read the size of $SRC"
echo "picture: $(basename "$SRC") ${W}x${H}; $RUNS runs per program and size, taking turns"
echo "load before: $(uptime)"
printf '  %-40s %6s %6s %6s %7s  %7s %7s %6s\n' "" "best" "mean" "cpu" "max" "us/px" "cpu" "bytes"
printf '  %-40s %6s %6s %6s %7s  %7s %7s %6s\n' "program" "wall s" "wall s" "s" "RSS MB" "wall" "us/px" "/px"
for MP in $SIZES; do
  read -r NW NH < <(awk -v w="$W" -v h="$H" -v t="$MP" \
    'BEGIN { s = sqrt(t * 1e6 / (w * h)); printf "%d %d\n", w * s + 0.5, h * s + 0.5 }')
  PIC=$WORK/photo-${MP}mp.png
  "$PICTRACE" preview "$SRC" -o "$PIC" --width "$NW" --height "$NH" >/dev/null
  PIXELS=$((NW * NH))
  echo "${MP} MP: ${NW}x${NH} = $PIXELS pixels"
  rm -f "$WORK"/*.times
  for _ in $(seq "$RUNS"); do
    measure pictrace "$PIC"
    [ -z "$VT" ] || measure vtracer "$PIC"
  done
  summary pictrace "$PIXELS" "pictrace trace --colors 8"
  PT_WALL=$BEST_WALL PT_CPU=$BEST_CPU
  if [ -n "$VT" ]; then
    summary vtracer "$PIXELS" "$VT_NAME"
    awk -v a="$PT_WALL" -v b="$BEST_WALL" -v c="$PT_CPU" -v d="$BEST_CPU" 'BEGIN {
      printf "  vtracer / pictrace: %.2f wall, %.2f CPU (above 1: pictrace is faster)\n", b / a, d / c }'
  fi
done
echo "load after: $(uptime)"
