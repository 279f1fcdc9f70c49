// The trace subcommand run as a program: outputs on the examples, the options
// that shape them, and refusals of bad input.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>

#include "cli/ImageFile.h"
#include "common/CliRunner.h"
#include "common/TestImages.h"
#include "pipeline/RegionRaster.h"

namespace {

using clitest::RunResult;

const clitest::TempDir& Dir() {
  static const clitest::TempDir dir;
  return dir;
}
std::string TempDir() { return Dir().Path(); }
std::string ReadFile(const std::string& path) { return clitest::ReadText(path); }
RunResult RunCli(const std::string& args) { return clitest::RunPictraceLine(Dir(), args); }

bool HaveRsvg() { return std::system("command -v rsvg-convert >/dev/null 2>&1") == 0; }

// The regions of a JSON document as CPTRegions (all four points of each line).
void RegionsFromJson(const nlohmann::json& j, CPTRegions& out) {
  const auto& regions = j["regions"];
  out.m_nRegions = static_cast<int>(regions.size());
  out.m_pRegions = new CPTRegion[regions.size()];
  for (size_t r = 0; r < regions.size(); r++) {
    const auto& polys = regions[r]["polygons"];
    CPTRegion& reg = out.m_pRegions[r];
    reg.m_nColorIndex = regions[r]["colorIndex"];
    reg.m_nPolygons = static_cast<int>(polys.size());
    reg.m_pPolygons = new CPTPolygon[polys.size()];
    for (size_t k = 0; k < polys.size(); k++) {
      const auto& lines = polys[k]["lines"];
      CPTPolygon& p = reg.m_pPolygons[k];
      p.m_nLines = static_cast<int>(lines.size());
      p.m_pLines = new CPTLine[lines.size()];
      for (size_t i = 0; i < lines.size(); i++) {
        p.m_pLines[i].m_nType = lines[i]["type"];
        p.m_pLines[i].m_ptStart.x = lines[i]["start"][0];
        p.m_pLines[i].m_ptStart.y = lines[i]["start"][1];
        p.m_pLines[i].m_ptEnd.x = lines[i]["end"][0];
        p.m_pLines[i].m_ptEnd.y = lines[i]["end"][1];
      }
    }
  }
}

size_t Count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t p = text.find(what); p != std::string::npos; p = text.find(what, p + 1)) n++;
  return n;
}

class TraceExample : public ::testing::TestWithParam<const char*> {};

std::string Name(const ::testing::TestParamInfo<const char*>& info) {
  return testimg::ParamName(info.param);
}

}  // namespace

TEST_P(TraceExample, WritesSvgJsonAndPreviewThatAgreeAndRender) {
  const std::string in = testimg::ExamplePath(GetParam());
  const std::string base = TempDir() + "/" + Name({GetParam(), 0});
  RunResult r = RunCli("trace " + in + " -o " + base + ".svg --json " + base + ".json --preview " +
                    base + ".png");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_NE(r.out.find("regions in"), std::string::npos);

  std::string svg = ReadFile(base + ".svg");
  auto j = nlohmann::json::parse(ReadFile(base + ".json"));
  const int w = j["image"]["width"], h = j["image"]["height"];
  EXPECT_EQ(Count(svg, "<path "), static_cast<size_t>(j["regionCount"].get<int>()));
  EXPECT_EQ(Count(svg, "<g "), j["colors"].size());

  // The JSON regions tile the picture, like the engine's own.
  CPTRegions regions;
  RegionsFromJson(j, regions);
  pipetest::Coverage cov = pipetest::RasterizeRegions(regions, w, h);
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);

  std::vector<unsigned char> dib;
  std::string error;
  ASSERT_TRUE(pictrace::LoadImageFile(base + ".png", dib, error)) << error;
  if (!HaveRsvg()) GTEST_SKIP() << "rsvg-convert is not installed";
  const std::string rendered = base + "-rsvg.png";
  ASSERT_EQ(std::system(("rsvg-convert " + base + ".svg -o " + rendered).c_str()), 0);
  ASSERT_TRUE(pictrace::LoadImageFile(rendered, dib, error)) << error;
  const BITMAPINFOHEADER* bh = reinterpret_cast<const BITMAPINFOHEADER*>(dib.data());
  EXPECT_EQ(bh->biWidth, w);
  EXPECT_EQ(bh->biHeight, h);
}

