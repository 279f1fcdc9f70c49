#include "segment/EdgeMap.h"

#include <cstddef>

void AccumulateEdgeMap(const double* pPlane, int nWidth, int nHeight, double* pEdge) {
  const std::ptrdiff_t h = nHeight;
  std::ptrdiff_t k = 0;
  for (int a = 0; a < nWidth; a++) {
    for (int b = 0; b < nHeight; b++, k++) {
      double s = pPlane[k];
      double g = 0.0;
      if (a > 0) g += (s - pPlane[k - h]) * (s - pPlane[k - h]);
      if (a < nWidth - 1) g += (s - pPlane[k + h]) * (s - pPlane[k + h]);
      if (b > 0) g += (s - pPlane[k - 1]) * (s - pPlane[k - 1]);
      if (b < nHeight - 1) g += (s - pPlane[k + 1]) * (s - pPlane[k + 1]);
      double e = g / (g + 400.0);
      if (e > pEdge[k]) pEdge[k] = e;
    }
  }
}
