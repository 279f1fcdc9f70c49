// The region preview checked on raster pixels: fills, holes, the lightened and
// hatched flagged regions, colour order, thread colours and the stored list.
#include <gtest/gtest.h>

#include "RasterDC.h"
#include "common/PixelChecks.h"
#include "output/HandRegions.h"

using testimg::ExpectPixels;

namespace {

const COLORREF kWhite = RGB(255, 255, 255);

// NOTXOR of the 0xC8C8C8 hatch over a colour.
COLORREF HatchOver(COLORREF c) { return ~(0xC8C8C8u ^ c) & 0xFFFFFFu; }

// A 20 x 20 picture drawn 1:1. The square covers pixels 2..17 (chain corners
// 2 and 18, top-down y = 20 - y), its hole pixels 8..11.
class Preview : public ::testing::Test {
 protected:
  Preview() : dc(20, 20) { hand::Load(e, 20, 20); }
  COutlineRegion* AddSquare(COLORREF color) {
    e.m_arrColorList.Add(color);
    COutlineRegion* r = hand::Region(hand::Rect(2, 2, 18, 18), 0, color);
    e.m_listOutlineRegions.push_back(hand::AddHole(r, hand::Rect(8, 8, 12, 12)));
    return r;
  }
  void Draw(int bOutlineOnly = 0, int bStored = 0) {
    hand::Build(e, 0);
    if (bStored) e.CopyOutlines();
    e.DrawPolygon(&dc, CRect(0, 0, 20, 20), bOutlineOnly, bStored);
  }
  // Counts the fill and hatch pixels of the square outside the hole's
  // neighbourhood; any other colour fails.
  void CountFlagged(COLORREF fill, int inset) {
    int nFill = 0, nHatch = 0;
    for (int y = 2 + inset; y < 18 - inset; y++)
      for (int x = 2 + inset; x < 18 - inset; x++) {
        if (x >= 8 - inset && x < 12 + inset && y >= 8 - inset && y < 12 + inset) continue;
        COLORREF c = dc.GetPixel(x, y);
        if (c == fill) nFill++;
        else if (c == HatchOver(fill)) nHatch++;
        else ADD_FAILURE() << x << "," << y << " " << std::hex << c;
      }
    EXPECT_GT(nFill, 0);
    EXPECT_GT(nHatch, 0);
  }

  CPictrace e;
  CRasterDC dc;
};

TEST_F(Preview, PlainRegionIsFilledAndItsHoleLeftUnpainted) {
  AddSquare(RGB(10, 20, 30));
  Draw();
  for (int y = 0; y < 20; y++)
    for (int x = 0; x < 20; x++) {
      bool inside = x >= 2 && x < 18 && y >= 2 && y < 18 && !(x >= 8 && x < 12 && y >= 8 && y < 12);
      ASSERT_EQ(dc.GetPixel(x, y), inside ? RGB(10, 20, 30) : kWhite) << x << "," << y;
    }
  EXPECT_EQ(dc.GetROP2(), R2_COPYPEN);
}

TEST_F(Preview, SkippedRegionIsLightenedHalfwayAndHatched) {
  AddSquare(RGB(200, 100, 1))->m_bSkip = 1;
  // Colour 1 is drawn after the flagged one and covers the hole exactly.
  e.m_arrColorList.Add(RGB(0, 0, 200));
  e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(8, 8, 12, 12), 1, RGB(0, 0, 200)));
  Draw();
  CountFlagged(RGB(228, 178, 128), 0);
  EXPECT_EQ(dc.GetPixel(9, 9), RGB(0, 0, 200));  // copied again, not mixed
  EXPECT_EQ(dc.GetROP2(), R2_COPYPEN);
  e.m_listOutlineRegions.back()->m_bSkip = 1;  // the hatch's mix mode is left in place
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  EXPECT_EQ(dc.GetROP2(), R2_NOTXORPEN);
}

TEST_F(Preview, MarkedStoredRegionIsLightenedStronglyHatchedAndOutlined) {
  AddSquare(RGB(0, 0, 30));
  hand::Build(e, 0);
  e.CopyOutlines();
  e.m_listStoredRegions.front()->m_bMarked = 1;
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 1);
  CountFlagged(RGB(229, 229, 232), 1);
  // The black outline is stroked while NOTXOR is still on: black on white.
  int nOutline = 0;
  for (int i = 2; i < 18; i++) {
    COLORREF c = dc.GetPixel(18, i);
    if (c == RGB(0, 0, 0)) nOutline++;
    else EXPECT_EQ(c, kWhite);
  }
  EXPECT_GT(nOutline, 0);
  EXPECT_EQ(dc.GetPixel(0, 0), kWhite);
}

