// The region preview checked on raster pixels: fills, holes, the lightened and
// hatched flagged regions, colour order, thread colours and the stored list.
#include <gtest/gtest.h>

#include "RasterDC.h"
#include "output/OutputFixtures.h"
#include "common/PixelChecks.h"

using testimg::ExpectPixels;

using namespace outtest;

namespace {

// A 20 x 20 picture drawn 1:1. The outer square covers pixels 2..17 in both
// directions (chain corners 2 and 18; top-down y = 20 - y), the hole 8..11.
class PreviewTest : public ::testing::Test {
 protected:
  PreviewTest() : e(20, 20), dc(20, 20) {}

  COutlineRegion* AddSquareWithHole(int colorIndex, COLORREF color) {
    COutlineRegion* r = MakeRegion(RectChain(2, 2, 18, 18), colorIndex, color);
    AddHole(r, RectChain(8, 8, 12, 12));
    e.m_listOutlineRegions.push_back(r);
    return r;
  }
  void Draw(int bOutlineOnly = 0, int bStored = 0) {
    e.CreateOutputPolygon(0);
    if (bStored) e.CopyOutlines();
    e.DrawPolygon(&dc, CRect(0, 0, 20, 20), bOutlineOnly, bStored);
  }
  // The pixels of the filled area (outside the hole), in scan order.
  std::vector<COLORREF> FillPixels() const {
    std::vector<COLORREF> v;
    for (int y = 2; y < 18; y++)
      for (int x = 2; x < 18; x++)
        if (x < 8 || x >= 12 || y < 8 || y >= 12) v.push_back(dc.GetPixel(x, y));
    return v;
  }

  OutputEngine e;
  CRasterDC dc;
};

const COLORREF kWhite = RGB(255, 255, 255);

// NOTXOR of the 0xC8C8C8 hatch over a colour, channel by channel.
COLORREF HatchOver(COLORREF c) { return ~(0xC8C8C8u ^ c) & 0xFFFFFFu; }

}  // namespace

TEST_F(PreviewTest, PlainRegionIsFilledAndItsHoleLeftUnpainted) {
  e.m_arrColorList.Add(RGB(10, 20, 30));
  AddSquareWithHole(0, RGB(10, 20, 30));
  Draw();
  for (COLORREF c : FillPixels()) ASSERT_EQ(c, RGB(10, 20, 30));
  ExpectPixels(dc, {{8, 8, kWhite}, {11, 11, kWhite}});
  // Left and top edges are inside, right and bottom edges outside.
  ExpectPixels(dc, {{1, 5, kWhite}, {18, 5, kWhite}, {5, 18, kWhite}});
  EXPECT_EQ(dc.GetROP2(), R2_COPYPEN);
}

TEST_F(PreviewTest, SkippedRegionIsLightenedHalfwayAndHatched) {
  e.m_arrColorList.Add(RGB(200, 100, 0));
  AddSquareWithHole(0, RGB(200, 100, 0))->m_bSkip = 1;
  Draw();
  const COLORREF fill = RGB(228, 178, 128);
  const COLORREF hatch = HatchOver(fill);
  ASSERT_EQ(hatch, RGB(211, 133, 183));
  int nFill = 0, nHatch = 0;
  for (COLORREF c : FillPixels()) {
    if (c == fill) nFill++;
    else if (c == hatch) nHatch++;
    else ADD_FAILURE() << std::hex << c;
  }
  EXPECT_GT(nFill, 0);
  EXPECT_GT(nHatch, 0);
  EXPECT_EQ(dc.GetPixel(9, 9), kWhite);  // the hole stays unpainted
  // The mix mode is deliberately left as the hatch set it.
  EXPECT_EQ(dc.GetROP2(), R2_NOTXORPEN);
}

TEST_F(PreviewTest, PlainRegionAfterAFlaggedOneIsCopiedAgain) {
  e.m_arrColorList.Add(RGB(200, 100, 0));
  e.m_arrColorList.Add(RGB(0, 0, 200));
  AddSquareWithHole(0, RGB(200, 100, 0))->m_bSkip = 1;
  // Colour 1 is drawn last and covers the hole exactly.
  e.m_listOutlineRegions.push_back(MakeRegion(RectChain(8, 8, 12, 12), 1, RGB(0, 0, 200)));
  Draw();
  EXPECT_EQ(dc.GetPixel(9, 9), RGB(0, 0, 200));
  EXPECT_EQ(dc.GetROP2(), R2_COPYPEN);
}

TEST_F(PreviewTest, MarkedStoredRegionIsLightenedStronglyHatchedAndOutlined) {
  e.m_arrColorList.Add(RGB(0, 0, 0));
  AddSquareWithHole(0, RGB(0, 0, 0));
  e.CreateOutputPolygon(0);
  e.CopyOutlines();
  e.m_listStoredRegions.front()->m_bMarked = 1;
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 1);

  const COLORREF fill = RGB(229, 229, 229);
  const COLORREF hatch = HatchOver(fill);
  // The black outline is stroked while the NOTXOR mode is still on: black
  // on the white outside, the inverse of the fill or hatch inside.
  int nFill = 0, nHatch = 0, nOutline = 0;
  for (int y = 3; y < 17; y++)
    for (int x = 3; x < 17; x++) {
      if (x >= 7 && x < 13 && y >= 7 && y < 13) continue;  // around the hole
      COLORREF c = dc.GetPixel(x, y);
      if (c == fill) nFill++;
      else if (c == hatch) nHatch++;
      else ADD_FAILURE() << x << "," << y << " " << std::hex << c;
    }
  for (int i = 2; i < 18; i++) {
    COLORREF c = dc.GetPixel(18, i);
    if (c == RGB(0, 0, 0)) nOutline++;
    else EXPECT_EQ(c, kWhite);
  }
  EXPECT_GT(nFill, 0);
  EXPECT_GT(nHatch, 0);
  EXPECT_GT(nOutline, 0);
  EXPECT_EQ(dc.GetPixel(0, 0), kWhite);
}

