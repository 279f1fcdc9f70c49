// The digitizer's view, through the real Ink/Stitch (../shared/tools/inkstitch,
// skipped when absent or when it does not start): every example and three
// shared pictures at 100 mm load without errors, stitch 100 mm wide with one
// colour block per thread, and (strips as fills) travel less than the plain
// SVG. Slow: its tests carry the CTest label "inkstitch" (ctest -L inkstitch,
// -LE inkstitch).
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "common/CliRunner.h"
#include "common/TestImages.h"

using nlohmann::json;

namespace {

const std::string kStitch = std::string(PICTRACE_SHARED_DIR) + "/tools/inkstitch/stitch.sh";

const clitest::TempDir& Dir() {
  static const clitest::TempDir dir;
  return dir;
}

// Ink/Stitch's figures for an SVG, or null when it did not run.
json Stitch(const std::string& svg) {
  const std::string out = Dir().File("stitch.txt");
  const std::string command = "'" + kStitch + "' '" + svg + "' '" + svg + ".dst' >'" + out + "' 2>/dev/null";
  if (std::system(command.c_str()) == -1) return nullptr;
  const json figures = json::parse(clitest::ReadText(out), nullptr, false);
  return figures.is_object() && figures.contains("ok") ? figures : json(nullptr);
}

class Digitizer : public ::testing::TestWithParam<const char*> {};

TEST_P(Digitizer, StitchesTheSizeInOneBlockPerThreadWithLessTravel) {
  if (!testimg::FileExists(kStitch)) GTEST_SKIP() << kStitch << " is absent";
  const std::string name = GetParam(), base = Dir().File(testimg::ParamName(name));
  const std::string pic = testimg::FileExists(testimg::ExamplePath(name)) ? testimg::ExamplePath(name) : testimg::SharedImagePath(name);
  if (!testimg::FileExists(pic)) GTEST_SKIP() << pic << " is absent";
  ASSERT_EQ(clitest::RunPictraceLine(Dir(), "trace " + pic + " --width 100mm -o " + base + "-plain.svg").exitCode, 0);
  ASSERT_EQ(clitest::RunPictraceLine(Dir(), "trace " + pic + " --width 100mm --inkstitch -o " + base + ".svg --report " +
                                                base + ".json").exitCode, 0);
  const json ink = Stitch(base + ".svg");
  if (ink.is_null()) GTEST_SKIP() << "Ink/Stitch did not start";
  const json plain = Stitch(base + "-plain.svg"), report = json::parse(clitest::ReadText(base + ".json"));
  std::cout << name << " inkstitch " << ink.dump() << "\n" << name << " plain " << plain.dump() << "\n";
  EXPECT_TRUE(ink["ok"] && ink["errors"].empty() && ink["check"]["errors"].empty()) << ink.dump();
  EXPECT_EQ(ink.dump().find("Polyline Object"), std::string::npos);
  EXPECT_NEAR(ink["width_mm"].get<double>(), 100, 1);
  EXPECT_EQ(ink["color_changes"], report["threads"].size() - 1);
  // The stitch order against the plain SVG's, the same shapes in both: a
  // satin column is stitched from end to end and an underlap changes the
  // fills' borders, so either may travel more.
  ASSERT_EQ(clitest::RunPictraceLine(Dir(), "trace " + pic + " --width 100mm --inkstitch --no-satin --underlap 0 -o " +
                                                base + "-fills.svg").exitCode, 0);
  const json fills = Stitch(base + "-fills.svg");
  std::cout << name << " fills " << fills.dump() << "\n";
  EXPECT_LT(fills["travels"], plain["travels"]);
  EXPECT_LT(fills["jump_mm"], plain["jump_mm"]);
}

INSTANTIATE_TEST_SUITE_P(Pictures, Digitizer,
                         ::testing::Values("monkey_face.png", "flag_kr.png", "astronaut.png", "mug.png",
                                           "clip_butterflies.png", "photo_lighthouse.png", "clip_im_logo.png"),
                         [](const auto& info) { return testimg::ParamName(info.param); });

TEST(Digitizer, CentreLinesAreRunningStitchesOfAtMost3mm) {
  if (!testimg::FileExists(kStitch)) GTEST_SKIP() << kStitch << " is absent";
  const std::string svg = Dir().File("mug-lines.svg");
  auto r = clitest::RunPictraceLine(Dir(), "lines " + testimg::ExamplePath("mug.png") + " --width 100mm --inkstitch -o " + svg);
  ASSERT_EQ(r.exitCode, 0) << r.err;
  const json ink = Stitch(svg);
  if (ink.is_null()) GTEST_SKIP() << "Ink/Stitch did not start";
  std::cout << "mug lines inkstitch " << ink.dump() << "\n";
  EXPECT_TRUE(ink["ok"] && ink["check"]["errors"].empty() && ink.dump().find("Polyline") == std::string::npos) << ink.dump();
  EXPECT_LE(ink["max_stitch_mm"].get<double>(), 3.0);
  const std::string text = clitest::ReadText(svg);
  size_t paths = 0;
  for (size_t at = text.find("<path"); at != std::string::npos; at = text.find("<path", at + 1)) paths++;
  EXPECT_LT(paths * 2, std::stoul(r.err.substr(r.err.find("lines: ") + 7)));  // "lines: N lines"
}

}  // namespace
