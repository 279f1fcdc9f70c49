// Connected components with the crossing repair and the masks, the merging
// of small regions, and the satin disc.
#include <gtest/gtest.h>

#include "outline/DiscFit.h"
#include "outline/OutlineKit.h"
#include "outline/SmallRegions.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0), kWhite = RGB(255, 255, 255);

std::vector<CConComponent*> Comps(OutlineEngine& e, Owned<CConComponent>& l, unsigned char* mask,
                                  int ret = 1) {
  EXPECT_EQ(e.GetCompList(l, mask), ret);
  return {l.begin(), l.end()};
}

TEST(GetCompList, SeedsInRasterOrderPixelsBreadthFirstDownBeforeRight) {
  OutlineEngine e;
  e.LoadText({"rr.", "r.b", "..b"});
  Owned<CConComponent> l;
  auto v = Comps(e, l, nullptr);
  struct { sPoint seed; int n; COLORREF c; CRect box; } want[] = {
      {Pt(0, 0), 3, kRed, CRect(0, 0, 1, 1)}, {Pt(2, 0), 1, kWhite, CRect(2, 0, 2, 0)},
      {Pt(1, 1), 3, kWhite, CRect(0, 1, 1, 2)}, {Pt(2, 1), 2, RGB(0, 0, 255), CRect(2, 1, 2, 2)}};
  ASSERT_EQ(v.size(), 4u);
  for (int k = 0; k < 4; k++) {
    EXPECT_EQ(v[k]->m_pPoints[0], want[k].seed) << k;
    EXPECT_EQ(v[k]->m_nPoints, want[k].n) << k;
    EXPECT_EQ(v[k]->m_crColor, want[k].c) << k;
    EXPECT_EQ(v[k]->m_rcBound, want[k].box) << k;
  }
  EXPECT_EQ(Chain(v[0]->m_pPoints, 3), (V{Pt(0, 0), Pt(0, 1), Pt(1, 0)}));
  Owned<CConComponent> keep{new CConComponent};
  EXPECT_EQ(OutlineEngine().GetCompList(keep, nullptr), 0);  // no picture: list untouched
  EXPECT_EQ(keep.size(), 1u);
}

TEST(GetCompList, CrossingRepairRecoloursTheRightOrElseTheLeftNeighbour) {
  OutlineEngine e;
  e.LoadText({"rrr", "rbr", "grr"});  // red meets itself at the corner (0,1)-(1,2)
  Owned<CConComponent> l;
  auto v = Comps(e, l, nullptr);
  ASSERT_EQ(v.size(), 3u);  // the list from before the repair, numbered
  EXPECT_EQ(v[1]->m_nIndex, 1);
  EXPECT_EQ(e.WorkPixel(1, 1), kRed);
  EXPECT_EQ(e.WorkPixel(0, 2), kGreen);
  v = Comps(e, l, nullptr);
  ASSERT_EQ(v.size(), 2u);
  EXPECT_EQ(v[0]->m_nPoints, 8);
  EXPECT_EQ(v[0]->m_nIndex, -1);  // nothing repaired: not numbered
  e.LoadText({"rrr", "rbr", "rrg"});  // only the mirror crossing (2,1)-(1,2)
  Comps(e, l, nullptr);
  EXPECT_EQ(e.WorkPixel(1, 1), kRed);
  EXPECT_EQ(e.WorkPixel(2, 2), kGreen);
  e.LoadText({"r.", ".r"});  // two components touching at a corner stay apart
  EXPECT_EQ(Comps(e, l, nullptr).size(), 4u);
  EXPECT_EQ(e.WorkPixel(1, 0), kWhite);
}

TEST(GetCompList, MaskTable) {
  // 1 absorbs into the component seeded first without being expanded or
  // seeding, 2 and the host's -1 exclude.
  struct Case { const char* row; std::vector<unsigned char> mask; std::vector<int> host; std::vector<int> sizes; } cases[] = {
      {"rgrb", {0, 1, 0, 0}, {}, {2, 1, 1}},
      {"g", {1}, {}, {}},
      {"rrr", {2, 0, 2}, {}, {1}},
      {"rrrr", {}, {0, -1, 0, 0}, {1, 2}},
      {"rrrr", {}, {3, 3, 0, 0}, {2}},
  };
  for (Case& c : cases) {
    OutlineEngine e;
    e.LoadText({c.row});
    e.SetMASKData(c.host.empty() ? nullptr : c.host.data());
    Owned<CConComponent> l;
    std::vector<int> sizes;
    for (CConComponent* p : Comps(e, l, c.mask.empty() ? nullptr : c.mask.data())) sizes.push_back(p->m_nPoints);
    EXPECT_EQ(sizes, c.sizes) << c.row;
    e.SetMASKData(nullptr);
  }
}

TEST(BeCross, TestsLabelsOnlyInsideTheArray) {
  OutlineEngine e;
  int L[4] = {7, 3, 4, 7}, M[4] = {3, 7, 7, 4}, N[4] = {7, 7, 4, 7};
  EXPECT_EQ(e.BeCross24(L, 2, 2, 0, 0) + 2 * e.BeCross13(L, 2, 2, 0, 1), 1);
  EXPECT_EQ(e.BeCross24(M, 2, 2, 0, 0) + 2 * e.BeCross13(M, 2, 2, 0, 1), 2);
  EXPECT_EQ(e.BeCross24(N, 2, 2, 0, 0) + e.BeCross24(L, 2, 2, 1, 1) + e.BeCross13(M, 2, 2, 1, 1), 0);
}

