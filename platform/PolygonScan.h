// Exact point sampling of polygons, shared by polygon regions and polygon
// fills so that both light the same pixels.
//
// A scan line y meets an edge spanning y0 <= y < y1 at its exact crossing
// xe; the point (x, y) counts the crossings with xe <= x. Under ALTERNATE it
// is inside for an odd count, under WINDING for a non-zero sum of the edges'
// directions. Left and top edges are therefore inside, right and bottom
// edges outside.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "WinTypes.h"

namespace ptgdi {

// Coordinates in 1/256 pixel. Every vertex this layer meets is an integer
// or a point of cairo's 24.8 fixed-point flattening, so the grid is exact and
// all crossing tests below are integer arithmetic.
constexpr std::int64_t kFixedOne = 256;

struct FixedPoint {
  std::int64_t x;
  std::int64_t y;
};

// Converts a device coordinate to the grid; values beyond +-2^31 pixels
// (and NaN) are clamped, they cannot reach a surface anyway.
std::int64_t ToFixed(double v);

struct ScanEdge {
  std::int64_t x0, y0, x1, y1;  // upper and lower end, y0 < y1
  int dir;                      // +1 for an edge running down the figure, -1 up
  std::int64_t firstRow;        // first integer row y with y0 <= 256 y
  std::int64_t lastRow;         // last integer row y with 256 y < y1
};

// Pixels [x0, x1) of one row.
struct Span {
  std::int64_t x0;
  std::int64_t x1;
};

class PolygonScanner {
 public:
  // Adds a figure; it is closed implicitly (last vertex back to the first).
  void AddFigure(const std::vector<FixedPoint>& points);
  bool IsEmpty() const { return m_edges.empty(); }
  std::int64_t FirstRow() const { return m_firstRow; }
  std::int64_t LastRow() const { return m_lastRow; }

  bool Contains(std::int64_t x, std::int64_t y, int nFillMode) const;

  // Calls fn(row, spans) for every row of [rowBegin, rowEnd) that has inside
  // pixels, top to bottom; spans are sorted, disjoint and not adjacent.
  void ScanRows(std::int64_t rowBegin, std::int64_t rowEnd, int nFillMode,
                const std::function<void(std::int64_t, const std::vector<Span>&)>& fn) const;

 private:
  std::vector<ScanEdge> m_edges;
  std::int64_t m_firstRow = 0;
  std::int64_t m_lastRow = -1;
};

}  // namespace ptgdi
