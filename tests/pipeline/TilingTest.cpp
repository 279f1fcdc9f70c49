// End to end on the example pictures: the straight regions tile the picture
// exactly, and nearly every pixel lies in a region of the colour the
// segmentation painted there (the reduced outlines cut a few border pixels).
#include <gtest/gtest.h>

#include "common/TestImages.h"
#include "pipeline/RegionRaster.h"

namespace {

class ExampleTiling : public ::testing::TestWithParam<const char*> {};

TEST_P(ExampleTiling, StraightRegionsTileThePicture) {
  auto dib = testimg::LoadDib(testimg::ExamplePath(GetParam()));
  CPictrace e;
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  e.SetImageRealRect(0, 0, w, h);
  e.SetOutputLineType(1);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  CPTRegions regions;
  e.GetRegions(&regions, 0);  // straight lines, asked for through the region output
  ASSERT_GT(regions.m_nRegions, 1);
  pipetest::Coverage cov = pipetest::RasterizeRegions(regions, w, h);
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);
  int wrongColour = 0;
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) {
      const int owner = cov.owner[y * w + x];
      wrongColour += owner < 0 || e.m_arrColorList[regions.m_pRegions[owner].m_nColorIndex - 1] !=
                                      testimg::PixelAt(e.m_pWorkBits, w, x, h - 1 - y);
    }
  RecordProperty("wrong_colour", wrongColour);
  EXPECT_LT(wrongColour, w * h / 40) << "pixels in a region of another colour than the segmentation painted";
}

INSTANTIATE_TEST_SUITE_P(Pictures, ExampleTiling,
                         ::testing::Values("monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png", "astronaut.png", "mug.png"),
                         [](const ::testing::TestParamInfo<const char*>& info) { return testimg::ParamName(info.param); });

}  // namespace
