// Polygon regions for hit testing: the same point-sampling rule as polygon
// fills (PolygonScan.h).
#include <algorithm>

#include "AfxGdi.h"
#include "PolygonScan.h"

CRgn::CRgn() = default;

BOOL CRgn::CreatePolygonRgn(const POINT* lpPoints, int nCount, int nPolyFillMode) {
  if (m_bCreated || lpPoints == nullptr || nCount < 2) return FALSE;
  if (nPolyFillMode != ALTERNATE && nPolyFillMode != WINDING) return FALSE;
  m_points.assign(lpPoints, lpPoints + nCount);
  m_nFillMode = nPolyFillMode;
  RECT rc = {lpPoints[0].x, lpPoints[0].y, lpPoints[0].x, lpPoints[0].y};
  for (const POINT& p : m_points) {
    rc.left = std::min(rc.left, p.x);
    rc.top = std::min(rc.top, p.y);
    rc.right = std::max(rc.right, p.x);
    rc.bottom = std::max(rc.bottom, p.y);
  }
  m_rcBounds = rc;  // right and bottom are outside by the sampling rule
  m_bCreated = true;
  return TRUE;
}

BOOL CRgn::PtInRegion(int x, int y) const {
  if (!m_bCreated) return FALSE;
  if (x < m_rcBounds.left || x >= m_rcBounds.right || y < m_rcBounds.top ||
      y >= m_rcBounds.bottom)
    return FALSE;
  std::vector<ptgdi::FixedPoint> figure;
  figure.reserve(m_points.size());
  for (const POINT& p : m_points)
    figure.push_back({static_cast<std::int64_t>(p.x) * ptgdi::kFixedOne,
                      static_cast<std::int64_t>(p.y) * ptgdi::kFixedOne});
  ptgdi::PolygonScanner scanner;
  scanner.AddFigure(figure);
  return scanner.Contains(x, y, m_nFillMode) ? TRUE : FALSE;
}

void CRgn::Reset() {
  m_points.clear();
  m_nFillMode = ALTERNATE;
  m_rcBounds = {0, 0, 0, 0};
}
