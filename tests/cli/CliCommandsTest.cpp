// info and preview on the bundled examples.
#include <gtest/gtest.h>

#include <cstring>

#include "Pictrace.h"
#include "common/CliRunner.h"
#include "cli/ImageFile.h"

namespace {

using clitest::RunPictrace;
using clitest::TempDir;

std::string Example(const char* name) { return std::string(PICTRACE_EXAMPLES_DIR) + "/" + name; }

BITMAPINFOHEADER ReadHeader(const std::string& path) {
  std::vector<unsigned char> dib;
  std::string error;
  BITMAPINFOHEADER h{};
  if (pictrace::LoadImageFile(path, dib, error)) std::memcpy(&h, dib.data(), 40);
  else ADD_FAILURE() << error;
  return h;
}

TEST(CliCommandsTest, InfoReportsTheFileAndTheLoadedImage) {
  TempDir dir;
  clitest::RunResult r = RunPictrace(dir, {"info", Example("monkey_face-4bpp.bmp")});
  EXPECT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find("300 x 263 pixels, 4 bits per pixel (16 colours)"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("loaded image: 300 x 263 pixels, 24 bits per pixel"), std::string::npos) << r.out;

  r = RunPictrace(dir, {"info", Example("flag_kr.png")});
  EXPECT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find("800 x 600 pixels, 24 bits per pixel"), std::string::npos) << r.out;
}

TEST(CliCommandsTest, PreviewWritesAPngOfTheRequestedSize) {
  TempDir dir;
  std::string out = dir.File("monkey.png");
  clitest::RunResult r =
      RunPictrace(dir, {"preview", Example("monkey_face-4bpp.bmp"), "-o", out, "--width", "150", "--height", "100"});
  ASSERT_EQ(r.exitCode, 0) << r.err;
  BITMAPINFOHEADER h = ReadHeader(out);
  EXPECT_EQ(h.biWidth, 150);
  EXPECT_EQ(h.biHeight, 100);
}

TEST(CliCommandsTest, UnscaledPreviewHasThePicturesPixels) {
  // Same size: the preview is the picture itself (bottom-up in both DIBs).
  TempDir dir;
  std::string out = dir.File("flag.png");
  clitest::RunResult r = RunPictrace(dir, {"preview", Example("flag_kr.png"), "-o", out});
  ASSERT_EQ(r.exitCode, 0) << r.err;
  std::vector<unsigned char> a, b;
  std::string error;
  ASSERT_TRUE(pictrace::LoadImageFile(Example("flag_kr.png"), a, error)) << error;
  ASSERT_TRUE(pictrace::LoadImageFile(out, b, error)) << error;
  ASSERT_EQ(a.size(), b.size());
  EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size()), 0);
}

}  // namespace
