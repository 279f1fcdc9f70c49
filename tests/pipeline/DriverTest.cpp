// The segmentation driver's control flow, observed by running the stages by
// hand with chosen targets and comparing the engine state with DoSegmentation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "common/TestImages.h"
#include "core/OutlineRecords.h"

namespace {

class StageEngine : public CPictrace {
 public:
  explicit StageEngine(std::vector<unsigned char>& dib) {
    EXPECT_TRUE(SetDIBData(dib.data()));
    SetImageRealRect(0, 0, m_bmiHeader.biWidth, m_bmiHeader.biHeight);
  }

  // The driver's stages run by hand: Prepare, then one Pass per target (the
  // mask only on the first), then Finish. A pass depends only on the pyramid
  // regions and its target, not on earlier passes. Only for pictures with
  // which the few-colour short cut does not apply.
  void Prepare(CDWordArray* pColors, int nWanted) {
    m_pColors = pColors;
    m_dSegmentParam = 1.0;
    m_nColorRadius = 15;
    int nCount = 0;
    bool bFew = GetColorNumber(nCount, pColors) && nCount <= nWanted;
    EXPECT_FALSE(bFew) << "the few-colour short cut must not apply";
    PyramidAlgo();
  }
  int Pass(int target, unsigned char** ppMask = nullptr) {
    int nCount = 0;
    MeanShift(target, m_pColors);
    GetOutline4Cartoon2(1.0, ppMask);
    GetColorListFromRegion(nCount, m_pColors);
    return nCount;
  }
  void Finish() {
    SortRegionSeq(m_listOutlineRegions);
    SetOutlineColorIndex(m_listOutlineRegions);
    CreateOutputPolygon(m_nOutputLineType);
  }
  std::vector<int> RunByHand(const std::vector<int>& targets, CDWordArray* pColors) {
    Prepare(pColors, targets[0]);
    std::vector<int> counts;
    for (int t : targets) counts.push_back(Pass(t));
    Finish();
    return counts;
  }

  CDWordArray* m_pColors = nullptr;
};

std::vector<DWORD> ToVector(const CDWordArray& a) {
  std::vector<DWORD> v;
  for (INT_PTR i = 0; i < a.GetSize(); i++) v.push_back(a[i]);
  return v;
}

// Everything a run leaves that a host can see.
void ExpectSameResult(CPictrace& a, CPictrace& b) {
  EXPECT_EQ(ToVector(a.m_arrColorList), ToVector(b.m_arrColorList));
  EXPECT_EQ(a.m_nColorRadius, b.m_nColorRadius);
  ASSERT_EQ(a.m_listOutlineRegions.size(), b.m_listOutlineRegions.size());
  auto ia = a.m_listOutlineRegions.begin();
  for (auto ib = b.m_listOutlineRegions.begin(); ib != b.m_listOutlineRegions.end(); ++ia, ++ib) {
    EXPECT_EQ((*ia)->m_nColorIndex, (*ib)->m_nColorIndex);
    ASSERT_EQ((*ia)->m_nPoints, (*ib)->m_nPoints);
    EXPECT_EQ(0, std::memcmp((*ia)->m_pPoints, (*ib)->m_pPoints, sizeof(sPoint) * (*ia)->m_nPoints));
  }
  const BITMAPINFOHEADER& h = a.m_bmiHeader;
  EXPECT_EQ(0, std::memcmp(a.m_pWorkBits, b.m_pWorkBits, h.biSizeImage));
}

// Runs the driver on the same picture and expects it to leave what the stages
// run by hand left; returns the colours it reported.
std::vector<DWORD> ExpectDriverMatches(std::vector<unsigned char>& dib, int wanted, int noRetry,
                                       CPictrace& byHand) {
  StageEngine driver(dib);
  CDWordArray colors;
  driver.DoSegmentation(wanted, &colors, 1.0, noRetry, nullptr);
  ExpectSameResult(driver, byHand);
  EXPECT_EQ(ToVector(colors), ToVector(driver.m_arrColorList));
  return ToVector(colors);
}

std::vector<unsigned char> Photo() { return testimg::LoadDib(testimg::ExamplePath("astronaut.png")); }

}  // namespace

TEST(Driver, FirstPassHittingTheCountRunsNoRetry) {
  std::vector<unsigned char> dib = Photo();
  StageEngine byHand(dib);
  CDWordArray handColors;
  std::vector<int> counts = byHand.RunByHand({7}, &handColors);
  ASSERT_EQ(counts[0], 7) << "the first pass must hit the count for this test";
  ExpectDriverMatches(dib, 7, 0, byHand);
}

TEST(Driver, MissedCountsAreRetriedUpwardsUntilTheCountIsHit) {
  // The photograph's passes find fewer colours than they aim at, so the
  // driver raises the target by one per retry until a pass finds the count.
  std::vector<unsigned char> dib = Photo();
  const int wanted = 16;
  StageEngine probe(dib);
  CDWordArray probeColors;
  probe.Prepare(&probeColors, wanted);
  std::vector<int> targets{wanted};
  std::vector<int> counts{probe.Pass(wanted)};
  ASSERT_LT(counts[0], wanted) << "the first pass must fall short for this test";
  while (counts.back() < wanted && targets.size() < 6) {
    targets.push_back(targets.back() + 1);
    counts.push_back(probe.Pass(targets.back()));
  }
  ASSERT_EQ(counts.back(), wanted) << "the picture must reach the count within five retries";
  ASSERT_GT(targets.size(), 2u);
  RecordProperty("targets", ::testing::PrintToString(targets));

  StageEngine byHand(dib);
  CDWordArray handColors;
  byHand.RunByHand(targets, &handColors);
  EXPECT_EQ(ExpectDriverMatches(dib, wanted, 0, byHand), ToVector(handColors));
}

