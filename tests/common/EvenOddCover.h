// Exact coverage of straight-edged shapes on the pixel grid: pixel (x, y) is
// inside when its centre (x + 0.5, y + 0.5) is, under the even-odd rule.
// Edges are half-open in y (y0 <= py < y1), so shapes that share an edge
// never both claim a pixel centre on it and a partition of the picture
// covers every pixel exactly once.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

namespace testimg {

struct Edge {
  double x0, y0, x1, y1;
};

struct Point {
  double x, y;
};

// A line of a polygon as n + 1 points from its start to its end: a Bezier
// line evaluated at n even steps, computed from the smaller end point so that
// the line walked backwards gives the same points in reverse.
template <class Line>
std::vector<Point> FlattenLine(const Line& l, int n) {
  Point p[4] = {{l.m_ptStart.x, l.m_ptStart.y}, {l.m_ptCtrl1.x, l.m_ptCtrl1.y},
                {l.m_ptCtrl2.x, l.m_ptCtrl2.y}, {l.m_ptEnd.x, l.m_ptEnd.y}};
  const bool flip = p[3].x < p[0].x || (p[3].x == p[0].x && p[3].y < p[0].y);
  if (flip) std::swap(p[0], p[3]), std::swap(p[1], p[2]);
  std::vector<Point> out;
  for (int k = 0; k <= n; k++) {
    double t = static_cast<double>(k) / n, s = 1.0 - t;
    double b0 = s * s * s, b1 = 3 * s * s * t, b2 = 3 * s * t * t, b3 = t * t * t;
    out.push_back({b0 * p[0].x + b1 * p[1].x + b2 * p[2].x + b3 * p[3].x, b0 * p[0].y + b1 * p[1].y + b2 * p[2].y + b3 * p[3].y});
  }
  if (flip) std::reverse(out.begin(), out.end());
  return out;
}

// Which side of a crossing at xe a pixel centre lying exactly on it falls.
enum class OnCrossing {
  kRightOnly,  // a crossing at xe counts for centres px > xe
  kRightAndOn  // a crossing at xe counts for centres px >= xe
};

// Calls paint(x, y) for every pixel of a width x height grid whose centre lies
// inside the edges taken together (one shape: an outline and its holes).
inline void PaintEvenOdd(const std::vector<Edge>& edges, int width, int height, OnCrossing rule,
                  const std::function<void(int x, int y)>& paint) {
  std::vector<double> xs;
  for (int y = 0; y < height; y++) {
    const double py = y + 0.5;
    xs.clear();
    for (const Edge& e : edges) {
      double x0 = e.x0, y0 = e.y0, x1 = e.x1, y1 = e.y1;
      if (y0 > y1) {
        std::swap(x0, x1);
        std::swap(y0, y1);
      }
      if (!(y0 <= py && py < y1)) continue;
      xs.push_back(x0 + (py - y0) * (x1 - x0) / (y1 - y0));
    }
    std::sort(xs.begin(), xs.end());
    for (size_t j = 0; j + 1 < xs.size(); j += 2) {
      int first, last;  // the inside run of centres between xs[j] and xs[j + 1]
      if (rule == OnCrossing::kRightOnly) {
        first = static_cast<int>(std::floor(xs[j] - 0.5)) + 1;  // x + 0.5 > xs[j]
        last = static_cast<int>(std::floor(xs[j + 1] - 0.5));   // x + 0.5 <= xs[j + 1]
      } else {
        first = static_cast<int>(std::ceil(xs[j] - 0.5));         // x + 0.5 >= xs[j]
        last = static_cast<int>(std::ceil(xs[j + 1] - 0.5)) - 1;  // x + 0.5 < xs[j + 1]
      }
      for (int x = std::max(first, 0); x <= std::min(last, width - 1); x++) paint(x, y);
    }
  }
}

}  // namespace testimg
