// The cubic Bezier fitter against results worked out by hand: its stages on hand-made chains (simplify,
// corners, tangents, smoothing, tuning, run fit), whole fits of pixel shapes and polygons, ConvertToBezier.
#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "curve/BezierFit.h"
#include "curve/BorderFit.h"
#include "curve/FitStages.h"

namespace {

namespace cv = pictrace::curve;
using cv::Cubic;
using cv::Vec2;
const double kNan = std::numeric_limits<double>::quiet_NaN();
struct Seg { Cubic c; bool cornerStart, cornerEnd; };  // a cubic and its two corner flags

// Runs FitBezierChain (int chains) or FitBezierChainD (double chains).
template <class T>
std::vector<Seg> Fit(const std::vector<T>& chain, int flag, double tol) {
  int n = -1, last = static_cast<int>(chain.size() / 2) - 1;
  double* raw;
  if constexpr (std::is_same_v<T, int>) raw = pictrace::FitBezierChain(chain.data(), last, flag, tol, n);
  else raw = pictrace::FitBezierChainD(chain.data(), last, flag, tol, n);
  std::vector<Seg> segs(n);
  for (const double* r = raw; r < raw + 10 * n; r += 10)
    segs[(r - raw) / 10] = {{{{r[0], r[1]}, {r[2], r[3]}, {r[4], r[5]}, {r[6], r[7]}}}, r[8] != 0.0, r[9] != 0.0};
  delete[] raw;
  return segs;
}

// Outer crack boundary (y down, clockwise, first point repeated at the end)
// of the 4-connected shape holding the first inside pixel in row order.
std::vector<int> TraceOutline(int w, int h, const std::function<bool(int, int)>& inside) {
  auto in = [&](int x, int y) { return x >= 0 && y >= 0 && x < w && y < h && inside(x, y); };
  int s = 0, x, y, d = 3;
  while (!in(s % w, s / w)) s++;
  std::vector<int> chain = {x = s % w, y = s / w};
  do {
    for (int nd : {(d + 1) % 4, d, (d + 3) % 4})  // right turn first: inside ahead on the right, outside on the left
      if (in(x - 1 + (nd == 0 || nd == 3), y - 1 + (nd == 0 || nd == 1)) && !in(x - 1 + (nd == 0 || nd == 1), y - 1 + (nd == 1 || nd == 2))) {
        d = nd;
        break;
      }
    chain.insert(chain.end(), {x += (d == 0) - (d == 2), y += (d == 1) - (d == 3)});
  } while (x != chain[0] || y != chain[1]);
  return chain;
}
std::vector<int> Disc(double r, int c) {  // radius r around (c, c)
  return TraceOutline(2 * c, 2 * c, [=](int x, int y) { return std::hypot(x + 0.5 - c, y + 0.5 - c) <= r; });
}
// Distance to the curve: the nearest of samples about a unit apart, refined
// by a ternary search; it is always to a curve point, so never too short.
double DistanceToCurve(const std::vector<Seg>& segs, Vec2 p) {
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

// Largest distance from the curve of the chain's points and steps - 1 points between each two.
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
// Sine of the kink from segment i into the next (1 when it doubles back);
// largest distance of a segment's controls from its chord.
double Kink(const std::vector<Seg>& s, size_t i) {
  Vec2 u = Normalized(s[i].c.p[3] - s[i].c.p[2]), v = Normalized(s[(i + 1) % s.size()].c.p[1] - s[(i + 1) % s.size()].c.p[0]);
  return Dot(u, v) <= 0.0 ? 1.0 : std::fabs(Cross(u, v));
}
double ControlOffLine(const Seg& s) {
  Vec2 d = Normalized(s.c.p[3] - s.c.p[0]);
  return std::max(std::fabs(Cross(d, s.c.p[1] - s.c.p[0])), std::fabs(Cross(d, s.c.p[2] - s.c.p[0])));
}
std::vector<Vec2> Pts(std::initializer_list<double> xy) {
  std::vector<Vec2> v;
  for (const double* p = xy.begin(); p != xy.end(); p += 2) v.push_back({p[0], p[1]});
  return v;
}
void ExpectVec(Vec2 got, Vec2 want, double eps = 1e-15) { EXPECT_TRUE(Distance(got, want) <= eps) << got.x << "," << got.y; }
std::vector<int> Upto(size_t n) { std::vector<int> v(n); for (size_t i = 0; i < n; i++) v[i] = int(i); return v; }
Vec2 Unit(double x, double y) { return {x / std::hypot(x, y), y / std::hypot(x, y)}; }
// n points of a circle (turn = 2 pi) or an arc around (c, c).
std::vector<double> Arc(int n, double r, double c, double turn, bool close) {
  std::vector<double> xy;
  for (int i = 0; i <= n - !close; i++) xy.insert(xy.end(), {c + r * std::cos(turn * (i % n) / n), c + r * std::sin(turn * (i % n) / n)});
  return xy;
}
// A host's lines through the points (taken as floats), closed or not.
template <class T>
void SetLines(T& obj, std::vector<double>& xy, bool close) {
  int n = static_cast<int>(xy.size() / 2);
  obj.m_pLines = new CPTLine[obj.m_nLines = close ? n : n - 1];
  for (int i = 0; i < 2 * n; i++) xy[i] = float(xy[i]);
  for (int i = 0, j = 1; i < obj.m_nLines; i++, j = (i + 1) % n) {
    obj.m_pLines[i].m_ptStart.x = float(xy[2 * i]), obj.m_pLines[i].m_ptStart.y = float(xy[2 * i + 1]);
    obj.m_pLines[i].m_ptEnd.x = float(xy[2 * j]), obj.m_pLines[i].m_ptEnd.y = float(xy[2 * j + 1]);
  }
  if (close) xy.insert(xy.end(), {xy[0], xy[1]});
}
// The Bezier lines as segments; also checks that the path stays within tol.
template <class T>
std::vector<Seg> Segs(const T& obj, const std::vector<double>& xy, double tol) {
  std::vector<Seg> s(obj.m_nLines);
  for (int i = 0; i < obj.m_nLines; i++) {
    const CPTLine& l = obj.m_pLines[i];
    EXPECT_EQ(l.m_nType, 1);
    s[i].c = {{{l.m_ptStart.x, l.m_ptStart.y}, {l.m_ptCtrl1.x, l.m_ptCtrl1.y}, {l.m_ptCtrl2.x, l.m_ptCtrl2.y}, {l.m_ptEnd.x, l.m_ptEnd.y}}};
  }
  EXPECT_TRUE(!s.empty() && s[0].c.p[0].y == xy[1] && s.back().c.p[3].x == xy[xy.size() - 2]);
  EXPECT_LE(MaxDistance(s, xy, 10), tol * 1.0001);
  return s;
}

}  // namespace

TEST(FitStages, DistinctSimplifiedCornerAndSampledPoints) {
  bool closed = false;
  EXPECT_EQ(cv::DistinctChain(Pts({0, 0, 0, 0, 1, 0, 1, 0, 2, 1, 0, 0}), closed).size() + closed, 4u);
  EXPECT_TRUE(cv::DistinctChain(Pts({3, 3, 3, 3}), closed).size() + closed == 2 && cv::DistinctChain(Pts({3, 3}), closed).size() + closed == 1);
  // (3,1) is 1 off the chord, then (2,0) 2 / sqrt(10) = 0.632 off (0,0)-(3,1), (4,0) 0.447 off (3,1)-(5,0).
  std::vector<Vec2> open = Pts({0, 0, 1, 0, 2, 0, 3, 1, 4, 0, 5, 0});
  EXPECT_EQ(cv::SimplifyChain(open, false, 0.632), (std::vector<int>{0, 2, 3, 5}));
  EXPECT_EQ(cv::SimplifyChain(open, false, 0.64), (std::vector<int>{0, 3, 5}));
  EXPECT_EQ(cv::SimplifyChain(open, false, 1.0), (std::vector<int>{0, 5}));  // exactly 1 off: dropped
  std::vector<Vec2> ring = Pts({0, 0, 1, 0, 2, 0, 2, 1, 2, 2, 1, 2, 0, 2, 0, 1}), ell;  // ring: cut at 0 and (2, 2)
  EXPECT_EQ(cv::SimplifyChain(ring, true, 0.5), (std::vector<int>{0, 2, 4, 6}));
  EXPECT_EQ(cv::SimplifyChain(ring, true, 1.5), (std::vector<int>{0, 4}));
  EXPECT_EQ(cv::SimplifyChain(Pts({0, 0, 3, 4, 5, 0, 4, -3}), true, 9), (std::vector<int>{0, 1}));  // first of three at 5
  // SelectCorners: the tent turns by 90 degrees with its top exactly 1 behind the chord of its arms' midpoints
  // (9,6) (11,6); 60 degrees is a turn, 45 not; both ends of a 2.83 chamfer (short at 3.5) turn by 80.5 degrees,
  // the first wins; a corner found at (9,0) of an L moves to its deepest point (10,0) within its arms' reach.
  for (int i = 0; i <= 20; i++) ell.push_back({double(std::min(i, 10)), double(std::max(i - 10, 0))});
  const struct { std::vector<Vec2> pts; bool closed; double sagitta, shortEdge; std::vector<int> corners, vertices = {}; } cases[] = {
      {Pts({8, 5, 10, 7, 12, 5}), false, 1.0, 0, {1}},      {Pts({8, 5, 10, 7, 12, 5}), false, 1.0000001, 0, {}},
      {Pts({0, 0, 10, 0, 15, 8.660254037844386}), false, 0, 0, {1}}, {Pts({0, 0, 10, 0, 20, 10}), false, 0, 0, {}},
      {Pts({0, 0, 9, 0, 9, 9, 0, 9}), true, 0, 0, {0, 1, 2, 3}},     {Pts({0, 0, 9, 0, 9, 9, 0, 9}), false, 0, 0, {1, 2}},
      {Pts({0, 0, 10, 0, 12, 2, 12, 12}), false, 2.25, 3.5, {1}},    {Pts({0, 0, 10, 0, 12, 2, 12, 12}), false, 2.25, 2.8, {}},
      {ell, false, 0, 0, {10}, {8, 9, 20}}};
  for (const auto& c : cases)
    EXPECT_EQ(cv::SelectCorners(c.pts, c.vertices.empty() ? Upto(c.pts.size()) : c.vertices, c.closed, c.sagitta, c.shortEdge), c.corners);
  // Vertex chains are sampled every quarter tolerance and held to 7/8 of it.
  cv::PreparedChain prep;
  cv::PrepareVertexChain(Pts({0, 0, 4, 0, 4, 4, 0, 4}), true, 1.0, prep);
  EXPECT_TRUE(prep.pts.size() == 64 && prep.pts[17] == Vec2({4.0, 0.25}) && prep.corners == std::vector<int>({0, 16, 32, 48}));
  EXPECT_TRUE(prep.tolerance == 0.875 && prep.window == 16 && !prep.smooth);
  cv::PrepareVertexChain(Pts({0, 0, 4, 0, 4.1, 4}), false, 2.0, prep);
  EXPECT_TRUE(prep.pts.size() == 8 + 9 + 1 && prep.corners == std::vector<int>({8}));  // ceil(4 / 0.5), ceil(4.0012 / 0.5)
}

TEST(FitStages, TangentsStraightnessAndSmoothing) {
  // The parabola y = x * x at x = -2..2 is level at its centre; windows shrink at the ends.
  std::vector<Vec2> par = Pts({-2, 4, -1, 1, 0, 0, 1, 1, 2, 4}), run = Pts({0, 0, 1, 0, 2, 1, 3, 3});
  ExpectVec(cv::CentreTangent(par.data(), 0, 4, 2, 2), {1, 0}, 0.0);
  ExpectVec(cv::CentreTangent(par.data(), 0, 4, 1, 4), Unit(2, -4)), ExpectVec(cv::CentreTangent(par.data(), 1, 4, 3, 4), Unit(2, 4));
  ExpectVec(cv::StartTangent(run.data(), 4, 2), Unit(3, 1)), ExpectVec(cv::StartTangent(run.data(), 4, 9), Unit(6, 4));
  ExpectVec(cv::EndTangent(run.data(), 4, 2), Unit(-3, -5));
  // Without a window: the neighbours' difference, then the chord, then +x.
  std::vector<Vec2> step = Pts({0, 0, 0, 1, 3, 1, 3, 5}), there = Pts({0, 0, 1, 0, -1, 0, 0, 3});
  ExpectVec(cv::CentreTangent(step.data(), 0, 3, 1, 0), Unit(3, 1)), ExpectVec(cv::CentreTangent(step.data(), 0, 3, 0, 4), Unit(3, 5));
  ExpectVec(cv::StartTangent(there.data(), 4, 2), {0, 1}, 0.0);
  ExpectVec(cv::CentreTangent(Pts({0, 0, 1, 0, 0, 0}).data(), 0, 2, 1, 1), {1, 0}, 0.0);
  std::vector<Vec2> bump = Pts({0, 0, 5, 1, 10, 0});  // exactly 1 off; the last one has no chord
  EXPECT_TRUE(cv::RunIsStraight(bump.data(), 3, 1.0) && !cv::RunIsStraight(bump.data(), 3, 0.999) && !cv::RunIsStraight(Pts({0, 0, 1, 0, 0, 0}).data(), 3, 5));
  // y = 0 0 1 0 0: the 5-point quadratic weights are (-3 12 17 12 -3) / 35.
  std::vector<Vec2> spike = Pts({0, 0, 1, 0, 2, 1, 3, 0, 4, 0}), s = cv::SmoothRun(spike, false, 8, 1.0);  // the ends stay
  EXPECT_TRUE(Distance(s[2], {2, 17.0 / 35.0}) < 1e-15 && s[1] == spike[1] && s[4] == spike[4]);
  ExpectVec(cv::SmoothRun(spike, false, 8, 0.25)[2], {2, 0.75});     // held to 0.25
  ExpectVec(cv::SmoothRun(spike, false, 1, 1.0)[2], {2, 1}, 0.0);     // three points: exact
  EXPECT_NEAR(cv::SmoothRun(spike, true, 8, 9.0)[4].y, -3.0 / 35, 1e-15);  // wraps round
}

TEST(FitStages, TuningTurnsOnlyForSidesThatNearlyFit) {
  // Error 6 |t.y - 0.1| is 0.6 at (1, 0), a near miss: the first golden probe fits.
  auto side = [](double k, double c = 0.1) { return [k, c](Vec2 t) { return k * std::fabs(t.y - c); }; };
  ExpectVec(cv::TuneTangent({side(6.0)}, {1, 0}, 0.5), Unit(1, 0.7 * 0.6180339887498949 - 0.35));
  ExpectVec(cv::TuneTangent({side(6.0, -0.1)}, {1, 0}, 0.5), Unit(1, 0.35 - 0.7 * 0.6180339887498949));  // the other probe
  ExpectVec(cv::TuneTangent({side(5.0)}, {1, 0}, 0.5), {1, 0}, 0.0);  // 0.5 fits already
  ExpectVec(cv::TuneTangent({side(8.0)}, {1, 0}, 0.5), {1, 0}, 0.0);  // 0.8 is too far off
  EXPECT_GT(cv::TuneTangent({side(7.5)}, {1, 0}, 0.5).y, 0.05);      // 0.75 still counts
  for (double c : {-0.2, 0.2})  // never fits: all probes, converging on the best turn either way
    EXPECT_NEAR(cv::TuneTangent({[c](Vec2 t) { return 0.55 + 0.5 * std::fabs(t.y - c); }}, {1, 0}, 0.5).y, c, 0.001);
}

TEST(FitStages, RunFitRecoversACubicAndSplitsAtTheWorstPoint) {
  // 31 samples of (0,0) (10,20) (30,20) (40,0), with the true end tangents.
  Cubic truth{{{0, 0}, {10, 20}, {30, 20}, {40, 0}}};
  std::vector<Vec2> pts;
  for (int k = 0; k <= 30; k++) pts.push_back(cv::CubicPoint(truth, k / 30.0));
  std::vector<Cubic> out;
  cv::FitRun(pts.data(), pts.data(), 31, Unit(1, 2), Unit(-1, 2), 0.01, 4, out);
  ASSERT_EQ(out.size(), 1u);
  for (int k = 0; k < 4; k++) ExpectVec(out[0].p[k], truth.p[k], 0.02);
  // Level from 0 to 4, then rising by h a step to 12, with the sides' directions as end tangents: one
  // cubic misses most at the bend (4, 0). A near miss (to 1.5 tolerances) is split there, a far one halved at 6.
  const struct { double h, tol; std::vector<int> joins; } cases[] = {{0.4, 0.5, {12}}, {1.0, 0.5, {4, 12}}, {0.8, 0.5, {4, 12}}, {1.0, 0.4, {6, 12}}, {1.5, 0.5, {6, 12}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.h);
    for (int i = 0; i <= 12; i++) pts[i] = {double(i), i <= 4 ? 0.0 : c.h * (i - 4)};
    Vec2 t2 = Unit(-1, -c.h);
    out.clear();
    cv::FitRun(pts.data(), pts.data(), 13, {1, 0}, t2, c.tol, 4, out);
    ASSERT_EQ(out.size(), c.joins.size());
    for (size_t i = 0; i < out.size(); i++) EXPECT_TRUE(out[i].p[3] == pts[c.joins[i]] && out[i].p[0] == (i ? out[i - 1].p[3] : pts[0]));
    EXPECT_EQ(out[0].p[1].y, 0.0);
    EXPECT_NEAR(Cross(out.back().p[2] - out.back().p[3], t2), 0.0, 1e-12);
    EXPECT_EQ(c.joins.size() > 1, cv::RunError(pts.data(), pts.data(), 13, {1, 0}, t2, c.tol) > c.tol);
  }
}

TEST(ChainFit, NothingToFitAndTwoPoints) {
  int one[2] = {3, 4}, same[8] = {7, 7, 7, 7, 7, 7, 7, 7}, n = -1;
  double dsame[4] = {1, kNan, 2, 2};  // one point that is a number
  for (int flag : {0, 1}) {
    EXPECT_TRUE(!pictrace::FitBezierChain(nullptr, 5, flag, 1.0, n) && n == 0 && !pictrace::FitBezierChain(one, -1, flag, 1.0, n));
    EXPECT_TRUE(!pictrace::FitBezierChain(one, 0, flag, 1.0, n) && !pictrace::FitBezierChain(same, 3, flag, 1.0, n));
    EXPECT_TRUE(!pictrace::FitBezierChainD(dsame, 1, flag, 1.0, n) && n == 0 && !pictrace::FitBezierChainD(nullptr, 1, flag, 1.0, n));
  }
  std::vector<Seg> open = Fit(std::vector<int>{0, 0, 0, 0, 9, 3, 9, 3}, 0, 1.0);
  ASSERT_EQ(open.size(), 1u);  // straight, with its controls at the thirds
  for (int k = 0; k < 4; k++) EXPECT_TRUE(open[0].c.p[k] == Vec2({3.0 * k, 1.0 * k}) && open[0].cornerStart && open[0].cornerEnd) << k;
  std::vector<Seg> loop = Fit(std::vector<int>{0, 0, 9, 3, 0, 0}, 1, 1.0);
  EXPECT_TRUE(loop.size() == 2 && loop[1].c.p[1] == Vec2({6, 2}) && loop[1].c.p[3] == Vec2({0, 0}));
  ASSERT_EQ(Fit(std::vector<double>{0, 0, kNan, 1, 10, 0}, 1, 1.0).size(), 1u);  // non-numbers are left out
  EXPECT_TRUE(Fit(std::vector<int>{0, 0, 2, 0, 1, 1, 0, 0}, 0, 1.0)[0].c.p[3] == Vec2({2, 0}));  // a loop is cut at its far point
}

TEST(ChainFit, ShapesWithCornersGiveStraightSegmentsBetweenThem) {
  auto square = [](int x, int y) { return x >= 10 && x < 30 && y >= 10 && y < 30; };
  auto ell = [](int x, int y) { return x >= 5 && x < 35 && y >= 5 && y < 35 && (x < 20 || y < 20); };
  const struct { std::vector<int> chain; int flag; std::vector<int> starts; } cases[] = {  // each start, the last end
      {TraceOutline(40, 40, square), 0, {10, 10, 30, 10, 30, 30, 10, 30, 10, 10}},
      {TraceOutline(40, 40, ell), 0, {5, 5, 35, 5, 35, 20, 20, 20, 20, 35, 5, 35, 5, 5}},
      {TraceOutline(40, 40, [](int x, int y) { return std::abs(2 * x - 39) + std::abs(2 * y - 39) < 30; }), 0,
       {20, 6, 34, 20, 20, 34, 6, 20, 20, 6}},  // a diamond: corners in the middle of its tips
      {{0, 0, 100, 0, 100, 100, 0, 100, 0, 0}, 7, {0, 0, 100, 0, 100, 100, 0, 100, 0, 0}},
      {{0, 0, 100, 0, 100, 100, 0, 100, 0, 0}, 1, {0, 0, 100, 0, 100, 100, 0, 100, 0, 0}},
      {{0, 0, 4, 0, 10, 0, 5, 0}, 1, {0, 0, 10, 0, 5, 0}},
      {{0, 0, 40, 0, 43, 30, 40, 60}, 1, {0, 0, 40, 0, 40, 60}},  // turns by 83 degrees, then by 11
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chain.size());
    std::vector<Seg> segs = Fit(c.chain, c.flag, 1.0);
    ASSERT_EQ(segs.size() * 2 + 2, c.starts.size());
    for (size_t i = 0; i < segs.size(); i++) {
      EXPECT_TRUE(segs[i].c.p[0] == Vec2({double(c.starts[2 * i]), double(c.starts[2 * i + 1])}) && segs[i].cornerStart) << i;
      EXPECT_TRUE(segs[i].c.p[3] == Vec2({double(c.starts[2 * i + 2]), double(c.starts[2 * i + 3])}) && segs[i].cornerEnd) << i;
      EXPECT_LT(ControlOffLine(segs[i]), c.chain[5] == 30 && i ? 9.0 : 1e-9) << i;  // straight, but for the bend's curve
    }
    EXPECT_LE(MaxDistance(segs, c.chain, c.flag == 1 ? 8 : 1), 1.0 + 1e-9);
  }
}

