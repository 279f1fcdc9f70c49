// Checks of single pixels of anything that answers GetPixel(x, y): a device
// context, a raster surface.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>

#include "WinTypes.h"

namespace testimg {

struct PixelWant {
  int x;
  int y;
  COLORREF color;
};

// Expects each listed pixel to have its colour; a failure names the pixel.
template <class Surface>
void ExpectPixels(Surface& surface, std::initializer_list<PixelWant> wants) {
  for (const PixelWant& w : wants)
    EXPECT_EQ(surface.GetPixel(w.x, w.y), w.color) << "pixel " << w.x << "," << w.y;
}

}  // namespace testimg
