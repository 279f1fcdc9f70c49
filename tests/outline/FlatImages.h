// Random and quantized flat-colour pictures for the outline tests.
#pragma once

#include <cstdint>
#include <vector>

#include "Pictrace.h"

namespace flat {

// A small deterministic generator (the tests must not depend on the
// standard library's distributions).
struct Rng {
  std::uint64_t s;
  explicit Rng(std::uint64_t seed) : s(seed * 2654435761u + 1) {}
  std::uint32_t Next() {
    s ^= s << 13;
    s ^= s >> 7;
    s ^= s << 17;
    return static_cast<std::uint32_t>(s >> 11);
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<std::uint32_t>(n)); }
};

// A picture of random blocks of blockW x blockH pixels in `colors` colours,
// with a sprinkle of single pixels, so that corners touch and small regions
// occur. Colours are rows of a packed DIB: fn(x, row).
std::vector<COLORREF> RandomBlocks(Rng& rng, int width, int height, int colors, int blockW,
                                   int blockH, int sprinkle);

// Snaps a colour to the nearest of eight fixed colours (the corners of the
// RGB cube): each channel to 0 or 255 at 128.
COLORREF SnapToCube(COLORREF c);

}  // namespace flat
