// Embroidery output: lengths and sizes, fill angles, pieces, layers and their
// order through the command line, joined centre lines, thread charts and the
// design report.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/Embroidery.h"
#include "cli/ImageFile.h"
#include "cli/Length.h"
#include "common/CliRunner.h"
#include "common/TestImages.h"

using namespace pictrace;
using nlohmann::json;

namespace {

const clitest::TempDir& Dir() {
  static const clitest::TempDir dir;
  return dir;
}
clitest::RunResult Pictrace(const std::string& args) { return clitest::RunPictraceLine(Dir(), args); }
json ReadJson(const std::string& name) { return json::parse(clitest::ReadText(Dir().File(name))); }

// A PNG of w x h pixels coloured by paint(x, y), y from the top.
std::string Picture(const std::string& name, int w, int h, const std::function<COLORREF(int, int)>& paint) {
  std::vector<unsigned char> rows(static_cast<size_t>(w) * h * 3);
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) {
      const COLORREF c = paint(x, y);
      unsigned char* p = &rows[(static_cast<size_t>(y) * w + x) * 3];
      p[0] = GetBValue(c), p[1] = GetGValue(c), p[2] = GetRValue(c);
    }
  std::string error;
  EXPECT_TRUE(WritePng(Dir().File(name), rows.data(), w, h, w * 3, error)) << error;
  return Dir().File(name);
}
bool In(int x, int y, int x0, int y0, int size) { return x >= x0 && y >= y0 && x < x0 + size && y < y0 + size; }

// A closed straight chain through x0 y0 x1 y1 ...
PathChain Ring(std::initializer_list<double> xy) {
  const std::vector<double> v(xy);
  PathChain chain;
  for (size_t i = 0; i < v.size(); i += 2) {
    PathLine l;
    l.start = {float(v[i]), float(v[i + 1])};
    l.end = {float(v[(i + 2) % v.size()]), float(v[(i + 3) % v.size()])};
    chain.push_back(l);
  }
  return chain;
}

// The layers of an SVG: label and each path's number of sub-paths.
std::vector<std::pair<std::string, std::vector<int>>> Layers(const std::string& svg) {
  std::vector<std::pair<std::string, std::vector<int>>> layers;
  for (size_t at = svg.find("<g id=\"layer"); at != std::string::npos; at = svg.find("<g id=\"layer", at + 1)) {
    const size_t label = svg.find("inkscape:label=\"", at) + 16, end = svg.find("</g>", at);
    layers.push_back({svg.substr(label, svg.find('"', label) - label), {}});
    for (size_t d = svg.find(" d=\"", at); d < end; d = svg.find(" d=\"", d + 1))
      layers.back().second.push_back(int(std::count(svg.begin() + d, svg.begin() + svg.find('"', d + 4), 'M')));
  }
  return layers;
}

