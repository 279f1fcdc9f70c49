// Chains the fitter must survive: empty, single points, repeats, back and
// forth, bad tolerances and flags, and coordinates at the 16-bit limits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "curve/BezierFit.h"
#include "curve/CurveTestSupport.h"

using namespace curvetest;

TEST(DegenerateChain, NothingToFitGivesNoSegments) {
  int n = -1;
  EXPECT_EQ(pictrace::FitBezierChain(nullptr, 5, 0, 1.0, n), nullptr);
  EXPECT_EQ(n, 0);
  int one[2] = {3, 4};
  n = -1;
  EXPECT_EQ(pictrace::FitBezierChain(one, -1, 0, 1.0, n), nullptr);
  EXPECT_EQ(n, 0);
  EXPECT_EQ(pictrace::FitBezierChain(one, 0, 0, 1.0, n), nullptr);
  EXPECT_EQ(n, 0);
  EXPECT_TRUE(Fit({7, 7, 7, 7, 7, 7, 7, 7}, 0, 1.0).empty());
  EXPECT_TRUE(Fit({7, 7, 7, 7, 7, 7, 7, 7}, 1, 1.0).empty());
}

TEST(DegenerateChain, TwoDistinctPointsAreStraight) {
  std::vector<Seg> open = Fit({0, 0, 0, 0, 9, 3, 9, 3}, 0, 1.0);
  ASSERT_EQ(open.size(), 1u);
  EXPECT_EQ(open[0].p[0].x, 0.0);
  EXPECT_EQ(open[0].p[3].x, 9.0);
  EXPECT_EQ(open[0].p[3].y, 3.0);
  EXPECT_DOUBLE_EQ(open[0].p[1].x, 3.0);
  EXPECT_DOUBLE_EQ(open[0].p[1].y, 1.0);
  EXPECT_DOUBLE_EQ(open[0].p[2].x, 6.0);
  EXPECT_DOUBLE_EQ(open[0].p[2].y, 2.0);
  // There and back again is a closed chain of two straight segments.
  std::vector<Seg> closed = Fit({0, 0, 9, 3, 0, 0}, 1, 1.0);
  ASSERT_EQ(closed.size(), 2u);
  EXPECT_EQ(closed[0].p[3].x, 9.0);
  EXPECT_EQ(closed[1].p[3].x, 0.0);
  EXPECT_EQ(closed[1].p[3].y, 0.0);
}

TEST(DegenerateChain, RepeatedPointsChangeNothing) {
  std::vector<int> square = TraceOutline(30, 30, [](int x, int y) { return x >= 5 && x < 25 && y >= 5 && y < 25; });
  std::vector<int> doubled;
  for (size_t i = 0; i < square.size(); i += 2)
    for (int k = 0; k < 2; k++) {
      doubled.push_back(square[i]);
      doubled.push_back(square[i + 1]);
    }
  std::vector<Seg> a = Fit(square, 0, 1.0);
  std::vector<Seg> b = Fit(doubled, 0, 1.0);
  ASSERT_EQ(a.size(), 4u);
  ExpectSameSegments(a, b);
}

TEST(DegenerateChain, BackAndForthTurnsAtTheFarEnd) {
  std::vector<Seg> segs = Fit({0, 0, 4, 0, 10, 0, 5, 0}, 1, 1.0);
  ASSERT_EQ(segs.size(), 2u);
  EXPECT_EQ(segs[0].p[3].x, 10.0);
  EXPECT_TRUE(segs[0].cornerEnd);
  EXPECT_EQ(segs[1].p[3].x, 5.0);
  for (const Seg& s : segs)
    for (int k = 0; k < 4; k++) EXPECT_EQ(s.p[k].y, 0.0);
}

