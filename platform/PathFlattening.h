// Turns a device path (PathOp list) into figures of straight segments.
// Bezier curves are flattened by cairo; straight paths pass through
// unchanged, so their integer vertices stay exact.
#pragma once

#include <vector>

#include "AfxGdi.h"

struct _cairo;

namespace ptgdi {

struct PathPoint {
  double x;
  double y;
};

struct Figure {
  std::vector<PathPoint> points;  // at least two points
  bool closed = false;
};

std::vector<Figure> FlattenPath(const std::vector<CDC::PathOp>& ops);

// Replays the path into a cairo context (curves kept as curves), offset by
// (dx, dy).
void AppendCairoPath(_cairo* cr, const std::vector<CDC::PathOp>& ops, double dx, double dy);

}  // namespace ptgdi
