// Fills on the raster device: the pixels they light, the mix modes and the
// hatch patterns.
#include <gtest/gtest.h>

#include <random>

#include "RasterDC.h"
#include "common/PixelChecks.h"

using testimg::ExpectPixels;

namespace {

const BYTE kLine[] = {PT_MOVETO, PT_LINETO, PT_LINETO, PT_LINETO, PT_LINETO,
                      PT_LINETO, PT_LINETO, PT_LINETO, PT_LINETO, PT_LINETO};

// Fills one closed figure through a path, as the engine's previews do.
void FillFigure(CDC& dc, const POINT* pts, int n) {
  std::vector<BYTE> types(kLine, kLine + n);
  dc.BeginPath();
  dc.PolyDraw(pts, types.data(), n);
  dc.EndPath();
  dc.FillPath();
}

void FillRect(CDC& dc, int l, int t, int r, int b) {
  POINT pts[] = {{l, t}, {r, t}, {r, b}, {l, b}};
  FillFigure(dc, pts, 4);
}

void Paint(CRasterDC& dc, COLORREF c) {
  for (int y = 0; y < dc.GetHeight(); y++)
    for (int x = 0; x < dc.GetWidth(); x++) dc.SetPixel(x, y, c);
}

// Independent statement of the sampling rule for integer polygons.
bool Inside(const std::vector<POINT>& poly, int x, int y, int mode) {
  int count = 0;
  for (std::size_t i = 0; i < poly.size(); i++) {
    POINT a = poly[i], b = poly[(i + 1) % poly.size()];
    int dir = 1;
    if (a.y > b.y) {
      std::swap(a, b);
      dir = -1;
    }
    if (!(a.y <= y && y < b.y)) continue;
    // xe <= x  <=>  a.x (b.y - a.y) + (y - a.y)(b.x - a.x) <= x (b.y - a.y)
    long long lhs = 1LL * a.x * (b.y - a.y) + 1LL * (y - a.y) * (b.x - a.x);
    if (lhs <= 1LL * x * (b.y - a.y)) count += mode == WINDING ? dir : 1;
  }
  return mode == WINDING ? count != 0 : (count & 1) != 0;
}

}  // namespace

TEST(RasterFill, NewSurfaceIsWhiteBgr) {
  CRasterDC dc(5, 3);
  EXPECT_EQ(dc.GetStride(), 16);
  EXPECT_EQ(dc.GetPixel(4, 2), RGB(255, 255, 255));
  EXPECT_EQ(dc.SetPixel(1, 2, RGB(10, 20, 30)), RGB(10, 20, 30));
  const BYTE* p = dc.GetBits() + 2 * 16 + 3;
  EXPECT_EQ(p[0], 30);  // blue first
  EXPECT_EQ(p[1], 20);
  EXPECT_EQ(p[2], 10);
  EXPECT_EQ(dc.GetPixel(5, 0), CLR_INVALID);
  EXPECT_EQ(dc.SetPixel(-1, 0, 0), CLR_INVALID);
  CRasterDC empty(-3, 4);
  EXPECT_EQ(empty.GetWidth(), 0);
  FillRect(empty, 0, 0, 2, 2);  // nothing to paint, nothing breaks
}

TEST(RasterFill, HoleStaysUnpaintedUnderAlternate) {
  CRasterDC dc(12, 12);
  CBrush black(RGB(0, 0, 0));
  dc.SelectObject(&black);
  POINT pts[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {3, 3}, {7, 3}, {7, 7}, {3, 7}};
  BYTE types[] = {PT_MOVETO, PT_LINETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE,
                  PT_MOVETO, PT_LINETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE};
  dc.SetPolyFillMode(ALTERNATE);
  dc.BeginPath();
  dc.PolyDraw(pts, types, 8);
  dc.EndPath();
  dc.FillPath();
  ExpectPixels(dc, {{0, 0, 0u}, {2, 5, 0u}, {3, 3, RGB(255, 255, 255)},  // the hole's top-left
                    {6, 6, RGB(255, 255, 255)},
                    {7, 7, 0u},  // the hole's right/bottom edge is the ring's
                    {9, 9, 0u}, {10, 9, RGB(255, 255, 255)}, {9, 10, RGB(255, 255, 255)}});
}

