#include "outline/OutlineTestEngine.h"

#include <algorithm>
#include <cmath>
#include <cstring>

COLORREF TextColor(char c) {
  switch (c) {
    case '.': return RGB(255, 255, 255);
    case '#': return RGB(0, 0, 0);
    case 'r': return RGB(255, 0, 0);
    case 'g': return RGB(0, 255, 0);
    case 'b': return RGB(0, 0, 255);
    case 'y': return RGB(255, 255, 0);
    default: return RGB(static_cast<BYTE>(c), 128, 64);
  }
}

void OutlineEngine::LoadText(const std::vector<const char*>& rows) {
  int height = static_cast<int>(rows.size());
  int width = static_cast<int>(std::strlen(rows[0]));
  Load(width, height, [&](int x, int row) { return TextColor(rows[row][x]); });
}

std::vector<sPoint> Chain(const sPoint* p, int n) { return std::vector<sPoint>(p, p + n); }

sPoint Pt(int x, int y) { return sPoint{static_cast<short>(x), static_cast<short>(y)}; }

namespace {

// Adds the crossings of one closed chain with the rows' centre lines.
void AddCrossings(const sPoint* p, int n, int height, std::vector<std::vector<double>>& rows) {
  for (int k = 0; k < n; k++) {
    const sPoint& a = p[k];
    const sPoint& b = p[(k + 1) % n];
    if (a.y == b.y) continue;
    double y0 = std::min(a.y, b.y), y1 = std::max(a.y, b.y);
    for (int y = std::max(0, static_cast<int>(std::ceil(y0 - 0.5))); y < height; y++) {
      double yc = y + 0.5;
      if (yc < y0) continue;
      if (yc >= y1) break;
      double xe = a.x + (yc - a.y) * (b.x - a.x) / static_cast<double>(b.y - a.y);
      rows[y].push_back(xe);
    }
  }
}

}  // namespace

std::vector<int> RegionCoverage(const std::list<COutlineRegion*>& regions, int width, int height) {
  std::vector<int> cover(static_cast<size_t>(width) * height, 0);
  for (const COutlineRegion* r : regions) {
    std::vector<std::vector<double>> rows(height);
    AddCrossings(r->m_pPoints, r->m_nPoints, height, rows);
    for (INT_PTR h = 0; h < r->m_arrHoles.GetSize(); h++)
      AddCrossings(r->m_arrHoles[h]->m_pPoints, r->m_arrHoles[h]->m_nPoints, height, rows);
    for (int y = 0; y < height; y++) {
      std::vector<double>& xs = rows[y];
      std::sort(xs.begin(), xs.end());
      for (size_t k = 0; k + 1 < xs.size(); k += 2) {
        // Pixels whose centre c has xs[k] <= c < xs[k + 1].
        int first = static_cast<int>(std::ceil(xs[k] - 0.5));
        int last = static_cast<int>(std::ceil(xs[k + 1] - 0.5));
        for (int x = std::max(first, 0); x < std::min(last, width); x++)
          cover[static_cast<size_t>(y) * width + x]++;
      }
    }
  }
  return cover;
}