INSTANTIATE_TEST_SUITE_P(Examples, TraceExample,
                         ::testing::Values("monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png",
                                           "astronaut.png", "mug.png"),
                         Name);

TEST(TraceCli, OutputSizeScalesTheCoordinates) {
  const std::string json = TempDir() + "/scaled.json";
  RunResult r = RunCli("trace " + testimg::ExamplePath("flag_kr.png") + " -o " + TempDir() +
                    "/scaled.svg --size 1600x1200 --json " + json);
  ASSERT_EQ(r.exitCode, 0) << r.err;
  auto j = nlohmann::json::parse(ReadFile(json));
  EXPECT_EQ(j["output"]["right"], 1600);
  CPTRegions regions;
  RegionsFromJson(j, regions);
  pipetest::Coverage cov = pipetest::RasterizeRegions(regions, 800, 600, 0, 0, 2, 2);
  EXPECT_EQ(cov.Uncovered(), 0);
  EXPECT_EQ(cov.CoveredTwice(), 0);
  EXPECT_NE(ReadFile(TempDir() + "/scaled.svg").find("viewBox=\"0 0 1600 1200\""),
            std::string::npos);
}

TEST(TraceCli, ThreadTablePaintsWithThreadColours) {
  const std::string table = std::string(PICTRACE_EXAMPLES_DIR) + "/../threads/pec-64.csv";
  const std::string json = TempDir() + "/threads.json", svg = TempDir() + "/threads.svg";
  RunResult r = RunCli("trace " + testimg::ExamplePath("monkey_face.png") + " -o " + svg +
                    " --threads " + table + " --thread-mode 2 --json " + json);
  ASSERT_EQ(r.exitCode, 0) << r.err;
  auto j = nlohmann::json::parse(ReadFile(json));
  ASSERT_EQ(j["threadColors"].size(), j["colors"].size());
  std::string text = ReadFile(svg);
  for (const auto& t : j["threadColors"]) {
    EXPECT_FALSE(t["name"].is_null());
    EXPECT_NE(text.find("fill=\"" + t["color"].get<std::string>() + "\""), std::string::npos);
  }
}

TEST(TraceCli, BlackMaskPixelsAreExcludedInTheEnginesRowOrder) {
  // A black block over the crossed eye in a white mask of the picture's
  // size. The command must hand the engine the same cartoon mask as a host
  // that excludes (value 2) those pixels in the bottom-up rows of the DIB.
  const int w = 300, h = 263;
  auto inBlock = [](int x, int row) { return x >= 165 && x < 210 && row >= 135 && row < 185; };
  std::vector<unsigned char> rows(static_cast<size_t>(w) * 3 * h, 255);
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++)
      if (inBlock(x, h - 1 - y))
        for (int c = 0; c < 3; c++) rows[(static_cast<size_t>(y) * w + x) * 3 + c] = 0;
  const std::string mask = TempDir() + "/mask.png", json = TempDir() + "/masked.json";
  std::string error;
  ASSERT_TRUE(pictrace::WritePng(mask, rows.data(), w, h, w * 3, error)) << error;
  RunResult r = RunCli("trace " + testimg::ExamplePath("monkey_face.png") + " -o " + TempDir() +
                       "/masked.svg --no-retry --mask " + mask + " --json " + json);
  ASSERT_EQ(r.exitCode, 0) << r.err;
  CPTRegions cli;
  RegionsFromJson(nlohmann::json::parse(ReadFile(json)), cli);

  auto trace = [&](bool bMask, CPTRegions& out) {
    std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath("monkey_face.png"));
    CPictrace e;
    ASSERT_TRUE(e.SetDIBData(dib.data()));
    e.SetImageRealRect(0, 0, w, h);
    unsigned char* m = nullptr;
    if (bMask) {
      m = new unsigned char[w * h]();
      for (int row = 0; row < h; row++)
        for (int x = 0; x < w; x++)
          if (inBlock(x, row)) m[row * w + x] = 2;
    }
    CDWordArray colors;
    e.DoSegmentation(8, &colors, 1.0, 1, bMask ? &m : nullptr);
    delete[] m;
    e.GetRegions(&out, 0);
  };
  CPTRegions masked, plain;
  trace(true, masked);
  trace(false, plain);
  ASSERT_EQ(cli.m_nRegions, masked.m_nRegions);
  pipetest::Coverage a = pipetest::RasterizeRegions(cli, w, h);
  pipetest::Coverage b = pipetest::RasterizeRegions(masked, w, h);
  pipetest::Coverage c = pipetest::RasterizeRegions(plain, w, h);
  EXPECT_EQ(a.owner, b.owner);
  EXPECT_EQ(a.count, b.count);
  EXPECT_NE(a.owner, c.owner) << "the mask must change the result";
  EXPECT_LT(cli.m_nRegions, plain.m_nRegions);  // the eye is gone
}

