// The indexed procedures against the plain ones, on random input.
#include <gtest/gtest.h>

#include <vector>

#include "outline/ComponentList.h"
#include "outline/CrossingRepair.h"
#include "outline/DiscFit.h"
#include "outline/ExchangeSort.h"
#include "outline/FlatImages.h"
#include "outline/LiteralReference.h"
#include "outline/OutlineHitTest.h"
#include "outline/OutlineTestEngine.h"
#include "outline/PiecePairs.h"
#include "outline/PieceSearch.h"
#include "outline/RegionAssembly.h"

namespace {

TEST(FastPath, CrossingRepairMatchesTheRestartFromTheFirstPixel) {
  int totalRepairs = 0;
  for (int seed = 1; seed <= 300; seed++) {
    flat::Rng rng(seed);
    int w = 2 + rng.Below(30), h = 2 + rng.Below(30), labels = 2 + rng.Below(3);
    int stride = (w * 3 + 3) / 4 * 4;
    std::vector<int> a(w * h);
    std::vector<unsigned char> bitsA(static_cast<size_t>(stride) * h);
    for (int& v : a) v = rng.Below(labels) - (labels > 3 ? 1 : 0);  // -1 is a label too
    for (unsigned char& b : bitsA) b = static_cast<unsigned char>(rng.Below(256));
    std::vector<int> b = a;
    std::vector<unsigned char> bitsB = bitsA;
    int fast = outline::RepairCrossings(a.data(), w, h, bitsA.data(), stride);
    int slow = literal::RepairCrossings(b.data(), w, h, bitsB.data(), stride);
    ASSERT_EQ(fast, slow) << "seed " << seed;
    ASSERT_EQ(a, b) << "seed " << seed;
    ASSERT_EQ(bitsA, bitsB) << "seed " << seed;
    totalRepairs += fast;
  }
  EXPECT_GT(totalRepairs, 1000);  // the pictures do exercise the repair
}

TEST(FastPath, ExchangeSortMatchesTheComparisonOfEveryPair) {
  for (int seed = 1; seed <= 300; seed++) {
    flat::Rng rng(seed);
    std::vector<int> keys(rng.Below(300));
    int range = 1 + rng.Below(seed % 3 == 0 ? 1000 : 6);  // many ties
    for (int& k : keys) k = rng.Below(range);
    if (seed % 10 == 0)  // long ascending run: many swaps per step
      for (size_t k = 0; k < keys.size(); k++) keys[k] = static_cast<int>(k / 3);
    ASSERT_EQ(outline::ExchangeSortOrder(keys), literal::ExchangeSortOrder(keys)) << "seed " << seed;
  }
  // Hand-checked: [5a 5b 7] -> 7 first (swapped with 5a), then 5b before 5a.
  EXPECT_EQ(outline::ExchangeSortOrder({5, 5, 7}), (std::vector<int>{2, 1, 0}));
}

COutlineVector* Keyed(flat::Rng& rng) {
  COutlineVector* v = new COutlineVector;
  v->m_nRegion = rng.Below(4) - 1;
  v->m_nNeighbor = rng.Below(4) - 1;
  v->m_ptStart = Pt(rng.Below(3), rng.Below(2));
  v->m_ptEnd = Pt(rng.Below(3), rng.Below(2));
  return v;
}

TEST(FastPath, PiecePairsMatchTheComparisonOfEveryPair) {
  int twins = 0, dups = 0;
  for (int seed = 1; seed <= 200; seed++) {
    flat::Rng rng(seed);
    std::vector<COutlineVector*> p(rng.Below(120));
    for (auto& v : p) v = Keyed(rng);
    std::vector<int> fast = outline::ClassifyPieces(p);
    std::vector<int> slow = literal::ClassifyPieces(p);
    ASSERT_EQ(fast, slow) << "seed " << seed;
    for (int s : fast) (s >= 0 ? twins : s == -2 ? dups : s)++;
    for (auto* v : p) delete v;
  }
  EXPECT_GT(twins, 100);
  EXPECT_GT(dups, 100);
}

TEST(FastPath, PieceIndexAnswersAsTheLinearScan) {
  for (int seed = 1; seed <= 100; seed++) {
    flat::Rng rng(seed);
    std::vector<COutlineVector*> p(1 + rng.Below(80));
    for (auto& v : p) v = Keyed(rng);
    outline::CPieceIndex fast(p);
    literal::LinearPieceSearch slow(p);
    std::vector<int> cf, cs;
    for (int q = 0; q < 300; q++) {
      int key = rng.Below(4) - 1;
      sPoint pt = Pt(rng.Below(3), rng.Below(2));
      switch (rng.Below(6)) {
        case 0: ASSERT_EQ(fast.FirstOfRegion(key), slow.FirstOfRegion(key)); break;
        case 1: {
          int from = rng.Below(static_cast<int>(p.size()) + 1);
          ASSERT_EQ(fast.NextOfRegionOnLine(from, key, pt), slow.NextOfRegionOnLine(from, key, pt));
          break;
        }
        case 2: ASSERT_EQ(fast.RegionStartsAt(key, pt), slow.RegionStartsAt(key, pt)); break;
        case 3: {
          int f = fast.FirstWithNeighbor(key);
          ASSERT_EQ(f, slow.FirstWithNeighbor(key));
          if (f >= 0 && rng.Below(2)) p[f]->m_nNeighbor = -1;  // consume it
          break;
        }
        case 4:
          fast.ClosedWithNeighbor(key, cf);
          slow.ClosedWithNeighbor(key, cs);
          ASSERT_EQ(cf, cs);
          break;
        default: {
          int f = fast.NextInChain(key, pt);
          ASSERT_EQ(f, slow.NextInChain(key, pt));
          if (f >= 0) p[f]->m_nNeighbor = -1;
          break;
        }
      }
      // Consumption from elsewhere, in any order.
      if (rng.Below(8) == 0) p[rng.Below(static_cast<int>(p.size()))]->m_nNeighbor = -1;
    }
    for (auto* v : p) delete v;
  }
}

TEST(FastPath, PrebuiltHitTestAnswersAsIsPointInOutline) {
  OutlineEngine e;
  for (int seed = 1; seed <= 50; seed++) {
    flat::Rng rng(seed);
    std::vector<sPoint> poly(3 + rng.Below(12));
    for (sPoint& p : poly) p = Pt(rng.Below(12), rng.Below(12));
    outline::COutlineHitTest test(poly.data(), static_cast<int>(poly.size()));
    for (int y = -1; y <= 12; y++)
      for (int x = -1; x <= 12; x++) {
        sPoint p = Pt(x, y);
        ASSERT_EQ(test.Contains(p) ? 1 : 0,
                  e.IsPointInOutline(p, poly.data(), static_cast<int>(poly.size())));
      }
  }
}

// The outline stage with plain searches for every outline and hole step.
void LiteralStage(OutlineEngine& e, double tolerance) {
  DeleteAll(e.m_listOutlineRegions);
  std::list<CConComponent*> comps;
  e.GetCompList(comps, nullptr);
  int passes = 0;
  while (e.RemoveSmallRegions(comps, 3.0, nullptr) == 1 && ++passes <= 100) e.GetCompList(comps, nullptr);
  std::list<COutlineVector*> pieces;
  e.GetOutlineList(pieces, comps, tolerance);
  std::vector<COutlineVector*> P(pieces.begin(), pieces.end());
  int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  std::vector<sPoint> disc = outline::BuildDiscTable(e.m_dSatinWidth);
  std::vector<unsigned char> scratch(static_cast<size_t>(w) * h, 0);
  outline::AssemblyContext ctx;
  ctx.width = w;
  ctx.height = h;
  ctx.satinWidth = e.m_dSatinWidth;
  ctx.disc = &disc;
  ctx.scratch = scratch.data();
  literal::LinearPieceSearch search(P);
  outline::AssembleRegions(comps, P, search, ctx, e.m_listOutlineRegions);
  DeleteAll(pieces);
  e.SortRegionSeq(e.m_listOutlineRegions);
  e.SetOutlineColorIndex(e.m_listOutlineRegions);
}

void ExpectSameRegions(const std::list<COutlineRegion*>& a, const std::list<COutlineRegion*>& b) {
  ASSERT_EQ(a.size(), b.size());
  auto ib = b.begin();
  for (const COutlineRegion* ra : a) {
    const COutlineRegion* rb = *ib++;
    ASSERT_EQ(Chain(ra->m_pPoints, ra->m_nPoints), Chain(rb->m_pPoints, rb->m_nPoints));
    ASSERT_EQ(Chain(ra->m_pRawPoints, ra->m_nRawPoints), Chain(rb->m_pRawPoints, rb->m_nRawPoints));
    ASSERT_EQ(ra->m_nArea, rb->m_nArea);
    ASSERT_EQ(ra->m_bNarrow, rb->m_bNarrow);
    ASSERT_EQ(ra->m_crColor, rb->m_crColor);
    ASSERT_EQ(ra->m_nPixels, rb->m_nPixels);
    ASSERT_EQ(ra->m_arrHoles.GetSize(), rb->m_arrHoles.GetSize());
    for (INT_PTR k = 0; k < ra->m_arrHoles.GetSize(); k++) {
      const CHole* ha = ra->m_arrHoles[k];
      const CHole* hb = rb->m_arrHoles[k];
      ASSERT_EQ(Chain(ha->m_pPoints, ha->m_nPoints), Chain(hb->m_pPoints, hb->m_nPoints));
      ASSERT_EQ(Chain(ha->m_pRawPoints, ha->m_nRawPoints), Chain(hb->m_pRawPoints, hb->m_nRawPoints));
    }
  }
}

TEST(FastPath, OutlineStageMatchesThePlainSearches) {
  size_t holes = 0, regions = 0;
  for (int seed = 1; seed <= 30; seed++) {
    flat::Rng rng(seed);
    int w = 30 + rng.Below(50), h = 20 + rng.Below(40);
    std::vector<COLORREF> px = flat::RandomBlocks(rng, w, h, 2 + rng.Below(5), 1 + rng.Below(5),
                                                  1 + rng.Below(5), rng.Below(40));
    double tolerance = rng.Below(3) * 0.75;
    OutlineEngine fast, slow;
    fast.Load(w, h, [&](int x, int y) { return px[y * w + x]; });
    slow.Load(w, h, [&](int x, int y) { return px[y * w + x]; });
    fast.GetOutline4Cartoon2(tolerance, nullptr);
    LiteralStage(slow, tolerance);
    SCOPED_TRACE(seed);
    ExpectSameRegions(fast.m_listOutlineRegions, slow.m_listOutlineRegions);
    regions += fast.m_listOutlineRegions.size();
    for (COutlineRegion* r : fast.m_listOutlineRegions) holes += r->m_arrHoles.GetSize();
  }
  EXPECT_GT(regions, 300u);
  EXPECT_GT(holes, 20u);
}

}  // namespace
