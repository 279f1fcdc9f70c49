#include "SegEngine.h"

#include <gtest/gtest.h>

void SegEngine::Load(std::vector<unsigned char>& dib) { ASSERT_EQ(SetDIBData(dib.data()), 1); }

std::vector<unsigned char> SegEngine::WorkPixels() const {
  std::vector<unsigned char> out;
  const int w = m_bmiHeader.biWidth, h = m_bmiHeader.biHeight;
  const size_t stride = (static_cast<size_t>(w) * 3 + 3) / 4 * 4;
  for (int y = 0; y < h; y++)
    out.insert(out.end(), m_pWorkBits + y * stride, m_pWorkBits + y * stride + 3 * static_cast<size_t>(w));
  return out;
}

CRegion* SegEngine::AddRegion(DWORD n, float red, float green, float blue, int x0, int y0) {
  CRegion* r = new CRegion;
  r->m_nSize = n;
  r->m_fRed = red;
  r->m_fGreen = green;
  r->m_fBlue = blue;
  for (DWORD k = 0; k < n; k++) {
    RegionPixel* p = new RegionPixel{static_cast<short>(x0 + static_cast<int>(k)), static_cast<short>(y0), nullptr};
    if (r->m_pPixelTail)
      r->m_pPixelTail->m_pNext = p;
    else
      r->m_pPixelHead = p;
    r->m_pPixelTail = p;
  }
  CRegion* last = m_pRegionHead;
  while (last && last->m_pNext) last = last->m_pNext;
  r->m_pPrev = last;
  if (last)
    last->m_pNext = r;
  else
    m_pRegionHead = r;
  return r;
}

int SegEngine::RegionCount() const {
  int n = 0;
  for (CRegion* r = m_pRegionHead; r; r = r->m_pNext) n++;
  return n;
}

CNodeNeighbor* AddLink(CRegion* from, CRegion* to, DWORD weak, float value) {
  CNodeNeighbor* l = new CNodeNeighbor{to, value, weak, nullptr};
  CNodeNeighbor** pp = &from->m_pNeighbors;
  while (*pp) pp = &(*pp)->m_pNext;
  *pp = l;
  return l;
}

void Connect(CRegion* a, CRegion* b, DWORD weak) {
  AddLink(a, b, weak);
  AddLink(b, a, weak);
}

CNodeNeighbor* LinkTo(CRegion* owner, CRegion* target) {
  for (CNodeNeighbor* l = owner->m_pNeighbors; l; l = l->m_pNext)
    if (l->m_pRegion == target) return l;
  return nullptr;
}

int LinkCount(const CRegion* r) {
  int n = 0;
  for (const CNodeNeighbor* l = r->m_pNeighbors; l; l = l->m_pNext) n++;
  return n;
}

void ExpectSameGraph(const SegEngine& a, const SegEngine& b) {
  const CRegion* ra = a.m_pRegionHead;
  const CRegion* rb = b.m_pRegionHead;
  int n = 0;
  for (; ra && rb; ra = ra->m_pNext, rb = rb->m_pNext, n++) {
    ASSERT_EQ(ra->m_nSize, rb->m_nSize) << "region " << n;
    ASSERT_EQ(ra->m_fRed, rb->m_fRed);
    ASSERT_EQ(ra->m_fGreen, rb->m_fGreen);
    ASSERT_EQ(ra->m_fBlue, rb->m_fBlue);
    ASSERT_EQ(ra->m_fDecrease, rb->m_fDecrease);
    ASSERT_EQ(ra->m_pPixelHead->x, rb->m_pPixelHead->x);
    ASSERT_EQ(ra->m_pPixelHead->y, rb->m_pPixelHead->y);
    ASSERT_EQ(LinkCount(ra), LinkCount(rb));
    for (const CNodeNeighbor *la = ra->m_pNeighbors, *lb = rb->m_pNeighbors; la; la = la->m_pNext, lb = lb->m_pNext) {
      ASSERT_EQ(la->m_nWeakEdges, lb->m_nWeakEdges);
      ASSERT_EQ(la->m_fDecrease, lb->m_fDecrease);
      ASSERT_EQ(la->m_pRegion->m_pPixelHead->x, lb->m_pRegion->m_pPixelHead->x);
      ASSERT_EQ(la->m_pRegion->m_pPixelHead->y, lb->m_pRegion->m_pPixelHead->y);
    }
  }
  EXPECT_EQ(ra, nullptr);
  EXPECT_EQ(rb, nullptr);
}
