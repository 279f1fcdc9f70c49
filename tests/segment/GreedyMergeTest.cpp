// The two greedy loops: first fit with size limits against the global
// minimum from the cursor, each in its literal and indexed form, and the
// indexed form against the literal one on random pictures.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "SegEngine.h"
#include "segment/EdgeMap.h"
#include "segment/GreedyMerge.h"
#include "segment/MergeIndex.h"

namespace {

using FirstFit = GreedyCounts (*)(CRegion* const&, DWORD, const MergeStep&);
using GlobalMin = GreedyCounts (*)(CRegion* const&, const MergeStep&);

// The indexed loops over positions taken just before.
GreedyCounts FirstFitIndexed(CRegion* const& head, DWORD limit, const MergeStep& merge) {
  RegionPositions pos(head);
  return MergeFirstFitIndexed(pos, head, limit, merge);
}
GreedyCounts GlobalMinIndexed(CRegion* const& head, const MergeStep& merge) {
  RegionPositions pos(head);
  return MergeGlobalMinIndexed(pos, head, merge);
}

// Regions with preset values; the stand-in merge only records the candidate
// and clears its value, so that the order of the scans shows. Best links
// lead to a region outside the list, which the stand-in never absorbs.
struct ValueList {
  SegEngine e;
  CRegion outsider;
  std::vector<CRegion*> r;
  std::vector<int> order;
  ValueList(std::initializer_list<float> values) {
    for (float v : values) {
      CRegion* region = e.AddRegion(0, 0, 0, 0);
      region->m_fDecrease = v;
      region->m_pBestNeighbor = AddLink(region, &outsider, 0);
      r.push_back(region);
    }
  }
  MergeStep Recorder() {
    return [this](CRegion* c) {
      for (size_t i = 0; i < r.size(); i++)
        if (r[i] == c) order.push_back(static_cast<int>(i));
      c->m_fDecrease = 0.0f;
    };
  }
};

class GlobalMinLoop : public ::testing::TestWithParam<GlobalMin> {};

// The scan resumes at the region that grew: after 1 it finds 2 behind the
// cursor before it returns to the head for 0. Restarting at the head after
// every merge would give 1, 0, 2.
TEST_P(GlobalMinLoop, ResumesAtTheRegionThatGrew) {
  ValueList g{-3.0f, -5.0f, -2.0f};
  GreedyCounts c = GetParam()(g.e.m_pRegionHead, g.Recorder());
  EXPECT_EQ(g.order, (std::vector<int>{1, 2, 0}));
  EXPECT_EQ(c.merges, 3u);
  EXPECT_EQ(c.blocked, 0u);
}

TEST_P(GlobalMinLoop, EqualValuesGoToTheEarlierRegion) {
  ValueList g{0.0f, -2.0f, -2.0f, 1.0f};
  GetParam()(g.e.m_pRegionHead, g.Recorder());
  EXPECT_EQ(g.order, (std::vector<int>{1, 2}));
}

TEST_P(GlobalMinLoop, NothingNegativeMergesNothing) {
  ValueList g{0.0f, 3.0f, -0.0f};
  EXPECT_EQ(GetParam()(g.e.m_pRegionHead, g.Recorder()).merges, 0u);
  EXPECT_TRUE(g.order.empty());
}

INSTANTIATE_TEST_SUITE_P(LiteralAndIndexed, GlobalMinLoop,
                         ::testing::Values(&MergeGlobalMinScan, &GlobalMinIndexed));

class FirstFitLoop : public ::testing::TestWithParam<FirstFit> {};

TEST_P(FirstFitLoop, TakesTheFirstNegativeRegionNotTheLowest) {
  ValueList g{-3.0f, -5.0f, -2.0f};
  GetParam()(g.e.m_pRegionHead, 100, g.Recorder());
  EXPECT_EQ(g.order, (std::vector<int>{0, 1, 2}));
}

// Region 0 is too big and region 3's best neighbour too: each
// scan that meets them counts a skip. Scan 1 skips 0 and merges 1; scan 2
// from 1 skips 3; scan 3 from the head skips 0 and 3 and ends the scale.
TEST_P(FirstFitLoop, CountsEverySizeSkipOfEveryScan) {
  ValueList g{-1.0f, -2.0f, 0.0f, -3.0f};
  g.r[0]->m_nSize = 9;
  for (int i = 1; i < 4; i++) g.r[static_cast<size_t>(i)]->m_nSize = 8;
  CRegion big;
  big.m_nSize = 9;
  g.r[3]->m_pBestNeighbor = AddLink(g.r[3], &big, 0);
  GreedyCounts c = GetParam()(g.e.m_pRegionHead, 8, g.Recorder());
  EXPECT_EQ(g.order, (std::vector<int>{1}));
  EXPECT_EQ(c.merges, 1u);
  EXPECT_EQ(c.blocked, 4u);
}

TEST_P(FirstFitLoop, SizeLimitIsInclusive) {
  ValueList g{-1.0f, -1.0f};
  g.r[0]->m_nSize = 8;
  g.r[1]->m_nSize = 8;
  g.outsider.m_nSize = 8;
  GetParam()(g.e.m_pRegionHead, 8, g.Recorder());
  EXPECT_EQ(g.order, (std::vector<int>{0, 1}));
}

INSTANTIATE_TEST_SUITE_P(LiteralAndIndexed, FirstFitLoop,
                         ::testing::Values(&MergeFirstFitScan, &FirstFitIndexed));

TEST(MergeIndex, PositionsAndCounters) {
  SegEngine e;
  std::vector<CRegion*> r;
  for (int i = 0; i < 50; i++) r.push_back(e.AddRegion(0, 0, 0, 0));
  RegionPositions pos(e.m_pRegionHead);
  ASSERT_EQ(pos.Size(), 50);
  for (int i = 0; i < 50; i++) {
    EXPECT_EQ(pos.Of(r[static_cast<size_t>(i)]), i);
    EXPECT_EQ(pos.At(i), r[static_cast<size_t>(i)]);
  }
  CRegion outsider;
  EXPECT_EQ(pos.Of(&outsider), -1);
  pos.Remove(7);
  EXPECT_EQ(pos.Live(), 49);
  EXPECT_EQ(pos.Of(r[7]), -1);
  EXPECT_EQ(pos.At(7), nullptr);
  EXPECT_EQ(pos.Of(r[8]), 8);

  PositionCounter c(10);
  c.Add(3, 1);
  c.Add(7, 1);
  EXPECT_EQ(c.FindNth(c.CountBelow(0) + 1), 3);
  EXPECT_EQ(c.FindNth(c.CountBelow(4) + 1), 7);
  EXPECT_EQ(c.FindNth(c.CountBelow(8) + 1), 10);  // none left: the size
  EXPECT_EQ(c.CountBelow(8) - c.CountBelow(3), 2);
  PositionCounter built(std::vector<unsigned char>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0});
  for (int i = 0; i <= 10; i++) EXPECT_EQ(built.CountBelow(i), c.CountBelow(i));

