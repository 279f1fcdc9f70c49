// Hand-built outline regions for the region output and drawing tests, and an
// engine whose protected stages the tests can call.
#pragma once

#include <cstring>
#include <initializer_list>
#include <utility>
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"

namespace outtest {

// An engine with an image header but no pixels: enough for the output code,
// which only reads the picture's size.
class OutputEngine : public CPictrace {
 public:
  OutputEngine(int width, int height) {
    m_bmiHeader.biWidth = width;
    m_bmiHeader.biHeight = height;
  }
  using CPictrace::CreateOutputPolygon;
  using CPictrace::ShowProgress;
};

// A window that records the progress positions it is sent.
class ProgressLog : public CWnd {
 public:
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM) override {
    if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
    return 0;
  }
  std::vector<int> positions;
};

inline sPoint* MakeChain(std::initializer_list<std::pair<int, int>> pts) {
  sPoint* p = new sPoint[pts.size()];
  int i = 0;
  for (const auto& xy : pts) p[i++] = sPoint{static_cast<short>(xy.first), static_cast<short>(xy.second)};
  return p;
}

// The closed chain of an axis-aligned rectangle on the pixel-corner grid,
// first point repeated at the end (five points).
inline std::vector<std::pair<int, int>> RectChain(int x0, int y0, int x1, int y1) {
  return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}, {x0, y0}};
}

inline void SetChain(sPoint*& pPoints, int& nPoints, const std::vector<std::pair<int, int>>& pts) {
  delete[] pPoints;
  pPoints = new sPoint[pts.size()];
  for (size_t i = 0; i < pts.size(); i++)
    pPoints[i] = sPoint{static_cast<short>(pts[i].first), static_cast<short>(pts[i].second)};
  nPoints = static_cast<int>(pts.size());
}

// A region whose reduced and raw chains are both the given outline.
inline COutlineRegion* MakeRegion(const std::vector<std::pair<int, int>>& outer, int colorIndex,
                                  COLORREF color) {
  COutlineRegion* r = new COutlineRegion;
  SetChain(r->m_pPoints, r->m_nPoints, outer);
  SetChain(r->m_pRawPoints, r->m_nRawPoints, outer);
  r->m_nColorIndex = colorIndex;
  r->m_crColor = color;
  return r;
}

inline void AddHole(COutlineRegion* r, const std::vector<std::pair<int, int>>& chain) {
  CHole* h = new CHole;
  SetChain(h->m_pPoints, h->m_nPoints, chain);
  SetChain(h->m_pRawPoints, h->m_nRawPoints, chain);
  r->m_arrHoles.Add(h);
}

}  // namespace outtest
