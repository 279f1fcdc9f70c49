// Pens on the raster device: cosmetic lines pixel by pixel, styles, wide
// and geometric pens.
#include <gtest/gtest.h>

#include <string>

#include "RasterDC.h"
#include "common/PixelChecks.h"

using testimg::ExpectPixels;

namespace {

const COLORREF kWhite = RGB(255, 255, 255);
const COLORREF kRed = RGB(255, 0, 0);

void StrokeLine(CDC& dc, POINT a, POINT b) {
  POINT pts[] = {a, b};
  BYTE types[] = {PT_MOVETO, PT_LINETO};
  dc.BeginPath();
  dc.PolyDraw(pts, types, 2);
  dc.EndPath();
  dc.StrokePath();
}

// One row as text: '#' black, '.' white, 'r' red, '?' anything else.
std::string Row(const CRasterDC& dc, int y, int x0, int x1) {
  std::string s;
  for (int x = x0; x < x1; x++) {
    COLORREF c = dc.GetPixel(x, y);
    s += c == 0 ? '#' : c == kWhite ? '.' : c == kRed ? 'r' : '?';
  }
  return s;
}

}  // namespace

TEST(RasterStroke, SolidLineLeavesOutItsEndPoint) {
  CRasterDC dc(12, 6);
  StrokeLine(dc, {1, 2}, {8, 2});  // the stock pen: black, one pixel
  EXPECT_EQ(Row(dc, 2, 0, 10), ".#######..");
  EXPECT_EQ(Row(dc, 1, 0, 10), "..........");
  StrokeLine(dc, {0, 0}, {4, 4});
  ExpectPixels(dc, {{3, 3, 0u}, {4, 4, kWhite}});
}

TEST(RasterStroke, ClosedFigureTouchesEachPixelOnce) {
  // Under R2_NOT a pixel drawn twice would turn white again.
  CRasterDC dc(10, 10);
  dc.SetROP2(R2_NOT);
  POINT pts[] = {{2, 2}, {6, 2}, {6, 6}, {2, 6}};
  BYTE types[] = {PT_MOVETO, PT_LINETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE};
  dc.BeginPath();
  dc.PolyDraw(pts, types, 4);
  dc.EndPath();
  dc.StrokePath();
  EXPECT_EQ(Row(dc, 2, 0, 8), "..#####.");
  EXPECT_EQ(Row(dc, 4, 0, 8), "..#...#.");
  EXPECT_EQ(Row(dc, 6, 0, 8), "..#####.");
}

TEST(RasterStroke, DotPenAlternates) {
  for (int bkMode : {TRANSPARENT, OPAQUE}) {
    CRasterDC dc(12, 8);
    CPen dot(PS_DOT, 1, RGB(0, 0, 0));
    dc.SelectObject(&dot);
    dc.SetBkMode(bkMode);
    dc.SetBkColor(kRed);
    StrokeLine(dc, {0, 1}, {10, 1});
    StrokeLine(dc, {0, 2}, {6, 8});
    if (bkMode == TRANSPARENT) {
      EXPECT_EQ(Row(dc, 1, 0, 12), "#.#.#.#.#...");
      EXPECT_EQ(dc.GetPixel(1, 3), kWhite);
    } else {
      EXPECT_EQ(Row(dc, 1, 0, 12), "#r#r#r#r#r..");
      EXPECT_EQ(dc.GetPixel(1, 3), kRed);
    }
    ExpectPixels(dc, {{0, 2, 0u}, {2, 4, 0u}, {4, 6, 0u}, {6, 8, CLR_INVALID}});
  }
}

TEST(RasterStroke, NullPenDrawsNothing) {
  CRasterDC dc(8, 8);
  CPen none(PS_NULL, 1, RGB(255, 0, 0));
  dc.SelectObject(&none);
  StrokeLine(dc, {0, 3}, {7, 3});
  EXPECT_EQ(Row(dc, 3, 0, 8), "........");
}

