// Background extraction on flat-colour pictures whose background is known
// pixel by pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "background/BackgroundEngine.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255);
const COLORREF kRed = RGB(200, 0, 0);
const COLORREF kBlue = RGB(0, 0, 180);
const COLORREF kGreen = RGB(0, 160, 0);
const COLORREF kBlack = RGB(0, 0, 0);

bool In(int x, int y, int x0, int x1, int y0, int y1) { return x >= x0 && x <= x1 && y >= y0 && y <= y1; }

// 80 x 60 clip art on white: a red square (x 10..29, rows 10..29), a blue
// square (x 40..69, rows 20..49) with a white window (x 48..61, rows
// 28..41), and a green notch on the right edge (x 74..79, rows 5..14).
COLORREF ClipArt(int x, int y) {
  if (In(x, y, 10, 29, 10, 29)) return kRed;
  if (In(x, y, 48, 61, 28, 41)) return kWhite;
  if (In(x, y, 40, 69, 20, 49)) return kBlue;
  if (In(x, y, 74, 79, 5, 14)) return kGreen;
  return kWhite;
}

bool ClipArtBackground(int x, int y) {
  return !In(x, y, 10, 29, 10, 29) && !In(x, y, 40, 69, 20, 49) && !In(x, y, 74, 79, 5, 14);
}

// Smallest and largest coordinates of a polygon's line ends.
struct Box {
  float x0 = 1e9f, x1 = -1e9f, y0 = 1e9f, y1 = -1e9f;
};
Box Bounds(const CPTPolygon& p) {
  Box b;
  for (int i = 0; i < p.m_nLines; i++)
    for (const CPTPoint* pt : {&p.m_pLines[i].m_ptStart, &p.m_pLines[i].m_ptEnd}) {
      b.x0 = std::min(b.x0, pt->x);
      b.x1 = std::max(b.x1, pt->x);
      b.y0 = std::min(b.y0, pt->y);
      b.y1 = std::max(b.y1, pt->y);
    }
  return b;
}

class Background : public ::testing::Test {
 protected:
  void TraceClipArt() {
    dib = testimg::MakeDib24(80, 60, ClipArt);
    e.Trace(dib, {kWhite, kRed, kBlue, kGreen});
  }
  std::vector<unsigned char> dib;
  BackgroundEngine e;
};

}  // namespace

TEST_F(Background, CoversExactlyTheFrameTouchingRegionsOfTheBackgroundColour) {
  TraceClipArt();
  // The window is a white region of its own, but not background.
  int whiteRegions = 0;
  for (const COutlineRegion* r : e.m_listOutlineRegions) whiteRegions += r->m_crColor == kWhite;
  EXPECT_EQ(whiteRegions, 2);
  ASSERT_EQ(e.ExtractBackground(), 1);
  ASSERT_EQ(e.m_listBackgroundRegions.size(), 1u);
  const COutlineRegion* bg = e.m_listBackgroundRegions.front();
  EXPECT_EQ(bg->m_crColor, kWhite);
  EXPECT_EQ(bg->m_nColorIndex, 0);
  EXPECT_EQ(bg->m_nPixels, 80 * 60 - 20 * 20 - 30 * 30 - 6 * 10);

  PixelSet expected;
  for (int y = 0; y < 60; y++)
    for (int x = 0; x < 80; x++)
      if (ClipArtBackground(x, y)) expected.insert({x, y});
  EXPECT_EQ(ComponentPixels(e.m_listBackgroundRegions), expected);
  // The outlines say the same: the white window of the blue square lies in
  // a hole, as do both squares.
  EXPECT_EQ(OutlinePixels(e.m_listBackgroundRegions, 80, 60), expected);
  EXPECT_EQ(bg->m_arrHoles.GetSize(), 2);
}

