// Outline regions built by hand on the pixel-corner grid (y counted from the
// picture's bottom row), for the output, preview and marking tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "common/TestImages.h"
#include "core/OutlineRecords.h"

namespace hand {

using Chain = std::vector<std::pair<int, int>>;

// The closed chain around the pixels [l, r) x [t, b), first corner repeated.
inline Chain Rect(int l, int t, int r, int b) { return {{l, t}, {r, t}, {r, b}, {l, b}, {l, t}}; }

inline void SetChain(sPoint*& p, int& n, const Chain& chain) {
  p = new sPoint[chain.size() + 1];
  n = static_cast<int>(chain.size());
  for (int i = 0; i < n; i++) p[i] = sPoint{static_cast<short>(chain[i].first), static_cast<short>(chain[i].second)};
}

// A region whose reduced and raw outer chains are `outer`, with the inclusive
// pixel box of the chain.
inline COutlineRegion* Region(const Chain& outer, int colorIndex, COLORREF color, int pixels = 0) {
  COutlineRegion* r = new COutlineRegion;
  SetChain(r->m_pPoints, r->m_nPoints, outer);
  SetChain(r->m_pRawPoints, r->m_nRawPoints, outer);
  r->m_nColorIndex = colorIndex, r->m_crColor = color, r->m_nPixels = pixels;
  if (outer.empty()) return r;
  auto xs = std::minmax_element(outer.begin(), outer.end());
  auto ys = std::minmax_element(outer.begin(), outer.end(), [](auto a, auto b) { return a.second < b.second; });
  r->m_rcBound = CRect(xs.first->first, ys.first->second, xs.second->first - 1, ys.second->second - 1);
  return r;
}

inline COutlineRegion* AddHole(COutlineRegion* r, const Chain& chain) {
  CHole* h = new CHole;
  SetChain(h->m_pPoints, h->m_nPoints, chain);
  SetChain(h->m_pRawPoints, h->m_nRawPoints, chain);
  r->m_arrHoles.Add(h);
  return r;
}

// Loads a width x height picture without a white pixel.
inline void Load(CPictrace& e, int width, int height) {
  auto dib = testimg::MakeDib24(width, height, [](int x, int y) { return RGB(x, y, 99); });
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
}

// Builds the output polygons in nLineType through the region output, which
// rebuilds them when asked for another type than the stored one.
inline void Build(CPictrace& e, int nLineType) {
  e.SetOutputLineType(!nLineType);
  CPTRegions scratch;
  e.GetRegions(&scratch, nLineType);
  e.SetOutputLineType(nLineType);
}

}  // namespace hand