TEST(ChainFit, RoundShapesAreFewSmoothSegmentsUsingTheTolerance) {
  // A cubic follows a half circle to 2 % of its radius, a quarter to 0.03 %; a bad tolerance is 1; 12-gons are cut at vertex 6.
  const struct { std::vector<int> chain; std::vector<double> xy; double tol; size_t segments; } cases[] = {
      {Disc(6, 8), {}, 1.0, 2},  {Disc(20, 24), {}, 1.0, 2}, {Disc(50, 54), {}, 1.0, 4},      {Disc(50, 54), {}, kNan, 4},
      {Disc(50, 54), {}, -2, 4}, {Disc(50, 54), {}, 3.0, 2}, {Disc(120, 124), {}, 1.0, 4},
      {{}, Arc(12, 15, 0, 2 * M_PI, true), 1.0, 2}, {{}, Arc(12, 150, 0, 2 * M_PI, true), 10.0, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chain.size() + c.xy.size());
    std::vector<Seg> segs = c.xy.empty() ? Fit(c.chain, 0, c.tol) : Fit(c.xy, 1, c.tol);
    EXPECT_EQ(segs.size(), c.segments);
    double tol = c.tol > 0 ? c.tol : 1.0, worst = c.xy.empty() ? MaxDistance(segs, c.chain) : MaxDistance(segs, c.xy, 40);
    EXPECT_TRUE(worst <= tol + 1e-9 && worst > tol * 0.2) << worst;
    EXPECT_TRUE(segs.back().c.p[3] == segs[0].c.p[0] && (c.xy.empty() || segs[0].c.p[3] == Vec2({c.xy[12], c.xy[13]})));
    // A staircase loop starts on its first point smoothed by the parabola
    // through 17 points (weights 645 - 15 k^2 over 4845), moved tol / 2 at most.
    Vec2 p0 = c.chain.empty() ? Vec2{c.xy[0], c.xy[1]} : Vec2{double(c.chain[0]), double(c.chain[1])}, sm = p0;
    for (int k = -8, n = int(c.chain.size() / 2) - 1; k <= 8 && n > 0; k++)
      sm = sm + (Vec2{double(c.chain[2 * ((k + n) % n)]), double(c.chain[2 * ((k + n) % n) + 1])} - p0) * ((645.0 - 15 * k * k) / 4845);
    EXPECT_LT(Distance(segs[0].c.p[0], Distance(sm, p0) > tol / 2 ? p0 + (sm - p0) * (tol / 2 / Distance(sm, p0)) : sm), 1e-12);
    for (size_t i = 0; i < segs.size(); i++) EXPECT_TRUE(!segs[i].cornerEnd && Kink(segs, i) < 1e-9) << i;
  }
}

