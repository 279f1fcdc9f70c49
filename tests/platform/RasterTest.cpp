// The raster device: the pixels fills and strokes light, mix modes, hatches,
// styled and wide pens, fills against an independent rule, and DIB painting.
#include <gtest/gtest.h>
#include <climits>
#include <random>
#include <string>

#include "RasterDC.h"
#include "common/TestImages.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255), kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), A = RGB(10, 0, 0), D = RGB(40, 0, 0);

// Rows y0..y1-1 of columns x0..x1-1, '|' between rows: '#' black, '.' white, 'r' red, 'b' blue,
// A..F the DIB colours RGB(10..60, 0, 0), '?' else.
std::string Pic(const CDC& dc, int x0, int y0, int x1, int y1) {
  std::string s;
  for (int y = y0; y < y1; y++)
    for (int x = x0; x < x1; x++) {
      COLORREF c = dc.GetPixel(x, y);
      char k = c == 0 ? '#' : c == kWhite ? '.' : c == kRed ? 'r' : c == kBlue ? 'b' : c % 10 == 0 && c <= 60 ? char('A' + c / 10 - 1) : '?';
      s += std::string(y > y0 && x == x0 ? "|" : "") + k;
    }
  return s;
}

// A path through the points, filled or stroked: M move, L line, B Bezier, lower case closes there.
void Draw(CDC& dc, std::vector<POINT> pts, const char* types, bool fill) {
  std::vector<BYTE> t;
  for (const char* c = types; *c; c++)
    t.push_back(BYTE((*c | 32) == 'm' ? PT_MOVETO : (*c | 32) == 'l' ? PT_LINETO : PT_BEZIERTO) | (*c >= 'a' ? PT_CLOSEFIGURE : 0));
  dc.BeginPath();
  dc.PolyDraw(pts.data(), t.data(), static_cast<int>(pts.size()));
  dc.EndPath();
  fill ? dc.FillPath() : dc.StrokePath();
}
void Paint(CRasterDC& dc, COLORREF c) { for (int i = 0; i < dc.GetWidth() * dc.GetHeight(); i++) dc.SetPixel(i % dc.GetWidth(), i / dc.GetWidth(), c); }

// The sampling rule for integer polygons, stated independently: edges crossing row y at or left of x count.
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

// Storage rows {A, B, C} then {D, E, F}: bottom-up, or top-down when the height is negated.
std::vector<BYTE> TwoRows(bool topDown) {
  std::vector<BYTE> dib = testimg::MakePackedDib(3, 2, 24, {}, 0, [](int x, int row) { return (row ? D : A) + 10 * x; });
  if (topDown) reinterpret_cast<BITMAPINFOHEADER*>(dib.data())->biHeight = -2;
  return dib;
}
const BITMAPINFO* Info(const std::vector<BYTE>& dib) { return reinterpret_cast<const BITMAPINFO*>(dib.data()); }
const BYTE* Bits(const std::vector<BYTE>& dib) { return dib.data() + 40 + 4 * Info(dib)->bmiHeader.biClrUsed; }

}  // namespace