TEST_F(Background, HandsOutRegionsWithHolesWhereTheObjectsAre) {
  TraceClipArt();
  e.SetImageRealRect(0, 0, 80, 60);  // one output unit per pixel
  ASSERT_EQ(e.ExtractBackground(), 1);
  CPTRegions out;
  e.GetBackgroundRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 1);
  const CPTRegion& r = out.m_pRegions[0];
  EXPECT_EQ(r.m_nColorIndex, 1);
  ASSERT_EQ(r.m_nPolygons, 3);

  Box outer = Bounds(r.m_pPolygons[0]);
  EXPECT_EQ(outer.x0, 0.0f);
  EXPECT_EQ(outer.x1, 80.0f);
  EXPECT_EQ(outer.y0, 0.0f);
  EXPECT_EQ(outer.y1, 60.0f);
  // Output y runs from the top: storage rows r0..r1 become 60 - (r1 + 1) ..
  // 60 - r0. Red: x 10..30, y 30..50. Blue: x 40..70, y 10..40.
  Box h1 = Bounds(r.m_pPolygons[1]), h2 = Bounds(r.m_pPolygons[2]);
  if (h1.x0 > h2.x0) std::swap(h1, h2);
  EXPECT_EQ(h1.x0, 10.0f);
  EXPECT_EQ(h1.x1, 30.0f);
  EXPECT_EQ(h1.y0, 30.0f);
  EXPECT_EQ(h1.y1, 50.0f);
  EXPECT_EQ(h2.x0, 40.0f);
  EXPECT_EQ(h2.x1, 70.0f);
  EXPECT_EQ(h2.y0, 10.0f);
  EXPECT_EQ(h2.y1, 40.0f);

  // Curves on request: the same three outlines, as Bezier lines.
  CPTRegions curves;
  e.GetBackgroundRegions(&curves, 1);
  ASSERT_EQ(curves.m_nRegions, 1);
  ASSERT_EQ(curves.m_pRegions[0].m_nPolygons, 3);
  ASSERT_GT(curves.m_pRegions[0].m_pPolygons[0].m_nLines, 0);
  EXPECT_EQ(curves.m_pRegions[0].m_pPolygons[0].m_pLines[0].m_nType, 1);
}

TEST_F(Background, LeavesTheEngineStateAsItWas) {
  TraceClipArt();
  std::vector<COutlineRegion*> regions(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end());
  std::vector<int> indices;
  for (COutlineRegion* r : regions) indices.push_back(r->m_nColorIndex);
  std::vector<unsigned char> work(e.m_pWorkDIB, e.m_pWorkDIB + dib.size());
  unsigned char* pWorkDIB = e.m_pWorkDIB;
  double* buffer = new double[2];
  e.m_listWorkBuffers.push_back(buffer);
  std::vector<int> mask(80 * 60, 0);
  e.SetMASKData(mask.data());
  e.m_fProgressPos = 42.0f;
  e.m_nProgressShown = 40;

  ASSERT_EQ(e.ExtractBackground(), 1);
  CPTRegions out;
  e.GetBackgroundRegions(&out, 1);

  EXPECT_EQ(std::vector<COutlineRegion*>(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()),
            regions);
  for (size_t i = 0; i < regions.size(); i++) EXPECT_EQ(regions[i]->m_nColorIndex, indices[i]);
  EXPECT_EQ(e.m_pWorkDIB, pWorkDIB);
  EXPECT_EQ(e.m_pWorkBits, pWorkDIB + 40);
  EXPECT_EQ(std::memcmp(e.m_pWorkDIB, work.data(), work.size()), 0);
  ASSERT_EQ(e.m_listWorkBuffers.size(), 1u);
  EXPECT_EQ(e.m_listWorkBuffers.front(), buffer);
  ASSERT_EQ(e.m_arrColorList.GetSize(), 4);
  EXPECT_EQ(e.m_arrColorList[1], kRed);
  EXPECT_EQ(std::count(mask.begin(), mask.end(), 0), 80 * 60);
  EXPECT_EQ(e.m_fProgressPos, 42.0f);
  EXPECT_EQ(e.m_nProgressShown, 40);
  EXPECT_EQ(e.m_nOutputLineType, 0);
  EXPECT_EQ(e.m_listBackgroundRegions.size(), 1u);
  e.SetMASKData(nullptr);
}