TEST_F(PreviewTest, OutlineOnlyStrokesInTheRegionColour) {
  e.m_arrColorList.Add(RGB(0, 128, 0));
  AddSquareWithHole(0, RGB(0, 128, 0));
  Draw(1);
  EXPECT_EQ(dc.GetPixel(5, 5), kWhite);
  int nStroke = 0;
  for (int y = 0; y < 20; y++)
    for (int x = 0; x < 20; x++) {
      COLORREF c = dc.GetPixel(x, y);
      if (c == RGB(0, 128, 0)) nStroke++;
      else ASSERT_EQ(c, kWhite);
    }
  EXPECT_GT(nStroke, 40);
}

TEST_F(PreviewTest, RegionsAreDrawnInColourIndexOrder) {
  e.m_arrColorList.Add(RGB(255, 0, 0));
  e.m_arrColorList.Add(RGB(0, 0, 255));
  // The colour-1 region comes first in the list but is painted last.
  e.m_listOutlineRegions.push_back(MakeRegion(RectChain(0, 0, 10, 20), 1, RGB(0, 0, 255)));
  e.m_listOutlineRegions.push_back(MakeRegion(RectChain(0, 0, 20, 20), 0, RGB(255, 0, 0)));
  Draw();
  ExpectPixels(dc, {{5, 5, RGB(0, 0, 255)}, {15, 5, RGB(255, 0, 0)}});
}

TEST_F(PreviewTest, ThreadColoursReplaceTheCurrentListOnly) {
  e.m_arrColorList.Add(RGB(250, 10, 10));
  AddSquareWithHole(0, RGB(250, 10, 10));
  e.m_pThreadColors = new DWORD[2]{RGB(0, 0, 255), RGB(200, 0, 0)};
  e.m_nThreadColorCount = 2;
  e.m_nThreadColorMode = 2;
  e.SetNearestThreadColorList(2);
  Draw();
  EXPECT_EQ(dc.GetPixel(5, 5), RGB(200, 0, 0));

  e.CopyOutlines();
  CRasterDC stored(20, 20);
  e.DrawPolygon(&stored, CRect(0, 0, 20, 20), 0, 1);
  EXPECT_EQ(stored.GetPixel(5, 5), RGB(250, 10, 10));
}

TEST_F(PreviewTest, EachListIsDrawnWithItsOwnColourList) {
  e.m_arrColorList.Add(RGB(10, 20, 30));
  AddSquareWithHole(0, RGB(10, 20, 30));
  e.CreateOutputPolygon(0);
  e.CopyOutlines();
  // The current result is gone; the stored copy and its colours remain.
  for (COutlineRegion* r : e.m_listOutlineRegions) delete r;
  e.m_listOutlineRegions.clear();
  e.m_arrColorList.RemoveAll();
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  EXPECT_EQ(dc.GetPixel(5, 5), kWhite);
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 1);
  EXPECT_EQ(dc.GetPixel(5, 5), RGB(10, 20, 30));
}

TEST_F(PreviewTest, ScalesIntoTheDestinationAndRestoresThePen) {
  e.m_arrColorList.Add(RGB(10, 20, 30));
  AddSquareWithHole(0, RGB(10, 20, 30));
  e.CreateOutputPolygon(0);
  CRasterDC big(60, 60);
  CPen* pBefore = big.GetCurrentPen();
  // Half size, shifted by (20, 20): the square covers 21..28.
  e.DrawPolygon(&big, CRect(20, 20, 30, 30), 0, 0);
  EXPECT_EQ(big.GetCurrentPen(), pBefore);
  ExpectPixels(big, {{21, 21, RGB(10, 20, 30)}, {29, 21, kWhite}, {19, 21, kWhite}});
}

TEST_F(PreviewTest, CurvePolygonsUseTheBezierPointLayout) {
  // A square whose lines are degenerate Beziers fills like the straight one.
  e.m_arrColorList.Add(RGB(10, 20, 30));
  COutlineRegion* r = MakeRegion({}, 0, RGB(10, 20, 30));
  r->m_pPolygon = new CPTPolygon;
  r->m_pPolygon->m_nLines = 4;
  r->m_pPolygon->m_pLines = new CPTLine[4];
  const float corners[5][2] = {{4, 4}, {16, 4}, {16, 16}, {4, 16}, {4, 4}};
  for (int i = 0; i < 4; i++) {
    CPTLine& l = r->m_pPolygon->m_pLines[i];
    l.m_nType = 1;
    l.m_ptStart.x = corners[i][0], l.m_ptStart.y = corners[i][1];
    l.m_ptEnd.x = corners[i + 1][0], l.m_ptEnd.y = corners[i + 1][1];
    l.m_ptCtrl1 = l.m_ptStart;
    l.m_ptCtrl2 = l.m_ptEnd;
  }
  e.m_listOutlineRegions.push_back(r);
  e.SetOutputLineType(1);
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  ExpectPixels(dc, {{4, 4, RGB(10, 20, 30)}, {15, 15, RGB(10, 20, 30)}, {16, 10, kWhite},
                    {3, 10, kWhite}});
}