TEST_F(Preview, OutlineOnlyStrokesInTheRegionColour) {
  AddSquare(RGB(0, 128, 0));
  Draw(1);
  int nStroke = 0;
  for (int y = 0; y < 20; y++)
    for (int x = 0; x < 20; x++) {
      COLORREF c = dc.GetPixel(x, y);
      if (c == RGB(0, 128, 0)) nStroke++;
      else ASSERT_EQ(c, kWhite) << x << "," << y;
    }
  EXPECT_GT(nStroke, 40);
  EXPECT_EQ(dc.GetPixel(5, 5), kWhite);
}

TEST_F(Preview, RegionsAreDrawnInColourOrderUpToTheEdges) {
  e.m_arrColorList.Add(RGB(255, 0, 0));
  e.m_arrColorList.Add(RGB(0, 0, 255));
  // The colour-1 region comes first in the list but is painted last.
  e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 0, 10, 20), 1, RGB(0, 0, 255)));
  e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 0, 20, 20), 0, RGB(255, 0, 0)));
  Draw();
  ExpectPixels(dc, {{0, 0, RGB(0, 0, 255)}, {9, 19, RGB(0, 0, 255)}, {10, 0, RGB(255, 0, 0)},
                    {19, 19, RGB(255, 0, 0)}});
  // A picture one row high is drawn too.
  CPictrace row;
  hand::Load(row, 4, 1);
  row.m_arrColorList.Add(RGB(7, 8, 9));
  row.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 0, 4, 1), 0, RGB(7, 8, 9)));
  hand::Build(row, 0);
  CRasterDC thin(4, 1);
  row.DrawPolygon(&thin, CRect(0, 0, 4, 1), 0, 0);
  ExpectPixels(thin, {{0, 0, RGB(7, 8, 9)}, {3, 0, RGB(7, 8, 9)}});
}

TEST_F(Preview, ThreadColoursReplaceTheCurrentListOnly) {
  AddSquare(RGB(250, 10, 10));
  e.m_pThreadColors = new DWORD[3]{RGB(0, 0, 255), RGB(200, 0, 0), RGB(255, 255, 0)};
  e.m_nThreadColorCount = 3;
  e.m_nThreadColorMode = 2;
  e.SetNearestThreadColorList(2);
  Draw(0, 1);
  EXPECT_EQ(dc.GetPixel(5, 5), RGB(250, 10, 10));  // stored list: its own colours
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  EXPECT_EQ(dc.GetPixel(5, 5), RGB(200, 0, 0));
  // With the current result and its colours gone, the stored copy remains.
  for (COutlineRegion* r : e.m_listOutlineRegions) delete r;
  e.m_listOutlineRegions.clear();
  e.m_arrColorList.RemoveAll();
  CRasterDC after(20, 20);
  e.DrawPolygon(&after, CRect(0, 0, 20, 20), 0, 0);
  EXPECT_EQ(after.GetPixel(5, 5), kWhite);
  e.DrawPolygon(&after, CRect(0, 0, 20, 20), 0, 1);
  EXPECT_EQ(after.GetPixel(5, 5), RGB(250, 10, 10));
}

TEST_F(Preview, ScalesIntoTheDestinationAndRestoresThePen) {
  AddSquare(RGB(10, 20, 30));
  hand::Build(e, 0);
  CRasterDC big(60, 60);
  CPen* pBefore = big.GetCurrentPen();
  // Half size across, shifted by (20, 10); full size down: x 21..28, y 12..27.
  e.DrawPolygon(&big, CRect(20, 10, 30, 30), 0, 0);
  EXPECT_EQ(big.GetCurrentPen(), pBefore);
  ExpectPixels(big, {{21, 12, RGB(10, 20, 30)}, {28, 27, RGB(10, 20, 30)}, {29, 15, kWhite},
                    {19, 15, kWhite}, {21, 11, kWhite}, {21, 28, kWhite}});
}

TEST_F(Preview, CurvePolygonsUseTheBezierPointLayout) {
  // A square of degenerate Bezier lines fills like the straight one.
  e.m_arrColorList.Add(RGB(10, 20, 30));
  COutlineRegion* r = hand::Region({}, 0, RGB(10, 20, 30));
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
  ExpectPixels(dc, {{4, 4, RGB(10, 20, 30)}, {15, 15, RGB(10, 20, 30)}, {16, 10, kWhite}, {3, 10, kWhite}});
}

}  // namespace
