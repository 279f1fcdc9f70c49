// Helpers of the curve tests: staircase outlines of pixel shapes, the fitter's
// output as segments, and distances from points to a fitted curve.
#pragma once

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "curve/BezierFit.h"
#include "curve/FitStages.h"

namespace curvetest {

using pictrace::curve::Cubic;
using pictrace::curve::Vec2;

struct Seg {  // a cubic and its two corner flags
  Cubic c;
  bool cornerStart, cornerEnd;
};

// Runs FitBezierChain (int chains) or FitBezierChainD (double chains).
template <class T>
std::vector<Seg> Fit(const std::vector<T>& chain, int flag, double tol) {
  int n = -1, last = static_cast<int>(chain.size() / 2) - 1;
  double* raw;
  if constexpr (std::is_same_v<T, int>) raw = pictrace::FitBezierChain(chain.data(), last, flag, tol, n);
  else raw = pictrace::FitBezierChainD(chain.data(), last, flag, tol, n);
  std::vector<Seg> segs(n);
  for (int i = 0; i < n; i++) {
    const double* r = raw + 10 * i;
    segs[i] = {{{{r[0], r[1]}, {r[2], r[3]}, {r[4], r[5]}, {r[6], r[7]}}}, r[8] != 0.0, r[9] != 0.0};
  }
  delete[] raw;
  return segs;
}

// Outer crack boundary (y down, clockwise, first point repeated at the end)
// of the 4-connected shape holding the first inside pixel in row order.
inline std::vector<int> TraceOutline(int w, int h, const std::function<bool(int, int)>& inside) {
  auto in = [&](int x, int y) { return x >= 0 && y >= 0 && x < w && y < h && inside(x, y); };
  int s = 0, x, y, d = 3;
  while (!in(s % w, s / w)) s++;
  std::vector<int> chain = {x = s % w, y = s / w};
  do {
    for (int nd : {(d + 1) % 4, d, (d + 3) % 4}) {  // right turn first: the inside is on the right
      bool ahead = in(x - 1 + (nd == 0 || nd == 3), y - 1 + (nd == 0 || nd == 1));
      bool beside = in(x - 1 + (nd == 0 || nd == 1), y - 1 + (nd == 1 || nd == 2));
      if (ahead && !beside) { d = nd; break; }
    }
    chain.insert(chain.end(), {x += (d == 0) - (d == 2), y += (d == 1) - (d == 3)});
  } while (x != chain[0] || y != chain[1]);
  return chain;
}

inline std::vector<int> Disc(double r, int c) {
  return TraceOutline(2 * c, 2 * c, [=](int x, int y) { return std::hypot(x + 0.5 - c, y + 0.5 - c) <= r; });
}

// Distance to the curve: the nearest of samples about a unit apart, refined
// by a ternary search; every distance taken is to a curve point, so it never
// falls short of the true distance.
inline double DistanceToCurve(const std::vector<Seg>& segs, Vec2 p) {
  double best = 1e300;
  for (const Seg& s : segs) {
    auto d = [&](double t) { return Distance(pictrace::curve::CubicPoint(s.c, t), p); };
    const int n = 8 + int(Distance(s.c.p[0], s.c.p[1]) + Distance(s.c.p[1], s.c.p[2]) + Distance(s.c.p[2], s.c.p[3]));
    int k = 0;
    for (int i = 1; i <= n; i++) k = d(i / double(n)) < d(k / double(n)) ? i : k;
    double lo = std::max(0, k - 1) / double(n), hi = std::min(n, k + 1) / double(n);
    for (int it = 0; it < 40; it++) {
      double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
      if (d(m1) < d(m2)) hi = m2; else lo = m1;
    }
    best = std::min({best, d(k / double(n)), d(lo)});
  }
  return best;
}

// Largest distance of the chain's points, and of steps - 1 points between
// each two along its polyline, from the curve.
template <class T>
double MaxDistance(const std::vector<Seg>& segs, const std::vector<T>& chain, int steps = 1) {
  double worst = 0.0;
  for (size_t i = 0; i + 1 < chain.size(); i += 2) {
    Vec2 a{double(chain[i]), double(chain[i + 1])};
    Vec2 b = i + 3 < chain.size() ? Vec2{double(chain[i + 2]), double(chain[i + 3])} : a;
    for (int k = 0; k < steps; k++) worst = std::max(worst, DistanceToCurve(segs, a + (b - a) * (double(k) / steps)));
  }
  return worst;
}

// Sine of the kink from segment i into the next (1 when the curve doubles back).
inline double Kink(const std::vector<Seg>& segs, size_t i) {
  Vec2 u = Normalized(segs[i].c.p[3] - segs[i].c.p[2]), v = Normalized(segs[(i + 1) % segs.size()].c.p[1] - segs[(i + 1) % segs.size()].c.p[0]);
  return Dot(u, v) <= 0.0 ? 1.0 : std::fabs(Cross(u, v));
}

// Largest distance of the control points from the chord.
inline double ControlOffLine(const Seg& s) {
  Vec2 d = Normalized(s.c.p[3] - s.c.p[0]);
  return std::max(std::fabs(Cross(d, s.c.p[1] - s.c.p[0])), std::fabs(Cross(d, s.c.p[2] - s.c.p[0])));
}

}  // namespace curvetest
