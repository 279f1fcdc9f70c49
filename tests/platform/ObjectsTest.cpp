// The MFC value classes and arrays, message boxes and windows, the device context's state and path
// protocol (seen through a device recording what reaches its rendering hooks), pens, brushes, regions.
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "AfxCollections.h"
#include "AfxGdi.h"
#include "AfxWnd.h"

namespace {

const COLORREF kBlack = RGB(0, 0, 0);
std::string g_text;
UINT g_type = 0, g_help = 0;
int Hook(const char* text, UINT type, UINT help) { return g_text = text, g_type = type, g_help = help, IDCANCEL; }

struct ProgressWindow : CWnd {
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override { return message + wParam * 10 + lParam * 100; }
};

struct RecordingDC : CDC {
  std::vector<PathOp> path;
  COLORREF color = CLR_INVALID;
  int style = -1, fills = 0, strokes = 0;
  BOOL RenderFill(const std::vector<PathOp>& p, const CBrush& b, int, int, int, COLORREF) override { return fills++, path = p, color = b.m_crColor, TRUE; }
  BOOL RenderStroke(const std::vector<PathOp>& p, const CPen& pen, int, int, COLORREF) override {
    return strokes++, path = p, color = pen.m_crColor, style = pen.m_nStyle, TRUE;
  }
};

}  // namespace

TEST(ValueTypes, RectsArraysAndWindows) {
  // Only what the engine and the command line use (the rest of MFC's surface is there for hosts).
  CRect rc(2, 3, 6, 8);
  EXPECT_TRUE(rc.Width() == 4 && rc.Height() == 5 && rc.Size() == CSize(4, 5) && CRect(CPoint(1, 2), CSize(3, 4)) == CRect(1, 2, 4, 6));
  auto items = [](const CDWordArray& a) { return std::vector<DWORD>(a.GetData(), a.GetData() + a.GetSize()); };
  CDWordArray a, b;
  CArray<CPoint, CPoint> pts;
  EXPECT_TRUE(a.Add(10) == 0 && a.Add(20) == 1 && a.Add(30) == 2);
  b.Add(1), b.Copy(a);
  EXPECT_TRUE(items(b) == std::vector<DWORD>({10, 20, 30}) && b.Append(a) == 3);
  b[0] = 5;
  EXPECT_TRUE(items(b) == std::vector<DWORD>({5, 20, 30, 10, 20, 30}) && a.GetAt(0) == 10u);  // a copy, not a view
  a.RemoveAll(), pts.Add(CPoint(1, 2));
  EXPECT_TRUE(a.IsEmpty() && pts.GetData()[0] == CPoint(1, 2));
  // Message boxes go to the hook, else to standard error; messages to the subclass.
  AFX_MSGBOX_HOOK old = AfxSetMessageBoxHook(Hook);
  EXPECT_TRUE(AfxMessageBox("Disk full", MB_OKCANCEL, 17) == IDCANCEL && g_text == "Disk full" && g_type == UINT(MB_OKCANCEL) && g_help == 17u);
  EXPECT_TRUE(AfxMessageBox("Second") == IDCANCEL && g_type == UINT(MB_OK) && g_help == 0u && AfxSetMessageBoxHook(nullptr) == Hook);
  testing::internal::CaptureStderr();
  EXPECT_EQ(AfxMessageBox("Not supported"), IDOK);
  EXPECT_TRUE(AfxSetMessageBoxHook(old) == nullptr && testing::internal::GetCapturedStderr() == "Not supported\n");
  EXPECT_TRUE(static_cast<CWnd&&>(ProgressWindow()).SendMessage(3, 5, -1) == 3 + 50 - 100 && CWnd().SendMessage(0x1401) == 0);
  auto app = std::make_unique<CWinApp>("host");
  EXPECT_TRUE(AfxGetApp() == app.get() && app->InitInstance());
  app.reset();
  EXPECT_EQ(AfxGetApp(), nullptr);
}

