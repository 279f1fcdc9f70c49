// The batch form: several pictures, two at a time, give the same files as
// one run per picture; a broken picture is named and the others are written.
#include <gtest/gtest.h>

#include "common/CliRunner.h"
#include "common/TestImages.h"

namespace {

using clitest::ReadText;

const clitest::TempDir& Dir() {
  static const clitest::TempDir dir;
  return dir;
}
clitest::RunResult Pictrace(const std::string& args) { return clitest::RunPictraceLine(Dir(), args); }

struct BatchCase {
  const char* command;
  std::vector<std::string> pictures;
  std::vector<std::string> extensions;  // of the files each picture gets
};

TEST(BatchCli, TwoAtATimeEqualsOneRunPerPictureAndABrokenOneIsNamed) {
  const std::string png = ReadText(testimg::ExamplePath("flag_kr.png"));
  const std::string broken = Dir().Write("broken.png", {png.begin(), png.begin() + 200});  // a PNG cut short
  const BatchCase cases[] = {
      {"trace", {"monkey_face.png", "monkey_face-4bpp.bmp", "flag_kr.png", "astronaut.png", "mug.png"}, {"svg", "json", "png"}},
      {"lines", {"mug.png", "flag_kr.png"}, {"svg", "json"}},
  };
  for (const BatchCase& c : cases) {
    SCOPED_TRACE(c.command);
    const std::string dir = Dir().File(std::string(c.command) + "-batch");
    std::string args = std::string(c.command) + " --out-dir " + dir + " --jobs 2 --json";
    if (c.extensions.size() == 3) args += " --preview";
    for (const std::string& name : c.pictures) args += " " + testimg::ExamplePath(name);
    const auto batch = Pictrace(args + " " + broken);
    EXPECT_EQ(batch.exitCode, 1);
    EXPECT_NE(batch.err.find(broken + ": "), std::string::npos) << batch.err;
    EXPECT_NE(batch.err.find("1 of " + std::to_string(c.pictures.size() + 1) + " pictures failed: " + broken),
              std::string::npos) << batch.err;
    EXPECT_EQ(ReadText(dir + "/broken.svg"), "");
    for (const std::string& name : c.pictures) {
      const std::string stem = name.substr(0, name.rfind('.')), single = Dir().File(stem + "-single.");
      std::string singleArgs = std::string(c.command) + " " + testimg::ExamplePath(name);
      const char* options[] = {" -o ", " --json ", " --preview "};
      for (size_t f = 0; f < c.extensions.size(); f++) singleArgs += options[f] + single + c.extensions[f];
      ASSERT_EQ(Pictrace(singleArgs).exitCode, 0) << name;
      EXPECT_NE(batch.out.find(dir + "/" + stem + ".svg\n"), std::string::npos) << batch.out;
      for (const std::string& extension : c.extensions) {
        const std::string file = dir + "/" + stem + "." + extension;
        EXPECT_FALSE(ReadText(file).empty()) << file;
        EXPECT_TRUE(ReadText(file) == ReadText(single + extension)) << file;
      }
    }
  }
}

TEST(BatchCli, BatchOptionsThatCannotWorkAreRefusedByName) {
  const std::string pic = testimg::ExamplePath("flag_kr.png"), dir = Dir().File("refused");
  Dir().Write("plain-file", {'x'});
  const std::pair<std::string, std::string> cases[] = {
      {pic + " " + pic, "2 pictures given: several pictures need --out-dir DIR"},
      {pic + " " + pic + " --out-dir " + dir, pic + " and " + pic + " would both write " + dir + "/flag_kr.svg"},
      {pic + " --out-dir " + dir + " --json x.json", "--json x.json: with --out-dir the outputs are named after"},
      {pic + " --out-dir " + dir + " -o x.svg", "--output x.svg: with --out-dir"},
      {pic + " --preview", "--preview needs a file name (without --out-dir)"},
      {pic + " --out-dir " + dir + " --jobs 0", "--jobs"},
      {pic + " --out-dir " + Dir().File("plain-file"), "--out-dir " + Dir().File("plain-file") + ": cannot make the folder"},
      {pic + " --out-dir " + dir + " --background b.svg", "--background names one file"},
  };
  for (const auto& c : cases) {
    auto r = Pictrace("trace " + c.first);
    EXPECT_TRUE(r.exitCode > 0 && r.exitCode < 128) << c.first;  // an exit, not a signal
    EXPECT_NE(r.err.find(c.second), std::string::npos) << c.first << "\n" << r.err;
  }
  EXPECT_EQ(ReadText(dir + "/flag_kr.svg"), "");  // nothing was traced
}

}  // namespace
