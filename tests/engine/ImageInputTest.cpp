// Image input: palette conversion, strides, colour-table sizes, refusals
// and the saved copy.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "common/TestImages.h"
#include "engine/EngineTestSupport.h"

namespace {

using enginetest::HeaderOf;
using enginetest::MakePaletteDib;
using enginetest::MessageRecorder;
using testimg::ExpectImage;
using testimg::PixelAt;

COLORREF Stripes(int x, int row) { return RGB(10 * x, 20 * row, (x + row) & 1 ? 200 : 50); }

TEST(ImageInputTest, TwentyFourBitImageIsKeptWithItsSizeRecomputed) {
  auto dib = testimg::MakeDib24(5, 3, Stripes);
  BITMAPINFOHEADER h = HeaderOf(dib);
  h.biSizeImage = 12345;  // the caller's value is replaced
  std::memcpy(dib.data(), &h, 40);

  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  EXPECT_EQ(engine.HasDIBData(), 1);
  EXPECT_EQ(engine.m_bmiHeader.biBitCount, 24);
  EXPECT_EQ(engine.m_bmiHeader.biSizeImage, 3u * 16u);  // stride ((5*3+3)/4)*4 = 16
  EXPECT_EQ(engine.m_pDIBBits, engine.m_pDIB + 40);
  EXPECT_EQ(engine.m_pWorkBits, engine.m_pWorkDIB + 40);
  EXPECT_NE(engine.m_pDIB, dib.data());  // a copy, not the caller's buffer
  ExpectImage(engine.m_pDIBBits, 5, 3, Stripes);
  ExpectImage(engine.m_pWorkBits, 5, 3, Stripes);
  CSize size;
  ASSERT_EQ(engine.GetDIBSize(size), 1);
  EXPECT_EQ(size.cx, 5);
  EXPECT_EQ(size.cy, 3);
}

TEST(ImageInputTest, TwentyFourBitImageIgnoresClrUsed) {
  // A non-zero biClrUsed on a 24-bit picture names no table: the pixel rows
  // follow the header directly.
  auto dib = testimg::MakeDib24(4, 2, Stripes);
  BITMAPINFOHEADER h = HeaderOf(dib);
  h.biClrUsed = 5;
  std::memcpy(dib.data(), &h, 40);
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  ExpectImage(engine.m_pDIBBits, 4, 2, Stripes);
}

TEST(ImageInputTest, OneBitImageReadsMostSignificantBitFirstAcrossStrides) {
  // 33 pixels: input stride 8 bytes, 24-bit stride 100 bytes; the 33rd
  // pixel sits in the high bit of the fifth byte.
  const std::vector<COLORREF> table = {RGB(1, 2, 3), RGB(250, 240, 230)};
  auto index = [](int x, int row) { return (x % 3 == 0 || x == 32 || row == 1) ? 1 : 0; };
  auto dib = MakePaletteDib(33, 2, 1, table, 0, index);
  ASSERT_EQ(dib.size(), 40u + 8u + 2u * 8u);

  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  EXPECT_EQ(engine.m_bmiHeader.biBitCount, 24);
  EXPECT_EQ(engine.m_bmiHeader.biSizeImage, 200u);
  EXPECT_EQ(engine.m_bmiHeader.biClrUsed, 0u);
  ExpectImage(engine.m_pDIBBits, 33, 2, [&](int x, int row) { return table[index(x, row)]; });
}

TEST(ImageInputTest, FourBitImageReadsHighNibbleFirstWithSixteenEntries) {
  std::vector<COLORREF> table;
  for (int i = 0; i < 16; i++) table.push_back(RGB(i * 16, 255 - i, i));
  auto index = [](int x, int row) { return (x * 3 + row * 5) % 16; };
  auto dib = MakePaletteDib(5, 3, 4, table, 0, index);  // input stride 4
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  EXPECT_EQ(engine.m_bmiHeader.biSizeImage, 3u * 16u);
  ExpectImage(engine.m_pDIBBits, 5, 3, [&](int x, int row) { return table[index(x, row)]; });
}

TEST(ImageInputTest, EightBitImageWithShortTableTakesRowsRightAfterIt) {
  // biClrUsed = 20: 80 bytes of table, pixel rows at 40 + 80.
  std::vector<COLORREF> table;
  for (int i = 0; i < 20; i++) table.push_back(RGB(i, 100 + i, 200 - i));
  auto index = [](int x, int row) { return (x + 7 * row) % 20; };
  auto dib = MakePaletteDib(6, 4, 8, table, 20, index);
  ASSERT_EQ(dib.size(), 40u + 80u + 4u * 8u);
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  ExpectImage(engine.m_pDIBBits, 6, 4, [&](int x, int row) { return table[index(x, row)]; });
}

TEST(ImageInputTest, ConvertedBuffersCarryTheRewrittenHeader) {
  const std::vector<COLORREF> table = {RGB(0, 0, 0), RGB(255, 0, 0)};
  auto dib = MakePaletteDib(9, 2, 1, table, 2, [](int x, int) { return x & 1; });
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  EXPECT_EQ(std::memcmp(engine.m_pDIB, &engine.m_bmiHeader, 40), 0);
  EXPECT_EQ(std::memcmp(engine.m_pWorkDIB, &engine.m_bmiHeader, 40), 0);
  EXPECT_EQ(engine.m_bmiHeader.biClrImportant, 0u);
  EXPECT_EQ(engine.m_bmiHeader.biCompression, static_cast<DWORD>(BI_RGB));
}

TEST(ImageInputTest, IndexPastTheTableReadsFollowingBytesOrBlack) {
  // Two entries, 8 bits: index 2 reads the four bytes after the table,
  // which are the first pixel row; an index past the buffer gives black.
  const std::vector<COLORREF> table = {RGB(1, 1, 1), RGB(2, 2, 2)};
  auto dib = MakePaletteDib(4, 1, 8, table, 2, [](int x, int) { return x == 0 ? 2 : 255; });
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  // Row bytes are 2, 255, 255, 255: blue 2, green 255, red 255.
  EXPECT_EQ(PixelAt(engine.m_pDIBBits, 4, 0, 0), RGB(255, 255, 2));
  EXPECT_EQ(PixelAt(engine.m_pDIBBits, 4, 1, 0), RGB(0, 0, 0));
}

class RefusalTest : public ::testing::TestWithParam<int> {};

TEST_P(RefusalTest, UnsupportedDepthShowsTheMessageAndKeepsTheCurrentImage) {
  CPictrace engine;
  auto first = testimg::MakeDib24(3, 2, Stripes);
  ASSERT_EQ(engine.SetDIBData(first.data()), 1);
  const BITMAPINFOHEADER before = engine.m_bmiHeader;
  unsigned char* image = engine.m_pDIB;
  unsigned char* work = engine.m_pWorkDIB;
  std::vector<unsigned char> pixels(engine.m_pDIB, engine.m_pDIB + 40 + before.biSizeImage);

  auto other = testimg::MakeDib24(8, 8, [](int, int) { return RGB(9, 9, 9); });
  BITMAPINFOHEADER h = HeaderOf(other);
  h.biBitCount = static_cast<WORD>(GetParam());
  std::memcpy(other.data(), &h, 40);

  MessageRecorder recorder;
  EXPECT_EQ(engine.SetDIBData(other.data()), 0);
  ASSERT_EQ(recorder.texts().size(), 1u);
  EXPECT_EQ(recorder.texts()[0], "This type of bitmap is not supported");
  EXPECT_EQ(std::memcmp(&engine.m_bmiHeader, &before, 40), 0);
  EXPECT_EQ(engine.m_pDIB, image);
  EXPECT_EQ(engine.m_pWorkDIB, work);
  EXPECT_EQ(std::memcmp(engine.m_pDIB, pixels.data(), pixels.size()), 0);
}

INSTANTIATE_TEST_SUITE_P(Depths, RefusalTest, ::testing::Values(16, 32, 0, 2));

TEST(ImageInputTest, EmptyOrTopDownPicturesAreRefusedWithoutAnImage) {
  struct Case {
    LONG width, height;
  } cases[] = {{0, 4}, {4, 0}, {-3, 4}, {4, -4}, {40000, 1}};
  for (const Case& c : cases) {
    auto dib = testimg::MakeDib24(4, 4, Stripes);
    BITMAPINFOHEADER h = HeaderOf(dib);
    h.biWidth = c.width;
    h.biHeight = c.height;
    std::memcpy(dib.data(), &h, 40);
    CPictrace engine;
    MessageRecorder recorder;
    EXPECT_EQ(engine.SetDIBData(dib.data()), 0);
    EXPECT_EQ(recorder.texts().size(), 1u);
    EXPECT_EQ(engine.HasDIBData(), 0);
    EXPECT_EQ(engine.m_bmiHeader.biWidth, 0);
    EXPECT_EQ(engine.m_bmiHeader.biHeight, 0);
  }
}

TEST(ImageInputTest, NullSourceChangesNothing) {
  CPictrace engine;
  MessageRecorder recorder;
  EXPECT_EQ(engine.SetDIBData(nullptr), 0);
  EXPECT_TRUE(recorder.texts().empty());
  EXPECT_EQ(engine.HasDIBData(), 0);
}

TEST(ImageInputTest, SavedCopyRoundTripsThroughAnotherImage) {
  CPictrace engine;
  engine.SetImageRealRect(0, 0, 50, 20);
  auto first = testimg::MakeDib24(5, 4, Stripes);
  ASSERT_EQ(engine.SetDIBData(first.data()), 1);
  engine.CopyBMPData_DataToOriginal();
  ASSERT_NE(engine.m_pOriginalDIB, nullptr);
  EXPECT_EQ(std::memcmp(engine.m_pOriginalDIB, engine.m_pDIB, 40 + 4 * 16), 0);

  auto second = testimg::MakeDib24(10, 1, [](int, int) { return RGB(1, 2, 3); });
  ASSERT_EQ(engine.SetDIBData(second.data()), 1);
  EXPECT_EQ(engine.m_dSatinWidth, 35.0 / 20.0);  // 20 / 1 beats 50 / 10
  engine.CopyBMPData_OriginalToData();
  CSize size;
  ASSERT_EQ(engine.GetDIBSize(size), 1);
  EXPECT_EQ(size.cx, 5);
  EXPECT_EQ(size.cy, 4);
  EXPECT_EQ(engine.m_dSatinWidth, 35.0 / 10.0);  // re-derived: 50 / 5 = 10 beats 20 / 4
  ExpectImage(engine.m_pDIBBits, 5, 4, Stripes);
  ExpectImage(engine.m_pWorkBits, 5, 4, Stripes);
}

TEST(ImageInputTest, SavedCopyOfAPaletteImageIsSizedFromItsRewrittenHeader) {
  std::vector<COLORREF> table = {RGB(5, 6, 7), RGB(70, 80, 90), RGB(200, 100, 0)};
  auto index = [](int x, int row) { return (x + row) % 3; };
  auto dib = MakePaletteDib(7, 3, 8, table, 3, index);
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  engine.CopyBMPData_DataToOriginal();
  auto other = testimg::MakeDib24(2, 2, Stripes);
  ASSERT_EQ(engine.SetDIBData(other.data()), 1);
  engine.CopyBMPData_OriginalToData();
  EXPECT_EQ(engine.m_bmiHeader.biWidth, 7);
  ExpectImage(engine.m_pDIBBits, 7, 3, [&](int x, int row) { return table[index(x, row)]; });
}

TEST(ImageInputTest, RestoreWithoutASavedCopyDoesNothing) {
  CPictrace engine;
  auto dib = testimg::MakeDib24(3, 3, Stripes);
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  unsigned char* image = engine.m_pDIB;
  engine.CopyBMPData_OriginalToData();
  EXPECT_EQ(engine.m_pDIB, image);
}

TEST(ImageInputTest, ReloadingTheEnginesOwnBufferIsSafe) {
  CPictrace engine;
  auto dib = testimg::MakeDib24(6, 5, Stripes);
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  ASSERT_EQ(engine.SetDIBData(engine.m_pDIB), 1);
  ASSERT_EQ(engine.SetDIBData(engine.m_pWorkDIB), 1);
  ExpectImage(engine.m_pDIBBits, 6, 5, Stripes);
}

TEST(ImageInputTest, BundledPaletteBmpMatchesThePngWhereThePaletteIsExact) {
  auto bmp = testimg::LoadDib(testimg::ExamplePath("monkey_face-4bpp.bmp"));
  auto png = testimg::LoadDib(testimg::ExamplePath("monkey_face.png"));
  ASSERT_FALSE(bmp.empty());
  ASSERT_FALSE(png.empty());
  BITMAPINFOHEADER h = HeaderOf(bmp);
  ASSERT_EQ(h.biBitCount, 4);
  std::set<COLORREF> palette;
  int colours = h.biClrUsed ? static_cast<int>(h.biClrUsed) : 16;
  for (int i = 0; i < colours; i++) {
    const unsigned char* q = bmp.data() + 40 + 4 * i;
    palette.insert(RGB(q[2], q[1], q[0]));
  }

  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(bmp.data()), 1);
  const int width = h.biWidth, height = h.biHeight;
  long exact = 0, matching = 0;
  for (int row = 0; row < height; row++)
    for (int x = 0; x < width; x++) {
      COLORREF want = testimg::PixelAt(png.data() + 40, width, x, row);
      if (!palette.count(want)) continue;
      exact++;
      if (PixelAt(engine.m_pDIBBits, width, x, row) == want) matching++;
    }
  EXPECT_EQ(matching, exact);
  EXPECT_GT(exact, width * height / 2);  // most of the picture uses palette colours exactly
}

}  // namespace
