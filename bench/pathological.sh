#!/usr/bin/env bash
# Times `pictrace trace` on the pictures that once made the block stage
# crawl (bench/pathological.py writes them): dithered photographs at 0.25,
# 0.5, 1 and 2 megapixels, one-pixel checkerboards at 1 and 4, uniform noise
# at 1. Each run is cut off after LIMIT seconds (default 120).
#
#   bench/pathological.sh [NAME ...]
#
# Environment: PICTRACE (the program), BUILD (its build directory), LIMIT,
# PICTURES (a folder to keep the pictures in; default a temporary one).
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${BUILD:-$ROOT/build/release}
PICTRACE=${PICTRACE:-$BUILD/cli/pictrace}
LIMIT=${LIMIT:-120}
[ -x "$PICTRACE" ] || { echo "pathological: no pictrace program at $PICTRACE" >&2; exit 1; }

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
PICTURES=${PICTURES:-$WORK/pictures}
NAMES=("$@")
[ ${#NAMES[@]} -gt 0 ] || NAMES=(dither_0.25mp dither_0.5mp dither_1mp dither_2mp checker_1mp checker_4mp noise_1mp)
missing=()
for n in "${NAMES[@]}"; do [ -r "$PICTURES/$n.png" ] || missing+=("$n"); done
[ ${#missing[@]} -eq 0 ] || python3 "$ROOT/bench/pathological.py" "$PICTURES" --pictrace "$PICTRACE" --only "${missing[@]}" >/dev/null

printf '%-16s %10s %10s %10s\n' picture wall_s user_s peak_MB
for n in "${NAMES[@]}"; do
  status=0
  /usr/bin/time -f '%e %U %M' -o "$WORK/time" timeout "$LIMIT" \
    "$PICTRACE" trace "$PICTURES/$n.png" -o "$WORK/out.svg" >/dev/null 2>"$WORK/err" || status=$?
  read -r wall user kb < <(tail -1 "$WORK/time")
  if [ "$status" -eq 124 ]; then wall=">$LIMIT"; fi
  printf '%-16s %10s %10s %10d\n' "$n" "$wall" "$user" $((kb / 1024))
done
