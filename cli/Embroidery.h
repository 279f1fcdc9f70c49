// The embroidery plan of an output document: what a digitizer stitches and in
// which order. One layer per thread colour (fills by falling area, then
// centre lines); within a layer the pieces in a short travelling order, each
// entered where it is nearest to where the previous one ended. Centre
// lines of one colour are joined into as few continuous paths as their
// junctions allow. Coordinates stay in output units (kUnitsPerMm per mm).
#pragma once

#include <string>
#include <vector>

#include "cli/OutputDocument.h"

namespace pictrace {

// One stitched object: a fill (a region: outer ring first, then its holes),
// a running-stitch path (one chain of lines, open or closed) or a satin
// column (its two rails, then its rungs).
struct StitchPiece {
  bool fill = true;
  bool satin = false;
  int source = -1;  // the region's index, or the first centre line's
  std::vector<PathChain> rings;
  bool closed = true;    // a path that ends where it starts
  int lineCount = 0;     // a path: centre lines joined into it
  double area = 0;       // a fill: square output units, holes taken out
  double length = 0;     // a path: output units
  double angle = 0;      // a fill: its long axis, degrees counter-clockwise from +x as seen
  bool narrow = false;   // a region the engine flagged as a narrow strip
  double widthMin = 0, widthMax = 0;  // a satin column's width, rail to rail
  PathChain strip;       // a strip's satin or running stitch: the region's outline, its extent
  PathPoint start;        // where stitching enters: a fill's border point, a path's start
  PathPoint end;          // where it leaves: the same point for a fill, a path's end
};

struct StitchLayer {
  COLORREF color = 0;
  bool fill = true;
  bool inChart = false;  // named by the thread chart
  std::string name, code;
  std::string label;     // "name code", or the colour's #rrggbb without a chart
  double area = 0;       // square output units
  double length = 0;     // output units of running stitch
  double underlap = 0;   // square output units its fills grew under later neighbours
  std::vector<StitchPiece> pieces;  // in stitch order
};

struct StitchPlan {
  long width = 0, height = 0;       // output units
  std::vector<StitchLayer> layers;  // in stitch order
  double travel = 0;                // output units moved between consecutive pieces
};

StitchPlan PlanStitches(const OutputDocument& doc);
// The document's plan, made once and kept on it (OutputDocument::stitchPlan).
const StitchPlan& PlanOf(const OutputDocument& doc);

// The figures of the design report's one-line summary.
struct DesignReport {
  double widthMm = 0, heightMm = 0;
  size_t threads = 0;
  size_t pieces = 0;
  double stitches = 0;  // estimated, under kStitchModel
  double travelMm = 0;
  size_t warnings = 0;
};
DesignReport SummarizeDesign(const StitchPlan& plan);  // ReportWriter.cpp

// The extent of every piece, in output units; false for an empty design.
bool DesignBounds(const StitchPlan& plan, double& left, double& top, double& right, double& bottom);

// Geometry the plan is built from, exposed for the report and the tests.
// The area the rings cover as the SVG fills them (even-odd), Bezier lines
// sampled finely.
double FillArea(const std::vector<PathChain>& rings);
// The fill angle of rings (outer first, holes after): the direction of the
// principal axis of their area, degrees in [0, 180), counter-clockwise as
// seen; 0 for a shape without a long axis.
double FillAngle(const std::vector<PathChain>& rings);

// The design report's stitch model.
extern const char* const kStitchModel;
double FillStitches(double areaMm2);
double RunningStitches(double lengthMm);
double SatinStitches(double lengthMm);
// Estimated stitches of one piece under the model.
double PieceStitches(const StitchPiece& piece);

}  // namespace pictrace
