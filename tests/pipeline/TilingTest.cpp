// End to end on the example pictures: straight regions tile the picture
// exactly, curve output stays within its tolerance of the raw outlines.
#include <gtest/gtest.h>

#include <cmath>

#include "common/TestImages.h"
#include "core/OutlineRecords.h"
#include "output/CurveDistance.h"
#include "pipeline/RegionRaster.h"

namespace {

const char* const kExamples[] = {"monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png",
                                 "astronaut.png", "mug.png"};

class ExampleTest : public ::testing::TestWithParam<const char*> {
 protected:
  // Segments the example into 8 colours, the output rectangle being the
  // picture; curves asks for curve output at tolerance 1.
  void Segment(bool curves) {
    dib = testimg::LoadDib(testimg::ExamplePath(GetParam()));
    ASSERT_TRUE(e.SetDIBData(dib.data()));
    w = e.m_bmiHeader.biWidth;
    h = e.m_bmiHeader.biHeight;
    e.SetImageRealRect(0, 0, w, h);
    if (curves) {
      e.SetOutputLineType(1);
      e.SetCurveTolerance(1.0);
    }
    CDWordArray colors;
    e.DoSegmentation(8, &colors, 1.0, 0, nullptr);
    ASSERT_TRUE(e.HasOutlines());
  }

  std::vector<unsigned char> dib;
  CPictrace e;
  int w = 0, h = 0;
};

std::string Name(const ::testing::TestParamInfo<const char*>& info) {
  return testimg::ParamName(info.param);
}

}  // namespace

TEST_P(ExampleTest, StraightRegionsCoverEveryPixelOnce) {
  ASSERT_NO_FATAL_FAILURE(Segment(false));
  CPTRegions regions;
  e.GetRegions(&regions, 0);
  ASSERT_GT(regions.m_nRegions, 0);

  pipetest::Coverage cov = pipetest::RasterizeRegions(regions, w, h);
  RecordProperty("regions", regions.m_nRegions);
  RecordProperty("uncovered", cov.Uncovered());
  RecordProperty("covered_twice", cov.CoveredTwice());
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);
}

TEST_P(ExampleTest, CurvesStayWithinToleranceOfTheRawOutlines) {
  ASSERT_NO_FATAL_FAILURE(Segment(true));
  double worst = 0;
  long points = 0;
  auto check = [&](const CPTPolygon* p, const sPoint* raw, int n) {
    ASSERT_NE(p, nullptr);
    if (n < 2) return;
    ASSERT_GT(p->m_nLines, 0);
    // Sample every fourth raw point; the fit bounds them all alike.
    for (int i = 0; i < n; i += 4) {
      worst = std::max(worst, outtest::DistanceToPolygon(*p, raw[i].x, h - raw[i].y));
      points++;
    }
  };
  for (COutlineRegion* r : e.m_listOutlineRegions) {
    check(r->m_pPolygon, r->m_pRawPoints, r->m_nRawPoints);
    for (INT_PTR k = 0; k < r->m_arrHoles.GetSize(); k++)
      check(r->m_arrHoles[k]->m_pPolygon, r->m_arrHoles[k]->m_pRawPoints,
            r->m_arrHoles[k]->m_nRawPoints);
  }
  RecordProperty("worst_distance_x1000", static_cast<int>(worst * 1000));
  EXPECT_GT(points, 0);
  EXPECT_LE(worst, 1.0 + 1e-3);
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleTest, ::testing::ValuesIn(kExamples), Name);