// A border taken as traced: one straight cubic per straight stretch, a ring
// from a point where it turns (its closing repeat ignored), and the same
// lines backwards for the reversed curve.
TEST(BorderFit, TracedBordersAreTheirStraightStretches) {
  using pictrace::curve::Vec2;
  auto ends = [](const std::vector<pictrace::curve::Cubic>& c) {
    std::vector<double> v;
    for (const auto& k : c) v.insert(v.end(), {k.p[0].x, k.p[0].y, k.p[3].x, k.p[3].y});
    return v;
  };
  std::vector<Vec2> stair = {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {3, 2}};
  EXPECT_EQ(ends(pictrace::curve::StraightBorder(stair, false)), (std::vector<double>{0, 0, 2, 0, 2, 0, 2, 2, 2, 2, 3, 2}));
  std::vector<Vec2> ring = {{1, 0}, {2, 0}, {2, 1}, {1, 1}, {0, 1}, {0, 0}, {1, 0}};
  EXPECT_EQ(ends(pictrace::curve::StraightBorder(ring, true)), (std::vector<double>{2, 0, 2, 1, 2, 1, 0, 1, 0, 1, 0, 0, 0, 0, 2, 0}));
  EXPECT_EQ(ends(pictrace::curve::ReversedCurve(pictrace::curve::StraightBorder(stair, false))),
            (std::vector<double>{3, 2, 2, 2, 2, 2, 2, 0, 2, 0, 0, 0}));
}

