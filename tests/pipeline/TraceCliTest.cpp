// The commands run as a program on the examples against a host that drives the
// engine itself and writes through the same writers; refusals and failed writes.
#include <gtest/gtest.h>
#include <functional>

#include "PictraceLineArt.h"
#include "cli/ImageFile.h"
#include "cli/Writers.h"
#include "common/CliRunner.h"
#include "common/TestImages.h"
#include "pipeline/RegionRaster.h"

namespace {

using clitest::ReadText;

const clitest::TempDir& Dir() {
  static const clitest::TempDir dir;
  return dir;
}
std::string Out(const std::string& name) { return Dir().File(name); }
std::string In(const std::string& name) { return testimg::ExamplePath(name); }
clitest::RunResult Pictrace(const std::string& args) { return clitest::RunPictraceLine(Dir(), args); }

// A host's trace in 8 colours, 1 unit per pixel; `mark` acts as a user's clicks.
struct Host {
  CPictrace engine;
  pictrace::OutputDocument doc;
  explicit Host(const std::string& name, bool bNoRetry = false, std::vector<int>* pMask = nullptr,
                const std::function<void(CPictrace&)>& mark = nullptr) {
    std::vector<unsigned char> dib = testimg::LoadDib(In(name));
    EXPECT_TRUE(engine.SetDIBData(dib.data()));
    engine.SetImageRealRect(0, 0, engine.m_bmiHeader.biWidth, engine.m_bmiHeader.biHeight);
    engine.SetMASKData(pMask ? pMask->data() : nullptr);
    CDWordArray colors;
    engine.DoSegmentation(8, &colors, 1.0, bNoRetry, nullptr);
    if (mark) mark(engine);
    pictrace::TakeFrame(doc, engine, In(name));
    pictrace::TakeRegions(doc, engine, {});
  }
  std::string Svg() { return pictrace::FormatSvg(doc, engine); }
};

class TraceExample : public ::testing::TestWithParam<const char*> {};

TEST_P(TraceExample, MatchesTheHostAndTilesThePicture) {
  const std::string out = Out(testimg::ParamName(GetParam()));
  auto r = Pictrace("trace " + In(GetParam()) + " -o " + out + ".svg --json " + out + ".json --preview " + out + ".png");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  Host host(GetParam());
  EXPECT_TRUE(ReadText(out + ".svg") + ReadText(out + ".json") + ReadText(out + ".png") ==
              host.Svg() + pictrace::FormatJson(host.doc, host.engine) + pictrace::FormatPng(host.doc, host.engine));
  const int w = host.doc.imageWidth, h = host.doc.imageHeight;
  auto cov = pipetest::RasterizeRegions(host.doc.regions, w, h);
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);
  // Nearly every pixel lies in a region of the colour the segmentation painted
  // there (the reduced outlines cut a few border pixels).
  int wrongColour = 0;
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) {
      const int owner = cov.owner[y * w + x];
      wrongColour += owner < 0 || host.engine.m_arrColorList[host.doc.regions.m_pRegions[owner].m_nColorIndex - 1] !=
                                      testimg::PixelAt(host.engine.m_pWorkBits, w, x, h - 1 - y);
    }
  EXPECT_LT(wrongColour, w * h / 40);
}

INSTANTIATE_TEST_SUITE_P(Examples, TraceExample,
                         ::testing::Values("monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png", "astronaut.png", "mug.png"),
                         [](const auto& info) { return testimg::ParamName(info.param); });

