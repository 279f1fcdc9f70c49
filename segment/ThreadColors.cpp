// Hue/chroma/value points, the nearest thread colour in its four modes, the
// lists of nearest thread colours, and the copies handed to the host.
#include <cmath>
#include <vector>

#include "Pictrace.h"
#include "core/ColorDistance.h"

namespace {

int ClampByte(int c) { return c < 0 ? 0 : c > 255 ? 255 : c; }

// Rounds half away from zero.
int RoundHalfAway(double v) {
  if (v > 0.0) return static_cast<int>(v + 0.5);
  return -static_cast<int>(0.5 - v);
}

void FillNearestList(CPictrace& engine, const CDWordArray& source, CDWordArray& target, int nMode,
                     int nThreadCount) {
  target.RemoveAll();
  // Not enough thread colours to use each once: fall back to the even mode.
  if ((nMode & 1) && source.GetSize() > nThreadCount) nMode -= 1;
  std::vector<int> used;
  if ((nMode & 1) && nThreadCount > 0) used.assign(static_cast<size_t>(nThreadCount), 0);
  for (INT_PTR i = 0; i < source.GetSize(); i++) {
    DWORD color = source[i];
    engine.GetNearestThreadColor(color, nMode, used.empty() ? nullptr : used.data());
    target.Add(color);
  }
}

void CopyForHost(const CDWordArray& source, short* pnCount, DWORD** ppColors) {
  if (!pnCount || !ppColors) return;
  INT_PTR n = source.GetSize();
  *pnCount = static_cast<short>(n);
  *ppColors = new DWORD[static_cast<size_t>(n)];
  for (INT_PTR i = 0; i < n; i++) (*ppColors)[i] = source[i];
}

}  // namespace

// The hue of a colour whose maximum is blue alone is fixed at 240 whatever
// red and green are; a red maximum gives a hue that may be negative.
// Channels are bytes; a host's value outside 0..255 is clamped first.
void CPictrace::ConvRGB2HSV(int r, int g, int b, int& x, int& y, int& v) {
  r = ClampByte(r);
  g = ClampByte(g);
  b = ClampByte(b);
  int max = r, min = r;
  if (g > max) max = g;
  if (b > max) max = b;
  if (g < min) min = g;
  if (b < min) min = b;
  int delta = max - min;
  int hue;
  if (delta < 1)
    hue = 0;
  else if (r == max)
    hue = (g - b) * 60 / delta;
  else if (g == max)
    hue = (b - r) * 60 / delta + 120;
  else
    hue = 240;
  double a = hue * 3.1415926535 / 180;
  x = RoundHalfAway(delta * std::cos(a));
  y = RoundHalfAway(delta * std::sin(a));
  v = max;
}

void CPictrace::GetNearestThreadColor(DWORD& color, int nMode, int* pUsed) {
  if (!m_pThreadColors || m_nThreadColorCount <= 0) return;
  const bool once = (nMode & 1) && pUsed;
  int best = 0;
  int bestDist = 10000000;
  if (nMode == 0 || nMode == 1) {
    int cx, cy, cv;
    ConvRGB2HSV(GetRValue(color), GetGValue(color), GetBValue(color), cx, cy, cv);
    for (int i = 0; i < m_nThreadColorCount; i++) {
      if (nMode == 1 && once && pUsed[i]) continue;
      DWORD t = m_pThreadColors[i];
      int tx, ty, tv;
      ConvRGB2HSV(GetRValue(t), GetGValue(t), GetBValue(t), tx, ty, tv);
      int d = (cx - tx) * (cx - tx) + (cy - ty) * (cy - ty) + (cv - tv) * (cv - tv);
      if (d < bestDist) {
        bestDist = d;
        best = i;
      }
    }
  } else {
    for (int i = 0; i < m_nThreadColorCount; i++) {
      if (nMode == 3 && once && pUsed[i]) continue;
      DWORD t = m_pThreadColors[i];
      int d = pictrace::SquaredDistance(color, t);
      if (d < bestDist) {
        bestDist = d;
        best = i;
      }
    }
  }
  color = m_pThreadColors[best];
  if (once) pUsed[best] = 1;
}

void CPictrace::SetNearestThreadColorList(int nMode) {
  FillNearestList(*this, m_arrColorList, m_arrNearestColors, nMode, m_nThreadColorCount);
}

void CPictrace::SetNearestThreadLineColorList(int nMode) {
  FillNearestList(*this, m_arrLineColors, m_arrNearestLineColors, nMode, m_nThreadColorCount);
}

namespace {

// The thread colour made for a list colour: the nearest list's entry at the
// colour's first place in the list. False when the colour is not listed or
// no nearest list was made for it yet.
bool LookUpNearest(const CDWordArray& list, const CDWordArray& nearest, DWORD& color) {
  for (INT_PTR i = 0; i < list.GetSize(); i++) {
    if (list[i] != color) continue;
    if (i >= nearest.GetSize()) return false;
    color = nearest[i];
    return true;
  }
  return false;
}

}  // namespace

void CPictrace::GetNearestThreadColorFromList(DWORD& color) {
  if (!LookUpNearest(m_arrColorList, m_arrNearestColors, color))
    GetNearestThreadColor(color, m_nThreadColorMode, nullptr);
}

void CPictrace::GetNearestThreadLineColorFromList(DWORD& color) {
  if (!LookUpNearest(m_arrLineColors, m_arrNearestLineColors, color))
    GetNearestThreadColor(color, m_nThreadColorMode, nullptr);
}

void CPictrace::GetColorList(short* pnCount, DWORD** ppColors, unsigned char nType) {
  if (nType == 2)
    CopyForHost(m_arrStoredColorList, pnCount, ppColors);
  else if (nType == 1)
    CopyForHost(m_arrNearestColors, pnCount, ppColors);
  else
    CopyForHost(m_arrColorList, pnCount, ppColors);
}

void CPictrace::GetLineColorList(short* pnCount, DWORD** ppColors, int nType) {
  CopyForHost(nType ? m_arrNearestLineColors : m_arrLineColors, pnCount, ppColors);
}
