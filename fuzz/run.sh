#!/usr/bin/env bash
# Builds a fuzzer with clang (libFuzzer, ASan + UBSan) and runs it on a
# corpus seeded from the project:
#   image     the picture file readers, from fuzz/seeds/ and the small examples
#   pipeline  the tracing stages on small synthetic pictures, from
#             fuzz/pipeline-seeds/, 10 s at most per input
# Usage: fuzz/run.sh [image|pipeline] [seconds]   (default: image, 300)
set -euo pipefail
cd "$(dirname "$0")/.."
target=${1:-image}
seconds=${2:-300}
build=build-fuzz
cmake -S . -B "$build" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPICTRACE_FUZZ=ON -DPICTRACE_TESTS=OFF -DPICTRACE_BENCH=OFF >/dev/null
corpus="$build/fuzz/corpus-$target"
artifacts="$build/fuzz/artifacts-$target/"
mkdir -p "$corpus" "$artifacts"
case "$target" in
  image)
    cmake --build "$build" --target fuzz_image_input -j2
    cp fuzz/seeds/* "$corpus"/
    find examples -type f -size -100k \( -name '*.png' -o -name '*.bmp' -o -name '*.jpg' \) -exec cp {} "$corpus"/ \;
    "$build/fuzz/fuzz_image_input" "$corpus" -max_total_time="$seconds" -max_len=131072 \
      -rss_limit_mb=2048 -artifact_prefix="$artifacts" -print_final_stats=1 ;;
  pipeline)
    cmake --build "$build" --target fuzz_pipeline -j2
    cp fuzz/pipeline-seeds/* "$corpus"/
    "$build/fuzz/fuzz_pipeline" "$corpus" -max_total_time="$seconds" -max_len=8192 -timeout=10 \
      -rss_limit_mb=2048 -artifact_prefix="$artifacts" -print_final_stats=1 ;;
  *) echo "usage: fuzz/run.sh [image|pipeline] [seconds]" >&2; exit 2 ;;
esac
