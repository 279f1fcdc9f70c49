// The block stage's scale schedule with its extension rule and size limit,
// and the progress the two stages report.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "SegEngine.h"
#include "segment/BlockScale.h"

namespace {

TEST(BlockSizeLimit, TwoToTheScaleTimesSixteen) {
  EXPECT_EQ(BlockSizeLimitAt(1.0), 32u);
  EXPECT_EQ(BlockSizeLimitAt(1.2), 36u);  // 36.76 truncated
  EXPECT_EQ(BlockSizeLimitAt(28.0), 4294967296u);  // its low 32 bits are 0
  EXPECT_EQ(static_cast<DWORD>(BlockSizeLimitAt(28.0)), 0u);
  EXPECT_GT(BlockSizeLimitAt(59.9), 1ull << 63);  // still fits
  EXPECT_EQ(BlockSizeLimitAt(60.0), 0u);  // 2^64 does not fit
  EXPECT_EQ(BlockSizeLimitAt(400.0), 0u);
}

TEST(BlockStage, FewRegionsEndAtTheFirstScale) {
  auto dib = testimg::MakeDib24(30, 20, [](int x, int y) { return (x / 10 + y / 10) % 2 ? RGB(250, 0, 0) : RGB(0, 0, 250); });
  SegEngine e;
  e.Load(dib);
  ASSERT_EQ(e.GetBlockRegions(), 1);
  EXPECT_EQ(s_nBlockScale, 5);
  EXPECT_EQ(e.RegionCount(), 6);
  EXPECT_NE(e.m_pBlockRegions, nullptr);
}

// A 40 x 40 black and white checkerboard: 1600 one-pixel seeds, every
// border a strong edge (weak count 0). A link is negative once
// d * 50 exp(-1/60) exceeds 1*1*3*255^2 / 2, that is d > 1983.5, s > 20.84:
// the first merges come at s = 21.0. Until then the stage extends itself
// every time s comes within 0.6 of the scale with more than 1000 regions;
// the last extension, at s = 20.6, sets the scale to 22.
TEST(BlockStage, ManyRegionsExtendTheStage) {
  auto dib = testimg::MakeDib24(40, 40, [](int x, int y) { return (x + y) % 2 ? RGB(255, 255, 255) : RGB(0, 0, 0); });
  SegEngine e;
  e.Load(dib);
  ASSERT_EQ(e.GetBlockRegions(), 1);
  EXPECT_EQ(s_nBlockScale, 22);
  EXPECT_LE(e.RegionCount(), 1000);
}

class ProgressRecorder : public CWnd {
 public:
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM) override {
    if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
    return 0;
  }
  std::vector<int> positions;
};

// A job of kind 1 has 80 units; the two stages are worth 25 percent each.
TEST(BlockStage, ReportsProgressForBothStages) {
  auto dib = testimg::MakeDib24(40, 40, [](int x, int y) { return RGB(x * 6, y * 6, (x * y) % 256); });
  SegEngine e;
  e.Load(dib);
  ProgressRecorder wnd;
  e.m_pProgressWnd = &wnd;
  e.BeginProgress(1);
  e.SetSegmentationSensitivity(40);  // threshold 60: the pyramid loop runs
  e.PyramidAlgo();
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 50.0f);
  ASSERT_GE(wnd.positions.size(), 2u);
  EXPECT_EQ(wnd.positions.back(), 50);
  for (size_t i = 1; i < wnd.positions.size(); i++) EXPECT_GE(wnd.positions[i], wnd.positions[i - 1] + 5);
  EXPECT_NE(std::find(wnd.positions.begin(), wnd.positions.end(), 25), wnd.positions.end());
  e.m_pProgressWnd = nullptr;
}

}  // namespace
