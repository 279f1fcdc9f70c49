// The outer outlines and holes of all regions, filled with the alternate
// rule, cover every pixel exactly once.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "outline/OutlineKit.h"

namespace {

// Traces and returns the uncovered plus the doubly covered pixels. With
// `own` (at tolerance 0, where every outline runs on the pixel cracks, and
// without a clean-up that repaints after the last component search) each
// region must also cover only pixels of its own colour.
int TraceAndCountFaults(OutlineEngine& e, double tolerance, bool own = false) {
  EXPECT_EQ(e.GetOutline4Cartoon2(tolerance, nullptr), 1);
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  int faults = 0;
  for (int c : RegionCoverage(e.m_listOutlineRegions, w, h)) faults += c == 1 ? 0 : c == 0 ? 1 : c - 1;
  if (own)
    for (COutlineRegion* r : e.m_listOutlineRegions) {
      std::vector<int> own = RegionCoverage({r}, w, h);
      for (int k = 0; k < w * h; k++) faults += own[k] && e.WorkPixel(k % w, k / w) != r->m_crColor;
    }
  return faults;
}

TEST(Tiling, NestedRingsCornerContactsAndTheFrame) {
  OutlineEngine e;
  e.Load(40, 30, [](int x, int y) {
    if (y < 3) return RGB(0, 0, 255);
    if (x >= 34) return (y / 5) % 2 ? RGB(255, 255, 0) : RGB(0, 160, 0);
    int d = std::min(std::min(x - 2, 31 - x), std::min(y - 5, 28 - y));
    if (d >= 0 && x < 32) return (d / 3) % 2 ? RGB(255, 0, 0) : RGB(0, 0, 0);
    if ((x < 2 && y < 16) || (x >= 2 && x < 4 && y >= 29)) return RGB(128, 0, 128);
    return RGB(255, 255, 255);
  });
  for (double t : {0.0, 0.5}) {
    EXPECT_EQ(TraceAndCountFaults(e, t, t == 0.0), 0) << t;
    EXPECT_GT(e.m_listOutlineRegions.size(), 8u);
  }
  Rng rng(7);
  std::vector<COLORREF> px = RandomBlocks(rng, 36, 28, 4, 3, 2, 0);
  e.Load(36, 28, [&](int x, int y) { return px[y * 36 + x]; });
  EXPECT_EQ(TraceAndCountFaults(e, 0.0, true), 0);
}

TEST(Tiling, RandomFlatPicturesAndTinyOnes) {
  for (int seed = 1; seed <= 40; seed++) {
    Rng rng(seed);
    int w = 20 + rng.Below(40), h = 15 + rng.Below(30);
    std::vector<COLORREF> px =
        RandomBlocks(rng, w, h, 2 + rng.Below(5), 1 + rng.Below(4), 1 + rng.Below(4), rng.Below(20));
    OutlineEngine e;
    e.Load(w, h, [&](int x, int y) { return px[y * w + x]; });
    for (double t : {0.0, 0.5}) EXPECT_EQ(TraceAndCountFaults(e, t), 0) << seed << " " << t;
  }
  Rng rng(3);  // one-pixel rows and columns: no crossing repair, frame everywhere
  for (int w = 1; w <= 4; w++)
    for (int h = 1; h <= 4; h++) {
      OutlineEngine e;
      e.Load(w, h, [&](int, int) { return rng.Below(2) ? RGB(0, 0, 0) : RGB(255, 255, 255); });
      EXPECT_EQ(TraceAndCountFaults(e, 0.0), 0) << w << " x " << h;
    }
}

// The bundled pictures snapped to the eight corners of the colour cube.
// Pieces along the frame have no twin, so from a tolerance of about 0.7 a
// chord may cut a picture corner or cross a piece simplified on its own:
// the counts there are printed, the tiling asserted up to 0.5.
TEST(Tiling, ExamplePictures) {
  for (const char* name : {"monkey_face.png", "flag_kr.png", "astronaut.png", "mug.png"}) {
    std::string path = testimg::ExamplePath(name);
    if (!testimg::FileExists(path)) continue;
    std::vector<unsigned char> dib = testimg::LoadDib(path);
    OutlineEngine e;
    ASSERT_EQ(e.SetDIBData(dib.data()), 1);
    size_t bytes = static_cast<size_t>((e.m_bmiHeader.biWidth * 3 + 3) / 4 * 4) * e.m_bmiHeader.biHeight;
    for (size_t k = 0; k < bytes; k++) e.m_pWorkBits[k] = e.m_pWorkBits[k] >= 128 ? 255 : 0;
    std::vector<unsigned char> snapped(e.m_pWorkBits, e.m_pWorkBits + bytes);
    for (double t : {0.0, 0.5, 1.0, 2.0}) {
      std::copy(snapped.begin(), snapped.end(), e.m_pWorkBits);
      int faults = TraceAndCountFaults(e, t);
      std::printf("[ tiling ] %-16s tolerance %.1f: %zu regions, %d faulty pixels\n", name, t,
                  e.m_listOutlineRegions.size(), faults);
      EXPECT_TRUE(t > 0.5 || faults == 0) << name << " " << t;
    }
  }
}

}  // namespace
