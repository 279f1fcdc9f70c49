// Background extraction after a segmentation: the frame-touching regions of
// the background colour traced again as a few large regions whose holes are
// where the objects lie, checked pixel by pixel on the regions handed out.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "common/TestImages.h"
#include "pipeline/RegionRaster.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255), kRed = RGB(200, 0, 0), kBlue = RGB(0, 0, 180);
const COLORREF kGreen = RGB(0, 160, 0), kBlack = RGB(0, 0, 0);

bool In(int x, int y, int x0, int x1, int y0, int y1) { return x >= x0 && x <= x1 && y >= y0 && y <= y1; }

// 80 x 60 clip art on white (y is the storage row): a red square, a blue
// square with a white window, a green notch in the right edge and a blue
// block in the top-left corner.
bool Object(int x, int y) {
  return In(x, y, 10, 29, 10, 29) || In(x, y, 40, 69, 20, 49) || In(x, y, 74, 79, 5, 14) || In(x, y, 0, 5, 54, 59);
}
COLORREF ClipArt(int x, int y) {
  if (In(x, y, 10, 29, 10, 29)) return kRed;
  if (In(x, y, 48, 61, 28, 41)) return kWhite;
  if (In(x, y, 74, 79, 5, 14)) return kGreen;
  return Object(x, y) ? kBlue : kWhite;
}

// Loads and segments a flat-colour picture; its colours are all kept.
void Segment(CPictrace& e, std::vector<unsigned char> dib, int colours) {
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  CDWordArray list;
  e.DoSegmentation(colours, &list, 1.0, 0, nullptr);
  ASSERT_EQ(e.m_arrColorList.GetSize(), colours);
}

// Pixel coverage of the background regions (straight lines, 1 unit a pixel).
pipetest::Coverage Background(CPictrace& e, int nLineType = 0) {
  CPTRegions out;
  e.GetBackgroundRegions(&out, nLineType);
  return pipetest::RasterizeRegions(out, e.m_bmiHeader.biWidth, e.m_bmiHeader.biHeight);
}

// Expects the coverage to be one region exactly where want(x, top-down y).
template <class Want>
void ExpectCover(const pipetest::Coverage& cov, Want want) {
  int wrong = 0;
  for (int y = 0; y < cov.height; y++)
    for (int x = 0; x < cov.width; x++)
      if (cov.count[y * cov.width + x] != (want(x, y) ? 1 : 0) && wrong++ < 5)
        ADD_FAILURE() << "pixel " << x << "," << y << " covered " << cov.count[y * cov.width + x];
  EXPECT_EQ(wrong, 0);
}

TEST(Background, IsTheFrameTouchingRegionsOfTheBackgroundColourWithHoles) {
  CPictrace e;
  Segment(e, testimg::MakeDib24(80, 60, ClipArt), 4);
  ASSERT_EQ(e.ExtractBackground(), 1);
  ASSERT_EQ(e.m_listBackgroundRegions.size(), 1u);
  CPTRegions out;
  e.GetBackgroundRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 1);
  EXPECT_EQ(out.m_pRegions[0].m_nColorIndex, 1);  // white, the brightest
  EXPECT_EQ(out.m_pRegions[0].m_nPolygons, 3);    // the two squares are holes
  // The window is white but not background.
  ExpectCover(Background(e), [](int x, int y) { return !Object(x, 59 - y); });
  // Curves on request: the same three outlines, as Bezier lines.
  CPTRegions curves;
  e.GetBackgroundRegions(&curves, 1);
  ASSERT_EQ(curves.m_nRegions, 1);
  ASSERT_EQ(curves.m_pRegions[0].m_nPolygons, 3);
  ASSERT_GT(curves.m_pRegions[0].m_pPolygons[0].m_nLines, 0);
  EXPECT_EQ(curves.m_pRegions[0].m_pPolygons[0].m_pLines[0].m_nType, 1);
}

