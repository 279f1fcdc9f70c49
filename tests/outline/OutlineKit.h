// Shared pieces of the outline tests: an engine that opens the stage's
// protected members, pictures as text or random blocks, hand-made pieces.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <list>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"

using V = std::vector<sPoint>;
inline sPoint Pt(int x, int y) { return sPoint{static_cast<short>(x), static_cast<short>(y)}; }
inline V Chain(const sPoint* p, int n) { return V(p, p + n); }

// Text pictures: '.' white, '#' black, r g b y; other characters a colour each.
inline COLORREF TextColor(char c) {
  static const char keys[] = ".#rgby";
  static const COLORREF colors[] = {0xFFFFFF, 0, RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255), RGB(255, 255, 0)};
  const char* k = std::strchr(keys, c);
  return k && c ? colors[k - keys] : RGB(static_cast<BYTE>(c), 128, 64);
}

struct OutlineEngine : CPictrace {
  using CPictrace::BeCross13;
  using CPictrace::BeCross24;
  using CPictrace::FindAnotherOutline;
  using CPictrace::GetCompList;
  using CPictrace::GetOutline4Cartoon2;
  using CPictrace::RemoveExtraPoint;
  using CPictrace::RemoveSmallRegions;
  using CPictrace::SmoothOutline;
  void Load(int width, int height, const std::function<COLORREF(int, int)>& fn) {
    SetDIBData(testimg::MakeDib24(width, height, fn).data());
  }
  void LoadText(const std::vector<const char*>& rows) {
    Load(static_cast<int>(std::strlen(rows[0])), static_cast<int>(rows.size()),
         [&](int x, int row) { return TextColor(rows[row][x]); });
  }
  COLORREF WorkPixel(int x, int row) const { return testimg::PixelAt(m_pWorkBits, m_bmiHeader.biWidth, x, row); }
};

// A list of owned pointers that frees its elements when it goes.
template <class T>
struct Owned : std::list<T*> {
  using std::list<T*>::list;
  ~Owned() { for (T* p : *this) delete p; }
};

struct Rng {  // a small deterministic generator, independent of the standard library
  std::uint64_t s;
  explicit Rng(std::uint64_t seed) : s(seed * 2654435761u + 1) {}
  int Below(int n) {
    s ^= s << 13, s ^= s >> 7, s ^= s << 17;
    return static_cast<int>(static_cast<std::uint32_t>(s >> 11) % static_cast<std::uint32_t>(n));
  }
};

// Blocks of bw x bh pixels in `colors` colours plus `sprinkle` single
// pixels, so that corners touch and small regions occur.
inline std::vector<COLORREF> RandomBlocks(Rng& rng, int w, int h, int colors, int bw, int bh, int sprinkle) {
  const char* palette = ".#rgbyCM";
  int cols = (w + bw - 1) / bw;
  std::vector<int> blocks(static_cast<size_t>(cols) * ((h + bh - 1) / bh));
  for (int& b : blocks) b = rng.Below(colors);
  std::vector<COLORREF> px(static_cast<size_t>(w) * h);
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) px[y * w + x] = TextColor(palette[blocks[(y / bh) * cols + x / bw]]);
  for (int k = 0; k < sprinkle; k++) px[rng.Below(w * h)] = TextColor(palette[rng.Below(colors)]);
  return px;
}

// A hand-made piece over pts, raw and reduced.
inline COutlineVector* Piece(int region, int neighbor, V pts) {
  COutlineVector* v = new COutlineVector;
  v->m_nRegion = region, v->m_nNeighbor = neighbor;
  v->m_nPoints = v->m_nRawPoints = static_cast<int>(pts.size());
  v->m_pPoints = new sPoint[pts.size()], v->m_pRawPoints = new sPoint[pts.size()];
  for (size_t k = 0; k < pts.size(); k++) v->m_pPoints[k] = v->m_pRawPoints[k] = pts[k];
  v->m_ptStart = pts.front(), v->m_ptEnd = pts.back();
  return v;
}
