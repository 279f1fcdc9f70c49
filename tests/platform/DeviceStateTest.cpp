// The device context's state, objects and path protocol, seen through a
// device that records what reaches its rendering hooks; polygon regions.
#include <gtest/gtest.h>

#include "AfxGdi.h"

namespace {

const COLORREF kBlack = RGB(0, 0, 0);

struct RecordingDC : CDC {
  std::vector<PathOp> path;
  COLORREF color = CLR_INVALID;
  int style = -1, fills = 0, strokes = 0;
  BOOL RenderFill(const std::vector<PathOp>& p, const CBrush& b, int, int, int, COLORREF) override {
    return fills++, path = p, color = b.m_crColor, TRUE;
  }
  BOOL RenderStroke(const std::vector<PathOp>& p, const CPen& pen, int, int, COLORREF) override {
    return strokes++, path = p, color = pen.m_crColor, style = pen.m_nStyle, TRUE;
  }
};

}  // namespace

TEST(DeviceContext, StockObjectsSelectionAndSetters) {
  RecordingDC dc;
  CPen* stock = dc.GetCurrentPen();
  EXPECT_TRUE(dc.m_hDC == &dc && stock->m_nStyle == PS_SOLID && stock->m_nWidth == 1 && stock->m_crColor == 0);
  EXPECT_TRUE(dc.GetCurrentBrush()->m_nStyle == UINT(BS_SOLID) && dc.GetCurrentBrush()->m_crColor == RGB(255, 255, 255));
  CPen red(PS_SOLID, 1, RGB(255, 0, 0)), unmade;
  EXPECT_TRUE(dc.SelectObject(&red) == stock && dc.SelectObject(stock) == &red);
  EXPECT_TRUE(!dc.SelectObject(&unmade) && !dc.SelectObject(static_cast<CPen*>(nullptr)) && dc.GetCurrentPen() == stock);
  CBrush blue(RGB(0, 0, 255)), none;
  CBrush* stockBrush = dc.GetCurrentBrush();
  EXPECT_TRUE(dc.SelectObject(&blue) == stockBrush && !dc.SelectObject(&none) && dc.GetCurrentBrush() == &blue);
  {  // the device keeps the attributes of a deleted pen
    CPen green(PS_DOT, 1, RGB(0, 200, 0));
    dc.SelectObject(&green);
    green.DeleteObject();
  }
  POINT line[] = {{0, 0}, {5, 0}};
  dc.Polyline(line, 2);
  EXPECT_TRUE(dc.color == RGB(0, 200, 0) && dc.style == PS_DOT);
  // Setters return the previous value; unknown values give 0 and change nothing.
  EXPECT_TRUE(dc.SetROP2(R2_WHITE) == R2_COPYPEN && dc.SetROP2(R2_BLACK) == R2_WHITE && dc.SetROP2(17) == 0 && dc.SetROP2(0) == 0);
  EXPECT_TRUE(dc.GetROP2() == R2_BLACK && dc.SetPolyFillMode(WINDING) == ALTERNATE && dc.SetPolyFillMode(0) == 0);
  EXPECT_TRUE(dc.GetPolyFillMode() == WINDING && dc.SetBkMode(TRANSPARENT) == OPAQUE && dc.SetBkMode(3) == 0);
  EXPECT_TRUE(dc.SetBkColor(0xFF010203) == RGB(255, 255, 255) && dc.SetBkColor(0) == 0x010203);
  EXPECT_TRUE(SetStretchBltMode(&dc, HALFTONE) == BLACKONWHITE && SetStretchBltMode(&dc, BLACKONWHITE) == HALFTONE);
  EXPECT_TRUE(SetStretchBltMode(&dc, 0) == 0 && SetStretchBltMode(&dc, HALFTONE + 1) == 0 && SetStretchBltMode(nullptr, 3) == 0);
  EXPECT_TRUE(dc.GetStretchBltMode() == BLACKONWHITE && dc.GetPixel(0, 0) == CLR_INVALID);
}

