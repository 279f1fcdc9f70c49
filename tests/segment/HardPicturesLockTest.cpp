// Lock on small versions of the pictures that made the block stage slow
// (one-pixel checkerboards, noise, dithered photographs), recorded before
// the merge was indexed for them: block scale, region count, saved block
// regions with every link value and weak count, final regions, picture.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "SegEngine.h"
#include "cli/ImageResample.h"
#include "segment/BlockScale.h"

namespace {

using Lock = std::array<std::uint64_t, 5>;

Lock Measure(const std::vector<unsigned char>& dib) {
  SegEngine e;
  e.Load(dib);
  e.SetImageRealRect(0, 0, e.Width(), e.Height());
  e.PyramidAlgo();
  Fnv saved, regions, picture;
  for (const CRegionSnapshot* s = e.m_pBlockRegions; s; s = s->m_pNext) {
    saved.Add(s->m_nSize).Add(s->m_fDecrease).Add(s->m_fRed).Add(s->m_fGreen).Add(s->m_fBlue).Add(s->m_pPixels[0]);
    for (const CSnapshotLink* l = s->m_pLinks; l; l = l->m_pNext)
      saved.Add(l->m_pTarget->m_pPixels[0]).Add(l->m_pTarget->m_pPixels[1]).Add(l->m_fDecrease).Add(l->m_nWeakEdges);
  }
  for (const CRegion* r = e.m_pRegionHead; r; r = r->m_pNext)
    for (const RegionPixel* p = r->m_pPixelHead; p; p = p->m_pNext) regions.Add(p->x).Add(p->y);
  for (unsigned char c : e.WorkPixels()) picture.Add(c);
  return {std::uint64_t(s_nBlockScale), std::uint64_t(e.RegionCount()), saved.h, regions.h, picture.h};
}
std::vector<unsigned char> Checkerboard(int w, int h) {
  return testimg::MakeDib24(w, h, [](int x, int row) { return (x + row) % 2 ? RGB(255, 255, 255) : RGB(0, 0, 0); });
}
// Two colours in a one-pixel checkerboard, each drifting across the picture.
std::vector<unsigned char> DriftingCheckerboard(int w, int h) {
  return testimg::MakeDib24(w, h,
                            [](int x, int r) { return (x + r) % 2 ? RGB(255, 2 * x, 255 - r) : RGB(3 * r, 0, x); });
}
std::vector<unsigned char> Noise(int w, int h) {
  std::uint32_t state = 14;
  return testimg::MakeDib24(w, h, [&](int, int) {
    state = state * 1664525u + 1013904223u;
    return static_cast<COLORREF>(state >> 8);
  });
}
// A picture box-resampled to about `pixels`, its luma dithered to black and
// white with Floyd-Steinberg weights.
std::vector<unsigned char> Dithered(const std::string& path, double pixels) {
  std::vector<unsigned char> src = pictrace::BoxResampleToPixels(testimg::LoadDib(path), pixels);
  const auto* hdr = reinterpret_cast<const BITMAPINFOHEADER*>(src.data());
  const int w = hdr->biWidth, h = hdr->biHeight;
  std::vector<double> luma(static_cast<size_t>(w) * h);
  for (int row = 0; row < h; row++)
    for (int x = 0; x < w; x++) {
      COLORREF c = testimg::PixelAt(src.data() + hdr->biSize, w, x, row);
      luma[static_cast<size_t>(row) * w + x] = 0.299 * GetRValue(c) + 0.587 * GetGValue(c) + 0.114 * GetBValue(c);
    }
  auto spread = [&](int x, int row, double e) {
    if (x >= 0 && x < w && row < h) luma[static_cast<size_t>(row) * w + x] += e;
  };
  return testimg::MakeDib24(w, h, [&](int x, int row) {  // called row by row, x ascending
    double v = luma[static_cast<size_t>(row) * w + x], q = v >= 128 ? 255 : 0;
    for (int k = 0; k < 4; k++) spread(x + (k ? k - 2 : 1), row + (k ? 1 : 0), (v - q) * "\7\3\5\1"[k] / 16);
    return q ? RGB(255, 255, 255) : RGB(0, 0, 0);
  });
}

struct Case {
  const char* name;
  std::vector<unsigned char> (*make)();
  Lock want;
};
const Case kCases[] = {
    {"checker64", [] { return Checkerboard(64, 64); },
     {22, 1, 0x24733109ca88e2d4ull, 0xfa0aef51488c9cd5ull, 0x2c37f79435939325ull}},
    {"checker96x70", [] { return Checkerboard(96, 70); },
     {22, 1, 0x3db51f099061925ull, 0xfa5de990ae429935ull, 0x637f02aae8980c65ull}},
    {"drifting80", [] { return DriftingCheckerboard(80, 80); },
     {15, 265, 0x8c01d0ad76b175baull, 0x9b4dbd4222265655ull, 0x85b1db5652fb5443ull}},
    {"noise64", [] { return Noise(64, 64); },
     {12, 870, 0xd1419d62ed6f8c06ull, 0x5a2ca99f9b0df985ull, 0x1c5313333f04ff0eull}},
    {"dither_astronaut200", [] { return Dithered(testimg::ExamplePath("astronaut.png"), 200 * 200); },
     {29, 928, 0x4e37382d0a66ff11ull, 0xd2e615452b320245ull, 0xcdcf7235f34c09cdull}},
    {"dither_monkey", [] { return Dithered(testimg::ExamplePath("monkey_face.png"), 240 * 210); },
     {28, 334, 0x8efaf8d0b72e1d7eull, 0x107da6e803a5e7e5ull, 0x697401d2edefa71ull}},
};
class HardPicturesLock : public ::testing::TestWithParam<Case> {};

TEST_P(HardPicturesLock, SameResultsAsRecorded) {
  const Case& c = GetParam();
  Lock got = Measure(c.make());
  EXPECT_EQ(got, c.want) << std::hex << got[0] << " " << got[1] << " " << got[2] << " " << got[3] << " " << got[4];
}

INSTANTIATE_TEST_SUITE_P(Pictures, HardPicturesLock, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

// The block scale is kept per thread: two engines segmenting different
// pictures at once, each on its own thread, give what each gives alone.
TEST(BlockScale, TwoThreadsAtOnceAsEachAlone) {
  const std::vector<unsigned char> pictures[2] = {Dithered(testimg::ExamplePath("astronaut.png"), 200 * 200),
                                                  DriftingCheckerboard(150, 150)};
  const Lock alone[2] = {Measure(pictures[0]), Measure(pictures[1])};
  ASSERT_NE(alone[0][0], alone[1][0]);  // the two end at different scales
  Lock together[2][3];
  auto run = [&](int k) {
    for (Lock& l : together[k]) l = Measure(pictures[k]);
  };
  std::thread first(run, 0), second(run, 1);
  first.join(), second.join();
  for (int k = 0; k < 2; k++)
    for (const Lock& l : together[k]) EXPECT_EQ(l, alone[k]) << "picture " << k;
}

// A segmentation past its time limit stops before merging, saves nothing
// and leaves no outlines; without a limit the same engine runs through.
TEST(TimeLimit, StopsAndSavesNothingThenRunsWithoutIt) {
  SegEngine e;
  e.Load(Checkerboard(40, 30));
  e.SetTimeLimit(1e-9);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  EXPECT_TRUE(e.IsStopped() && !e.HasOutlines() && !e.m_pBlockRegions);
  EXPECT_EQ(e.GetSeedRegionCount(), 40 * 30);
  e.SetTimeLimit(0);
  e.DoSegmentation(8, nullptr, 1.0, 0, nullptr);
  EXPECT_TRUE(!e.IsStopped() && e.HasOutlines() && e.m_pBlockRegions);
}

}  // namespace
