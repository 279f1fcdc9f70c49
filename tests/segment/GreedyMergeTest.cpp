// The greedy loops of one scale: hand-worked orders for the indexed loops
// and the literal reference alike, the position index under them, and the
// indexed loops against the literal reference on seeded region graphs.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "LiteralMerge.h"
#include "SegEngine.h"
#include "segment/EdgeMap.h"
#include "segment/MergeIndex.h"

namespace {

// Regions with preset values; the stand-in merge records the candidate and
// clears its value, so that the order of the scans shows. Region i's best
// link leads to a region outside the list of bestSizes[i] pixels.
struct LoopCase {
  bool firstFit;
  std::vector<float> values;
  std::vector<DWORD> sizes, bestSizes;  // empty: all 0
  DWORD limit;
  std::vector<int> order;
  std::uint64_t blocked;
};

const LoopCase kLoops[] = {
    // Global minimum: resumes at the region that grew, so after 1 it finds
    // 2 behind the cursor before going back to the head for 0.
    {false, {-3, -5, -2}, {}, {}, 0, {1, 2, 0}, 0},
    {false, {0, -2, -2, 1}, {}, {}, 0, {1, 2}, 0},  // the earlier of equal values
    {false, {0, 3, -0.0f}, {}, {}, 0, {}, 0},
    // First fit takes the first negative region, not the lowest.
    {true, {-3, -5, -2}, {}, {}, 100, {0, 1, 2}, 0},
    // Region 0 is too big, region 3's best neighbour too. Scan 1 skips 0
    // and merges 1; scan 2 from 1 skips 3; scan 3 from the head skips 0 and
    // 3 and ends the scale: four skips.
    {true, {-1, -2, 0, -3}, {9, 8, 8, 8}, {0, 0, 0, 9}, 8, {1}, 4},
    {true, {-1, -1}, {8, 8}, {8, 8}, 8, {0, 1}, 0},  // the limit is inclusive
};

TEST(GreedyLoops, HandWorkedOrdersForLiteralAndIndexed) {
  for (const LoopCase& c : kLoops)
    for (bool indexed : {false, true}) {
      SCOPED_TRACE(::testing::Message() << (c.firstFit ? "first fit" : "global min") << " case " << (&c - kLoops)
                                        << (indexed ? " indexed" : " literal"));
      SegEngine e;
      std::unique_ptr<CRegion[]> best(new CRegion[c.values.size()]);
      std::vector<CRegion*> r;
      for (size_t i = 0; i < c.values.size(); i++) {
        r.push_back(e.AddRegion(0, 0, 0, 0));
        r[i]->m_fDecrease = c.values[i];
        r[i]->m_nSize = c.sizes.empty() ? 0 : c.sizes[i];
        best[i].m_nSize = c.bestSizes.empty() ? 0 : c.bestSizes[i];
        r[i]->m_pBestNeighbor = AddLink(r[i], &best[i], 0);
      }
      std::vector<int> order;
      MergeStep record = [&](CRegion* a) {
        for (size_t i = 0; i < r.size(); i++)
          if (r[i] == a) order.push_back(static_cast<int>(i));
        a->m_fDecrease = 0.0f;
      };
      RegionPositions pos(e.m_pRegionHead);
      GreedyCounts n = c.firstFit ? (indexed ? MergeFirstFitIndexed(pos, e.m_pRegionHead, c.limit, record)
                                             : MergeFirstFitScan(e.m_pRegionHead, c.limit, record))
                                  : (indexed ? MergeGlobalMinIndexed(pos, e.m_pRegionHead, record)
                                             : MergeGlobalMinScan(e.m_pRegionHead, record));
      EXPECT_EQ(order, c.order);
      EXPECT_EQ(n.merges, c.order.size());
      EXPECT_EQ(n.blocked, c.blocked);
    }
}

// Positions of a list in address order (looked up by address range) and
// out of it (through the hash table); counters and the minimum tree.
TEST(MergeIndex, PositionsCountersAndMinimumTree) {
  for (bool shuffled : {false, true}) {
    SegEngine e;
    std::vector<CRegion*> made, order;
    for (int i = 0; i < 200; i++) made.push_back(e.AddRegion(0, 0, 0, 0));
    for (int i = 0; i < 200; i++) order.push_back(made[static_cast<size_t>(shuffled ? (i < 100 ? 2 * i : 399 - 2 * i) : i)]);
    e.m_pRegionHead = order[0];
    for (size_t i = 0; i < 200; i++) {
      order[i]->m_pPrev = i ? order[i - 1] : nullptr;
      order[i]->m_pNext = i < 199 ? order[i + 1] : nullptr;
    }
    RegionPositions pos(e.m_pRegionHead);
    ASSERT_EQ(pos.Size(), 200);
    for (int i = 0; i < 200; i++) ASSERT_TRUE(pos.Of(order[size_t(i)]) == i && pos.At(i) == order[size_t(i)]) << i;
    CRegion outsider;
    EXPECT_EQ(pos.Of(&outsider), -1);
    EXPECT_EQ(pos.Of(nullptr), -1);
    for (int gone : {0, 150, 199, 150}) pos.Remove(gone);  // twice: counted once
    EXPECT_EQ(pos.Live(), 197);
    for (int i : {0, 150, 199}) EXPECT_TRUE(pos.Of(order[size_t(i)]) == -1 && !pos.At(i)) << i;
    EXPECT_TRUE(pos.Of(order[151]) == 151 && pos.Of(order[1]) == 1);
  }

  PositionCounter c(std::vector<unsigned char>{1, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0});
  const int below[] = {0, 1, 1, 1, 2, 2, 2, 2, 3, 3, 4, 4}, nth[] = {0, 0, 3, 7, 9, 11};  // the size when too few
  for (int i = 0; i <= 11; i++) EXPECT_EQ(c.CountBelow(i), below[i]) << i;
  for (int n = 0; n <= 5; n++) EXPECT_EQ(c.FindNth(n), nth[n]) << n;
  c.Add(3, -1);
  c.Add(10, 1);
  EXPECT_TRUE(c.FindNth(2) == 7 && c.FindNth(4) == 10 && c.CountBelow(11) == 4);

  LeftmostMinTree t(std::vector<float>{-1.0f, -2.0f, 5.0f, -2.0f, -1.0f, 0.0f});
  const float minFrom[] = {-2, -2, -2, -2, -1, 0, INFINITY, INFINITY};
  for (int p = 0; p < 8; p++) EXPECT_EQ(t.MinFrom(p), minFrom[p]) << p;
  const int firstAtMost[][3] = {{0, -2, 1}, {2, -2, 3}, {4, -1, 4}, {5, -1, -1}, {0, 10, 0}};  // from, bound, first
  for (const auto& f : firstAtMost) EXPECT_EQ(t.FirstAtMost(f[0], static_cast<float>(f[1])), f[2]) << f[0] << " " << f[1];
  t.Set(1, 0.0f);
  t.Set(5, -3.0f);
  EXPECT_TRUE(t.FirstAtMost(0, -2.0f) == 3 && t.MinFrom(0) == -3.0f && t.FirstAtMost(4, -3.0f) == 5);
}

// A picture of noisy colour patches: many small regions of varied sizes.
std::vector<unsigned char> RandomPicture(unsigned seed, int w, int h) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<int> noise(-3, 3), palette(0, 4);
  const COLORREF base[5] = {RGB(200, 40, 40), RGB(40, 200, 40), RGB(40, 40, 200), RGB(220, 220, 220), RGB(30, 30, 30)};
  std::vector<int> cell(static_cast<size_t>((w / 6 + 1) * (h / 6 + 1)));
  for (int& c : cell) c = palette(rng);
  return testimg::MakeDib24(w, h, [&](int x, int y) {
    COLORREF c = base[cell[static_cast<size_t>((y / 6) * (w / 6 + 1) + x / 6)]];
    auto ch = [&](int v) { return std::min(255, std::max(0, v + noise(rng))); };
    return RGB(ch(GetRValue(c)), ch(GetGValue(c)), ch(GetBValue(c)));
  });
}

