// The outer outlines and holes of all regions, filled with the alternate rule, cover every pixel exactly once.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "common/EvenOddCover.h"
#include "outline/OutlineKit.h"

namespace {

// Per pixel, how many of the regions cover its centre, each filled with its holes.
std::vector<int> Coverage(const std::list<COutlineRegion*>& regions, int w, int h) {
  std::vector<int> cover(static_cast<size_t>(w) * h, 0);
  for (const COutlineRegion* r : regions) {
    std::vector<testimg::Edge> edges;
    auto add = [&](const sPoint* p, int n) {
      for (int k = 0; k < n; k++) edges.push_back({1.0 * p[k].x, 1.0 * p[k].y, 1.0 * p[(k + 1) % n].x, 1.0 * p[(k + 1) % n].y});
    };
    for (INT_PTR k = -1; k < r->m_arrHoles.GetSize(); k++)
      k < 0 ? add(r->m_pPoints, r->m_nPoints) : add(r->m_arrHoles[k]->m_pPoints, r->m_arrHoles[k]->m_nPoints);
    testimg::PaintEvenOdd(edges, w, h, testimg::OnCrossing::kRightAndOn, [&](int x, int y) { cover[y * w + x]++; });
  }
  return cover;
}

// Traces and returns the uncovered plus the doubly covered pixels. With `own` (at tolerance 0, where outlines
// run on the pixel cracks, and without a clean-up that repaints after the last component search) each region
// must also cover only pixels of its own colour.
int TraceAndCountFaults(OutlineEngine& e, double tolerance, bool own = false) {
  EXPECT_EQ(e.GetOutline4Cartoon2(tolerance, nullptr), 1);
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  int faults = 0;
  for (int c : Coverage(e.m_listOutlineRegions, w, h)) faults += c == 0 ? 1 : c - 1;
  for (COutlineRegion* r : own ? e.m_listOutlineRegions : std::list<COutlineRegion*>()) {
    std::vector<int> mine = Coverage({r}, w, h);
    for (int k = 0; k < w * h; k++) faults += mine[k] && e.WorkPixel(k % w, k / w) != r->m_crColor;
  }
  return faults;
}

TEST(Tiling, NestedRingsCornerContactsTheFrameAndRandomPictures) {
  OutlineEngine e;
  e.Load(40, 30, [](int x, int y) {
    int d = std::min(std::min(x - 2, 31 - x), std::min(y - 5, 28 - y));
    return TextColor(y < 3 ? 'b' : x >= 34 ? ((y / 5) % 2 ? 'y' : 'g') : d >= 0 && x < 32 ? ((d / 3) % 2 ? 'r' : '#')
                     : (x < 2 && y < 16) || (x >= 2 && x < 4 && y >= 29) ? 'M' : '.');
  });
  for (double t : {0.0, 0.5}) EXPECT_EQ(TraceAndCountFaults(e, t, t == 0.0), 0) << t;
  EXPECT_GT(e.m_listOutlineRegions.size(), 8u);
  for (int seed = 0; seed <= 40; seed++) {
    Rng rng(seed ? seed : 7);  // seed 0: no sprinkled pixels, so no repainting clean-up
    int w = 20 + rng.Below(40), h = 15 + rng.Below(30);
    std::vector<COLORREF> px = RandomBlocks(rng, w, h, 2 + rng.Below(5), 1 + rng.Below(4), 1 + rng.Below(4), seed ? rng.Below(20) : 0);
    e.Load(w, h, [&](int x, int y) { return px[y * w + x]; });
    for (double t : {0.0, 0.5}) EXPECT_EQ(TraceAndCountFaults(e, t, seed == 0 && t == 0.0), 0) << seed << " " << t;
  }
  Rng rng(3);  // one-pixel rows and columns: no crossing repair, frame everywhere
  for (int k = 0; k < 16; k++) {
    e.Load(1 + k % 4, 1 + k / 4, [&](int, int) { return TextColor(".#"[rng.Below(2)]); });
    EXPECT_EQ(TraceAndCountFaults(e, 0.0, true), 0) << k;
  }
}

// The bundled pictures snapped to the corners of the colour cube. Pieces along the frame have no twin, so from
// a tolerance of about 0.7 a chord may cut a picture corner or cross a piece simplified on its own: those
// counts are printed, the tiling asserted up to 0.5.
TEST(Tiling, ExamplePictures) {
  for (const char* name : {"monkey_face.png", "flag_kr.png", "astronaut.png", "mug.png"}) {
    std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath(name));
    OutlineEngine e;
    if (dib.empty() || !e.SetDIBData(dib.data())) continue;
    size_t bytes = static_cast<size_t>((e.m_bmiHeader.biWidth * 3 + 3) / 4 * 4) * e.m_bmiHeader.biHeight;
    for (size_t k = 0; k < bytes; k++) e.m_pWorkBits[k] = e.m_pWorkBits[k] >= 128 ? 255 : 0;
    std::vector<unsigned char> snapped(e.m_pWorkBits, e.m_pWorkBits + bytes);
    for (double t : {0.0, 0.5, 1.0, 2.0}) {
      std::copy(snapped.begin(), snapped.end(), e.m_pWorkBits);
      int faults = TraceAndCountFaults(e, t);
      std::printf("[ tiling ] %-16s tolerance %.1f: %d faulty pixels\n", name, t, faults);
      EXPECT_TRUE(t > 0.5 || faults == 0) << name << " " << t;
    }
  }
}

}  // namespace
