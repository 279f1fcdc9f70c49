// Shared pieces of the outline tests: an engine that opens the stage's
// protected members, pictures drawn as text or as random blocks, hand-made
// pieces, and the pixels that regions cover when filled with the alternate rule.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <list>
#include <vector>

#include "Pictrace.h"
#include "common/EvenOddCover.h"
#include "common/TestImages.h"
#include "outline/OutlineRecords.h"

using V = std::vector<sPoint>;

inline sPoint Pt(int x, int y) { return sPoint{static_cast<short>(x), static_cast<short>(y)}; }
inline V Chain(const sPoint* p, int n) { return V(p, p + n); }

// '.' white, '#' black, r g b y, anything else a colour of its own.
inline COLORREF TextColor(char c) {
  switch (c) {
    case '.': return RGB(255, 255, 255);
    case '#': return RGB(0, 0, 0);
    case 'r': return RGB(255, 0, 0);
    case 'g': return RGB(0, 255, 0);
    case 'b': return RGB(0, 0, 255);
    case 'y': return RGB(255, 255, 0);
    default: return RGB(static_cast<BYTE>(c), 128, 64);
  }
}

class OutlineEngine : public CPictrace {
 public:
  using CPictrace::BeCross13;
  using CPictrace::BeCross24;
  using CPictrace::contour_order;
  using CPictrace::DeflateComponent;
  using CPictrace::find_next_step;
  using CPictrace::FindAnotherOutline;
  using CPictrace::GetCompList;
  using CPictrace::GetOutline4Cartoon2;
  using CPictrace::GetOutlineList;
  using CPictrace::IsPointInOutline;
  using CPictrace::RemoveExtraPoint;
  using CPictrace::RemoveSmallRegions;
  using CPictrace::SetOutlineColorIndex;
  using CPictrace::SmoothOutline;
  using CPictrace::SmoothOutlineVector;
  using CPictrace::SortRegionSeq;

  // Pixel (x, row) gets colour fn(x, row).
  void Load(int width, int height, const std::function<COLORREF(int, int)>& fn) {
    std::vector<unsigned char> dib = testimg::MakeDib24(width, height, fn);
    SetDIBData(dib.data());
  }
  void LoadText(const std::vector<const char*>& rows) {
    Load(static_cast<int>(std::strlen(rows[0])), static_cast<int>(rows.size()),
         [&](int x, int row) { return TextColor(rows[row][x]); });
  }
  COLORREF WorkPixel(int x, int row) const {
    return testimg::PixelAt(m_pWorkBits, m_bmiHeader.biWidth, x, row);
  }
};

// A list of owned pointers that frees its elements when it goes.
template <class T>
struct Owned : std::list<T*> {
  using std::list<T*>::list;
  ~Owned() {
    for (T* p : *this) delete p;
  }
};

// A small deterministic generator, independent of the standard library's
// distributions.
struct Rng {
  std::uint64_t s;
  explicit Rng(std::uint64_t seed) : s(seed * 2654435761u + 1) {}
  int Below(int n) {
    s ^= s << 13;
    s ^= s >> 7;
    s ^= s << 17;
    return static_cast<int>(static_cast<std::uint32_t>(s >> 11) % static_cast<std::uint32_t>(n));
  }
};

// Random blocks of bw x bh pixels in `colors` colours plus `sprinkle` single
// pixels, so that corners touch and small regions occur.
inline std::vector<COLORREF> RandomBlocks(Rng& rng, int w, int h, int colors, int bw, int bh,
                                          int sprinkle) {
  static const COLORREF palette[8] = {RGB(255, 255, 255), RGB(0, 0, 0),   RGB(255, 0, 0),
                                      RGB(0, 160, 0),     RGB(0, 0, 255), RGB(255, 255, 0),
                                      RGB(0, 255, 255),   RGB(128, 0, 128)};
  int cols = (w + bw - 1) / bw;
  std::vector<int> blocks(static_cast<size_t>(cols) * ((h + bh - 1) / bh));
  for (int& b : blocks) b = rng.Below(colors);
  std::vector<COLORREF> px(static_cast<size_t>(w) * h);
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) px[y * w + x] = palette[blocks[(y / bh) * cols + x / bw]];
  for (int k = 0; k < sprinkle; k++) px[rng.Below(w * h)] = palette[rng.Below(colors)];
  return px;
}

// A hand-made piece over pts; its raw points are pts moved down by rawDy.
inline COutlineVector* Piece(int region, int neighbor, V pts, int rawDy = 0) {
  COutlineVector* v = new COutlineVector;
  v->m_nRegion = region;
  v->m_nNeighbor = neighbor;
  v->m_nPoints = v->m_nRawPoints = static_cast<int>(pts.size());
  v->m_pPoints = new sPoint[pts.size()];
  v->m_pRawPoints = new sPoint[pts.size()];
  for (size_t k = 0; k < pts.size(); k++) {
    v->m_pPoints[k] = pts[k];
    v->m_pRawPoints[k] = Pt(pts[k].x, pts[k].y + rawDy);
  }
  v->m_ptStart = pts.front();
  v->m_ptEnd = pts.back();
  return v;
}

// Per pixel, how many regions cover its centre when each region's outer
// outline and holes are filled together with the alternate rule.
inline std::vector<int> RegionCoverage(const std::list<COutlineRegion*>& regions, int w, int h) {
  std::vector<int> cover(static_cast<size_t>(w) * h, 0);
  for (const COutlineRegion* r : regions) {
    std::vector<testimg::Edge> edges;
    auto add = [&](const sPoint* p, int n) {
      for (int k = 0; k < n; k++)
        edges.push_back({1.0 * p[k].x, 1.0 * p[k].y, 1.0 * p[(k + 1) % n].x, 1.0 * p[(k + 1) % n].y});
    };
    add(r->m_pPoints, r->m_nPoints);
    for (INT_PTR k = 0; k < r->m_arrHoles.GetSize(); k++)
      add(r->m_arrHoles[k]->m_pPoints, r->m_arrHoles[k]->m_nPoints);
    testimg::PaintEvenOdd(edges, w, h, testimg::OnCrossing::kRightAndOn,
                          [&](int x, int y) { cover[static_cast<size_t>(y) * w + x]++; });
  }
  return cover;
}
