// The engine's current outlines in output units, straight and as curves,
// kept so that ConvertToBezier can recognise a polygon the host got from
// GetRegions and hand back the curve the curve output gives that outline.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "Pictrace.h"

struct COwnCurves {
  CRect rect;
  double tolerance = 0.0;
  int width = 0, height = 0;
  size_t regions = 0;
  std::vector<std::vector<CPTLine>> straight;  // per outline, as GetRegions(…, 0) gives it
  std::vector<std::vector<CPTLine>> curves;    // the same outline as GetRegions(…, 1) gives it
  std::unordered_multimap<std::uint64_t, size_t> byStart;  // outlines by their first point
};
