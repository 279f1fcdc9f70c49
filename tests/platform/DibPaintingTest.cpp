// DIB painting: GDI's source conventions for unscaled and stretched copies.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "RasterDC.h"
#include "common/PixelChecks.h"
#include "common/TestImages.h"

using testimg::ExpectPixels;

namespace {

// A packed bottom-up DIB: colours[row][x] for 24 bits, palette indices of
// `table` for fewer bits.
std::vector<BYTE> MakeDib(int width, int height, int bits, const std::vector<COLORREF>& table,
                          const std::vector<std::vector<DWORD>>& rows) {
  return testimg::MakePackedDib(width, height, bits, table, static_cast<DWORD>(table.size()),
                                [&](int x, int row) { return rows[row][x]; });
}

const BITMAPINFO* Info(const std::vector<BYTE>& dib) {
  return reinterpret_cast<const BITMAPINFO*>(dib.data());
}

const BYTE* Pixels(const std::vector<BYTE>& dib) {
  return dib.data() + 40 + 4 * Info(dib)->bmiHeader.biClrUsed;
}

const COLORREF A = RGB(10, 0, 0), B = RGB(20, 0, 0), C = RGB(30, 0, 0);
const COLORREF D = RGB(40, 0, 0), E = RGB(50, 0, 0), F = RGB(60, 0, 0);
const COLORREF W = RGB(255, 255, 255);

// Storage rows bottom-up: row 0 = {A, B, C} is the picture's bottom line.
std::vector<BYTE> TwoRows() { return MakeDib(3, 2, 24, {}, {{A, B, C}, {D, E, F}}); }

}  // namespace

TEST(DibPainting, UnscaledCopyShowsTheTopRowFirst) {
  CRasterDC dc(5, 4);
  std::vector<BYTE> dib = TwoRows();
  EXPECT_EQ(SetDIBitsToDevice(&dc, 1, 1, 3, 2, 0, 0, 0, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS), 2);
  ExpectPixels(dc, {{1, 1, D}, {3, 1, F}, {1, 2, A}, {3, 2, C}, {0, 0, W}, {4, 3, W}});
}

TEST(DibPainting, UnscaledSourceRectangleAndScanBand) {
  // ySrc counts from the bottom: (xSrc 1, ySrc 1) of size 1x1 is E.
  CRasterDC dc(4, 4);
  std::vector<BYTE> dib = TwoRows();
  SetDIBitsToDevice(&dc, 0, 0, 1, 1, 1, 1, 0, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS);
  EXPECT_EQ(dc.GetPixel(0, 0), E);

  // Only scan line 1 in memory: the band paints the top row, not the bottom one.
  CRasterDC band(4, 4);
  int stride = 12;
  EXPECT_EQ(SetDIBitsToDevice(&band, 0, 0, 3, 2, 0, 0, 1, 1, Pixels(dib) + stride, Info(dib),
                              DIB_RGB_COLORS),
            1);
  ExpectPixels(band, {{0, 0, D}, {0, 1, W}});
}

TEST(DibPainting, StretchDoublesEachPixel) {
  std::vector<BYTE> dib = MakeDib(2, 2, 24, {}, {{A, B}, {C, D}});
  CRasterDC dc(6, 6);
  SetStretchBltMode(&dc, COLORONCOLOR);
  EXPECT_NE(StretchDIBits(&dc, 1, 1, 4, 4, 0, 0, 2, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS,
                          SRCCOPY),
            0);
  // Top of the picture (storage row 1: C D) on top, each a 2x2 block.
  const COLORREF expected[4][4] = {{C, C, D, D}, {C, C, D, D}, {A, A, B, B}, {A, A, B, B}};
  for (int y = 0; y < 4; y++)
    for (int x = 0; x < 4; x++) EXPECT_EQ(dc.GetPixel(1 + x, 1 + y), expected[y][x]) << x << "," << y;
  ExpectPixels(dc, {{5, 5, W}, {0, 1, W}});
}

TEST(DibPainting, StretchSourceCountsFromTheTopAndClips) {
  std::vector<BYTE> dib = TwoRows();
  CRasterDC dc(4, 4);
  // Source (1, 0) 1x1 from the top: the top row's middle pixel, E.
  StretchDIBits(&dc, 0, 0, 2, 2, 1, 0, 1, 1, Pixels(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);
  EXPECT_EQ(dc.GetPixel(1, 1), E);
  // Half off the surface: what is visible is right.
  StretchDIBits(&dc, -3, 2, 6, 2, 0, 0, 3, 1, Pixels(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY);
  ExpectPixels(dc, {{0, 2, E}, {1, 3, F}});
  // A destination reaching far beyond the surface: column 0 lies in the
  // middle of the stretched source.
  CRasterDC wide(2, 1);
  StretchDIBits(&wide, -1073741824, 0, INT_MAX, 1, 0, 0, 3, 1, Pixels(dib), Info(dib),
                DIB_RGB_COLORS, SRCCOPY);
  EXPECT_EQ(wide.GetPixel(0, 0), E);
}

TEST(DibPainting, PaletteDibs) {
  const COLORREF R = RGB(255, 0, 0), Bl = RGB(0, 0, 255);
  for (int bits : {1, 4, 8}) {
    std::vector<BYTE> dib = MakeDib(9, 1, bits, {R, Bl}, {{1, 0, 0, 1, 1, 0, 1, 0, 1}});
    CRasterDC dc(9, 1);
    ASSERT_EQ(SetDIBitsToDevice(&dc, 0, 0, 9, 1, 0, 0, 0, 1, Pixels(dib), Info(dib), DIB_RGB_COLORS), 1)
        << bits;
    const COLORREF expected[9] = {Bl, R, R, Bl, Bl, R, Bl, R, Bl};
    for (int x = 0; x < 9; x++) EXPECT_EQ(dc.GetPixel(x, 0), expected[x]) << bits << " bits, x " << x;
  }
}

TEST(DibPainting, RefusesWhatItCannotRead) {
  std::vector<BYTE> dib = TwoRows();
  CRasterDC dc(4, 4);
  EXPECT_EQ(SetDIBitsToDevice(nullptr, 0, 0, 3, 2, 0, 0, 0, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS), 0);
  EXPECT_EQ(SetDIBitsToDevice(&dc, 0, 0, 3, 2, 0, 0, 0, 2, nullptr, Info(dib), DIB_RGB_COLORS), 0);
  EXPECT_EQ(StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS, 0x00EE0086u), 0);
  EXPECT_EQ(StretchDIBits(&dc, 0, 0, 0, 2, 0, 0, 3, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY), 0);
  BITMAPINFOHEADER* h = reinterpret_cast<BITMAPINFOHEADER*>(dib.data());
  h->biBitCount = 12;
  EXPECT_EQ(SetDIBitsToDevice(&dc, 0, 0, 3, 2, 0, 0, 0, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS), 0);
  h->biBitCount = 24;
  h->biCompression = 1;  // run-length encoded
  EXPECT_EQ(StretchDIBits(&dc, 0, 0, 3, 2, 0, 0, 3, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS, SRCCOPY), 0);
  EXPECT_EQ(dc.GetPixel(0, 0), W);  // nothing was painted
  CDC bare;  // no surface: accepted, nothing painted
  h->biCompression = BI_RGB;
  EXPECT_EQ(SetDIBitsToDevice(&bare, 0, 0, 3, 2, 0, 0, 0, 2, Pixels(dib), Info(dib), DIB_RGB_COLORS), 2);
}