TEST(DeviceContext, PathsAreCheckedEndedAndUsedUp) {
  RecordingDC dc;
  POINT pts[] = {{1, 1}, {9, 1}, {9, 9}, {3, 3}};
  BYTE closed[] = {PT_MOVETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE}, bad[] = {PT_MOVETO, 0x10, PT_LINETO, PT_LINETO};
  BYTE shortCurve[] = {PT_MOVETO, PT_BEZIERTO, PT_BEZIERTO, PT_LINETO}, lineOnly[] = {PT_LINETO};
  EXPECT_TRUE(!dc.EndPath() && !dc.FillPath() && dc.BeginPath());
  EXPECT_TRUE(!dc.PolyDraw(pts, bad, 4) && !dc.PolyDraw(pts, shortCurve, 4) && !dc.PolyDraw(nullptr, bad, 4) && !dc.PolyDraw(pts, bad, -1));
  EXPECT_TRUE(dc.PolyDraw(pts, closed, 3) && !dc.FillPath() && dc.EndPath());
  dc.BeginPath();  // a new path is not ended
  EXPECT_TRUE(!dc.FillPath() && dc.PolyDraw(pts, closed, 3) && dc.EndPath() && dc.FillPath() && !dc.StrokePath());
  ASSERT_EQ(dc.path.size(), 4u);
  EXPECT_TRUE(dc.path[3].type == PT_CLOSEFIGURE && dc.path[3].x == 1.0 && dc.fills == 1 && dc.strokes == 0);
  // A line without a MoveTo starts at the current position.
  dc.BeginPath();
  dc.MoveTo(7, 8);
  EXPECT_TRUE(dc.PolyDraw(pts + 3, lineOnly, 1) && dc.EndPath() && dc.StrokePath());
  ASSERT_EQ(dc.path.size(), 2u);
  EXPECT_TRUE(dc.path[0].type == PT_MOVETO && dc.path[0].x == 7.0 && dc.path[0].y == 8.0 && dc.path[1].x == 3.0);
  // Outside a path PolyDraw strokes at once; a close inside a Bezier triple
  // takes effect after it. LineTo draws one segment from the current position.
  BYTE curve[] = {PT_MOVETO, PT_BEZIERTO | PT_CLOSEFIGURE, PT_BEZIERTO, PT_BEZIERTO};
  EXPECT_TRUE(dc.PolyDraw(pts, curve, 4) && dc.strokes == 2 && dc.path.size() == 5u);
  EXPECT_TRUE(dc.path[3].type == PT_BEZIERTO && dc.path[4].type == PT_CLOSEFIGURE && dc.path[4].x == 1.0);
  EXPECT_TRUE(dc.LineTo(4, 6) && dc.path.size() == 2u && dc.path[0].x == 3.0 && dc.path[1].y == 6.0);
  EXPECT_TRUE(dc.Polygon(pts, 3) && dc.fills == 2 && dc.strokes == 4 && dc.path.size() == 4u && !dc.Polygon(pts, 1));
}

TEST(DeviceContext, PenAndBrushCreationChecksItsArguments) {
  CPen pen;
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0}, hatched = {BS_HATCHED, 0, HS_CROSS}, hollow = {BS_NULL, 0, 0};
  DWORD dashes[] = {2, 2}, zero[] = {0, 0}, huge[] = {0x10000};
  const int geo = PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT;
  EXPECT_TRUE(!pen.CreatePen(PS_SOLID, -1, kBlack) && !pen.CreatePen(PS_USERSTYLE, 1, kBlack) && !pen.CreatePen(PS_ALTERNATE, 1, kBlack));
  EXPECT_TRUE(!pen.CreatePen(geo, 1, &lb, 0, nullptr) && !pen.CreatePen(geo, 1, &lb, 2, zero) && !pen.CreatePen(geo, 1, &lb, 1, huge));
  EXPECT_TRUE(!pen.CreatePen(geo, 1, &lb, 17, dashes) && !pen.CreatePen(geo, 1, &hollow, 2, dashes) && !pen.CreatePen(PS_SOLID, 2, &lb, 0, nullptr));
  EXPECT_TRUE(!pen.CreatePen(PS_GEOMETRIC | PS_SOLID, 1, &lb, 2, dashes) && !pen.CreatePen(geo | 0x100000, 1, &lb, 2, dashes));
  ASSERT_TRUE(pen.CreatePen(geo, 1, &hatched, 2, dashes));
  EXPECT_TRUE(pen.m_userStyle == std::vector<DWORD>({2, 2}) && pen.m_nStyle == geo && !pen.CreatePen(PS_SOLID, 1, kBlack));
  CPen zeroWidth(PS_DASH, 0, 0xFF010203);
  EXPECT_TRUE(zeroWidth.m_nWidth == 1 && zeroWidth.m_nStyle == PS_DASH && zeroWidth.m_crColor == 0x010203);
  CBrush brush, brush2;
  EXPECT_TRUE(!brush.CreateHatchBrush(HS_DIAGCROSS + 1, 0) && !brush.CreateHatchBrush(HS_HORIZONTAL - 1, 0) && !brush.CreateBrushIndirect(nullptr));
  EXPECT_TRUE(brush.CreateHatchBrush(HS_HORIZONTAL, 0) && brush.m_nStyle == UINT(BS_HATCHED) && !brush.CreateSolidBrush(0));
  EXPECT_TRUE(brush2.CreateBrushIndirect(&hollow) && brush2.m_nStyle == UINT(BS_NULL) && !brush2.CreateBrushIndirect(&hollow));
}

