// The picture file readers: what reaches the engine from BMP, PNG and JPEG,
// and the files they refuse, each with the file's name and the reason; the
// program on hostile input.
#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>

#include "cli/ImageFile.h"
#include "common/CliRunner.h"
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

// A PNG whose pixel (x, y) (top-down) is rgba(x, y) as 0xRRGGBBAA; sixteen:
// opaque, samples v * 257, no colour-space chunk (libpng's gAMA taken out).
Bytes Png(int width, int height, unsigned (*rgba)(int x, int y), bool sixteen = false) {
  Bytes pixels;
  std::vector<png_uint_16> wide;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++)
      for (int shift = 24; shift >= 0; shift -= 8) {
        pixels.push_back(static_cast<unsigned char>(rgba(x, y) >> shift));
        if (shift) wide.push_back(static_cast<png_uint_16>(pixels.back() * 257));
      }
  png_image image{};
  image.version = PNG_IMAGE_VERSION, image.width = width, image.height = height;
  image.format = sixteen ? PNG_FORMAT_LINEAR_RGB : PNG_FORMAT_RGBA;
  const void* source = sixteen ? static_cast<const void*>(wide.data()) : pixels.data();
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, source, 0, nullptr);
  Bytes out(size);
  png_image_write_to_memory(&image, out.data(), &size, 0, source, 0, nullptr);
  const char gama[] = "gAMA";
  const auto at = std::search(out.begin(), out.begin() + size, gama, gama + 4);
  if (sixteen && at != out.begin() + size) out.erase(at - 4, at + 12), size -= 16;
  return Cut(out, size);
}

// A 16- or 32-bit BMP, 40-byte header, `masks` after it (compression 3 or
// 6); the values of `pixels` share out the stored pixels in order.
Bytes DeepBmp(int w, int h, int bits, std::uint32_t compression, const std::vector<std::uint32_t>& masks,
              const std::vector<std::uint32_t>& pixels) {
  const size_t stride = (w * bits + 31) / 32 * 4, offset = 54 + 4 * masks.size();
  Bytes b(offset + stride * h, 0);
  b = Put(Put(Put(Put(Put(Put(Put(b, 0, 'B' | 'M' << 8, 2), 2, b.size()), 10, offset), 14, 40), 18, w), 22, h), 26, 1 | bits << 16);
  b = Put(b, 30, compression);
  for (size_t i = 0; i < masks.size(); i++) b = Put(b, 54 + 4 * i, masks[i]);
  for (int i = 0; i < w * h; i++) b = Put(b, offset + i / w * stride + i % w * bits / 8, pixels[i * pixels.size() / (w * h)], bits / 8);
  return b;
}

// A 69-byte PNG and a 25-byte JPEG whose headers claim 32767 x 32767 pixels.
const char kHugePng[] = "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x7f\xff\0\0\x7f\xff\x08\x02\0\0\0\xc6\x90\x91\x6a\0\0\0\x0c"
                        "IDAT\x78\xda\x63\x60\x60\x60\0\0\0\x04\0\x01\xc8\xea\xeb\xf9\0\0\0\0IEND\xae\x42\x60\x82";
const Bytes kHugeJpeg = {0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 127, 255, 127, 255, 1, 1, 17, 0, 0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0};

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
unsigned Rgba(int x, int y) { return (x * 0x402000u + y * 0x11u + 0x808080u) << 8 | 0xFF; }

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
  const std::pair<Bytes, Bytes> cases[] = {  // file, first row (blue, green, red); 0x0400 is 32 of 63 green
      {DeepBmp(3, 1, 16, 3, {0xF800, 0x07E0, 0x1F}, {0xF800, 0x0400, 0x001F}), {0, 0, 255, 0, 130, 0, 255, 0, 0}},
      {DeepBmp(3, 1, 32, 6, {0xFF0000, 0xFF00, 0xFF, 0xFF000000u}, {0x00FF0000, 0x80FF0000, 0xFF0000FF}),
       {255, 255, 255, 127, 127, 255, 255, 0, 0}},  // transparent, half, opaque
      {Put(DeepBmp(1, 2, 32, 0, {}, {0xFF0000, 0xFF}), 22, -2u), {255, 0, 0, 0, 0, 0, 255}},  // top-down: first row the top
  };
  BITMAPINFOHEADER h{};
  for (const auto& c : cases) {
    const Bytes dib = Load(c.first, h);
    EXPECT_EQ(Bytes(dib.begin() + 40, dib.begin() + 40 + c.second.size()), c.second);
  }
  // 16-bit samples v * 257 read as v: the colours of the 8-bit picture.
  EXPECT_EQ(Load(Png(5, 3, Rgba, true), h), Load(Png(5, 3, Rgba), h));
  EXPECT_EQ(Load(Png(1, 1, Rgba, true), h)[40], 0x80);
}

// A disk that fills up after the first few bytes of a file.
ssize_t FullDisk(int fd, const void* data, size_t size) { return size < 8 ? (errno = ENOSPC, -1) : ::write(fd, data, 4); }