  LeftmostMinTree t(std::vector<float>{0.0f, -2.0f, 5.0f, -2.0f, -1.0f, 0.0f});
  EXPECT_EQ(t.MinFrom(0), -2.0f);
  EXPECT_EQ(t.FirstAtMost(0, -2.0f), 1);
  EXPECT_EQ(t.FirstAtMost(2, -2.0f), 3);
  EXPECT_EQ(t.MinFrom(4), -1.0f);
  EXPECT_EQ(t.FirstAtMost(5, -1.0f), -1);
  t.Set(1, 0.0f);
  EXPECT_EQ(t.FirstAtMost(0, t.MinFrom(0)), 3);
}

// A list in an order unrelated to the addresses of its regions (looked up
// through the hash table rather than by address range) gives the same
// positions.
TEST(MergeIndex, PositionsOfAListOutOfAddressOrder) {
  SegEngine e;
  std::vector<CRegion*> made;
  for (int i = 0; i < 200; i++) made.push_back(e.AddRegion(0, 0, 0, 0));
  std::vector<CRegion*> order;
  for (int i = 0; i < 200; i += 2) order.push_back(made[static_cast<size_t>(i)]);
  for (int i = 199; i > 0; i -= 2) order.push_back(made[static_cast<size_t>(i)]);
  CRegion* prev = nullptr;
  for (CRegion* r : order) {
    r->m_pPrev = prev;
    r->m_pNext = nullptr;
    if (prev) prev->m_pNext = r;
    prev = r;
  }
  e.m_pRegionHead = order[0];
  RegionPositions pos(e.m_pRegionHead);
  ASSERT_EQ(pos.Size(), 200);
  for (int i = 0; i < 200; i++) {
    EXPECT_EQ(pos.Of(order[static_cast<size_t>(i)]), i);
    EXPECT_EQ(pos.At(i), order[static_cast<size_t>(i)]);
  }
  CRegion outsider;
  EXPECT_EQ(pos.Of(&outsider), -1);
  EXPECT_EQ(pos.Of(nullptr), -1);
  pos.Remove(150);
  EXPECT_EQ(pos.Of(order[150]), -1);
  EXPECT_EQ(pos.Of(order[151]), 151);
  EXPECT_EQ(pos.Live(), 199);
}

