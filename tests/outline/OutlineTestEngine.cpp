#include "outline/OutlineTestEngine.h"

#include <cstring>

#include "common/EvenOddCover.h"

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

COutlineVector* Piece(int region, int neighbor, std::vector<sPoint> pts, int rawDy) {
  COutlineVector* v = new COutlineVector;
  v->m_nRegion = region;
  v->m_nNeighbor = neighbor;
  v->m_nPoints = v->m_nRawPoints = static_cast<int>(pts.size());
  v->m_pPoints = new sPoint[pts.size()];
  v->m_pRawPoints = new sPoint[pts.size()];
  for (size_t k = 0; k < pts.size(); k++) {
    v->m_pPoints[k] = pts[k];
    v->m_pRawPoints[k] = Pt(pts[k].x, pts[k].y + rawDy);
  }
  v->m_ptStart = pts.front();
  v->m_ptEnd = pts.back();
  return v;
}

namespace {

// Adds the edges of one closed chain.
void AddEdges(const sPoint* p, int n, std::vector<testimg::Edge>& edges) {
  for (int k = 0; k < n; k++)
    edges.push_back({static_cast<double>(p[k].x), static_cast<double>(p[k].y),
                     static_cast<double>(p[(k + 1) % n].x), static_cast<double>(p[(k + 1) % n].y)});
}

}  // namespace

std::vector<int> RegionCoverage(const std::list<COutlineRegion*>& regions, int width, int height) {
  std::vector<int> cover(static_cast<size_t>(width) * height, 0);
  for (const COutlineRegion* r : regions) {
    std::vector<testimg::Edge> edges;
    AddEdges(r->m_pPoints, r->m_nPoints, edges);
    for (INT_PTR h = 0; h < r->m_arrHoles.GetSize(); h++)
      AddEdges(r->m_arrHoles[h]->m_pPoints, r->m_arrHoles[h]->m_nPoints, edges);
    testimg::PaintEvenOdd(edges, width, height, testimg::OnCrossing::kRightAndOn,
                          [&](int x, int y) { cover[static_cast<size_t>(y) * width + x]++; });
  }
  return cover;
}
