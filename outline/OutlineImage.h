// Read access to the engine's working image for the outline stage.
#pragma once

#include "Pictrace.h"

namespace outline {

// Points are 16-bit, so the outline stage refuses larger pictures.
constexpr int kMaxSide = 32767;

struct WorkImage {
  int width = 0;
  int height = 0;
  int stride = 0;  // (3 * width + 3) / 4 * 4
  unsigned char* bits = nullptr;

  unsigned char* Pixel(int x, int y) const {
    return bits + static_cast<size_t>(y) * stride + 3 * static_cast<size_t>(x);
  }
};

// Fills img from the engine; false when there is no usable working image.
inline bool GetWorkImage(const CPictrace& e, WorkImage& img) {
  const BITMAPINFOHEADER& h = e.m_bmiHeader;
  if (!e.m_pDIB || !e.m_pWorkBits || h.biWidth <= 0 || h.biHeight <= 0) return false;
  if (h.biWidth > kMaxSide || h.biHeight > kMaxSide) return false;
  img.width = h.biWidth;
  img.height = h.biHeight;
  img.stride = (h.biWidth * 3 + 3) / 4 * 4;
  img.bits = e.m_pWorkBits;
  return true;
}

// The packed colour of a pixel stored blue, green, red.
inline COLORREF PixelColor(const unsigned char* p) { return RGB(p[2], p[1], p[0]); }

}  // namespace outline