TEST(RasterFill, SurfaceHolesCurvesMixModesAndHatches) {
  CRasterDC dc(5, 3), empty(-3, 4), ring(12, 12), arch(40, 12);
  EXPECT_TRUE(empty.GetWidth() == 0 && dc.GetStride() == 16 && dc.GetPixel(4, 2) == kWhite && dc.GetPixel(5, 0) == CLR_INVALID && dc.GetPixel(0, 3) == CLR_INVALID);
  EXPECT_TRUE(dc.SetPixel(4, 2, RGB(10, 20, 30)) == RGB(10, 20, 30) && dc.SetPixel(-1, 0, 0) == CLR_INVALID);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(dc.GetBits()) + 2 * 16 + 12, 3), "\x1e\x14\x0a");  // blue first
  Draw(empty, {{0, 0}, {2, 0}, {2, 2}}, "MLl", true);  // nothing to paint, nothing breaks
  CBrush black(RGB(0, 0, 0)), hollow;
  LOGBRUSH lb = {BS_NULL, 0, 0};
  ring.SelectObject(&black), Draw(ring, {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {3, 3}, {7, 3}, {7, 7}, {3, 7}}, "MLLlMLLl", true);
  EXPECT_EQ(Pic(ring, 0, 2, 11, 11), "##########.|###....###.|###....###.|###....###.|###....###.|##########.|##########.|##########.|...........");
  ASSERT_TRUE(hollow.CreateBrushIndirect(&lb));
  ring.SelectObject(&hollow), Draw(ring, {{0, 0}, {12, 0}, {12, 12}}, "MLl", true);
  EXPECT_EQ(ring.GetPixel(5, 5), kWhite);
  // An arch (0,10) (0,0) (20,0) (20,10): top (10, 2.5), row 3 6.2..13.8; then a figure upright from (30, 2).
  arch.SelectObject(&black), Draw(arch, {{0, 10}, {0, 0}, {20, 0}, {20, 10}, {30, 2}, {30, 8}, {33, 11}, {36, 8}, {36, 2}}, "MBBbMLBBb", true);
  EXPECT_EQ(Pic(arch, 5, 2, 15, 4), "..........|..#######.");
  EXPECT_TRUE(arch.GetPixel(10, 9) == 0 && arch.GetPixel(10, 10) == kWhite && arch.GetPixel(29, 5) == kWhite && arch.GetPixel(30, 5) == 0);
  const COLORREF dst = RGB(0x5A, 0xC3, 0x0F), pen = RGB(0x33, 0x66, 0xF0);  // 0x0FC35A and 0xF06633
  const COLORREF want[17] = {0, 0x000000, 0x001884, 0x0F8148, 0x0F99CC, 0xF02421, 0xF03CA5, 0xFFA569, 0xFFBDED,
                             0x004212, 0x005A96, 0x0FC35A, 0x0FDBDE, 0xF06633, 0xF07EB7, 0xFFE77B, 0xFFFFFF};
  for (int mode = R2_BLACK; mode <= R2_WHITE; mode++) {
    CRasterDC mix(4, 4);
    CBrush brush(pen);
    Paint(mix, dst), mix.SelectObject(&brush), mix.SetROP2(mode);
    Draw(mix, {{0, 0}, {2, 0}, {2, 2}, {0, 2}}, "MLLl", true);
    EXPECT_TRUE(mix.GetPixel(0, 0) == want[mode] && mix.GetPixel(1, 1) == want[mode] && mix.GetPixel(2, 1) == dst) << mode;
  }
  // Hatch rows (bit 0x80 is column 0): horizontal row 3 0xff, vertical 0x08, diagonals 0x80 >> y and 0x01 << y,
  // cross both straight ones; gaps take the background colour when OPAQUE, else keep the picture.
  const char* want8[6] = {"........|........|........|bbbbbbbb", "....b...|....b...|....b...|....b...",
                          "b.......|.b......|..b.....|...b....", ".......b|......b.|.....b..|....b...",
                          "....b...|....b...|....b...|bbbbbbbb", "b......b|.b....b.|..b..b..|...bb..."};
  for (int hatch = HS_HORIZONTAL; hatch <= HS_DIAGCROSS; hatch++)
    for (int bk : {OPAQUE, TRANSPARENT}) {
      CRasterDC h(17, 9);
      CBrush brush(hatch, kBlue);
      Paint(h, kRed), h.SelectObject(&brush), h.SetBkMode(bk);
      Draw(h, {{0, 0}, {16, 0}, {16, 8}, {0, 8}}, "MLLl", true);
      std::string w = want8[hatch];
      for (char& c : w) c = c == '.' && bk == TRANSPARENT ? 'r' : c;
      EXPECT_EQ(Pic(h, 8, 0, 16, 4), w) << hatch;  // repeats every 8 pixels
      EXPECT_TRUE(h.GetPixel(16, 3) == kRed && h.GetPixel(3, 8) == kRed) << hatch;  // outside
    }
  // Under R2_NOTXORPEN lit pixels become colour ^ ~pen, gaps keep theirs.
  CRasterDC nx(8, 8);
  CBrush fill(RGB(228, 178, 128)), hatch(HS_DIAGCROSS, 0xC8C8C8);
  nx.SelectObject(&fill), Draw(nx, {{0, 0}, {8, 0}, {8, 8}, {0, 8}}, "MLLl", true);
  nx.SetROP2(R2_NOTXORPEN), nx.SelectObject(&hatch), Draw(nx, {{0, 0}, {8, 0}, {8, 8}, {0, 8}}, "MLLl", true);
  EXPECT_TRUE(nx.GetPixel(7, 7) == RGB(211, 133, 183) && nx.GetPixel(1, 0) == RGB(228, 178, 128));
}

