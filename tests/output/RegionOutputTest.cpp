// Output polygons and the regions handed to the host, on hand-built outline
// regions of a 10 x 10 (or 1000 x 1000) picture.
#include <gtest/gtest.h>

#include "output/OutputFixtures.h"

using namespace outtest;

namespace {

void ExpectPoint(const CPTPoint& p, float x, float y) {
  EXPECT_FLOAT_EQ(p.x, x);
  EXPECT_FLOAT_EQ(p.y, y);
}

}  // namespace

TEST(CreateOutputPolygon, ClosedSquareOfFivePointsGivesFourFlippedLines) {
  OutputEngine e(10, 10);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* r = MakeRegion(RectChain(1, 2, 5, 7), 0, RGB(1, 2, 3));
  e.m_listOutlineRegions.push_back(r);
  e.CreateOutputPolygon(0);

  ASSERT_NE(r->m_pPolygon, nullptr);
  ASSERT_EQ(r->m_pPolygon->m_nLines, 4);
  const CPTLine* l = r->m_pPolygon->m_pLines;
  // y is measured from the top: 10 - y of the bottom-up chain.
  ExpectPoint(l[0].m_ptStart, 1, 8);
  ExpectPoint(l[0].m_ptEnd, 5, 8);
  ExpectPoint(l[1].m_ptEnd, 5, 3);
  ExpectPoint(l[2].m_ptEnd, 1, 3);
  ExpectPoint(l[3].m_ptStart, 1, 3);
  ExpectPoint(l[3].m_ptEnd, 1, 8);
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(l[i].m_nType, 0);
    ExpectPoint(l[i].m_ptCtrl1, 0, 0);
    ExpectPoint(l[i].m_ptCtrl2, 0, 0);
  }
}

TEST(CreateOutputPolygon, ShortChainsGiveNoLinesAndStrayIndicesNoPolygon) {
  OutputEngine e(10, 10);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* single = MakeRegion({{3, 3}}, 0, 0);
  COutlineRegion* empty = MakeRegion({}, 0, 0);
  COutlineRegion* stray = MakeRegion(RectChain(0, 0, 2, 2), 1, 0);  // no colour 1
  e.m_listOutlineRegions = {single, empty, stray};
  e.CreateOutputPolygon(0);
  ASSERT_NE(single->m_pPolygon, nullptr);
  EXPECT_EQ(single->m_pPolygon->m_nLines, 0);
  ASSERT_NE(empty->m_pPolygon, nullptr);
  EXPECT_EQ(empty->m_pPolygon->m_nLines, 0);
  EXPECT_EQ(stray->m_pPolygon, nullptr);
}

TEST(CreateOutputPolygon, ReportsProgressPerColourAndAtTheEnd) {
  OutputEngine e(10, 10);
  ProgressLog log;
  e.m_pProgressWnd = &log;
  e.BeginProgress(2);  // clustering and polygons: 40 units
  log.positions.clear();
  e.m_arrColorList.Add(RGB(9, 9, 9));
  e.m_arrColorList.Add(RGB(1, 1, 1));
  e.m_listOutlineRegions.push_back(MakeRegion(RectChain(0, 0, 2, 2), 1, 0));
  e.CreateOutputPolygon(0);
  // colour 0: 20/40*100*0 = 0 (swallowed); colour 1: 50*1/2 = 25; end: 50.
  EXPECT_EQ(log.positions, (std::vector<int>{25, 50}));
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 50.0f);
}

TEST(GetRegions, EmptyListGivesNoRegionsAndLeavesProgressAlone) {
  OutputEngine e(10, 10);
  ProgressLog log;
  e.m_pProgressWnd = &log;
  e.BeginProgress(2);
  log.positions.clear();
  CPTRegions out;
  e.GetRegions(&out, 1);  // a differing type asks for a rebuild
  EXPECT_EQ(out.m_nRegions, 0);
  EXPECT_TRUE(log.positions.empty());
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 0.0f);
}