TEST(RasterFill, EveryMixModeFollowsItsFormula) {
  const COLORREF dst = RGB(0x5A, 0xC3, 0x0F);  // 0x0FC35A
  const COLORREF pen = RGB(0x33, 0x66, 0xF0);  // 0xF06633
  const struct {
    int mode;
    COLORREF expected;
  } cases[] = {
      {R2_BLACK, 0x000000},       {R2_NOTMERGEPEN, 0x001884}, {R2_MASKNOTPEN, 0x0F8148},
      {R2_NOTCOPYPEN, 0x0F99CC},  {R2_MASKPENNOT, 0xF02421},  {R2_NOT, 0xF03CA5},
      {R2_XORPEN, 0xFFA569},      {R2_NOTMASKPEN, 0xFFBDED},  {R2_MASKPEN, 0x004212},
      {R2_NOTXORPEN, 0x005A96},   {R2_NOP, 0x0FC35A},         {R2_MERGENOTPEN, 0x0FDBDE},
      {R2_COPYPEN, 0xF06633},     {R2_MERGEPENNOT, 0xF07EB7}, {R2_MERGEPEN, 0xFFE77B},
      {R2_WHITE, 0xFFFFFF},
  };
  for (const auto& c : cases) {
    CRasterDC dc(4, 4);
    Paint(dc, dst);
    CBrush brush(pen);
    dc.SelectObject(&brush);
    dc.SetROP2(c.mode);
    FillRect(dc, 0, 0, 2, 2);
    EXPECT_EQ(dc.GetPixel(1, 1), c.expected) << "mode " << c.mode;
    EXPECT_EQ(dc.GetPixel(2, 2), dst) << "mode " << c.mode;
  }
}

TEST(RasterFill, NotXorWithWhiteLeavesThePicture) {
  CRasterDC dc(16, 16);
  for (int y = 0; y < 16; y++)
    for (int x = 0; x < 16; x++) dc.SetPixel(x, y, RGB(x * 16, y * 16, (x * y) & 0xFF));
  std::vector<BYTE> before(dc.GetBits(), dc.GetBits() + dc.GetStride() * 16);
  dc.SetROP2(R2_NOTXORPEN);
  CBrush white(RGB(255, 255, 255));
  CBrush whiteHatch(HS_CROSS, RGB(255, 255, 255));
  dc.SelectObject(&white);
  FillRect(dc, 0, 0, 16, 16);
  dc.SelectObject(&whiteHatch);
  FillRect(dc, 0, 0, 16, 16);
  EXPECT_EQ(std::vector<BYTE>(dc.GetBits(), dc.GetBits() + dc.GetStride() * 16), before);
}

TEST(RasterFill, DiagonalCrossHatch) {
  // Rows of HS_DIAGCROSS: 0x81 0x42 0x24 0x18 0x18 0x24 0x42 0x81.
  const COLORREF red = RGB(255, 0, 0), blue = RGB(0, 0, 255), white = RGB(255, 255, 255);
  for (int bkMode : {OPAQUE, TRANSPARENT}) {
    CRasterDC dc(16, 9);
    Paint(dc, red);
    CBrush hatch(HS_DIAGCROSS, blue);
    dc.SelectObject(&hatch);
    dc.SetBkMode(bkMode);
    FillRect(dc, 0, 0, 16, 8);
    COLORREF gap = bkMode == OPAQUE ? white : red;
    ExpectPixels(dc, {{0, 0, blue}, {7, 0, blue}, {1, 0, gap},
                      {8, 0, blue},  // the pattern repeats every 8 pixels
                      {15, 7, blue}, {1, 1, blue}, {6, 1, blue}, {3, 3, blue}, {4, 4, blue},
                      {5, 4, gap}, {2, 5, blue}, {3, 5, gap}, {0, 8, red}});  // outside the fill
  }
}

