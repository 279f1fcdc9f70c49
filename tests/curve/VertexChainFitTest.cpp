// Fitting chains of simplified vertices (flag 1): the whole polyline path
// stays within the tolerance, sharp vertices stay corners, blunt ones are
// smoothed over.
#include <gtest/gtest.h>

#include <cmath>

#include "curve/CurveTestSupport.h"

using namespace curvetest;

namespace {

const double kEps = 1e-9;

std::vector<double> RegularPolygon(int sides, double r, double cx, double cy) {
  std::vector<double> chain;
  for (int i = 0; i <= sides; i++) {
    double a = 2.0 * M_PI * (i % sides) / sides;
    chain.push_back(cx + r * std::cos(a));
    chain.push_back(cy + r * std::sin(a));
  }
  return chain;
}

}  // namespace

TEST(VertexChainFit, SquareVerticesGiveFourStraightCornerSegments) {
  std::vector<double> chain = {0, 0, 100, 0, 100, 100, 0, 100, 0, 0};
  std::vector<Seg> segs = FitD(chain, 1, 1.0);
  ASSERT_EQ(segs.size(), 4u);
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(segs[i].p[0].x, chain[2 * i]);
    EXPECT_EQ(segs[i].p[0].y, chain[2 * i + 1]);
    EXPECT_EQ(segs[i].p[3].x, chain[2 * i + 2]);
    EXPECT_EQ(segs[i].p[3].y, chain[2 * i + 3]);
    EXPECT_TRUE(segs[i].cornerStart);
    EXPECT_LT(ControlOffLine(segs[i]), 1e-9);
  }
}

TEST(VertexChainFit, PolygonOfACircleBecomesFewSmoothSegments) {
  std::vector<double> chain = RegularPolygon(32, 50.0, 60.0, 60.0);
  std::vector<Seg> segs = FitD(chain, 1, 1.0);
  EXPECT_LE(segs.size(), 8u);
  EXPECT_LE(MaxPathDistance(segs, chain), 1.0 + kEps);
  for (size_t i = 0; i < segs.size(); i++) {
    EXPECT_FALSE(segs[i].cornerEnd);
    EXPECT_LT(JoinKink(segs, i), 1e-9) << i;
  }
  EXPECT_EQ(segs.back().p[3].x, segs.front().p[0].x);
  EXPECT_EQ(segs.back().p[3].y, segs.front().p[0].y);
}

TEST(VertexChainFit, TurnsOfSixtyDegreesAreCornersThirtyAreNot) {
  // A hexagon turns by 60 degrees at each vertex: six straight segments.
  std::vector<double> hexagon = RegularPolygon(6, 40.0, 50.0, 50.0);
  std::vector<Seg> segs = FitD(hexagon, 1, 1.0);
  ASSERT_EQ(segs.size(), 6u);
  for (const Seg& s : segs) {
    EXPECT_TRUE(s.cornerStart);
    EXPECT_LT(ControlOffLine(s), 1e-9);
  }
  // A dodecagon turns by 30 degrees: no corners, path within tolerance.
  std::vector<double> dodecagon = RegularPolygon(12, 40.0, 50.0, 50.0);
  segs = FitD(dodecagon, 1, 1.0);
  for (const Seg& s : segs) EXPECT_FALSE(s.cornerStart);
  EXPECT_LE(MaxPathDistance(segs, dodecagon), 1.0 + kEps);
}

TEST(VertexChainFit, OpenChainKeepsItsEndsAndItsSharpBend) {
  // A right-angled bend followed by a gentle arc of short edges.
  std::vector<double> chain = {0, 0, 40, 0, 40, 40};
  for (int i = 1; i <= 8; i++) {
    double a = M_PI * i / 16.0;
    chain.push_back(40.0 + 30.0 * (1.0 - std::cos(a)));
    chain.push_back(40.0 + 30.0 * std::sin(a));
  }
  std::vector<Seg> segs = FitD(chain, 1, 1.0);
  ASSERT_GE(segs.size(), 2u);
  EXPECT_EQ(segs.front().p[0].x, 0.0);
  EXPECT_EQ(segs.front().p[0].y, 0.0);
  EXPECT_EQ(segs.back().p[3].x, chain[chain.size() - 2]);
  EXPECT_EQ(segs.back().p[3].y, chain.back());
  EXPECT_TRUE(segs.front().cornerStart);
  EXPECT_TRUE(segs.back().cornerEnd);
  // The first segment is the straight edge up to the bend at (40, 0).
  EXPECT_EQ(segs[0].p[3].x, 40.0);
  EXPECT_EQ(segs[0].p[3].y, 0.0);
  EXPECT_TRUE(segs[0].cornerEnd);
  EXPECT_LT(ControlOffLine(segs[0]), 1e-9);
  // The vertex (40, 40) turns by about 6 degrees only: smooth there.
  int corners = 0;
  for (size_t i = 0; i + 1 < segs.size(); i++) {
    if (segs[i].cornerEnd) {
      corners++;
    } else {
      EXPECT_LT(JoinKink(segs, i), 1e-9) << i;
    }
  }
  EXPECT_EQ(corners, 1);
  EXPECT_LE(MaxPathDistance(segs, chain), 1.0 + kEps);
}

TEST(VertexChainFit, ToleranceScalesWithTheChainUnits) {
  // The same circle polygon at ten times the size, fitted with ten times the
  // tolerance, needs the same number of segments.
  std::vector<double> small = RegularPolygon(24, 20.0, 0.0, 0.0);
  std::vector<double> large = RegularPolygon(24, 200.0, 0.0, 0.0);
  std::vector<Seg> a = FitD(small, 1, 0.5);
  std::vector<Seg> b = FitD(large, 1, 5.0);
  EXPECT_EQ(a.size(), b.size());
  EXPECT_LE(MaxPathDistance(a, small), 0.5 + kEps);
  EXPECT_LE(MaxPathDistance(b, large), 5.0 + kEps);
}
