// The trace and lines commands run as a program on the examples, against a
// host that drives the engine itself and writes through the same writers:
// every option must reach the engine as the host hands it over, and the
// regions must tile the picture. Then refusals and failed writes.
#include <gtest/gtest.h>

#include <functional>

#include "Pictrace.h"
#include "PictraceLineArt.h"
#include "cli/ImageFile.h"
#include "cli/Writers.h"
#include "common/CliRunner.h"
#include "common/TestImages.h"
#include "pipeline/RegionRaster.h"

namespace {

using clitest::ReadText;
using clitest::RunResult;
using pictrace::OutputDocument;

const clitest::TempDir& Dir() {
  static const clitest::TempDir dir;
  return dir;
}
std::string Out(const std::string& name) { return Dir().File(name); }
RunResult Pictrace(const std::string& args) { return clitest::RunPictraceLine(Dir(), args); }

// A host's trace of an example: 8 colours, one unit per pixel; `mark` runs
// between the segmentation and the output, as a user's clicks would.
struct Host {
  CPictrace engine;
  OutputDocument doc;
  Host(const std::string& name, bool bNoRetry = false, unsigned char* pMask = nullptr,
       const std::function<void(CPictrace&)>& mark = nullptr) {
    std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath(name));
    EXPECT_TRUE(engine.SetDIBData(dib.data()));
    engine.SetImageRealRect(0, 0, engine.m_bmiHeader.biWidth, engine.m_bmiHeader.biHeight);
    CDWordArray colors;
    engine.DoSegmentation(8, &colors, 1.0, bNoRetry, pMask ? &pMask : nullptr);
    delete[] pMask;
    if (mark) mark(engine);
    pictrace::TakeFrame(doc, engine, testimg::ExamplePath(name));
    pictrace::TakeRegions(doc, engine, {});
  }
  std::string Svg() { return pictrace::FormatSvg(doc, engine); }
  std::string Json() { return pictrace::FormatJson(doc, engine); }
};

class TraceExample : public ::testing::TestWithParam<const char*> {};

TEST_P(TraceExample, MatchesTheHostAndTilesThePicture) {
  const std::string base = Out(testimg::ParamName(GetParam()));
  RunResult r = Pictrace("trace " + testimg::ExamplePath(GetParam()) + " -o " + base + ".svg --json " + base +
                    ".json --preview " + base + ".png");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find("regions in"), std::string::npos);
  Host host(GetParam());
  EXPECT_TRUE(ReadText(base + ".svg") == host.Svg());
  EXPECT_TRUE(ReadText(base + ".json") == host.Json());
  EXPECT_TRUE(ReadText(base + ".png") == pictrace::FormatPng(host.doc, host.engine));
  pipetest::Coverage cov = pipetest::RasterizeRegions(host.doc.regions, host.doc.imageWidth, host.doc.imageHeight);
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);
}

INSTANTIATE_TEST_SUITE_P(Examples, TraceExample,
                         ::testing::Values("monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png", "astronaut.png"),
                         [](const auto& info) { return testimg::ParamName(info.param); });

TEST(TraceCli, MarksAndDroppedBackgroundLeaveRegionsOut) {
  // (400, 250) from the top is in the red upper half of the flag's circle;
  // the engine's rows run bottom-up. The blue half, marked twice, stays in.
  RunResult r = Pictrace("trace " + testimg::ExamplePath("flag_kr.png") + " -o " + Out("marked.svg") +
                         " --drop-background --mark 400,250 --mark 400,350 --mark 400,350");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  Host plain("flag_kr.png");
  Host host("flag_kr.png", false, nullptr, [](CPictrace& e) {
    e.MarkBackground();
    EXPECT_TRUE(e.MarkRegion(400, 599 - 250, 0));
  });
  EXPECT_TRUE(ReadText(Out("marked.svg")) == host.Svg());
  EXPECT_LT(host.doc.regions.m_nRegions, plain.doc.regions.m_nRegions - 1);
}