TEST(ImageFile, AFullDiskLeavesTheOldFileAndNoTemporary) {
  const clitest::TempDir dir;
  const std::string target = dir.Write("old.svg", {'o', 'l', 'd'});
  std::string error;
  pictrace::SetWriteFunction(FullDisk);
  EXPECT_FALSE(pictrace::WriteFileBytes(target, std::string(30, 'x'), error));
  pictrace::SetWriteFunction(nullptr);
  EXPECT_EQ(error, target + ": cannot write the file: No space left on device");
  EXPECT_EQ(clitest::ReadText(target) + std::to_string(std::distance(std::filesystem::directory_iterator(dir.Path()), {})), "old1");
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

// One row per hostile input: the exit code, what the program says (on either
// stream, or in the file it wrote) and the one file it leaves in a folder
// that held the inputs and old.svg, which stays as it was.
TEST(Cli, HostileInputs) {
  const clitest::TempDir d, runner;
  const std::string o = d.Path(), pic = testimg::ExamplePath("monkey_face.png"), t = " -o " + o + "/t.svg";
  const std::string huge = d.Write("huge.png", Bytes(kHugePng, kHugePng + sizeof kHugePng - 1));
  const std::string csv = "name,code,color\r\nRos\xE9,1,#ff0000\r\n", bom = d.Write("bom.csv", {0xEF, 0xBB, 0xBF});
  std::ofstream(bom, std::ios::app) << csv;
  d.Write("old.svg", {'o', 'l', 'd'});
  const struct { std::string args; int exit; std::string says; std::string left; } rows[] = {
      {"trace " + huge + t, 1, huge + ": the picture is 32767 x 32767 = 1073676289 pixels", ""},
      {"lines " + d.Write("huge.jpg", kHugeJpeg) + " --max-pixels 1e9", 1, "limit of 1000000000 pixels; --max-pixels", ""},
      {"trace /dev/zero", 1, "/dev/zero: not a regular file", ""},
      {"trace " + pic + " --threads /dev/zero", 1, "/dev/zero: not a regular file", ""},
      {"trace " + o + t, 1, o + ": is a folder", ""},
      {"trace " + d.Write("16.bmp", DeepBmp(64, 64, 16, 0, {}, {0x4210, 0x7C00})) + " --colors 2" + t, 0, "fill=\"#848484\"", "t.svg"},
      {"trace " + d.Write("32.bmp", DeepBmp(64, 64, 32, 6, {0xFF0000, 0xFF00, 0xFF, 0xFF000000u}, {0xFF, 0xFF0000FFu})) + " --colors 2" + t,
       0, "fill=\"#ffffff\"", "t.svg"},  // half transparent
      {"trace " + d.Write("16.png", Png(64, 64, [](int, int y) { return y < 32 ? 0x808080FFu : 0x2040C0FFu; }, true)) + " --colors 2" + t,
       0, "fill=\"#808080\"", "t.svg"},
      {"trace " + pic + " --threads " + bom + t, 0, "fill=\"#ff0000\"", "t.svg"},
      {"trace " + pic + " --threads " + d.Write("latin1.csv", Bytes(csv.begin(), csv.end())) + " -o /dev/null --json " + o + "/t.json", 0,
       "Ros\uFFFD", "t.json"},
      {"trace " + pic + " --tolerance nan", 105, "--tolerance: expected a number from 0.01 to 50, not nan", ""},
      {"lines " + pic + " --colors inf", 105, "--colors: Value inf not in range", ""},
      {"preview " + pic + " -o " + o + "/t.png --height nan", 105, "--height: Value nan not in range", ""},
      {"preview " + pic + " -o " + o + "/t.png --width 2000 --height 501 --max-pixels 1e6", 1, "more than the limit of 1000000 pixels", ""},
      {"info " + pic + " --max-pixels inf", 105, "--max-pixels: expected a number from 1 to 1073676289, not inf", ""},
      {"lines " + pic + " --json -", 1, "the SVG and the JSON cannot both go to standard output", ""},
      {"trace " + pic + " -o " + o, 1, o + ": cannot write the file: it is a folder", ""},
      {"trace " + pic + " -o " + o + "/old.svg/t.svg", 1, "old.svg/t.svg: cannot write the file: Not a directory", ""},
      {"trace " + pic + " -o /dev/full", 1, "/dev/full: cannot write the file: No space left on device", ""},
  };
  auto names = [&o]() { std::set<std::string> n; for (const auto& e : std::filesystem::directory_iterator(o)) n.insert(e.path().filename()); return n; };
  const std::set<std::string> inputs = names();
  for (const auto& row : rows) {
    auto r = clitest::RunPictraceLine(runner, row.args);
    std::set<std::string> left = names(), expected = inputs;
    if (!row.left.empty()) expected.insert(row.left), r.out += clitest::ReadText(o + "/" + row.left), std::remove((o + "/" + row.left).c_str());
    EXPECT_TRUE(r.exitCode == row.exit && (r.out + r.err).find(row.says) != std::string::npos && left == expected &&
                clitest::ReadText(o + "/old.svg") == "old") << row.args << "\n" << r.exitCode << " " << r.err;
  }
}

}  // namespace
