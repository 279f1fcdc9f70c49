// The indexed and restart-point procedures against the plain ones of
// LiteralReference.h, on random input and on the pieces of random pictures.
#include <gtest/gtest.h>

#include "outline/CrossingRepair.h"
#include "outline/ExchangeSort.h"
#include "outline/LiteralReference.h"
#include "outline/OutlineHitTest.h"
#include "outline/OutlineKit.h"
#include "outline/PiecePairs.h"
#include "outline/PieceSearch.h"

namespace {

TEST(Differential, CrossingRepairMatchesTheRestartFromTheFirstPixel) {
  int total = 0;
  for (int seed = 1; seed <= 300; seed++) {
    Rng rng(seed);
    int w = 2 + rng.Below(30), h = 2 + rng.Below(30), labels = 2 + rng.Below(3);
    int stride = (w * 3 + 3) / 4 * 4;
    std::vector<int> a(w * h);
    std::vector<unsigned char> bitsA(static_cast<size_t>(stride) * h);
    for (int& v : a) v = rng.Below(labels) - (labels > 3 ? 1 : 0);  // -1 is a label too
    for (unsigned char& b : bitsA) b = static_cast<unsigned char>(rng.Below(256));
    std::vector<int> b = a;
    std::vector<unsigned char> bitsB = bitsA;
    int fast = outline::RepairCrossings(a.data(), w, h, bitsA.data(), stride);
    ASSERT_EQ(fast, literal::RepairCrossings(b.data(), w, h, bitsB.data(), stride)) << seed;
    ASSERT_EQ(a, b) << seed;
    ASSERT_EQ(bitsA, bitsB) << seed;
    total += fast;
  }
  EXPECT_GT(total, 1000);
}

TEST(Differential, ExchangeSortMatchesTheComparisonOfEveryPair) {
  for (int seed = 1; seed <= 300; seed++) {
    Rng rng(seed);
    std::vector<int> keys(rng.Below(300));
    int range = 1 + rng.Below(seed % 3 == 0 ? 1000 : 6);  // many ties
    for (int& k : keys) k = rng.Below(range);
    if (seed % 10 == 0)  // a long ascending run: many swaps per step
      for (size_t k = 0; k < keys.size(); k++) keys[k] = static_cast<int>(k / 3);
    ASSERT_EQ(outline::ExchangeSortOrder(keys), literal::ExchangeSortOrder(keys)) << seed;
  }
  // [5a 5b 7]: 7 swaps with 5a, then 5b < 5a is not swapped.
  EXPECT_EQ(outline::ExchangeSortOrder({5, 5, 7}), (std::vector<int>{2, 1, 0}));
}

COutlineVector* Keyed(Rng& rng) {
  COutlineVector* v = Piece(rng.Below(4) - 1, rng.Below(4) - 1, {Pt(rng.Below(3), rng.Below(2))});
  v->m_ptEnd = Pt(rng.Below(3), rng.Below(2));
  return v;
}

TEST(Differential, PiecePairsMatchTheComparisonOfEveryPair) {
  int twins = 0, dups = 0;
  for (int seed = 1; seed <= 200; seed++) {
    Rng rng(seed);
    Owned<COutlineVector> l;
    for (int k = rng.Below(120); k > 0; k--) l.push_back(Keyed(rng));
    std::vector<COutlineVector*> p(l.begin(), l.end());
    std::vector<int> fast = outline::ClassifyPieces(p);
    ASSERT_EQ(fast, literal::ClassifyPieces(p)) << seed;
    for (int s : fast) (s >= 0 ? twins : s == -2 ? dups : s)++;
  }
  EXPECT_GT(twins, 100);
  EXPECT_GT(dups, 100);
}

// Asks both searches the same questions and consumes the answers, at random.
TEST(Differential, PieceIndexAnswersAsTheLinearScan) {
  for (int seed = 1; seed <= 100; seed++) {
    Rng rng(seed);
    Owned<COutlineVector> l;
    for (int k = 1 + rng.Below(80); k > 0; k--) l.push_back(Keyed(rng));
    std::vector<COutlineVector*> p(l.begin(), l.end());
    outline::CPieceIndex fast(p);
    literal::LinearPieceSearch slow{p};
    std::vector<int> cf, cs;
    for (int q = 0; q < 300; q++) {
      int key = rng.Below(5) - 1, f = -1;  // 3 lies above every key
      sPoint pt = Pt(rng.Below(3), rng.Below(2));
      switch (rng.Below(6)) {
        case 0: ASSERT_EQ(fast.FirstOfRegion(key), slow.FirstOfRegion(key)); break;
        case 1: {
          int from = rng.Below(static_cast<int>(p.size()) + 1);
          ASSERT_EQ(fast.NextOfRegionOnLine(from, key, pt), slow.NextOfRegionOnLine(from, key, pt));
          break;
        }
        case 2: ASSERT_EQ(fast.RegionStartsAt(key, pt), slow.RegionStartsAt(key, pt)); break;
        case 3:
          f = fast.FirstWithNeighbor(key);
          ASSERT_EQ(f, slow.FirstWithNeighbor(key));
          if (f >= 0 && rng.Below(2)) p[f]->m_nNeighbor = -1;
          break;
        case 4:
          fast.ClosedWithNeighbor(key, cf);
          slow.ClosedWithNeighbor(key, cs);
          ASSERT_EQ(cf, cs);
          break;
        default:
          f = fast.NextInChain(key, pt);
          ASSERT_EQ(f, slow.NextInChain(key, pt));
          if (f >= 0) p[f]->m_nNeighbor = -1;
      }
      if (rng.Below(8) == 0) p[rng.Below(static_cast<int>(p.size()))]->m_nNeighbor = -1;
    }
  }
}

TEST(Differential, PrebuiltHitTestAnswersAsIsPointInOutline) {
  OutlineEngine e;
  for (int seed = 1; seed <= 50; seed++) {
    Rng rng(seed);
    V poly(3 + rng.Below(12));
    for (sPoint& p : poly) p = Pt(rng.Below(12), rng.Below(12));
    outline::COutlineHitTest test(poly.data(), static_cast<int>(poly.size()));
    for (int y = -1; y <= 12; y++)
      for (int x = -1; x <= 12; x++) {
        sPoint p = Pt(x, y);
        ASSERT_EQ(test.Contains(p), e.IsPointInOutline(p, poly.data(), static_cast<int>(poly.size())) == 1);
      }
  }
}

}  // namespace
