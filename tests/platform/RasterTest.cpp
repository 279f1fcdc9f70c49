// The raster device: the pixels fills and strokes light, mix modes, hatches,
// styled and wide pens, and fills checked against an independent rule.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "RasterDC.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255), kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);

// Rows y0..y1-1 of columns x0..x1-1, '|' between rows: '#' black, '.' white,
// 'r' red, 'b' blue, '?' anything else.
std::string Pic(const CRasterDC& dc, int x0, int y0, int x1, int y1) {
  std::string s;
  for (int y = y0; y < y1; y++)
    for (int x = x0; x < x1; x++) {
      COLORREF c = dc.GetPixel(x, y);
      s += std::string(y > y0 && x == x0 ? "|" : "") + (c == 0 ? '#' : c == kWhite ? '.' : c == kRed ? 'r' : c == kBlue ? 'b' : '?');
    }
  return s;
}

// One figure through the points as a path, filled or stroked.
void Path(CDC& dc, std::vector<POINT> pts, bool fill, bool close = true) {
  std::vector<BYTE> types(pts.size(), PT_LINETO);
  types[0] = PT_MOVETO;
  if (close) types.back() |= PT_CLOSEFIGURE;
  dc.BeginPath();
  dc.PolyDraw(pts.data(), types.data(), static_cast<int>(pts.size()));
  dc.EndPath();
  fill ? dc.FillPath() : dc.StrokePath();
}

void Paint(CRasterDC& dc, COLORREF c) {
  for (int i = 0; i < dc.GetWidth() * dc.GetHeight(); i++) dc.SetPixel(i % dc.GetWidth(), i / dc.GetWidth(), c);
}

// The sampling rule for integer polygons, stated independently: pixel (x, y)
// is inside when edges crossing row y at or left of x say so.
bool Inside(const std::vector<POINT>& poly, int x, int y, int mode) {
  int count = 0;
  for (std::size_t i = 0; i < poly.size(); i++) {
    POINT a = poly[i], b = poly[(i + 1) % poly.size()];
    int dir = a.y > b.y ? (std::swap(a, b), -1) : 1;
    if (a.y <= y && y < b.y && 1LL * a.x * (b.y - a.y) + 1LL * (y - a.y) * (b.x - a.x) <= 1LL * x * (b.y - a.y))
      count += mode == WINDING ? dir : 1;
  }
  return mode == WINDING ? count != 0 : (count & 1) != 0;
}

}  // namespace

TEST(RasterFill, SurfaceHolesAndCurves) {
  CRasterDC dc(5, 3), empty(-3, 4);
  EXPECT_TRUE(dc.GetStride() == 16 && dc.GetPixel(4, 2) == kWhite && dc.GetPixel(5, 0) == CLR_INVALID && dc.GetPixel(0, 3) == CLR_INVALID);
  EXPECT_TRUE(dc.SetPixel(4, 2, RGB(10, 20, 30)) == RGB(10, 20, 30) && dc.SetPixel(-1, 0, 0) == CLR_INVALID);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(dc.GetBits()) + 2 * 16 + 12, 3), "\x1e\x14\x0a");  // blue first
  EXPECT_EQ(empty.GetWidth(), 0);
  Path(empty, {{0, 0}, {2, 0}, {2, 2}}, true);  // nothing to paint, nothing breaks
  CRasterDC ring(12, 12);
  CBrush black(RGB(0, 0, 0)), hollow;
  LOGBRUSH lb = {BS_NULL, 0, 0};
  ring.SelectObject(&black);
  POINT pts[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {3, 3}, {7, 3}, {7, 7}, {3, 7}};
  BYTE types[] = {PT_MOVETO, PT_LINETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE, PT_MOVETO, PT_LINETO, PT_LINETO, PT_LINETO | PT_CLOSEFIGURE};
  ring.BeginPath();
  ring.PolyDraw(pts, types, 8);
  ring.EndPath();
  ring.FillPath();
  EXPECT_EQ(Pic(ring, 0, 2, 11, 11), "##########.|###....###.|###....###.|###....###.|###....###.|##########.|##########.|##########.|...........");
  ASSERT_TRUE(hollow.CreateBrushIndirect(&lb));
  ring.SelectObject(&hollow);
  Path(ring, {{0, 0}, {12, 0}, {12, 12}}, true);
  EXPECT_EQ(ring.GetPixel(5, 5), kWhite);
  // Arch (0,10) (0,0) (20,0) (20,10): top at (10, 2.5), row 3 from 6.2 to 13.8.
  CRasterDC arch(24, 12);
  POINT bez[] = {{0, 10}, {0, 0}, {20, 0}, {20, 10}};
  BYTE bt[] = {PT_MOVETO, PT_BEZIERTO, PT_BEZIERTO, PT_BEZIERTO | PT_CLOSEFIGURE};
  arch.SelectObject(&black);
  arch.BeginPath();
  arch.PolyDraw(bez, bt, 4);
  arch.EndPath();
  arch.FillPath();
  EXPECT_EQ(Pic(arch, 5, 2, 15, 4), "..........|..#######.");
  EXPECT_TRUE(arch.GetPixel(10, 9) == 0 && arch.GetPixel(10, 10) == kWhite);
}

