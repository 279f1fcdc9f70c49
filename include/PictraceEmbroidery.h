// Stitch geometry on the regions a trace hands out, in output units (0.1 mm
// when the output rectangle is set in tenths of a millimetre): strips become
// satin columns or running stitches along their centre lines, and fills grow
// a little under the neighbours stitched after them.
#pragma once

#include <vector>

#include "PTResults.h"

class CPictrace;

namespace pictrace {
namespace embroidery {

struct Point {
  double x = 0.0;
  double y = 0.0;
};

using Path = std::vector<Point>;   // open polyline
using Ring = std::vector<Point>;   // closed polygon; the last point is not repeated
using Shape = std::vector<Ring>;   // ring 0 the outer outline, the others its holes

// Sets the engine's satin width (which decides the regions it flags narrow)
// to dUnits output units, through its setter, in the pixels of its picture
// and output rectangle as they stand; the next segmentation uses it.
PICTRACE_API void SetSatinWidthInUnits(CPictrace& engine, double dUnits);

// A region's outlines as rings, cubics flattened to within dTolerance units.
PICTRACE_API Shape FlattenRegion(const CPTRegion& region, double dTolerance);

// Area of a shape (outer minus holes) and its perimeter, whatever the rings' turning.
PICTRACE_API double ShapeArea(const Shape& shape);
PICTRACE_API double ShapePerimeter(const Shape& shape);

// One satin column: two rails running the same way along the strip's sides,
// and rungs across both; each rung reaches a little past each rail.
struct SatinColumn {
  Path rails[2];
  std::vector<Path> rungs;  // two points each
  double dLength = 0.0;     // along the centre line
  double dMinWidth = 0.0;   // rail to rail, along the rungs
  double dMaxWidth = 0.0;
};

struct StripOptions {
  double dRunningBelow = 10.0;  // strips narrower than this become running stitches
  double dRungSpacing = 40.0;   // largest distance between rungs along the centre line
  double dRungTurn = 20.0;      // degrees of turn after which a rung is added
  double dSatinAbove = 100.0;   // strips wider than this stay fills (satin grows loose)
};

// What a strip is stitched as: satin columns, or centre lines for a running
// stitch when the strip is too narrow for satin; neither when it is too wide.
struct StripStitches {
  std::vector<SatinColumn> columns;
  std::vector<Path> runs;
  double dWidth = 0.0;  // typical width, rail to rail
};

// Columns of a strip from its centre lines: chains that meet at their ends
// (junctions and bends). At a junction the two chains that continue each
// other most straightly go on as one column; the others end there, reaching
// into it so that no gap opens. Free ends are carried to the outline.
PICTRACE_API StripStitches ColumnsFromCentreLines(const Shape& strip, const std::vector<Path>& centreLines,
                                                  const StripOptions& options);

// The whole job for one strip: its centre lines from the engine's thinning
// and line tracing on the strip rasterised finely enough, then the columns.
PICTRACE_API StripStitches StripToStitches(const Shape& strip, const StripOptions& options);

// The centre lines alone, as the engine's thinning and line tracing find them
// (ends of chains shorter than the strip's width pruned).
PICTRACE_API std::vector<Path> StripCentreLines(const Shape& strip);

// Underlap: shapes[i] stitched at rank[i] (lower first). Each shape grows by
// dGrow into every neighbour stitched after it, across their shared border
// only; the result is the grown shape (possibly several pieces, each outer
// ring followed by its holes). grownArea[i] receives the area added to i.
PICTRACE_API std::vector<std::vector<Shape>> Underlap(const std::vector<Shape>& shapes, const std::vector<int>& rank,
                                                      double dGrow, std::vector<double>* grownArea);

}  // namespace embroidery
}  // namespace pictrace
