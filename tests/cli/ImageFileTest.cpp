// The picture file readers: what reaches the engine from BMP, PNG and JPEG,
// and the files they refuse, each with the file's name and the reason.
#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/ImageFile.h"
#include "common/CliRunner.h"
#include "common/HostileFiles.h"
#include "common/TestImages.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes Put(Bytes b, size_t at, std::uint32_t v, int n = 4) {
  for (int i = 0; i < n; i++) b.at(at + i) = static_cast<unsigned char>(v >> (8 * i));
  return b;
}
Bytes Cut(Bytes b, size_t size) {
  b.resize(size);
  return b;
}

// A BMP file: a file header, then a packed DIB with a grey table of
// `colours` entries; value(x, row) is a palette index, or a colour at 24 bits.
Bytes Bmp(int width, int height, int bits, int colours, unsigned (*value)(int x, int row)) {
  std::vector<COLORREF> table;
  for (int i = 0; i < colours; i++) table.push_back(0x010101u * (i * 255 / std::max(colours - 1, 1)));
  Bytes b = testimg::MakePackedDib(width, height, bits, table, colours, value);
  b.insert(b.begin(), 14, 0);
  b[0] = 'B', b[1] = 'M';
  return Put(Put(b, 2, b.size()), 10, 54 + 4 * colours);
}

// A PNG whose pixel (x, y) (top-down) is rgba(x, y) as 0xRRGGBBAA.
Bytes Png(int width, int height, unsigned (*rgba)(int x, int y)) {
  Bytes pixels;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++)
      for (int shift = 24; shift >= 0; shift -= 8) pixels.push_back(static_cast<unsigned char>(rgba(x, y) >> shift));
  png_image image{};
  image.version = PNG_IMAGE_VERSION, image.width = width, image.height = height, image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
  Bytes out(size);
  png_image_write_to_memory(&image, out.data(), &size, 0, pixels.data(), 0, nullptr);
  return Cut(out, size);
}

// A baseline JPEG of a flat colour (0xRRGGBB), quality 95.
Bytes Jpeg(int width, int height, unsigned colour) {
  jpeg_compress_struct cinfo;
  jpeg_error_mgr jerr;
  cinfo.err = jpeg_std_error(&jerr);
  jpeg_create_compress(&cinfo);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&cinfo, &buffer, &size);
  cinfo.image_width = width, cinfo.image_height = height, cinfo.input_components = 3, cinfo.in_color_space = JCS_RGB;
  jpeg_set_defaults(&cinfo);
  jpeg_set_quality(&cinfo, 95, TRUE);
  jpeg_start_compress(&cinfo, TRUE);
  Bytes row;
  for (int x = 0; x < 3 * width; x++) row.push_back(static_cast<unsigned char>(colour >> (16 - 8 * (x % 3))));
  for (JSAMPROW rows[1] = {row.data()}; cinfo.next_scanline < cinfo.image_height;) jpeg_write_scanlines(&cinfo, rows, 1);
  jpeg_finish_compress(&cinfo);
  Bytes out(buffer, buffer + size);
  jpeg_destroy_compress(&cinfo);
  std::free(buffer);
  return out;
}

Bytes Load(const Bytes& bytes, BITMAPINFOHEADER& h) {
  Bytes dib;
  std::string error;
  EXPECT_TRUE(pictrace::LoadImageBytes(bytes.data(), bytes.size(), "mem.img", dib, error)) << error;
  if (dib.size() >= 40) std::memcpy(&h, dib.data(), 40);
  return dib;
}

unsigned Grey(int x, int row) { return static_cast<unsigned>((x + row) % 16); }
unsigned Orange(int, int) { return 0xFF8000u; }
unsigned Rgb(int x, int y) { return (x * 0x402000u + y * 0x11u + 0x808080u) & 0xFFFFFF; }

