// A closed vertex chain as a GDI polygon region (alternate rule), built once
// and asked about many points. Answers exactly as IsPointInOutline does for
// the same chain.
#pragma once

#include <vector>

#include "core/NoCopy.h"
#include "AfxWin.h"
#include "core/OutlineRecords.h"

namespace outline {

class COutlineHitTest : private pictrace::NoCopy {
 public:
  COutlineHitTest(const sPoint* points, int n) {
    if (!points || n <= 0) return;
    std::vector<POINT> pts(static_cast<size_t>(n));
    for (int k = 0; k < n; k++) pts[k] = POINT{points[k].x, points[k].y};
    m_bValid = m_rgn.CreatePolygonRgn(pts.data(), n, ALTERNATE) != FALSE;
  }

  bool Contains(const sPoint& pt) const { return m_bValid && m_rgn.PtInRegion(pt.x, pt.y) != FALSE; }

 private:
  CRgn m_rgn;
  bool m_bValid = false;
};

}  // namespace outline
