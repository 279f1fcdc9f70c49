// The trace command's --denoise and --background options, run as a program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <regex>

#include "common/CliRunner.h"
#include "cli/ImageFile.h"
#include "common/TestImages.h"

namespace {

int CountPaths(const std::string& svg) {
  int n = 0;
  for (size_t at = svg.find("<path"); at != std::string::npos; at = svg.find("<path", at + 1)) n++;
  return n;
}

}  // namespace

TEST(BackgroundCli, WritesTheBackgroundOfClipArt) {
  clitest::TempDir dir;
  auto r = clitest::RunPictrace(dir, {"trace", testimg::ExamplePath("flag_kr.png"), "-o",
                                      dir.File("out.svg"), "--background", dir.File("bg.svg")});
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_FALSE(clitest::SanitizerReported(r));
  EXPECT_NE(r.out.find("; 1 background regions -> "), std::string::npos) << r.out;
  std::string svg = clitest::ReadText(dir.File("bg.svg"));
  // One white region: the frame, with the emblem and the bars as holes,
  // so its path holds many closed outlines.
  ASSERT_EQ(CountPaths(svg), 1);
  std::smatch m;
  ASSERT_TRUE(std::regex_search(svg, m, std::regex("fill=\"#([0-9a-f]{6})\"")));
  EXPECT_EQ(m[1].str().substr(0, 1), "f");
  EXPECT_GT(std::count(svg.begin(), svg.end(), 'Z'), 5);
}

TEST(BackgroundCli, PictureWithoutAFrameGivesAnEmptyBackground) {
  // The mask leaves out a 4-pixel border, so no region reaches into the
  // 2-pixel frame margins of a 40 x 40 picture (one clustering pass: the
  // retries run without the mask).
  clitest::TempDir dir;
  auto pic = testimg::MakeDib24(40, 40, [](int x, int y) {
    return (x >= 10 && x < 30 && y >= 10 && y < 30) ? RGB(200, 0, 0) : RGB(255, 255, 255);
  });
  std::vector<unsigned char> maskBits(40 * 120);
  for (int y = 0; y < 40; y++)
    for (int x = 0; x < 40; x++) {
      unsigned char v = (x < 4 || y < 4 || x > 35 || y > 35) ? 0 : 255;
      for (int c = 0; c < 3; c++) maskBits[y * 120 + 3 * x + c] = v;
    }
  std::string error;
  ASSERT_TRUE(pictrace::WritePng(dir.File("mask.png"), maskBits.data(), 40, 40, 120, error)) << error;
  std::string picPath = dir.Write("pic.bmp", [&] {
    // A BMP file: 14-byte file header, then the packed DIB.
    std::vector<unsigned char> f(14, 0);
    f[0] = 'B';
    f[1] = 'M';
    uint32_t size = static_cast<uint32_t>(14 + pic.size()), offset = 54;
    std::memcpy(&f[2], &size, 4);
    std::memcpy(&f[10], &offset, 4);
    f.insert(f.end(), pic.begin(), pic.end());
    return f;
  }());
  auto r = clitest::RunPictrace(dir, {"trace", picPath, "-o", dir.File("out.svg"), "--mask",
                                      dir.File("mask.png"), "--background", dir.File("bg.svg"), "--no-retry"});
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find("trace: 2 regions"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("; 0 background regions -> "), std::string::npos) << r.out;
  EXPECT_EQ(CountPaths(clitest::ReadText(dir.File("bg.svg"))), 0);
  EXPECT_NE(clitest::ReadText(dir.File("bg.svg")).find("<svg"), std::string::npos);
}

TEST(BackgroundCli, DenoiseSmoothsBeforeSegmentingAndRefusesBadLambdas) {
  clitest::TempDir dir;
  const std::string photo = testimg::ExamplePath("astronaut.png");
  auto plain = clitest::RunPictrace(dir, {"trace", photo, "-o", dir.File("plain.svg")});
  auto smooth = clitest::RunPictrace(dir, {"trace", photo, "-o", dir.File("smooth.svg"), "--denoise", "3000"});
  ASSERT_EQ(plain.exitCode, 0) << plain.err;
  ASSERT_EQ(smooth.exitCode, 0) << smooth.err;
  EXPECT_NE(clitest::ReadText(dir.File("plain.svg")), clitest::ReadText(dir.File("smooth.svg")));

  for (const char* bad : {"-1", "nan", "inf", "strong"}) {
    auto r = clitest::RunPictrace(dir, {"trace", photo, "-o", dir.File("x.svg"), "--denoise", bad});
    EXPECT_NE(r.exitCode, 0) << bad;
    EXPECT_FALSE(clitest::SanitizerReported(r));
    EXPECT_NE(r.err.find("--denoise: expected a number 0 or larger"), std::string::npos) << r.err;
  }
}
