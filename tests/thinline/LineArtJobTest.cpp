// Choosing which colours of a segmented picture are thinned.
#include <gtest/gtest.h>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "thinline/AsciiPicture.h"
#include "PictraceLineArt.h"

using namespace thintest;

namespace {

COutlineRegion* Region(int l, int t, int r, int b, COLORREF color, int colorIndex) {
  COutlineRegion* pRegion = new COutlineRegion;
  pRegion->m_rcBound = CRect(l, t, r, b);
  pRegion->m_crColor = color;
  pRegion->m_nColorIndex = colorIndex;
  pRegion->m_nPixels = (r - l + 1) * (b - t + 1);
  return pRegion;
}

// A white frame around a black and a red region, as a segmentation leaves it.
struct Segmented : ::testing::Test {
  CPictrace engine;
  void SetUp() override {
    LoadBlank(engine, 20, 20);
    engine.m_arrColorList.Add(kWhite);
    engine.m_arrColorList.Add(kRed);
    engine.m_arrColorList.Add(kBlack);
    engine.m_listOutlineRegions = {Region(0, 0, 19, 19, kWhite, 0), Region(5, 5, 9, 9, kBlack, 2),
                                   Region(10, 10, 14, 14, kRed, 1)};
  }
  std::vector<int> StoredFlags() {
    std::vector<int> flags;
    for (COutlineRegion* pRegion : engine.m_listStoredRegions) flags.push_back(pRegion->m_bMarked);
    return flags;
  }
};

}  // namespace

TEST_F(Segmented, EveryColourButTheBackgroundIsThinned) {
  pictrace::thinline::LineArtOptions options;
  pictrace::thinline::LineArtResult result;
  std::string error;
  ASSERT_TRUE(pictrace::thinline::ChooseLineColors(engine, options, result, error)) << error;
  EXPECT_TRUE(result.bBackground);
  EXPECT_EQ(kWhite, result.crBackground);
  EXPECT_EQ((std::vector<int>{1, 0, 0}), StoredFlags());
  ASSERT_EQ(2, engine.m_arrLineColors.GetSize());
  EXPECT_EQ(kRed, engine.m_arrLineColors[0]);  // in colour list order
  EXPECT_EQ(kBlack, engine.m_arrLineColors[1]);
  for (COutlineRegion* pRegion : engine.m_listOutlineRegions) EXPECT_EQ(0, pRegion->m_bSkip);
}

TEST_F(Segmented, GivenLineColoursPickTheNearestSegmentedColour) {
  pictrace::thinline::LineArtOptions options;
  options.lineColors = {RGB(30, 20, 10)};
  pictrace::thinline::LineArtResult result;
  std::string error;
  ASSERT_TRUE(pictrace::thinline::ChooseLineColors(engine, options, result, error));
  EXPECT_EQ((std::vector<int>{1, 0, 1}), StoredFlags());
  ASSERT_EQ(1, engine.m_arrLineColors.GetSize());
  EXPECT_EQ(kBlack, engine.m_arrLineColors[0]);
}

TEST(LineArtJob, RefusesWithoutPictureOrRegions) {
  CPictrace engine;
  pictrace::thinline::LineArtOptions options;
  pictrace::thinline::LineArtResult result;
  std::string error;
  EXPECT_FALSE(pictrace::thinline::RunLineArt(engine, options, result, error));
  EXPECT_FALSE(error.empty());
  LoadBlank(engine, 8, 8);
  error.clear();
  EXPECT_FALSE(pictrace::thinline::ChooseLineColors(engine, options, result, error));
  EXPECT_FALSE(error.empty());
  EXPECT_FALSE(pictrace::thinline::ThinAndTrace(engine, kWhite, 1.0, result, error));
}
