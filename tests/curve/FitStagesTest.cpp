// The fitter's stages on hand-made chains, against values worked out by hand:
// simplification, corners, tangents, smoothing, tuning and the run fit.
#include "curve/CurveCheck.h"

using namespace curvetest;
namespace cv = pictrace::curve;

namespace {

std::vector<Vec2> Pts(std::initializer_list<double> xy) {
  std::vector<Vec2> v(xy.size() / 2);
  for (size_t i = 0; i < v.size(); i++) v[i] = {xy.begin()[2 * i], xy.begin()[2 * i + 1]};
  return v;
}
void ExpectVec(Vec2 got, Vec2 want, double eps = 1e-15) { EXPECT_TRUE(Distance(got, want) <= eps) << got.x << "," << got.y; }
Vec2 Unit(double x, double y) { return {x / std::hypot(x, y), y / std::hypot(x, y)}; }

}  // namespace

TEST(FitStages, DistinctSimplifiedAndCornerPoints) {
  bool closed = false;
  EXPECT_EQ(cv::DistinctChain(Pts({0, 0, 0, 0, 1, 0, 1, 0, 2, 1, 0, 0}), closed).size() + closed, 4u);
  EXPECT_EQ(cv::DistinctChain(Pts({3, 3, 3, 3}), closed).size() + closed, 2u);
  EXPECT_EQ(cv::DistinctChain(Pts({3, 3}), closed).size() + closed, 1u);
  // (3, 1) is 1 off the chord; then (2, 0) is 2 / sqrt(10) = 0.632 off
  // (0,0)-(3,1) and (4, 0) is 1 / sqrt(5) = 0.447 off (3,1)-(5,0).
  std::vector<Vec2> open = Pts({0, 0, 1, 0, 2, 0, 3, 1, 4, 0, 5, 0});
  EXPECT_EQ(cv::SimplifyChain(open, false, 0.632), (std::vector<int>{0, 2, 3, 5}));
  EXPECT_EQ(cv::SimplifyChain(open, false, 0.64), (std::vector<int>{0, 3, 5}));
  EXPECT_EQ(cv::SimplifyChain(open, false, 1.0), (std::vector<int>{0, 5}));  // exactly 1 off: dropped
  // A closed ring is cut at 0 and at the farthest point, (2, 2).
  std::vector<Vec2> ring = Pts({0, 0, 1, 0, 2, 0, 2, 1, 2, 2, 1, 2, 0, 2, 0, 1});
  EXPECT_EQ(cv::SimplifyChain(ring, true, 0.5), (std::vector<int>{0, 2, 4, 6}));
  EXPECT_EQ(cv::SimplifyChain(ring, true, 1.5), (std::vector<int>{0, 4}));
  // SelectCorners: the tent turns by 90 degrees, its top lies exactly 1
  // behind the chord between its arms' midpoints (-1,1) and (1,1); 60
  // degrees is a turn, 45 is not; the chamfer edge of 2.83 is short at 3.5,
  // so both its ends turn by 80.5 degrees and the first one wins.
  const struct { std::vector<Vec2> pts; bool closed; double sagitta, shortEdge; std::vector<int> corners; } cases[] = {
      {Pts({-2, 0, 0, 2, 2, 0}), false, 1.0, 0, {1}},       {Pts({-2, 0, 0, 2, 2, 0}), false, 1.0000001, 0, {}},
      {Pts({0, 0, 10, 0, 15, 8.660254037844386}), false, 0, 0, {1}}, {Pts({0, 0, 10, 0, 20, 10}), false, 0, 0, {}},
      {Pts({0, 0, 9, 0, 9, 9, 0, 9}), true, 0, 0, {0, 1, 2, 3}},     {Pts({0, 0, 9, 0, 9, 9, 0, 9}), false, 0, 0, {1, 2}},
      {Pts({0, 0, 10, 0, 12, 2, 12, 12}), false, 2.25, 3.5, {1}},    {Pts({0, 0, 10, 0, 12, 2, 12, 12}), false, 2.25, 2.8, {}}};
  for (const auto& c : cases) {
    std::vector<int> all = {0, 1, 2, 3};
    all.resize(c.pts.size());
    EXPECT_EQ(cv::SelectCorners(c.pts, all, c.closed, c.sagitta, c.shortEdge), c.corners) << c.pts.size();
  }
}

