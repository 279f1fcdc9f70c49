// pictrace lines IN [-o OUT.svg] [--colors N] [--line-color #rrggbb ...]
// [--json OUT.json] [--preview OUT.png]: thins the strokes of a line drawing
// to one-pixel centre lines and writes them through the output writers; the
// JSON keeps each line's tree links.
#include <iostream>
#include <memory>

#include "PictraceLineArt.h"
#include "cli/BatchRun.h"
#include "cli/Commands.h"
#include "cli/ThreadTable.h"
#include "cli/Writers.h"

namespace pictrace {
namespace cli {

namespace {

struct LinesOptions {
  PictureSet pictures;
  std::string input;  // the one picture of a run
  std::vector<std::string> outputs;  // one per output format
  int colors = 2;
  std::vector<std::string> lineColors;
};

int RunLines(const LinesOptions& o) {
  std::string error;
  if (!CheckOutputPaths(o.outputs, error)) return Fail(error);
  thinline::LineArtOptions job;
  job.nColors = o.colors;
  for (const std::string& text : o.lineColors) {
    COLORREF c;
    if (!ParseHexColor(text, c)) return Fail("--line-color " + text + ": expected #rrggbb");
    job.lineColors.push_back(c);
  }

  CPictrace engine;
  std::vector<unsigned char> dib;
  if (!LoadIntoEngine(engine, o.input, dib)) return kExitFailure;
  const int width = engine.m_bmiHeader.biWidth;
  const int height = engine.m_bmiHeader.biHeight;
  // One output unit per pixel: the engine's length thresholds are then the
  // ones meant for a picture shown at its own size.
  engine.SetImageRealRect(0, 0, width, height);

  thinline::LineArtResult result;
  if (!thinline::RunLineArt(engine, job, result, error)) return Fail(o.input + ": " + error);

  OutputDocument doc;
  TakeFrame(doc, engine, o.input);
  TakeLines(doc, engine);
  doc.hasBackground = result.bBackground;
  doc.background = result.crBackground;
  if (!WriteOutputs(doc, engine, o.outputs, error)) return Fail(error);

  long points = 0;
  for (int i = 0; i < doc.lines.m_nThinLines; i++) points += doc.lines.m_pThinLines[i].m_pPolygonLines[0].m_nLines + 1;
  std::ostream& report = SummaryStream(o.outputs);
  report << "lines: " << doc.lines.m_nThinLines << " lines, " << points << " points (from "
         << result.nSkeletonPixels << " skeleton pixels) in " << doc.lineColors.size()
         << " line colours, " << width << " x " << height << " pixels; segmentation "
         << result.dSegmentSeconds << " s, thinning " << result.dThinSeconds << " s, tracing "
         << result.dTraceSeconds << " s";
  if (o.outputs[0] != "-") report << " -> " << o.outputs[0];  // the SVG
  report << "\n";
  return 0;
}

}  // namespace

Command AddLinesCommand(CLI::App& parent) {
  auto o = std::make_shared<LinesOptions>();
  CLI::App* app = parent.add_subcommand(
      "lines", "Thin the strokes of a line drawing to centre lines and write them as SVG");
  AddPictureOptions(app, o->pictures, o->outputs);
  app->add_option("--colors", o->colors, "number of colours wanted from the segmentation (1 to 50, default 2)")
      ->check(CLI::Range(1, 50));
  app->add_option("--line-color", o->lineColors,
                  "#rrggbb of a colour to thin (repeatable; default: every colour but the background)")
      ->allow_extra_args(false);
  return {app, [o]() {
            return RunPictures(o->pictures, o->outputs, "thinning",
                               [o](const std::string& input, const std::vector<std::string>& outputs, CWnd&) {
                                 LinesOptions one = *o;
                                 one.input = input;
                                 one.outputs = outputs;
                                 return RunLines(one);
                               });
          }};
}

}  // namespace cli
}  // namespace pictrace
