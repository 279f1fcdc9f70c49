// The thin lines' output form, the host's copy and the preview drawing.
#include <gtest/gtest.h>

#include <iterator>

#include "Pictrace.h"
#include "RasterDC.h"
#include "core/OutlineRecords.h"
#include "thinline/AsciiPicture.h"
#include "core/ThinLineRecords.h"

using namespace thintest;

namespace {

// A thin line with the given smoothed points, as tracing leaves it.
COutlineThinline* MakeLine(int colorIndex, COLORREF color, std::vector<sPoint> points) {
  COutlineThinline* pLine = new COutlineThinline;
  pLine->m_nColorIndex = colorIndex;
  pLine->m_crColor = color;
  pLine->m_nSmoothPoints = static_cast<int>(points.size());
  pLine->m_pSmoothPoints = new sPoint[points.size()];
  std::copy(points.begin(), points.end(), pLine->m_pSmoothPoints);
  pLine->m_pVector = new COutlineVector;
  pLine->m_pVector->m_nPoints = pLine->m_nSmoothPoints;
  pLine->m_pVector->m_pPoints = new sPoint[points.size()];
  std::copy(points.begin(), points.end(), pLine->m_pVector->m_pPoints);
  return pLine;
}

struct Output : ::testing::Test {
  CPictrace engine;
  void SetUp() override {
    LoadBlank(engine, 40, 30);
    engine.m_arrLineColors.Add(kRed);
    engine.m_arrLineColors.Add(kBlue);
  }
};

}  // namespace

TEST_F(Output, TwoSmoothedPointsGiveOneStraightLine) {
  COutlineThinline* pLine = MakeLine(0, kRed, {{3, 4}, {10, 20}});
  pLine->m_nNextSibling = 5;
  pLine->m_nParent = 6;
  pLine->m_nFirstChild = 7;
  pLine->m_bLaterBranch = 1;
  engine.m_listThinLines.push_back(pLine);
  engine.CreateOutputThinLine();
  CPTPolygonLine* pOut = pLine->m_pPolygonLine;
  ASSERT_NE(nullptr, pOut);
  ASSERT_EQ(1, pOut->m_nLines);
  EXPECT_EQ(0, pOut->m_pLines[0].m_nType);
  EXPECT_EQ(3.0f, pOut->m_pLines[0].m_ptStart.x);
  EXPECT_EQ(26.0f, pOut->m_pLines[0].m_ptStart.y);  // measured from the top: 30 - 4
  EXPECT_EQ(10.0f, pOut->m_pLines[0].m_ptEnd.x);
  EXPECT_EQ(10.0f, pOut->m_pLines[0].m_ptEnd.y);
  EXPECT_EQ(0.0f, pOut->m_pLines[0].m_ptCtrl1.x);
  EXPECT_EQ(5, pOut->m_nAttr1);
  EXPECT_EQ(6, pOut->m_nAttr2);
  EXPECT_EQ(7, pOut->m_nAttr3);
  EXPECT_EQ(1, pOut->m_nAttr4);
  // Built again: the old form is replaced (the leak checker watches).
  engine.CreateOutputThinLine();
  EXPECT_NE(nullptr, pLine->m_pPolygonLine);
  EXPECT_EQ(1, pLine->m_pPolygonLine->m_nLines);
}

