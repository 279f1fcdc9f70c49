// Engine defaults, setters and the satin width derived from the output
// rectangle.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "common/TestImages.h"
#include "engine/EngineTestSupport.h"

namespace {

using enginetest::TestEngine;

std::vector<unsigned char> GreyDib(int width, int height) {
  return testimg::MakeDib24(width, height, [](int, int) { return RGB(128, 128, 128); });
}

TEST(EngineStateTest, ConstructorDefaults) {
  CPictrace engine;
  EXPECT_EQ(engine.m_pProgressWnd, nullptr);
  EXPECT_EQ(engine.m_pThreadColors, nullptr);
  EXPECT_EQ(engine.m_nThreadColorCount, 0);
  EXPECT_EQ(engine.m_bThinning, 0);
  EXPECT_EQ(engine.m_fProgressTotal, 100.0f);
  EXPECT_EQ(engine.m_fProgressPos, 0.0f);
  EXPECT_EQ(engine.m_nUnused1, 0);
  EXPECT_EQ(engine.m_dSatinWidth, 6.0);
  EXPECT_EQ(engine.m_dUnusedParam1, 200.0);
  EXPECT_EQ(engine.m_dUnusedParam2, 40.0);
  EXPECT_EQ(engine.m_dUnusedParam3, 1.0);
  EXPECT_EQ(engine.m_nOutputLineType, 0);
  EXPECT_EQ(engine.m_nColorRadius, 15);
  EXPECT_EQ(engine.m_nSegmentThreshold, 10);
  EXPECT_EQ(engine.m_bmiHeader.biWidth, 0);
  EXPECT_EQ(engine.m_bmiHeader.biHeight, 0);
  EXPECT_EQ(engine.HasDIBData(), 0);
  EXPECT_EQ(engine.HasOutlines(), 0);
  CSize size(9, 9);
  EXPECT_EQ(engine.GetDIBSize(size), 0);
  // The lightness curve: -16 at black, 116 - 16 at white.
  EXPECT_EQ(engine.m_fLightness[0], -16.0f);
  EXPECT_EQ(engine.m_fLightness[255], 100.0f);
  float mid = static_cast<float>(116.0 * std::pow(128 / 255.0, 0.3333333));
  EXPECT_EQ(engine.m_fLightness[128], mid - 16);
}

TEST(EngineStateTest, SensitivitySetsThresholdOnlyInRange) {
  CPictrace engine;
  // In turn: sensitivity set, threshold expected after it.
  for (auto step : {std::pair<int, int>{101, 10}, {-1, 10}, {100, 0}, {0, 100}, {37, 63}}) {
    engine.SetSegmentationSensitivity(step.first);
    EXPECT_EQ(engine.m_nSegmentThreshold, step.second) << "sensitivity " << step.first;
  }
}

TEST(EngineStateTest, SatinWidthSetterIgnoresNonPositiveAndNaN) {
  TestEngine engine;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (auto step : {std::pair<double, double>{0.0, 6.0}, {-2.0, 6.0}, {nan, 6.0}, {2.5, 2.5}}) {
    engine.SetSatinWidth(step.first);
    EXPECT_EQ(engine.m_dSatinWidth, step.second) << "width " << step.first;
  }
}

TEST(EngineStateTest, SatinWidthFollowsTheLargerScale) {
  // 1000 x 500 pixels in 2000 x 1500 units: scale max(2, 3) = 3, 35 / 3 px.
  CPictrace engine;
  auto dib = GreyDib(1000, 500);
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  engine.SetImageRealRect(0, 0, 2000, 1500);
  EXPECT_EQ(engine.m_dSatinWidth, 35.0 / 3.0);
  LONG l, t, r, b;
  engine.GetImageRealRect(l, t, r, b);
  EXPECT_EQ(l, 0);
  EXPECT_EQ(t, 0);
  EXPECT_EQ(r, 2000);
  EXPECT_EQ(b, 1500);
  CSize out;
  engine.GetOutputSize(out);
  EXPECT_EQ(out.cx, 2000);
  EXPECT_EQ(out.cy, 1500);

  // Wider than tall in units: sx = 4 wins over sy = 2.
  engine.SetImageRealRect(100, 50, 4100, 1050);
  EXPECT_EQ(engine.m_dSatinWidth, 35.0 / 4.0);
}

TEST(EngineStateTest, EmptyRectangleOrNoImageLeavesTheSatinWidth) {
  CPictrace engine;
  engine.SetImageRealRect(0, 0, 2000, 1500);  // no image yet
  EXPECT_EQ(engine.m_dSatinWidth, 6.0);
  LONG l, t, r, b;
  engine.GetImageRealRect(l, t, r, b);
  EXPECT_EQ(r, 2000);  // stored all the same

  CPictrace other;
  auto dib = GreyDib(1000, 500);
  ASSERT_EQ(other.SetDIBData(dib.data()), 1);
  other.SetImageRealRect(0, 0, 0, 1500);  // zero width
  EXPECT_EQ(other.m_dSatinWidth, 6.0);
  other.SetImageRealRect(0, 10, 2000, 10);  // zero height
  EXPECT_EQ(other.m_dSatinWidth, 6.0);
  other.SetImageRealRect(0, 1500, 2000, 0);  // negative height
  EXPECT_EQ(other.m_dSatinWidth, 6.0);
}

TEST(EngineStateTest, LoadingAnImageRederivesTheSatinWidthFromTheRectangle) {
  CPictrace engine;
  engine.SetImageRealRect(0, 0, 2000, 1500);
  auto dib = GreyDib(1000, 500);
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  EXPECT_EQ(engine.m_dSatinWidth, 35.0 / 3.0);
  auto small = GreyDib(100, 50);  // scale 30
  ASSERT_EQ(engine.SetDIBData(small.data()), 1);
  EXPECT_EQ(engine.m_dSatinWidth, 35.0 / 30.0);
}

TEST(EngineStateTest, SimpleSettersStoreTheirArguments) {
  CPictrace engine;
  engine.SetThinningFlag(7);
  EXPECT_EQ(engine.IsThinning(), 7);
  engine.SetOutputLineType(1);
  EXPECT_EQ(engine.m_nOutputLineType, 1);
  int mask[4] = {0, -1, 0, 0};
  engine.SetMASKData(mask);
  EXPECT_EQ(engine.GetMaskBuf(), mask);
  EXPECT_EQ(engine.GetBmpInfoHeader(), &engine.m_bmiHeader);
}

TEST(EngineStateTest, ResetKeepsTheImageAndParameters) {
  CPictrace engine;
  auto dib = GreyDib(10, 6);
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  engine.SetSegmentationSensitivity(30);
  engine.m_arrColorList.Add(0x123456);
  unsigned char* image = engine.m_pDIB;
  engine.ResetPictrace();
  EXPECT_EQ(engine.HasDIBData(), 1);
  EXPECT_EQ(engine.m_pDIB, image);
  EXPECT_EQ(engine.m_nSegmentThreshold, 70);
  EXPECT_EQ(engine.m_arrColorList.GetSize(), 1);
  CSize size;
  EXPECT_EQ(engine.GetDIBSize(size), 1);
  EXPECT_EQ(size.cx, 10);
  EXPECT_EQ(size.cy, 6);
}

}  // namespace
