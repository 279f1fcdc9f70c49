// The edge map with its transposed indexing, and the seed regions with
// their links.
#include <gtest/gtest.h>

#include <vector>

#include "SegEngine.h"
#include "segment/EdgeMap.h"

namespace {

TEST(EdgeMap, WalksTheTransposedIndexOfNonSquarePictures) {
  // W = 3, H = 2: only sample 5 = (x 2, y 1) differs. The walk k = a*H + b
  // takes k +- 2 and k +- 1 as neighbours, so 3 and 4 see it, not 2 and 4.
  std::vector<double> plane = {0, 0, 0, 0, 0, 20};
  std::vector<double> edge(6, 0.0);
  AccumulateEdgeMap(plane.data(), 3, 2, edge.data());
  EXPECT_DOUBLE_EQ(edge[0], 0.0);
  EXPECT_DOUBLE_EQ(edge[1], 0.0);
  EXPECT_DOUBLE_EQ(edge[2], 0.0);
  EXPECT_DOUBLE_EQ(edge[3], 0.5);  // g = 400
  EXPECT_DOUBLE_EQ(edge[4], 0.5);
  EXPECT_DOUBLE_EQ(edge[5], 800.0 / 1200.0);
}

TEST(EdgeMap, OnePixelWidePictureHasNoSideTerms) {
  std::vector<double> plane = {0, 20, 0};
  std::vector<double> edge(3, 0.0);
  AccumulateEdgeMap(plane.data(), 1, 3, edge.data());
  EXPECT_DOUBLE_EQ(edge[0], 0.5);
  EXPECT_DOUBLE_EQ(edge[1], 800.0 / 1200.0);
  EXPECT_DOUBLE_EQ(edge[2], 0.5);
}

TEST(EdgeMap, KeepsTheStrongestPlane) {
  std::vector<double> edge(3, 0.0);
  std::vector<double> a = {0, 20, 0}, b = {0, 0, 40};
  AccumulateEdgeMap(a.data(), 1, 3, edge.data());
  AccumulateEdgeMap(b.data(), 1, 3, edge.data());
  EXPECT_DOUBLE_EQ(edge[0], 0.5);                       // a wins
  EXPECT_DOUBLE_EQ(edge[1], 1600.0 / 2000.0);           // b wins
  EXPECT_DOUBLE_EQ(edge[2], 1600.0 / 2000.0);
}

// A row of six pixels (red channel 0 1 0 0 3 4) with strong edges at 1..3.
// Pixel 1 and 2 are 1 from their seeds but on a strong edge: they do not
// join; pixel 3 is on a strong edge at distance 0 and joins; pixel 4 is 9
// from the seed (below 10) and joins; pixel 5 is 1 from pixel 4 but 16 from
// the seed and starts its own region.
TEST(SetupGraph, StrongEdgePixelsJoinOnlyAtDistanceZero) {
  const int red[6] = {0, 1, 0, 0, 3, 4};
  auto dib = testimg::MakeDib24(6, 1, [&](int x, int) { return RGB(red[x], 0, 0); });
  SegEngine e;
  e.Load(dib);
  std::vector<double> edge = {0.0, 0.999, 0.999, 0.999, 0.995, 0.0};
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
  ASSERT_EQ(e.RegionCount(), 4);
  CRegion* r0 = e.m_pRegionHead;
  CRegion* r1 = r0->m_pNext;
  CRegion* r2 = r1->m_pNext;
  CRegion* r3 = r2->m_pNext;
  EXPECT_EQ(r0->m_nSize, 1u);
  EXPECT_EQ(r1->m_nSize, 1u);
  EXPECT_EQ(r2->m_nSize, 3u);
  EXPECT_EQ(r3->m_nSize, 1u);
  EXPECT_FLOAT_EQ(r2->m_fRed, 1.0f);
  EXPECT_EQ(r2->m_pPixelHead->x, 2);
  EXPECT_EQ(r2->m_pPixelTail->x, 4);

  // Weak edges count by the edge value of the neighbouring pixel: contacts
  // with pixel 1 (strong) add nothing.
  ASSERT_EQ(LinkCount(r0), 1);
  EXPECT_EQ(LinkTo(r0, r1)->m_nWeakEdges, 0u);
  ASSERT_EQ(LinkCount(r1), 2);
  EXPECT_EQ(r1->m_pNeighbors->m_pRegion, r0);
  EXPECT_EQ(LinkTo(r1, r0)->m_nWeakEdges, 1u);
  EXPECT_EQ(LinkTo(r1, r2)->m_nWeakEdges, 0u);
  ASSERT_EQ(LinkCount(r2), 2);
  EXPECT_EQ(r2->m_pNeighbors->m_pRegion, r1);
  EXPECT_EQ(LinkTo(r2, r1)->m_nWeakEdges, 0u);
  EXPECT_EQ(LinkTo(r2, r3)->m_nWeakEdges, 1u);
  EXPECT_EQ(LinkTo(r3, r2)->m_nWeakEdges, 1u);  // 0.995 is not strong
}

TEST(SetupGraph, JoinLimitIsStrictlyBelowTen) {
  // (r 3, g 1) is at distance 10 from black; (r 3) at 9.
  auto dib = testimg::MakeDib24(3, 1, [](int x, int) { return x == 1 ? RGB(3, 0, 0) : x == 2 ? RGB(3, 1, 0) : RGB(0, 0, 0); });
  SegEngine e;
  e.Load(dib);
  std::vector<double> edge(3, 0.0);
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
  ASSERT_EQ(e.RegionCount(), 2);
  EXPECT_EQ(e.m_pRegionHead->m_nSize, 2u);
}

// W = 3, H = 2, all black except (1, 0) with red 1. Its edge value sits at
// index x*H + y = 2; read as y*W + x it would be 0 and the pixel would join.
TEST(SetupGraph, ReadsTheEdgeOfPixelXYAtXTimesHeightPlusY) {
  auto dib = testimg::MakeDib24(3, 2, [](int x, int y) { return x == 1 && y == 0 ? RGB(1, 0, 0) : RGB(0, 0, 0); });
  SegEngine e;
  e.Load(dib);
  std::vector<double> edge = {0, 0, 0.999, 0, 0, 0};
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
  ASSERT_EQ(e.RegionCount(), 2);
  EXPECT_EQ(e.m_pRegionHead->m_nSize, 5u);
  EXPECT_EQ(e.m_pRegionHead->m_pNext->m_pPixelHead->x, 1);
}

TEST(SetupGraph, OneLinkPerNeighbourCountsEveryContact) {
  auto dib = testimg::MakeDib24(3, 2, [](int, int y) { return y == 0 ? RGB(0, 0, 0) : RGB(200, 0, 0); });
  SegEngine e;
  e.Load(dib);
  std::vector<double> edge(6, 0.0);
  ASSERT_EQ(e.SetupGraph(e.m_pWorkBits, edge.data()), 1);
  ASSERT_EQ(e.RegionCount(), 2);
  CRegion* a = e.m_pRegionHead;
  ASSERT_EQ(LinkCount(a), 1);
  EXPECT_EQ(a->m_pNeighbors->m_nWeakEdges, 3u);
  EXPECT_EQ(a->m_nSize, 3u);
  EXPECT_FLOAT_EQ(a->m_pNext->m_fRed, 200.0f);
}

TEST(SetupGraph, RefusesWithoutAPicture) {
  SegEngine e;
  double edge = 0;
  unsigned char bits[4] = {};
  EXPECT_EQ(e.SetupGraph(bits, &edge), 0);
  EXPECT_EQ(e.m_pRegionHead, nullptr);
}

}  // namespace
