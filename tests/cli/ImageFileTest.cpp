// The picture file readers: what reaches the engine from BMP, PNG and JPEG,
// and the files they refuse, each with the file's name and the reason.
#include <gtest/gtest.h>

#include <cstring>

#include "Pictrace.h"
#include "cli/ImageFile.h"
#include "cli/ImageLimits.h"
#include "cli/TestFiles.h"

namespace {

using clitest::MakeBmp;
using clitest::PutU32;

std::vector<unsigned char> Load(const std::vector<unsigned char>& bytes, BITMAPINFOHEADER& h) {
  std::vector<unsigned char> dib;
  std::string error;
  EXPECT_TRUE(pictrace::LoadImageBytes(bytes.data(), bytes.size(), "mem.img", dib, error)) << error;
  if (dib.size() >= 40) std::memcpy(&h, dib.data(), 40);
  return dib;
}

unsigned Grey(int x, int row) { return static_cast<unsigned>((x + row) % 16); }
unsigned Orange(int, int) { return 0xFF8000u; }

TEST(ImageFile, BmpRowsArePassedOnAsTheyAre) {
  BITMAPINFOHEADER h{};
  // 1 bit, 9 x 3: header, two-entry table and rows unchanged.
  auto bmp = MakeBmp(9, 3, 1, 2, [](int x, int row) { return static_cast<unsigned>((x + row) & 1); });
  auto dib = Load(bmp, h);
  EXPECT_EQ(h.biBitCount, 1);
  ASSERT_EQ(dib.size(), 40u + 8u + 3u * 4u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, bmp.data() + 54, dib.size() - 40), 0);
  // 24 bits with a three-entry table: the table is dropped and biClrUsed cleared.
  bmp = MakeBmp(3, 2, 24, 3, [](int x, int row) { return static_cast<unsigned>(x * 0x010203 + row * 0x100000); });
  dib = Load(bmp, h);
  EXPECT_EQ(h.biClrUsed, 0u);
  ASSERT_EQ(dib.size(), 40u + 2u * 12u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, bmp.data() + 54 + 12, 24), 0);
  // A 124-byte header and 10 spare bytes before the rows.
  auto plain = MakeBmp(4, 2, 8, 4, [](int x, int row) { return static_cast<unsigned>((x + row) % 4); });
  bmp.assign(plain.begin(), plain.begin() + 54);
  bmp.resize(14 + 124, 0);
  PutU32(bmp, 14, 124);
  bmp.insert(bmp.end(), plain.begin() + 54, plain.begin() + 70);
  bmp.resize(bmp.size() + 10, 0xCC);
  PutU32(bmp, 10, static_cast<std::uint32_t>(bmp.size()));
  bmp.insert(bmp.end(), plain.begin() + 70, plain.end());
  dib = Load(bmp, h);
  EXPECT_EQ(h.biSize, 40u);
  ASSERT_EQ(dib.size(), 40u + 16u + 8u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, plain.data() + 54, 24), 0);
  CPictrace engine;
  EXPECT_EQ(engine.SetDIBData(dib.data()), 1);
}

TEST(ImageFile, PngAndJpegBecomeBottomUpTwentyFourBit) {
  // Top row red ramp with a transparent last pixel, bottom row blue.
  BITMAPINFOHEADER h{};
  auto dib = Load(clitest::MakePng(3, 2, [](int x, int y) {
                    return y == 1 ? 0x0000FFFFu : x == 2 ? 0x10203000u : 0xFF0000FFu + (x << 8);
                  }), h);
  EXPECT_EQ(h.biBitCount, 24);
  EXPECT_EQ(h.biWidth, 3);
  EXPECT_EQ(h.biHeight, 2);
  ASSERT_EQ(dib.size(), 40u + 2u * 12u);
  const unsigned char bottom[9] = {0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0};
  const unsigned char top[9] = {0, 0, 0xFF, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF};  // white where transparent
  EXPECT_EQ(std::memcmp(dib.data() + 40, bottom, 9), 0);
  EXPECT_EQ(std::memcmp(dib.data() + 52, top, 9), 0);

  dib = Load(clitest::MakeJpeg(17, 9, 0x3080C0), h);
  EXPECT_EQ(h.biWidth, 17);
  EXPECT_EQ(h.biHeight, 9);
  EXPECT_EQ(h.biBitCount, 24);
  const unsigned char* p = dib.data() + 40 + 4 * 52 + 3 * 8;  // a middle pixel
  EXPECT_NEAR(p[0], 0xC0, 3);
  EXPECT_NEAR(p[1], 0x80, 3);
  EXPECT_NEAR(p[2], 0x30, 3);
}

