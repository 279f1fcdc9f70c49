#!/usr/bin/env bash
# Installs what is needed, builds the command line and runs it on a bundled
# example picture. The outputs land in out/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target pictrace_cli
mkdir -p out
bin=build/release/cli/pictrace
"$bin" info examples/monkey_face-4bpp.bmp
"$bin" preview examples/monkey_face-4bpp.bmp -o out/monkey_face_preview.png
echo "demo: preview written to out/monkey_face_preview.png"