TEST(DeviceContext, ObjectsSettersPathsPensAndBrushes) {
  RecordingDC dc;
  CPen* stock = dc.GetCurrentPen();
  CBrush* stockBrush = dc.GetCurrentBrush();
  EXPECT_TRUE(dc.m_hDC == &dc && stock->m_nStyle == PS_SOLID && stock->m_nWidth == 1 && stock->m_crColor == 0);
  EXPECT_TRUE(stockBrush->m_nStyle == UINT(BS_SOLID) && stockBrush->m_crColor == RGB(255, 255, 255));
  CPen red(PS_SOLID, 1, RGB(255, 0, 0)), unmade, green(PS_DOT, 1, RGB(0, 200, 0));
  CBrush blue(RGB(0, 0, 255)), none;
  EXPECT_TRUE(dc.SelectObject(&red) == stock && dc.SelectObject(stock) == &red && !dc.SelectObject(&unmade));
  EXPECT_TRUE(!dc.SelectObject(static_cast<CPen*>(nullptr)) && dc.GetCurrentPen() == stock);
  EXPECT_TRUE(dc.SelectObject(&blue) == stockBrush && !dc.SelectObject(&none) && dc.GetCurrentBrush() == &blue);
  dc.SelectObject(&green), green.DeleteObject();  // the device keeps the attributes
  POINT pts[] = {{1, 1}, {9, 1}, {9, 9}, {3, 3}};
  BYTE twoPoints[] = {PT_MOVETO, PT_LINETO};
  EXPECT_TRUE(dc.PolyDraw(pts, twoPoints, 2) && dc.color == RGB(0, 200, 0) && dc.style == PS_DOT);
  // Setters return the previous value; unknown values give 0 and change nothing.
  EXPECT_TRUE(dc.SetROP2(R2_WHITE) == R2_COPYPEN && dc.SetROP2(R2_BLACK) == R2_WHITE && dc.SetROP2(17) == 0 && dc.SetROP2(0) == 0);
  EXPECT_TRUE(dc.GetROP2() == R2_BLACK && dc.SetPolyFillMode(WINDING) == ALTERNATE && dc.SetPolyFillMode(0) == 0);
  EXPECT_TRUE(dc.GetPolyFillMode() == WINDING && dc.SetBkMode(TRANSPARENT) == OPAQUE && dc.SetBkMode(3) == 0);
  EXPECT_TRUE(dc.SetBkColor(0xFF010203) == RGB(255, 255, 255) && dc.SetBkColor(0) == 0x010203 &&
              SetStretchBltMode(&dc, HALFTONE) == BLACKONWHITE && SetStretchBltMode(&dc, BLACKONWHITE) == HALFTONE);
  EXPECT_TRUE(SetStretchBltMode(&dc, 0) == 0 && SetStretchBltMode(&dc, HALFTONE + 1) == 0 && SetStretchBltMode(nullptr, 3) == 0);
  EXPECT_TRUE(dc.GetStretchBltMode() == BLACKONWHITE && dc.GetPixel(0, 0) == CLR_INVALID);
  // Paths: checked before anything is drawn, ended before use, used up.
  BYTE closed[] = {PT_MOVETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE}, bad[] = {PT_MOVETO, 0x10, PT_LINETO, PT_LINETO};
  BYTE shortCurve[] = {PT_MOVETO, PT_BEZIERTO, PT_BEZIERTO, PT_LINETO};
  EXPECT_TRUE(!dc.EndPath() && !dc.FillPath() && dc.BeginPath());
  EXPECT_TRUE(!dc.PolyDraw(pts, bad, 4) && !dc.PolyDraw(pts, shortCurve, 4) && !dc.PolyDraw(nullptr, bad, 4) && !dc.PolyDraw(pts, bad, -1));
  EXPECT_TRUE(dc.PolyDraw(pts, closed, 3) && !dc.FillPath() && dc.EndPath() && dc.BeginPath());  // a new path is not ended
  EXPECT_TRUE(!dc.FillPath() && dc.PolyDraw(pts, closed, 3) && dc.EndPath() && dc.FillPath() && !dc.StrokePath());
  EXPECT_TRUE(dc.path.size() == 4u && dc.path[3].type == PT_CLOSEFIGURE && dc.path[3].x == 1.0 && dc.fills == 1 && dc.strokes == 1);
  // Outside a path PolyDraw strokes at once; a close in a Bezier triple takes effect after it.
  BYTE curve[] = {PT_MOVETO, PT_BEZIERTO | PT_CLOSEFIGURE, PT_BEZIERTO, PT_BEZIERTO};
  EXPECT_TRUE(dc.PolyDraw(pts, curve, 4) && dc.strokes == 2 && dc.path.size() == 5u);
  EXPECT_TRUE(dc.path[3].type == PT_BEZIERTO && dc.path[4].type == PT_CLOSEFIGURE && dc.path[4].x == 1.0);
  EXPECT_TRUE(dc.Polygon(pts, 3) && dc.fills == 2 && dc.strokes == 3 && dc.path.size() == 4u && !dc.Polygon(pts, 1));
  // Pens and brushes check their arguments.
  CPen pen, plain;
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0}, hatched = {BS_HATCHED, 0, HS_CROSS}, hollow = {BS_NULL, 0, 0};
  DWORD dashes[] = {2, 2}, zero[] = {0, 0}, huge[] = {0x10000};
  const int geo = PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT;
  EXPECT_TRUE(!pen.CreatePen(PS_SOLID, -1, kBlack) && !pen.CreatePen(PS_USERSTYLE, 1, kBlack) && !pen.CreatePen(PS_ALTERNATE, 1, kBlack));
  EXPECT_TRUE(!pen.CreatePen(geo, 1, &lb, 0, nullptr) && !pen.CreatePen(geo, 1, &lb, 2, zero) && !pen.CreatePen(geo, 1, &lb, 1, huge));
  EXPECT_TRUE(!pen.CreatePen(geo, 1, &lb, 17, dashes) && !pen.CreatePen(geo, 1, &hollow, 2, dashes) && !pen.CreatePen(PS_SOLID, 2, &lb, 0, nullptr));
  EXPECT_TRUE(!pen.CreatePen(PS_GEOMETRIC, 1, &lb, 2, dashes) && !pen.CreatePen(PS_GEOMETRIC, 1, &lb, 1, nullptr) && !pen.CreatePen(geo | 0x100000, 1, &lb, 2, dashes));
  ASSERT_TRUE(pen.CreatePen(geo, 1, &hatched, 2, dashes) && plain.CreatePen(PS_GEOMETRIC | PS_DASH, 3, &lb, 0, nullptr));
  EXPECT_TRUE(pen.m_userStyle == std::vector<DWORD>({2, 2}) && pen.m_nStyle == geo && !pen.CreatePen(PS_SOLID, 1, kBlack));
  CPen zeroWidth(PS_DASH, 0, 0xFF010203);
  EXPECT_TRUE(zeroWidth.m_nWidth == 1 && zeroWidth.m_nStyle == PS_DASH && zeroWidth.m_crColor == 0x010203 && plain.m_nWidth == 3);
  CBrush brush, brush2;
  EXPECT_TRUE(!brush.CreateHatchBrush(HS_DIAGCROSS + 1, 0) && !brush.CreateHatchBrush(HS_HORIZONTAL - 1, 0) && !brush.CreateBrushIndirect(nullptr));
  EXPECT_TRUE(brush.CreateHatchBrush(HS_HORIZONTAL, 0) && brush.m_nStyle == UINT(BS_HATCHED) && !brush.CreateSolidBrush(0));
  EXPECT_TRUE(brush2.CreateBrushIndirect(&hollow) && brush2.m_nStyle == UINT(BS_NULL) && brush2.m_crColor == 0 && !brush2.CreateBrushIndirect(&hollow));
}