void SeedGraph(SegEngine& e, std::vector<unsigned char>& dib) {
  e.Load(dib);
  const int w = e.Width(), h = e.Height(), stride = (w * 3 + 3) / 4 * 4;
  std::vector<double> edge(static_cast<size_t>(w) * h, 0.0), plane(edge.size());
  for (int c = 0; c < 3; c++) {
    for (int y = 0; y < h; y++)
      for (int x = 0; x < w; x++) plane[static_cast<size_t>(y) * w + x] = e.m_pWorkBits[y * stride + 3 * x + c];
    AccumulateEdgeMap(plane.data(), w, h, edge.data());
  }
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
}

MergeStep Step(SegEngine& e, double d) {
  return [&e, d](CRegion* a) {
    e.CombineRegion(a);
    a->m_fDecrease = 0.0f;
    e.UpdateRemovingDecrease(a, d);
  };
}

// The indexed loops must pick the same candidates and count the same skips
// as the literal reference, scale after scale, with positions kept for the
// whole stage as the engine keeps them.
TEST(GreedyLoops, IndexedMatchesTheLiteralReferenceOnSeededGraphs) {
  for (unsigned seed = 1; seed <= 4; seed++) {
    auto dib = RandomPicture(seed, 37 + 4 * static_cast<int>(seed), 29);
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
        GreedyCounts ci = firstFit ? MergeFirstFitIndexed(positions, idx.m_pRegionHead, limit, Step(idx, d))
                                   : MergeGlobalMinIndexed(positions, idx.m_pRegionHead, Step(idx, d));
        EXPECT_EQ(cl.merges, ci.merges) << "scale " << s;
        EXPECT_EQ(cl.blocked, ci.blocked) << "scale " << s;
        ExpectSameGraph(lit, idx);
      }
      EXPECT_LT(lit.RegionCount(), 50);
    }
  }
}

}  // namespace