TEST(Background, LeavesTheEngineAsItWas) {
  // The host's mask rings a 2 x 2 island inside the red square. The ring's
  // pixels are red and white, so the segmentation's small-region clean-up
  // keeps repainting the island; the side trace sees one foreground colour
  // around it and writes the ring's mask value into the island instead.
  std::vector<int> mask(80 * 60, 0);
  for (int y = 18; y <= 21; y++)
    for (int x = 18; x <= 21; x++) mask[y * 80 + x] = In(x, y, 19, 20, 19, 20) ? 0 : 5;
  CPictrace e;
  e.SetMASKData(mask.data());
  Segment(e, testimg::MakeDib24(80, 60, [](int x, int y) { return In(x, y, 18, 18, 18, 21) ? kWhite : ClipArt(x, y); }), 4);
  const std::vector<int> maskBefore = mask;
  const std::vector<COutlineRegion*> regions(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end());
  const size_t size = 40 + e.m_bmiHeader.biSizeImage;
  const std::vector<unsigned char> work(e.m_pWorkDIB, e.m_pWorkDIB + size);
  unsigned char* workDIB = e.m_pWorkDIB;
  e.m_listWorkBuffers.push_back(new double[2]);
  const std::list<double*> buffers = e.m_listWorkBuffers;
  const std::vector<DWORD> colours(e.m_arrColorList.GetData(), e.m_arrColorList.GetData() + 4);
  e.m_fProgressPos = 42.0f;
  e.m_nProgressShown = 40;

  ASSERT_EQ(e.ExtractBackground(), 1);
  CPTRegions out;
  e.GetBackgroundRegions(&out, 1);

  EXPECT_EQ(mask, maskBefore);
  EXPECT_EQ(std::vector<COutlineRegion*>(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()), regions);
  EXPECT_EQ(e.m_pWorkDIB, workDIB);
  EXPECT_EQ(e.m_pWorkBits, workDIB + 40);
  EXPECT_EQ(std::memcmp(e.m_pWorkDIB, work.data(), size), 0);
  EXPECT_EQ(e.m_listWorkBuffers, buffers);
  EXPECT_EQ(std::vector<DWORD>(e.m_arrColorList.GetData(), e.m_arrColorList.GetData() + e.m_arrColorList.GetSize()), colours);
  EXPECT_EQ(e.m_fProgressPos, 42.0f);
  EXPECT_EQ(e.m_nProgressShown, 40);
  EXPECT_EQ(e.m_nOutputLineType, 0);
  EXPECT_EQ(e.m_listBackgroundRegions.size(), 1u);
  e.SetMASKData(nullptr);
}

TEST(Background, SplitBackgroundComesOutLargestFirst) {
  // A red bar across the full height leaves 20 white columns on the left and
  // 35 on the right.
  CPictrace e;
  Segment(e, testimg::MakeDib24(60, 40, [](int x, int) { return (x >= 20 && x <= 24) ? kRed : kWhite; }), 2);
  ASSERT_EQ(e.ExtractBackground(), 1);
  pipetest::Coverage cov = Background(e);
  ExpectCover(cov, [](int x, int) { return x < 20 || x > 24; });
  EXPECT_EQ(cov.owner[0], 1);
  EXPECT_EQ(cov.owner[59], 0);
}

TEST(Background, DarkBackgroundsAndTiesFollowTheFrameMarking) {
  // A black frame around a white and a blue object: the side trace's
  // foreground colour must differ from black.
  CPictrace dark;
  Segment(dark, testimg::MakeDib24(40, 40, [](int x, int y) {
            return In(x, y, 5, 14, 5, 14) ? kWhite : In(x, y, 20, 34, 20, 34) ? kBlue : kBlack;
          }), 3);
  ASSERT_EQ(dark.ExtractBackground(), 1);
  CPTRegions out;
  dark.GetBackgroundRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 1);
  EXPECT_EQ(out.m_pRegions[0].m_nColorIndex, 3);
  ExpectCover(Background(dark), [](int x, int y) { return !In(x, 39 - y, 5, 14, 5, 14) && !In(x, 39 - y, 20, 34, 20, 34); });

  // Left half white, right half black: equal frame areas, and the colour
  // met first (white, on the bottom row's left) wins the tie.
  for (bool whiteLeft : {true, false}) {
    CPictrace tie;
    Segment(tie, testimg::MakeDib24(20, 10, [&](int x, int) { return (x < 10) == whiteLeft ? kWhite : kBlack; }), 2);
    ASSERT_EQ(tie.ExtractBackground(), 1);
    ExpectCover(Background(tie), [](int x, int) { return x < 10; });
  }
}

