// Small helpers shared by the thin-line code: the 8-direction table, row
// stride of a 24-bit picture and colour reads and writes of one pixel.
#pragma once

#include "AfxWin.h"
#include "core/ImageView.h"

namespace pictrace {
namespace thinline {

// The direction order of the neighbour-colour vote and of the chain
// follower: starting at (1, 0) and turning towards y + 1.
constexpr int kDirX[8] = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr int kDirY[8] = {0, 1, 1, 1, 0, -1, -1, -1};

// Bytes per row of a 24-bit picture, padded to a multiple of four.
inline long Stride24(int width) { return static_cast<long>(pictrace::Stride24(width)); }

inline bool Inside(int x, int y, int width, int height) {
  return x >= 0 && y >= 0 && x < width && y < height;
}

// Pixel (x, y) as a COLORREF; y is the storage row.
inline COLORREF ReadPixel(const unsigned char* pBits, long stride, int x, int y) {
  return PixelColor(pBits + static_cast<long>(y) * stride + 3L * x);
}

inline void WritePixel(unsigned char* pBits, long stride, int x, int y, COLORREF c) {
  SetPixelColor(pBits + static_cast<long>(y) * stride + 3L * x, c);
}

// The packed work picture's header, read without assuming alignment.
BITMAPINFOHEADER ReadHeader(const unsigned char* pDIB);

}  // namespace thinline
}  // namespace pictrace