TEST_F(Output, GetThinLinesOrdersByColourAndMapsIntoTheRectangle) {
  engine.m_listThinLines.push_back(MakeLine(1, kBlue, {{0, 0}, {4, 10}}));
  engine.m_listThinLines.push_back(MakeLine(0, kRed, {{2, 10}, {6, 10}, {6, 20}}));
  engine.m_listThinLines.push_back(MakeLine(5, kRed, {{1, 1}, {2, 2}}));  // no such colour
  engine.m_listThinLines.back()->m_bSelected = 1;
  engine.m_listThinLines.front()->m_bSelected = 1;
  engine.CreateOutputThinLine();

  // Zero rectangle: scale 1, no offset.
  CPTThinLines result;
  engine.GetThinLines(&result);
  ASSERT_EQ(2, result.m_nThinLines);
  EXPECT_EQ(1, result.m_pThinLines[0].m_nColorIndex);  // colour 0 first
  EXPECT_EQ(2, result.m_pThinLines[1].m_nColorIndex);
  EXPECT_EQ(1, result.m_pThinLines[0].m_nPolygonLines);
  EXPECT_EQ(0, result.m_pThinLines[0].m_nThinLineFlag);
  const CPTPolygonLine& red = result.m_pThinLines[0].m_pPolygonLines[0];
  ASSERT_EQ(2, red.m_nLines);
  EXPECT_EQ(6.0f, red.m_pLines[1].m_ptEnd.x);
  EXPECT_EQ(10.0f, red.m_pLines[1].m_ptEnd.y);
  EXPECT_EQ(0, red.m_nAttr5);
  EXPECT_EQ(1, result.m_pThinLines[1].m_pPolygonLines[0].m_nAttr5);  // selected

  // Rectangle twice the picture, moved by (100, 50).
  engine.SetImageRealRect(100, 50, 180, 110);
  engine.GetThinLines(&result);
  ASSERT_EQ(2, result.m_nThinLines);
  const CPTLine& line = result.m_pThinLines[0].m_pPolygonLines[0].m_pLines[0];
  EXPECT_EQ(104.0f, line.m_ptStart.x);   // 100 + 2 * 2
  EXPECT_EQ(90.0f, line.m_ptStart.y);    // 50 + 2 * (30 - 10)
  EXPECT_EQ(100.0f, line.m_ptCtrl1.x);   // straight lines' control points: the corner
  EXPECT_EQ(50.0f, line.m_ptCtrl2.y);
  // The host's arrays share nothing with the engine's.
  EXPECT_NE((*std::next(engine.m_listThinLines.begin()))->m_pPolygonLine->m_pLines,
            result.m_pThinLines[0].m_pPolygonLines[0].m_pLines);
}

TEST_F(Output, NothingToHandOutOrDraw) {
  engine.CreateOutputThinLine();
  CPTThinLines result;
  engine.GetThinLines(&result);
  EXPECT_EQ(0, result.m_nThinLines);
  EXPECT_EQ(nullptr, result.m_pThinLines);
  engine.SetThinningFlag(1);
  CRasterDC dc(40, 30);
  engine.DrawThinLine(&dc, CRect(0, 0, 40, 30));
  for (int y = 0; y < 30; y++)
    for (int x = 0; x < 40; x++) ASSERT_EQ(kWhite, dc.GetPixel(x, y));
}

TEST_F(Output, DrawThinLineColoursAndHighlights) {
  // A horizontal line at picture row 20, drawn at y = 30 - 20 = 10 from the top.
  engine.m_listThinLines.push_back(MakeLine(0, kRed, {{5, 20}, {35, 20}}));
  engine.CreateOutputThinLine();

  CRasterDC dc(40, 30);
  engine.DrawThinLine(&dc, CRect(0, 0, 40, 30));
  EXPECT_EQ(kWhite, dc.GetPixel(20, 10));  // thinning view off: nothing drawn

  engine.SetThinningFlag(1);
  engine.DrawThinLine(&dc, CRect(0, 0, 40, 30));
  int red = 0;
  for (int y = 8; y <= 12; y++)
    if (dc.GetPixel(20, y) == kRed) red++;
  EXPECT_EQ(2, red);  // a pen two pixels wide
  EXPECT_EQ(kWhite, dc.GetPixel(20, 20));

  // Selected: white dots, then dashes that invert what lies beneath.
  engine.m_listThinLines.front()->m_bSelected = 1;
  CRasterDC sel(40, 30);
  engine.DrawThinLine(&sel, CRect(0, 0, 40, 30));
  int black = 0, white = 0, other = 0;
  for (int x = 8; x <= 32; x++) {
    COLORREF c = sel.GetPixel(x, 10);
    if (c == kBlack) black++;
    else if (c == kWhite) white++;
    else other++;
  }
  EXPECT_GT(black, 5);
  EXPECT_GT(white, 5);
  EXPECT_EQ(0, other);
  for (int x = 0; x < 40; x++) EXPECT_EQ(kWhite, sel.GetPixel(x, 20));

  // Twice the size: the same line lands at twice the coordinates.
  CRasterDC big(80, 60);
  engine.m_listThinLines.front()->m_bSelected = 0;
  engine.DrawThinLine(&big, CRect(0, 0, 80, 60));
  bool found = false;
  for (int y = 18; y <= 22; y++) found = found || big.GetPixel(40, y) == kRed;
  EXPECT_TRUE(found);
}
