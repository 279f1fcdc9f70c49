#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cli/Commands.h"
#include "cli/Embroidery.h"
#include "cli/ImageFile.h"
#include "cli/ImageLimits.h"
#include "cli/Writers.h"

namespace pictrace {
namespace cli {

int Fail(const std::string& message) {
  ErrorStream() << "pictrace: " << message << "\n";
  return kExitFailure;
}

bool LoadIntoEngine(CPictrace& engine, const std::string& path, std::vector<unsigned char>& dib) {
  std::string error;
  if (!LoadImageFile(path, dib, error)) {
    Fail(error);
    return false;
  }
  // The engine explains a refusal itself through the message box hook.
  if (!engine.SetDIBData(dib.data())) {
    Fail(path + ": the engine refused the picture");
    return false;
  }
  return true;
}

void AddMaxPixelsOption(CLI::App* app) {
  const std::string help = "refuse pictures of more than N pixels (default: what a trace can hold in the "
                           "memory available, here " + std::to_string(MaxImagePixels()) + ")";
  app->add_option_function<double>(
         "--max-pixels", [](const double& n) { SetMaxImagePixels(static_cast<std::uint64_t>(n)); }, help)
      ->check(FiniteNumber(1, static_cast<double>(kMaxPixelsEver)))
      ->type_name("N");
}

void AddEmbroideryOptions(CLI::App* app, EmbroideryOptions& o) {
  const char* kLen = "LEN";
  app->add_option("--width", o.size.width,
                  "output width: 100mm, 10cm, 4in or output units (10 per mm); alone it keeps the "
                  "picture's proportions")
      ->type_name(kLen);
  app->add_option("--height", o.size.height, "output height, as --width; both stretch the picture")->type_name(kLen);
  app->add_option("--size", o.size.size,
                  "output size WIDTHxHEIGHT, each side a length as --width (default: one output unit per "
                  "pixel)");
  app->add_flag("--inkstitch", o.inkstitch,
                "write the SVG for the embroidery digitizer Ink/Stitch: a layer per thread in stitch order, "
                "fills with angles, centre lines as running stitches; curves unless --no-curves");
  app->add_flag("--curves", o.curves, "fit cubic Bezier curves instead of straight lines");
  app->add_flag("--no-curves", o.noCurves, "straight lines, also with --inkstitch")->excludes("--curves");
}

bool SetOutputSize(CPictrace& engine, const SizeRequest& size) {
  long w = 0, h = 0;
  std::string error;
  if (!OutputSize(size, engine.m_bmiHeader.biWidth, engine.m_bmiHeader.biHeight, w, h, error)) {
    Fail(error);
    return false;
  }
  // The physical size scales the engine's thresholds (satin width, smallest
  // region), so that they mean what they say in millimetres.
  engine.SetImageRealRect(0, 0, w, h);
  return true;
}

bool FitDesign(CPictrace& engine, const OutputDocument& doc, const SizeRequest& size) {
  const bool bWidth = !size.width.empty() || !size.size.empty(), bHeight = !size.height.empty() || !size.size.empty();
  double left, top, right, bottom, fx, fy;
  if (!(bWidth || bHeight) || !DesignBounds(PlanOf(doc), left, top, right, bottom)) return false;
  const double w = doc.output.right - doc.output.left, h = doc.output.bottom - doc.output.top;
  fx = w / (right - left), fy = h / (bottom - top);
  if (!bHeight) fy = fx;
  if (!bWidth) fx = fy;
  if (std::fabs(fx - 1) <= 0.001 && std::fabs(fy - 1) <= 0.001) return false;
  engine.SetImageRealRect(0, 0, std::max(1L, std::lround(w * fx)), std::max(1L, std::lround(h * fy)));
  return true;
}

void CropToDesign(OutputDocument& doc) {
  double left, top, right, bottom;
  if (!DesignBounds(PlanOf(doc), left, top, right, bottom)) return;
  doc.page = RECT{static_cast<LONG>(std::floor(left)), static_cast<LONG>(std::floor(top)),
                  static_cast<LONG>(std::ceil(right)), static_cast<LONG>(std::ceil(bottom))};
  doc.stitchPlan.reset();  // the page moves where stitching starts
}

void ReportSummary(const OutputDocument& doc, const std::vector<std::string>& outputs) {
  for (size_t i = 0; i < outputs.size() && i < OutputFormats().size(); i++) {
    if (OutputFormats()[i].format != FormatReport || outputs[i].empty()) continue;
    const DesignReport r = SummarizeDesign(PlanOf(doc));
    SummaryStream() << "report: " << r.widthMm << " x " << r.heightMm << " mm, " << r.threads << " threads, " << r.pieces
              << " pieces, about " << std::lround(r.stitches) << " stitches, " << std::lround(r.travelMm)
              << " mm of travel, " << r.warnings << " warnings -> " << outputs[i] << "\n";
  }
}

CLI::Validator FiniteNumber(double lo, double hi) {
  std::ostringstream range;
  range << std::setprecision(12) << "expected a number ";
  if (std::isinf(hi))
    range << lo << " or larger";
  else
    range << "from " << lo << " to " << hi;
  return CLI::Validator(
      [lo, hi, wanted = range.str()](std::string& text) {
        double v = 0;
        const bool ok = CLI::detail::lexical_cast(text, v) && std::isfinite(v) && v >= lo && v <= hi;
        return ok ? std::string() : wanted + ", not " + text;
      },
      "NUMBER");
}

}  // namespace cli
}  // namespace pictrace
