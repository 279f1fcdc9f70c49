// The device context's state and path protocol, seen through a device that
// records what reaches its rendering hooks.
#include <gtest/gtest.h>

#include "AfxGdi.h"

namespace {

class RecordingDC : public CDC {
 public:
  std::vector<PathOp> m_lastPath;
  COLORREF m_lastColor = CLR_INVALID;
  int m_lastStyle = -1;
  int m_lastMode = 0;
  int m_fills = 0;
  int m_strokes = 0;

 protected:
  BOOL RenderFill(const std::vector<PathOp>& path, const CBrush& brush, int nFillMode, int,
                  int, COLORREF) override {
    m_fills++;
    m_lastPath = path;
    m_lastColor = brush.m_crColor;
    m_lastMode = nFillMode;
    return TRUE;
  }
  BOOL RenderStroke(const std::vector<PathOp>& path, const CPen& pen, int, int,
                    COLORREF) override {
    m_strokes++;
    m_lastPath = path;
    m_lastColor = pen.m_crColor;
    m_lastStyle = pen.m_nStyle;
    return TRUE;
  }
};

}  // namespace

TEST(DeviceContext, StockObjectsAndSelection) {
  RecordingDC dc;
  EXPECT_EQ(dc.m_hDC, &dc);
  CPen* stockPen = dc.GetCurrentPen();
  EXPECT_EQ(stockPen->m_nStyle, PS_SOLID);
  EXPECT_EQ(stockPen->m_nWidth, 1);
  EXPECT_EQ(stockPen->m_crColor, RGB(0, 0, 0));
  EXPECT_EQ(dc.GetCurrentBrush()->m_nStyle, static_cast<UINT>(BS_SOLID));
  EXPECT_EQ(dc.GetCurrentBrush()->m_crColor, RGB(255, 255, 255));

  CPen red(PS_SOLID, 1, RGB(255, 0, 0));
  CPen blue(PS_DOT, 1, RGB(0, 0, 255));
  EXPECT_EQ(dc.SelectObject(&red), stockPen);
  EXPECT_EQ(dc.SelectObject(&blue), &red);
  EXPECT_EQ(dc.SelectObject(stockPen), &blue);

  CPen unmade;
  EXPECT_EQ(dc.SelectObject(&unmade), nullptr);
  EXPECT_EQ(dc.SelectObject(static_cast<CPen*>(nullptr)), nullptr);
  EXPECT_EQ(dc.GetCurrentPen(), stockPen);
}

TEST(DeviceContext, SelectedAttributesOutliveTheObject) {
  RecordingDC dc;
  POINT line[] = {{0, 0}, {5, 0}};
  {
    CPen green(PS_DOT, 1, RGB(0, 200, 0));
    dc.SelectObject(&green);
    green.DeleteObject();
  }
  dc.Polyline(line, 2);
  EXPECT_EQ(dc.m_lastColor, RGB(0, 200, 0));
  EXPECT_EQ(dc.m_lastStyle, PS_DOT);
}

TEST(DeviceContext, SettersReturnPreviousAndRefuseUnknown) {
  CDC dc;
  EXPECT_EQ(dc.SetROP2(R2_NOTXORPEN), R2_COPYPEN);
  EXPECT_EQ(dc.SetROP2(17), 0);
  EXPECT_EQ(dc.GetROP2(), R2_NOTXORPEN);
  EXPECT_EQ(dc.SetPolyFillMode(WINDING), ALTERNATE);
  EXPECT_EQ(dc.SetPolyFillMode(0), 0);
  EXPECT_EQ(dc.GetPolyFillMode(), WINDING);
  EXPECT_EQ(dc.SetBkMode(TRANSPARENT), OPAQUE);
  EXPECT_EQ(dc.SetBkMode(3), 0);
  EXPECT_EQ(dc.SetBkColor(RGB(1, 2, 3)), RGB(255, 255, 255));
  EXPECT_EQ(SetStretchBltMode(&dc, COLORONCOLOR), BLACKONWHITE);
  EXPECT_EQ(SetStretchBltMode(&dc, 9), 0);
  EXPECT_EQ(dc.GetStretchBltMode(), COLORONCOLOR);
  EXPECT_EQ(SetStretchBltMode(nullptr, COLORONCOLOR), 0);
  EXPECT_EQ(dc.GetPixel(0, 0), CLR_INVALID);  // no surface
}

