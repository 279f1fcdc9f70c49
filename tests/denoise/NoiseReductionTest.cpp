// The noise reduction as the host calls it: small pictures whose result is
// known exactly, the write-back rules, progress, and bad input.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "common/TestImages.h"
#include "denoise/DenoiseEngine.h"

namespace {

// Records the progress positions sent to the window.
class ProgressRecorder : public CWnd {
 public:
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    (void)lParam;
    if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
    return 0;
  }
  std::vector<int> positions;
};

}  // namespace

TEST(NoiseReduction, OnePixelPictureIsUnchanged) {
  DenoiseEngine e;
  e.Install(testimg::MakeDib24(1, 1, [](int, int) { return RGB(200, 37, 10); }));
  e.ClearWork();
  e.NoiseReduction(10.0);
  EXPECT_EQ(e.m_listWorkBuffers.size(), 3u);
  EXPECT_EQ(testimg::PixelAt(e.m_pWorkBits, 1, 0, 0), RGB(200, 37, 10));
}

TEST(NoiseReduction, FlatPictureStaysFlat) {
  DenoiseEngine e;
  e.Install(testimg::MakeDib24(9, 7, [](int, int) { return RGB(120, 40, 201); }));
  e.ClearWork();
  e.NoiseReduction(500.0);
  for (int row = 0; row < 7; row++)
    for (int x = 0; x < 9; x++)
      ASSERT_EQ(testimg::PixelAt(e.m_pWorkBits, 9, x, row), RGB(120, 40, 201)) << x << "," << row;
}

TEST(NoiseReduction, ValuesPastTheByteRangeAreClamped) {
  // Flat planes stay flat through the solve, so their values reach the
  // write-back as they are: blue 300, green -40, red 127.9.
  DenoiseEngine e;
  e.Install(testimg::MakeDib24(3, 3, [](int, int) { return RGB(1, 2, 3); }));
  std::vector<double> blue(9, 300.0), green(9, -40.0), red(9, 127.9);
  double* planes[] = {blue.data(), green.data(), red.data()};
  EXPECT_EQ(e.FiniteDifferenceLasMumfordU(planes, 3, 100.0), 1);
  for (int row = 0; row < 3; row++)
    for (int x = 0; x < 3; x++) {
      EXPECT_EQ(e.WorkByte(x, row, 0), 255);
      EXPECT_EQ(e.WorkByte(x, row, 1), 0);
      EXPECT_EQ(e.WorkByte(x, row, 2), 127);
    }
  // The planes are the data term and are left as they were.
  EXPECT_EQ(blue[4], 300.0);
}

TEST(NoiseReduction, GreyPictureIsSolvedAsOnePlane) {
  // A grey step: one plane of samples, the result grey in all three bytes.
  DenoiseEngine e;
  e.Install(testimg::MakeDib24(12, 6, [](int x, int row) {
    int g = (x < 6 ? 40 : 210) + ((x * 7 + row * 3) % 5);
    return RGB(g, g, g);
  }));
  e.ClearWork();
  e.NoiseReduction(1000.0);
  EXPECT_EQ(e.m_listWorkBuffers.size(), 1u);
  for (int row = 0; row < 6; row++)
    for (int x = 0; x < 12; x++) {
      EXPECT_EQ(e.WorkByte(x, row, 0), e.WorkByte(x, row, 1));
      EXPECT_EQ(e.WorkByte(x, row, 0), e.WorkByte(x, row, 2));
      EXPECT_NE(e.WorkByte(x, row, 0), 0);
    }
}

TEST(NoiseReduction, SamplePlanesAreColumnMajorFromTheInputImage) {
  // 2 x 3 colour picture; plane c holds byte c at index x * 3 + row.
  DenoiseEngine e;
  e.Install(testimg::MakeDib24(2, 3, [](int x, int row) { return RGB(100 + 10 * x + row, 50, 0); }));
  e.GetValues();
  ASSERT_EQ(e.m_listWorkBuffers.size(), 3u);
  auto it = e.m_listWorkBuffers.begin();
  const double* blue = *it++;
  const double* green = *it++;
  const double* red = *it;
  EXPECT_EQ(blue[0], 0.0);
  EXPECT_EQ(green[5], 50.0);
  const double expectRed[] = {100, 101, 102, 110, 111, 112};
  for (int k = 0; k < 6; k++) EXPECT_EQ(red[k], expectRed[k]) << k;
}

TEST(NoiseReduction, SmoothsTheWorkingImageOnlyAndUnloadsResults) {
  DenoiseEngine e;
  auto dib = testimg::MakeDib24(16, 16, [](int x, int row) {
    int n = ((x * 37 + row * 91) % 23) - 11;  // fixed pseudo-noise
    int base = x < 8 ? 60 : 190;
    return RGB(base + n, base - n, base);
  });
  e.Install(dib);
  e.m_listWorkBuffers.push_back(new double[4]);
  e.NoiseReduction(2000.0);
  EXPECT_EQ(std::memcmp(e.m_pDIB, dib.data(), dib.size()), 0) << "input image changed";
  EXPECT_NE(std::memcmp(e.m_pWorkBits, dib.data() + 40, dib.size() - 40), 0);
  EXPECT_EQ(e.m_listWorkBuffers.size(), 3u);  // the old buffer is gone, the planes remain
}

TEST(NoiseReduction, ReportsOneStageOfProgress) {
  // Job kind 1 totals 80 units, so the stage is 25 percent in five steps of 5.
  DenoiseEngine e;
  ProgressRecorder wnd;
  e.m_pProgressWnd = &wnd;
  e.Install(testimg::MakeDib24(5, 5, [](int x, int) { return RGB(10 * x, 0, 0); }));
  e.BeginProgress(1);
  e.NoiseReduction(100.0);
  EXPECT_EQ(wnd.positions, (std::vector<int>{0, 5, 10, 15, 20, 25}));
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 25.0f);

  // Kind 0 totals 100 units: steps of 4 percent, of which 5-percent
  // filtering lets 8 and 16 through.
  ProgressRecorder wnd2;
  e.m_pProgressWnd = &wnd2;
  e.BeginProgress(0);
  e.NoiseReduction(100.0);
  EXPECT_EQ(wnd2.positions, (std::vector<int>{0, 8, 16}));
  EXPECT_FLOAT_EQ(e.m_fProgressPos, 20.0f);
}

TEST(NoiseReduction, BadInputLeavesTheEngineAlone) {
  DenoiseEngine empty;
  empty.NoiseReduction(100.0);  // no image: nothing happens
  EXPECT_TRUE(empty.m_listWorkBuffers.empty());

  DenoiseEngine e;
  auto dib = testimg::MakeDib24(4, 4, [](int x, int row) { return RGB(x * 50, row * 50, 7); });
  e.Install(dib);
  e.ClearWork();
  double* kept = new double[1];
  e.m_listWorkBuffers.push_back(kept);
  e.NoiseReduction(-1.0);
  e.NoiseReduction(std::numeric_limits<double>::quiet_NaN());
  ASSERT_EQ(e.m_listWorkBuffers.size(), 1u);
  EXPECT_EQ(e.m_listWorkBuffers.front(), kept);
  for (int row = 0; row < 4; row++)
    for (int x = 0; x < 4; x++) EXPECT_EQ(testimg::PixelAt(e.m_pWorkBits, 4, x, row), RGB(0, 0, 0));

  // No planes, or no working image: the solve refuses.
  EXPECT_EQ(e.FiniteDifferenceLasMumfordU(nullptr, 0, 1.0), 0);
}