TEST(SmallRegions, LimitTable) {
  struct { int rw, rh, w, h, limit; } cases[] = {
      {0, 0, 100, 50, 4},     {100, 50, 100, 50, 300}, {1000, 100, 100, 50, 4},
      {200, 50, 100, 50, 75}, {50, 100, 100, 50, 75},  {1, 1, 30000, 30000, 4}};
  for (auto& c : cases) EXPECT_EQ(outline::SmallRegionLimit(3.0, c.rw, c.rh, c.w, c.h), c.limit) << c.rw;
}

TEST(SmallRegions, FirstDifferentNeighbourColourCarriesOverAndMarksTheMask) {
  // b takes green; g then finds no other colour and keeps the last one
  // seen, green; y sees only excluded pixels and is painted green as well.
  // A search that finds nothing excludes the last pixel it walked.
  OutlineEngine e;
  e.LoadText({"bg#y#......"});
  unsigned char mask[11] = {0, 0, 2, 0, 2, 0, 0, 0, 0, 0, 0};
  Owned<CConComponent> l;
  ASSERT_EQ(Comps(e, l, mask).size(), 4u);
  EXPECT_EQ(e.RemoveSmallRegions(l, 3.0, mask), 1);
  for (int x : {0, 1, 3}) EXPECT_EQ(e.WorkPixel(x, 0), kGreen) << x;
  EXPECT_EQ(e.WorkPixel(5, 0), kWhite);
  EXPECT_EQ(std::vector<int>(mask, mask + 5), (std::vector<int>{0, 2, 2, 2, 2}));
  // The first component without any colour around turns white.
  e.LoadText({"b#ggggg"});
  unsigned char m2[7] = {0, 2, 0, 0, 0, 0, 0};
  Comps(e, l, m2);
  EXPECT_EQ(e.RemoveSmallRegions(l, 3.0, m2), 0);
  EXPECT_EQ(e.WorkPixel(0, 0), kWhite);
  EXPECT_EQ(m2[0], 2);
  // Only the host mask differs: its value is copied to the last examined pixel.
  e.LoadText({"rrrrrrr"});
  int host[7] = {0, 0, 5, 5, 5, 5, 5};
  e.SetMASKData(host);
  ASSERT_EQ(Comps(e, l, nullptr).size(), 1u);
  EXPECT_EQ(e.RemoveSmallRegions(l, 3.0, nullptr), 1);
  EXPECT_EQ(std::vector<int>(host, host + 3), (std::vector<int>{0, 5, 5}));
  EXPECT_EQ(e.WorkPixel(0, 0), kRed);
  e.SetMASKData(nullptr);
  Owned<CConComponent> none;
  EXPECT_EQ(OutlineEngine().RemoveSmallRegions(none, 3.0, nullptr), 0);
}

TEST(DiscTable, SatinWidthSixAndDegenerateRadii) {
  // Step 1/6, room for 37 entries; 32 survive the repeat check. Angle 0:
  // (5.5, -0.5) -> (5, 0); 1/6 repeats it; 9/6: cos * 6 - 0.5 = -0.08 -> 0.
  V t = outline::BuildDiscTable(6.0);
  ASSERT_EQ(t.size(), 32u);
  V want = {Pt(5, 0), Pt(5, 1), Pt(4, 2), Pt(4, 3), Pt(0, 5), Pt(-1, 5), Pt(-6, 0), Pt(5, -1)};
  V got = {t[0], t[1], t[2], t[3], t[7], t[8], t[16], t[31]};
  EXPECT_EQ(got, want);
  EXPECT_TRUE(outline::BuildDiscTable(0.1).empty());
  EXPECT_EQ(outline::BuildDiscTable(1e12).size(), 1u);
}

TEST(DeflateComponent, HoldsTheDiscWhereItFitsOrReachesOutside) {
  OutlineEngine e;
  e.Load(30, 20, [](int x, int y) {
    if (x >= 2 && x <= 10 && y >= 2 && y <= 10) return kRed;                   // 9 x 9
    return (x >= 14 && y >= 5 && y <= 6) ? RGB(0, 0, 255) : kWhite;           // 2 high, to the edge
  });
  Owned<CConComponent> l;
  auto v = Comps(e, l, nullptr);
  V disc = outline::BuildDiscTable(3.0), far = {Pt(10, 0), Pt(0, -10)};
  std::vector<unsigned char> scratch(600, 0);
  std::vector<int> holds;
  for (CConComponent* c : v) holds.push_back(e.DeflateComponent(c, disc.data(), static_cast<int>(disc.size()), 30, 20, scratch.data()));
  EXPECT_EQ(holds, (std::vector<int>{1, 1, 0}));
  EXPECT_EQ(scratch, std::vector<unsigned char>(600, 0));
  EXPECT_EQ(e.DeflateComponent(v[2], far.data(), 2, 30, 20, scratch.data()), 1);
}

}  // namespace
