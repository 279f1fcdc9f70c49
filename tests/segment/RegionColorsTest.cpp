// Colour lists read from outline regions.
#include <gtest/gtest.h>

#include <algorithm>

#include "SegEngine.h"
#include "core/OutlineRecords.h"

namespace {

class RegionColors : public ::testing::Test {
 protected:
  void SetUp() override {
    dib = testimg::MakeDib24(4, 4, [](int, int) { return RGB(0, 0, 0); });
    e.Load(dib);
  }
  COutlineRegion* Add(std::list<COutlineRegion*>& list, COLORREF color, int index = -1, int marked = 0) {
    COutlineRegion* r = new COutlineRegion;
    r->m_crColor = color;
    r->m_nColorIndex = index;
    r->m_bMarked = marked;
    list.push_back(r);
    return r;
  }
  std::vector<unsigned char> dib;
  SegEngine e;
};

// B is within the radius of A; D is within the radius of B only, but B's
// mark still marks it. The list keeps A and C, brightest first, and the
// region list is back in its former order.
TEST_F(RegionColors, DropsNearDuplicatesAlsoThroughMarkedColours) {
  COLORREF a = RGB(100, 100, 100), b = RGB(110, 100, 100), d = RGB(122, 100, 100), c = RGB(200, 0, 0);
  std::vector<COutlineRegion*> order = {Add(e.m_listOutlineRegions, c), Add(e.m_listOutlineRegions, a),
                                        Add(e.m_listOutlineRegions, b), Add(e.m_listOutlineRegions, a),
                                        Add(e.m_listOutlineRegions, d)};
  CDWordArray list;
  int n = -1;
  e.GetColorListFromRegion(n, &list);
  ASSERT_EQ(n, 2);
  ASSERT_EQ(list.GetSize(), 2);
  EXPECT_EQ(list[0], a);  // sum 300
  EXPECT_EQ(list[1], c);  // sum 200
  ASSERT_EQ(e.m_arrColorList.GetSize(), 2);
  EXPECT_EQ(e.m_arrColorList[0], a);
  EXPECT_EQ(std::vector<COutlineRegion*>(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()), order);

  // A smaller radius keeps D (distance 22 from A, 12 from B) but not B.
  e.m_nColorRadius = 11;
  e.GetColorListFromRegion(n, &list);
  EXPECT_EQ(n, 3);
}

TEST_F(RegionColors, KeepsTheFiftyBrightest) {
  // 60 colours 30 apart on a red-green grid.
  for (int i = 0; i < 60; i++) Add(e.m_listOutlineRegions, RGB(30 * (i % 8), 30 * (i / 8), 0));
  CDWordArray list;
  int n = 0;
  e.GetColorListFromRegion(n, &list);
  ASSERT_EQ(n, 50);
  ASSERT_EQ(list.GetSize(), 50);
  auto sum = [](DWORD c) { return GetRValue(c) + GetGValue(c) + GetBValue(c); };
  int smallestKept = 1000;
  for (int i = 0; i < 50; i++) {
    if (i > 0) {
      EXPECT_GE(sum(list[i - 1]), sum(list[i]));
    }
    smallestKept = std::min(smallestKept, sum(list[i]));
  }
  // The ten dropped colours are the darkest: sums 0, 30, 60 and 90 hold
  // 1 + 2 + 3 + 4 colours.
  EXPECT_EQ(smallestKept, 120);
}

// The 101st distinct colour ends the walk; the region holding it is not put
// back and nothing else changes.
TEST_F(RegionColors, AHundredAndFirstColourEndsTheWalk) {
  std::vector<COutlineRegion*> regions;
  for (int i = 0; i < 101; i++) regions.push_back(Add(e.m_listOutlineRegions, RGB(i, 0, 0)));
  e.m_arrColorList.Add(12345);
  CDWordArray list;
  list.Add(1);
  int n = -7;
  e.GetColorListFromRegion(n, &list);
  EXPECT_EQ(n, -7);
  EXPECT_EQ(list.GetSize(), 1);
  ASSERT_EQ(e.m_arrColorList.GetSize(), 1);
  regions.pop_back();
  EXPECT_EQ(std::vector<COutlineRegion*>(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()), regions);
}

TEST_F(RegionColors, NothingToCollect) {
  int n = 4;
  e.GetColorListFromRegion(n, nullptr);
  EXPECT_EQ(n, 4);
  SegEngine empty;
  Add(empty.m_listOutlineRegions, RGB(1, 1, 1));
  empty.m_arrColorList.Add(9);
  empty.GetColorListFromRegion(n, nullptr);  // no picture: nothing changes
  EXPECT_EQ(n, 4);
  EXPECT_EQ(empty.m_arrColorList.GetSize(), 1);
}

// Colour 0: two unmarked regions: listed, then counted once. Colour 1: a
// marked region counts, the unmarked one after it lists. Colour 2: marked
// only: counted, not listed. Colour 3: no region.
TEST_F(RegionColors, LineColoursListUnmarkedAndCountMarkedRegions) {
  for (DWORD c : {RGB(1, 0, 0), RGB(2, 0, 0), RGB(3, 0, 0), RGB(4, 0, 0)}) e.m_arrStoredColorList.Add(c);
  Add(e.m_listStoredRegions, 0, 0, 0);
  Add(e.m_listStoredRegions, 0, 1, 1);
  Add(e.m_listStoredRegions, 0, 0, 0);
  Add(e.m_listStoredRegions, 0, 2, 1);
  Add(e.m_listStoredRegions, 0, 1, 0);
  Add(e.m_listStoredRegions, 0, 2, 1);
  e.m_arrLineColors.Add(99);
  EXPECT_EQ(e.SetLineColorList(), 3);
  ASSERT_EQ(e.m_arrLineColors.GetSize(), 2);
  EXPECT_EQ(e.m_arrLineColors[0], RGB(1, 0, 0));
  EXPECT_EQ(e.m_arrLineColors[1], RGB(2, 0, 0));
}

}  // namespace