TEST(Lengths, TakeUnitsAndNameTheOptionWhenWrong) {
  const struct { const char* text; long units; const char* error; } cases[] = {
      {"100mm", 1000, ""}, {"10cm", 1000, ""}, {"4in", 1016, ""}, {"250", 250, ""}, {"0.25mm", 3, ""},
      {"0mm", 0, "--width 0mm: the length must be from 0.1mm"}, {"0.04mm", 0, "must be from 0.1mm"},
      {"10furlongs", 0, "--width 10furlongs: unknown unit \"furlongs\""}, {"101m", 0, "unknown unit \"m\""},
      {"-3mm", 0, "expected a length such as 100mm"}, {"1e3", 0, "unknown unit \"e3\""}, {"mm", 0, "expected a length"},
      {"100001mm", 0, "must be from 0.1mm (one output unit) to 100 m"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    long units = 0;
    std::string error;
    EXPECT_EQ(ParseLength("--width", c.text, units, error), !*c.error);
    if (*c.error) EXPECT_TRUE(error.rfind(std::string("--width ") + c.text + ": ", 0) == 0 && error.find(c.error) != std::string::npos) << error;
    else EXPECT_EQ(units, c.units);
  }
  const struct { SizeRequest request; long w, h; } sizes[] = {
      {{"100mm", "", ""}, 1000, 877}, {{"", "5cm", ""}, 570, 500}, {{"100mm", "2cm", ""}, 1000, 200},
      {{"", "", "4inx2in"}, 1016, 508}, {{"", "", "300x20mm"}, 300, 200}, {{"", "", ""}, 300, 263}};
  for (const auto& s : sizes) {
    long w = 0, h = 0;
    std::string error;
    EXPECT_TRUE(OutputSize(s.request, 300, 263, w, h, error)) << error;
    EXPECT_EQ(std::to_string(w) + "x" + std::to_string(h), std::to_string(s.w) + "x" + std::to_string(s.h));
  }
}

TEST(FillAngle, AlongTheLongAxisCountedCounterClockwiseAsSeen) {
  // The y axis points down: a strip rising to the right as seen runs from a
  // larger y to a smaller one, and its rows lie at 45 degrees, not 135.
  EXPECT_EQ(FillAngle({Ring({0, 0, 100, 0, 100, 10, 0, 10})}), 0);
  EXPECT_EQ(FillAngle({Ring({0, 0, 10, 0, 10, 100, 0, 100})}), 90);
  EXPECT_EQ(FillAngle({Ring({0, 100, 10, 110, 110, 10, 100, 0})}), 45);
  EXPECT_EQ(FillAngle({Ring({0, 0, 100, 100, 110, 90, 10, -10})}), 135);
  // A square has no long axis; a wide hole leaves two tall side bars.
  EXPECT_EQ(FillAngle({Ring({0, 0, 100, 0, 100, 100, 0, 100})}), 0);
  const std::vector<PathChain> leftBar = {Ring({0, 0, 100, 0, 100, 100, 0, 100}), Ring({30, 1, 99, 1, 99, 99, 30, 99})};
  EXPECT_EQ(FillAngle(leftBar), 90);
  // Areas as the SVG fills them: holes out, a crossed border's loops both
  // in, Bezier lines (the cubic under (0,0)-(3,0) with controls 3 down
  // encloses 4.5) sampled finely.
  EXPECT_DOUBLE_EQ(FillArea(leftBar), 10000 - 69 * 98);
  EXPECT_DOUBLE_EQ(FillArea({Ring({0, 0, 10, 10, 10, 0, 0, 10})}), 50);
  PathChain lens = Ring({0, 0, 3, 0});
  lens[0].type = 1, lens[0].c1 = {1, 3}, lens[0].c2 = {2, 3};
  EXPECT_NEAR(FillArea({lens}), 4.5, 0.02);
}

TEST(Inkstitch, OnePathPerPieceLayersByAreaDesignInMillimetres) {
  // White ground; a blue block, a red frame round a blue square, two black islands.
  const std::string pic = Picture("pieces.png", 400, 300, [](int x, int y) -> COLORREF {
    if (In(x, y, 20, 20, 150)) return RGB(0, 0, 255);
    if (In(x, y, 230, 40, 100)) return In(x, y, 260, 70, 40) ? RGB(0, 0, 255) : RGB(255, 0, 0);
    return In(x, y, 200, 220, 40) || In(x, y, 300, 220, 40) ? RGB(0, 0, 0) : RGB(255, 255, 255);
  });
  // Fills only: the 3 mm frame is a strip, which would be a satin column.
  auto r = Pictrace("trace " + pic + " --colors 4 --width 32mm --inkstitch --no-satin --no-curves -o " + Dir().File("p.svg") +
                    " --report " + Dir().File("p.json"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  const std::string svg = clitest::ReadText(Dir().File("p.svg"));
  // The design (blue to black, 320 pixels) is 32 mm: 320 units, not 32 or 3200.
  EXPECT_NE(svg.find("width=\"32mm\" height=\"24mm\" viewBox=\"20 20 320 240\""), std::string::npos) << svg.substr(0, 400);
  const auto layers = Layers(svg);
  ASSERT_EQ(layers.size(), 3u);  // the white ground left out
  EXPECT_EQ(layers[0], (std::pair<std::string, std::vector<int>>{"#0000ff", {1, 1}}));
  EXPECT_EQ(layers[1], (std::pair<std::string, std::vector<int>>{"#ff0000", {2}}));  // with its hole
  EXPECT_EQ(layers[2], (std::pair<std::string, std::vector<int>>{"#000000", {1, 1}}));  // two islands, two paths
  const json report = ReadJson("p.json");
  EXPECT_EQ(report["sizeMm"], json({{"height", 24.0}, {"width", 32.0}}));
  EXPECT_EQ(report["threads"][2]["areaMm2"], 2 * 4 * 4 * 1.0);
  EXPECT_EQ(report["colorChanges"], 2);
  EXPECT_EQ(Pictrace("trace " + pic + " --colors 4 --inkstitch --keep-background -o " + Dir().File("k.svg")).exitCode, 0);
  EXPECT_EQ(Layers(clitest::ReadText(Dir().File("k.svg")))[0].first, "#ffffff");
}

TEST(Report, ThreadAreasAddUpAndWarningsNameThePlantedTinyPieces) {
  // A ring round a disc and a diagonal band: every border but the frame's is
  // shared by two pieces, straight or curved.
  const std::string disc = Picture("disc.png", 300, 200, [](int x, int y) -> COLORREF {
    const int r2 = (x - 100) * (x - 100) + (y - 90) * (y - 90);
    if (r2 < 3600) return r2 > 625 ? RGB(200, 0, 0) : RGB(0, 0, 200);
    return std::abs(x + y - 330) < 20 ? RGB(0, 150, 0) : RGB(255, 255, 255);
  });
  for (const char* curves : {"", " --curves"}) {
    ASSERT_EQ(Pictrace("trace " + disc + curves + " --colors 4 -o - --report " + Dir().File("a.json")).exitCode, 0);
    const json report = ReadJson("a.json");
    double sum = 0;
    for (const json& t : report["threads"]) sum += t["areaMm2"].get<double>();
    EXPECT_EQ(report["threads"].size(), 4u);
    EXPECT_NEAR(sum, 30 * 20, 30 * 20 * 0.001) << curves;
  }
  // Squares of 10, 12 and 14 pixels (0.1 mm) are under 1.5 mm^2 once
  // traced; 17, 20 and 30 are not. The mask keeps them from merging away.
  const int sides[] = {10, 12, 14, 17, 20, 30};
  auto square = [&](int x, int y, int slack = 0) {  // slack: a corner counts
    for (int i = 0; i < 6; i++)
      if (In(x, y, 240 + i % 3 * 50 - slack, 60 + i / 3 * 80 - slack, sides[i] + 2 * slack)) return i;
    return -1;
  };
  const std::string pic = Picture("tiny.png", 400, 300, [&](int x, int y) {
    return In(x, y, 50, 50, 150) ? RGB(0, 0, 0) : square(x, y) >= 0 ? RGB(220, 30, 30) : RGB(255, 255, 255);
  });
  const std::string mask = Picture("mask.png", 400, 300, [&](int x, int y) {
    return In(x, y, 20, 20, 200) || square(x, y) >= 0 ? RGB(255, 255, 255) : RGB(0, 0, 0);
  });
  auto r = Pictrace("trace " + pic + " --colors 3 --mask " + mask + " -o - --report " + Dir().File("t.json"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  std::vector<int> warned;
  const json report = ReadJson("t.json");
  for (const json& w : report["warnings"])
    if (w["kind"] == "small piece") warned.push_back(square(int(w["atMm"][0].get<double>() * 10), int(w["atMm"][1].get<double>() * 10), 1));
  std::sort(warned.begin(), warned.end());
  EXPECT_EQ(warned, (std::vector<int>{0, 1, 2}));
  EXPECT_NE(r.err.find("report: 40 x 30 mm, 3 threads, 8 pieces"), std::string::npos) << r.err;
}

TEST(Lines, JoinedIntoAsFewPathsAsTheJunctionsAllow) {
  // A star of three arms with a tail (four odd ends: two paths) and a
  // triangle (one closed path).
  OutputDocument doc;
  doc.hasLines = true, doc.lineColors = {RGB(0, 0, 0)}, doc.output = RECT{0, 0, 100, 100};
  const float lines[][4] = {{0, 0, 10, 0}, {10, 0, 20, 0}, {10, 10, 10, 0}, {20, 0, 30, 0},
                            {50, 50, 60, 50}, {60, 50, 55, 40}, {50, 50, 55, 40}};
  doc.lines.m_nThinLines = 7, doc.lines.m_pThinLines = new CPTThinLine[7];
  for (int i = 0; i < 7; i++) {
    CPTThinLine& t = doc.lines.m_pThinLines[i];
    t.m_nColorIndex = 1, t.m_nPolygonLines = 1, t.m_pPolygonLines = new CPTPolygonLine[1];
    t.m_pPolygonLines[0].m_nLines = 1, t.m_pPolygonLines[0].m_pLines = new CPTLine[1];
    CPTLine& l = t.m_pPolygonLines[0].m_pLines[0];
    l.m_ptStart.x = lines[i][0], l.m_ptStart.y = lines[i][1], l.m_ptEnd.x = lines[i][2], l.m_ptEnd.y = lines[i][3];
  }
  const StitchPlan plan = PlanStitches(doc);
  ASSERT_EQ(plan.layers.size(), 1u);
  std::string shape;
  for (const StitchPiece& p : plan.layers[0].pieces) shape += std::to_string(p.lineCount) + (p.closed ? "c " : " ");
  EXPECT_EQ(shape, "3c 3 1 ");  // from the middle (50, 50): the triangle, then the star from its tail
  EXPECT_NEAR(plan.layers[0].length, 40 + 10 + 2 * std::hypot(5, 10), 1e-4);
  // A real drawing: fewer running-stitch paths than centre lines.
  auto r = Pictrace("lines " + testimg::ExamplePath("mug.png") + " --width 80mm --inkstitch -o " + Dir().File("m.svg"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  const auto layers = Layers(clitest::ReadText(Dir().File("m.svg")));
  ASSERT_EQ(layers.size(), 1u);
  EXPECT_LT(layers[0].second.size() * 2, std::stoul(r.err.substr(r.err.find("lines: ") + 7)));  // "lines: N lines"
}

TEST(ThreadCharts, GimpPalettesReadBackTheSameAndBadOnesAreNamed) {
  const std::string gpl = "GIMP Palette\nName: Ink/Stitch: Mine\nColumns: 4\n# RGB Value\t\tColor Name Number\n"
                          "236\t244\t251\t        White  10\n250 176  68\tScholastic Gold   432\n\n  9 8 7 Nameless\n";
  std::vector<ThreadColor> a, b;
  std::string name, error, again;
  std::istringstream in(gpl);
  ASSERT_TRUE(ParseGimpPalette(in, "c.gpl", a, error, &name)) << error;
  ASSERT_EQ(a.size(), 3u);
  EXPECT_EQ(name + "|" + a[1].name + "|" + a[1].code + "|" + ColorToHex(a[1].color) + "|" + a[2].name, "Ink/Stitch: Mine|Scholastic Gold|432|#fab044|Nameless");
  const std::string written = FormatGimpPalette(name, a);
  std::istringstream back(written);
  ASSERT_TRUE(ParseGimpPalette(back, "w.gpl", b, error, &again)) << error;
  EXPECT_EQ(FormatGimpPalette(again, b), written);
  for (size_t i = 0; i < 3; i++) EXPECT_EQ(a[i].name + a[i].code + ColorToHex(a[i].color), b[i].name + b[i].code + ColorToHex(b[i].color));
  const char* bad[][2] = {{"GIMP palette!\n", "x.gpl:1: expected \"GIMP Palette\""}, {"GIMP Palette\nColumns: 4\n", "x.gpl:2: expected \"Name:"},
                          {"GIMP Palette\nName: a\nColumns: 4\n#\n1 2 256 Red 1\n", "x.gpl:5: colour value 256"},
                          {"GIMP Palette\nName: a\nColumns: 4\n#\n1 2 3\n", "x.gpl:5: the thread name is missing"},
                          {"GIMP Palette\nName: a\nColumns: 4\n#\n1 2 Red 3\n", "x.gpl:5: expected a colour"},
                          {"GIMP Palette\nName: a\nColumns: 4\n#\n", "x.gpl: the thread chart holds no colours"}};
  for (const auto& c : bad) {
    std::istringstream s(c[0]);
    EXPECT_FALSE(ParseGimpPalette(s, "x.gpl", a, error));
    EXPECT_EQ(error.rfind(c[1], 0), 0u) << error;
  }
  // Through the command line: chart colours and names in the output, a bad chart named.
  clitest::RunResult r;
  std::ofstream(Dir().File("c.gpl")) << gpl << "0 0 0 Black 2\n255 0 0 Red 800\n";
  std::ofstream(Dir().File("bad.gpl")) << bad[2][0];
  r = Pictrace("trace " + testimg::ExamplePath("flag_kr.png") + " --threads " + Dir().File("bad.gpl"));
  EXPECT_NE(r.err.find("bad.gpl:5: colour value 256 is above 255"), std::string::npos) << r.err;
  r = Pictrace("trace " + testimg::ExamplePath("flag_kr.png") + " --inkstitch --threads " + Dir().File("c.gpl") + " -o " + Dir().File("f.svg"));
  ASSERT_EQ(r.exitCode, 0) << r.err;
  for (const auto& layer : Layers(clitest::ReadText(Dir().File("f.svg"))))
    EXPECT_NE(std::string("|White 10|Scholastic Gold 432|Nameless|Black 2|Red 800|").find("|" + layer.first + "|"), std::string::npos) << layer.first;
}

}  // namespace

TEST(Inkstitch, StripsBecomeSatinAndFillsReachUnderLaterNeighbours) {
  // Two 16 mm blocks side by side over a 2 mm red strip as long as both; white ground.
  const std::string pic = Picture("strip.png", 360, 220, [](int x, int y) -> COLORREF {
    if (y >= 20 && y < 180 && x >= 20 && x < 340) return x < 180 ? RGB(0, 0, 255) : RGB(0, 160, 0);
    return y >= 180 && y < 200 && x >= 20 && x < 340 ? RGB(255, 0, 0) : RGB(255, 255, 255);
  });
  const std::string args = "trace " + pic + " --colors 4 --inkstitch -o " + Dir().File("s.svg") + " --report " + Dir().File("s.json");
  ASSERT_EQ(Pictrace(args).exitCode, 0);
  const std::string svg = clitest::ReadText(Dir().File("s.svg"));
  const auto layers = Layers(svg);
  ASSERT_EQ(layers.size(), 3u);
  EXPECT_EQ(layers[2].first, "#ff0000");  // the strip is stitched last, as one column: rails and rungs
  ASSERT_EQ(layers[2].second.size(), 1u);
  EXPECT_TRUE(layers[2].second[0] >= 5) << layers[2].second[0];
  EXPECT_NE(svg.find("inkstitch:satin_column=\"true\""), std::string::npos);
  json report = ReadJson("s.json");
  ASSERT_EQ(report["satinColumns"].size(), 1u);
  EXPECT_NEAR(report["satinColumns"][0]["lengthMm"].get<double>(), 32, 0.5);
  EXPECT_NEAR(report["satinColumns"][0]["widthMm"][0].get<double>(), 2, 0.05);
  EXPECT_NEAR(report["satinColumns"][0]["widthMm"][1].get<double>(), 2, 0.05);
  // 0.3 mm under three 16 mm borders: the first block under the second and
  // the strip, the second under the strip; the strip under nothing.
  EXPECT_NEAR(report["threads"][0]["underlapMm2"].get<double>(), 9.6, 0.96);
  EXPECT_NEAR(report["threads"][1]["underlapMm2"].get<double>(), 4.8, 0.48);
  EXPECT_EQ(report["threads"][2]["underlapMm2"].get<double>(), 0.0);
  ASSERT_EQ(Pictrace(args + " --no-satin --underlap 0").exitCode, 0);
  EXPECT_EQ(clitest::ReadText(Dir().File("s.svg")).find("satin_column"), std::string::npos);
  EXPECT_EQ(ReadJson("s.json")["threads"][0]["underlapMm2"], json());
  const struct { const char* option; const char* message; } bad[] = {
      {"--satin-width 10.5", "--satin-width"}, {"--satin-width 0", "--satin-width"}, {"--underlap -0.1", "--underlap"},
      {"--underlap nan", "--underlap"}};
  for (const auto& b : bad) {
    const auto r = Pictrace(args + " " + b.option);
    EXPECT_NE(r.exitCode, 0) << b.option;
    EXPECT_NE(r.err.find(b.message), std::string::npos) << r.err;
  }
}