TEST(FitStages, VertexChainsAreSampledEveryQuarterToleranceAndHeldToSevenEighths) {
  cv::PreparedChain prep;
  cv::PrepareVertexChain(Pts({0, 0, 4, 0, 4, 4, 0, 4}), true, 1.0, prep);
  EXPECT_EQ(prep.pts.size(), 64u);
  EXPECT_EQ(prep.corners, (std::vector<int>{0, 16, 32, 48}));
  EXPECT_TRUE(prep.tolerance == 0.875 && prep.window == 16 && !prep.smooth);
  ExpectVec(prep.pts[17], {4.0, 0.25}, 0.0);
  cv::PrepareVertexChain(Pts({0, 0, 4, 0, 4.1, 4}), false, 2.0, prep);
  EXPECT_EQ(prep.pts.size(), 8u + 9u + 1u);  // ceil(4 / 0.5) and ceil(4.0012 / 0.5)
  EXPECT_EQ(prep.corners, (std::vector<int>{8}));
}

TEST(FitStages, TangentsStraightnessAndSmoothing) {
  // The parabola y = x * x at x = -2..2 is level at its centre; windows
  // shrink at the ends of the range.
  std::vector<Vec2> par = Pts({-2, 4, -1, 1, 0, 0, 1, 1, 2, 4}), run = Pts({0, 0, 1, 0, 2, 1, 3, 3});
  ExpectVec(cv::CentreTangent(par.data(), 0, 4, 2, 2), {1, 0}, 0.0);
  ExpectVec(cv::CentreTangent(par.data(), 0, 4, 1, 4), Unit(2, -4));
  ExpectVec(cv::CentreTangent(par.data(), 1, 4, 3, 4), Unit(2, 4));
  ExpectVec(cv::StartTangent(run.data(), 4, 2), Unit(3, 1));
  ExpectVec(cv::StartTangent(run.data(), 4, 9), Unit(6, 4));
  ExpectVec(cv::EndTangent(run.data(), 4, 2), Unit(-3, -5));
  // Without a window: the neighbours' difference, then the chord, then +x.
  std::vector<Vec2> step = Pts({0, 0, 0, 1, 3, 1, 3, 5}), there = Pts({0, 0, 1, 0, -1, 0, 0, 3});
  ExpectVec(cv::CentreTangent(step.data(), 0, 3, 1, 0), Unit(3, 1));
  ExpectVec(cv::CentreTangent(step.data(), 0, 3, 0, 4), Unit(3, 5));
  ExpectVec(cv::StartTangent(there.data(), 4, 2), {0, 1}, 0.0);
  ExpectVec(cv::EndTangent(Pts({0, 3, -1, 0, 1, 0, 0, 0}).data(), 4, 2), {0, 1}, 0.0);
  ExpectVec(cv::CentreTangent(Pts({0, 0, 1, 0, 0, 0}).data(), 0, 2, 1, 1), {1, 0}, 0.0);
  std::vector<Vec2> bump = Pts({0, 0, 5, 1, 10, 0});  // exactly 1 off; the last one has no chord
  EXPECT_TRUE(cv::RunIsStraight(bump.data(), 3, 1.0) && !cv::RunIsStraight(bump.data(), 3, 0.999) && !cv::RunIsStraight(Pts({0, 0, 1, 0, 0, 0}).data(), 3, 5));
  // y = 0 0 1 0 0: the 5-point quadratic weights are (-3 12 17 12 -3) / 35.
  std::vector<Vec2> spike = Pts({0, 0, 1, 0, 2, 1, 3, 0, 4, 0});
  std::vector<Vec2> s = cv::SmoothRun(spike, false, 8, 1.0);
  EXPECT_TRUE(Distance(s[2], {2, 17.0 / 35.0}) < 1e-15 && s[1] == spike[1] && s[4] == spike[4]);
  ExpectVec(cv::SmoothRun(spike, false, 8, 0.25)[2], {2, 0.75});     // held to 0.25
  ExpectVec(cv::SmoothRun(spike, false, 1, 1.0)[2], {2, 1}, 0.0);     // three points: exact
  EXPECT_NEAR(cv::SmoothRun(spike, true, 8, 9.0)[4].y, -3.0 / 35, 1e-15);  // wraps round
}

