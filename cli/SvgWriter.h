// SVG output of traced regions: one even-odd path per region (outer outline
// and holes), grouped by colour in the order of the colour list, in the
// output units of the trace.
#pragma once

#include <string>

#include "cli/TraceDocument.h"

namespace pictrace {

std::string FormatSvg(const TraceDocument& doc);

// The path data of one region: "M x y L x y ... Z" per polygon, with "C"
// for Bezier lines.
std::string FormatRegionPath(const CPTRegion& region);

}  // namespace pictrace
