// The engine with its segmentation and noise-reduction members opened, and
// builders for hand-made region graphs (header only: tests/denoise uses it).
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
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

  void Load(std::vector<unsigned char> dib) { ASSERT_EQ(SetDIBData(dib.data()), 1); }  // copied
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
  int RegionCount() const { int n = 0; for (CRegion* r = m_pRegionHead; r; r = r->m_pNext) n++; return n; }
};

// The region list written out in order: sizes, values and means, pixels,
// and links (targets told by their first pixel) with their counts and values.
inline std::vector<double> Signature(const SegEngine& e) {
  std::vector<double> s;
  for (const CRegion* r = e.m_pRegionHead; r; r = r->m_pNext) {
    s.insert(s.end(), {-1.0, double(r->m_nSize), r->m_fDecrease, r->m_fRed, r->m_fGreen, r->m_fBlue});
    for (const RegionPixel* p = r->m_pPixelHead; p; p = p->m_pNext) s.insert(s.end(), {double(p->x), double(p->y)});
    for (const CNodeNeighbor* l = r->m_pNeighbors; l; l = l->m_pNext)
      s.insert(s.end(), {-2.0, double(l->m_nWeakEdges), l->m_fDecrease, double(l->m_pRegion->m_pPixelHead->x),
                         double(l->m_pRegion->m_pPixelHead->y)});
  }
  return s;
}

// FNV-1a over the bytes of the values added, for the result locks.
struct Fnv {
  std::uint64_t h = 14695981039346656037ull;
  template <typename T>
  Fnv& Add(const T& v) {
    for (size_t i = 0; i < sizeof v; i++) h = (h ^ reinterpret_cast<const unsigned char*>(&v)[i]) * 1099511628211ull;
    return *this;
  }
};