TEST(GetRegions, ZeroSizeRectangleGivesPixelsPlusItsCorner) {
  OutputEngine e(10, 10);
  e.m_rcImageReal = CRect(100, 200, 100, 200);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  e.m_listOutlineRegions.push_back(MakeRegion(RectChain(1, 2, 5, 7), 0, 0));
  e.CreateOutputPolygon(0);
  CPTRegions out;
  e.GetRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 1);
  const CPTPolygon& p = out.m_pRegions[0].m_pPolygons[0];
  ASSERT_EQ(p.m_nLines, 4);
  ExpectPoint(p.m_pLines[0].m_ptStart, 101, 208);
  ExpectPoint(p.m_pLines[1].m_ptEnd, 105, 203);
  // Control points of straight lines are mapped too and land on the corner.
  ExpectPoint(p.m_pLines[0].m_ptCtrl1, 100, 200);
  ExpectPoint(p.m_pLines[0].m_ptCtrl2, 100, 200);
}

TEST(GetRegions, ScalesIntoTheOutputRectangle) {
  OutputEngine e(10, 10);
  e.m_rcImageReal = CRect(5, -10, 25, 20);  // 2 units per pixel across, 3 down
  e.m_arrColorList.Add(RGB(1, 2, 3));
  e.m_listOutlineRegions.push_back(MakeRegion(RectChain(1, 2, 5, 7), 0, 0));
  e.CreateOutputPolygon(0);
  CPTRegions out;
  e.GetRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 1);
  const CPTLine& l = out.m_pRegions[0].m_pPolygons[0].m_pLines[0];
  ExpectPoint(l.m_ptStart, 5 + 1 * 2, -10 + 8 * 3);
  ExpectPoint(l.m_ptEnd, 5 + 5 * 2, -10 + 8 * 3);
}

TEST(GetRegions, NarrowFlagNeedsTheFlagAndHalfTheScaledAreaAt2500) {
  OutputEngine e(1000, 1000);
  e.m_rcImageReal = CRect(0, 0, 2000, 2000);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  struct Case {
    int narrow, area, flag;
  } cases[] = {
      {1, 2500, 1},  // 2500 * 2 * 2 / 2 = 5000
      {0, 2500, 0},  // not flagged
      {1, 1250, 1},  // exactly 2500: the bound is inclusive
      {1, 1249, 0},  // 2498
  };
  for (const Case& c : cases) {
    COutlineRegion* r = MakeRegion(RectChain(0, 0, 4, 4), 0, 0);
    r->m_bNarrow = static_cast<BYTE>(c.narrow);
    r->m_nArea = c.area;
    e.m_listOutlineRegions.push_back(r);
  }
  CPTRegions out;
  e.GetRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 4);
  for (int i = 0; i < 4; i++) EXPECT_EQ(out.m_pRegions[i].m_nRegionFlag, cases[i].flag) << i;
}

TEST(GetRegions, RegionWithThreeHolesGivesFourPolygonsInOrder) {
  OutputEngine e(20, 20);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* r = MakeRegion(RectChain(0, 0, 20, 20), 0, 0);
  AddHole(r, RectChain(2, 2, 4, 4));
  AddHole(r, RectChain(6, 6, 9, 9));
  AddHole(r, {{12, 12}, {15, 12}, {15, 15}});  // an open chain: two lines
  e.m_listOutlineRegions.push_back(r);
  e.CreateOutputPolygon(0);
  CPTRegions out;
  e.GetRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 1);
  const CPTRegion& reg = out.m_pRegions[0];
  ASSERT_EQ(reg.m_nPolygons, 4);
  EXPECT_EQ(reg.m_pPolygons[0].m_nLines, 4);
  EXPECT_EQ(reg.m_pPolygons[3].m_nLines, 2);
  ExpectPoint(reg.m_pPolygons[1].m_pLines[0].m_ptStart, 2, 18);
  ExpectPoint(reg.m_pPolygons[2].m_pLines[0].m_ptStart, 6, 14);
  // The host's arrays are its own: the engine's polygons are not shared.
  EXPECT_NE(reg.m_pPolygons[0].m_pLines, r->m_pPolygon->m_pLines);
}

