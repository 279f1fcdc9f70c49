// The picture file readers: what reaches the engine from BMP, PNG and JPEG.
#include <gtest/gtest.h>

#include <png.h>

#include <cstdlib>
#include <cstring>

#include "Pictrace.h"
#include "cli/ImageFile.h"
#include "cli/ImageLimits.h"
#include "cli/TestFiles.h"

namespace {

using clitest::MakeBmp;
using clitest::PutU32;

BITMAPINFOHEADER Header(const std::vector<unsigned char>& dib) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), 40);
  return h;
}

bool Load(const std::vector<unsigned char>& bytes, std::vector<unsigned char>& dib, std::string& error) {
  return pictrace::LoadImageBytes(bytes.data(), bytes.size(), "mem.img", dib, error);
}

unsigned Checker(int x, int row) { return static_cast<unsigned>((x + row) & 1); }
unsigned Ramp(int x, int row) { return static_cast<unsigned>(x * 0x010203 + row * 0x100000); }

TEST(ImageFileTest, PaletteBmpIsPassedOnWithItsTable) {
  auto bmp = MakeBmp(9, 3, 1, 2, Checker);
  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(Load(bmp, dib, error)) << error;
  BITMAPINFOHEADER h = Header(dib);
  EXPECT_EQ(h.biSize, 40u);
  EXPECT_EQ(h.biBitCount, 1);
  EXPECT_EQ(h.biWidth, 9);
  EXPECT_EQ(h.biHeight, 3);
  ASSERT_EQ(dib.size(), 40u + 8u + 3u * 4u);
  // Everything after the file header is unchanged.
  EXPECT_EQ(std::memcmp(dib.data() + 40, bmp.data() + 54, dib.size() - 40), 0);
}

TEST(ImageFileTest, TwentyFourBitBmpDropsAColourTable) {
  // Three table entries in the file; the engine reads 24-bit rows right
  // after the header, so the table is left out and biClrUsed cleared.
  auto bmp = MakeBmp(3, 2, 24, 3, Ramp);
  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(Load(bmp, dib, error)) << error;
  EXPECT_EQ(Header(dib).biClrUsed, 0u);
  ASSERT_EQ(dib.size(), 40u + 2u * 12u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, bmp.data() + 54 + 12, 24), 0);
}

TEST(ImageFileTest, LongerHeadersAndGapsBeforeThePixelsAreHandled) {
  // A 124-byte header and 10 spare bytes before the rows.
  auto plain = MakeBmp(4, 2, 8, 4, [](int x, int row) { return static_cast<unsigned>((x + row) % 4); });
  std::vector<unsigned char> bmp(plain.begin(), plain.begin() + 54);
  bmp.resize(14 + 124, 0);
  PutU32(bmp, 14, 124);
  bmp.insert(bmp.end(), plain.begin() + 54, plain.begin() + 54 + 16);  // table
  bmp.resize(bmp.size() + 10, 0xCC);
  size_t offset = bmp.size();
  bmp.insert(bmp.end(), plain.begin() + 54 + 16, plain.end());
  PutU32(bmp, 10, static_cast<std::uint32_t>(offset));

  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(Load(bmp, dib, error)) << error;
  EXPECT_EQ(Header(dib).biSize, 40u);
  ASSERT_EQ(dib.size(), 40u + 16u + 8u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, plain.data() + 54, 24), 0);

  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
}

TEST(ImageFileTest, PngBecomesBottomUpTwentyFourBit) {
  auto png = clitest::MakePng(3, 2, [](int x, int y) { return y == 0 ? 0xFF0000u + x : 0x0000FFu; });
  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(Load(png, dib, error)) << error;
  BITMAPINFOHEADER h = Header(dib);
  EXPECT_EQ(h.biBitCount, 24);
  EXPECT_EQ(h.biWidth, 3);
  EXPECT_EQ(h.biHeight, 2);
  ASSERT_EQ(dib.size(), 40u + 2u * 12u);
  const unsigned char* bottom = dib.data() + 40;  // storage row 0 = the PNG's last row
  const unsigned char* top = dib.data() + 40 + 12;
  EXPECT_EQ(bottom[0], 0xFF);  // blue
  EXPECT_EQ(bottom[2], 0x00);
  EXPECT_EQ(top[3 * 2 + 0], 2);     // blue of 0xFF0002
  EXPECT_EQ(top[3 * 2 + 2], 0xFF);  // red
}

TEST(ImageFileTest, TransparentPngPixelsTurnWhite) {
  unsigned char rgba[2 * 4] = {10, 20, 30, 255, 10, 20, 30, 0};
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = 2;
  image.height = 1;
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, rgba, 0, nullptr);
  std::vector<unsigned char> png(size);
  ASSERT_TRUE(png_image_write_to_memory(&image, png.data(), &size, 0, rgba, 0, nullptr));
  png.resize(size);

  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(Load(png, dib, error)) << error;
  const unsigned char* p = dib.data() + 40;
  EXPECT_EQ(p[0], 30);
  EXPECT_EQ(p[1], 20);
  EXPECT_EQ(p[2], 10);
  EXPECT_EQ(p[3], 255);
  EXPECT_EQ(p[4], 255);
  EXPECT_EQ(p[5], 255);
}

TEST(ImageFileTest, JpegDecodesToItsSizeAndColour) {
  auto jpeg = clitest::MakeJpeg(17, 9, 0x3080C0);
  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(Load(jpeg, dib, error)) << error;
  BITMAPINFOHEADER h = Header(dib);
  EXPECT_EQ(h.biWidth, 17);
  EXPECT_EQ(h.biHeight, 9);
  EXPECT_EQ(h.biBitCount, 24);
  const unsigned char* p = dib.data() + 40 + 4 * 52 + 3 * 8;  // a middle pixel
  EXPECT_NEAR(p[0], 0xC0, 3);
  EXPECT_NEAR(p[1], 0x80, 3);
  EXPECT_NEAR(p[2], 0x30, 3);
}

TEST(ImageFileTest, PixelLimitRefusesLargeDecodes) {
  auto png = clitest::MakePng(100, 100, [](int, int) { return 0u; });
  std::vector<unsigned char> dib;
  std::string error;
  std::uint64_t saved = pictrace::MaxImagePixels();
  pictrace::SetMaxImagePixels(9999);
  EXPECT_FALSE(Load(png, dib, error));
  EXPECT_NE(error.find("mem.img: "), std::string::npos) << error;
  EXPECT_TRUE(dib.empty());
  pictrace::SetMaxImagePixels(10000);
  EXPECT_TRUE(Load(png, dib, error)) << error;
  pictrace::SetMaxImagePixels(saved);
}

TEST(ImageFileTest, WritePngRefusesImpossibleSizes) {
  unsigned char pixel[4] = {0, 0, 0, 0};
  std::string error;
  EXPECT_FALSE(pictrace::WritePng("/tmp/never_written.png", pixel, 0, 1, 4, error));
  EXPECT_NE(error.find("/tmp/never_written.png"), std::string::npos);
  EXPECT_FALSE(pictrace::WritePng("/tmp/never_written.png", pixel, 2, 1, 3, error));  // stride too short
}

}  // namespace
