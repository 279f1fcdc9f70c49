// Exact coverage of straight-line regions on the pixel grid (see
// common/EvenOddCover.h), a crossing at xe counting for centres px > xe. A
// polygon whose last line does not end where its first starts is closed by
// an implied edge, as SVG's "Z" and GDI's PT_CLOSEFIGURE close it. Bezier
// lines are followed as 32 straight pieces each, taken in the direction of
// the smaller end point, so that a curve and its reverse give the very same
// pieces.
#pragma once

#include <algorithm>
#include <vector>

#include "PTResults.h"
#include "common/EvenOddCover.h"

namespace pipetest {

struct Coverage {
  int width = 0, height = 0;
  std::vector<int> count;  // regions covering each pixel, row-major from the top
  std::vector<int> owner;  // index of the last region covering the pixel, or -1
  int Uncovered() const { return static_cast<int>(std::count(count.begin(), count.end(), 0)); }
  int CoveredTwice() const { return static_cast<int>(std::count_if(count.begin(), count.end(), [](int c) { return c > 1; })); }
};

// Regions in output units mapped back to pixels by (v - origin) / scale.
inline Coverage RasterizeRegions(const CPTRegions& regions, int width, int height, double ox = 0, double oy = 0,
                                 double sx = 1, double sy = 1) {
  Coverage cov{width, height, std::vector<int>(static_cast<size_t>(width) * height, 0),
               std::vector<int>(static_cast<size_t>(width) * height, -1)};
  for (int r = 0; r < regions.m_nRegions; r++) {
    std::vector<testimg::Edge> edges;
    for (int k = 0; k < regions.m_pRegions[r].m_nPolygons; k++) {
      const CPTPolygon& poly = regions.m_pRegions[r].m_pPolygons[k];
      for (int i = 0; poly.m_nLines > 0 && i <= poly.m_nLines; i++) {  // i == m_nLines: the closing edge
        const CPTPoint& a = i < poly.m_nLines ? poly.m_pLines[i].m_ptStart : poly.m_pLines[poly.m_nLines - 1].m_ptEnd;
        const CPTPoint& b = i < poly.m_nLines ? poly.m_pLines[i].m_ptEnd : poly.m_pLines[0].m_ptStart;
        if (i < poly.m_nLines && poly.m_pLines[i].m_nType == 1) {
          std::vector<testimg::Point> pts = testimg::FlattenLine(poly.m_pLines[i], 32);
          for (size_t k = 1; k < pts.size(); k++)
            edges.push_back({(pts[k - 1].x - ox) / sx, (pts[k - 1].y - oy) / sy, (pts[k].x - ox) / sx, (pts[k].y - oy) / sy});
          continue;
        }
        edges.push_back({(a.x - ox) / sx, (a.y - oy) / sy, (b.x - ox) / sx, (b.y - oy) / sy});
      }
    }
    testimg::PaintEvenOdd(edges, width, height, testimg::OnCrossing::kRightOnly, [&](int x, int y) {
      cov.count[static_cast<size_t>(y) * width + x]++;
      cov.owner[static_cast<size_t>(y) * width + x] = r;
    });
  }
  return cov;
}

}  // namespace pipetest