TEST(RasterStroke, UserStyledGeometricPen) {
  // PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, {2, 2}: two on, two off
  // from the start of each figure; gaps keep the picture when TRANSPARENT.
  CRasterDC dc(16, 16);
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0};
  DWORD dashes[] = {2, 2};
  CPen pen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &lb, 2, dashes);
  dc.SelectObject(&pen);
  dc.SetBkMode(TRANSPARENT);
  StrokeLine(dc, {0, 2}, {12, 2});
  StrokeLine(dc, {2, 4}, {2, 14});
  EXPECT_EQ(Row(dc, 2, 0, 14), "##..##..##....");
  EXPECT_EQ(Row(dc, 1, 0, 14), "..............");
  EXPECT_EQ(Row(dc, 3, 0, 14), "..............");
  std::string column;
  for (int y = 4; y < 15; y++) column += dc.GetPixel(2, y) == 0 ? '#' : '.';
  EXPECT_EQ(column, "##..##..##.");

  dc.SetBkMode(OPAQUE);  // now the gaps take the background colour
  dc.SetBkColor(kRed);
  StrokeLine(dc, {0, 6}, {12, 6});
  EXPECT_EQ(Row(dc, 6, 0, 14), "##rr##rr##rr..");
}

TEST(RasterStroke, SelectionHighlightOfAThinLine) {
  // A white PS_DOT pen (gaps in the white background colour), then the
  // {2, 2} black geometric pen under R2_NOTXORPEN: black dashes on white.
  CRasterDC dc(12, 4);
  for (int x = 0; x < 12; x++) dc.SetPixel(x, 1, RGB(0, 0, 255));
  CPen dot(PS_DOT, 1, RGB(255, 255, 255));
  dc.SelectObject(&dot);
  StrokeLine(dc, {0, 1}, {10, 1});
  EXPECT_EQ(Row(dc, 1, 0, 10), "..........");
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0};
  DWORD dashes[] = {2, 2};
  CPen dash(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &lb, 2, dashes);
  dc.SelectObject(&dash);
  dc.SetROP2(R2_NOTXORPEN);
  StrokeLine(dc, {0, 1}, {10, 1});
  EXPECT_EQ(Row(dc, 1, 0, 10), "##..##..##");
  EXPECT_EQ(dc.GetPixel(10, 1), RGB(0, 0, 255));
}

TEST(RasterStroke, WidePenCoversTwoRows) {
  CRasterDC dc(20, 8);
  CPen wide(PS_SOLID, 2, RGB(0, 0, 0));
  dc.SelectObject(&wide);
  StrokeLine(dc, {3, 3}, {15, 3});
  for (int x = 4; x < 15; x++) {
    EXPECT_EQ(dc.GetPixel(x, 1), kWhite) << x;
    EXPECT_EQ(dc.GetPixel(x, 2), 0u) << x;
    EXPECT_EQ(dc.GetPixel(x, 3), 0u) << x;
    EXPECT_EQ(dc.GetPixel(x, 4), kWhite) << x;
  }
  EXPECT_EQ(dc.GetPixel(19, 3), kWhite);
}

TEST(RasterStroke, ImmediateLinesAndOffSurfaceGeometry) {
  CRasterDC dc(8, 8);
  dc.MoveTo(1, 5);
  EXPECT_TRUE(dc.LineTo(5, 5));
  EXPECT_EQ(Row(dc, 5, 0, 8), ".####...");
  // Long segments only visit the steps over the surface.
  POINT far[] = {{-2000000000, 3}, {2000000000, 3}};
  EXPECT_TRUE(dc.Polyline(far, 2));
  EXPECT_EQ(Row(dc, 3, 0, 8), "########");
  POINT diagonal[] = {{2000000000, 2000000000}, {-2000000000, -2000000000}};
  EXPECT_TRUE(dc.Polyline(diagonal, 2));
  ExpectPixels(dc, {{6, 6, 0u}, {7, 6, kWhite}});
  CPen wide(PS_SOLID, 3, RGB(0, 0, 0));
  dc.SelectObject(&wide);
  POINT outside[] = {{-50, -50}, {-20, -40}};
  EXPECT_TRUE(dc.Polyline(outside, 2));
  EXPECT_EQ(Row(dc, 0, 1, 8), ".......");  // (0, 0) is the diagonal's
}
