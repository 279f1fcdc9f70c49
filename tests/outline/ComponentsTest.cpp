// Connected components, crossing repair, small-region merging and the disc test.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "outline/DiscFit.h"
#include "outline/OutlineTestEngine.h"
#include "outline/SmallRegions.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kWhite = RGB(255, 255, 255);

std::vector<CConComponent*> Vec(const std::list<CConComponent*>& l) { return {l.begin(), l.end()}; }

TEST(GetCompList, OneColourPictureIsOneComponentCoveringIt) {
  OutlineEngine e;
  e.Load(5, 3, [](int, int) { return kRed; });
  Owned<CConComponent> comps;
  ASSERT_EQ(e.GetCompList(comps, nullptr), 1);
  ASSERT_EQ(comps.size(), 1u);
  CConComponent* c = comps.front();
  EXPECT_EQ(c->m_nPoints, 15);
  EXPECT_EQ(c->m_crColor, kRed);
  EXPECT_EQ(c->m_rcBound, CRect(0, 0, 4, 2));  // inclusive
  EXPECT_EQ(c->m_pPoints[0], Pt(0, 0));         // seed first, then breadth first
  EXPECT_EQ(c->m_pPoints[1], Pt(0, 1));         // down before right
  EXPECT_EQ(c->m_pPoints[2], Pt(1, 0));
}

TEST(GetCompList, WithoutImageLeavesTheListAlone) {
  OutlineEngine e;
  Owned<CConComponent> comps{new CConComponent};
  EXPECT_EQ(e.GetCompList(comps, nullptr), 0);
  EXPECT_EQ(comps.size(), 1u);
}

TEST(GetCompList, ComponentsInRasterOrderOfTheirSeeds) {
  OutlineEngine e;
  e.LoadText({"rr.", "r.b", "..b"});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  auto v = Vec(comps);
  ASSERT_EQ(v.size(), 4u);  // red, white (2,0), white (1,1)... blue
  EXPECT_EQ(v[0]->m_crColor, kRed);
  EXPECT_EQ(v[0]->m_nPoints, 3);
  EXPECT_EQ(v[1]->m_pPoints[0], Pt(2, 0));
  EXPECT_EQ(v[1]->m_nPoints, 1);
  EXPECT_EQ(v[2]->m_pPoints[0], Pt(1, 1));  // white (1,1),(0,2),(1,2) joined by sides
  EXPECT_EQ(v[2]->m_nPoints, 3);
  EXPECT_EQ(v[3]->m_crColor, RGB(0, 0, 255));
  EXPECT_EQ(v[3]->m_rcBound, CRect(2, 1, 2, 2));
}

TEST(GetCompList, DiagonalContactInsideAComponentIsRepairedAndJoinsOnTheRebuild) {
  // Red touches itself only at the corner between (0,1) and (1,2).
  OutlineEngine e;
  e.LoadText({"rrr", "rbr", "grr"});
  Owned<CConComponent> comps;
  ASSERT_EQ(e.GetCompList(comps, nullptr), 1);
  // The list built before the repair comes back, numbered.
  auto v = Vec(comps);
  ASSERT_EQ(v.size(), 3u);
  EXPECT_EQ(v[1]->m_crColor, RGB(0, 0, 255));
  EXPECT_EQ(v[1]->m_nIndex, 1);
  // The right neighbour (1,1) of the crossing pixel took its colour.
  EXPECT_EQ(e.WorkPixel(1, 1), kRed);
  EXPECT_EQ(e.WorkPixel(0, 2), RGB(0, 255, 0));
  // Rebuilt: blue is gone, red is one component of 8 pixels.
  ASSERT_EQ(e.GetCompList(comps, nullptr), 1);
  v = Vec(comps);
  ASSERT_EQ(v.size(), 2u);
  EXPECT_EQ(v[0]->m_nPoints, 8);
  EXPECT_EQ(v[0]->m_nIndex, -1);  // no repair this time: the list is not numbered
}

TEST(GetCompList, MirrorCrossingCopiesToTheLeft) {
  // Red touches itself only at the corner between (2,1) and (1,2); no
  // down-right crossing exists, so the mirror repair recolours (1,1).
  OutlineEngine e;
  e.LoadText({"rrr", "rbr", "rrg"});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  EXPECT_EQ(e.WorkPixel(1, 1), kRed);
  EXPECT_EQ(e.WorkPixel(2, 2), RGB(0, 255, 0));
}

TEST(GetCompList, SeparateComponentsTouchingAtACornerStaySeparate) {
  // Two red pixels touching at a corner are two components with two labels;
  // the label test of the repair does not see them as one.
  OutlineEngine e;
  e.LoadText({"r.", ".r"});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  EXPECT_EQ(comps.size(), 4u);
  EXPECT_EQ(e.WorkPixel(1, 0), kWhite);
  EXPECT_EQ(e.WorkPixel(0, 1), kWhite);
}

