// DIB painting with GDI's source conventions, bottom-up and top-down.
#include <gtest/gtest.h>

#include <climits>

#include "RasterDC.h"
#include "common/TestImages.h"

namespace {

const COLORREF A = RGB(10, 0, 0), B = RGB(20, 0, 0), C = RGB(30, 0, 0), D = RGB(40, 0, 0), E = RGB(50, 0, 0),
               F = RGB(60, 0, 0), W = RGB(255, 255, 255);

// Storage rows {A, B, C} then {D, E, F}: the bottom row of a bottom-up DIB,
// the top row when the height is negated.
std::vector<BYTE> TwoRows(bool topDown, int bits = 24) {
  std::vector<BYTE> dib = testimg::MakePackedDib(3, 2, bits, {}, 0, [](int x, int row) { return row ? D + 10 * x : A + 10 * x; });
  if (topDown) reinterpret_cast<BITMAPINFOHEADER*>(dib.data())->biHeight = -2;
  return dib;
}

const BITMAPINFO* Info(const std::vector<BYTE>& dib) { return reinterpret_cast<const BITMAPINFO*>(dib.data()); }
const BYTE* Bits(const std::vector<BYTE>& dib) { return dib.data() + 40 + 4 * Info(dib)->bmiHeader.biClrUsed; }

// Pixels of rows y0..y1-1, columns x0..x1-1, '|' between rows: A..F by letter, '.' white.
std::string Pic(const CDC& dc, int x0, int y0, int x1, int y1) {
  std::string s;
  for (int y = y0; y < y1; y++)
    for (int x = x0; x < x1; x++) {
      COLORREF c = dc.GetPixel(x, y);
      s += std::string(y > y0 && x == x0 ? "|" : "") + (c == W ? '.' : c % 10 == 0 && c >= A && c <= F ? char('A' + c / 10 - 1) : '?');
    }
  return s;
}

}  // namespace

TEST(DibPainting, UnscaledCopiesCountTheSourceFromTheBottomUnlessTopDown) {
  const struct { bool topDown; int xSrc, ySrc, startScan, lines; const char* want; } cases[] = {
      {false, 0, 0, 0, 2, "......|.DEF..|.ABC..|......"}, {true, 0, 0, 0, 2, "......|.ABC..|.DEF..|......"},
      {false, 1, 1, 0, 2, "......|.EF...|......|......"}, {true, 1, 1, 0, 2, "......|.EF...|......|......"},
      {false, 0, 0, 1, 1, "......|.DEF..|......|......"},  // only scan line 1 in memory: the top row
      {true, 0, 0, 1, 1, "......|......|.DEF..|......"}};
  for (const auto& c : cases) {
    std::vector<BYTE> dib = TwoRows(c.topDown);
    CRasterDC dc(6, 4);
    const BYTE* bits = Bits(dib) + 12 * c.startScan;
    EXPECT_EQ(SetDIBitsToDevice(&dc, 1, 1, 3 - c.xSrc, 2 - c.ySrc, c.xSrc, c.ySrc, c.startScan, c.lines, bits, Info(dib), DIB_RGB_COLORS), c.lines);
    EXPECT_EQ(Pic(dc, 0, 0, 6, 4), c.want) << c.topDown << c.xSrc << c.startScan;
  }
}

TEST(DibPainting, StretchedCopiesCountTheSourceFromTheTopAndClip) {
  for (bool topDown : {false, true}) {
    std::vector<BYTE> dib = TwoRows(topDown);
    CRasterDC dc(7, 6), dot(4, 4), wide(2, 1);
    EXPECT_EQ(StretchDIBits(&dc, 0, 1, 6, 4, 0, 0, 3, 2, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY), 2);
    EXPECT_EQ(Pic(dc, 0, 0, 7, 6), topDown ? ".......|AABBCC.|AABBCC.|DDEEFF.|DDEEFF.|......." : ".......|DDEEFF.|DDEEFF.|AABBCC.|AABBCC.|.......");
    StretchDIBits(&dot, 0, 0, 2, 2, 1, 0, 1, 1, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);  // source (1, 0) from the top
    StretchDIBits(&dot, -3, 2, 6, 2, 0, 1, 3, 1, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);  // half off the surface
    EXPECT_EQ(Pic(dot, 0, 0, 4, 4), topDown ? "BB..|BB..|EFF.|EFF." : "EE..|EE..|BCC.|BCC.");
    // A destination reaching far beyond the surface: column 0 is the middle one.
    StretchDIBits(&wide, -1073741824, 0, INT_MAX, 1, 0, 0, 3, 1, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);
    EXPECT_EQ(Pic(wide, 0, 0, 2, 1), topDown ? "BB" : "EE");
  }
}

TEST(DibPainting, PaletteDibsAndWhatCannotBeRead) {
  const COLORREF R = RGB(255, 0, 0), Bl = RGB(0, 0, 255);
  for (int bits : {1, 4, 8}) {
    const int idx[9] = {1, 0, 0, 1, 1, 0, 1, 0, 1};
    std::vector<BYTE> dib = testimg::MakePackedDib(9, 1, bits, {R, Bl}, 2, [&](int x, int) { return DWORD(idx[x]); });
    CRasterDC dc(9, 1);
    ASSERT_EQ(SetDIBitsToDevice(&dc, 0, 0, 9, 1, 0, 0, 0, 1, Bits(dib), Info(dib), DIB_RGB_COLORS), 1) << bits;
    for (int x = 0; x < 9; x++) EXPECT_EQ(dc.GetPixel(x, 0), idx[x] ? Bl : R) << bits << " bits, x " << x;
  }
  std::vector<BYTE> dib = TwoRows(false);
  CRasterDC dc(4, 4);
  EXPECT_EQ(SetDIBitsToDevice(nullptr, 0, 0, 3, 2, 0, 0, 0, 2, Bits(dib), Info(dib), DIB_RGB_COLORS) +
                SetDIBitsToDevice(&dc, 0, 0, 3, 2, 0, 0, 0, 2, nullptr, Info(dib), DIB_RGB_COLORS) +
                StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 2, Bits(dib), Info(dib), DIB_RGB_COLORS, 0x00EE0086u) +
                StretchDIBits(&dc, 0, 0, 0, 2, 0, 0, 3, 2, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY) +
                StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 0, Bits(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY),
            0);
  const struct { WORD bits; DWORD compression; LONG width, height; } bad[] = {
      {12, BI_RGB, 3, 2}, {24, 1, 3, 2}, {24, BI_RGB, 3, 0}, {24, BI_RGB, 0, 2}, {24, BI_RGB, 3, LONG(0x80000000u)}};
  for (const auto& b : bad) {
    BITMAPINFOHEADER h = Info(dib)->bmiHeader;
    h.biBitCount = b.bits, h.biCompression = b.compression, h.biWidth = b.width, h.biHeight = b.height;
    EXPECT_EQ(StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 2, Bits(dib), reinterpret_cast<BITMAPINFO*>(&h), DIB_RGB_COLORS, SRCCOPY), 0);
  }
  EXPECT_EQ(Pic(dc, 0, 0, 4, 4), "....|....|....|....");  // nothing was painted
  CDC bare;  // no surface: accepted, nothing painted
  EXPECT_EQ(SetDIBitsToDevice(&bare, 0, 0, 3, 2, 0, 0, 0, 2, Bits(dib), Info(dib), DIB_RGB_COLORS), 2);
}
