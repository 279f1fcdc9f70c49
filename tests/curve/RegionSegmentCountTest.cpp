// Segments per region: the curve fit of a region's raw outline against the
// straight output of the same outline (collinear points dropped, then the
// chord-tolerance reduction of the outline stage), on a synthetic disc and
// on flat-colour regions of examples/flag_kr.png. The counts are printed for
// comparison; the test checks the tolerance and that curves need fewer
// segments than straight lines.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/TestImages.h"
#include "curve/CurveTestSupport.h"

using namespace curvetest;

namespace {

struct P {
  int x, y;
};

// Straight output of a closed raw chain (first point repeated at the end):
// drop repeated and collinear points, then walk the chord-tolerance
// reduction; returns the number of lines.
int StraightLineCount(const std::vector<int>& chain, double tol) {
  std::vector<P> in;
  for (size_t i = 0; i + 1 < chain.size(); i += 2) in.push_back({chain[i], chain[i + 1]});
  if (in.size() < 3) return static_cast<int>(in.size()) - 1;
  P last = in.back();
  std::vector<P> dedup;
  for (size_t i = 0; i + 1 < in.size(); i++)
    if (dedup.empty() || dedup.back().x != in[i].x || dedup.back().y != in[i].y) dedup.push_back(in[i]);
  std::vector<P> kept = {dedup[0]};
  for (size_t i = 1; i < dedup.size(); i++) {
    P prev = kept.back(), cur = dedup[i], next = i + 1 < dedup.size() ? dedup[i + 1] : dedup[0];
    long cross = static_cast<long>(prev.x - cur.x) * (next.y - cur.y) - static_cast<long>(prev.y - cur.y) * (next.x - cur.x);
    long dot = static_cast<long>(cur.x - prev.x) * (next.x - cur.x) + static_cast<long>(cur.y - prev.y) * (next.y - cur.y);
    if (!(cross == 0 && dot > 0)) kept.push_back(cur);
  }
  kept.push_back(last);
  const int n = static_cast<int>(kept.size());
  int out = 1, a = 0, j = 2;
  for (; j < n; j++) {
    long cx = kept[j].x - kept[a].x, cy = kept[j].y - kept[a].y;
    if (cx == 0 && cy == 0) break;
    bool ok = true;
    double len = std::sqrt(static_cast<double>(cx * cx + cy * cy));
    for (int m = a + 1; m < j && ok; m++) {
      long mx = kept[m].x - kept[a].x, my = kept[m].y - kept[a].y;
      ok = std::fabs(static_cast<double>(mx * cy - my * cx)) / len < tol;
    }
    if (!ok) {
      out++;
      a = j - 1;
    }
  }
  return out;  // lines: the points out, plus the final point, less one
}

struct Counts {
  int points, straight, curves;
};

Counts Measure(const std::string& name, const std::vector<int>& chain) {
  std::vector<Seg> segs = Fit(chain, 0, 1.0);
  Counts c{static_cast<int>(chain.size() / 2), StraightLineCount(chain, 1.0), static_cast<int>(segs.size())};
  std::printf("[ region   ] %-22s raw points %5d  straight lines %4d  curve segments %3d\n", name.c_str(),
              c.points, c.straight, c.curves);
  EXPECT_LE(MaxChainDistance(segs, chain), 1.0 + 1e-9) << name;
  return c;
}

// Colours of the flag, and the nearest of them for each pixel.
const COLORREF kFlagColours[4] = {RGB(255, 255, 255), RGB(0, 0, 0), RGB(205, 46, 58), RGB(0, 71, 160)};

int NearestFlagColour(COLORREF c) {
  int best = 0;
  long bestD = -1;
  for (int k = 0; k < 4; k++) {
    long dr = GetRValue(c) - GetRValue(kFlagColours[k]), dg = GetGValue(c) - GetGValue(kFlagColours[k]),
         db = GetBValue(c) - GetBValue(kFlagColours[k]);
    long d = dr * dr + dg * dg + db * db;
    if (bestD < 0 || d < bestD) {
      bestD = d;
      best = k;
    }
  }
  return best;
}

}  // namespace

