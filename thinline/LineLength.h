// The shortest chain of skeleton pixels kept as a thin line.
#pragma once

#include <cmath>

#include "AfxWin.h"

namespace pictrace {
namespace thinline {

// sqrt(300) points at one output unit per pixel, shrinking as the output
// grows, never below 2. ratio is the larger of the two output units per
// pixel (the width's on a tie); with the zero rectangle it is 0 and the
// length becomes +infinity, so every chain that ends is dropped.
inline double MinimumLineLength(const CRect& rcReal, int width, int height) {
  const double rx = rcReal.Width() * 1.0 / width;
  const double ry = rcReal.Height() * 1.0 / height;
  const double ratio = (ry > rx) ? ry : rx;
  double length = std::sqrt(3.0 * 100.0 / ratio / ratio);
  if (length < 2.0) length = 2.0;
  return length;
}

}  // namespace thinline
}  // namespace pictrace