TEST(RasterFill, MixModesAndHatches) {
  const COLORREF dst = RGB(0x5A, 0xC3, 0x0F), pen = RGB(0x33, 0x66, 0xF0);  // 0x0FC35A and 0xF06633
  const COLORREF want[17] = {0, 0x000000, 0x001884, 0x0F8148, 0x0F99CC, 0xF02421, 0xF03CA5, 0xFFA569, 0xFFBDED,
                             0x004212, 0x005A96, 0x0FC35A, 0x0FDBDE, 0xF06633, 0xF07EB7, 0xFFE77B, 0xFFFFFF};
  for (int mode = R2_BLACK; mode <= R2_WHITE; mode++) {
    CRasterDC dc(4, 4);
    Paint(dc, dst);
    CBrush brush(pen);
    dc.SelectObject(&brush);
    dc.SetROP2(mode);
    Path(dc, {{0, 0}, {2, 0}, {2, 2}, {0, 2}}, true);
    EXPECT_TRUE(dc.GetPixel(0, 0) == want[mode] && dc.GetPixel(1, 1) == want[mode] && dc.GetPixel(2, 1) == dst) << mode;
  }
  // Hatch rows (bit 0x80 is column 0): horizontal row 3 0xff, vertical 0x08,
  // diagonals 0x80 >> y and 0x01 << y, cross both straight ones; the gaps
  // take the background colour when OPAQUE and keep the picture otherwise.
  const char* want8[6] = {"........|........|........|bbbbbbbb", "....b...|....b...|....b...|....b...",
                          "b.......|.b......|..b.....|...b....", ".......b|......b.|.....b..|....b...",
                          "....b...|....b...|....b...|bbbbbbbb", "b......b|.b....b.|..b..b..|...bb..."};
  for (int hatch = HS_HORIZONTAL; hatch <= HS_DIAGCROSS; hatch++)
    for (int bk : {OPAQUE, TRANSPARENT}) {
      CRasterDC dc(17, 9);
      Paint(dc, kRed);
      CBrush brush(hatch, kBlue);
      dc.SelectObject(&brush);
      dc.SetBkMode(bk);
      Path(dc, {{0, 0}, {16, 0}, {16, 8}, {0, 8}}, true);
      std::string w = want8[hatch];
      for (char& c : w) c = c == '.' ? (bk == OPAQUE ? '.' : 'r') : c;
      EXPECT_EQ(Pic(dc, 8, 0, 16, 4), w) << hatch;  // repeats every 8 pixels
      EXPECT_TRUE(dc.GetPixel(16, 3) == kRed && dc.GetPixel(3, 8) == kRed) << hatch;  // outside
    }
  // A hatch under R2_NOTXORPEN: lit pixels become colour ^ ~pen, gaps keep theirs.
  CRasterDC dc(8, 8);
  CBrush fill(RGB(228, 178, 128)), hatch(HS_DIAGCROSS, 0xC8C8C8);
  dc.SelectObject(&fill);
  Path(dc, {{0, 0}, {8, 0}, {8, 8}, {0, 8}}, true);
  dc.SetROP2(R2_NOTXORPEN);
  dc.SelectObject(&hatch);
  Path(dc, {{0, 0}, {8, 0}, {8, 8}, {0, 8}}, true);
  EXPECT_TRUE(dc.GetPixel(7, 7) == RGB(211, 133, 183) && dc.GetPixel(1, 0) == RGB(228, 178, 128));
}

// Random integer polygons, partly off the surface, filled through a path and
// with Polygon: exactly the pixels of the region and of the rule above.
TEST(RasterFill, FillMatchesRegionOnRandomPolygons) {
  std::mt19937 rng(12345);
  std::uniform_int_distribution<int> coord(-6, 45), count(3, 10);
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
    for (CRasterDC* dc : {&viaPath, &viaPolygon}) dc->SelectObject(&black), dc->SelectObject(&none), dc->SetPolyFillMode(mode);
    Path(viaPath, poly, true, false);
    viaPolygon.Polygon(poly.data(), static_cast<int>(poly.size()));
    for (int i = 0; i < 1600; i++) {
      bool inside = Inside(poly, i % 40, i / 40, mode);
      lit += inside;
      mismatches += ((rgn.PtInRegion(i % 40, i / 40) != 0) != inside) + ((viaPath.GetPixel(i % 40, i / 40) == 0) != inside) +
                    ((viaPolygon.GetPixel(i % 40, i / 40) == 0) != inside);
    }
  }
  EXPECT_EQ(mismatches, 0);
  EXPECT_GT(lit, 1600 * 400 / 10);  // the polygons are not degenerate
}

