// Distance from a point to a chain of cubic Bezier lines, by dense sampling:
// enough to check a fitting tolerance to a few thousandths of a pixel.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "PTResults.h"

namespace outtest {

inline double SegmentDistance(double px, double py, double ax, double ay, double bx, double by) {
  double dx = bx - ax, dy = by - ay;
  double len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? ((px - ax) * dx + (py - ay) * dy) / len2 : 0.0;
  t = std::min(1.0, std::max(0.0, t));
  double qx = ax + t * dx - px, qy = ay + t * dy - py;
  return std::sqrt(qx * qx + qy * qy);
}

// Smallest distance from (px, py) to the polygon's curve (lines of type 0 are
// taken as straight).
inline double DistanceToPolygon(const CPTPolygon& poly, double px, double py) {
  const int kSteps = 64;
  double best = std::numeric_limits<double>::infinity();
  for (int i = 0; i < poly.m_nLines; i++) {
    const CPTLine& l = poly.m_pLines[i];
    if (l.m_nType == 0) {
      best = std::min(best, SegmentDistance(px, py, l.m_ptStart.x, l.m_ptStart.y, l.m_ptEnd.x,
                                            l.m_ptEnd.y));
      continue;
    }
    double prevX = l.m_ptStart.x, prevY = l.m_ptStart.y;
    for (int s = 1; s <= kSteps; s++) {
      double t = static_cast<double>(s) / kSteps, u = 1 - t;
      double x = u * u * u * l.m_ptStart.x + 3 * u * u * t * l.m_ptCtrl1.x +
                 3 * u * t * t * l.m_ptCtrl2.x + t * t * t * l.m_ptEnd.x;
      double y = u * u * u * l.m_ptStart.y + 3 * u * u * t * l.m_ptCtrl1.y +
                 3 * u * t * t * l.m_ptCtrl2.y + t * t * t * l.m_ptEnd.y;
      best = std::min(best, SegmentDistance(px, py, prevX, prevY, x, y));
      prevX = x;
      prevY = y;
    }
  }
  return best;
}

}  // namespace outtest