TEST(Region, FarCoordinatesAndLifecycle) {
  // Rectangles and triangles are in the random polygons of the raster tests; far coordinates here.
  POINT square[] = {{2, 2}, {6, 2}, {6, 6}, {2, 6}}, tri[] = {{0, 0}, {8, 0}, {0, 8}};
  POINT big[] = {{-2000000000, -2000000000}, {2000000000, -2000000000}, {-2000000000, 2000000000}};
  CRgn far, rgn, line;
  ASSERT_TRUE(far.CreatePolygonRgn(big, 3, WINDING));
  EXPECT_TRUE(far.PtInRegion(-1, 0) && !far.PtInRegion(0, 0) && far.PtInRegion(-1999999999, 1999999998) && !far.PtInRegion(-1999999999, 1999999999));
  EXPECT_TRUE(!rgn.PtInRegion(1, 1) && !rgn.CreatePolygonRgn(nullptr, 3, ALTERNATE) && !rgn.CreatePolygonRgn(tri, 1, ALTERNATE));
  EXPECT_TRUE(!rgn.CreatePolygonRgn(tri, 3, 7) && rgn.CreatePolygonRgn(tri, 3, ALTERNATE) && !rgn.CreatePolygonRgn(square, 4, ALTERNATE));
  EXPECT_TRUE(rgn.PtInRegion(CPoint(1, 1)) && !rgn.PtInRegion(5, 5) && rgn.DeleteObject() && !rgn.PtInRegion(1, 1) && !rgn.DeleteObject());
  EXPECT_TRUE(rgn.CreatePolygonRgn(square, 4, ALTERNATE) && rgn.PtInRegion(5, 5) && line.CreatePolygonRgn(tri, 2, ALTERNATE) && !line.PtInRegion(1, 0));
}
