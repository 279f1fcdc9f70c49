// The greedy loops of one scale: hand-worked orders for the indexed loops
// and the literal reference alike, and the indexed loops against the
// literal reference on seeded region graphs.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "LiteralMerge.h"
#include "SegEngine.h"
#include "segment/EdgeMap.h"
#include "segment/MergeIndex.h"

namespace {

// Regions with preset values and sizes; region i's best link leads to a
// region outside the list of bestSizes[i] pixels. The stand-in merge
// records the candidate and clears its value.
const struct {
  bool firstFit;
  std::vector<float> values;
  std::vector<DWORD> sizes, bestSizes;  // empty: all 0
  DWORD limit;
  std::vector<int> order;
  std::uint64_t blocked;
} kLoops[] = {
    // The global minimum resumes at the region that grew: after 1 it finds
    // 2 behind the cursor before going back to the head for 0.
    {false, {-3, -5, -2}, {}, {}, 0, {1, 2, 0}, 0},
    {false, {0, -2, -2, 1}, {}, {}, 0, {1, 2}, 0},  // the earlier of equal values
    {false, {0, 3, -0.0f}, {}, {}, 0, {}, 0},
    {true, {-3, -5, -2}, {}, {}, 100, {0, 1, 2}, 0},  // the first negative, not the lowest
    // Region 0 is too big, region 3's best neighbour too. Scan 1 skips 0
    // and merges 1; scan 2 from 1 skips 3; scan 3 from the head skips both.
    {true, {-1, -2, 0, -3}, {9, 8, 8, 8}, {0, 0, 0, 9}, 8, {1}, 4},
    {true, {-1, -1}, {8, 8}, {8, 8}, 8, {0, 1}, 0},  // the limit is inclusive
};

TEST(GreedyLoops, HandWorkedOrdersForLiteralAndIndexed) {
  for (const auto& c : kLoops)
    for (bool indexed : {false, true}) {
      SCOPED_TRACE(::testing::Message() << "case " << (&c - kLoops) << (indexed ? " indexed" : " literal"));
      SegEngine e;
      std::unique_ptr<CRegion[]> best(new CRegion[c.values.size()]);
      std::vector<CRegion*> r;
      for (size_t i = 0; i < c.values.size(); i++) {
        r.push_back(e.AddRegion(c.sizes.empty() ? 0 : c.sizes[i], 0, 0, 0));
        r[i]->m_fDecrease = c.values[i];
        best[i].m_nSize = c.bestSizes.empty() ? 0 : c.bestSizes[i];
        r[i]->m_pBestNeighbor = r[i]->m_pNeighbors = new CNodeNeighbor{&best[i], 0.0f, 0, nullptr};
      }
      std::vector<int> order;
      MergeStep record = [&](CRegion* a) {
        order.push_back(static_cast<int>(std::find(r.begin(), r.end(), a) - r.begin()));
        a->m_fDecrease = 0.0f;
      };
      RegionPositions pos(e.m_pRegionHead);
      GreedyCounts n = c.firstFit ? (indexed ? MergeFirstFitIndexed(pos, e.m_pRegionHead, c.limit, {record, [](CRegion*) {}, nullptr})
                                             : MergeFirstFitScan(e.m_pRegionHead, c.limit, record))
                                  : (indexed ? MergeGlobalMinIndexed(pos, e.m_pRegionHead, record)
                                             : MergeGlobalMinScan(e.m_pRegionHead, record));
      EXPECT_EQ(order, c.order);
      EXPECT_TRUE(n.merges == c.order.size() && n.blocked == c.blocked) << n.merges << " " << n.blocked;
    }
}

void SeedGraph(SegEngine& e, std::vector<unsigned char>& dib) {
  e.Load(dib);
  const int w = e.Width(), h = e.Height(), stride = (w * 3 + 3) / 4 * 4;
  std::vector<double> edge(size_t(w) * h, 0.0), plane(edge.size());
  for (int c = 0; c < 3; c++) {
    for (int k = 0; k < w * h; k++) plane[size_t(k)] = e.m_pWorkBits[k / w * stride + 3 * (k % w) + c];
    AccumulateEdgeMap(plane.data(), w, h, edge.data());
  }
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
}

MergeStep Step(SegEngine& e, double d) {
  return [&e, d](CRegion* a) { e.CombineRegion(a), a->m_fDecrease = 0.0f, e.UpdateRemovingDecrease(a, d); };
}

// The block stage's split step: the grown region's neighbours settle after its last merge in a row.
GrowSteps Split(SegEngine& e, double d) {
  return {[&e, d](CRegion* a) { e.CombineRegion(a), RefreshOwnValues(a, d); }, RefreshLinksBack, nullptr};
}

// The indexed loops must pick the same candidates and count the same skips
// as the literal reference, scale after scale, with positions kept for the
// whole stage as the engine keeps them.
TEST(GreedyLoops, IndexedMatchesTheLiteralReferenceOnSeededGraphs) {  // of noisy colour patches
  const COLORREF base[5] = {RGB(200, 40, 40), RGB(40, 200, 40), RGB(40, 40, 200), RGB(220, 220, 220), RGB(30, 30, 30)};
  for (unsigned seed = 1; seed <= 4; seed++) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> noise(-3, 3), palette(0, 4);
    const int w = 37 + 4 * int(seed), cells = w / 6 + 1;
    std::vector<int> cell(size_t(cells * 5));
    for (int& c : cell) c = palette(rng);
    auto dib = testimg::MakeDib24(w, 29, [&](int x, int y) {
      COLORREF c = base[cell[size_t(y / 6 * cells + x / 6)]];
      auto ch = [&](int v) { return std::min(255, std::max(0, v + noise(rng))); };
      return RGB(ch(GetRValue(c)), ch(GetGValue(c)), ch(GetBValue(c)));
    });
    for (bool firstFit : {true, false}) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << (firstFit ? " first fit" : " global min"));
      SegEngine lit, idx;
      SeedGraph(lit, dib);
      SeedGraph(idx, dib);
      ASSERT_GT(lit.RegionCount(), 100);
      RegionPositions positions(idx.m_pRegionHead);
      for (double s = 1.0; s < (firstFit ? 6.0 : 40.0); s += firstFit ? 0.7 : 3.5) {
        const double d = s * s * std::sqrt(s);
        const DWORD limit = static_cast<DWORD>(std::pow(2.0, s) * 4);
        lit.RemovingDecrease(d);
        idx.RemovingDecrease(d);
        GreedyCounts cl = firstFit ? MergeFirstFitScan(lit.m_pRegionHead, limit, Step(lit, d))
                                   : MergeGlobalMinScan(lit.m_pRegionHead, Step(lit, d));
        GreedyCounts ci = firstFit ? MergeFirstFitIndexed(positions, idx.m_pRegionHead, limit, Split(idx, d))
                                   : MergeGlobalMinIndexed(positions, idx.m_pRegionHead, Step(idx, d));
        EXPECT_TRUE(cl.merges == ci.merges && cl.blocked == ci.blocked) << "scale " << s;
        ASSERT_TRUE(Signature(lit) == Signature(idx)) << "scale " << s;
      }
      EXPECT_LT(lit.RegionCount(), 50);  // the scales did merge
    }
  }
}

}  // namespace
