// Fitting raw staircase outlines (flag 0): tolerance, corners, straightness,
// smooth joins, exact closure and low segment counts on synthetic shapes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "curve/CurveTestSupport.h"

using namespace curvetest;

namespace {

const double kEps = 1e-9;

// Every join of a closed fit, the closing one included, is either flagged a
// corner on both sides or keeps its tangent.
void ExpectClosedAndSmoothJoins(const std::vector<Seg>& segs) {
  ASSERT_FALSE(segs.empty());
  EXPECT_EQ(segs.back().p[3].x, segs.front().p[0].x);
  EXPECT_EQ(segs.back().p[3].y, segs.front().p[0].y);
  for (size_t i = 0; i < segs.size(); i++) {
    const Seg& a = segs[i];
    const Seg& b = segs[(i + 1) % segs.size()];
    EXPECT_EQ(a.p[3].x, b.p[0].x) << "join " << i;
    EXPECT_EQ(a.p[3].y, b.p[0].y) << "join " << i;
    EXPECT_EQ(a.cornerEnd, b.cornerStart) << "join " << i;
    if (!a.cornerEnd) {
      EXPECT_LT(JoinKink(segs, i), 1e-9) << "join " << i;
    }
  }
}

int CornerCount(const std::vector<Seg>& segs) {
  int n = 0;
  for (const Seg& s : segs) n += s.cornerStart ? 1 : 0;
  return n;
}

// A small deterministic generator for the random shapes.
struct Lcg {
  uint32_t state;
  double Next() {
    state = state * 1664525u + 1013904223u;
    return (state >> 8) / 16777216.0;
  }
};

}  // namespace

TEST(RawOutlineFit, DiscsOfAnySizeAreAtMostFourSmoothSegments) {
  for (double r : {3.0, 4.5, 6.0, 8.0, 12.5, 20.0, 33.3, 50.0, 75.0, 120.0, 180.0}) {
    SCOPED_TRACE(r);
    std::vector<int> chain = DiscOutline(r, static_cast<int>(r) + 4);
    std::vector<Seg> segs = Fit(chain, 0, 1.0);
    EXPECT_LE(MaxChainDistance(segs, chain), 1.0 + kEps);
    // A cubic follows a quarter circle to within 0.03 % of its radius.
    if (r >= 6.0) {
      EXPECT_EQ(CornerCount(segs), 0);
      EXPECT_LE(segs.size(), 4u);
    }
    ExpectClosedAndSmoothJoins(segs);
  }
}

TEST(RawOutlineFit, SquareIsFourStraightSegmentsBetweenItsCorners) {
  // Pixels 10..29 in both directions: corners at 10 and 30.
  std::vector<int> chain = TraceOutline(40, 40, [](int x, int y) { return x >= 10 && x < 30 && y >= 10 && y < 30; });
  ASSERT_EQ(chain.size(), 2u * 81u);
  std::vector<Seg> segs = Fit(chain, 0, 1.0);
  ASSERT_EQ(segs.size(), 4u);
  const double corners[4][2] = {{10, 10}, {30, 10}, {30, 30}, {10, 30}};
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(segs[i].p[0].x, corners[i][0]);
    EXPECT_EQ(segs[i].p[0].y, corners[i][1]);
    EXPECT_TRUE(segs[i].cornerStart);
    EXPECT_TRUE(segs[i].cornerEnd);
    EXPECT_LT(ControlOffLine(segs[i]), 1e-9);
  }
  EXPECT_EQ(segs[3].p[3].x, 10.0);
  EXPECT_EQ(segs[3].p[3].y, 10.0);
  EXPECT_LE(MaxChainDistance(segs, chain), kEps);
}

TEST(RawOutlineFit, LShapeKeepsItsSixCornersAndStraightEdges) {
  // A 30 x 30 square without its lower-right 15 x 15 quarter.
  std::vector<int> chain = TraceOutline(40, 40, [](int x, int y) {
    return x >= 5 && x < 35 && y >= 5 && y < 35 && !(x >= 20 && y >= 20);
  });
  std::vector<Seg> segs = Fit(chain, 0, 1.0);
  ASSERT_EQ(segs.size(), 6u);
  const double corners[6][2] = {{5, 5}, {35, 5}, {35, 20}, {20, 20}, {20, 35}, {5, 35}};
  for (int i = 0; i < 6; i++) {
    EXPECT_EQ(segs[i].p[0].x, corners[i][0]) << i;
    EXPECT_EQ(segs[i].p[0].y, corners[i][1]) << i;
    EXPECT_LT(ControlOffLine(segs[i]), 1e-9) << i;
  }
  ExpectClosedAndSmoothJoins(segs);
}

