// The outer outlines and holes of all regions, filled with the alternate
// rule, cover every pixel exactly once.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "outline/FlatImages.h"
#include "outline/OutlineTestEngine.h"

namespace {

struct Tally {
  int gaps = 0;
  int overlaps = 0;
};

Tally Count(const std::vector<int>& cover) {
  Tally t;
  for (int c : cover) {
    if (c == 0) t.gaps++;
    if (c > 1) t.overlaps += c - 1;
  }
  return t;
}

Tally TraceAndCount(OutlineEngine& e, double tolerance) {
  e.GetOutline4Cartoon2(tolerance, nullptr);
  return Count(RegionCoverage(e.m_listOutlineRegions, e.m_bmiHeader.biWidth, e.m_bmiHeader.biHeight));
}

TEST(Tiling, NestedRegionsTouchingCornersAndTheFrame) {
  OutlineEngine e;
  // Nested squares of alternating colours, two blocks meeting only at a
  // corner, stripes along the frame.
  e.Load(40, 30, [](int x, int y) {
    if (y < 3) return RGB(0, 0, 255);                      // along the top frame
    if (x >= 34) return (y / 5) % 2 ? RGB(255, 255, 0) : RGB(0, 160, 0);  // right frame
    int d = std::min(std::min(x - 2, 31 - x), std::min(y - 5, 28 - y));
    if (d >= 0 && x < 32) return (d / 3) % 2 ? RGB(255, 0, 0) : RGB(0, 0, 0);  // nested rings
    if ((x < 2 && y < 16) || (x >= 2 && x < 4 && y >= 29)) return RGB(128, 0, 128);  // corner contact
    return RGB(255, 255, 255);
  });
  for (double t : {0.0, 0.5}) {
    Tally c = TraceAndCount(e, t);
    EXPECT_EQ(c.gaps, 0) << "tolerance " << t;
    EXPECT_EQ(c.overlaps, 0) << "tolerance " << t;
    EXPECT_GT(e.m_listOutlineRegions.size(), 8u);
  }
}

TEST(Tiling, OneRegionCoversItsOwnPixelsAtToleranceZero) {
  // Without simplification every outline runs on the pixel cracks, so the
  // region covering a pixel is the one whose component holds it.
  OutlineEngine e;
  flat::Rng rng(7);
  std::vector<COLORREF> px = flat::RandomBlocks(rng, 36, 28, 4, 3, 2, 0);
  e.Load(36, 28, [&](int x, int y) { return px[y * 36 + x]; });
  e.GetOutline4Cartoon2(0.0, nullptr);
  std::vector<int> owner(36 * 28, -1);
  int k = 0;
  for (COutlineRegion* r : e.m_listOutlineRegions) {
    std::list<COutlineRegion*> one{r};
    std::vector<int> cover = RegionCoverage(one, 36, 28);
    for (size_t i = 0; i < cover.size(); i++)
      if (cover[i]) owner[i] = k;
    for (int i = 0; i < r->m_pComponent->m_nPoints; i++) {
      const sPoint& p = r->m_pComponent->m_pPoints[i];
      ASSERT_EQ(cover[p.y * 36 + p.x], 1) << "region " << k << " pixel " << p.x << "," << p.y;
    }
    k++;
  }
  for (int o : owner) ASSERT_GE(o, 0);
}

TEST(Tiling, RandomFlatPictures) {
  Tally total;
  for (int seed = 1; seed <= 40; seed++) {
    flat::Rng rng(seed);
    int w = 20 + rng.Below(40), h = 15 + rng.Below(30);
    std::vector<COLORREF> px =
        flat::RandomBlocks(rng, w, h, 2 + rng.Below(5), 1 + rng.Below(4), 1 + rng.Below(4), rng.Below(20));
    OutlineEngine e;
    e.Load(w, h, [&](int x, int y) { return px[y * w + x]; });
    for (double t : {0.0, 0.5}) {
      Tally c = TraceAndCount(e, t);
      EXPECT_EQ(c.gaps, 0) << "seed " << seed << " tolerance " << t;
      EXPECT_EQ(c.overlaps, 0) << "seed " << seed << " tolerance " << t;
      total.gaps += c.gaps;
      total.overlaps += c.overlaps;
    }
  }
  EXPECT_EQ(total.gaps + total.overlaps, 0);
}

TEST(Tiling, TinyPictures) {
  // One-pixel rows and columns: no crossing repair, frame everywhere.
  flat::Rng rng(3);
  for (int w = 1; w <= 4; w++)
    for (int h = 1; h <= 4; h++) {
      OutlineEngine e;
      e.Load(w, h, [&](int, int) { return rng.Below(2) ? RGB(0, 0, 0) : RGB(255, 255, 255); });
      Tally c = TraceAndCount(e, 0.0);
      EXPECT_EQ(c.gaps + c.overlaps, 0) << w << " x " << h;
      EXPECT_FALSE(e.m_listOutlineRegions.empty());
    }
}

// The bundled pictures, snapped to eight flat colours. The counts are
// printed for the record. Pieces along the frame have no twin, so from a
// tolerance of about 0.7 a chord may cut a picture corner (a gap), and pieces
// simplified on their own may cross (an overlap); the tiling is asserted
// where neither can happen.
TEST(Tiling, ExamplePictures) {
  for (const char* name : {"monkey_face.png", "flag_kr.png", "astronaut.png", "mug.png"}) {
    std::string path = testimg::ExamplePath(name);
    if (!testimg::FileExists(path)) continue;
    std::vector<unsigned char> dib = testimg::LoadDib(path);
    ASSERT_FALSE(dib.empty());
    OutlineEngine e;
    ASSERT_EQ(e.SetDIBData(dib.data()), 1);
    int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
    int stride = (w * 3 + 3) / 4 * 4;
    for (int y = 0; y < h; y++)
      for (int x = 0; x < w; x++) {
        unsigned char* p = e.m_pWorkBits + y * stride + 3 * x;
        COLORREF c = flat::SnapToCube(RGB(p[2], p[1], p[0]));
        p[0] = GetBValue(c);
        p[1] = GetGValue(c);
        p[2] = GetRValue(c);
      }
    std::vector<unsigned char> snapped(e.m_pWorkBits, e.m_pWorkBits + static_cast<size_t>(stride) * h);
    for (double t : {0.0, 0.5, 1.0, 2.0}) {
      std::copy(snapped.begin(), snapped.end(), e.m_pWorkBits);
      Tally c = TraceAndCount(e, t);
      std::printf("[ tiling ] %-16s tolerance %.1f: %zu regions, %d gap pixels, %d overlap pixels\n",
                  name, t, e.m_listOutlineRegions.size(), c.gaps, c.overlaps);
      if (t <= 0.5) {
        EXPECT_EQ(c.gaps, 0) << name;
        EXPECT_EQ(c.overlaps, 0) << name;
      }
    }
  }
}

}  // namespace
