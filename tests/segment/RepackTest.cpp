// Packing a thinned-out region graph into fresh nodes keeps every value,
// count, order and pixel list; only the addresses change.
#include <gtest/gtest.h>

#include <vector>

#include "SegEngine.h"

namespace {

// Two engines with the same hand-made graph: five regions, some links in
// both directions, one best link and one region whose best is left over.
void Build(SegEngine& e, std::vector<CRegion*>& r) {
  r.clear();
  for (int i = 0; i < 5; i++) r.push_back(e.AddRegion(static_cast<DWORD>(i + 1), 10.0f * i, 3.5f, 250.0f - i, 0, i));
  Connect(r[0], r[1], 2);
  Connect(r[0], r[3], 0);
  Connect(r[1], r[2], 5);
  Connect(r[3], r[4], 1);
  Connect(r[2], r[4], 7);
  int k = 0;
  for (CRegion* x : r) {
    x->m_fDecrease = -0.25f * static_cast<float>(k++);
    for (CNodeNeighbor* l = x->m_pNeighbors; l; l = l->m_pNext) l->m_fDecrease = 1.5f * static_cast<float>(k++);
  }
  r[2]->m_pBestNeighbor = LinkTo(r[2], r[4]);  // the second of two links
  r[3]->m_pBestNeighbor = r[3]->m_pNeighbors;
}

class RepackEngine : public SegEngine {
 public:
  void Repack() { m_pRegionHead = RepackRegions(m_pRegionHead); }
};

TEST(RepackRegions, SameGraphInFreshNodes) {
  RepackEngine a;
  SegEngine b;
  std::vector<CRegion*> ra, rb;
  Build(a, ra);
  Build(b, rb);
  std::vector<RegionPixel*> pixels;
  for (CRegion* x : ra) pixels.push_back(x->m_pPixelHead);

  a.Repack();
  ExpectSameGraph(a, b);

  int i = 0;
  const CRegion* prev = nullptr;
  for (const CRegion* x = a.m_pRegionHead; x; x = x->m_pNext, i++) {
    EXPECT_EQ(x->m_pPrev, prev);
    prev = x;
    EXPECT_EQ(x->m_pPixelHead, pixels[static_cast<size_t>(i)]);  // pixel nodes are not moved
    EXPECT_EQ(x->m_pPixelTail->m_pNext, nullptr);
    EXPECT_EQ(x->m_nSize, static_cast<DWORD>(i + 1));
    if (i == 2) {
      ASSERT_NE(x->m_pBestNeighbor, nullptr);
      EXPECT_EQ(x->m_pBestNeighbor, x->m_pNeighbors->m_pNext);
      EXPECT_EQ(x->m_pBestNeighbor->m_nWeakEdges, 7u);
    } else if (i == 3) {
      EXPECT_EQ(x->m_pBestNeighbor, x->m_pNeighbors);
    } else {
      EXPECT_EQ(x->m_pBestNeighbor, nullptr);
    }
  }
  EXPECT_EQ(i, 5);
}

// A best link that is no longer one of the region's links is not carried.
TEST(RepackRegions, ClearsABestLinkOfAnotherRegion) {
  RepackEngine a;
  std::vector<CRegion*> r;
  Build(a, r);
  r[4]->m_pBestNeighbor = r[0]->m_pNeighbors;
  a.Repack();
  const CRegion* last = a.m_pRegionHead;
  while (last->m_pNext) last = last->m_pNext;
  EXPECT_EQ(last->m_pBestNeighbor, nullptr);
}

TEST(RepackRegions, EmptyList) {
  RepackEngine a;
  a.Repack();
  EXPECT_EQ(a.m_pRegionHead, nullptr);
}

}  // namespace