// A picture of a few noisy colour patches gives a graph with many small
// regions, varied sizes and many shared borders.
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

// Builds the seed graph of a picture with its edge map.
void SeedGraph(SegEngine& e, std::vector<unsigned char>& dib) {
  e.Load(dib);
  const int w = e.Width(), h = e.Height();
  std::vector<double> edge(static_cast<size_t>(w) * h, 0.0), plane(edge.size());
  const int stride = (w * 3 + 3) / 4 * 4;
  for (int c = 0; c < 3; c++) {
    for (int y = 0; y < h; y++)
      for (int x = 0; x < w; x++) plane[static_cast<size_t>(y) * w + x] = e.m_pWorkBits[y * stride + 3 * x + c];
    AccumulateEdgeMap(plane.data(), w, h, edge.data());
  }
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
}

// The indexed loops must pick the same candidates and count the same skips
// as the literal scans, scale after scale, with positions kept for the
// whole stage as the engine keeps them.
TEST(GreedyMergeIndexed, MatchesTheLiteralScanOnRandomPictures) {
  for (unsigned seed = 1; seed <= 4; seed++) {
    auto dib = RandomPicture(seed, 37 + 4 * static_cast<int>(seed), 29);
    SegEngine lit, idx;
    SeedGraph(lit, dib);
    SeedGraph(idx, dib);
    ASSERT_GT(lit.RegionCount(), 100);
    RegionPositions blockPositions(idx.m_pRegionHead);
    for (double s = 1.0; s < 6.0; s += 0.7) {
      const double d = s * s * std::sqrt(s);
      const DWORD limit = static_cast<DWORD>(std::pow(2.0, s) * 4);
      auto step = [d](SegEngine& e) {
        return [&e, d](CRegion* a) {
          e.CombineRegion(a);
          a->m_fDecrease = 0.0f;
          e.UpdateRemovingDecrease(a, d);
        };
      };
      lit.RemovingDecrease(d);
      idx.RemovingDecrease(d);
      GreedyCounts cl = MergeFirstFitScan(lit.m_pRegionHead, limit, step(lit));
      GreedyCounts ci = MergeFirstFitIndexed(blockPositions, idx.m_pRegionHead, limit, step(idx));
      EXPECT_EQ(cl.merges, ci.merges) << "seed " << seed << " s " << s;
      EXPECT_EQ(cl.blocked, ci.blocked) << "seed " << seed << " s " << s;
      ExpectSameGraph(lit, idx);
    }
    // The pyramid loop on a fresh seed graph, where many merges compete.
    SegEngine lit2, idx2;
    SeedGraph(lit2, dib);
    SeedGraph(idx2, dib);
    RegionPositions pyramidPositions(idx2.m_pRegionHead);
    for (double t = 1.0; t < 40.0; t += 3.5) {
      const double d = t * t * std::sqrt(t);
      auto step = [d](SegEngine& e) {
        return [&e, d](CRegion* a) {
          e.CombineRegion(a);
          a->m_fDecrease = 0.0f;
          e.UpdateRemovingDecrease(a, d);
        };
      };
      lit2.RemovingDecrease(d);
      idx2.RemovingDecrease(d);
      GreedyCounts cl = MergeGlobalMinScan(lit2.m_pRegionHead, step(lit2));
      GreedyCounts ci = MergeGlobalMinIndexed(pyramidPositions, idx2.m_pRegionHead, step(idx2));
      EXPECT_EQ(cl.merges, ci.merges) << "seed " << seed << " t " << t;
      ExpectSameGraph(lit2, idx2);
    }
    EXPECT_LT(lit.RegionCount(), 50);
    EXPECT_LT(lit2.RegionCount(), 50);
  }
}

}  // namespace