TEST(ConvertToBezier, HostLinesBecomeCurvesWithinTheScaledTolerance) {
  CPictrace engine, scaled;
  engine.SetCurveTolerance(4.0), engine.SetCurveTolerance(-1.0);  // the second is ignored
  CPTPolygon square, circle, empty, dot, a, b;
  CPTPolygonLine broken, open, loop;
  std::vector<double> sq = {10, 10, 90, 10, 90, 90, 10, 90}, ring = Arc(60, 200, 300, 2 * M_PI, false), one = {5, 5, 5, 5};
  std::vector<double> half = Arc(20, 40, 50, M_PI, false), round = Arc(24, 40, 50, 2 * M_PI, true);
  SetLines(square, sq, true), SetLines(circle, ring, true), SetLines(dot, one, false), SetLines(open, half, false), SetLines(loop, round, false);
  open.m_nAttr1 = 3, open.m_nAttr2 = -1, open.m_nAttr5 = 1;  // attributes that are not the defaults
  ASSERT_EQ(engine.ConvertToBezier(&square) + engine.ConvertToBezier(&circle) + engine.ConvertToBezier(&open) + engine.ConvertToBezier(&loop), 4);
  for (const Seg& s : Segs(square, sq, 4.0)) EXPECT_LT(ControlOffLine(s), 1e-4);
  EXPECT_TRUE(square.m_nLines == 4 && circle.m_nLines == 2 && open.m_nLines == 1 && loop.m_nLines == 2);
  EXPECT_TRUE(open.m_nAttr1 == 3 && open.m_nAttr2 == -1 && open.m_nAttr5 == 1);
  std::vector<Seg> c = Segs(circle, ring, 4.0), l = Segs(loop, round, 4.0), o = Segs(open, half, 4.0);
  EXPECT_TRUE(Kink(c, 0) < 1e-4 && Kink(c, 1) < 1e-4 && Kink(l, 1) < 1e-4);  // smooth where the loop closes too
  // Nothing to fit: the object stays as it was.
  CPTLine* before = dot.m_pLines;  // and broken has a count without an array
  broken.m_nLines = 3;
  EXPECT_EQ(engine.ConvertToBezier(&dot) + engine.ConvertToBezier(&broken) + engine.ConvertToBezier(&empty), 0);
  EXPECT_TRUE(dot.m_pLines == before && dot.m_pLines[0].m_nType == 0 && broken.m_nLines == 3);
  EXPECT_EQ(engine.ConvertToBezier(static_cast<CPTPolygon*>(nullptr)) + engine.ConvertToBezier(static_cast<CPTPolygonLine*>(nullptr)), 0);
  // 100 x 50 pixels on 300 x 100 units: one pixel is two units.
  std::vector<unsigned char> dib = testimg::MakeDib24(100, 50, [](int, int) { return RGB(9, 9, 9); });
  ASSERT_EQ(scaled.SetDIBData(dib.data()), 1);
  scaled.SetImageRealRect(0, 0, 300, 100), engine.m_dCurveTolerance = 2.0;
  std::vector<double> xa = Arc(24, 150, 200, 2 * M_PI, false), xb = xa;
  SetLines(a, xa, true), SetLines(b, xb, true);
  ASSERT_EQ(scaled.ConvertToBezier(&a) + engine.ConvertToBezier(&b), 2);
  ASSERT_EQ(a.m_nLines, b.m_nLines);  // the same fit
  for (int i = 0; i < a.m_nLines; i++) EXPECT_EQ(a.m_pLines[i].m_ptCtrl1.x, b.m_pLines[i].m_ptCtrl1.x);
  EXPECT_GT(MaxDistance(Segs(a, xa, 2.0), xa, 10), 1.0);
}