TEST(TraceCli, MarksMasksAndOptionsReachTheEngine) {
  // (400, 250) from the top is in the red upper half of the flag's circle,
  // the engine's rows run bottom-up; the blue half, marked twice, stays in.
  auto r = Pictrace("trace " + In("flag_kr.png") + " --drop-background --mark 400,250 --mark 400,350 --mark 400,350");
  Host plain("flag_kr.png"), marked("flag_kr.png", false, nullptr, [](CPictrace& e) {
    e.MarkBackground();
    EXPECT_TRUE(e.MarkRegion(400, 599 - 250, 0));
  });
  EXPECT_TRUE(r.exitCode == 0 && r.out == marked.Svg()) << r.err;
  EXPECT_LT(marked.doc.regions.m_nRegions, plain.doc.regions.m_nRegions - 1);
  // A black block in a white mask: excluded pixels (2) in the engine's host mask, on every pass.
  const int w = 300, h = 263;
  std::vector<unsigned char> rows(w * 3 * h, 255);
  std::vector<int> mask(w * h, 0);
  for (int row = 135; row < 185; row++)
    for (int x = 165; x < 210; x++) {
      mask[row * w + x] = 2;
      for (int c = 0; c < 3; c++) rows[((h - 1 - row) * w + x) * 3 + c] = 0;
    }
  std::string error;
  ASSERT_TRUE(pictrace::WritePng(Out("mask.png"), rows.data(), w, h, w * 3, error)) << error;
  r = Pictrace("trace " + In("monkey_face.png") + " --mask " + Out("mask.png"));
  Host masked("monkey_face.png", false, &mask), unmasked("monkey_face.png");
  EXPECT_TRUE(r.exitCode == 0 && r.out == masked.Svg()) << r.err;
  EXPECT_LT(masked.doc.regions.m_nRegions, unmasked.doc.regions.m_nRegions);  // the eye is gone
  r = Pictrace("trace " + In("flag_kr.png") + " -o " + Out("big.svg") + " --size 1600x1200 --curves --background " +
               Out("bg.svg") + " --threads " + PICTRACE_EXAMPLES_DIR + "/../threads/pec-64.csv --thread-mode 2 --json " + Out("t.json"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.err.find("; 1 background regions -> " + Out("bg.svg")), std::string::npos) << r.err;
  const std::string svg = ReadText(Out("big.svg")), bg = ReadText(Out("bg.svg")), json = ReadText(Out("t.json"));
  EXPECT_NE(svg.find("viewBox=\"0 0 1600 1200\">\n<g id=\"color-1\" fill=\"#f0f0f0\""), std::string::npos);  // White
  EXPECT_NE(svg.find("C1"), std::string::npos);  // curves, in output units
  EXPECT_EQ(bg.find("<path", bg.find("<path") + 1), std::string::npos);  // one frame region
  EXPECT_GT(std::count(bg.begin(), bg.end(), 'Z'), 5);  // with the emblem and bars as holes
  EXPECT_NE(json.find("\"threadColors\":[{\"code\":\"29\",\"color\":\"#f0f0f0\",\"name\":\"White\"},"), std::string::npos);
  EXPECT_NE(json.find("\"name\":\"Cornflower Blue\""), std::string::npos);  // RGB distance (hue distance: Magenta)
  EXPECT_FALSE(Pictrace("trace " + In("astronaut.png") + " --denoise 3000").out == Host("astronaut.png").Svg());
}

TEST(LinesCli, CentreLinesMatchTheLibrarysLineArtJob) {
  auto r = Pictrace("lines " + In("mug.png") + " -o " + Out("l.svg") + " --json " + Out("l.json") + " --preview " +
                    Out("l.png") + " --line-color '#111111'");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  CPictrace engine;
  std::vector<unsigned char> dib = testimg::LoadDib(In("mug.png"));
  engine.SetDIBData(dib.data());
  engine.SetImageRealRect(0, 0, 679, 800);
  pictrace::thinline::LineArtOptions options;
  options.lineColors = {RGB(0x11, 0x11, 0x11)};
  pictrace::thinline::LineArtResult result;
  std::string error;
  ASSERT_TRUE(pictrace::thinline::RunLineArt(engine, options, result, error)) << error;
  pictrace::OutputDocument doc;
  pictrace::TakeFrame(doc, engine, In("mug.png"));
  pictrace::TakeLines(doc, engine);
  doc.hasBackground = result.bBackground, doc.background = result.crBackground;
  EXPECT_GT(doc.lines.m_nThinLines, 5);
  EXPECT_TRUE(ReadText(Out("l.svg")) + ReadText(Out("l.json")) + ReadText(Out("l.png")) ==
              pictrace::FormatSvg(doc, engine) + pictrace::FormatJson(doc, engine) + pictrace::FormatPng(doc, engine));
  EXPECT_NE(r.err.find("(from " + std::to_string(result.nSkeletonPixels) + " skeleton pixels) in 1 line colours, 679 x 800"),
            std::string::npos) << r.out;
}

TEST(Cli, BadInputAndFailedWritesExitWithAMessageNamingTheFile) {
  const std::string pic = In("monkey_face.png"), dir = Dir().Path();
  Dir().Write("bad.csv", {'R', ',', '1', ',', '#', 'f', 'f', '0', '0', '0', '0', '\n', 'G', ';', '2', '\n'});
  Dir().Write("nopic.png", {'h', 'i'});
  const std::pair<std::string, std::string> cases[] = {
      {"info " + dir + "/missing.png", dir + "/missing.png: cannot open"},
      {"preview " + dir + "/nopic.png -o " + dir + "/x.png", dir + "/nopic.png: not a PNG, JPEG or BMP"},
      {"trace " + pic + " --mask " + dir + "/nopic.png", "nopic.png"},
      {"trace " + pic + " --mask " + In("flag_kr.png"), "the mask is 800 x 600 pixels, the picture 300 x 263"},
      {"trace " + pic + " --threads " + dir + "/bad.csv", "bad.csv:2: expected 3 fields"},
      {"trace " + pic + " --size 0x100", "--size 0x100: width and height must be between 1 and 1000000"},
      {"trace " + pic + " --size 1000001x5", "must be between 1 and"},
      {"trace " + pic + " --size 10x", "--size 10x: expected WIDTHxHEIGHT"},
      {"trace " + pic + " --denoise nan", "--denoise: expected a number 0 or larger"},
      {"trace " + pic + " --mark 3x4", "--mark 3x4: expected X,Y"},
      {"trace " + pic + " --mark 300,0", "--mark 300,0: outside the 300 x 263 picture"},
      {"trace " + pic + " --json -", "the SVG and the JSON cannot both go to standard output"},
      {"lines " + pic + " --line-color red", "--line-color red: expected #rrggbb"},
      {"trace " + pic + " -o " + dir + "/none/y.svg", "/none/y.svg: cannot write the file: No such file or directory"},
      {"trace " + pic + " -o " + dir + "/y.svg --preview /dev/full", "/dev/full: cannot write"},
      {"trace " + pic + " -o " + dir + "/y.svg --background /dev/full", "/dev/full: cannot write"},
      {"lines " + In("mug.png") + " -o " + dir + "/y.svg --json /dev/full", "/dev/full: cannot write"},
      {"preview " + pic + " -o /dev/full", "/dev/full: cannot write"},
      {"preview " + pic + " -o " + dir + "/w.png --width 32768 --height 5", "--width: Value 32768 not in range 1 to 32767"},
      {"preview " + pic + " -o " + dir + "/w.png --width 5 --height 32768", "--height: Value 32768 not in range 1 to 32767"},
  };
  for (const auto& c : cases) {
    auto r = Pictrace(c.first);
    EXPECT_GT(r.exitCode, 0) << c.first;
    EXPECT_LT(r.exitCode, 128) << c.first;  // an exit, not a signal
    EXPECT_NE(r.err.find(c.second), std::string::npos) << c.first << "\n" << r.err;
  }
}

TEST(Cli, InfoPreviewAndTheProgressBar) {
  EXPECT_NE(Pictrace("info " + In("monkey_face-4bpp.bmp"))
                .out.find("image: 300 x 263 pixels, 4 bits per pixel (16 colours)\nloaded image: 300 x 263 pixels, 24 bits"),
            std::string::npos);
  Pictrace("preview " + In("flag_kr.png") + " -o " + Out("p.png"));
  EXPECT_EQ(testimg::LoadDib(Out("p.png")), testimg::LoadDib(In("flag_kr.png")));
  EXPECT_NE(std::system((clitest::ProgramPath() + " info " + In("flag_kr.png") + " >/dev/full 2>/dev/null").c_str()), 0);
  Pictrace("preview " + In("flag_kr.png") + " -o " + Out("q.png") + " --width 150 --height 99");
  EXPECT_EQ(testimg::LoadDib(Out("q.png")).size(), 40u + 99u * 452u);
  const std::string args = "trace " + In("monkey_face.png") + " -o " + Out("progress.svg");
  EXPECT_EQ(Pictrace(args).err.find("tracing ["), std::string::npos);
  // script(1) runs the program on a pseudo-terminal and copies what it shows.
  if (std::system("command -v script >/dev/null 2>&1") != 0) GTEST_SKIP() << "no script(1)";
  ASSERT_EQ(std::system(("script -qec \"" + clitest::ProgramPath() + " " + args + "\" /dev/null >" + Out("tty")).c_str()), 0);
  EXPECT_NE(ReadText(Out("tty")).find("\rtracing [##############################] 100%"), std::string::npos);
}

}  // namespace
