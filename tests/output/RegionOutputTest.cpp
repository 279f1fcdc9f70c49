// Region output on hand-built outline regions: straight lines flipped and
// mapped into the output rectangle, the choice and order of the regions
// handed to the host, the narrow flag, the rebuild rule and its progress,
// curve output; and the colour-count retry rule of the segmentation driver.
#include <gtest/gtest.h>

#include <vector>

#include "common/TestImages.h"
#include "engine/ColorCountRetry.h"
#include "output/HandRegions.h"

namespace {

void ExpectPoint(const CPTPoint& p, double x, double y) {
  EXPECT_FLOAT_EQ(p.x, static_cast<float>(x));
  EXPECT_FLOAT_EQ(p.y, static_cast<float>(y));
}

TEST(RegionOutput, StraightLinesAreTheChainFlippedAndMapped) {
  // The region touches the left, right and top edges of a 10 x 10 picture:
  // chain (0,3) (10,3) (10,10) (0,10) (0,3), top-down y = 10 - y.
  const double corners[5][2] = {{0, 7}, {10, 7}, {10, 0}, {0, 0}, {0, 7}};
  struct Case { LONG l, t, r, b; double sx, sy; } cases[] = {
      {0, 0, 0, 0, 1, 1}, {100, 200, 100, 200, 1, 1}, {5, -10, 25, 20, 2, 3},
      {0, 0, 0, 30, 1, 1}, {7, 0, 37, 0, 1, 1}};  // no width or no height: unscaled
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.l << "," << c.t << "," << c.r << "," << c.b);
    CPictrace e;
    hand::Load(e, 10, 10);
    e.SetImageRealRect(c.l, c.t, c.r, c.b);
    e.m_arrColorList.Add(RGB(1, 2, 3));
    COutlineRegion* r = hand::Region(hand::Rect(0, 3, 10, 10), 0, RGB(1, 2, 3));
    hand::AddHole(hand::AddHole(r, hand::Rect(2, 5, 4, 6)), {{6, 4}, {9, 4}, {9, 8}});  // an open chain: two lines
    e.m_listOutlineRegions.push_back(r);
    CPTRegions unbuilt, out;
    e.GetRegions(&unbuilt, 0);  // the stored type: nothing built, empty polygons
    ASSERT_EQ(std::make_tuple(unbuilt.m_nRegions, unbuilt.m_pRegions[0].m_nPolygons), std::make_tuple(1, 3));
    EXPECT_EQ(std::make_tuple(unbuilt.m_pRegions[0].m_pPolygons[0].m_pLines, unbuilt.m_pRegions[0].m_pPolygons[2].m_nLines),
              std::make_tuple(nullptr, 0));
    e.SetOutputLineType(1);
    e.GetRegions(&out, 0);
    const CPTPolygon& p = out.m_pRegions[0].m_pPolygons[0];
    ASSERT_EQ(std::make_tuple(out.m_nRegions, out.m_pRegions[0].m_nPolygons, p.m_nLines), std::make_tuple(1, 3, 4));
    const CPTPolygon &h1 = out.m_pRegions[0].m_pPolygons[1], &h2 = out.m_pRegions[0].m_pPolygons[2];
    ASSERT_EQ(std::make_tuple(h1.m_nLines, h2.m_nLines), std::make_tuple(4, 2));
    ExpectPoint(h1.m_pLines[0].m_ptStart, c.l + 2 * c.sx, c.t + 5 * c.sy);
    ExpectPoint(h2.m_pLines[1].m_ptEnd, c.l + 9 * c.sx, c.t + 2 * c.sy);
    EXPECT_NE(p.m_pLines, r->m_pPolygon->m_pLines);  // the host's own array
    for (int i = 0; i < 4; i++) {
      const CPTLine& l = p.m_pLines[i];
      EXPECT_EQ(l.m_nType, 0);
      ExpectPoint(r->m_pPolygon->m_pLines[i].m_ptEnd, corners[i + 1][0], corners[i + 1][1]);
      ExpectPoint(l.m_ptStart, c.l + corners[i][0] * c.sx, c.t + corners[i][1] * c.sy);
      ExpectPoint(l.m_ptEnd, c.l + corners[i + 1][0] * c.sx, c.t + corners[i + 1][1] * c.sy);
      ExpectPoint(l.m_ptCtrl1, c.l, c.t);  // straight lines' control points (0, 0), mapped too
      ExpectPoint(l.m_ptCtrl2, c.l, c.t);
    }
  }
}

