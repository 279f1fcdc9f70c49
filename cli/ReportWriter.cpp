// The embroidery design report (JSON): the design's size in mm; per thread,
// in stitch order, its name and code, area, pieces and estimated stitches
// under a stated model; the travel between pieces; warnings for pieces too
// small to stitch and strips too narrow for a fill; the satin columns with
// their lengths and widths, and the underlap each thread's fills took.
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/Embroidery.h"
#include "cli/Length.h"
#include "cli/Writers.h"

namespace pictrace {

namespace {

using nlohmann::json;

// Smaller pieces than this (mm^2) give a warning: too small to stitch.
const double kSmallestPieceMm2 = 1.5;

// To so many decimals, as the nearest double to the decimal.
double Round(double v, int decimals) {
  const double scale = std::pow(10.0, decimals);
  return std::round(v * scale) / scale;
}

json AtMm(const PathPoint& p) { return json::array({Round(p.x / kUnitsPerMm, 1), Round(p.y / kUnitsPerMm, 1)}); }

}  // namespace

DesignReport SummarizeDesign(const StitchPlan& plan) {
  DesignReport r;
  r.widthMm = plan.width / kUnitsPerMm, r.heightMm = plan.height / kUnitsPerMm;
  r.travelMm = plan.travel / kUnitsPerMm;
  r.threads = plan.layers.size();
  for (const StitchLayer& layer : plan.layers)
    for (const StitchPiece& piece : layer.pieces) {
      r.pieces++;
      const double mm2 = piece.area / (kUnitsPerMm * kUnitsPerMm);
      r.stitches += PieceStitches(piece);
      // One warning each for a fill too small to stitch and a fill too narrow.
      if (piece.fill) r.warnings += (mm2 < kSmallestPieceMm2) + (piece.narrow ? 1 : 0);
    }
  return r;
}

std::string FormatReport(const OutputDocument& doc, CPictrace&) {
  const StitchPlan& plan = PlanOf(doc);
  const DesignReport summary = SummarizeDesign(plan);
  json threads = json::array(), warnings = json::array(), satins = json::array();
  for (const StitchLayer& layer : plan.layers) {
    double stitches = 0;
    int piece = 0;
    for (const StitchPiece& p : layer.pieces) {
      piece++;
      const double mm2 = p.area / (kUnitsPerMm * kUnitsPerMm);
      stitches += PieceStitches(p);
      if (p.satin)
        satins.push_back({{"thread", layer.label},
                          {"piece", piece},
                          {"region", p.source},
                          {"lengthMm", Round(p.length / kUnitsPerMm, 1)},
                          {"widthMm", {Round(p.widthMin / kUnitsPerMm, 2), Round(p.widthMax / kUnitsPerMm, 2)}},
                          {"stitches", std::lround(PieceStitches(p))}});
      if (!p.fill) continue;
      json where{{"thread", layer.label}, {"piece", piece}, {"region", p.source}, {"areaMm2", Round(mm2, 2)},
                 {"atMm", AtMm(p.start)}};
      if (mm2 < kSmallestPieceMm2) {
        where["kind"] = "small piece";
        where["message"] = "under 1.5 mm^2, too small to stitch";
        warnings.push_back(where);
      }
      if (p.narrow) {
        where["kind"] = "narrow strip";
        where["message"] = "too narrow for a fill; a satin column suits it";
        warnings.push_back(where);
      }
    }
    json entry{{"color", ColorToHex(layer.color)},
               {"name", layer.inChart ? json(layer.name) : json(nullptr)},
               {"code", layer.inChart ? json(layer.code) : json(nullptr)},
               {"label", layer.label},
               {"kind", layer.fill ? "fill" : "running stitch"},
               {"pieces", layer.pieces.size()},
               {"stitches", std::lround(stitches)}};
    if (layer.fill) entry["areaMm2"] = Round(layer.area / (kUnitsPerMm * kUnitsPerMm), 3);
    if (doc.underlap > 0 && layer.fill) entry["underlapMm2"] = Round(layer.underlap / (kUnitsPerMm * kUnitsPerMm), 3);
    else entry["lengthMm"] = Round(layer.length / kUnitsPerMm, 1);
    threads.push_back(entry);
  }
  json out{{"format", "pictrace-design-report"},
           {"version", 1},
           {"source", doc.source},
           {"sizeMm", {{"width", summary.widthMm}, {"height", summary.heightMm}}},
           {"stitchModel", kStitchModel},
           {"threads", threads},
           {"pieces", summary.pieces},
           {"stitches", std::lround(summary.stitches)},
           {"colorChanges", summary.threads > 0 ? summary.threads - 1 : 0},
           {"travelMm", Round(summary.travelMm, 1)},
           {"underlapMm", Round(doc.underlap / kUnitsPerMm, 2)},
           {"satinColumns", satins},
           {"warnings", warnings}};
  return out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace pictrace
