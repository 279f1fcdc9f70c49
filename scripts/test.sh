#!/usr/bin/env bash
# Installs what is needed, builds everything and runs all tests.
# PICTRACE_PRESET=asan runs them under AddressSanitizer + UBSan instead.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
preset="${PICTRACE_PRESET:-release}"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
