// Sequential (Hilditch) thinning of one line colour of the work picture.
// Every pixel the thinning removes takes the colour of the regions around
// it, so the regions grow into the space the line occupied.
#include <vector>

#include "Pictrace.h"
#include "thinline/PixelAccess.h"
#include "thinline/ThinningMask.h"

using namespace pictrace::thinline;

int CPictrace::Cross(int* pNeighbors) {
  if (!pNeighbors) return 0;
  const int* p = pNeighbors;
  int count = 0;
  for (int i = 1; i <= 7; i += 2)
    if (p[i] == 0 && (p[i + 1] == 1 || p[i + 2] == 1)) count++;
  return count;
}

int CPictrace::ThinningAndFat(unsigned char* pDIB, unsigned char* pMask, DWORD lineColor,
                              DWORD fillColor) {
  if (!pDIB || !pMask) return 0;
  const BITMAPINFOHEADER h = ReadHeader(pDIB);
  const int width = h.biWidth;
  const int height = h.biHeight;
  if (width <= 0 || height <= 0 || h.biBitCount != 24) return 0;
  const long stride = Stride24(width);
  unsigned char* pBits = pDIB + 40;
  const int* pHostMask = HostMaskFor(*this, width, height);
  int result = 1;

  // 0 background, 1 still present, p >= 2 removed in pass p (stored as a
  // byte). The pass number lets a pass see what it removed itself as
  // present, which is what makes the thinning sequential.
  std::vector<unsigned char> grid(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      const size_t i = static_cast<size_t>(y) * width + x;
      if (pHostMask && pHostMask[i] == -1) {
        grid[i] = 0;
        pMask[i] = 2;
        result = 0;
      } else {
        grid[i] = (ReadPixel(pBits, stride, x, y) == lineColor && pMask[i] != 0) ? 1 : 0;
      }
    }
  }

  // Offsets of P1..P8 in the grid; row y - 1 is the row stored before y.
  const long w = width;
  const long offset[9] = {0, 1, 1 - w, -w, -1 - w, -1, -1 + w, w, 1 + w};

  // The interior pixels still present, in scan order. A pass only ever
  // looks at these, so the list visits exactly the pixels a full scan would
  // act on, in the same order; it shrinks as the strokes thin.
  std::vector<long> present;
  for (int y = 1; y < height - 1; y++)
    for (int x = 1; x < width - 1; x++)
      if (grid[static_cast<size_t>(y) * width + x] == 1) present.push_back(static_cast<long>(y) * w + x);

  bool changed = true;
  for (int pass = 2; changed; pass++) {
    changed = false;
    for (const long i : present) {
      if (grid[i] != 1) continue;
      const int x = static_cast<int>(i % w);
      const int y = static_cast<int>(i / w);
      int p[10];
      int removedNow = 0;
      for (int k = 1; k <= 8; k++) {
        const int v = grid[i + offset[k]];
        if (v == pass) {
          p[k] = 1;
          removedNow++;
        } else {
          p[k] = (v >= 2) ? 0 : v;
        }
      }
      if (p[1] + p[3] + p[5] + p[7] >= 4) continue;  // no 4-neighbour is background
      p[9] = p[1];
      int count = 0;
      for (int k = 1; k <= 8; k++)
        if (p[k] == 1) count++;
      if (count <= 1 || count == removedNow) continue;
      if (Cross(p) != 1) continue;
      // Cumulative re-test without the neighbours removed in this pass:
      // north first, then west with north still cleared.
      if (grid[i + offset[3]] == pass) {
        p[3] = 0;
        if (Cross(p) != 1) continue;
      }
      if (grid[i + offset[5]] == pass) {
        p[5] = 0;
        if (Cross(p) != 1) continue;
      }
      DWORD color = GetNeighborColor(pBits, pMask, static_cast<DWORD>(stride), x, y, width, height);
      if (pMask[i] == 2) {
        color = fillColor;
        result = 0;
      }
      WritePixel(pBits, stride, x, y, color);
      grid[i] = static_cast<unsigned char>(pass);
      changed = true;
    }
    // Pass numbers wrap in the byte grid, so a removed pixel can read 1
    // again; such a pixel stays in the list like any other present one.
    size_t kept = 0;
    for (const long i : present)
      if (grid[i] == 1) present[kept++] = i;
    present.resize(kept);
  }
  return result;
}
