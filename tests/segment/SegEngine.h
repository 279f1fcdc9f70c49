// The engine with its segmentation and noise-reduction members opened, and
// builders for hand-made region graphs (header only: the denoise suite
// uses it too).
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "segment/RegionGraph.h"

class SegEngine : public CPictrace {
 public:
  using CPictrace::CombineRegion;
  using CPictrace::FiniteDifferenceLasMumfordU;
  using CPictrace::GetBlockRegions;
  using CPictrace::GetColorListFromRegion;
  using CPictrace::GetColorNumber;
  using CPictrace::GetValues;
  using CPictrace::InCentroid;
  using CPictrace::IsGrayValued;
  using CPictrace::MeanShift;
  using CPictrace::PyramidAlgo;
  using CPictrace::RemovingDecrease;
  using CPictrace::SetupGraph;
  using CPictrace::UpdateRemovingDecrease;

  void Load(std::vector<unsigned char>& dib) { ASSERT_EQ(SetDIBData(dib.data()), 1); }
  int Width() const { return m_bmiHeader.biWidth; }
  int Height() const { return m_bmiHeader.biHeight; }
  COLORREF Pixel(int x, int y) const { return testimg::PixelAt(m_pWorkBits, Width(), x, y); }
  std::vector<unsigned char> WorkPixels() const {  // rows without padding
    std::vector<unsigned char> out;
    const size_t row = 3 * static_cast<size_t>(Width()), stride = (row + 3) / 4 * 4;
    for (int y = 0; y < Height(); y++) out.insert(out.end(), m_pWorkBits + y * stride, m_pWorkBits + y * stride + row);
    return out;
  }
  // Appends a region of n pixels (x0 + k, y0) with the given mean.
  CRegion* AddRegion(DWORD n, float red, float green, float blue, int x0 = 0, int y0 = 0) {
    CRegion* r = new CRegion;
    r->m_nSize = n, r->m_fRed = red, r->m_fGreen = green, r->m_fBlue = blue;
    for (DWORD k = 0; k < n; k++)
      r->m_pPixelTail = (r->m_pPixelTail ? r->m_pPixelTail->m_pNext : r->m_pPixelHead) =
          new RegionPixel{static_cast<short>(x0 + static_cast<int>(k)), static_cast<short>(y0), nullptr};
    CRegion** pp = &m_pRegionHead;
    while (*pp) r->m_pPrev = *pp, pp = &(*pp)->m_pNext;
    return *pp = r;
  }
  int RegionCount() const {
    int n = 0;
    for (CRegion* r = m_pRegionHead; r; r = r->m_pNext) n++;
    return n;
  }
};

inline CNodeNeighbor* AddLink(CRegion* from, CRegion* to, DWORD weak) {
  CNodeNeighbor** pp = &from->m_pNeighbors;
  while (*pp) pp = &(*pp)->m_pNext;
  return *pp = new CNodeNeighbor{to, 0.0f, weak, nullptr};
}

// Same regions in the same order: sizes, means, values, pixel lists, and
// links (targets told by their first pixel) with their counts and values.
inline void ExpectSameGraph(const SegEngine& a, const SegEngine& b) {
  const CRegion *ra = a.m_pRegionHead, *rb = b.m_pRegionHead;
  for (int n = 0; ra && rb; ra = ra->m_pNext, rb = rb->m_pNext, n++) {
    ASSERT_TRUE(ra->m_nSize == rb->m_nSize && ra->m_fDecrease == rb->m_fDecrease && ra->m_fRed == rb->m_fRed &&
                ra->m_fGreen == rb->m_fGreen && ra->m_fBlue == rb->m_fBlue) << "region " << n;
    const RegionPixel *pa = ra->m_pPixelHead, *pb = rb->m_pPixelHead;
    for (; pa && pb; pa = pa->m_pNext, pb = pb->m_pNext) ASSERT_TRUE(pa->x == pb->x && pa->y == pb->y) << n;
    ASSERT_TRUE(!pa && !pb) << n;
    const CNodeNeighbor *la = ra->m_pNeighbors, *lb = rb->m_pNeighbors;
    for (; la && lb; la = la->m_pNext, lb = lb->m_pNext)
      ASSERT_TRUE(la->m_nWeakEdges == lb->m_nWeakEdges && la->m_fDecrease == lb->m_fDecrease &&
                  la->m_pRegion->m_pPixelHead->x == lb->m_pRegion->m_pPixelHead->x &&
                  la->m_pRegion->m_pPixelHead->y == lb->m_pRegion->m_pPixelHead->y) << n;
    ASSERT_TRUE(!la && !lb) << n;
  }
  EXPECT_TRUE(!ra && !rb);
}
