// Polygon regions: left and top edges inside, right and bottom edges
// outside, and the two fill rules.
#include <gtest/gtest.h>

#include "AfxGdi.h"

TEST(Region, SquareEdges) {
  POINT square[] = {{2, 2}, {6, 2}, {6, 6}, {2, 6}};
  CRgn rgn;
  ASSERT_TRUE(rgn.CreatePolygonRgn(square, 4, ALTERNATE));
  EXPECT_TRUE(rgn.PtInRegion(2, 2));   // top-left corner
  EXPECT_TRUE(rgn.PtInRegion(2, 5));   // left edge
  EXPECT_TRUE(rgn.PtInRegion(5, 2));   // top edge
  EXPECT_TRUE(rgn.PtInRegion(5, 5));
  EXPECT_FALSE(rgn.PtInRegion(6, 3));  // right edge
  EXPECT_FALSE(rgn.PtInRegion(3, 6));  // bottom edge
  EXPECT_FALSE(rgn.PtInRegion(1, 3));
  EXPECT_FALSE(rgn.PtInRegion(3, 1));
  EXPECT_TRUE(rgn.PtInRegion(CPoint(3, 3)));
}

TEST(Region, SlantedRightEdgeIsOutside) {
  // The hypotenuse x + y = 8 is a right edge: on it is outside.
  POINT tri[] = {{0, 0}, {8, 0}, {0, 8}};
  CRgn rgn;
  ASSERT_TRUE(rgn.CreatePolygonRgn(tri, 3, WINDING));
  EXPECT_TRUE(rgn.PtInRegion(3, 4));
  EXPECT_FALSE(rgn.PtInRegion(4, 4));
  EXPECT_TRUE(rgn.PtInRegion(0, 7));
  EXPECT_FALSE(rgn.PtInRegion(0, 8));
  EXPECT_FALSE(rgn.PtInRegion(-1, 3));
}

TEST(Region, AlternateAndWindingDifferOnOverlap) {
  // Pentagram: the centre pentagon is crossed twice in the same direction.
  POINT star[] = {{5, 0}, {8, 10}, {0, 4}, {10, 4}, {2, 10}};
  CRgn alt, wind;
  ASSERT_TRUE(alt.CreatePolygonRgn(star, 5, ALTERNATE));
  ASSERT_TRUE(wind.CreatePolygonRgn(star, 5, WINDING));
  EXPECT_FALSE(alt.PtInRegion(5, 5));
  EXPECT_TRUE(wind.PtInRegion(5, 5));
  EXPECT_TRUE(alt.PtInRegion(2, 5));  // a point of the star
  EXPECT_TRUE(wind.PtInRegion(2, 5));
  EXPECT_FALSE(wind.PtInRegion(0, 9));

  // An inner square traversed like the outer one: a hole only for ALTERNATE.
  POINT nested[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0},
                    {3, 3}, {7, 3},  {7, 7},   {3, 7},  {3, 3}};
  CRgn a2, w2;
  ASSERT_TRUE(a2.CreatePolygonRgn(nested, 10, ALTERNATE));
  ASSERT_TRUE(w2.CreatePolygonRgn(nested, 10, WINDING));
  EXPECT_FALSE(a2.PtInRegion(5, 5));
  EXPECT_TRUE(w2.PtInRegion(5, 5));
  EXPECT_TRUE(a2.PtInRegion(7, 5));  // the hole's right edge belongs to the ring
  EXPECT_TRUE(a2.PtInRegion(5, 1));
}

TEST(Region, BadInputAndLifecycle) {
  POINT tri[] = {{0, 0}, {8, 0}, {0, 8}};
  CRgn rgn;
  EXPECT_FALSE(rgn.PtInRegion(1, 1));  // not created
  EXPECT_FALSE(rgn.CreatePolygonRgn(nullptr, 3, ALTERNATE));
  EXPECT_FALSE(rgn.CreatePolygonRgn(tri, 1, ALTERNATE));
  EXPECT_FALSE(rgn.CreatePolygonRgn(tri, 3, 7));
  ASSERT_TRUE(rgn.CreatePolygonRgn(tri, 3, ALTERNATE));
  POINT other[] = {{20, 20}, {30, 20}, {20, 30}};
  EXPECT_FALSE(rgn.CreatePolygonRgn(other, 3, ALTERNATE));  // keeps the first
  EXPECT_TRUE(rgn.PtInRegion(1, 1));
  EXPECT_TRUE(rgn.DeleteObject());
  EXPECT_FALSE(rgn.PtInRegion(1, 1));
  EXPECT_FALSE(rgn.DeleteObject());
  ASSERT_TRUE(rgn.CreatePolygonRgn(other, 3, ALTERNATE));
  EXPECT_TRUE(rgn.PtInRegion(21, 21));
}

TEST(Region, LargeCoordinatesDoNotOverflow) {
  POINT big[] = {{-2000000000, -2000000000}, {2000000000, -2000000000}, {-2000000000, 2000000000}};
  CRgn rgn;
  ASSERT_TRUE(rgn.CreatePolygonRgn(big, 3, ALTERNATE));
  EXPECT_TRUE(rgn.PtInRegion(-1, 0));
  EXPECT_FALSE(rgn.PtInRegion(0, 0));  // on the hypotenuse x + y = 0: outside
  EXPECT_TRUE(rgn.PtInRegion(-1999999999, 1999999998));
  EXPECT_FALSE(rgn.PtInRegion(-1999999999, 1999999999));
}