TEST(RegionOutput, RegionsComeByColourWithoutSkippedOrStrayOnesAndWithTheNarrowFlag) {
  // 100 x 100 pixels in 200 x 300 units: the flag needs half the doubled
  // area times 2 * 3 to reach 2500.
  CPictrace e;
  hand::Load(e, 100, 100);
  e.SetImageRealRect(0, 0, 200, 300);
  e.m_arrColorList.Add(RGB(200, 200, 200));
  e.m_arrColorList.Add(RGB(10, 10, 10));
  // In list order: colour index, right edge (tells them apart), skipped, narrow, doubled area.
  struct Case { int colour, right, skip, narrow, area; } cases[] = {
      {1, 1, 0, 1, 834}, {0, 2, 0, 1, 833}, {0, 3, 1, 1, 5000}, {1, 4, 0, 0, 5000}, {2, 5, 0, 1, 5000},
      {-1, 6, 0, 1, 5000}, {0, 7, 0, 7, 2000}};
  std::vector<COutlineRegion*> made;
  for (const Case& c : cases) {
    made.push_back(hand::Region(hand::Rect(0, 0, c.right, 2), c.colour, 0));
    made.back()->m_bSkip = c.skip, made.back()->m_bNarrow = static_cast<BYTE>(c.narrow), made.back()->m_nArea = c.area;
    e.m_listOutlineRegions.push_back(made.back());
  }
  // Chains of one point or none give polygons without lines.
  e.m_listOutlineRegions.push_back(hand::Region({{3, 3}}, 0, 0));
  e.m_listOutlineRegions.push_back(hand::Region({}, 0, 0));
  hand::Build(e, 0);
  EXPECT_EQ(std::make_tuple(made[4]->m_pPolygon, made[5]->m_pPolygon), std::make_tuple(nullptr, nullptr));
  ASSERT_NE(made[2]->m_pPolygon, nullptr);  // skipped regions are built all the same
  CPTRegions out;
  e.GetRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 6);
  const int index[] = {1, 1, 1, 1, 2, 2}, lines[] = {4, 4, 0, 0, 4, 4}, right[] = {2, 7, 0, 0, 1, 4}, flag[] = {0, 1, 0, 0, 1, 0};
  for (int i = 0; i < 6; i++) {
    const CPTRegion& reg = out.m_pRegions[i];
    EXPECT_EQ(std::make_tuple(reg.m_nColorIndex, reg.m_nRegionFlag, reg.m_pPolygons[0].m_nLines),
              std::make_tuple(index[i], flag[i], lines[i])) << i;
    if (lines[i] && reg.m_pPolygons[0].m_nLines) {
      EXPECT_EQ(reg.m_pPolygons[0].m_pLines[0].m_ptEnd.x, 2 * right[i]) << i;  // 2 units a pixel
    } else {
      EXPECT_EQ(reg.m_pPolygons[0].m_pLines, nullptr);
    }
  }
}