TEST(ImageFile, BmpRowsArePassedOnAsTheyAre) {
  BITMAPINFOHEADER h{};
  // 1 bit, 9 x 3: header, two-entry table and rows unchanged.
  Bytes bmp = Bmp(9, 3, 1, 2, [](int x, int row) { return static_cast<unsigned>((x + row) & 1); });
  Bytes dib = Load(bmp, h);
  EXPECT_EQ(h.biBitCount, 1);
  ASSERT_EQ(dib.size(), 40u + 8u + 3u * 4u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, bmp.data() + 54, dib.size() - 40), 0);
  // 24 bits with a three-entry table: the table is dropped and biClrUsed cleared.
  bmp = Bmp(3, 2, 24, 3, [](int x, int row) { return static_cast<unsigned>(x * 0x010203 + row * 0x100000); });
  dib = Load(bmp, h);
  EXPECT_EQ(h.biClrUsed, 0u);
  ASSERT_EQ(dib.size(), 40u + 2u * 12u);
  EXPECT_EQ(std::memcmp(dib.data() + 40, bmp.data() + 54 + 12, 24), 0);
}

TEST(ImageFile, PngAndJpegBecomeBottomUpTwentyFourBit) {
  // Top row a red ramp with a transparent last pixel, bottom row blue.
  BITMAPINFOHEADER h{};
  Bytes dib = Load(Png(3, 2, [](int x, int y) { return y ? 0xFFFFu : x == 2 ? 0x10203000u : 0xFF0000FFu + (x << 8); }), h);
  EXPECT_EQ(h.biBitCount * 10000 + h.biWidth * 100 + h.biHeight, 240302);
  const Bytes rows = {0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0xFF, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0};
  EXPECT_EQ(Bytes(dib.begin() + 40, dib.end()), rows);  // white where transparent
  dib = Load(Jpeg(17, 9, 0x3080C0), h);
  EXPECT_EQ(h.biBitCount * 10000 + h.biWidth * 100 + h.biHeight, 241709);
  const unsigned char* p = dib.data() + 40 + 4 * 52 + 3 * 8;  // a middle pixel
  EXPECT_TRUE(std::abs(p[0] - 0xC0) <= 3 && std::abs(p[1] - 0x80) <= 3 && std::abs(p[2] - 0x30) <= 3);
}

TEST(ImageFile, DeepPicturesBecomeTwentyFourBitComposedOverWhite) {
  using hostile::DeepBmp;
  const std::vector<std::uint32_t> rgb16 = {0x7FFF, 0x7C00, 0x0010, 0x4210}, rgb565 = {0xF800, 0x0400, 0x001F},
                                   argb = {0x00FF0000, 0x80FF0000, 0xFF0000FF};
  const std::pair<Bytes, Bytes> cases[] = {  // file, first row (blue, green, red)
      {DeepBmp(4, 1, 16, 0, {}, [&](int x, int) { return rgb16[x]; }), {255, 255, 255, 0, 0, 255, 132, 0, 0, 132, 132, 132}},
      {DeepBmp(3, 1, 16, 3, {0xF800, 0x07E0, 0x1F}, [&](int x, int) { return rgb565[x]; }), {0, 0, 255, 0, 130, 0, 255, 0, 0}},
      {DeepBmp(3, 1, 32, 6, {0xFF0000, 0xFF00, 0xFF, 0xFF000000u}, [&](int x, int) { return argb[x]; }),
       {255, 255, 255, 127, 127, 255, 255, 0, 0}},
      {DeepBmp(1, 1, 32, 0, {}, [](int, int) { return 0xFF112233u; }), {0x33, 0x22, 0x11}},
      {Put(DeepBmp(1, 2, 32, 0, {}, [](int, int row) { return row ? 0xFFu : 0xFF0000u; }), 22, static_cast<std::uint32_t>(-2)),
       {255, 0, 0, 0, 0, 0, 255}},  // top-down: the first row stored is the top
  };
  BITMAPINFOHEADER h{};
  for (const auto& c : cases) {
    const Bytes dib = Load(c.first, h);
    EXPECT_EQ(h.biBitCount, 24);
    EXPECT_EQ(Bytes(dib.begin() + 40, dib.begin() + 40 + c.second.size()), c.second);
  }
  // 16-bit samples v * 257 read as v: the colours of the 8-bit picture.
  EXPECT_EQ(Load(hostile::Png16(5, 3, Rgb), h), Load(Png(5, 3, [](int x, int y) { return Rgb(x, y) << 8 | 0xFF; }), h));
  EXPECT_EQ(Load(hostile::Png16(1, 1, Rgb), h)[40], 0x80);
}

