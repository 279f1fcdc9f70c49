// The block stage's size limit and extension worked by hand, and pictures
// with nothing to merge. The rest of the region graph (edge map, seeds, merge
// values, merges, repacking, saved regions) is held bit for bit by the lock.
#include <gtest/gtest.h>

#include "SegEngine.h"
#include "segment/BlockScale.h"

namespace {

// The size limit is 2^s * 16, 0 once it does not fit. A 40 x 40 black and
// white checkerboard has 1600 one-pixel seeds without weak edges; a link
// turns negative once d * 50 exp(-1/60) exceeds 3 * 255^2 / 2, at s = 21.0.
// Until then the stage extends itself whenever s comes within 0.6 of the
// scale with more than 1000 regions; the last time, at s = 20.6, to 22.
TEST(BlockStage, SizeLimitAndExtension) {
  const std::pair<double, std::uint64_t> limits[] = {{1.0, 32}, {1.2, 36}, {28.0, 1ull << 32}, {60.0, 0}, {400.0, 0}};
  for (const auto& l : limits) EXPECT_EQ(BlockSizeLimitAt(l.first), l.second) << l.first;
  EXPECT_GT(BlockSizeLimitAt(59.9), 1ull << 63);  // still fits
  SegEngine e;
  e.Load(testimg::MakeDib24(40, 40, [](int x, int y) { return (x + y) % 2 ? RGB(255, 255, 255) : RGB(0, 0, 0); }));
  ASSERT_EQ(e.GetBlockRegions(), 1);
  EXPECT_EQ(s_nBlockScale, 22);
  EXPECT_LE(e.RegionCount(), 1000);
}

// No picture; a grey picture (one plane); a plain picture after one of
// another size, whose saved regions must not be painted into it.
TEST(PyramidAlgo, PicturesWithNothingToMerge) {
  SegEngine e;
  e.PyramidAlgo();
  EXPECT_TRUE(!e.m_pRegionHead && !e.m_pBlockRegions);
  e.Load(testimg::MakeDib24(9, 7, [](int x, int) { return RGB(x * 20, x * 20, x * 20); }));
  e.PyramidAlgo();
  EXPECT_EQ(e.m_listWorkBuffers.size(), 1u);
  e.Load(testimg::MakeDib24(20, 20, [](int x, int) { return x < 10 ? RGB(0, 0, 0) : RGB(200, 200, 200); }));
  e.PyramidAlgo();
  ASSERT_NE(e.m_pBlockRegions, nullptr);
  e.Load(testimg::MakeDib24(5, 4, [](int, int) { return RGB(12, 34, 56); }));
  e.PyramidAlgo();
  EXPECT_EQ(e.m_listWorkBuffers.size(), 3u);
  ASSERT_EQ(e.RegionCount(), 1);
  EXPECT_TRUE(e.m_pRegionHead->m_nSize == 20u && !e.m_pRegionHead->m_pNeighbors);
  for (int k = 0; k < 20; k++) EXPECT_EQ(e.Pixel(k % 5, k / 5), RGB(12, 34, 56)) << k;
}

}  // namespace
