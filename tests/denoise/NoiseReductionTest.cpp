// The noise reduction: its linear system against hand-built rows and its
// solver, small pictures with known results and bad input, and a real
// photograph with deterministic added noise.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "common/TestImages.h"
#include "segment/MumfordSystem.h"
#include "segment/SegEngine.h"
#include "segment/SparseSolve.h"

using namespace pictrace;

namespace {

// Rows of the 3 x 2 system for weights q[k] = s (k + 1), by hand: one entry
// per in-picture neighbour, in column order, minus the neighbour's weight,
// and the diagonal 0.1 plus the neighbours' weights. Not symmetric. A
// refill keeps the columns. The solver then solves [4 1; 2 3] x = [1; 2].
TEST(MumfordSystem, HandBuiltRowsAndSolve) {
  const std::vector<std::pair<int, double>> rows[] = {
      {{0, 2 + 3}, {1, -2}, {2, -3}},          {{0, -1}, {1, 1 + 4}, {3, -4}},
      {{0, -1}, {2, 1 + 4 + 5}, {3, -4}, {4, -5}}, {{1, -2}, {2, -3}, {3, 2 + 3 + 6}, {5, -6}},
      {{2, -3}, {4, 3 + 6}, {5, -6}},          {{3, -4}, {4, -5}, {5, 4 + 5}}};
  int lengths[6];
  MumfordRowLengths(3, 2, lengths);
  SparseRowMatrix a;
  ASSERT_TRUE(a.SetStructure(6, lengths));
  for (double s : {1.0, 2.0}) {
    double q[6];
    for (int k = 0; k < 6; k++) q[k] = s * (k + 1);
    MumfordFillMatrix(a, q, 3, 2, s == 1.0);
    for (int r = 0; r < 6; r++) {
      ASSERT_EQ(a.RowLength(r), static_cast<int>(rows[r].size())) << r;
      for (int k = 0; k < a.RowLength(r); k++) {
        const auto& want = rows[r][size_t(k)];
        EXPECT_EQ(a.EntryColumn(r, k), want.first) << r << " " << k;
        EXPECT_DOUBLE_EQ(a.EntryValue(r, k), (want.first == r ? 0.1 : 0.0) + s * want.second) << r << " " << k;
      }
    }
  }
  int two[] = {2, 2};
  ASSERT_TRUE(a.SetStructure(2, two));
  for (int r = 0; r < 4; r++) a.SetEntry(r / 2, r % 2, r % 2, (r == 0 ? 4 : r == 3 ? 3 : r));
  double b[] = {1.0, 2.0}, x[] = {0.0, 0.0}, start[] = {7.0, -3.0};
  EXPECT_TRUE(SolveBiCGSTAB(a, x, b, 200, 1e-12).converged);
  EXPECT_TRUE(std::abs(x[0] - 0.1) < 1e-10 && std::abs(x[1] - 0.6) < 1e-10) << x[0] << " " << x[1];
  EXPECT_FALSE(SolveBiCGSTAB(a, start, b, 0, 1e-6).converged);  // no step allowed: start unchanged
  EXPECT_TRUE(start[0] == 7.0 && start[1] == -3.0);
}

struct Denoise : ::testing::Test {
  void Load(int w, int h, COLORREF (*colour)(int, int)) {  // the input is read, not the working picture
    e.Load(testimg::MakeDib24(w, h, colour));
    std::memset(e.m_pWorkBits, 0, e.m_bmiHeader.biSizeImage);
  }
  SegEngine e;
};

TEST_F(Denoise, FlatPicturesStayAndPlanesAreWrittenClamped) {
  for (int size : {1, 7}) {  // the second one grey: solved as one plane written to all three bytes
    const COLORREF c = size == 1 ? RGB(200, 37, 10) : RGB(90, 90, 90);
    Load(size + 2, size, size == 1 ? +[](int, int) { return RGB(200, 37, 10); } : +[](int, int) { return RGB(90, 90, 90); });
    e.NoiseReduction(500.0);
    EXPECT_EQ(e.m_listWorkBuffers.size(), size == 1 ? 3u : 1u);
    for (int k = 0; k < size * (size + 2); k++) ASSERT_EQ(e.Pixel(k % (size + 2), k / (size + 2)), c) << k;
  }
  Load(3, 3, [](int, int) { return RGB(1, 2, 3); });  // flat planes reach the write-back as they are
  std::vector<double> blue(9, 300.0), green(9, -40.0), red(9, 127.9);
  double* planes[] = {blue.data(), green.data(), red.data()};
  EXPECT_EQ(e.FiniteDifferenceLasMumfordU(planes, 3, 100.0), 1);
  EXPECT_EQ(e.FiniteDifferenceLasMumfordU(nullptr, 0, 1.0), 0);
  EXPECT_TRUE(e.Pixel(2, 2) == RGB(127, 0, 255) && e.Pixel(0, 0) == RGB(127, 0, 255));
  EXPECT_EQ(blue[8], 300.0);  // the planes are the data term and stay
}

TEST_F(Denoise, PlanesAreColumnMajor) {
  Load(2, 3, [](int x, int y) { return RGB(100 + 10 * x + y, 50, 0); });
  e.m_listWorkBuffers.push_back(new double[4]);  // replaced
  e.GetValues();
  ASSERT_EQ(e.m_listWorkBuffers.size(), 3u);
  const double* red = e.m_listWorkBuffers.back();
  EXPECT_EQ(std::vector<double>(red, red + 6), (std::vector<double>{100, 101, 102, 110, 111, 112}));
  EXPECT_EQ(e.m_listWorkBuffers.front()[5], 0.0);
}

using ProgressRecorder = testimg::ProgressLog;

TEST_F(Denoise, BadInputLeavesTheEngineAlone) {
  SegEngine empty;
  empty.NoiseReduction(100.0);
  EXPECT_TRUE(empty.m_listWorkBuffers.empty());
  Load(4, 4, [](int x, int y) { return RGB(x * 50, y * 50, 7); });
  double* kept = new double[1];
  e.m_listWorkBuffers.push_back(kept);
  for (double lambda : {-1.0, std::numeric_limits<double>::quiet_NaN()}) e.NoiseReduction(lambda);
  EXPECT_TRUE(e.m_listWorkBuffers.size() == 1u && e.m_listWorkBuffers.front() == kept);
  for (int k = 0; k < 16; k++) EXPECT_EQ(e.Pixel(k % 4, k / 4), RGB(0, 0, 0)) << k;
}

// The astronaut with roughly Gaussian noise (three uniforms of -10..10 from
// a fixed sequence): in every plane, neighbours in flat areas of the clean
// picture (all four neighbours within 2) come closer, pairs across steps of
// 80 or more stay apart. The input stays, and progress goes by in five
// steps (job kind 1 totals 80 units, the stage 25 percent).
TEST(NoisyPhoto, FlatAreasCalmDownWhileEdgesStay) {
  std::vector<unsigned char> clean = testimg::LoadDib(testimg::ExamplePath("astronaut.png")), noisy = clean;
  ASSERT_FALSE(clean.empty());
  uint32_t state = 12345u;
  auto uniform = [&state]() { return static_cast<int>((state = state * 1664525u + 1013904223u) >> 16) % 21 - 10; };
  for (size_t i = 40; i < noisy.size(); i++)
    noisy[i] = static_cast<unsigned char>(std::min(255, std::max(0, noisy[i] + uniform() + uniform() + uniform())));
  SegEngine e;
  e.Load(noisy);
  const int w = e.Width(), h = e.Height(), stride = w * 3;  // 512 wide: no padding
  auto diff = [](const unsigned char* a, const unsigned char* b) {
    return std::max({std::abs(a[0] - b[0]), std::abs(a[1] - b[1]), std::abs(a[2] - b[2])});
  };
  auto measure = [&](double out[6]) {  // mean difference per plane over flat pairs, then over edge pairs
    double sum[6] = {};
    long count[2] = {0, 0};
    for (int y = 1; y < h - 1; y++)
      for (int x = 1; x < w - 2; x++) {
        const unsigned char *p = clean.data() + 40 + y * stride + 3 * x, *q = e.m_pWorkBits + y * stride + 3 * x;
        const int d = diff(p, p + 3), edge = d >= 80;
        if (!edge && (d > 2 || std::max({diff(p, p - 3), diff(p + 3, p + 6), diff(p, p - stride), diff(p, p + stride)}) > 2))
          continue;
        for (int c = 0; c < 3; c++) sum[3 * edge + c] += std::abs(q[c] - q[c + 3]);
        count[edge]++;
      }
    ASSERT_TRUE(count[0] > 1000 && count[1] > 100);
    for (int i = 0; i < 6; i++) out[i] = sum[i] / count[i / 3];
  };
  double before[6], after[6];
  measure(before);
  ProgressRecorder wnd;
  e.m_pProgressWnd = &wnd;
  e.BeginProgress(1);
  e.NoiseReduction(3000.0);
  e.m_pProgressWnd = nullptr;
  EXPECT_EQ(wnd.positions, (std::vector<int>{0, 5, 10, 15, 20, 25}));
  EXPECT_EQ(std::memcmp(e.m_pDIB, noisy.data(), noisy.size()), 0) << "input changed";
  measure(after);
  for (int c = 0; c < 3; c++) {
    std::printf("plane %d: flat pairs %.2f -> %.2f, edge pairs %.2f -> %.2f\n", c, before[c], after[c], before[3 + c], after[3 + c]);
    EXPECT_LT(after[c], 0.5 * before[c]) << c;
    EXPECT_GT(after[3 + c], 0.75 * before[3 + c]) << c;
  }
}

}  // namespace