TEST(DeviceContext, PathProtocol) {
  RecordingDC dc;
  EXPECT_FALSE(dc.EndPath());
  EXPECT_FALSE(dc.FillPath());
  POINT pts[] = {{1, 1}, {9, 1}, {9, 9}};
  BYTE types[] = {PT_MOVETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE};
  dc.BeginPath();
  EXPECT_TRUE(dc.PolyDraw(pts, types, 3));
  EXPECT_FALSE(dc.FillPath());  // not ended yet
  EXPECT_TRUE(dc.EndPath());
  EXPECT_TRUE(dc.FillPath());
  ASSERT_EQ(dc.m_lastPath.size(), 4u);
  EXPECT_EQ(dc.m_lastPath[3].type, PT_CLOSEFIGURE);
  EXPECT_EQ(dc.m_lastPath[3].x, 1.0);
  EXPECT_FALSE(dc.StrokePath());  // the path was used up
  EXPECT_EQ(dc.m_fills, 1);
}

TEST(DeviceContext, PolyDrawChecksBeforeDrawing) {
  RecordingDC dc;
  POINT pts[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}};
  BYTE badType[] = {PT_MOVETO, 0x10, PT_LINETO, PT_LINETO};
  BYTE shortCurve[] = {PT_MOVETO, PT_BEZIERTO, PT_BEZIERTO, PT_LINETO};
  dc.BeginPath();
  EXPECT_FALSE(dc.PolyDraw(pts, badType, 4));
  EXPECT_FALSE(dc.PolyDraw(pts, shortCurve, 4));
  EXPECT_FALSE(dc.PolyDraw(nullptr, badType, 4));
  // A line without a MoveTo starts at the current position.
  dc.MoveTo(7, 8);
  BYTE lineOnly[] = {PT_LINETO};
  EXPECT_TRUE(dc.PolyDraw(pts + 3, lineOnly, 1));
  dc.EndPath();
  dc.StrokePath();
  ASSERT_EQ(dc.m_lastPath.size(), 2u);
  EXPECT_EQ(dc.m_lastPath[0].type, PT_MOVETO);
  EXPECT_EQ(dc.m_lastPath[0].x, 7.0);
  EXPECT_EQ(dc.m_lastPath[0].y, 8.0);
  EXPECT_EQ(dc.m_lastPath[1].x, 3.0);

  // Outside a path, PolyDraw strokes at once.
  BYTE curve[] = {PT_MOVETO, PT_BEZIERTO, PT_BEZIERTO, PT_BEZIERTO | PT_CLOSEFIGURE};
  EXPECT_TRUE(dc.PolyDraw(pts, curve, 4));
  EXPECT_EQ(dc.m_strokes, 2);
  ASSERT_EQ(dc.m_lastPath.size(), 5u);
  EXPECT_EQ(dc.m_lastPath[3].type, PT_BEZIERTO);
  EXPECT_EQ(dc.m_lastPath[4].type, PT_CLOSEFIGURE);
}

TEST(DeviceContext, PenAndBrushCreation) {
  CPen pen;
  EXPECT_FALSE(pen.CreatePen(PS_SOLID, -1, RGB(0, 0, 0)));
  EXPECT_FALSE(pen.CreatePen(PS_USERSTYLE, 1, RGB(0, 0, 0)));  // needs the extended form
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0};
  DWORD dashes[] = {2, 2};
  EXPECT_FALSE(pen.CreatePen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &lb, 0, nullptr));
  ASSERT_TRUE(pen.CreatePen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &lb, 2, dashes));
  EXPECT_EQ(pen.m_userStyle, (std::vector<DWORD>{2, 2}));
  EXPECT_FALSE(pen.CreatePen(PS_SOLID, 1, RGB(0, 0, 0)));  // already made
  CPen zero(PS_SOLID, 0, RGB(1, 2, 3));
  EXPECT_EQ(zero.m_nWidth, 1);
  CBrush brush;
  EXPECT_FALSE(brush.CreateHatchBrush(6, 0));
  EXPECT_TRUE(brush.CreateHatchBrush(HS_DIAGCROSS, RGB(200, 200, 200)));
  EXPECT_EQ(brush.m_nStyle, static_cast<UINT>(BS_HATCHED));
}
