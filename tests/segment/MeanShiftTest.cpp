// Mean shift over region means: one mode for identical means, the radius
// search in both directions with its stopping rules, and near-duplicates.
#include <gtest/gtest.h>

#include "SegEngine.h"

namespace {

class MeanShiftTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dib = testimg::MakeDib24(12, 4, [](int, int) { return RGB(0, 0, 0); });
    e.Load(dib);
  }
  std::vector<DWORD> Run(int wanted) {
    CDWordArray list;
    list.Add(0xDEAD);
    e.MeanShift(wanted, &list);
    std::vector<DWORD> out;
    for (INT_PTR i = 0; i < list.GetSize(); i++) out.push_back(list[i]);
    EXPECT_EQ(list.GetSize(), e.m_arrColorList.GetSize());
    return out;
  }
  COLORREF Pixel(int x, int row) { return testimg::PixelAt(e.m_pWorkBits, 12, x, row); }
  std::vector<unsigned char> dib;
  SegEngine e;
};

TEST_F(MeanShiftTest, SphereIsStrictlyInside) {
  EXPECT_EQ(e.InCentroid(15, 0, 0, 0, 0, 0, 15), 0);
  EXPECT_EQ(e.InCentroid(14.999, 0, 0, 0, 0, 0, 15), 1);
  EXPECT_EQ(e.InCentroid(3, 4, 0, 0, 0, 0, 5.0001), 1);
}

TEST_F(MeanShiftTest, IdenticalMeansGiveOneModeWhateverTheSizes) {
  e.AddRegion(1, 50.7f, 60.2f, 70.9f, 0, 0);
  e.AddRegion(5, 50.7f, 60.2f, 70.9f, 0, 1);
  EXPECT_EQ(Run(2), (std::vector<DWORD>{RGB(50, 60, 70)}));
  EXPECT_EQ(e.m_nColorRadius, 15);
  EXPECT_EQ(Pixel(0, 0), RGB(50, 60, 70));
  EXPECT_EQ(Pixel(4, 1), RGB(50, 60, 70));
  EXPECT_EQ(Pixel(5, 1), RGB(0, 0, 0));  // no region holds it
}

// Three close means and a far one, three colours wanted: radius 15 gives two
// modes, and so does every smaller radius down to 2; the radius stops at 1.
TEST_F(MeanShiftTest, UnreachableCountShrinksTheRadiusToOne) {
  e.AddRegion(1, 10, 10, 10, 0, 0);
  e.AddRegion(1, 10.5f, 10, 10, 1, 0);
  e.AddRegion(1, 11, 10, 10, 2, 0);
  e.AddRegion(1, 200, 200, 200, 3, 0);
  EXPECT_EQ(Run(3), (std::vector<DWORD>{RGB(200, 200, 200), RGB(10, 10, 10)}));
  EXPECT_EQ(e.m_nColorRadius, 1);
  EXPECT_EQ(Pixel(2, 0), RGB(10, 10, 10));  // the mode (10.5, 10, 10)
}

// An equilateral triangle of side just over 100: up to radius 100 every
// mean is its own mode; at 101 all three fall into one. The search for two
// modes overshoots to one and does not shrink again.
TEST_F(MeanShiftTest, GrowingTheRadiusCanOvershoot) {
  e.AddRegion(1, 0, 0, 0, 0, 0);
  e.AddRegion(1, 100, 0, 0, 1, 0);
  e.AddRegion(1, 50, 86.61f, 0, 2, 0);
  EXPECT_EQ(Run(2), (std::vector<DWORD>{RGB(50, 28, 0)}));
  EXPECT_EQ(e.m_nColorRadius, 101);
  EXPECT_EQ(Pixel(0, 0), RGB(50, 28, 0));
}

// P1 and P2 lie just outside the sphere of P0 but inside each other's; their
// mode M = (113.685, 100, 100) ends up 13.7 from P0's mode.
class NearModes : public MeanShiftTest {
 protected:
  void SetUp() override {
    MeanShiftTest::SetUp();
    e.AddRegion(2, 100, 100, 100, 0, 0);
    e.AddRegion(2, 113.685f, 106.38f, 100, 0, 1);
    e.AddRegion(2, 113.685f, 93.62f, 100, 0, 2);
  }
};

TEST_F(NearModes, KeptWhenThereAreNoMoreRegionsThanWanted) {
  EXPECT_EQ(Run(5), (std::vector<DWORD>{RGB(113, 100, 100), RGB(100, 100, 100)}));
  EXPECT_EQ(e.m_nColorRadius, 15);
}

TEST_F(NearModes, DroppedFromTheListButStillPainted) {
  EXPECT_EQ(Run(2), (std::vector<DWORD>{RGB(100, 100, 100)}));
  EXPECT_EQ(e.m_nColorRadius, 15);
  EXPECT_EQ(Pixel(0, 0), RGB(100, 100, 100));
  EXPECT_EQ(Pixel(1, 1), RGB(113, 100, 100));
  EXPECT_EQ(Pixel(0, 2), RGB(113, 100, 100));
}

TEST_F(NearModes, WantedCountBelowOneActsAsOne) {
  EXPECT_EQ(Run(0).size(), 1u);
  EXPECT_EQ(e.m_nColorRadius, 16);  // P1 and P2, 15.1 from P0, join it at 16
  EXPECT_EQ(Pixel(0, 2), Pixel(0, 0));
}

// The weights pull the mode: a region of 1000 pixels next to one of 1.
TEST_F(MeanShiftTest, ModesAreWeightedByRegionSize) {
  e.AddRegion(1, 0, 0, 0, 0, 0);
  CRegion* big = e.AddRegion(1, 10, 0, 0, 1, 0);
  big->m_nSize = 1000;
  EXPECT_EQ(Run(1), (std::vector<DWORD>{RGB(9, 0, 0)}));  // 10000 / 1001
}

TEST_F(MeanShiftTest, WithoutRegionsNothingChanges) {
  e.m_arrColorList.Add(7);
  CDWordArray list;
  e.MeanShift(3, &list);
  EXPECT_EQ(e.m_arrColorList.GetSize(), 1);
  e.m_nColorRadius = 40;
  SegEngine none;
  none.m_arrColorList.Add(7);
  none.MeanShift(3, &list);
  EXPECT_EQ(none.m_arrColorList.GetSize(), 1);
}

}  // namespace
