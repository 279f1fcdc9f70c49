#include <gtest/gtest.h>

#include "AfxGdi.h"

TEST(Region, Placeholder) {
  POINT square[] = {{2, 2}, {6, 2}, {6, 6}, {2, 6}};
  CRgn rgn;
  ASSERT_TRUE(rgn.CreatePolygonRgn(square, 4, ALTERNATE));
  EXPECT_TRUE(rgn.PtInRegion(2, 2));
}
