// Smoothing of point runs, used to guide the fit of raw staircase outlines:
// the curve should join and turn where the outline runs, not on the outer or
// inner teeth of its staircase.
#include <algorithm>

#include "curve/FitStages.h"

namespace pictrace::curve {

namespace {

// Savitzky-Golay smoothing of degree two over 2h + 1 points: the weights of
// the least-squares parabola's value at the middle. Unlike a plain average
// it leaves arcs where they are (no shrinking towards the centre of a
// curve) while the staircase teeth average out.
Vec2 QuadraticSmooth(const std::vector<Vec2>& in, bool closed, int i, int h) {
  const int n = static_cast<int>(in.size());
  double norm = (2.0 * h + 1.0) * (4.0 * h * h + 4.0 * h - 3.0);
  double base = 3.0 * (3.0 * h * h + 3.0 * h - 1.0);
  Vec2 sum;
  for (int k = -h; k <= h; k++) {
    double w = (base - 15.0 * k * k) / norm;
    sum = sum + in[closed ? ((i + k) % n + n) % n : i + k] * w;
  }
  return sum;
}

}  // namespace

std::vector<Vec2> SmoothRun(const std::vector<Vec2>& pts, bool bClosed, int nHalf, double dMaxShift) {
  const int n = static_cast<int>(pts.size());
  std::vector<Vec2> s = pts;
  for (int i = 0; i < n; i++) {
    // A parabola through three points is exact, so windows of one point on
    // each side would change nothing.
    int h = bClosed ? std::min(nHalf, (n - 1) / 2) : std::min(nHalf, std::min(i, n - 1 - i));
    if (h >= 2) s[i] = QuadraticSmooth(pts, bClosed, i, h);
    double shift = Distance(s[i], pts[i]);
    if (shift > dMaxShift) s[i] = pts[i] + (s[i] - pts[i]) * (dMaxShift / shift);
  }
  return s;
}

}  // namespace pictrace::curve
