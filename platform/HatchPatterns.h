// The six 8x8 hatch patterns of GDI brushes, aligned to device (0, 0).
#pragma once

#include <cstdint>

namespace ptgdi {

// True when pixel (x, y) belongs to the hatch lines of pattern nHatch
// (HS_HORIZONTAL .. HS_DIAGCROSS); false for an unknown pattern.
bool HatchPixel(int nHatch, std::int64_t x, std::int64_t y);

}  // namespace ptgdi
