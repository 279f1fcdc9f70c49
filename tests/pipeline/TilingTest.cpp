// End to end on the example pictures: the straight regions tile the picture
// exactly, nearly every pixel lies in a region of the colour the segmentation
// painted there (the reduced outlines cut a few border pixels), and the curves
// stay within their tolerance of the raw outlines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/TestImages.h"
#include "outline/OutlineRecords.h"
#include "pipeline/RegionRaster.h"

namespace {

double SegmentDistance(double px, double py, double ax, double ay, double bx, double by) {
  double dx = bx - ax, dy = by - ay, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? std::min(1.0, std::max(0.0, ((px - ax) * dx + (py - ay) * dy) / len2)) : 0.0;
  return std::hypot(ax + t * dx - px, ay + t * dy - py);
}

// Distance from a point to a chain of Bezier lines, sampled densely enough
// to check a tolerance to a few thousandths of a pixel.
double DistanceToCurves(const CPTPolygon& poly, double px, double py) {
  double best = std::numeric_limits<double>::infinity();
  for (int i = 0; i < poly.m_nLines; i++) {
    const CPTLine& l = poly.m_pLines[i];
    const CPTPoint* p[4] = {&l.m_ptStart, &l.m_ptCtrl1, &l.m_ptCtrl2, &l.m_ptEnd};
    double prevX = l.m_ptStart.x, prevY = l.m_ptStart.y;
    for (int s = 1; s <= 64; s++) {
      double t = s / 64.0, u = 1 - t, w[4] = {u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
      double x = 0, y = 0;
      for (int k = 0; k < 4; k++) x += w[k] * p[k]->x, y += w[k] * p[k]->y;
      best = std::min(best, SegmentDistance(px, py, prevX, prevY, x, y));
      prevX = x, prevY = y;
    }
  }
  return best;
}

class ExampleTiling : public ::testing::TestWithParam<const char*> {};

TEST_P(ExampleTiling, RegionsTileThePictureAndCurvesFollowTheOutlines) {
  auto dib = testimg::LoadDib(testimg::ExamplePath(GetParam()));
  CPictrace e;
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  e.SetImageRealRect(0, 0, w, h);
  e.SetOutputLineType(1);
  e.SetCurveTolerance(0.75);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  ASSERT_TRUE(e.HasOutlines());

  // Curves: every raw outline point (every third, the fit bounds all alike)
  // lies within the tolerance, y flipped to the top-down frame.
  double worst = 0;
  auto check = [&](const CPTPolygon* p, const sPoint* raw, int n) {
    ASSERT_NE(p, nullptr);
    if (n < 2) return;
    ASSERT_GT(p->m_nLines, 0);
    // Lines join; an outline whose raw chain does not repeat its first point
    // closes over the last raw step.
    for (int i = 0; i < p->m_nLines; i++) {
      EXPECT_EQ(p->m_pLines[i].m_nType, 1);
      const CPTPoint& end = p->m_pLines[i].m_ptEnd;
      const CPTPoint& next = p->m_pLines[(i + 1) % p->m_nLines].m_ptStart;
      if (i + 1 < p->m_nLines) ASSERT_EQ(std::make_pair(end.x, end.y), std::make_pair(next.x, next.y));
      else ASSERT_LE(std::abs(end.x - next.x) + std::abs(end.y - next.y), 1.0f);
    }
    for (int i = 0; i < n; i += 3) worst = std::max(worst, DistanceToCurves(*p, raw[i].x, h - raw[i].y));
  };
  for (COutlineRegion* r : e.m_listOutlineRegions) {
    check(r->m_pPolygon, r->m_pRawPoints, r->m_nRawPoints);
    for (INT_PTR k = 0; k < r->m_arrHoles.GetSize(); k++)
      check(r->m_arrHoles[k]->m_pPolygon, r->m_arrHoles[k]->m_pRawPoints, r->m_arrHoles[k]->m_nRawPoints);
  }
  RecordProperty("worst_distance_x1000", static_cast<int>(worst * 1000));
  EXPECT_LE(worst, 0.75 + 1e-3);

  // Straight lines, asked for through the region output, tile the picture.
  CPTRegions regions;
  e.GetRegions(&regions, 0);
  pipetest::Coverage cov = pipetest::RasterizeRegions(regions, w, h);
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);
  int wrongColour = 0;
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) {
      int owner = cov.owner[y * w + x];
      if (owner < 0) continue;
      COLORREF region = e.m_arrColorList[regions.m_pRegions[owner].m_nColorIndex - 1];
      wrongColour += region != testimg::PixelAt(e.m_pWorkBits, w, x, h - 1 - y);
    }
  RecordProperty("wrong_colour", wrongColour);
  EXPECT_LT(wrongColour, w * h / 40) << "pixels in a region of another colour than the segmentation painted";
}

INSTANTIATE_TEST_SUITE_P(Pictures, ExampleTiling,
                         ::testing::Values("monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png", "astronaut.png", "mug.png"),
                         [](const ::testing::TestParamInfo<const char*>& info) { return testimg::ParamName(info.param); });

}  // namespace