TEST(GetCompList, AbsorbingPixelJoinsTheComponentSeededFirstButIsNotExpanded) {
  OutlineEngine e;
  e.LoadText({"rgrb"});
  unsigned char mask[4] = {0, 1, 0, 0};
  Owned<CConComponent> comps;
  e.GetCompList(comps, mask);
  auto v = Vec(comps);
  ASSERT_EQ(v.size(), 3u);
  EXPECT_EQ(v[0]->m_nPoints, 2);  // red (0,0) took the green absorbing pixel
  EXPECT_EQ(v[0]->m_pPoints[1], Pt(1, 0));
  EXPECT_EQ(v[0]->m_crColor, kRed);
  EXPECT_EQ(v[1]->m_pPoints[0], Pt(2, 0));  // not reached through the absorbing pixel
  EXPECT_EQ(v[1]->m_nPoints, 1);
}

TEST(GetCompList, AbsorbingPixelNeverSeeds) {
  OutlineEngine e;
  e.LoadText({"g"});
  unsigned char mask[1] = {1};
  Owned<CConComponent> comps;
  EXPECT_EQ(e.GetCompList(comps, mask), 1);
  EXPECT_TRUE(comps.empty());
}

TEST(GetCompList, ExcludedAndHostMaskedPixelsJoinNothing) {
  OutlineEngine e;
  e.LoadText({"rrr", "rrr"});
  std::vector<unsigned char> all2(6, 2);
  Owned<CConComponent> comps;
  EXPECT_EQ(e.GetCompList(comps, all2.data()), 1);
  EXPECT_TRUE(comps.empty());

  int host[6] = {0, -1, 0, 0, -1, 0};  // the middle column is masked
  e.SetMASKData(host);
  e.GetCompList(comps, nullptr);
  EXPECT_EQ(comps.size(), 2u);
  EXPECT_EQ(comps.front()->m_nPoints, 2);
  e.SetMASKData(nullptr);
}

TEST(BeCross, TestsLabelsOnly) {
  OutlineEngine e;
  int L[4] = {7, 3, 4, 7};  // 2 x 2: 7 at (0,0) and (1,1)
  EXPECT_EQ(e.BeCross24(L, 2, 2, 0, 0), 1);
  EXPECT_EQ(e.BeCross13(L, 2, 2, 0, 1), 0);
  int M[4] = {3, 7, 7, 4};  // 7 at (1,0) and (0,1)
  EXPECT_EQ(e.BeCross24(M, 2, 2, 0, 0), 0);
  EXPECT_EQ(e.BeCross13(M, 2, 2, 0, 1), 1);
  int N[4] = {7, 7, 4, 7};  // side contact: no crossing
  EXPECT_EQ(e.BeCross24(N, 2, 2, 0, 0), 0);
  EXPECT_EQ(e.BeCross24(L, 2, 2, 1, 1), 0);  // outside the array: no hit, no read
}

TEST(SmallRegionLimit, NeverBelowFourAndFiniteOnlyWhenItFits) {
  EXPECT_EQ(outline::SmallRegionLimit(3.0, 0, 0, 100, 50), 4);        // zero rectangle
  EXPECT_EQ(outline::SmallRegionLimit(3.0, 100, 50, 100, 50), 300);   // 300 + 0.5
  EXPECT_EQ(outline::SmallRegionLimit(3.0, 1000, 100, 100, 50), 4);   // s = 10: 3.5 -> 3 -> 4
  EXPECT_EQ(outline::SmallRegionLimit(3.0, 200, 50, 100, 50), 75);    // coarser scale 2: 75.5
  EXPECT_EQ(outline::SmallRegionLimit(3.0, 50, 100, 100, 50), 75);    // sy = 2 wins
  EXPECT_EQ(outline::SmallRegionLimit(3.0, 1, 1, 30000, 30000), 4);   // 2.7e11 does not fit
}

TEST(RemoveSmallRegions, TakesTheFirstDifferentNeighbourColour) {
  OutlineEngine e;
  e.LoadText({"bgggggg"});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  EXPECT_EQ(e.RemoveSmallRegions(comps, 3.0, nullptr), 1);
  EXPECT_EQ(e.WorkPixel(0, 0), RGB(0, 255, 0));
}

TEST(RemoveSmallRegions, ReplacementColourCarriesOverBetweenComponents) {
  // b finds green; g (now beside a green pixel) finds nothing and keeps the
  // last examined colour, green; y has only excluded neighbours and is
  // painted green too. The large white run is left alone.
  OutlineEngine e;
  e.LoadText({"bg#y#......"});
  unsigned char mask[11] = {0, 0, 2, 0, 2, 0, 0, 0, 0, 0, 0};
  Owned<CConComponent> comps;
  e.GetCompList(comps, mask);
  ASSERT_EQ(comps.size(), 4u);
  EXPECT_EQ(e.RemoveSmallRegions(comps, 3.0, mask), 1);
  EXPECT_EQ(e.WorkPixel(0, 0), RGB(0, 255, 0));
  EXPECT_EQ(e.WorkPixel(3, 0), RGB(0, 255, 0));
  EXPECT_EQ(e.WorkPixel(5, 0), kWhite);
  // Nothing found: the last pixel the search walked is excluded from now on.
  EXPECT_EQ(mask[0], 0);
  EXPECT_EQ(mask[1], 2);
  EXPECT_EQ(mask[3], 2);
}

