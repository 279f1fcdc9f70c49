// The noise reduction on a real photograph with deterministic added noise:
// neighbouring pixels in flat areas come closer, strong edges stay, and the
// pyramid segmentation finds fewer regions afterwards.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "common/TestImages.h"
#include "denoise/DenoiseEngine.h"
#include "segment/RegionGraph.h"

namespace {

const double kLambda = 3000.0;

// Adds roughly Gaussian noise (sum of three uniforms, standard deviation
// about 10) from a fixed linear congruential sequence, clamped to bytes.
std::vector<unsigned char> AddNoise(const std::vector<unsigned char>& dib) {
  std::vector<unsigned char> out = dib;
  uint32_t state = 12345u;
  auto uniform = [&state]() {
    state = state * 1664525u + 1013904223u;
    return static_cast<int>(state >> 16) % 21 - 10;  // -10 .. 10
  };
  for (size_t i = 40; i < out.size(); i++) {
    int v = out[i] + uniform() + uniform() + uniform();
    out[i] = static_cast<unsigned char>(v < 0 ? 0 : (v > 255 ? 255 : v));
  }
  return out;
}

// Largest channel difference between two pixels of 24-bit rows.
int MaxDiff(const unsigned char* a, const unsigned char* b) {
  int m = 0;
  for (int c = 0; c < 3; c++) m = std::max(m, std::abs(a[c] - b[c]));
  return m;
}

// Mean absolute channel difference between horizontal neighbours of
// `bits`, over the pairs that `select` picks from the clean picture.
struct PairStats {
  double flat = 0;
  double edge = 0;
  long flatPairs = 0;
  long edgePairs = 0;
};

PairStats Measure(const unsigned char* clean, const unsigned char* bits, int width, int height,
                  int stride) {
  PairStats s;
  double flatSum = 0, edgeSum = 0;
  for (int y = 1; y < height - 1; y++)
    for (int x = 1; x < width - 2; x++) {
      const unsigned char* p = clean + y * stride + 3 * x;
      int d = MaxDiff(p, p + 3);
      // Flat: the clean pixel and its right neighbour differ little from
      // every 4-neighbour. Edge: a large step between the two.
      bool flat = d <= 2 && MaxDiff(p, p - 3) <= 2 && MaxDiff(p + 3, p + 6) <= 2 &&
                  MaxDiff(p, p - stride) <= 2 && MaxDiff(p, p + stride) <= 2;
      bool edge = d >= 80;
      if (!flat && !edge) continue;
      const unsigned char* q = bits + y * stride + 3 * x;
      double m = (std::abs(q[0] - q[3]) + std::abs(q[1] - q[4]) + std::abs(q[2] - q[5])) / 3.0;
      if (flat) { flatSum += m; s.flatPairs++; }
      if (edge) { edgeSum += m; s.edgePairs++; }
    }
  s.flat = s.flatPairs ? flatSum / s.flatPairs : 0;
  s.edge = s.edgePairs ? edgeSum / s.edgePairs : 0;
  return s;
}

int CountRegions(const CPictrace& e) {
  int n = 0;
  for (CRegion* r = e.m_pRegionHead; r; r = r->m_pNext) n++;
  return n;
}

}  // namespace

class NoisyPhoto : public ::testing::Test {
 protected:
  void SetUp() override {
    clean = testimg::LoadDib(testimg::ExamplePath("astronaut.png"));
    ASSERT_FALSE(clean.empty());
    noisy = AddNoise(clean);
  }
  std::vector<unsigned char> clean, noisy;
};

TEST_F(NoisyPhoto, FlatAreasCalmDownWhileEdgesStay) {
  DenoiseEngine e;
  ASSERT_EQ(e.SetDIBData(noisy.data()), 1);
  DenoiseEngine ref;
  ASSERT_EQ(ref.SetDIBData(clean.data()), 1);
  const int w = e.Width(), h = e.Height(), stride = e.Stride();

  PairStats before = Measure(ref.m_pDIBBits, e.m_pWorkBits, w, h, stride);
  e.NoiseReduction(kLambda);
  PairStats after = Measure(ref.m_pDIBBits, e.m_pWorkBits, w, h, stride);

  std::printf("flat pairs %ld: %.2f -> %.2f; edge pairs %ld: %.2f -> %.2f\n", before.flatPairs,
              before.flat, after.flat, before.edgePairs, before.edge, after.edge);
  ASSERT_GT(before.flatPairs, 1000);
  ASSERT_GT(before.edgePairs, 100);
  EXPECT_LT(after.flat, 0.5 * before.flat);
  EXPECT_GT(after.edge, 0.75 * before.edge);
}

TEST_F(NoisyPhoto, SegmentationFindsFewerRegions) {
  // The block stage alone stops near a fixed region count whatever the
  // noise; a sensitivity of 50 lets the pyramid stage merge on by colour.
  DenoiseEngine raw;
  ASSERT_EQ(raw.SetDIBData(noisy.data()), 1);
  raw.SetSegmentationSensitivity(50);
  raw.PyramidAlgo();
  int nRaw = CountRegions(raw);

  DenoiseEngine smoothed;
  ASSERT_EQ(smoothed.SetDIBData(noisy.data()), 1);
  smoothed.SetSegmentationSensitivity(50);
  smoothed.NoiseReduction(kLambda);
  smoothed.PyramidAlgo();
  int nSmoothed = CountRegions(smoothed);

  std::printf("regions: %d without, %d with noise reduction\n", nRaw, nSmoothed);
  EXPECT_GT(nSmoothed, 0);
  EXPECT_LT(nSmoothed, nRaw);
}
