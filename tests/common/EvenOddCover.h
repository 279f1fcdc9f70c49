// Exact coverage of straight-edged shapes on the pixel grid: pixel (x, y) is
// inside when its centre (x + 0.5, y + 0.5) is, under the even-odd rule.
// Edges are half-open in y (y0 <= py < y1), so shapes that share an edge
// never both claim a pixel centre on it and a partition of the picture
// covers every pixel exactly once.
#pragma once

#include <functional>
#include <vector>

namespace testimg {

struct Edge {
  double x0, y0, x1, y1;
};

// Which side of a crossing at xe a pixel centre lying exactly on it falls.
enum class OnCrossing {
  kRightOnly,  // a crossing at xe counts for centres px > xe
  kRightAndOn  // a crossing at xe counts for centres px >= xe
};

// Calls paint(x, y) for every pixel of a width x height grid whose centre lies
// inside the edges taken together (one shape: an outline and its holes).
void PaintEvenOdd(const std::vector<Edge>& edges, int width, int height, OnCrossing rule,
                  const std::function<void(int x, int y)>& paint);

}  // namespace testimg