TEST(GetRegions, GroupsByColourLeavesOutSkippedAndCountsFromOne) {
  OutputEngine e(10, 10);
  e.m_arrColorList.Add(RGB(200, 200, 200));
  e.m_arrColorList.Add(RGB(10, 10, 10));
  COutlineRegion* a = MakeRegion(RectChain(0, 0, 1, 1), 1, 0);
  COutlineRegion* b = MakeRegion(RectChain(0, 0, 2, 2), 0, 0);
  COutlineRegion* skipped = MakeRegion(RectChain(0, 0, 3, 3), 0, 0);
  skipped->m_bSkip = 1;
  COutlineRegion* c = MakeRegion(RectChain(0, 0, 4, 4), 1, 0);
  COutlineRegion* stray = MakeRegion(RectChain(0, 0, 5, 5), 2, 0);
  e.m_listOutlineRegions = {a, b, skipped, c, stray};
  e.CreateOutputPolygon(0);
  CPTRegions out;
  e.GetRegions(&out, 0);
  ASSERT_EQ(out.m_nRegions, 3);
  // b (colour 0), then a and c (colour 1) in list order; told apart by width.
  const int widths[] = {2, 1, 4};
  const int indices[] = {1, 2, 2};
  for (int i = 0; i < 3; i++) {
    EXPECT_EQ(out.m_pRegions[i].m_nColorIndex, indices[i]);
    EXPECT_FLOAT_EQ(out.m_pRegions[i].m_pPolygons[0].m_pLines[0].m_ptEnd.x, widths[i]);
  }
}

TEST(GetRegions, RebuildsOnlyWhenTheTypeDiffersFromTheStoredOne) {
  OutputEngine e(10, 10);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* r = MakeRegion(RectChain(1, 2, 5, 7), 0, 0);
  e.m_listOutlineRegions.push_back(r);
  e.CreateOutputPolygon(0);
  // A mark in the engine's polygon survives as long as nothing rebuilds it.
  r->m_pPolygon->m_pLines[0].m_ptStart.x = 42.0f;
  for (int call = 0; call < 2; call++) {
    CPTRegions out;
    e.GetRegions(&out, 0);
    EXPECT_FLOAT_EQ(out.m_pRegions[0].m_pPolygons[0].m_pLines[0].m_ptStart.x, 42.0f);
  }
  // A differing type rebuilds on every call, since the stored type stays 0.
  for (int call = 0; call < 2; call++) {
    r->m_pPolygon->m_pLines[0].m_ptStart.x = 42.0f;
    CPTRegions out;
    e.GetRegions(&out, 1);
    EXPECT_EQ(e.m_nOutputLineType, 0);
    ASSERT_GT(out.m_pRegions[0].m_pPolygons[0].m_nLines, 0);
    EXPECT_EQ(out.m_pRegions[0].m_pPolygons[0].m_pLines[0].m_nType, 1);
    EXPECT_NE(r->m_pPolygon->m_pLines[0].m_ptStart.x, 42.0f);
  }
}

TEST(GetRegions, UnbuiltPolygonSlotsComeOutEmpty) {
  OutputEngine e(10, 10);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* r = MakeRegion(RectChain(1, 2, 5, 7), 0, 0);
  AddHole(r, RectChain(2, 3, 3, 4));
  e.m_listOutlineRegions.push_back(r);
  CPTRegions out;
  e.GetRegions(&out, 0);  // same type as stored: no build, slots still empty
  ASSERT_EQ(out.m_nRegions, 1);
  ASSERT_EQ(out.m_pRegions[0].m_nPolygons, 2);
  EXPECT_EQ(out.m_pRegions[0].m_pPolygons[0].m_nLines, 0);
  EXPECT_EQ(out.m_pRegions[0].m_pPolygons[0].m_pLines, nullptr);
}