TEST(Background, NothingToExtractGivesAnEmptyResult) {
  CPictrace e;
  CPTRegions none;
  EXPECT_EQ(e.ExtractBackground(), 0);  // no image
  e.GetBackgroundRegions(&none, 0);
  EXPECT_EQ(none.m_nRegions, 0);
  e.GetBackgroundRegions(nullptr, 0);
  auto clip = testimg::MakeDib24(80, 60, ClipArt);
  ASSERT_EQ(e.SetDIBData(clip.data()), 1);
  EXPECT_EQ(e.ExtractBackground(), 0);  // not segmented

  // A host mask that leaves out a border: the regions' boxes end just
  // outside the frame margins (x under 4 or over 76, y under 3 or over 57).
  std::vector<int> mask(80 * 60, 0);
  for (int y = 0; y < 60; y++)
    for (int x = 0; x < 80; x++) mask[y * 80 + x] = (x < 4 || y < 3 || x > 76 || y > 57) ? -1 : 0;
  e.SetMASKData(mask.data());
  Segment(e, clip, 4);
  ASSERT_TRUE(e.HasOutlines());
  EXPECT_EQ(e.ExtractBackground(), 0);
  EXPECT_TRUE(e.m_listBackgroundRegions.empty());
  e.GetBackgroundRegions(&none, 0);
  EXPECT_EQ(none.m_nRegions, 0);
  // A new extraction replaces an earlier result.
  e.SetMASKData(nullptr);
  Segment(e, clip, 4);
  ASSERT_EQ(e.ExtractBackground(), 1);
  e.ResetPictrace();
  EXPECT_EQ(e.ExtractBackground(), 0);
  EXPECT_TRUE(e.m_listBackgroundRegions.empty());
}

TEST(Background, FlagBackgroundIsWhatTheMarkingSkips) {
  // On a real clip art, the background and the regions the marking leaves
  // in tile the picture, but for the few pixels where the two traces smooth
  // a border differently.
  auto dib = testimg::LoadDib(testimg::ExamplePath("flag_kr.png"));
  CPictrace e;
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  e.DoSegmentation(4, nullptr, 1.0, 0, nullptr);
  ASSERT_EQ(e.ExtractBackground(), 1);
  CPTRegions out;
  e.GetBackgroundRegions(&out, 0);
  ASSERT_GE(out.m_nRegions, 1);
  const COLORREF bg = e.m_arrColorList[out.m_pRegions[0].m_nColorIndex - 1];
  EXPECT_GT(std::min({GetRValue(bg), GetGValue(bg), GetBValue(bg)}), 200);
  e.MarkBackground();
  CPTRegions kept;
  e.GetRegions(&kept, 0);
  pipetest::Coverage fg = pipetest::RasterizeRegions(kept, w, h), back = Background(e);
  int wrong = 0, background = 0;
  for (size_t i = 0; i < fg.count.size(); i++) {
    wrong += fg.count[i] + back.count[i] != 1;
    background += back.count[i];
  }
  EXPECT_EQ(back.CoveredTwice(), 0);
  EXPECT_LT(wrong, w * h / 5000);
  EXPECT_EQ(back.count[0], 1);
  EXPECT_EQ(back.count[(h / 2) * w + w / 2], 0);  // the emblem in the middle
  EXPECT_GT(background, w * h / 2);
  EXPECT_LE(e.m_listBackgroundRegions.size(), 2u);
}

}  // namespace