// A disk that fills up after the first few bytes of a file.
ssize_t FullDisk(int fd, const void* data, size_t size) {
  if (size < 8) return errno = ENOSPC, -1;
  return ::write(fd, data, 4);
}

TEST(ImageFile, AFullDiskLeavesTheOldFileAndNoTemporary) {
  const clitest::TempDir dir;
  const std::string target = dir.Write("old.svg", {'o', 'l', 'd'});
  pictrace::SetWriteFunction(FullDisk);
  std::string error;
  const bool ok = pictrace::WriteFileBytes(target, std::string(30, 'x'), error);
  pictrace::SetWriteFunction(nullptr);
  EXPECT_FALSE(ok);
  EXPECT_EQ(error, target + ": cannot write the file: No space left on device");
  EXPECT_EQ(clitest::ReadText(target), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);
}

TEST(ImageFile, BadFilesAreRefusedWithTheReason) {
  const Bytes bmp24 = Bmp(4, 4, 24, 0, Orange), bmp8 = Bmp(4, 4, 8, 16, Grey), jpeg = Jpeg(64, 48, 0x336699);
  const Bytes png = Png(40, 30, [](int x, int y) { return static_cast<unsigned>(x * 1000 + y) << 8 | 0xFF; });
  Bytes corrupt = png;
  for (size_t i = 60; i < corrupt.size() - 20; i++) corrupt[i] ^= 0x5A;  // image data and CRCs
  const std::pair<Bytes, const char*> cases[] = {
      {{}, "empty"},
      {{'h', 'e', 'l', 'l', 'o'}, "not a PNG, JPEG or BMP"},
      {Cut(png, png.size() / 2), "PNG"},
      {corrupt, "PNG"},
      {Cut(jpeg, jpeg.size() * 2 / 3), "JPEG"},
      {{0xFF, 0xD8, 0xFF, 0x00, 0x12, 0x34, 0x56}, "JPEG"},
      {Put(bmp24, 18, 0), "no pixels"},
      {Put(bmp24, 22, 0), "no pixels"},
      {Put(bmp24, 30, 3), "compressed"},
      {hostile::HugePng(), "the picture is 32767 x 32767 = 1073676289 pixels, more than the limit of"},
      {hostile::HugeJpeg(), "--max-pixels N changes the limit"},
      {Put(bmp24, 18, 32768), "too large"},
      {Put(Bmp(4, 4, 1, 2, Grey), 22, 40000), "too large"},
      {Put(Put(bmp24, 18, 100), 22, 100), "holds only"},
      {Cut(Bmp(5, 3, 8, 16, Grey), 54 + 64 + 3 * 8 - 1), "holds only"},
      {Cut(bmp24, 30), "truncated"},
      {Put(Bmp(4, 4, 4, 16, Grey), 46, 17), "colour table"},
      {Put(bmp8, 10, 60), "offset"},
      {Put(bmp8, 30, 1), "compressed"},
      {Put(Bmp(4, 4, 8, 4, Grey), 28, 2, 2), "colour depth"},
      {Put(bmp24, 14, 12), "header size"},
  };
  for (const auto& c : cases) {
    Bytes dib;
    std::string error;
    EXPECT_FALSE(pictrace::LoadImageBytes(c.first.data(), c.first.size(), "bad.img", dib, error)) << c.second;
    EXPECT_EQ(error.rfind("bad.img: ", 0), 0u) << error;
    EXPECT_NE(error.find(c.second), std::string::npos) << error;
  }
}

}  // namespace