TEST(RasterStroke, CosmeticPensStepPixelByPixel) {
  CRasterDC dc(12, 10);
  Path(dc, {{1, 2}, {8, 2}}, false, false);  // the stock pen leaves out the end point
  Path(dc, {{0, 3}, {4, 7}}, false, false);
  EXPECT_EQ(Pic(dc, 0, 1, 10, 3), "..........|.#######..");
  EXPECT_TRUE(dc.GetPixel(3, 6) == 0 && dc.GetPixel(4, 7) == kWhite);
  dc.SetROP2(R2_NOT);  // a closed figure touches each pixel once
  Path(dc, {{2, 8}, {6, 8}, {6, 12}, {2, 12}}, false);
  EXPECT_EQ(Pic(dc, 0, 8, 8, 10), "..#####.|..#...#.");
  CPen none(PS_NULL, 1, kRed);
  dc.SelectObject(&none);
  Path(dc, {{0, 0}, {11, 0}}, false, false);
  EXPECT_EQ(dc.GetPixel(5, 0), kWhite);
  for (int bk : {TRANSPARENT, OPAQUE}) {  // dots alternate along the major axis
    CRasterDC d(12, 8);
    CPen dot(PS_DOT, 1, RGB(0, 0, 0));
    d.SelectObject(&dot);
    d.SetBkMode(bk);
    d.SetBkColor(kRed);
    Path(d, {{0, 1}, {10, 1}}, false, false);
    Path(d, {{0, 2}, {6, 8}}, false, false);
    EXPECT_EQ(Pic(d, 0, 1, 12, 2), bk == OPAQUE ? "#r#r#r#r#r.." : "#.#.#.#.#...");
    EXPECT_TRUE(d.GetPixel(1, 3) == (bk == OPAQUE ? kRed : kWhite) && d.GetPixel(4, 6) == 0 && d.GetPixel(5, 7) != 0);
  }
  // Immediate lines; long ones only visit the steps over the surface.
  CRasterDC im(8, 8);
  im.MoveTo(1, 5);
  POINT far[] = {{-2000000000, 3}, {2000000000, 3}}, diag[] = {{2000000000, 2000000000}, {-2000000000, -2000000000}};
  EXPECT_TRUE(im.LineTo(5, 5) && im.Polyline(far, 2) && im.Polyline(diag, 2));
  EXPECT_EQ(Pic(im, 0, 3, 8, 7), "########|....#...|.#####..|......#.");
}

TEST(RasterStroke, StyledAndWidePens) {
  // {2, 2} geometric: two on, two off from the start of each figure.
  CRasterDC dc(16, 16);
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0};
  DWORD dashes[] = {2, 2};
  CPen pen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &lb, 2, dashes);
  dc.SelectObject(&pen);
  dc.SetBkMode(TRANSPARENT);
  Path(dc, {{0, 2}, {12, 2}}, false, false);
  Path(dc, {{14, 15}, {14, 4}}, false, false);
  EXPECT_EQ(Pic(dc, 0, 1, 14, 4), "..............|##..##..##....|..............");
  EXPECT_EQ(Pic(dc, 13, 4, 16, 16), "...|.#.|.#.|...|...|.#.|.#.|...|...|.#.|.#.|...");  // runs up from 15
  dc.SetBkMode(OPAQUE);  // the gaps take the background colour
  dc.SetBkColor(kRed);
  Path(dc, {{0, 6}, {12, 6}}, false, false);
  EXPECT_EQ(Pic(dc, 0, 6, 14, 7), "##rr##rr##rr..");
  // Two pixels wide: rows y - 1 and y of a level line, columns x - 1 and x of
  // an upright one, whichever way it runs and however far from the origin.
  const struct { POINT a, b; } lines[] = {{{5, 95}, {5, 5}}, {{5, 5}, {5, 95}}, {{95, 60}, {5, 60}}, {{5, 60}, {95, 60}}};
  for (const auto& l : lines) {
    CRasterDC w(100, 100);
    CPen wide(PS_SOLID, 2, RGB(0, 0, 0));
    w.SelectObject(&wide);
    Path(w, {l.a, l.b}, false, false);
    int bad = 0;
    for (int t = 10; t < 90; t++)
      for (int k = -2; k <= 1; k++) {
        bool up = l.a.x == l.b.x, on = k == -1 || k == 0;
        bad += (w.GetPixel(up ? 5 + k : t, up ? t : 60 + k) == 0) != on;
      }
    EXPECT_EQ(bad, 0) << l.a.x << "," << l.a.y;
  }
}
