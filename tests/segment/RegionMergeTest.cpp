// The merge value, its two refresh rules and the merge with its link
// bookkeeping, on small graphs computed by hand.
#include <gtest/gtest.h>

#include "SegEngine.h"

namespace {

TEST(CombineDec, WardCostMinusScaledBonus) {
  SegEngine e;
  CRegion* a = e.AddRegion(2, 10, 20, 30);
  CRegion* b = e.AddRegion(3, 13, 24, 30);
  CNodeNeighbor* l = AddLink(a, b, 4);
  // cost = 2*3 * (9 + 16) / 5 = 30; bonus = 50 exp(-2/60) + 4 = 52.360805...
  EXPECT_FLOAT_EQ(e.CombineDec(a, l, 0.0), 30.0f);
  EXPECT_FLOAT_EQ(e.CombineDec(a, l, 1.0), -22.360805f);
  EXPECT_FLOAT_EQ(e.CombineDec(a, l, 2.0), -74.72161f);
}

TEST(CombineDec, SizesMultiplyIn64Bits) {
  SegEngine e;
  CRegion* a = e.AddRegion(0, 0, 0, 0);
  CRegion* b = e.AddRegion(0, 1, 0, 0);
  a->m_nSize = b->m_nSize = 100000;  // the product 1e10 does not fit 32 bits
  EXPECT_FLOAT_EQ(e.CombineDec(a, AddLink(a, b, 0), 0.0), 50000.0f);
}

TEST(CombineDec, SmallRegionBonusUsesTheSmallerSize) {
  SegEngine e;
  CRegion* a = e.AddRegion(0, 7, 7, 7);
  CRegion* b = e.AddRegion(0, 7, 7, 7);
  a->m_nSize = 600;
  b->m_nSize = 60;
  // equal means: value = -d * 50 exp(-60/60)
  EXPECT_FLOAT_EQ(e.CombineDec(a, AddLink(a, b, 0), 1.0), -18.393972f);
  EXPECT_FLOAT_EQ(e.CombineDec(b, AddLink(b, a, 3), 2.0), -42.787944f);
}

TEST(RemovingDecrease, BestIsTheEarliestOfEqualNegativeValues) {
  SegEngine e;
  CRegion* r = e.AddRegion(1, 0, 0, 0);
  CRegion* p = e.AddRegion(1, 1, 0, 0);
  CRegion* q = e.AddRegion(1, 0, 1, 0);
  Connect(r, p, 0);
  Connect(r, q, 0);
  e.RemovingDecrease(1.0);
  ASSERT_LT(r->m_fDecrease, 0.0f);
  EXPECT_EQ(r->m_pBestNeighbor, LinkTo(r, p));
  EXPECT_FLOAT_EQ(LinkTo(r, p)->m_fDecrease, LinkTo(r, q)->m_fDecrease);

  // At scale 0 every value is a positive colour cost: no best, value 0.
  e.RemovingDecrease(0.0);
  EXPECT_EQ(r->m_fDecrease, 0.0f);
  EXPECT_EQ(r->m_pBestNeighbor, nullptr);
  EXPECT_FLOAT_EQ(LinkTo(r, q)->m_fDecrease, 0.5f);
}

// Only the grown region's links are recomputed; the neighbour's link back
// takes the value from the grown side, its other links stay stale.
TEST(UpdateRemovingDecrease, RefreshesNeighboursOnlyPartially) {
  SegEngine e;
  CRegion* a = e.AddRegion(1, 0, 0, 0);
  CRegion* x = e.AddRegion(1, 3, 4, 0);
  CRegion* y = e.AddRegion(1, 100, 0, 0);
  CNodeNeighbor* ax = AddLink(a, x, 10);
  CNodeNeighbor* xa = AddLink(x, a, 0);
  CNodeNeighbor* xy = AddLink(x, y, 0, -100.0f);
  AddLink(y, x, 0, 3.0f);
  y->m_fDecrease = 7.0f;

  e.UpdateRemovingDecrease(a, 1.0);
  // v = 1*1*25/2 - (50 exp(-1/60) + 10) = 12.5 - 59.1735725
  EXPECT_FLOAT_EQ(ax->m_fDecrease, -46.673573f);
  EXPECT_EQ(a->m_pBestNeighbor, ax);
  EXPECT_FLOAT_EQ(a->m_fDecrease, -46.673573f);
  EXPECT_FLOAT_EQ(xa->m_fDecrease, -46.673573f);  // not x's own -36.67
  EXPECT_FLOAT_EQ(xy->m_fDecrease, -100.0f);
  EXPECT_EQ(x->m_pBestNeighbor, xy);
  EXPECT_FLOAT_EQ(x->m_fDecrease, -100.0f);
  EXPECT_FLOAT_EQ(y->m_fDecrease, 7.0f);  // two links away: untouched
}

TEST(UpdateRemovingDecrease, KeepsAStaleBestWhenNothingIsNegative) {
  SegEngine e;
  CRegion* a = e.AddRegion(1, 0, 0, 0);
  CRegion* x = e.AddRegion(1, 3, 4, 0);
  CRegion* y = e.AddRegion(1, 100, 0, 0);
  AddLink(a, x, 0);
  CNodeNeighbor* xa = AddLink(x, a, 0);
  CNodeNeighbor* xy = AddLink(x, y, 0, 5.0f);
  AddLink(y, x, 0);
  x->m_pBestNeighbor = xy;
  x->m_fDecrease = -1.0f;

  e.UpdateRemovingDecrease(a, 0.0);
  EXPECT_FLOAT_EQ(xa->m_fDecrease, 12.5f);
  EXPECT_EQ(x->m_fDecrease, 0.0f);
  EXPECT_EQ(x->m_pBestNeighbor, xy);
  EXPECT_EQ(a->m_fDecrease, 0.0f);
  EXPECT_EQ(a->m_pBestNeighbor, nullptr);
}

// B (the head) merges into A. X borders both: its two borders fold into
// one on both sides and the weak-edge counts add up. Y borders only B: its
// link is redirected and B's link to it moves to A's tail.
TEST(CombineRegion, RedirectsAndFoldsLinks) {
  SegEngine e;
  CRegion* b = e.AddRegion(3, 14, 24, 34, 20);
  CRegion* a = e.AddRegion(1, 10, 20, 30, 10);
  CRegion* x = e.AddRegion(1, 0, 0, 0, 30);
  CRegion* y = e.AddRegion(1, 0, 0, 0, 31);
  CRegion* z = e.AddRegion(1, 0, 0, 0, 32);
  AddLink(a, z, 2);
  CNodeNeighbor* ab = AddLink(a, b, 3);
  AddLink(a, x, 1);
  AddLink(b, x, 4);
  AddLink(b, a, 3);
  CNodeNeighbor* by = AddLink(b, y, 5);
  AddLink(x, b, 4);
  AddLink(x, a, 1);
  CNodeNeighbor* yb = AddLink(y, b, 5);
  AddLink(z, a, 2);
  a->m_pBestNeighbor = ab;

  double cost = e.CombineRegion(a);
  EXPECT_DOUBLE_EQ(cost, 36.0);  // 1*3 * (16+16+16) / 4

  EXPECT_EQ(e.m_pRegionHead, a);
  EXPECT_EQ(a->m_pPrev, nullptr);
  EXPECT_EQ(e.RegionCount(), 4);
  EXPECT_EQ(a->m_nSize, 4u);
  EXPECT_FLOAT_EQ(a->m_fRed, 13.0f);
  EXPECT_FLOAT_EQ(a->m_fGreen, 23.0f);
  EXPECT_FLOAT_EQ(a->m_fBlue, 33.0f);
  EXPECT_EQ(a->m_pBestNeighbor, nullptr);

  // A: Z, X, then the link moved from B.
  ASSERT_EQ(LinkCount(a), 3);
  CNodeNeighbor* l = a->m_pNeighbors;
  EXPECT_EQ(l->m_pRegion, z);
  EXPECT_EQ(l->m_nWeakEdges, 2u);
  l = l->m_pNext;
  EXPECT_EQ(l->m_pRegion, x);
  EXPECT_EQ(l->m_nWeakEdges, 5u);
  l = l->m_pNext;
  EXPECT_EQ(l, by);
  EXPECT_EQ(l->m_pRegion, y);
  EXPECT_EQ(l->m_nWeakEdges, 5u);

  ASSERT_EQ(LinkCount(x), 1);
  EXPECT_EQ(x->m_pNeighbors->m_pRegion, a);
  EXPECT_EQ(x->m_pNeighbors->m_nWeakEdges, 5u);
  ASSERT_EQ(LinkCount(y), 1);
  EXPECT_EQ(y->m_pNeighbors, yb);
  EXPECT_EQ(yb->m_pRegion, a);

  // Pixels: A's, then B's, in order.
  int expected[] = {10, 20, 21, 22};
  int k = 0;
  for (RegionPixel* p = a->m_pPixelHead; p; p = p->m_pNext) {
    ASSERT_LT(k, 4);
    EXPECT_EQ(p->x, expected[k++]);
  }
  EXPECT_EQ(k, 4);
  EXPECT_EQ(a->m_pPixelTail->x, 22);
}

TEST(CombineRegion, UnlinksAnAbsorbedRegionFromTheMiddle) {
  SegEngine e;
  CRegion* a = e.AddRegion(1, 0, 0, 0, 0);
  CRegion* b = e.AddRegion(1, 2, 0, 0, 1);
  CRegion* c = e.AddRegion(1, 9, 9, 9, 2);
  Connect(a, b, 1);
  Connect(b, c, 1);
  a->m_pBestNeighbor = LinkTo(a, b);
  EXPECT_DOUBLE_EQ(e.CombineRegion(a), 2.0);  // 1*1*4/2
  EXPECT_EQ(e.m_pRegionHead, a);
  EXPECT_EQ(a->m_pNext, c);
  EXPECT_EQ(c->m_pPrev, a);
  EXPECT_EQ(c->m_pNext, nullptr);
  EXPECT_EQ(LinkTo(c, a)->m_nWeakEdges, 1u);
  EXPECT_EQ(LinkTo(a, c)->m_nWeakEdges, 1u);
  EXPECT_FLOAT_EQ(a->m_fRed, 1.0f);
}

TEST(CombineRegion, WithoutAChosenNeighbourNothingMerges) {
  SegEngine e;
  CRegion* a = e.AddRegion(1, 0, 0, 0);
  CRegion* b = e.AddRegion(1, 2, 0, 0, 1);
  Connect(a, b, 1);
  EXPECT_DOUBLE_EQ(e.CombineRegion(a), 0.0);
  EXPECT_EQ(e.RegionCount(), 2);
}

}  // namespace
