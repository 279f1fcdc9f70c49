// Exact coverage of straight-line regions on the pixel grid: pixel (x, y) is
// inside a region when the point (x + 0.5, y + 0.5) is, under the even-odd
// rule, with edges taken half-open in y (y0 <= py < y1) and a crossing at xe
// counting for px > xe. Two regions sharing an edge therefore never both
// claim a pixel centre on it, and a partition of the picture covers every
// pixel exactly once. A polygon is a closed outline: when its last line does
// not end where the first starts (a hole chained from several pieces does not
// repeat its first vertex), the closing edge is implied, as SVG's "Z" and
// GDI's PT_CLOSEFIGURE imply it.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "PTResults.h"

namespace pipetest {

struct Coverage {
  int width = 0;
  int height = 0;
  std::vector<int> count;  // regions covering each pixel, row-major from the top
  std::vector<int> owner;  // index of the last region covering the pixel, or -1

  int Uncovered() const { return static_cast<int>(std::count(count.begin(), count.end(), 0)); }
  int CoveredTwice() const {
    return static_cast<int>(std::count_if(count.begin(), count.end(), [](int c) { return c > 1; }));
  }
};

// Regions in output units mapped back to pixels by (v - origin) / scale.
inline Coverage RasterizeRegions(const CPTRegions& regions, int width, int height, double ox = 0,
                                 double oy = 0, double sx = 1, double sy = 1) {
  Coverage cov;
  cov.width = width;
  cov.height = height;
  cov.count.assign(static_cast<size_t>(width) * height, 0);
  cov.owner.assign(static_cast<size_t>(width) * height, -1);
  std::vector<double> xs;
  for (int r = 0; r < regions.m_nRegions; r++) {
    const CPTRegion& reg = regions.m_pRegions[r];
    for (int y = 0; y < height; y++) {
      const double py = y + 0.5;
      xs.clear();
      for (int k = 0; k < reg.m_nPolygons; k++) {
        const CPTPolygon& poly = reg.m_pPolygons[k];
        if (poly.m_nLines <= 0) continue;
        for (int i = 0; i <= poly.m_nLines; i++) {
          // i == m_nLines is the closing edge, from the last end to the first start.
          const CPTPoint& a = i < poly.m_nLines ? poly.m_pLines[i].m_ptStart
                                                : poly.m_pLines[poly.m_nLines - 1].m_ptEnd;
          const CPTPoint& b = i < poly.m_nLines ? poly.m_pLines[i].m_ptEnd : poly.m_pLines[0].m_ptStart;
          double x0 = (a.x - ox) / sx, y0 = (a.y - oy) / sy;
          double x1 = (b.x - ox) / sx, y1 = (b.y - oy) / sy;
          if (y0 > y1) {
            std::swap(x0, x1);
            std::swap(y0, y1);
          }
          if (!(y0 <= py && py < y1)) continue;
          xs.push_back(x0 + (py - y0) * (x1 - x0) / (y1 - y0));
        }
      }
      std::sort(xs.begin(), xs.end());
      // Pixel centres px with xs[2j] < px <= xs[2j+1] are inside.
      for (size_t j = 0; j + 1 < xs.size(); j += 2) {
        int xa = static_cast<int>(std::floor(xs[j] - 0.5)) + 1;  // first x with x + 0.5 > xs[j]
        int xb = static_cast<int>(std::floor(xs[j + 1] - 0.5));  // last x with x + 0.5 <= xs[j+1]
        xa = std::max(xa, 0);
        xb = std::min(xb, width - 1);
        for (int x = xa; x <= xb; x++) {
          cov.count[static_cast<size_t>(y) * width + x]++;
          cov.owner[static_cast<size_t>(y) * width + x] = r;
        }
      }
    }
  }
  return cov;
}

}  // namespace pipetest