TEST_F(Background, SplitBackgroundComesOutLargestFirst) {
  // A red bar across the full height splits the white into 20 and 35
  // columns; the outer areas (twice the area) are 2 * 35 * 40 and 2 * 20 * 40.
  dib = testimg::MakeDib24(60, 40, [](int x, int) { return (x >= 20 && x <= 24) ? kRed : kWhite; });
  e.Trace(dib, {kWhite, kRed});
  ASSERT_EQ(e.ExtractBackground(), 1);
  ASSERT_EQ(e.m_listBackgroundRegions.size(), 2u);
  EXPECT_EQ(e.m_listBackgroundRegions.front()->m_nArea, 2800);
  EXPECT_EQ(e.m_listBackgroundRegions.back()->m_nArea, 1600);
  for (const COutlineRegion* r : e.m_listBackgroundRegions) EXPECT_EQ(r->m_arrHoles.GetSize(), 0);
}

TEST_F(Background, DarkBackgroundAndTiesFollowTheFrameMarking) {
  // Black frame with a white and a blue object: the foreground colour of the
  // side trace must not be black.
  dib = testimg::MakeDib24(40, 40, [](int x, int y) {
    if (In(x, y, 5, 14, 5, 14)) return kWhite;
    if (In(x, y, 20, 34, 20, 34)) return kBlue;
    return kBlack;
  });
  e.Trace(dib, {kWhite, kBlue, kBlack});
  ASSERT_EQ(e.ExtractBackground(), 1);
  ASSERT_EQ(e.m_listBackgroundRegions.size(), 1u);
  EXPECT_EQ(e.m_listBackgroundRegions.front()->m_crColor, kBlack);
  EXPECT_EQ(e.m_listBackgroundRegions.front()->m_nColorIndex, 2);
  EXPECT_EQ(e.m_listBackgroundRegions.front()->m_arrHoles.GetSize(), 2);

  // Left half white, right half black: equal frame areas, and white, met
  // first, wins the tie.
  BackgroundEngine tie;
  auto halves = testimg::MakeDib24(20, 10, [](int x, int) { return x < 10 ? kWhite : kBlack; });
  tie.Trace(halves, {kWhite, kBlack});
  ASSERT_EQ(tie.ExtractBackground(), 1);
  ASSERT_EQ(tie.m_listBackgroundRegions.size(), 1u);
  EXPECT_EQ(tie.m_listBackgroundRegions.front()->m_crColor, kWhite);
  EXPECT_EQ(tie.m_listBackgroundRegions.front()->m_nPixels, 100);
}

TEST_F(Background, NothingToExtractGivesAnEmptyResult) {
  // No image, then an image that was never segmented.
  CPTRegions none;
  EXPECT_EQ(e.ExtractBackground(), 0);
  e.GetBackgroundRegions(&none, 0);
  EXPECT_EQ(none.m_nRegions, 0);
  e.GetBackgroundRegions(nullptr, 0);

  dib = testimg::MakeDib24(40, 40, ClipArt);
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  EXPECT_EQ(e.ExtractBackground(), 0);
  EXPECT_TRUE(e.m_listBackgroundRegions.empty());

  // A host mask that excludes a 3-pixel border: no region reaches into the
  // 2-pixel frame margins, so there is no background colour.
  std::vector<int> mask(40 * 40, 0);
  for (int y = 0; y < 40; y++)
    for (int x = 0; x < 40; x++)
      if (x < 3 || y < 3 || x > 36 || y > 36) mask[y * 40 + x] = -1;
  BackgroundEngine masked;
  masked.SetMASKData(mask.data());
  masked.Trace(dib, {kWhite, kRed, kBlue, kGreen});
  ASSERT_FALSE(masked.m_listOutlineRegions.empty());
  EXPECT_EQ(masked.ExtractBackground(), 0);
  EXPECT_TRUE(masked.m_listBackgroundRegions.empty());
  CPTRegions out;
  masked.GetBackgroundRegions(&out, 0);
  EXPECT_EQ(out.m_nRegions, 0);

  // A new extraction replaces an earlier result.
  BackgroundEngine again;
  auto clip = testimg::MakeDib24(80, 60, ClipArt);
  again.Trace(clip, {kWhite, kRed, kBlue, kGreen});
  ASSERT_EQ(again.ExtractBackground(), 1);
  again.ResetPictrace();
  EXPECT_EQ(again.ExtractBackground(), 0);
  EXPECT_TRUE(again.m_listBackgroundRegions.empty());
}