TEST(RegionSegmentCount, DiscOfRadius50) {
  Counts c = Measure("disc r=50", DiscOutline(50.0, 60));
  EXPECT_LE(c.curves, 4);
  EXPECT_LT(c.curves * 4, c.straight);
}

TEST(RegionSegmentCount, FlatRegionsOfTheKoreanFlag) {
  std::string path = testimg::ExamplePath("flag_kr.png");
  if (!testimg::FileExists(path)) GTEST_SKIP() << "no " << path;
  std::vector<unsigned char> dib = testimg::LoadDib(path);
  ASSERT_GE(dib.size(), 40u);
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), 40);
  const int w = h.biWidth, ht = h.biHeight;
  const unsigned char* bits = dib.data() + 40;
  // Class of each pixel in top-down order (row ht - 1 - y of the DIB).
  std::vector<int> cls(static_cast<size_t>(w) * ht);
  for (int y = 0; y < ht; y++)
    for (int x = 0; x < w; x++) cls[static_cast<size_t>(y) * w + x] = NearestFlagColour(testimg::PixelAt(bits, w, x, ht - 1 - y));
  // Each region: the 4-connected component of one colour class around a
  // seed pixel, found by flood fill; its outer outline is traced.
  auto component = [&](int sx, int sy, int& pixels) {
    std::vector<char> in(cls.size(), 0);
    int c = cls[static_cast<size_t>(sy) * w + sx];
    std::vector<P> stack = {{sx, sy}};
    in[static_cast<size_t>(sy) * w + sx] = 1;
    pixels = 0;
    while (!stack.empty()) {
      P p = stack.back();
      stack.pop_back();
      pixels++;
      const P next[4] = {{p.x - 1, p.y}, {p.x, p.y - 1}, {p.x, p.y + 1}, {p.x + 1, p.y}};
      for (P q : next) {
        if (q.x < 0 || q.y < 0 || q.x >= w || q.y >= ht) continue;
        size_t i = static_cast<size_t>(q.y) * w + q.x;
        if (in[i] || cls[i] != c) continue;
        in[i] = 1;
        stack.push_back(q);
      }
    }
    return in;
  };
  auto outline = [&](const std::vector<char>& in) {
    return TraceOutline(w, ht, [&](int x, int y) { return in[static_cast<size_t>(y) * w + x] != 0; });
  };
  int totalStraight = 0, totalCurves = 0, pixels = 0;
  auto add = [&](const std::string& name, const std::vector<int>& chain) {
    Counts c = Measure(name, chain);
    totalStraight += c.straight;
    totalCurves += c.curves;
  };
  // The red and the blue half of the centre circle.
  const int cx = w / 2, cy = ht / 2;
  ASSERT_EQ(cls[static_cast<size_t>(cy - ht / 10) * w + cx - ht / 12], 2);
  ASSERT_EQ(cls[static_cast<size_t>(cy + ht / 10) * w + cx + ht / 12], 3);
  add("flag red half", outline(component(cx - ht / 12, cy - ht / 10, pixels)));
  add("flag blue half", outline(component(cx + ht / 12, cy + ht / 10, pixels)));
  // The bars of the trigrams: every black component of some size.
  std::vector<char> seen(cls.size(), 0);
  int bars = 0;
  for (int y = 0; y < ht; y++)
    for (int x = 0; x < w; x++) {
      size_t i = static_cast<size_t>(y) * w + x;
      if (cls[i] != 1 || seen[i]) continue;
      std::vector<char> in = component(x, y, pixels);
      for (size_t j = 0; j < in.size(); j++) seen[j] |= in[j];
      if (pixels >= 200) add("flag black bar " + std::to_string(++bars), outline(in));
    }
  EXPECT_GT(bars, 0);
  std::printf("[ region   ] flag total: straight lines %d, curve segments %d\n", totalStraight, totalCurves);
  EXPECT_LT(totalCurves, totalStraight);
}
