// The pyramid segmentation where it has nothing to merge, or nothing to
// work on; the bundled pictures are held by the results lock.
#include <gtest/gtest.h>

#include "SegEngine.h"

namespace {

TEST(PyramidAlgo, PicturesWithNothingToMerge) {
  SegEngine none;
  none.PyramidAlgo();
  EXPECT_EQ(none.m_pRegionHead, nullptr);
  EXPECT_EQ(none.m_pBlockRegions, nullptr);

  auto grey = testimg::MakeDib24(9, 7, [](int x, int) { return RGB(x * 20, x * 20, x * 20); });
  SegEngine g;
  g.Load(grey);
  g.PyramidAlgo();
  EXPECT_EQ(g.m_listWorkBuffers.size(), 1u);  // one plane

  // Saved regions of a picture of another size are not painted into this one.
  auto big = testimg::MakeDib24(20, 20, [](int x, int) { return x < 10 ? RGB(0, 0, 0) : RGB(200, 200, 200); });
  auto plain = testimg::MakeDib24(5, 4, [](int, int) { return RGB(12, 34, 56); });
  SegEngine e;
  e.Load(big);
  e.PyramidAlgo();
  ASSERT_NE(e.m_pBlockRegions, nullptr);
  e.Load(plain);
  e.PyramidAlgo();
  EXPECT_EQ(e.m_listWorkBuffers.size(), 3u);
  ASSERT_EQ(e.RegionCount(), 1);
  EXPECT_EQ(e.m_pRegionHead->m_nSize, 20u);
  EXPECT_EQ(e.m_pRegionHead->m_pNeighbors, nullptr);
  for (int y = 0; y < 4; y++)
    for (int x = 0; x < 5; x++) EXPECT_EQ(e.Pixel(x, y), RGB(12, 34, 56));
}

}  // namespace
