#include "curve/CurveTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "curve/BezierFit.h"

namespace curvetest {

namespace {

Pt Sub(Pt a, Pt b) { return {a.x - b.x, a.y - b.y}; }
double Dot(Pt a, Pt b) { return a.x * b.x + a.y * b.y; }
double Len(Pt a) { return std::sqrt(Dot(a, a)); }

Pt Eval(const Seg& s, double t) {
  double u = 1.0 - t;
  double b0 = u * u * u, b1 = 3 * u * u * t, b2 = 3 * u * t * t, b3 = t * t * t;
  return {s.p[0].x * b0 + s.p[1].x * b1 + s.p[2].x * b2 + s.p[3].x * b3,
          s.p[0].y * b0 + s.p[1].y * b1 + s.p[2].y * b2 + s.p[3].y * b3};
}

std::vector<Seg> ToSegs(double* raw, int n) {
  std::vector<Seg> segs;
  for (int i = 0; i < n; i++) {
    const double* s = raw + 10 * i;
    Seg seg{};
    for (int k = 0; k < 4; k++) seg.p[k] = {s[2 * k], s[2 * k + 1]};
    seg.cornerStart = s[8] != 0.0;
    seg.cornerEnd = s[9] != 0.0;
    segs.push_back(seg);
  }
  delete[] raw;
  return segs;
}

// Direction of the curve where it leaves a segment's start (or, reversed,
// arrives at its end), skipping control points that coincide with the end.
Pt StartDirection(const Seg& s) {
  for (int k = 1; k < 4; k++) {
    Pt d = Sub(s.p[k], s.p[0]);
    if (Len(d) > 0.0) return d;
  }
  return {0, 0};
}

Pt EndDirection(const Seg& s) {
  for (int k = 2; k >= 0; k--) {
    Pt d = Sub(s.p[3], s.p[k]);
    if (Len(d) > 0.0) return d;
  }
  return {0, 0};
}

}  // namespace

std::vector<int> TraceOutline(int w, int h, const std::function<bool(int x, int y)>& inside) {
  auto in = [&](int x, int y) { return x >= 0 && y >= 0 && x < w && y < h && inside(x, y); };
  int sx = -1, sy = -1;
  for (int y = 0; y < h && sx < 0; y++)
    for (int x = 0; x < w; x++)
      if (in(x, y)) {
        sx = x;
        sy = y;
        break;
      }
  std::vector<int> chain;
  if (sx < 0) return chain;
  // Headings 0 = +x, 1 = +y, 2 = -x, 3 = -y; adding 1 turns right (y down),
  // towards the inside, which keeps diagonal neighbours apart.
  const int dx[4] = {1, 0, -1, 0}, dy[4] = {0, 1, 0, -1};
  auto exists = [&](int x, int y, int d) {
    bool ul = in(x - 1, y - 1), ur = in(x, y - 1), ll = in(x - 1, y), lr = in(x, y);
    switch (d) {
      case 0: return lr && !ur;
      case 1: return ll && !lr;
      case 2: return ul && !ll;
      default: return ur && !ul;
    }
  };
  int x = sx, y = sy, d = 3;
  chain.push_back(x);
  chain.push_back(y);
  do {
    const int order[3] = {(d + 1) % 4, d, (d + 3) % 4};
    for (int nd : order)
      if (exists(x, y, nd)) {
        d = nd;
        break;
      }
    x += dx[d];
    y += dy[d];
    chain.push_back(x);
    chain.push_back(y);
  } while (x != sx || y != sy);
  return chain;
}

std::vector<int> DiscOutline(double r, int c) {
  return TraceOutline(2 * c, 2 * c, [r, c](int x, int y) {
    double fx = x + 0.5 - c, fy = y + 0.5 - c;
    return fx * fx + fy * fy <= r * r;
  });
}

std::vector<int> StaircaseLine(int dx, int dy) {
  std::vector<int> chain = {0, 0};
  int x = 0, y = 0, sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
  while (x != dx || y != dy) {
    long long ex = std::llabs(static_cast<long long>(x + sx) * dy - static_cast<long long>(y) * dx);
    long long ey = std::llabs(static_cast<long long>(x) * dy - static_cast<long long>(y + sy) * dx);
    if (y == dy || (x != dx && ex <= ey))
      x += sx;
    else
      y += sy;
    chain.push_back(x);
    chain.push_back(y);
  }
  return chain;
}

std::vector<Seg> Fit(const std::vector<int>& chain, int nFlag, double dTolerance) {
  int n = 0;
  double* raw = pictrace::FitBezierChain(chain.data(), static_cast<int>(chain.size() / 2) - 1, nFlag,
                                         dTolerance, n);
  return ToSegs(raw, n);
}

std::vector<Seg> FitD(const std::vector<double>& chain, int nFlag, double dTolerance) {
  int n = 0;
  double* raw = pictrace::FitBezierChainD(chain.data(), static_cast<int>(chain.size() / 2) - 1,
                                          nFlag, dTolerance, n);
  return ToSegs(raw, n);
}

double DistanceToCurve(const std::vector<Seg>& segs, Pt p) {
  double best = 1e300;
  for (const Seg& s : segs) {
    // A segment lies in the hull of its control points: skip it when that
    // box is already farther than the best distance.
    double minx = s.p[0].x, maxx = minx, miny = s.p[0].y, maxy = miny;
    for (int k = 1; k < 4; k++) {
      minx = std::min(minx, s.p[k].x);
      maxx = std::max(maxx, s.p[k].x);
      miny = std::min(miny, s.p[k].y);
      maxy = std::max(maxy, s.p[k].y);
    }
    double bx = std::max({minx - p.x, 0.0, p.x - maxx}), by = std::max({miny - p.y, 0.0, p.y - maxy});
    if (std::sqrt(bx * bx + by * by) > best) continue;
    // Nearest of a few samples, then Newton steps towards the nearest curve
    // point: every distance taken is to a true curve point, so the result is
    // never below the true distance, and the steps make it exact.
    double hull = Len(Sub(s.p[1], s.p[0])) + Len(Sub(s.p[2], s.p[1])) + Len(Sub(s.p[3], s.p[2]));
    int steps = std::max(16, static_cast<int>(std::ceil(hull * 2.0)));
    int bestK = 0;
    double bestK2 = 1e300;
    for (int k = 0; k <= steps; k++) {
      Pt d = Sub(Eval(s, static_cast<double>(k) / steps), p);
      if (Dot(d, d) < bestK2) {
        bestK2 = Dot(d, d);
        bestK = k;
      }
    }
    best = std::min(best, std::sqrt(bestK2));
    double lo = std::max(0, bestK - 1) / static_cast<double>(steps);
    double hi = std::min(steps, bestK + 1) / static_cast<double>(steps);
    double t = static_cast<double>(bestK) / steps;
    for (int it = 0; it < 12; it++) {
      double u = 1.0 - t;
      Pt q = Eval(s, t);
      Pt d1 = {3 * u * u * (s.p[1].x - s.p[0].x) + 6 * u * t * (s.p[2].x - s.p[1].x) + 3 * t * t * (s.p[3].x - s.p[2].x),
               3 * u * u * (s.p[1].y - s.p[0].y) + 6 * u * t * (s.p[2].y - s.p[1].y) + 3 * t * t * (s.p[3].y - s.p[2].y)};
      Pt d2 = {6 * u * (s.p[2].x - 2 * s.p[1].x + s.p[0].x) + 6 * t * (s.p[3].x - 2 * s.p[2].x + s.p[1].x),
               6 * u * (s.p[2].y - 2 * s.p[1].y + s.p[0].y) + 6 * t * (s.p[3].y - 2 * s.p[2].y + s.p[1].y)};
      Pt diff = Sub(q, p);
      double den = Dot(d1, d1) + Dot(diff, d2);
      if (!(den > 0.0)) break;
      t = std::clamp(t - Dot(diff, d1) / den, lo, hi);
      best = std::min(best, Len(Sub(Eval(s, t), p)));
    }
  }
  return best;
}

double MaxChainDistance(const std::vector<Seg>& segs, const std::vector<int>& chain) {
  double worst = 0.0;
  for (size_t i = 0; i + 1 < chain.size(); i += 2)
    worst = std::max(worst, DistanceToCurve(segs, {static_cast<double>(chain[i]), static_cast<double>(chain[i + 1])}));
  return worst;
}

double MaxPathDistance(const std::vector<Seg>& segs, const std::vector<double>& chain) {
  double worst = 0.0;
  for (size_t i = 0; i + 3 < chain.size(); i += 2) {
    Pt a{chain[i], chain[i + 1]}, b{chain[i + 2], chain[i + 3]};
    int steps = std::max(1, static_cast<int>(std::ceil(Len(Sub(b, a)) * 20.0)));
    for (int k = 0; k <= steps; k++) {
      double t = static_cast<double>(k) / steps;
      worst = std::max(worst, DistanceToCurve(segs, {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t}));
    }
  }
  return worst;
}

double JoinKink(const std::vector<Seg>& segs, size_t i) {
  Pt a = EndDirection(segs[i]);
  Pt b = StartDirection(segs[(i + 1) % segs.size()]);
  double la = Len(a), lb = Len(b);
  if (la == 0.0 || lb == 0.0) return 1.0;
  if (Dot(a, b) < 0.0) return 1.0;
  return std::fabs(a.x * b.y - a.y * b.x) / (la * lb);
}

double ControlOffLine(const Seg& s) {
  Pt d = Sub(s.p[3], s.p[0]);
  double l = Len(d);
  double worst = 0.0;
  for (int k = 1; k <= 2; k++) {
    Pt v = Sub(s.p[k], s.p[0]);
    worst = std::max(worst, l > 0.0 ? std::fabs(d.x * v.y - d.y * v.x) / l : Len(v));
  }
  return worst;
}

void ExpectSameSegments(const std::vector<Seg>& a, const std::vector<Seg>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); i++)
    for (int k = 0; k < 4; k++) {
      EXPECT_EQ(a[i].p[k].x, b[i].p[k].x) << "segment " << i << " point " << k;
      EXPECT_EQ(a[i].p[k].y, b[i].p[k].y) << "segment " << i << " point " << k;
    }
}

}  // namespace curvetest
