// Smoothing of point runs, used to guide the fit of raw staircase outlines:
// the curve should join and turn where the outline runs, not on the outer or
// inner teeth of its staircase.
#include <algorithm>

#include "curve/FitStages.h"

namespace pictrace {
namespace curve {

namespace {

// Two passes of a box average make a triangular weighting, which removes the
// period-two teeth of diagonal staircases and most of the longer ones.
const int kPasses = 2;

std::vector<Vec2> BoxPass(const std::vector<Vec2>& in, bool closed, int half) {
  const int n = static_cast<int>(in.size());
  std::vector<Vec2> out(in);
  for (int i = 0; i < n; i++) {
    int h = closed ? std::min(half, (n - 1) / 2) : std::min(half, std::min(i, n - 1 - i));
    if (h <= 0) continue;
    Vec2 sum;
    for (int k = -h; k <= h; k++) sum = sum + in[closed ? ((i + k) % n + n) % n : i + k];
    out[i] = sum * (1.0 / (2 * h + 1));
  }
  return out;
}

}  // namespace

std::vector<Vec2> SmoothRun(const std::vector<Vec2>& pts, bool bClosed, int nHalf, double dMaxShift) {
  std::vector<Vec2> s = pts;
  for (int pass = 0; pass < kPasses; pass++) s = BoxPass(s, bClosed, nHalf);
  for (size_t i = 0; i < s.size(); i++) {
    double shift = Distance(s[i], pts[i]);
    if (shift > dMaxShift) s[i] = pts[i] + (s[i] - pts[i]) * (dMaxShift / shift);
  }
  return s;
}

}  // namespace curve
}  // namespace pictrace
