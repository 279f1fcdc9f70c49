// The indexed and restart-point procedures against the plain ones of LiteralReference.h, on random input.
#include <gtest/gtest.h>

#include "outline/CrossingRepair.h"
#include "outline/ExchangeSort.h"
#include "outline/LiteralReference.h"
#include "outline/OutlineKit.h"
#include "outline/PiecePairs.h"
#include "outline/PieceSearch.h"

namespace {

// Pieces with keys and ends from small ranges, so that matches abound.
std::vector<COutlineVector*> Keyed(Rng& rng, Owned<COutlineVector>& own, int n) {
  for (int k = 0; k < n; k++) {
    own.push_back(Piece(rng.Below(4) - 1, rng.Below(4) - 1, {Pt(rng.Below(3), rng.Below(2))}));
    own.back()->m_ptEnd = Pt(rng.Below(3), rng.Below(2));
  }
  return {own.begin(), own.end()};
}

// Crossing repair against the restart from the first pixel; the exchange sort and the piece pairs against the
// comparison of every pair.
TEST(Differential, RepairSortAndPiecePairsMatchThePlainProcedures) {
  int repairs = 0, twins = 0, dups = 0;
  for (int seed = 1; seed <= 300; seed++) {
    Rng rng(seed);
    int w = 2 + rng.Below(30), h = 2 + rng.Below(30), labels = 2 + rng.Below(3), stride = (w * 3 + 3) / 4 * 4;
    std::vector<int> a(w * h);
    std::vector<unsigned char> bitsA(static_cast<size_t>(stride) * h);
    for (int& v : a) v = rng.Below(labels) - (labels > 3 ? 1 : 0);  // -1 is a label too
    for (unsigned char& b : bitsA) b = static_cast<unsigned char>(rng.Below(256));
    std::vector<int> b = a;
    std::vector<unsigned char> bitsB = bitsA;
    int fast = outline::RepairCrossings(a.data(), w, h, bitsA.data(), stride);
    ASSERT_EQ(fast, literal::RepairCrossings(b.data(), w, h, bitsB.data(), stride)) << seed;
    ASSERT_TRUE(a == b && bitsA == bitsB) << seed;
    repairs += fast;

    std::vector<int> keys(rng.Below(300));
    int range = 1 + rng.Below(seed % 3 == 0 ? 1000 : 6);  // many ties
    for (size_t k = 0; k < keys.size(); k++)  // every tenth a long ascending run: many swaps per step
      keys[k] = seed % 10 ? rng.Below(range) : static_cast<int>(k / 3);
    ASSERT_EQ(outline::ExchangeSortOrder(keys), literal::ExchangeSortOrder(keys)) << seed;

    Owned<COutlineVector> own;
    std::vector<COutlineVector*> p = Keyed(rng, own, rng.Below(120));
    std::vector<int> status = outline::ClassifyPieces(p);
    ASSERT_EQ(status, literal::ClassifyPieces(p)) << seed;
    for (int s : status) (s >= 0 ? twins : s == -2 ? dups : s)++;
  }
  EXPECT_TRUE(repairs > 1000 && twins > 100 && dups > 100);
  EXPECT_EQ(outline::ExchangeSortOrder({5, 5, 7}), (std::vector<int>{2, 1, 0}));  // 7 swaps with 5a, 5b stays
}

// Both searches get the same questions; answers are consumed at random, as the assembly consumes them, and some
// pieces from elsewhere.
TEST(Differential, PieceIndexAnswersAsTheLinearScan) {
  for (int seed = 1; seed <= 100; seed++) {
    Rng rng(seed);
    Owned<COutlineVector> own;
    std::vector<COutlineVector*> p = Keyed(rng, own, 1 + rng.Below(80));
    outline::CPieceIndex fast(p);
    literal::LinearPieceSearch slow{p};
    std::vector<int> cf, cs;
    for (int q = 0; q < 300; q++) {
      int key = rng.Below(5) - 1, from = rng.Below(static_cast<int>(p.size()) + 1), f = -1;  // 3: above all
      sPoint pt = Pt(rng.Below(3), rng.Below(2));
      switch (rng.Below(6)) {
        case 0: ASSERT_EQ(fast.FirstOfRegion(key), slow.FirstOfRegion(key)); break;
        case 1: ASSERT_EQ(fast.NextOfRegionOnLine(from, key, pt), slow.NextOfRegionOnLine(from, key, pt)); break;
        case 2: ASSERT_EQ(fast.RegionStartsAt(key, pt), slow.RegionStartsAt(key, pt)); break;
        case 3: ASSERT_EQ(f = fast.FirstWithNeighbor(key), slow.FirstWithNeighbor(key)); break;
        case 4: fast.ClosedWithNeighbor(key, cf), slow.ClosedWithNeighbor(key, cs); ASSERT_EQ(cf, cs); break;
        default: ASSERT_EQ(f = fast.NextInChain(key, pt), slow.NextInChain(key, pt));
      }
      if (f >= 0 && rng.Below(3)) p[f]->m_nNeighbor = -1;
      if (rng.Below(8) == 0) p[rng.Below(static_cast<int>(p.size()))]->m_nNeighbor = -1;
    }
  }
}

}  // namespace