TEST(DegenerateChain, BadToleranceMeansOnePixelAndUnknownFlagMeansRaw) {
  std::vector<int> disc = DiscOutline(20.0, 24);
  std::vector<Seg> ref = Fit(disc, 0, 1.0);
  for (double tol : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN(),
                     std::numeric_limits<double>::infinity()}) {
    std::vector<Seg> segs = Fit(disc, 0, tol);
    ASSERT_EQ(segs.size(), ref.size()) << tol;
    for (size_t i = 0; i < ref.size(); i++) EXPECT_EQ(segs[i].p[1].x, ref[i].p[1].x);
  }
  std::vector<Seg> odd = Fit(disc, 7, 1.0);
  ASSERT_EQ(odd.size(), ref.size());
  for (size_t i = 0; i < ref.size(); i++) EXPECT_EQ(odd[i].p[2].y, ref[i].p[2].y);
}

TEST(DegenerateChain, SixteenBitExtremesAndNonNumbers) {
  std::vector<int> big = {-32768, -32768, 32767, -32768, 32767, 32767, -32768, 32767, -32768, -32768};
  std::vector<Seg> segs = Fit(big, 1, 1.0);
  ASSERT_EQ(segs.size(), 4u);
  EXPECT_EQ(segs[1].p[0].x, 32767.0);
  EXPECT_EQ(segs[1].p[0].y, -32768.0);
  // Points that are not numbers are left out of a double chain.
  double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<Seg> d = FitD({0, 0, nan, 1, 10, 0}, 1, 1.0);
  ASSERT_EQ(d.size(), 1u);
  EXPECT_EQ(d[0].p[3].x, 10.0);
}

TEST(DegenerateChain, TinyClosedShapesStillCloseExactly) {
  // A single pixel: four corners, five points.
  std::vector<Seg> pixel = Fit({0, 0, 1, 0, 1, 1, 0, 1, 0, 0}, 0, 1.0);
  ASSERT_FALSE(pixel.empty());
  EXPECT_EQ(pixel.back().p[3].x, pixel.front().p[0].x);
  EXPECT_EQ(pixel.back().p[3].y, pixel.front().p[0].y);
  EXPECT_LE(MaxChainDistance(pixel, {0, 0, 1, 0, 1, 1, 0, 1}), 1.0 + 1e-3);
  // A triangle of three points.
  std::vector<Seg> tri = Fit({0, 0, 2, 0, 0, 2, 0, 0}, 1, 1.0);
  ASSERT_FALSE(tri.empty());
  EXPECT_EQ(tri.back().p[3].x, 0.0);
  EXPECT_EQ(tri.back().p[3].y, 0.0);
}

TEST(DegenerateChain, RandomChainsKeepTheContract) {
  // Short random chains, often doubling back and repeating points: the
  // segments join exactly, close when the chain does, and stay within the
  // tolerance of every point (raw) or of the whole path (vertices).
  uint32_t state = 99u;
  auto next = [&](int range) {
    state = state * 1664525u + 1013904223u;
    return static_cast<int>((state >> 8) % static_cast<uint32_t>(range));
  };
  for (int round = 0; round < 300; round++) {
    SCOPED_TRACE(round);
    int n = next(30);
    std::vector<int> chain;
    for (int i = 0; i < n; i++) {
      chain.push_back(next(21) - 10);
      chain.push_back(next(21) - 10);
    }
    bool closed = n > 1 && next(2) == 0;
    if (closed) {
      chain.push_back(chain[0]);
      chain.push_back(chain[1]);
    }
    for (int flag = 0; flag <= 1; flag++) {
      std::vector<Seg> segs = Fit(chain, flag, 1.0);
      for (size_t i = 0; i + 1 < segs.size(); i++) {
        EXPECT_EQ(segs[i].p[3].x, segs[i + 1].p[0].x);
        EXPECT_EQ(segs[i].p[3].y, segs[i + 1].p[0].y);
      }
      if (segs.empty()) continue;
      if (closed) {
        EXPECT_EQ(segs.back().p[3].x, segs.front().p[0].x);
        EXPECT_EQ(segs.back().p[3].y, segs.front().p[0].y);
      }
      if (flag == 0) {
        EXPECT_LE(MaxChainDistance(segs, chain), 1.0 + 1e-9);
      } else {
        std::vector<double> path(chain.begin(), chain.end());
        EXPECT_LE(MaxPathDistance(segs, path), 1.0 + 1e-9);
      }
    }
  }
}