TEST(Region, EdgesRulesAndLifecycle) {
  POINT square[] = {{2, 2}, {6, 2}, {6, 6}, {2, 6}}, tri[] = {{0, 0}, {8, 0}, {0, 8}};
  POINT star[] = {{5, 0}, {8, 10}, {0, 4}, {10, 4}, {2, 10}};  // the centre is crossed twice the same way
  POINT nested[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {3, 3}, {7, 3}, {7, 7}, {3, 7}, {3, 3}};
  POINT big[] = {{-2000000000, -2000000000}, {2000000000, -2000000000}, {-2000000000, 2000000000}};
  const struct { POINT* pts; int n, mode, x, y; bool in; } cases[] = {
      {square, 4, ALTERNATE, 2, 2, 1}, {square, 4, ALTERNATE, 2, 5, 1}, {square, 4, ALTERNATE, 5, 5, 1},
      {square, 4, ALTERNATE, 6, 3, 0}, {square, 4, ALTERNATE, 3, 6, 0}, {square, 4, ALTERNATE, 1, 3, 0},
      {square, 4, ALTERNATE, 3, 1, 0}, {tri, 3, WINDING, 3, 4, 1},      {tri, 3, WINDING, 4, 4, 0},  // x + y = 8 is a right edge
      {tri, 3, WINDING, 0, 7, 1},      {tri, 3, WINDING, 0, 8, 0},      {star, 5, ALTERNATE, 5, 5, 0},
      {star, 5, WINDING, 5, 5, 1},     {star, 5, ALTERNATE, 2, 5, 1},   {star, 5, WINDING, 0, 9, 0},
      {nested, 10, ALTERNATE, 5, 5, 0}, {nested, 10, WINDING, 5, 5, 1}, {nested, 10, ALTERNATE, 7, 5, 1},
      {big, 3, ALTERNATE, -1, 0, 1},   {big, 3, ALTERNATE, 0, 0, 0},    {big, 3, ALTERNATE, -1999999999, 1999999998, 1},
      {big, 3, ALTERNATE, -1999999999, 1999999999, 0}};
  for (const auto& c : cases) {
    CRgn rgn;
    ASSERT_TRUE(rgn.CreatePolygonRgn(c.pts, c.n, c.mode));
    EXPECT_EQ(rgn.PtInRegion(c.x, c.y) != 0, c.in) << c.n << " points, " << c.x << "," << c.y;
  }
  CRgn rgn;
  EXPECT_TRUE(!rgn.PtInRegion(1, 1) && !rgn.CreatePolygonRgn(nullptr, 3, ALTERNATE) && !rgn.CreatePolygonRgn(tri, 1, ALTERNATE));
  EXPECT_TRUE(!rgn.CreatePolygonRgn(tri, 3, 7) && rgn.CreatePolygonRgn(tri, 3, ALTERNATE) && !rgn.CreatePolygonRgn(square, 4, ALTERNATE));
  EXPECT_TRUE(rgn.PtInRegion(CPoint(1, 1)) && !rgn.PtInRegion(5, 5) && rgn.DeleteObject() && !rgn.PtInRegion(1, 1) && !rgn.DeleteObject());
  EXPECT_TRUE(rgn.CreatePolygonRgn(square, 4, ALTERNATE) && rgn.PtInRegion(5, 5));
}