TEST(ImageFile, PixelLimitRefusesLargeDecodes) {
  auto png = clitest::MakePng(100, 100, [](int, int) { return 0xFFu; });
  std::vector<unsigned char> dib;
  std::string error;
  const std::uint64_t saved = pictrace::MaxImagePixels();
  pictrace::SetMaxImagePixels(9999);
  EXPECT_FALSE(pictrace::LoadImageBytes(png.data(), png.size(), "mem.img", dib, error));
  EXPECT_NE(error.find("mem.img: "), std::string::npos) << error;
  EXPECT_TRUE(dib.empty());
  pictrace::SetMaxImagePixels(10000);
  EXPECT_TRUE(pictrace::LoadImageBytes(png.data(), png.size(), "mem.img", dib, error)) << error;
  pictrace::SetMaxImagePixels(saved);
}

std::vector<unsigned char> Patched(std::vector<unsigned char> b, size_t at, std::uint32_t v, int bytes = 4) {
  PutU32(b, at, v, bytes);
  return b;
}
std::vector<unsigned char> Cut(std::vector<unsigned char> b, size_t size) {
  b.resize(size);
  return b;
}

TEST(ImageFile, BadFilesAreRefusedWithTheReason) {
  const auto bmp24 = MakeBmp(4, 4, 24, 0, Orange), bmp8 = MakeBmp(4, 4, 8, 16, Grey);
  const auto png = clitest::MakePng(40, 30, [](int x, int y) { return static_cast<unsigned>(x * 1000 + y) << 8 | 0xFF; });
  const auto jpeg = clitest::MakeJpeg(64, 48, 0x336699);
  auto corrupt = png;
  for (size_t i = 60; i < corrupt.size() - 20; i++) corrupt[i] ^= 0x5A;  // image data and CRCs
  const std::uint32_t minus4 = static_cast<std::uint32_t>(-4);
  const struct {
    std::vector<unsigned char> bytes;
    const char* reason;
  } cases[] = {
      {{}, "empty"},
      {{'h', 'e', 'l', 'l', 'o'}, "not a PNG, JPEG or BMP"},
      {Cut(png, png.size() / 2), "PNG"},
      {Cut(png, 20), "PNG"},
      {corrupt, "PNG"},
      {Cut(jpeg, jpeg.size() * 2 / 3), "JPEG"},
      {{0xFF, 0xD8, 0xFF, 0x00, 0x12, 0x34, 0x56}, "JPEG"},
      {Patched(bmp24, 18, 0), "no pixels"},
      {Patched(bmp24, 22, 0), "no pixels"},
      {Patched(bmp24, 18, minus4), "no pixels"},
      {Patched(bmp24, 22, minus4), "top-down"},
      {Patched(bmp24, 18, 32768), "too large"},
      {Patched(MakeBmp(4, 4, 1, 2, Grey), 22, 40000), "too large"},
      {Patched(Patched(bmp24, 18, 100), 22, 100), "holds only"},
      {Cut(MakeBmp(5, 3, 8, 16, Grey), MakeBmp(5, 3, 8, 16, Grey).size() - 1), "holds only"},
      {Cut(bmp24, 30), "truncated"},
      {Patched(MakeBmp(4, 4, 4, 16, Grey), 46, 17), "colour table"},
      {Patched(bmp8, 10, 60), "offset"},
      {Patched(bmp8, 30, 1), "compressed"},
      {Patched(MakeBmp(4, 4, 8, 4, Grey), 28, 2, 2), "colour depth"},
      {Patched(bmp24, 14, 12), "header size"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reason);
    std::vector<unsigned char> dib;
    std::string error;
    EXPECT_FALSE(pictrace::LoadImageBytes(c.bytes.data(), c.bytes.size(), "bad.img", dib, error));
    EXPECT_EQ(error.rfind("bad.img: ", 0), 0u) << error;
    EXPECT_NE(error.find(c.reason), std::string::npos) << error;
  }
}

TEST(ImageFile, PngEncoderRefusesImpossibleSizes) {
  unsigned char pixel[4] = {0, 0, 0, 0};
  std::string png, error;
  EXPECT_FALSE(pictrace::EncodePng(pixel, 0, 1, 4, png, error));
  EXPECT_FALSE(pictrace::EncodePng(pixel, 2, 1, 3, png, error));  // stride too short
  EXPECT_TRUE(pictrace::EncodePng(pixel, 1, 1, 3, png, error)) << error;
}

}  // namespace
