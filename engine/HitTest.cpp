// Point-in-outline test through a GDI polygon region, so that hit testing
// agrees with the way the outlines are filled.
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"

int CPictrace::IsPointInOutline(sPoint& pt, sPoint* pPoints, int nPoints) {
  if (!pPoints || nPoints <= 0) return 0;
  std::vector<POINT> pts(static_cast<size_t>(nPoints));
  for (int k = 0; k < nPoints; k++) pts[k] = POINT{pPoints[k].x, pPoints[k].y};
  CRgn rgn;
  if (!rgn.CreatePolygonRgn(pts.data(), nPoints, ALTERNATE)) return 0;
  int inside = rgn.PtInRegion(pt.x, pt.y) ? 1 : 0;
  rgn.DeleteObject();
  return inside;
}