TEST(Driver, NoRetryRunsOnePass) {
  std::vector<unsigned char> dib = Photo();
  StageEngine byHand(dib);
  CDWordArray handColors;
  std::vector<int> counts = byHand.RunByHand({12}, &handColors);
  ASSERT_NE(counts[0], 12);
  ExpectDriverMatches(dib, 12, 1, byHand);
}

TEST(Driver, TwoColoursOvershootingRunsNoRetry) {
  // Three stripes 13 apart: at radius 15 the mean shift finds one mode, so it
  // shrinks the radius; at 13 (strictly inside only) every stripe is its own
  // mode, and the first pass finds 3 colours for 2 wanted. The next target
  // would be 1, so no retry runs.
  const COLORREF a = RGB(100, 100, 100), b = RGB(113, 100, 100), c = RGB(100, 113, 100);
  std::vector<unsigned char> dib =
      testimg::MakeDib24(60, 60, [&](int x, int) { return x < 20 ? a : x < 40 ? b : c; });
  StageEngine byHand(dib);
  CDWordArray handColors;
  std::vector<int> counts = byHand.RunByHand({2}, &handColors);
  ASSERT_EQ(counts[0], 3);
  EXPECT_EQ(byHand.m_nColorRadius, 13);
  EXPECT_EQ(ExpectDriverMatches(dib, 2, 0, byHand), (std::vector<DWORD>{b, c, a}));
}

TEST(Driver, TwoColourPictureIsSnappedToItsExactColours) {
  // Two flat halves with isolated specks of near colours: the specks never
  // dominate a neighbourhood, so the palette is the two colours and every
  // speck is snapped to the nearer one before the pyramid stage.
  const COLORREF a = RGB(200, 40, 40), b = RGB(30, 60, 180);
  std::vector<unsigned char> dib = testimg::MakeDib24(60, 40, [&](int x, int row) {
    if (x % 7 == 3 && row % 5 == 2) return x < 30 ? RGB(190, 50, 45) : RGB(40, 50, 170);
    return x < 30 ? a : b;
  });
  StageEngine driver(dib);
  CDWordArray colors;
  driver.DoSegmentation(8, &colors, 1.0, 0, nullptr);
  // Brightest first: a (280) before b (270).
  EXPECT_EQ(ToVector(driver.m_arrColorList), (std::vector<DWORD>{a, b}));
  EXPECT_EQ(ToVector(colors), ToVector(driver.m_arrColorList));
  std::set<COLORREF> seen;
  for (int row = 0; row < 40; row++)
    for (int x = 0; x < 60; x++) seen.insert(testimg::PixelAt(driver.m_pWorkBits, 60, x, row));
  EXPECT_EQ(seen, (std::set<COLORREF>{a, b}));
  EXPECT_EQ(driver.m_listOutlineRegions.size(), 2u);
}

TEST(Driver, CartoonMaskTakesPartInTheFirstPassOnly) {
  // A mask that excludes a block: kept by a single pass, gone after retries.
  std::vector<unsigned char> dib = Photo();
  const int w = 512, h = 512;
  auto makeMask = [&]() {
    unsigned char* m = new unsigned char[w * h]();
    for (int y = 100; y < 200; y++)
      for (int x = 100; x < 200; x++) m[y * w + x] = 2;
    return m;
  };
  auto pixelsInRegions = [](CPictrace& e) {
    long n = 0;
    for (COutlineRegion* r : e.m_listOutlineRegions) n += r->m_nPixels;
    return n;
  };
  unsigned char* mask1 = makeMask();
  StageEngine single(dib);
  CDWordArray c1;
  single.DoSegmentation(12, &c1, 1.0, 1, &mask1);
  unsigned char* mask2 = makeMask();
  StageEngine retried(dib);
  CDWordArray c2;
  retried.DoSegmentation(12, &c2, 1.0, 0, &mask2);
  EXPECT_EQ(pixelsInRegions(single), w * h - 100 * 100);
  EXPECT_EQ(pixelsInRegions(retried), w * h);
  delete[] mask1;
  delete[] mask2;
}

TEST(Driver, ClusteringAndPolygonStagesCloseTheProgress) {
  // A job without noise reduction is 80 units: the two pyramid stages end at
  // 50 %, the clustering stage at 75 %, the output polygons at 100 %.
  struct Log : CWnd {
    LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM) override {
      if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
      return 0;
    }
    std::vector<int> positions;
  } log;
  std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath("monkey_face.png"));
  StageEngine e(dib);
  e.m_pProgressWnd = &log;
  e.BeginProgress(1);
  CDWordArray colors;
  e.DoSegmentation(8, &colors, 1.0, 0, nullptr);
  ASSERT_FALSE(log.positions.empty());
  EXPECT_TRUE(std::is_sorted(log.positions.begin(), log.positions.end()));
  EXPECT_NE(std::find(log.positions.begin(), log.positions.end(), 75), log.positions.end());
  EXPECT_EQ(log.positions.back(), 100);
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 100.0f);
}

TEST(Driver, WithoutAnImageNothingHappens) {
  CPictrace e;
  CDWordArray colors;
  colors.Add(7);
  e.DoSegmentation(8, &colors, 1.0, 0, nullptr);
  EXPECT_EQ(e.HasOutlines(), 0);
  EXPECT_EQ(colors.GetSize(), 1);
}