// Random integer polygons, partly off the surface, through a path and with Polygon: the region's pixels.
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
    CRasterDC viaPath(40, 40), viaPolygon(40, 40);
    ASSERT_TRUE(rgn.CreatePolygonRgn(poly.data(), static_cast<int>(poly.size()), mode));
    for (CRasterDC* dc : {&viaPath, &viaPolygon}) dc->SelectObject(&black), dc->SelectObject(&none), dc->SetPolyFillMode(mode);
    Draw(viaPath, poly, std::string("M").append(poly.size() - 1, 'L').c_str(), true);
    viaPolygon.Polygon(poly.data(), static_cast<int>(poly.size()));
    for (int x = 0, y = 0; y < 40; y += x == 39, x = (x + 1) % 40) {
      bool inside = Inside(poly, x, y, mode);
      lit += inside;
      mismatches += ((rgn.PtInRegion(x, y) != 0) != inside) + ((viaPath.GetPixel(x, y) == 0) != inside) + ((viaPolygon.GetPixel(x, y) == 0) != inside);
    }
  }
  EXPECT_EQ(mismatches, 0);
  EXPECT_GT(lit, 1600 * 400 / 10);  // the polygons are not degenerate
}

TEST(RasterStroke, CosmeticStyledAndWidePens) {
  CRasterDC dc(12, 10), im(8, 8);
  Draw(dc, {{1, 2}, {8, 2}, {0, 3}, {4, 7}}, "MLML", false);  // the stock pen leaves out end points
  EXPECT_EQ(Pic(dc, 0, 1, 10, 3), "..........|.#######..");
  EXPECT_TRUE(dc.GetPixel(3, 6) == 0 && dc.GetPixel(4, 7) == kWhite);
  dc.SetROP2(R2_NOT), Draw(dc, {{2, 8}, {6, 8}, {6, 12}, {2, 12}}, "MLLl", false);  // each pixel once
  EXPECT_EQ(Pic(dc, 0, 8, 8, 10), "..#####.|..#...#.");
  CPen none(PS_NULL, 1, kRed);
  dc.SelectObject(&none), Draw(dc, {{0, 0}, {11, 0}}, "ML", false);
  EXPECT_EQ(dc.GetPixel(5, 0), kWhite);
  for (int bk : {TRANSPARENT, OPAQUE}) {  // dots alternate along the major axis, across figures
    CRasterDC d(12, 8);
    CPen dot(PS_DOT, 1, RGB(0, 0, 0));
    d.SelectObject(&dot), d.SetBkMode(bk), d.SetBkColor(kRed);
    Draw(d, {{0, 1}, {10, 1}, {0, 2}, {6, 8}}, "MLML", false);
    EXPECT_EQ(Pic(d, 0, 1, 12, 2), bk == OPAQUE ? "#r#r#r#r#r.." : "#.#.#.#.#...");
    EXPECT_TRUE(d.GetPixel(1, 3) == (bk == OPAQUE ? kRed : kWhite) && d.GetPixel(4, 6) == 0 && d.GetPixel(5, 7) != 0);
  }
  // Long lines only visit the steps over the surface.
  Draw(im, {{-2000000000, 3}, {2000000000, 3}, {2000000000, 2000000000}, {-2000000000, -2000000000}}, "MLML", false);
  EXPECT_EQ(Pic(im, 0, 3, 8, 7), "########|....#...|.....#..|......#.");
  // {2, 2} geometric: two on, two off from the start of each figure.
  CRasterDC g(16, 16);
  LOGBRUSH lb = {BS_SOLID, RGB(0, 0, 0), 0};
  DWORD dashes[] = {2, 2};
  CPen pen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &lb, 2, dashes);
  g.SelectObject(&pen), g.SetBkMode(TRANSPARENT);
  Draw(g, {{0, 2}, {12, 2}, {14, 15}, {14, 4}}, "MLML", false);
  EXPECT_EQ(Pic(g, 0, 1, 14, 4), "..............|##..##..##....|..............");
  EXPECT_EQ(Pic(g, 13, 4, 16, 16), "...|.#.|.#.|...|...|.#.|.#.|...|...|.#.|.#.|...");  // runs up from 15
  g.SetBkMode(OPAQUE), g.SetBkColor(kRed), Draw(g, {{0, 6}, {12, 6}}, "ML", false);  // the gaps take the background
  EXPECT_EQ(Pic(g, 0, 6, 14, 7), "##rr##rr##rr..");
  // Two pixels wide: rows y - 1 and y of a level line, columns x - 1 and x of an upright one, either way.
  const struct { POINT a, b; } lines[] = {{{5, 95}, {5, 5}}, {{5, 5}, {5, 95}}, {{95, 60}, {5, 60}}, {{5, 60}, {95, 60}}};
  for (const auto& l : lines) {
    CRasterDC w(100, 100);
    CPen wide(PS_SOLID, 2, RGB(0, 0, 0));
    w.SelectObject(&wide), Draw(w, {l.a, l.b}, "ML", false);
    bool up = l.a.x == l.b.x;
    std::string want = up ? "" : std::string(80, '.') + "|" + std::string(80, '#') + "|" + std::string(80, '#') + "|" + std::string(80, '.');
    for (int t = 0; up && t < 80; t++) want += t ? "|.##." : ".##.";
    EXPECT_EQ(up ? Pic(w, 3, 10, 7, 90) : Pic(w, 10, 58, 90, 62), want) << l.a.x << "," << l.a.y;
  }
}