TEST(RegionOutput, OnlyAnotherLineTypeRebuildsReportingPerColour) {
  testimg::ProgressLog log;
  CPictrace e;
  hand::Load(e, 40, 40);
  e.m_pProgressWnd = &log;
  e.BeginProgress(2);  // clustering and polygons: 40 units
  log.positions.clear();
  CPTRegions none;
  e.GetRegions(&none, 1);  // no regions: nothing built, nothing reported
  EXPECT_EQ(std::make_tuple(none.m_nRegions, none.m_pRegions, log.positions.size()), std::make_tuple(0, nullptr, size_t{0}));

  e.m_arrColorList.Add(RGB(9, 9, 9));
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* r = hand::Region(hand::Rect(0, 0, 40, 40), 1, 0);
  hand::AddHole(hand::AddHole(r, hand::Rect(10, 10, 20, 24)), {{5, 5}});
  e.m_listOutlineRegions.push_back(r);
  hand::Build(e, 0);
  // Colour 0 at 0 % (swallowed), colour 1 at 50 * 1/2, the end at 50.
  EXPECT_EQ(log.positions, (std::vector<int>{25, 50}));
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 50.0f);
  for (int type : {0, 0, 1, 1}) {
    // A mark survives while nothing rebuilds; another type rebuilds on every
    // call and leaves the stored type.
    r->m_pPolygon->m_pLines[0].m_ptStart.x = 42.0f;
    CPTRegions out;
    e.GetRegions(&out, type);
    EXPECT_EQ(r->m_pPolygon->m_pLines[0].m_ptStart.x == 42.0f, type == 0);
    EXPECT_EQ(e.m_nOutputLineType, 0);
    ASSERT_EQ(out.m_pRegions[0].m_nPolygons, 3);
    if (type == 0) continue;
    EXPECT_EQ(out.m_pRegions[0].m_pPolygons[2].m_nLines, 0);  // one point: no curve
    for (int k = 0; k < 2; k++) {
      // Closed chains of Bezier lines, y flipped.
      const CPTPolygon& p = out.m_pRegions[0].m_pPolygons[k];
      ASSERT_GE(p.m_nLines, 4);
      for (int i = 0; i < p.m_nLines; i++) {
        EXPECT_EQ(p.m_pLines[i].m_nType, 1);
        ExpectPoint(p.m_pLines[i].m_ptEnd, p.m_pLines[(i + 1) % p.m_nLines].m_ptStart.x, p.m_pLines[(i + 1) % p.m_nLines].m_ptStart.y);
      }
    }
    ExpectPoint(out.m_pRegions[0].m_pPolygons[1].m_pLines[0].m_ptStart, 10, 30);
  }
}

TEST(ColorCountRetry, TargetsOfEveryPass) {
  struct Case { int wanted; std::vector<int> counts; bool noRetry; std::vector<int> targets; } cases[] = {
      {8, {8}, false, {8}},                                   // hit at once
      {8, {6, 7, 9, 9, 9, 9}, false, {8, 9, 10, 9, 8, 7}},    // up, overshoot, down once
      {8, {6, 9, 7}, false, {8, 9, 8}},                       // undershoot going down stops
      {8, {10, 9, 9, 9, 9, 9}, false, {8, 7, 6, 5, 4, 3}},    // at most five retries
      {8, {1, 2, 3, 4, 5, 6}, false, {8, 9, 10, 11, 12, 13}}, {8, {6, 8}, false, {8, 9}},
      {8, {3}, true, {8}},                                    // no retry asked
      {2, {3}, false, {2}}, {3, {5, 5, 5}, false, {3, 2}},    // targets stay at 2 or more
      {49, {40}, false, {49}}, {48, {40, 40}, false, {48, 49}}};  // and under 50
  for (const Case& c : cases) {
    pictrace::ColorCountRetry r(c.wanted);
    std::vector<int> targets{r.Target()};
    size_t i = 0;
    for (bool more = r.AfterFirstPass(c.counts[i++], c.noRetry); more; more = r.AfterRetry(c.counts[i++])) {
      targets.push_back(r.Target());
      ASSERT_LT(i, c.counts.size()) << "more passes than counts";
    }
    EXPECT_EQ(targets, c.targets) << "wanted " << c.wanted << ", first count " << c.counts[0];
  }
}

}  // namespace
