// The segmentation driver against its stages run by hand, with the host's
// colour array, the cartoon mask and the progress protocol.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "cli/ImageResample.h"
#include "common/TestImages.h"
#include "outline/OutlineRecords.h"

namespace {

// Loads the picture with an output rectangle of one unit a pixel.
void Load(CPictrace& e, std::vector<unsigned char>& dib) {
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  e.SetImageRealRect(0, 0, e.m_bmiHeader.biWidth, e.m_bmiHeader.biHeight);
}

// The driver's stages run by hand with chosen targets, for pictures the
// few-colour short cut does not apply to.
class StageEngine : public CPictrace {
 public:
  explicit StageEngine(std::vector<unsigned char>& dib) { Load(*this, dib); }
  void Prepare(int wanted) {
    m_dSegmentParam = 1.0;
    int n = 0;
    EXPECT_FALSE(GetColorNumber(n, &colors) && n <= wanted) << "the few-colour short cut applies";
    PyramidAlgo();
  }
  int Pass(int target) {
    int n = 0;
    MeanShift(target, &colors);
    GetOutline4Cartoon2(1.0, nullptr);
    GetColorListFromRegion(n, &colors);
    return n;
  }
  void Finish() {
    SortRegionSeq(m_listOutlineRegions);
    SetOutlineColorIndex(m_listOutlineRegions);
    CreateOutputPolygon(m_nOutputLineType);
  }
  CDWordArray colors;
};

std::vector<DWORD> ToVector(const CDWordArray& a) { return std::vector<DWORD>(a.GetData(), a.GetData() + a.GetSize()); }

// Runs the driver on the picture and expects it to leave what the stages run
// by hand left, and to hand the colour list back in the host's array.
void ExpectDriverMatches(std::vector<unsigned char>& dib, int wanted, int noRetry, StageEngine& byHand) {
  CPictrace driver;
  Load(driver, dib);
  CDWordArray colors;
  colors.Add(0x123456);  // stale content of the host's array
  driver.DoSegmentation(wanted, &colors, 1.0, noRetry, nullptr);
  EXPECT_EQ(ToVector(colors), ToVector(driver.m_arrColorList));
  EXPECT_EQ(ToVector(driver.m_arrColorList), ToVector(byHand.m_arrColorList));
  EXPECT_EQ(driver.m_nColorRadius, byHand.m_nColorRadius);
  ASSERT_EQ(driver.m_listOutlineRegions.size(), byHand.m_listOutlineRegions.size());
  auto b = byHand.m_listOutlineRegions.begin();
  for (COutlineRegion* a : driver.m_listOutlineRegions) {
    EXPECT_EQ(a->m_nColorIndex, (*b)->m_nColorIndex);
    ASSERT_EQ(a->m_nPoints, (*b)->m_nPoints);
    EXPECT_EQ(0, std::memcmp(a->m_pPoints, (*b)->m_pPoints, sizeof(sPoint) * a->m_nPoints));
    ASSERT_NE(a->m_pPolygon, nullptr);
    EXPECT_EQ(a->m_pPolygon->m_nLines, (*b++)->m_pPolygon->m_nLines);
  }
  EXPECT_EQ(0, std::memcmp(driver.m_pWorkBits, byHand.m_pWorkBits, driver.m_bmiHeader.biSizeImage));
}

std::vector<unsigned char> Photo() {
  return pictrace::BoxResample(testimg::LoadDib(testimg::ExamplePath("astronaut.png")), 256, 256);
}

TEST(Driver, PassesFollowTheRetryRule) {
  // The photograph's passes find no more colours than they aim at, so the
  // target goes up by one per retry until a pass finds the count, for at
  // most five retries. Each case runs the passes by hand until then.
  struct Case { int wanted, noRetry; std::vector<int> targets; } cases[] = {
      {7, 0, {7}},                         // hit at once
      {12, 1, {12}},                       // missed, no retry asked
      {10, 0, {10, 11, 12, 13}},           // hit on the third retry
      {13, 0, {13, 14, 15, 16, 17, 18}}};  // never hit: the fifth retry stands
  std::vector<unsigned char> dib = Photo();
  for (const Case& c : cases) {
    StageEngine byHand(dib);
    byHand.Prepare(c.wanted);
    std::vector<int> targets{c.wanted}, counts{byHand.Pass(c.wanted)};
    while (!c.noRetry && counts.back() < c.wanted && targets.size() < 6) {
      targets.push_back(targets.back() + 1);
      counts.push_back(byHand.Pass(targets.back()));
    }
    ASSERT_EQ(targets, c.targets) << "the picture no longer suits this case: " << testing::PrintToString(counts);
    byHand.Finish();
    ExpectDriverMatches(dib, c.wanted, c.noRetry, byHand);
  }
}

TEST(Driver, TwoWantedColoursOvershootingRunNoRetry) {
  // Three stripes 13 apart: at radius 15 the mean shift finds one mode and
  // shrinks the radius to 13, where every stripe is a mode of its own. The
  // next target would be 1, so no retry runs.
  const COLORREF a = RGB(100, 100, 100), b = RGB(113, 100, 100), c = RGB(100, 113, 100);
  auto dib = testimg::MakeDib24(60, 60, [&](int x, int) { return x < 20 ? a : x < 40 ? b : c; });
  StageEngine byHand(dib);
  byHand.Prepare(2);
  ASSERT_EQ(byHand.Pass(2), 3);
  byHand.Finish();
  EXPECT_EQ(byHand.m_nColorRadius, 13);
  EXPECT_EQ(ToVector(byHand.m_arrColorList), (std::vector<DWORD>{b, c, a}));
  ExpectDriverMatches(dib, 2, 0, byHand);
}

TEST(Driver, FewColoursAreSnappedToTheirExactValues) {
  // Two flat halves with specks of near colours up to the last column and
  // the top row: the palette is the two colours, brightest first, and every
  // speck takes the nearer one.
  const COLORREF a = RGB(200, 40, 40), b = RGB(30, 60, 180);
  auto dib = testimg::MakeDib24(60, 40, [&](int x, int row) {
    if (x % 7 == 3 && row % 5 == 4) return x < 30 ? RGB(190, 50, 45) : RGB(40, 50, 170);
    return x < 30 ? a : b;
  });
  CPictrace e;
  Load(e, dib);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  EXPECT_EQ(ToVector(e.m_arrColorList), (std::vector<DWORD>{a, b}));
  testimg::ExpectImage(e.m_pWorkBits, 60, 40, [&](int x, int) { return x < 30 ? a : b; });
  EXPECT_EQ(e.m_listOutlineRegions.size(), 2u);
}

TEST(Driver, CartoonMaskTakesPartInTheFirstPassOnly) {
  std::vector<unsigned char> dib = Photo();
  long pixels[2];
  for (int noRetry : {1, 0}) {
    unsigned char* mask = new unsigned char[256 * 256]();
    for (int y = 50; y < 100; y++) std::fill(mask + y * 256 + 50, mask + y * 256 + 100, 2);
    CPictrace e;
    Load(e, dib);
    e.DoSegmentation(12, nullptr, 1.0, noRetry, &mask);
    pixels[noRetry] = 0;
    for (COutlineRegion* r : e.m_listOutlineRegions) pixels[noRetry] += r->m_nPixels;
    delete[] mask;
  }
  EXPECT_EQ(pixels[1], 256 * 256 - 50 * 50);
  EXPECT_EQ(pixels[0], 256 * 256);
}

TEST(Driver, ProgressOfAJobWithoutNoiseReduction) {
  // 80 units: the pyramid stages end at 50 %, the clustering at 75 %, the
  // output polygons at 100 %.
  struct Log : CWnd {
    LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM) override {
      if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
      return 0;
    }
    std::vector<int> positions;
  } log;
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
  EXPECT_EQ(none.HasOutlines(), 0);
  EXPECT_EQ(ToVector(colors), std::vector<DWORD>{7});
}

}  // namespace