TEST(RemoveSmallRegions, FirstIsolatedComponentTurnsWhite) {
  OutlineEngine e;
  e.LoadText({"b#ggggg"});
  unsigned char mask[7] = {0, 2, 0, 0, 0, 0, 0};
  Owned<CConComponent> comps;
  e.GetCompList(comps, mask);
  EXPECT_EQ(e.RemoveSmallRegions(comps, 3.0, mask), 0);
  EXPECT_EQ(e.WorkPixel(0, 0), kWhite);
  EXPECT_EQ(mask[0], 2);
}

TEST(RemoveSmallRegions, HostMaskValueIsWrittenAtTheLastExaminedPixelOnly) {
  // A two-pixel red component in a red picture split by the host mask: no
  // colour differs, but the host mask does at (1,0)'s right neighbour.
  OutlineEngine e;
  e.LoadText({"rrrrrrr"});
  int host[7] = {0, 0, 5, 5, 5, 5, 5};
  e.SetMASKData(host);
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  ASSERT_EQ(comps.size(), 1u);
  EXPECT_EQ(e.RemoveSmallRegions(comps, 3.0, nullptr), 1);
  EXPECT_EQ(host[0], 0);
  EXPECT_EQ(host[1], 5);
  EXPECT_EQ(e.WorkPixel(0, 0), kRed);  // painted with the last examined colour
  e.SetMASKData(nullptr);
}

TEST(RemoveSmallRegions, WithoutImageReturnsZero) {
  OutlineEngine e;
  Owned<CConComponent> comps;
  EXPECT_EQ(e.RemoveSmallRegions(comps, 3.0, nullptr), 0);
}

TEST(DiscTable, SatinWidthSix) {
  // r = 6: step 1/6, room for 37 entries; 32 survive the repeat check.
  std::vector<sPoint> t = outline::BuildDiscTable(6.0);
  ASSERT_EQ(t.size(), 32u);
  // angle 0: (6 - 0.5, -0.5) -> (5, 0); 1/6 gives (5.42, 0.50) -> (5, 0)
  // again and is dropped; 2/6: (5.17, 1.46) -> (5, 1); 3/6: (4.77, 2.38).
  EXPECT_EQ(t[0], Pt(5, 0));
  EXPECT_EQ(t[1], Pt(5, 1));
  EXPECT_EQ(t[2], Pt(4, 2));
  EXPECT_EQ(t[3], Pt(4, 3));
  // angle 9/6: cos * 6 - 0.5 = -0.08 truncates toward zero.
  EXPECT_EQ(t[7], Pt(0, 5));
  EXPECT_EQ(t[8], Pt(-1, 5));
  EXPECT_EQ(t[16], Pt(-6, 0));
  EXPECT_EQ(t[31], Pt(5, -1));
  for (size_t k = 1; k < t.size(); k++) EXPECT_NE(t[k], t[k - 1]);
}

TEST(DiscTable, DegenerateRadii) {
  EXPECT_TRUE(outline::BuildDiscTable(0.1).empty());  // room for truncate(0.63) = 0
  EXPECT_EQ(outline::BuildDiscTable(1e12).size(), 1u);
}

TEST(DeflateComponent, HoldsTheDiscOnlyWhereItFits) {
  OutlineEngine e;
  // A 9 x 9 red square and a 2-pixel wide red bar in white.
  e.Load(30, 20, [](int x, int y) {
    if (x >= 2 && x <= 10 && y >= 2 && y <= 10) return kRed;
    if (x >= 14 && x <= 28 && y >= 5 && y <= 6) return RGB(0, 0, 255);
    return kWhite;
  });
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  std::vector<sPoint> disc = outline::BuildDiscTable(3.0);
  std::vector<unsigned char> scratch(600, 0);
  int results[3] = {-1, -1, -1};
  int k = 0;
  for (CConComponent* c : comps)
    if (k < 3)
      results[k++] = e.DeflateComponent(c, disc.data(), static_cast<int>(disc.size()), 30, 20,
                                        scratch.data());
  // white (touches every side, holds the disc in its open part), red, blue
  EXPECT_EQ(results[0], 1);
  EXPECT_EQ(results[1], 1);
  EXPECT_EQ(results[2], 0);
  for (unsigned char b : scratch) ASSERT_EQ(b, 0);
}

TEST(DeflateComponent, OffsetsOutsideThePictureCountAsInside) {
  OutlineEngine e;
  e.Load(3, 3, [](int, int) { return kRed; });
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  sPoint far[2] = {Pt(10, 0), Pt(0, -10)};
  sPoint near[1] = {Pt(1, 1)};
  std::vector<unsigned char> scratch(9, 0);
  EXPECT_EQ(e.DeflateComponent(comps.front(), far, 2, 3, 3, scratch.data()), 1);
  EXPECT_EQ(e.DeflateComponent(comps.front(), near, 1, 3, 3, scratch.data()), 1);
}

}  // namespace