TEST(FitStages, TuningTurnsOnlyForSidesThatNearlyFit) {
  // Error 6 |t.y - 0.1| is 0.6 at the estimate (1, 0), a near miss of 0.5:
  // the first golden probe, s = 0.7 g - 0.35, already fits.
  auto side = [](double k) { return [k](Vec2 t) { return k * std::fabs(t.y - 0.1); }; };
  ExpectVec(cv::TuneTangent({side(6.0)}, {1, 0}, 0.5), Unit(1, 0.7 * 0.6180339887498949 - 0.35));
  ExpectVec(cv::TuneTangent({side(5.0)}, {1, 0}, 0.5), {1, 0}, 0.0);  // 0.5 fits already
  ExpectVec(cv::TuneTangent({side(8.0)}, {1, 0}, 0.5), {1, 0}, 0.0);  // 0.8 is too far off
  EXPECT_GT(cv::TuneTangent({side(7.5)}, {1, 0}, 0.5).y, 0.05);      // 0.75 still counts
  EXPECT_GT(cv::TuneTangent({[](Vec2 v) { return 0.7 - 0.1 * v.y; }}, {1, 0}, 0.5).y, 0.3);  // best probe
}

TEST(FitStages, RunFitRecoversACubicAndSplitsAtTheWorstPoint) {
  // 31 samples of (0,0) (10,20) (30,20) (40,0), with the true end tangents.
  Cubic truth{{{0, 0}, {10, 20}, {30, 20}, {40, 0}}};
  std::vector<Vec2> pts;
  for (int k = 0; k <= 30; k++) pts.push_back(cv::CubicPoint(truth, k / 30.0));
  std::vector<Cubic> out;
  cv::FitRun(pts.data(), pts.data(), 31, Unit(1, 2), Unit(-1, 2), 0.01, 4, out);
  ASSERT_EQ(out.size(), 1u);
  for (int k = 0; k < 4; k++) ExpectVec(out[0].p[k], truth.p[k], 0.05);
  EXPECT_TRUE(cv::RunError(pts.data(), pts.data(), 31, {1, 0}, {-1, 0}, 0.01) > 1 && cv::RunError(pts.data(), pts.data(), 2, {1, 0}, {0, 1}, 0.01) == 0);
  // Level from 0 to 4, then rising by h a step to 12, the sides' directions
  // as end tangents: one cubic misses most at the bend (4, 0). A near miss
  // (up to 1.5 tolerances) is split there, a far one is halved at point 6.
  const struct { double h, tol; std::vector<int> joins; } cases[] = {{0.4, 0.5, {12}}, {1.0, 0.5, {4, 12}}, {0.8, 0.5, {4, 12}}, {1.0, 0.4, {6, 12}}, {1.5, 0.5, {6, 12}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.h);
    pts.resize(13);
    for (int i = 0; i <= 12; i++) pts[i] = {double(i), i <= 4 ? 0.0 : c.h * (i - 4)};
    Vec2 t2 = Unit(-1, -c.h);
    out.clear();
    cv::FitRun(pts.data(), pts.data(), 13, {1, 0}, t2, c.tol, 4, out);
    ASSERT_EQ(out.size(), c.joins.size());
    for (size_t i = 0; i < out.size(); i++) {
      ExpectVec(out[i].p[3], pts[size_t(c.joins[i])], 0.0);
      ExpectVec(out[i].p[0], i ? out[i - 1].p[3] : pts[0], 0.0);
    }
    EXPECT_EQ(out[0].p[1].y, 0.0);
    EXPECT_NEAR(Cross(out.back().p[2] - out.back().p[3], t2), 0.0, 1e-12);
    EXPECT_EQ(c.joins.size() > 1, cv::RunError(pts.data(), pts.data(), 13, {1, 0}, t2, c.tol) > c.tol);
  }
}
