// Bad picture files on the command line: each run ends with a non-zero
// exit and a message naming the file, never with a crash.
#include <gtest/gtest.h>

#include "common/CliRunner.h"
#include "cli/TestFiles.h"

namespace {

using clitest::MakeBmp;
using clitest::PutU32;
using clitest::RunPictrace;
using clitest::TempDir;

unsigned Grey(int x, int row) { return static_cast<unsigned>((x + row) % 16); }
unsigned Orange(int, int) { return 0xFF8000u; }

// A 4 x 4 BMP whose 32-bit header field at `offset` is overwritten by value.
std::vector<unsigned char> Patched(int bits, int colors, unsigned (*fn)(int, int), size_t offset,
                                   std::uint32_t value) {
  auto bmp = MakeBmp(4, 4, bits, colors, fn);
  PutU32(bmp, offset, value);
  return bmp;
}

void ExpectRefused(const TempDir& dir, const std::string& path, const std::string& reason) {
  for (const char* command : {"info", "preview"}) {
    std::vector<std::string> args = {command, path};
    if (std::string(command) == "preview") {
      args.push_back("-o");
      args.push_back(dir.File("never.png"));
    }
    clitest::RunResult r = RunPictrace(dir, args);
    EXPECT_GT(r.exitCode, 0) << command << " " << path;
    EXPECT_FALSE(clitest::SanitizerReported(r)) << r.err;
    EXPECT_NE(r.err.find(path), std::string::npos) << command << ": " << r.err;
    EXPECT_NE(r.err.find(reason), std::string::npos) << command << ": " << r.err;
  }
  EXPECT_FALSE(std::ifstream(dir.File("never.png")).good());
}

TEST(CliErrorsTest, MissingFile) {
  TempDir dir;
  ExpectRefused(dir, dir.File("absent.png"), "cannot open");
}

TEST(CliErrorsTest, EmptyAndUnknownFiles) {
  TempDir dir;
  ExpectRefused(dir, dir.Write("empty.bmp", {}), "empty");
  ExpectRefused(dir, dir.Write("text.png", {'h', 'e', 'l', 'l', 'o'}), "not a PNG, JPEG or BMP");
}

TEST(CliErrorsTest, TruncatedAndCorruptPng) {
  TempDir dir;
  auto png = clitest::MakePng(40, 30, [](int x, int y) { return static_cast<unsigned>(x * 1000 + y); });
  auto truncated = std::vector<unsigned char>(png.begin(), png.begin() + static_cast<long>(png.size() / 2));
  ExpectRefused(dir, dir.Write("truncated.png", truncated), "PNG");
  auto headerOnly = std::vector<unsigned char>(png.begin(), png.begin() + 20);
  ExpectRefused(dir, dir.Write("header.png", headerOnly), "PNG");
  auto corrupt = png;
  for (size_t i = 60; i < corrupt.size() - 20; i++) corrupt[i] ^= 0x5A;  // image data and CRCs
  ExpectRefused(dir, dir.Write("corrupt.png", corrupt), "PNG");
}

TEST(CliErrorsTest, TruncatedAndCorruptJpeg) {
  TempDir dir;
  auto jpeg = clitest::MakeJpeg(64, 48, 0x336699);
  auto truncated = std::vector<unsigned char>(jpeg.begin(), jpeg.begin() + static_cast<long>(jpeg.size() * 2 / 3));
  ExpectRefused(dir, dir.Write("truncated.jpg", truncated), "JPEG");
  std::vector<unsigned char> garbage = {0xFF, 0xD8, 0xFF, 0x00, 0x12, 0x34, 0x56};
  ExpectRefused(dir, dir.Write("garbage.jpg", garbage), "JPEG");
}

TEST(CliErrorsTest, BmpSizesTheEngineCannotHold) {
  TempDir dir;
  auto one = [](int, int) { return 1u; };
  const std::uint32_t minus4 = static_cast<std::uint32_t>(-4);
  ExpectRefused(dir, dir.Write("zero_width.bmp", Patched(24, 0, Orange, 18, 0)), "no pixels");
  ExpectRefused(dir, dir.Write("zero_height.bmp", Patched(24, 0, Orange, 22, 0)), "no pixels");
  ExpectRefused(dir, dir.Write("negative_width.bmp", Patched(24, 0, Orange, 18, minus4)), "no pixels");
  ExpectRefused(dir, dir.Write("top_down.bmp", Patched(24, 0, Orange, 22, minus4)), "top-down");
  ExpectRefused(dir, dir.Write("too_wide.bmp", Patched(24, 0, Orange, 18, 32768)), "too large");
  ExpectRefused(dir, dir.Write("too_tall.bmp", Patched(1, 2, one, 22, 40000)), "too large");
}

TEST(CliErrorsTest, BmpHeadersThatDisagreeWithTheFile) {
  TempDir dir;
  // 100 x 100 claimed, 4 x 4 present.
  auto claimsMore = MakeBmp(4, 4, 24, 0, Orange);
  PutU32(claimsMore, 18, 100);
  PutU32(claimsMore, 22, 100);
  ExpectRefused(dir, dir.Write("claims_more.bmp", claimsMore), "holds only");
  // One byte short of the last row.
  auto shortByOne = MakeBmp(5, 3, 8, 16, Grey);
  shortByOne.pop_back();
  ExpectRefused(dir, dir.Write("short.bmp", shortByOne), "holds only");
  // Cut inside the info header.
  auto cut = MakeBmp(4, 4, 24, 0, Orange);
  cut.resize(30);
  ExpectRefused(dir, dir.Write("cut.bmp", cut), "truncated");
  // A colour table longer than the depth allows.
  ExpectRefused(dir, dir.Write("big_table.bmp", Patched(4, 16, Grey, 46, 17)), "colour table");
  // Pixel offset pointing into the colour table.
  ExpectRefused(dir, dir.Write("bad_offset.bmp", Patched(8, 16, Grey, 10, 60)), "offset");
}

TEST(CliErrorsTest, BmpEncodingsThatAreNotRead) {
  TempDir dir;
  ExpectRefused(dir, dir.Write("rle.bmp", Patched(8, 16, Grey, 30, 1)), "compressed");  // BI_RLE8
  auto twoBit = MakeBmp(4, 4, 8, 4, Grey);
  clitest::PutU16(twoBit, 28, 2);
  ExpectRefused(dir, dir.Write("two_bit.bmp", twoBit), "colour depth");
  // The old 12-byte header.
  ExpectRefused(dir, dir.Write("core.bmp", Patched(24, 0, Orange, 14, 12)), "header size");
}

TEST(CliErrorsTest, EngineRefusalOfSixteenBitPicturesIsReported) {
  // A 16-bit BMP passes the file checks; the engine refuses it with its own
  // message, which the program prints before failing.
  TempDir dir;
  auto bmp = MakeBmp(4, 4, 16, 0, [](int, int) { return 0u; });
  std::string path = dir.Write("sixteen.bmp", bmp);
  clitest::RunResult r = RunPictrace(dir, {"info", path});
  EXPECT_GT(r.exitCode, 0);
  EXPECT_FALSE(clitest::SanitizerReported(r)) << r.err;
  EXPECT_NE(r.err.find("This type of bitmap is not supported"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find(path), std::string::npos) << r.err;
}

TEST(CliErrorsTest, UsageErrors) {
  TempDir dir;
  EXPECT_GT(RunPictrace(dir, {}).exitCode, 0);
  EXPECT_GT(RunPictrace(dir, {"frobnicate"}).exitCode, 0);
  EXPECT_GT(RunPictrace(dir, {"preview", clitest::ProgramPath()}).exitCode, 0);  // no -o
  clitest::RunResult r =
      RunPictrace(dir, {"preview", std::string(PICTRACE_EXAMPLES_DIR) + "/flag_kr.png", "-o",
                dir.File("x.png"), "--width", "0"});
  EXPECT_GT(r.exitCode, 0);
}

TEST(CliErrorsTest, UnwritableOutputIsReportedWithItsName) {
  TempDir dir;
  std::string out = dir.File("no/such/folder/out.png");
  clitest::RunResult r = RunPictrace(dir, {"preview", std::string(PICTRACE_EXAMPLES_DIR) + "/flag_kr.png", "-o", out});
  EXPECT_GT(r.exitCode, 0);
  EXPECT_NE(r.err.find(out), std::string::npos) << r.err;
}

}  // namespace