TEST(RawOutlineFit, PieSliceHasStraightRadiiAndARoundArc) {
  // Three quarters of a disc of radius 50 around (60, 60): the two radii end
  // at (110, 60) and (60, 110), the missing quarter's corner is the centre.
  std::vector<int> chain = TraceOutline(120, 120, [](int x, int y) {
    double dx = x + 0.5 - 60.0, dy = y + 0.5 - 60.0;
    return !(dx > 0 && dy > 0) && dx * dx + dy * dy <= 2500.0;
  });
  std::vector<Seg> segs = Fit(chain, 0, 1.0);
  EXPECT_LE(MaxChainDistance(segs, chain), 1.0 + kEps);
  EXPECT_EQ(CornerCount(segs), 3);
  ExpectClosedAndSmoothJoins(segs);
  const double ends[3][2] = {{110, 60}, {60, 60}, {60, 110}};
  int straight = 0;
  for (const Seg& s : segs) {
    for (int k = 0; k < 2; k++) {
      bool fromEnd = s.p[0].x == ends[k][0] && s.p[0].y == ends[k][1];
      bool toNext = s.p[3].x == ends[k + 1][0] && s.p[3].y == ends[k + 1][1];
      if (fromEnd && toNext) {
        straight++;
        EXPECT_LT(ControlOffLine(s), 1e-9);
      }
    }
  }
  EXPECT_EQ(straight, 2);
  // A three-quarter arc takes two or three cubics.
  EXPECT_LE(segs.size(), 5u);
}

TEST(RawOutlineFit, DiamondKeepsFourCornersWithStraightSides) {
  // |x - 30| + |y - 30| < 20: staircase sides at 45 degrees.
  std::vector<int> chain = TraceOutline(60, 60, [](int x, int y) {
    return std::abs(2 * x + 1 - 60) + std::abs(2 * y + 1 - 60) < 40;
  });
  std::vector<Seg> segs = Fit(chain, 0, 1.0);
  EXPECT_EQ(segs.size(), 4u);
  EXPECT_EQ(CornerCount(segs), 4);
  for (const Seg& s : segs) EXPECT_LT(ControlOffLine(s), 1e-9);
  EXPECT_LE(MaxChainDistance(segs, chain), 1.0 + kEps);
  ExpectClosedAndSmoothJoins(segs);
}

TEST(RawOutlineFit, LongStraightRunsAreOneStraightSegment) {
  // Axis-parallel: the controls sit at the thirds of the run.
  std::vector<int> flat = StaircaseLine(1000, 0);
  std::vector<Seg> segs = Fit(flat, 0, 1.0);
  ASSERT_EQ(segs.size(), 1u);
  EXPECT_EQ(segs[0].p[0].x, 0.0);
  EXPECT_EQ(segs[0].p[3].x, 1000.0);
  EXPECT_NEAR(segs[0].p[1].x, 1000.0 / 3.0, 1e-9);
  EXPECT_NEAR(segs[0].p[2].x, 2000.0 / 3.0, 1e-9);
  EXPECT_EQ(segs[0].p[1].y, 0.0);
  EXPECT_EQ(segs[0].p[2].y, 0.0);
  EXPECT_TRUE(segs[0].cornerStart);
  EXPECT_TRUE(segs[0].cornerEnd);
  // A staircase of slope 2/7 is also one straight piece.
  std::vector<int> slope = StaircaseLine(700, -200);
  segs = Fit(slope, 0, 1.0);
  ASSERT_EQ(segs.size(), 1u);
  EXPECT_LT(ControlOffLine(segs[0]), 1e-9);
  EXPECT_LE(MaxChainDistance(segs, slope), 1.0 + kEps);
}

TEST(RawOutlineFit, RandomBlobsStayWithinToleranceWithSmoothJoins) {
  Lcg rng{12345u};
  for (int blob = 0; blob < 12; blob++) {
    SCOPED_TRACE(blob);
    // A union of discs around the centre of an 80 x 80 grid.
    double cx[5], cy[5], cr[5];
    for (int k = 0; k < 5; k++) {
      cx[k] = 40.0 + (rng.Next() - 0.5) * 30.0;
      cy[k] = 40.0 + (rng.Next() - 0.5) * 30.0;
      cr[k] = 6.0 + rng.Next() * 14.0;
    }
    cx[0] = cy[0] = 40.0;
    std::vector<int> chain = TraceOutline(80, 80, [&](int x, int y) {
      for (int k = 0; k < 5; k++) {
        double dx = x + 0.5 - cx[k], dy = y + 0.5 - cy[k];
        if (dx * dx + dy * dy <= cr[k] * cr[k]) return true;
      }
      return false;
    });
    for (double tol : {0.5, 1.0, 2.0}) {
      std::vector<Seg> segs = Fit(chain, 0, tol);
      EXPECT_LE(MaxChainDistance(segs, chain), tol + kEps) << tol;
      ExpectClosedAndSmoothJoins(segs);
    }
  }
}

TEST(RawOutlineFit, LooserToleranceNeedsNoMoreSegments) {
  std::vector<int> chain = TraceOutline(100, 100, [](int x, int y) {
    double dx = x + 0.5 - 50.0, dy = y + 0.5 - 50.0;
    return dx * dx / 1600.0 + dy * dy / 400.0 <= 1.0 || (x > 45 && x < 55 && y > 10 && y < 90);
  });
  std::vector<Seg> tight = Fit(chain, 0, 0.5);
  std::vector<Seg> loose = Fit(chain, 0, 2.0);
  EXPECT_LE(MaxChainDistance(tight, chain), 0.5 + kEps);
  EXPECT_LE(MaxChainDistance(loose, chain), 2.0 + kEps);
  EXPECT_LE(loose.size(), tight.size());
}

TEST(RawOutlineFit, ResultDependsOnlyOnTheInput) {
  std::vector<int> chain = DiscOutline(37.0, 45);
  std::vector<Seg> a = Fit(chain, 0, 1.0);
  std::vector<Seg> b = Fit(chain, 0, 1.0);
  ExpectSameSegments(a, b);
}
