// Tuning of a tangent estimate: the direction at a smooth join is turned to
// where the runs on its sides fit best, since a few degrees of error in an
// estimate taken from a staircase can cost a whole extra segment.
#include <algorithm>

#include "curve/FitStages.h"

namespace pictrace::curve {

Vec2 TuneTangent(const std::vector<std::function<double(Vec2)>>& sides, Vec2 estimate,
                 double dTolerance) {
  // Sides far from fitting will be split again anyway; turning the tangent
  // for them would spoil the sides that nearly fit, so only those count.
  std::vector<const std::function<double(Vec2)>*> counted;
  bool allFit = true;
  double best = 0.0;
  for (const auto& side : sides) {
    double e = side(estimate);
    if (e > dTolerance) allFit = false;
    if (e <= kTuneReach * dTolerance) {
      counted.push_back(&side);
      best = std::max(best, e);
    }
  }
  if (allFit || counted.empty()) return estimate;
  auto error = [&](Vec2 t) {
    double worst = 0.0;
    for (const auto* side : counted) worst = std::max(worst, (*side)(t));
    return worst;
  };
  Vec2 normal{-estimate.y, estimate.x};
  auto turned = [&](double s) { return Normalized(estimate + normal * s); };
  Vec2 bestT = estimate;
  // Golden-section search over the turn; every probe is remembered, and the
  // search stops as soon as a probe fits.
  const double g = 0.6180339887498949;
  double lo = -kTuneRange, hi = kTuneRange;
  double x1 = hi - g * (hi - lo), x2 = lo + g * (hi - lo);
  double e1 = error(turned(x1)), e2 = error(turned(x2));
  for (int it = 0;; it++) {
    if (e1 < best) {
      best = e1;
      bestT = turned(x1);
    }
    if (e2 < best) {
      best = e2;
      bestT = turned(x2);
    }
    if (best <= dTolerance || it == kTuneProbes) break;
    if (e1 <= e2) {
      hi = x2;
      x2 = x1;
      e2 = e1;
      x1 = hi - g * (hi - lo);
      e1 = error(turned(x1));
    } else {
      lo = x1;
      x1 = x2;
      e1 = e2;
      x2 = lo + g * (hi - lo);
      e2 = error(turned(x2));
    }
  }
  return bestT;
}

}  // namespace pictrace::curve
