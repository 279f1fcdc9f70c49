// pictrace trace IN [-o OUT.svg] [...]: segments a picture into flat colour
// regions and writes them as SVG, JSON and a PNG preview.
#include <cmath>
#include <cstdio>
#include <iostream>
#include <memory>

#include "PictraceEmbroidery.h"
#include "cli/BatchRun.h"
#include "cli/CliGuards.h"
#include "cli/Commands.h"
#include "cli/ImageFile.h"
#include "cli/Length.h"
#include "cli/ThreadTable.h"
#include "cli/Writers.h"

namespace pictrace {
namespace cli {

namespace {

// The colour list of a segmentation holds at most 50 colours.
const int kMaxColors = 50;

struct TraceOptions {
  PictureSet pictures;
  std::string input;  // the one picture of a run
  std::vector<std::string> outputs;  // one per output format
  int colors = 8;
  int sensitivity = -1;  // -1: the engine's default
  EmbroideryOptions embroidery;  // size, curves, the digitizer's dialect
  bool keepBackground = false;   // with --inkstitch: keep the frame's background colour
  double tolerance = 1.0;
  std::string mask;
  std::string threads;
  int threadMode = 0;
  bool noRetry = false;
  double denoise = -1;     // noise reduction lambda; negative: none
  std::string background;  // SVG of the background regions
  bool dropBackground = false;     // leave the frame's background colour out
  std::vector<std::string> marks;  // "X,Y": toggle the region under that pixel
  double timeLimit = 0;            // seconds; 0: none
  double satinWidth = 3.5;         // mm: narrower strips (no disc of it fits) become satin
  bool noSatin = false;            // every region a fill
  double underlap = -1;            // mm; negative: 0.3 with --inkstitch, 0 otherwise
};

// "X,Y" as two integers.
bool ParsePoint(const std::string& text, int& x, int& y) {
  size_t comma = text.find(',');
  if (comma == std::string::npos) return false;
  try {
    size_t endX = 0, endY = 0;
    x = std::stoi(text.substr(0, comma), &endX);
    y = std::stoi(text.substr(comma + 1), &endY);
    return endX == comma && endY == text.size() - comma - 1 && endX > 0 && endY > 0;
  } catch (const std::exception&) {
    return false;
  }
}

// The mask from a picture of the same size: black pixels are excluded (2),
// all others ordinary (0). Rows follow the engine's working image, bottom row
// first. It becomes the engine's host mask, which every clustering pass
// honours (the cartoon mask of the segmentation call takes part in the first
// pass only). False (after a message) on failure.
bool LoadMask(const std::string& path, int width, int height, std::vector<int>& mask) {
  CPictrace maskEngine;
  std::vector<unsigned char> dib;
  if (!LoadIntoEngine(maskEngine, path, dib)) return false;
  const BITMAPINFOHEADER* h = maskEngine.GetBmpInfoHeader();
  if (h->biWidth != width || h->biHeight != height) {
    Fail(path + ": the mask is " + std::to_string(h->biWidth) + " x " +
         std::to_string(h->biHeight) + " pixels, the picture " + std::to_string(width) + " x " +
         std::to_string(height));
    return false;
  }
  const size_t stride = static_cast<size_t>(DibRowBytes(width, 24));
  mask.assign(static_cast<size_t>(width) * height, 0);
  for (int row = 0; row < height; row++) {
    const unsigned char* p = maskEngine.m_pDIBBits + row * stride;
    for (int x = 0; x < width; x++, p += 3)
      if (p[0] == 0 && p[1] == 0 && p[2] == 0) mask[static_cast<size_t>(row) * width + x] = 2;
  }
  return true;
}

// One engine's trace with its output document; the engine owns what the
// document's arrays came from, so the two go together.
struct TraceRun {
  CPictrace engine;
  std::vector<unsigned char> dib;
  std::vector<int> mask;
  std::unique_ptr<OutputDocument> doc;
};

void TakeDocument(const TraceOptions& o, const std::vector<ThreadColor>& table, TraceRun& run) {
  run.doc = std::make_unique<OutputDocument>();
  TakeFrame(*run.doc, run.engine, o.input);
  TakeRegions(*run.doc, run.engine, table);
  run.doc->inkstitch = o.embroidery.inkstitch;
  run.doc->satin = o.embroidery.inkstitch && !o.noSatin;
  run.doc->underlap = (o.underlap >= 0 ? o.underlap : o.embroidery.inkstitch ? 0.3 : 0.0) * kUnitsPerMm;
}

// Loads, segments and marks the picture, and takes the regions. 0, or the
// exit code after a message.
int TraceAt(const TraceOptions& o, const std::vector<ThreadColor>& table, TraceRun& run, CWnd& progress) {
  CPictrace& engine = run.engine;
  if (!LoadIntoEngine(engine, o.input, run.dib)) return kExitFailure;
  const int width = engine.m_bmiHeader.biWidth;
  const int height = engine.m_bmiHeader.biHeight;
  if (!SetOutputSize(engine, o.embroidery.size)) return kExitFailure;
  embroidery::SetSatinWidthInUnits(engine, o.satinWidth * kUnitsPerMm);

  // Marks name pixels with y from the top; the engine's rows run bottom-up.
  std::vector<std::pair<int, int>> marks;
  for (const std::string& text : o.marks) {
    int x = 0, y = 0;
    if (!ParsePoint(text, x, y)) return Fail("--mark " + text + ": expected X,Y, for example 120,45");
    if (x < 0 || y < 0 || x >= width || y >= height)
      return Fail("--mark " + text + ": outside the " + std::to_string(width) + " x " +
                  std::to_string(height) + " picture");
    marks.emplace_back(x, height - 1 - y);
  }

  if (!o.mask.empty()) {
    if (!LoadMask(o.mask, width, height, run.mask)) return kExitFailure;
    engine.SetMASKData(run.mask.data());
  }

  if (!table.empty()) {
    engine.m_pThreadColors = new DWORD[table.size()];
    for (size_t i = 0; i < table.size(); i++) engine.m_pThreadColors[i] = table[i].color;
    engine.m_nThreadColorCount = static_cast<int>(table.size());
    engine.m_nThreadColorMode = o.threadMode;
  }
  if (o.sensitivity >= 0) engine.SetSegmentationSensitivity(o.sensitivity);
  engine.SetOutputLineType(o.embroidery.Curves() ? 1 : 0);
  engine.SetCurveTolerance(o.tolerance);

  engine.m_pProgressWnd = &progress;
  engine.SetTimeLimit(o.timeLimit);
  engine.BeginProgress(o.denoise >= 0 ? 0 : 1);
  if (o.denoise >= 0) engine.NoiseReduction(o.denoise);
  CDWordArray colors;
  engine.DoSegmentation(o.colors, &colors, o.tolerance, o.noRetry ? 1 : 0, nullptr);
  engine.EndProgress();
  engine.m_pProgressWnd = nullptr;
  if (!ReportGuards(engine, o.input, o.timeLimit)) return kExitFailure;

  if (!engine.HasOutlines()) return Fail(o.input + ": no regions were found");
  if (!table.empty()) engine.SetNearestThreadColorList(o.threadMode);

  // The marks a host's user would make by clicking: the regions flagged
  // here are left out of the output and drawn hatched in the preview.
  // A digitizer would stitch the frame colour as one fill under everything.
  if (o.dropBackground || (o.embroidery.inkstitch && !o.keepBackground)) engine.MarkBackground();
  for (const auto& m : marks)
    if (!engine.MarkRegion(m.first, m.second, 0))
      ErrorStream() << "pictrace: --mark " << m.first << "," << height - 1 - m.second
                << ": no region there\n";

  TakeDocument(o, table, run);
  return 0;
}

int RunTrace(const TraceOptions& o, CWnd& progress) {
  std::string error;
  if (!CheckOutputPaths(o.outputs, error)) return Fail(error);

  std::vector<ThreadColor> table;
  if (!o.threads.empty() && !LoadThreadTable(o.threads, table, error)) return Fail(error);

  TraceRun run;
  if (int rc = TraceAt(o, table, run, progress)) return rc;
  CPictrace& engine = run.engine;
  if (o.embroidery.inkstitch) {
    if (FitDesign(engine, *run.doc, o.embroidery.size)) TakeDocument(o, table, run);
    CropToDesign(*run.doc);
  }
  const OutputDocument& doc = *run.doc;
  if (!WriteOutputs(doc, engine, o.outputs, error)) return Fail(error);
  int nBackground = -1;
  if (!o.background.empty()) {
    engine.ExtractBackground();
    OutputDocument background;
    TakeFrame(background, engine, o.input);
    TakeRegions(background, engine, table, true);
    nBackground = background.regions.m_nRegions;
    if (!WriteFileBytes(o.background, FormatSvg(background, engine), error)) return Fail(error);
  }
  ReportSummary(doc, o.outputs);
  std::ostream& report = SummaryStream();
  report << "trace: " << doc.regions.m_nRegions << " regions in " << doc.colors.size()
         << " colours, " << doc.imageWidth << " x " << doc.imageHeight << " pixels";
  if (o.outputs[0] != "-") report << " -> " << o.outputs[0];  // the SVG
  if (nBackground >= 0) report << "; " << nBackground << " background regions -> " << o.background;
  report << "\n";
  return 0;
}

}  // namespace

Command AddTraceCommand(CLI::App& parent) {
  auto o = std::make_shared<TraceOptions>();
  CLI::App* app = parent.add_subcommand(
      "trace", "Segment a picture into flat colour regions and write them as SVG");
  AddPictureOptions(app, o->pictures, o->outputs);
  app->add_option("--colors", o->colors, "number of colours wanted (1 to 50, default 8)")
      ->check(CLI::Range(1, kMaxColors));
  app->add_option("--sensitivity", o->sensitivity,
                  "segmentation sensitivity, 0 to 100 (default 90); higher keeps more detail")
      ->check(CLI::Range(0, 100));
  AddEmbroideryOptions(app, o->embroidery);
  app->add_option("--tolerance", o->tolerance,
                  "largest distance of the outlines from the pixel boundaries, in pixels "
                  "(default 1)")
      ->check(FiniteNumber(0.01, 50.0));
  app->add_option("--mask", o->mask,
                  "picture of the same size whose black pixels are left out of every region");
  app->add_option("--threads", o->threads,
                  "thread chart: CSV of name,code,#rrggbb or a GIMP palette (.gpl) as Ink/Stitch keeps them");
  app->add_option("--thread-mode", o->threadMode,
                  "thread matching: 0 hue distance, 1 the same with each thread once, "
                  "2 RGB distance, 3 RGB with each thread once (default 0)")
      ->check(CLI::Range(0, 3));
  app->add_flag("--no-retry", o->noRetry, "one clustering pass, even when the count is missed");
  app->add_option("--denoise", o->denoise,
                  "smooth the picture first, keeping its edges; LAMBDA >= 0, larger keeps only "
                  "stronger edges (3000 suits noisy photographs)")
      ->check(FiniteNumber(0.0, HUGE_VAL));
  app->add_option("--background", o->background,
                  "also write the background (the frame colour's regions, with holes where the "
                  "objects are) as SVG");
  auto* drop = app->add_flag("--drop-background", o->dropBackground,
               "leave out the regions of the background colour (the largest colour on the frame)");
  app->add_flag("--keep-background", o->keepBackground,
                "with --inkstitch: keep the background colour, which is otherwise left out")
      ->excludes(drop);
  app->add_option("--mark", o->marks,
                  "X,Y: toggle the region under pixel X,Y (Y from the top) in or out of the output; "
                  "repeatable")
      ->allow_extra_args(false);
  app->add_option("--satin-width", o->satinWidth,
                  "MM: regions too thin for a disc of this width are strips, which --inkstitch writes as "
                  "satin columns, or running stitches under 1 mm (default 3.5, at most 10)")
      ->check(FiniteNumber(0.1, 10.0));
  app->add_flag("--no-satin", o->noSatin, "with --inkstitch: every region a fill, strips too");
  app->add_option("--underlap", o->underlap,
                  "MM: with --inkstitch and --report, each fill reaches this far under the neighbours "
                  "stitched after it, across their shared borders only (default 0.3 with --inkstitch)")
      ->check(FiniteNumber(0.0, 5.0));
  app->add_option("--time-limit", o->timeLimit,
                  "stop with an error, writing nothing, when segmenting takes longer than SECONDS")
      ->check(FiniteNumber(0.0, HUGE_VAL));
  return {app, [o]() {
            if (!o->pictures.outDir.empty() && !o->background.empty())
              return Fail("--background names one file: it is for one picture, without --out-dir");
            return RunPictures(o->pictures, o->outputs, "tracing",
                               [o](const std::string& input, const std::vector<std::string>& outputs, CWnd& progress) {
                                 TraceOptions one = *o;
                                 one.input = input;
                                 one.outputs = outputs;
                                 return RunTrace(one, progress);
                               });
          }};
}

}  // namespace cli
}  // namespace pictrace
