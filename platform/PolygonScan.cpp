#include "PolygonScan.h"

#include <algorithm>
#include <cmath>

#include "AfxGdi.h"

namespace ptgdi {

namespace {

typedef __int128 Wide;  // products of two 41-bit differences

std::int64_t CeilDiv(std::int64_t n, std::int64_t d) {  // d > 0
  std::int64_t q = n / d;
  return (n % d != 0 && n > 0) ? q + 1 : q;
}

// Smallest integer x with xe <= x, where xe is the edge's crossing of row y.
std::int64_t FirstInsideColumn(const ScanEdge& e, std::int64_t row) {
  Wide dy = e.y1 - e.y0;
  Wide num = static_cast<Wide>(e.x0) * dy +
             static_cast<Wide>(row * kFixedOne - e.y0) * static_cast<Wide>(e.x1 - e.x0);
  Wide den = dy * kFixedOne;
  Wide q = num / den;
  if (num % den != 0 && num > 0) q += 1;
  return static_cast<std::int64_t>(q);
}

struct Crossing {
  std::int64_t column;  // first column on or right of the crossing
  int dir;
};

bool Inside(int count, int nFillMode) {
  return nFillMode == WINDING ? count != 0 : (count & 1) != 0;
}

}  // namespace

std::int64_t ToFixed(double v) {
  const double kLimit = 2147483648.0;
  if (std::isnan(v)) v = 0.0;
  v = std::min(std::max(v, -kLimit), kLimit);
  return std::llround(v * static_cast<double>(kFixedOne));
}

void PolygonScanner::AddFigure(const std::vector<FixedPoint>& points) {
  std::size_t n = points.size();
  for (std::size_t i = 0; i < n; i++) {
    const FixedPoint& a = points[i];
    const FixedPoint& b = points[(i + 1) % n];
    if (a.y == b.y) continue;  // horizontal edges cross no scan line
    ScanEdge e;
    if (a.y < b.y) {
      e = {a.x, a.y, b.x, b.y, 1, 0, 0};
    } else {
      e = {b.x, b.y, a.x, a.y, -1, 0, 0};
    }
    e.firstRow = CeilDiv(e.y0, kFixedOne);
    e.lastRow = CeilDiv(e.y1, kFixedOne) - 1;
    if (e.firstRow > e.lastRow) continue;  // lies between two scan lines
    if (m_edges.empty()) {
      m_firstRow = e.firstRow;
      m_lastRow = e.lastRow;
    } else {
      m_firstRow = std::min(m_firstRow, e.firstRow);
      m_lastRow = std::max(m_lastRow, e.lastRow);
    }
    m_edges.push_back(e);
  }
}

bool PolygonScanner::Contains(std::int64_t x, std::int64_t y, int nFillMode) const {
  int count = 0;
  for (const ScanEdge& e : m_edges) {
    if (y < e.firstRow || y > e.lastRow) continue;
    if (FirstInsideColumn(e, y) <= x) count += nFillMode == WINDING ? e.dir : 1;
  }
  return Inside(count, nFillMode);
}

// Walks the rows with an active-edge list (edges sorted by their first row),
// so each row costs only the edges that span it.
void PolygonScanner::ScanRows(
    std::int64_t rowBegin, std::int64_t rowEnd, int nFillMode,
    const std::function<void(std::int64_t, const std::vector<Span>&)>& fn) const {
  if (m_edges.empty()) return;
  rowBegin = std::max(rowBegin, m_firstRow);
  rowEnd = std::min(rowEnd, m_lastRow + 1);
  if (rowBegin >= rowEnd) return;

  std::vector<const ScanEdge*> pending;
  pending.reserve(m_edges.size());
  for (const ScanEdge& e : m_edges)
    if (e.lastRow >= rowBegin) pending.push_back(&e);
  std::sort(pending.begin(), pending.end(),
            [](const ScanEdge* a, const ScanEdge* b) { return a->firstRow < b->firstRow; });

  std::vector<const ScanEdge*> active;
  std::vector<Crossing> crossings;
  std::vector<Span> spans;
  std::size_t next = 0;
  for (std::int64_t row = rowBegin; row < rowEnd; row++) {
    while (next < pending.size() && pending[next]->firstRow <= row) active.push_back(pending[next++]);
    active.erase(std::remove_if(active.begin(), active.end(),
                                [row](const ScanEdge* e) { return e->lastRow < row; }),
                 active.end());
    if (active.empty()) {
      if (next >= pending.size()) break;
      continue;
    }
    crossings.clear();
    for (const ScanEdge* e : active) crossings.push_back({FirstInsideColumn(*e, row), e->dir});
    std::sort(crossings.begin(), crossings.end(),
              [](const Crossing& a, const Crossing& b) { return a.column < b.column; });

    spans.clear();
    int count = 0;
    bool inside = false;
    for (std::size_t i = 0; i < crossings.size();) {
      std::int64_t column = crossings[i].column;
      for (; i < crossings.size() && crossings[i].column == column; i++)
        count += nFillMode == WINDING ? crossings[i].dir : 1;
      bool now = Inside(count, nFillMode);
      if (now && !inside) spans.push_back({column, column});
      if (!now && inside) spans.back().x1 = column;
      inside = now;
    }
    if (!spans.empty()) fn(row, spans);
  }
}

}  // namespace ptgdi
