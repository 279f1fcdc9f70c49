// pictrace lines IN [-o OUT.svg] [--colors N] [--line-color #rrggbb ...]
// [--curves] [--tolerance T] [--json OUT.json] [--preview OUT.png]: thins the strokes of a line drawing
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
  EmbroideryOptions embroidery;  // size, curves, the digitizer's dialect
  double tolerance = 1.0;        // of the curves, in pixels
};

struct LinesRun {
  CPictrace engine;
  std::vector<unsigned char> dib;
  thinline::LineArtResult result;
  std::unique_ptr<OutputDocument> doc;
};

void TakeDocument(const LinesOptions& o, LinesRun& run) {
  CPictrace& engine = run.engine;
  run.doc = std::make_unique<OutputDocument>();
  OutputDocument& doc = *run.doc;
  TakeFrame(doc, engine, o.input);
  TakeLines(doc, engine);
  if (o.embroidery.Curves()) {
    doc.lineType = 1;
    engine.SetCurveTolerance(o.tolerance);
    CurveLines(doc, engine);
  }
  doc.inkstitch = o.embroidery.inkstitch;
  doc.hasBackground = run.result.bBackground;
  doc.background = run.result.crBackground;
}

// The line-art job and its document. 0, or the exit code after a message.
int LinesAt(const LinesOptions& o, const thinline::LineArtOptions& job, LinesRun& run) {
  CPictrace& engine = run.engine;
  if (!LoadIntoEngine(engine, o.input, run.dib)) return kExitFailure;
  // By default one output unit per pixel: the engine's length thresholds are
  // then the ones meant for a picture shown at its own size.
  if (!SetOutputSize(engine, o.embroidery.size)) return kExitFailure;
  std::string error;
  if (!thinline::RunLineArt(engine, job, run.result, error)) return Fail(o.input + ": " + error);

  TakeDocument(o, run);
  return 0;
}

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

  LinesRun run;
  if (int rc = LinesAt(o, job, run)) return rc;
  CPictrace& engine = run.engine;
  if (o.embroidery.inkstitch) {
    if (FitDesign(engine, *run.doc, o.embroidery.size)) TakeDocument(o, run);
    CropToDesign(*run.doc);
  }
  const OutputDocument& doc = *run.doc;
  const thinline::LineArtResult& result = run.result;
  const int width = doc.imageWidth, height = doc.imageHeight;
  if (!WriteOutputs(doc, engine, o.outputs, error)) return Fail(error);

  ReportSummary(doc, o.outputs);
  long points = 0;
  for (int i = 0; i < doc.lines.m_nThinLines; i++) points += doc.lines.m_pThinLines[i].m_pPolygonLines[0].m_nLines + 1;
  std::ostream& report = SummaryStream();
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
  AddEmbroideryOptions(app, o->embroidery);
  app->add_option("--tolerance", o->tolerance,
                  "largest distance of the curved centre lines from the straight ones, in pixels (default 1)")
      ->check(FiniteNumber(0.01, 50.0));
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
