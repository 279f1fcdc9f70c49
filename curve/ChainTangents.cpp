// Tangent estimates on point chains. A raw outline is a staircase whose
// single steps only point along the axes, so a tangent is taken over a window
// of several points: the sum of the differences of symmetric (or, at an end,
// successive) points, which weights the farther, steadier points more.
#include <algorithm>

#include "curve/FitStages.h"

namespace pictrace::curve {

namespace {

// A unit vector along v, else along the fallback, else along x.
Vec2 UnitOr(Vec2 v, Vec2 fallback) {
  Vec2 u = Normalized(v);
  if (u.x != 0.0 || u.y != 0.0) return u;
  u = Normalized(fallback);
  if (u.x != 0.0 || u.y != 0.0) return u;
  return Vec2{1.0, 0.0};
}

}  // namespace

Vec2 CentreTangent(const Vec2* pts, int nFirst, int nLast, int i, int nWindow) {
  int w = std::min(nWindow, std::min(i - nFirst, nLast - i));
  Vec2 sum;
  for (int k = 1; k <= w; k++) sum = sum + (pts[i + k] - pts[i - k]);
  Vec2 nearby = (i > nFirst && i < nLast) ? pts[i + 1] - pts[i - 1] : Vec2{};
  return UnitOr(sum, UnitOr(nearby, pts[nLast] - pts[nFirst]));
}

Vec2 StartTangent(const Vec2* pts, int n, int nWindow) {
  int w = std::min(nWindow, n - 1);
  Vec2 sum;
  for (int k = 1; k <= w; k++) sum = sum + (pts[k] - pts[0]);
  return UnitOr(sum, pts[n - 1] - pts[0]);
}

Vec2 EndTangent(const Vec2* pts, int n, int nWindow) {
  int w = std::min(nWindow, n - 1);
  Vec2 sum;
  for (int k = 1; k <= w; k++) sum = sum + (pts[n - 1 - k] - pts[n - 1]);
  return UnitOr(sum, pts[0] - pts[n - 1]);
}

bool RunIsStraight(const Vec2* pts, int n, double dTolerance) {
  if (n < 2 || pts[0] == pts[n - 1]) return false;
  for (int i = 1; i < n - 1; i++)
    if (DistanceToSegment(pts[i], pts[0], pts[n - 1]) > dTolerance) return false;
  return true;
}

}  // namespace pictrace::curve