TEST(DibPainting, UnscaledFromTheBottomStretchedFromTheTopUnlessTopDown) {
  const struct { bool topDown; int xSrc, ySrc, startScan, lines; const char* want; } cases[] = {
      {false, 0, 0, 0, 2, "......|.DEF..|.ABC..|......"}, {true, 0, 0, 0, 2, "......|.ABC..|.DEF..|......"},
      {false, 1, 1, 0, 2, "......|.EF...|......|......"}, {true, 1, 1, 0, 2, "......|.EF...|......|......"},
      {false, 0, 0, 1, 1, "......|.DEF..|......|......"},  // only scan line 1 in memory: the top row
      {true, 0, 0, 1, 1, "......|......|.DEF..|......"}};
  for (const auto& c : cases) {
    std::vector<BYTE> dib = TwoRows(c.topDown);
    CRasterDC dc(6, 4);
    EXPECT_EQ(SetDIBitsToDevice(&dc, 1, 1, 3 - c.xSrc, 2 - c.ySrc, c.xSrc, c.ySrc, c.startScan, c.lines, Bits(dib) + 12 * c.startScan,
                                Info(dib), DIB_RGB_COLORS), c.lines);
    EXPECT_EQ(Pic(dc, 0, 0, 6, 4), c.want) << c.topDown << c.xSrc << c.startScan;
  }
  for (int bits : {1, 4, 8}) {  // palette DIBs
    const int idx[9] = {1, 0, 0, 1, 1, 0, 1, 0, 1};
    std::vector<BYTE> dib = testimg::MakePackedDib(9, 1, bits, {kRed, kBlue}, 2, [&](int x, int) { return DWORD(idx[x]); });
    CRasterDC dc(9, 1);
    ASSERT_EQ(SetDIBitsToDevice(&dc, 0, 0, 9, 1, 0, 0, 0, 1, Bits(dib), Info(dib), DIB_RGB_COLORS), 1) << bits;
    EXPECT_EQ(Pic(dc, 0, 0, 9, 1), "brrbbrbrb") << bits;
  }
  for (bool topDown : {false, true}) {
    std::vector<BYTE> dib = TwoRows(topDown);
    CRasterDC dc(7, 6), dot(4, 4), wide(2, 1);
    EXPECT_EQ(StretchDIBits(&dc, 0, 1, 6, 4, 0, 0, 3, 2, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY), 2);
    EXPECT_EQ(Pic(dc, 0, 0, 7, 6), topDown ? ".......|AABBCC.|AABBCC.|DDEEFF.|DDEEFF.|......." : ".......|DDEEFF.|DDEEFF.|AABBCC.|AABBCC.|.......");
    StretchDIBits(&dot, 0, 0, 2, 2, 1, 0, 1, 1, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);   // source (1, 0) from the top
    StretchDIBits(&dot, -3, 2, 6, 2, 0, 1, 3, 1, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);  // half off the surface
    EXPECT_EQ(Pic(dot, 0, 0, 4, 4), topDown ? "BB..|BB..|EFF.|EFF." : "EE..|EE..|BCC.|BCC.");
    StretchDIBits(&wide, -1073741824, 0, INT_MAX, 1, 0, 0, 3, 1, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);  // far beyond
    EXPECT_EQ(Pic(wide, 0, 0, 2, 1), topDown ? "BB" : "EE");
  }
  // What cannot be read paints nothing.
  std::vector<BYTE> dib = TwoRows(false);
  CRasterDC dc(4, 4);
  EXPECT_EQ(SetDIBitsToDevice(nullptr, 0, 0, 3, 2, 0, 0, 0, 2, Bits(dib), Info(dib), DIB_RGB_COLORS) +
                SetDIBitsToDevice(&dc, 0, 0, 3, 2, 0, 0, 0, 2, nullptr, Info(dib), DIB_RGB_COLORS) +
                StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 2, Bits(dib), Info(dib), DIB_RGB_COLORS, 0x00EE0086u) +
                StretchDIBits(&dc, 0, 0, 0, 2, 0, 0, 3, 2, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY) +
                StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 0, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY), 0);
  const struct { WORD bits; DWORD compression; LONG width, height; } bad[] = {
      {12, BI_RGB, 3, 2}, {24, 1, 3, 2}, {24, BI_RGB, 3, 0}, {24, BI_RGB, 0, 2}, {24, BI_RGB, 3, LONG(0x80000000u)}};
  for (const auto& b : bad) {
    BITMAPINFOHEADER h = Info(dib)->bmiHeader;
    h.biBitCount = b.bits, h.biCompression = b.compression, h.biWidth = b.width, h.biHeight = b.height;
    EXPECT_EQ(StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 2, Bits(dib), reinterpret_cast<BITMAPINFO*>(&h), DIB_RGB_COLORS, SRCCOPY), 0);
  }
  EXPECT_EQ(Pic(dc, 0, 0, 4, 4), "....|....|....|....");
  EXPECT_EQ(CDC().SetDIBitsToDevice(0, 0, 3, 2, 0, 0, 0, 2, Bits(dib), Info(dib), DIB_RGB_COLORS), 2);  // no surface: accepted
}
