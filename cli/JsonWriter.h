// JSON output of a trace: the whole CPTRegions content (every region, polygon
// and line with all four points) and the colour lists. The schema is
// documented in docs/json-schema.md.
#pragma once

#include <string>

#include "cli/TraceDocument.h"

namespace pictrace {

std::string FormatJson(const TraceDocument& doc);

}  // namespace pictrace
