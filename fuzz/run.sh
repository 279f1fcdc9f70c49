#!/usr/bin/env bash
# Builds the image-input fuzzer with clang and runs it on a corpus seeded
# from fuzz/seeds/ and the small bundled examples.
# Usage: fuzz/run.sh [seconds]   (default 300)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-300}
build=build-fuzz
cmake -S . -B "$build" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPICTRACE_FUZZ=ON -DPICTRACE_TESTS=OFF -DPICTRACE_BENCH=OFF >/dev/null
cmake --build "$build" --target fuzz_image_input -j2
corpus="$build/fuzz/corpus"
mkdir -p "$corpus" "$build/fuzz/artifacts"
cp fuzz/seeds/* "$corpus"/
find examples -type f -size -100k \( -name '*.png' -o -name '*.bmp' -o -name '*.jpg' \) -exec cp {} "$corpus"/ \;
"$build/fuzz/fuzz_image_input" "$corpus" -max_total_time="$seconds" -max_len=131072 \
  -rss_limit_mb=2048 -artifact_prefix="$build/fuzz/artifacts/" -print_final_stats=1
