#!/usr/bin/env bash
# Installs what is needed, builds the command line and traces a bundled
# example picture into embroidery-ready regions. The outputs land in out/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target pictrace_cli
mkdir -p out
bin=build/release/cli/pictrace
"$bin" info examples/monkey_face-4bpp.bmp
"$bin" trace examples/monkey_face.png --colors 6 --threads threads/pec-64.csv \
  -o out/monkey_face.svg --json out/monkey_face.json --preview out/monkey_face_preview.png
"$bin" trace examples/monkey_face.png --colors 6 --curves -o out/monkey_face_curves.svg
"$bin" trace examples/monkey_face.png --width 100mm --inkstitch --threads threads/pec-64.csv \
  -o out/monkey_face_inkstitch.svg --report out/monkey_face_report.json
"$bin" lines examples/mug.png -o out/mug_lines.svg --json out/mug_lines.json
echo
echo "demo outputs in out/:"
echo "  monkey_face.svg          regions as even-odd paths, grouped by thread colour"
echo "  monkey_face_curves.svg   the same regions with Bezier outlines"
echo "  monkey_face.json         the full region result and colour lists"
echo "  monkey_face_preview.png  the preview painted by the engine"
echo "  monkey_face_inkstitch.svg  100 mm wide, for the Ink/Stitch digitizer (layers per thread, fill angles)"
echo "  monkey_face_report.json  the design report: threads, areas, estimated stitches, warnings"
echo "  mug_lines.svg/.json      centre lines of a line drawing, with their tree links"