TEST(TraceCli, BlackMaskPixelsAreExcludedInTheEnginesRowOrder) {
  const int w = 300, h = 263;
  auto inBlock = [](int x, int row) { return x >= 165 && x < 210 && row >= 135 && row < 185; };
  std::vector<unsigned char> rows(static_cast<size_t>(w) * 3 * h, 255);
  unsigned char* pMask = new unsigned char[w * h]();
  for (int row = 0; row < h; row++)
    for (int x = 0; x < w; x++)
      if (inBlock(x, row)) {
        pMask[row * w + x] = 2;
        for (int c = 0; c < 3; c++) rows[(static_cast<size_t>(h - 1 - row) * w + x) * 3 + c] = 0;
      }
  std::string error;
  ASSERT_TRUE(pictrace::WritePng(Out("mask.png"), rows.data(), w, h, w * 3, error)) << error;
  RunResult r = Pictrace("trace " + testimg::ExamplePath("monkey_face.png") + " --no-retry --mask " + Out("mask.png"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  Host masked("monkey_face.png", true, pMask), plain("monkey_face.png", true);
  EXPECT_TRUE(r.out == masked.Svg());
  EXPECT_LT(masked.doc.regions.m_nRegions, plain.doc.regions.m_nRegions);  // the eye is gone
}

TEST(TraceCli, SizeThreadsCurvesBackgroundAndDenoiseShapeTheOutput) {
  const std::string flag = testimg::ExamplePath("flag_kr.png"), table = std::string(PICTRACE_EXAMPLES_DIR) + "/../threads/pec-64.csv";
  RunResult r = Pictrace("trace " + flag + " -o " + Out("big.svg") + " --size 1600x1200 --curves --background " + Out("bg.svg"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find("; 1 background regions -> " + Out("bg.svg")), std::string::npos) << r.out;
  const std::string svg = ReadText(Out("big.svg")), bg = ReadText(Out("bg.svg"));
  EXPECT_NE(svg.find("viewBox=\"0 0 1600 1200\""), std::string::npos);
  EXPECT_NE(svg.find("C1"), std::string::npos);  // curves in output units
  EXPECT_EQ(bg.find("<path", bg.find("<path") + 1), std::string::npos);  // one white frame region
  EXPECT_NE(bg.find("fill=\"#f"), std::string::npos);
  EXPECT_GT(std::count(bg.begin(), bg.end(), 'Z'), 5);  // with the emblem and bars as holes

  r = Pictrace("trace " + testimg::ExamplePath("monkey_face.png") + " -o " + Out("t.svg") + " --threads " + table +
          " --thread-mode 2 --json " + Out("t.json"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  const std::string json = ReadText(Out("t.json"));
  EXPECT_EQ(json.find("\"name\":null"), std::string::npos);  // every thread named from the table
  EXPECT_NE(json.find("\"threadColors\":[{\"code\":\""), std::string::npos);

  r = Pictrace("trace " + testimg::ExamplePath("astronaut.png") + " --denoise 3000");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_FALSE(r.out == Host("astronaut.png").Svg());
}

TEST(LinesCli, CentreLinesWithTheirTreeLinks) {
  const std::string mug = testimg::ExamplePath("mug.png");
  RunResult r = Pictrace("lines " + mug + " -o " + Out("mug.svg") + " --json " + Out("mug.json") + " --preview " + Out("mug.png"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find(" line colours, 679 x 800 pixels"), std::string::npos) << r.out;
  for (const std::vector<COLORREF>& wanted : {std::vector<COLORREF>{}, {RGB(0x11, 0x11, 0x11)}}) {
    CPictrace engine;
    std::vector<unsigned char> dib = testimg::LoadDib(mug);
    ASSERT_TRUE(engine.SetDIBData(dib.data()));
    engine.SetImageRealRect(0, 0, 679, 800);
    pictrace::thinline::LineArtOptions options;
    options.lineColors = wanted;
    pictrace::thinline::LineArtResult result;
    std::string error;
    ASSERT_TRUE(pictrace::thinline::RunLineArt(engine, options, result, error)) << error;
    OutputDocument doc;
    pictrace::TakeFrame(doc, engine, mug);
    pictrace::TakeLines(doc, engine);
    doc.hasBackground = result.bBackground;
    doc.background = result.crBackground;
    ASSERT_GT(doc.lines.m_nThinLines, 5);
    if (!wanted.empty()) {
      r = Pictrace("lines " + mug + " -o " + Out("l.svg") + " --line-color '#111111' --json -");
      ASSERT_EQ(r.exitCode, 0) << r.err;
      EXPECT_TRUE(r.out == pictrace::FormatJson(doc, engine));
      continue;
    }
    EXPECT_TRUE(ReadText(Out("mug.svg")) == pictrace::FormatSvg(doc, engine));
    EXPECT_TRUE(ReadText(Out("mug.json")) == pictrace::FormatJson(doc, engine));
    EXPECT_TRUE(ReadText(Out("mug.png")) == pictrace::FormatPng(doc, engine));
    EXPECT_NE(r.out.find("from " + std::to_string(result.nSkeletonPixels) + " skeleton pixels"), std::string::npos);
  }
}

TEST(Cli, BadInputAndFailedWritesExitWithAMessage) {
  const std::string pic = testimg::ExamplePath("monkey_face.png"), dir = Dir().Path();
  Dir().Write("bad.csv", {'R', ',', '1', ',', '#', 'f', 'f', '0', '0', '0', '0', '\n', 'G', ';', '2', '\n'});
  Dir().Write("nopic.png", {'h', 'i'});
  Dir().Write("sixteen.bmp", [] {
    std::vector<unsigned char> b(54 + 32, 0);
    b[0] = 'B', b[1] = 'M', b[10] = 54, b[14] = 40, b[18] = 4, b[22] = 4, b[26] = 1, b[28] = 16;
    return b;
  }());
  const struct {
    std::string args, message;
  } cases[] = {
      {"info " + dir + "/missing.png", dir + "/missing.png: cannot open"},
      {"preview " + dir + "/nopic.png -o " + dir + "/x.png", dir + "/nopic.png: not a PNG, JPEG or BMP"},
      {"info " + dir + "/sixteen.bmp", "This type of bitmap is not supported"},
      {"info " + dir + "/sixteen.bmp", dir + "/sixteen.bmp: the engine refused"},
      {"lines " + dir + "/nopic.png", "nopic.png"},
      {"trace " + pic + " --mask " + dir + "/x.svg", "x.svg"},
      {"trace " + pic + " --mask " + testimg::ExamplePath("flag_kr.png"), "the mask is 800 x 600 pixels, the picture 300 x 263"},
      {"trace " + pic + " --threads " + dir + "/bad.csv", "bad.csv:2: expected 3 fields"},
      {"trace " + pic + " --colors 0", "--colors"},
      {"trace " + pic + " --size 0x100", "--size 0x100: width and height must be between 1 and 1000000"},
      {"trace " + pic + " --size 1000001x5", "must be between 1 and"},
      {"trace " + pic + " --size 10x", "--size 10x: expected WIDTHxHEIGHT"},
      {"trace " + pic + " --tolerance 0", "--tolerance"},
      {"trace " + pic + " --sensitivity 101", "--sensitivity"},
      {"trace " + pic + " --denoise nan", "--denoise: expected a number 0 or larger"},
      {"trace " + pic + " --mark 3x4", "--mark 3x4: expected X,Y"},
      {"trace " + pic + " --mark 300,0", "--mark 300,0: outside the 300 x 263 picture"},
      {"trace " + pic + " --json -", "the SVG and the JSON cannot both go to standard output"},
      {"lines " + pic + " --line-color red", "--line-color red: expected #rrggbb"},
      {"trace " + pic + " -o " + dir + "/no/x.svg", dir + "/no/x.svg: cannot write"},
      {"trace " + pic + " -o /dev/full", "/dev/full: cannot write"},
      {"trace " + pic + " -o " + dir + "/y.svg --preview /dev/full", "/dev/full: cannot write"},
      {"trace " + pic + " -o " + dir + "/y.svg --background /dev/full", "/dev/full: cannot write"},
      {"lines " + testimg::ExamplePath("mug.png") + " -o " + dir + "/y.svg --json /dev/full", "/dev/full: cannot write"},
      {"preview " + pic + " -o /dev/full", "/dev/full: cannot write"},
  };
  for (const auto& c : cases) {
    RunResult r = Pictrace(c.args);
    EXPECT_GT(r.exitCode, 0) << c.args;
    EXPECT_LT(r.exitCode, 128) << c.args;  // an exit, not a signal
    EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
  }
}

TEST(Cli, InfoPreviewAndTheProgressBar) {
  RunResult r = Pictrace("info " + testimg::ExamplePath("monkey_face-4bpp.bmp"));
  EXPECT_NE(r.out.find("file image: 300 x 263 pixels, 4 bits per pixel (16 colours)\nloaded image: 300 x 263 pixels, 24 bits"),
            std::string::npos) << r.out;
  ASSERT_EQ(Pictrace("preview " + testimg::ExamplePath("flag_kr.png") + " -o " + Out("p.png")).exitCode, 0);
  ASSERT_EQ(Pictrace("preview " + testimg::ExamplePath("flag_kr.png") + " -o " + Out("q.png") + " --width 150 --height 100").exitCode, 0);
  EXPECT_EQ(testimg::LoadDib(Out("p.png")), testimg::LoadDib(testimg::ExamplePath("flag_kr.png")));
  const std::vector<unsigned char> small = testimg::LoadDib(Out("q.png"));
  ASSERT_GE(small.size(), 40u);
  EXPECT_EQ(reinterpret_cast<const BITMAPINFOHEADER*>(small.data())->biWidth, 150);
  EXPECT_EQ(reinterpret_cast<const BITMAPINFOHEADER*>(small.data())->biHeight, 100);

  const std::string args = "trace " + testimg::ExamplePath("monkey_face.png") + " -o " + Out("progress.svg");
  EXPECT_EQ(Pictrace(args).err.find("tracing ["), std::string::npos);
  if (std::system("command -v script >/dev/null 2>&1") != 0) GTEST_SKIP() << "no script(1)";
  // script(1) runs the program on a pseudo-terminal and copies what it shows.
  ASSERT_EQ(std::system(("script -qec \"" + clitest::ProgramPath() + " " + args + "\" /dev/null >" + Out("tty.txt")).c_str()), 0);
  EXPECT_NE(ReadText(Out("tty.txt")).find("\rtracing [##############################] 100%"), std::string::npos);
}

}  // namespace