TEST(RasterFill, LightenedRegionCrossedWithNotXorHatch) {
  // A flagged region: solid fill, then a 0xC8C8C8 hatch under R2_NOTXORPEN,
  // whose hatch pixels become colour ^ 0x373737 and the rest stay.
  CRasterDC dc(8, 8);
  CBrush fill(RGB(228, 178, 128));
  CBrush hatch(HS_DIAGCROSS, 0xC8C8C8);
  dc.SelectObject(&fill);
  FillRect(dc, 0, 0, 8, 8);
  dc.SetROP2(R2_NOTXORPEN);
  dc.SelectObject(&hatch);
  FillRect(dc, 0, 0, 8, 8);
  ExpectPixels(dc, {{0, 0, RGB(211, 133, 183)}, {1, 0, RGB(228, 178, 128)}});
}

TEST(RasterFill, BezierArch) {
  // Arch from (0,10) over (0,0) and (20,0) to (20,10): its top is (10, 2.5);
  // on row 3 it spans x from about 6.2 to 13.8.
  CRasterDC dc(24, 12);
  CBrush black(RGB(0, 0, 0));
  dc.SelectObject(&black);
  POINT pts[] = {{0, 10}, {0, 0}, {20, 0}, {20, 10}};
  BYTE types[] = {PT_MOVETO, PT_BEZIERTO, PT_BEZIERTO, PT_BEZIERTO | PT_CLOSEFIGURE};
  dc.BeginPath();
  dc.PolyDraw(pts, types, 4);
  dc.EndPath();
  dc.FillPath();
  const COLORREF white = RGB(255, 255, 255);
  ExpectPixels(dc, {{10, 2, white}, {10, 3, 0u}, {6, 3, white}, {7, 3, 0u}, {13, 3, 0u},
                    {14, 3, white}, {10, 9, 0u},
                    {10, 10, white}});  // the closing line is the bottom edge
}

TEST(RasterFill, NullBrushPaintsNothing) {
  CRasterDC dc(6, 6);
  CBrush hollow;
  LOGBRUSH lb = {BS_NULL, 0, 0};
  ASSERT_TRUE(hollow.CreateBrushIndirect(&lb));
  dc.SelectObject(&hollow);
  FillRect(dc, 0, 0, 6, 6);
  EXPECT_EQ(dc.GetPixel(2, 2), RGB(255, 255, 255));
}

// Random integer polygons, partly off the surface, filled both through a
// path and with Polygon: the lit pixels are exactly those of the region and
// of the rule stated independently above.
TEST(RasterFill, FillMatchesRegionOnRandomPolygons) {
  std::mt19937 rng(12345);
  std::uniform_int_distribution<int> coord(-6, 45);
  std::uniform_int_distribution<int> count(3, 10);
  CPen none(PS_NULL, 1, RGB(0, 0, 0));
  CBrush black(RGB(0, 0, 0));
  int mismatches = 0, lit = 0;
  for (int iter = 0; iter < 400; iter++) {
    int mode = iter % 2 ? WINDING : ALTERNATE;
    std::vector<POINT> poly(count(rng));
    for (POINT& p : poly) p = {coord(rng), coord(rng)};
    CRgn rgn;
    ASSERT_TRUE(rgn.CreatePolygonRgn(poly.data(), static_cast<int>(poly.size()), mode));
    CRasterDC viaPath(40, 40), viaPolygon(40, 40);
    for (CRasterDC* dc : {&viaPath, &viaPolygon}) {
      dc->SelectObject(&black);
      dc->SelectObject(&none);
      dc->SetPolyFillMode(mode);
    }
    FillFigure(viaPath, poly.data(), static_cast<int>(poly.size()));
    viaPolygon.Polygon(poly.data(), static_cast<int>(poly.size()));
    for (int y = 0; y < 40; y++)
      for (int x = 0; x < 40; x++) {
        bool inside = Inside(poly, x, y, mode);
        lit += inside;
        mismatches += (rgn.PtInRegion(x, y) != 0) != inside;
        mismatches += (viaPath.GetPixel(x, y) == 0) != inside;
        mismatches += (viaPolygon.GetPixel(x, y) == 0) != inside;
      }
  }
  EXPECT_EQ(mismatches, 0);
  EXPECT_GT(lit, 40 * 40 * 400 / 10);  // the polygons are not degenerate
}
