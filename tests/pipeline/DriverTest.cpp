// The segmentation driver against its stages run by hand, with the host's
// colour array, the cartoon mask and the progress protocol.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "cli/ImageResample.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"

namespace {

std::vector<DWORD> ToVector(const CDWordArray& a) { return std::vector<DWORD>(a.GetData(), a.GetData() + a.GetSize()); }

// Loads the picture with an output rectangle of one unit a pixel.
void Load(CPictrace& e, std::vector<unsigned char>& dib) {
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  e.SetImageRealRect(0, 0, e.m_bmiHeader.biWidth, e.m_bmiHeader.biHeight);
}

// The driver's stages run by hand, for pictures the few-colour short cut
// does not apply to: passes at targets up from `wanted` while they find
// fewer colours, at most six, then the region order and output polygons.
struct StageEngine : CPictrace {
  std::vector<int> Run(int wanted, bool retry) {
    int n = 0;
    m_dSegmentParam = 1.0;
    EXPECT_FALSE(GetColorNumber(n, &colors) && n <= wanted) << "the few-colour short cut applies";
    PyramidAlgo();
    std::vector<int> targets;
    do {
      targets.push_back(wanted + static_cast<int>(targets.size()));
      MeanShift(targets.back(), &colors);
      GetOutline4Cartoon2(1.0, nullptr);
      GetColorListFromRegion(n, &colors);
    } while (retry && n < wanted && targets.size() < 6);
    SortRegionSeq(m_listOutlineRegions);
    SetOutlineColorIndex(m_listOutlineRegions);
    CreateOutputPolygon(m_nOutputLineType);
    return targets;
  }
  CDWordArray colors;
};

TEST(Driver, PassesFollowTheRetryRule) {
  // The photograph's passes find no more colours than they aim at, so the
  // target goes up by one per retry until a pass finds the count, for at
  // most five retries.
  struct Case { int wanted, noRetry; std::vector<int> targets; } cases[] = {
      {7, 0, {7}},                         // hit at once
      {12, 1, {12}},                       // missed, no retry asked
      {10, 0, {10, 11, 12, 13}},           // hit on the third retry
      {13, 0, {13, 14, 15, 16, 17, 18}}};  // never hit: the fifth retry stands
  auto dib = pictrace::BoxResample(testimg::LoadDib(testimg::ExamplePath("astronaut.png")), 256, 256);
  for (const Case& c : cases) {
    StageEngine byHand;
    Load(byHand, dib);
    ASSERT_EQ(byHand.Run(c.wanted, !c.noRetry), c.targets) << "the picture no longer suits this case";
    CPictrace driver;
    Load(driver, dib);
    CDWordArray colors;
    colors.Add(0x123456);  // stale content of the host's array
    driver.DoSegmentation(c.wanted, &colors, 1.0, c.noRetry, nullptr);
    EXPECT_EQ(ToVector(colors), ToVector(driver.m_arrColorList));
    EXPECT_EQ(ToVector(driver.m_arrColorList), ToVector(byHand.m_arrColorList));
    ASSERT_EQ(driver.m_listOutlineRegions.size(), byHand.m_listOutlineRegions.size());
    auto b = byHand.m_listOutlineRegions.begin();
    for (COutlineRegion* a : driver.m_listOutlineRegions) {
      ASSERT_EQ(std::make_tuple(a->m_nColorIndex, a->m_nPoints, a->m_pPolygon->m_nLines),
                std::make_tuple((*b)->m_nColorIndex, (*b)->m_nPoints, (*b)->m_pPolygon->m_nLines));
      EXPECT_EQ(0, std::memcmp(a->m_pPoints, (*b++)->m_pPoints, sizeof(sPoint) * a->m_nPoints));
    }
    EXPECT_EQ(0, std::memcmp(driver.m_pWorkBits, byHand.m_pWorkBits, driver.m_bmiHeader.biSizeImage));
  }
}

TEST(Driver, FewColoursAreSnappedToTheirExactValuesAndTheMaskUsedOnce) {
  // Two flat halves with specks of near colours up to the last column and
  // the top row: the palette is the two colours, brightest first, and every
  // speck takes the nearer one.
  const COLORREF a = RGB(200, 40, 40), b = RGB(30, 60, 180);
  auto dib = testimg::MakeDib24(60, 40, [&](int x, int row) {
    return x % 7 == 3 && row % 5 == 4 ? (x < 30 ? RGB(190, 50, 45) : RGB(40, 50, 170)) : x < 30 ? a : b;
  });
  CPictrace e;
  Load(e, dib);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  EXPECT_EQ(ToVector(e.m_arrColorList), (std::vector<DWORD>{a, b}));
  testimg::ExpectImage(e.m_pWorkBits, 60, 40, [&](int x, int) { return x < 30 ? a : b; });
  // A cartoon mask that leaves out a block is kept by a single pass and
  // gone after retries (the photograph misses 12 colours).
  auto photo = pictrace::BoxResample(testimg::LoadDib(testimg::ExamplePath("astronaut.png")), 256, 256);
  for (int noRetry : {1, 0}) {
    unsigned char* mask = new unsigned char[256 * 256]();
    for (int y = 50; y < 100; y++) std::fill(mask + y * 256 + 50, mask + y * 256 + 100, 2);
    CPictrace m;
    Load(m, photo);
    m.DoSegmentation(12, nullptr, 1.0, noRetry, &mask);
    int pixels = 0;
    for (COutlineRegion* r : m.m_listOutlineRegions) pixels += r->m_nPixels;
    EXPECT_EQ(pixels, 256 * 256 - noRetry * 50 * 50);
    delete[] mask;
  }
}

TEST(Driver, ProgressOfAJobWithoutNoiseReduction) {
  // 80 units: the pyramid stages end at 50 %, the clustering at 75 %, the
  // output polygons at 100 %.
  testimg::ProgressLog log;
  auto dib = testimg::LoadDib(testimg::ExamplePath("monkey_face.png"));
  CPictrace e;
  Load(e, dib);
  e.m_pProgressWnd = &log;
  e.BeginProgress(1);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  EXPECT_TRUE(std::is_sorted(log.positions.begin(), log.positions.end()));
  EXPECT_NE(std::find(log.positions.begin(), log.positions.end(), 75), log.positions.end());
  EXPECT_EQ(log.positions.back(), 100) << testing::PrintToString(log.positions);
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 100.0f);
  CPictrace none;  // without an image nothing happens
  CDWordArray colors;
  colors.Add(7);
  none.DoSegmentation(8, &colors, 1.0, 0, nullptr);
  EXPECT_EQ(std::make_pair(none.HasOutlines(), ToVector(colors)), std::make_pair(0, std::vector<DWORD>{7}));
}

}  // namespace