TEST(TraceCli, SvgGoesToStandardOutputByDefault) {
  RunResult r = RunCli("trace " + testimg::ExamplePath("monkey_face.png") + " --curves");
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_EQ(r.out.rfind("<?xml", 0), 0u);
  EXPECT_TRUE(std::regex_search(r.out, std::regex("[0-9]C[-0-9]")));  // curves
  EXPECT_NE(r.err.find("regions in"), std::string::npos);
}

TEST(TraceCli, BadInputIsRefusedWithAMessage) {
  const std::string pic = testimg::ExamplePath("monkey_face.png");
  const std::string dir = TempDir();
  {
    std::ofstream(dir + "/bad.csv") << "name,code,color\nRed,1,#ff0000\nGreen;2;#00ff00\n";
    std::ofstream(dir + "/notapicture.png") << "hello";
  }
  std::vector<unsigned char> small(10 * 10 * 3, 0);
  std::string error;
  ASSERT_TRUE(pictrace::WritePng(dir + "/small.png", small.data(), 10, 10, 30, error));
  struct Case {
    std::string args;
    std::string message;
  } cases[] = {
      {"trace " + dir + "/missing.png -o " + dir + "/x.svg", "missing.png"},
      {"trace " + dir + "/notapicture.png -o " + dir + "/x.svg", "notapicture.png"},
      {"trace " + pic + " -o " + dir + "/x.svg --mask " + dir + "/small.png",
       "the mask is 10 x 10 pixels, the picture 300 x 263"},
      {"trace " + pic + " -o " + dir + "/x.svg --mask " + dir + "/missing-mask.png",
       "missing-mask.png"},
      {"trace " + pic + " -o " + dir + "/x.svg --threads " + dir + "/bad.csv",
       "bad.csv:3: expected 3 fields"},
      {"trace " + pic + " --colors 0", "--colors"},
      {"trace " + pic + " --colors 1000", "--colors"},
      {"trace " + pic + " --size 0x100", "--size 0x100: width and height must be between 1 and"},
      {"trace " + pic + " --size 99999999x5", "must be between 1 and"},
      {"trace " + pic + " --size huge", "--size huge: expected WIDTHxHEIGHT"},
      {"trace " + pic + " --size 10x", "expected WIDTHxHEIGHT"},
      {"trace " + pic + " --tolerance -1", "--tolerance"},
      {"trace " + pic + " --sensitivity 101", "--sensitivity"},
      {"trace " + pic + " --thread-mode 7", "--thread-mode"},
      {"trace " + pic + " -o " + dir + "/no/such/dir/x.svg", "cannot write"},
      {"trace " + pic + " --json -", "cannot both go to standard output"},
  };
  for (const Case& c : cases) {
    RunResult r = RunCli(c.args);
    EXPECT_NE(r.exitCode, 0) << c.args;
    EXPECT_LT(r.exitCode, 128) << c.args;  // an exit, not a signal
    EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
  }
}

TEST(TraceCli, ProgressBarOnlyOnATerminal) {
  const std::string args = "trace " + testimg::ExamplePath("monkey_face.png") + " -o " +
                           TempDir() + "/progress.svg";
  RunResult quiet = RunCli(args);
  ASSERT_EQ(quiet.exitCode, 0) << quiet.err;
  EXPECT_EQ(quiet.err.find("tracing ["), std::string::npos);
  if (std::system("command -v script >/dev/null 2>&1") != 0) GTEST_SKIP() << "no script(1)";
  // script(1) runs the program on a pseudo-terminal and copies what it shows.
  const std::string shown = TempDir() + "/tty.txt";
  const std::string cmd = "script -qec \"" + std::string(PICTRACE_BINARY_DIR) + "/cli/pictrace " +
                          args + "\" /dev/null >" + shown;
  ASSERT_EQ(std::system(cmd.c_str()), 0);
  std::string text = ReadFile(shown);
  EXPECT_NE(text.find("\rtracing ["), std::string::npos);
  EXPECT_NE(text.find("[##############################] 100%"), std::string::npos) << text;
}
