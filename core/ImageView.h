// A view of a 24-bit picture held by someone else: size, row stride and
// pixel access. Stages take the picture they work on as one of these.
#pragma once

#include <cstddef>

#include "WinTypes.h"

namespace pictrace {

// A pixel's bytes are blue, green, red; a packed colour holds red in bits
// 0-7, green in 8-15 and blue in 16-23.
inline COLORREF PixelColor(const unsigned char* bgr) { return RGB(bgr[2], bgr[1], bgr[0]); }
inline void SetPixelColor(unsigned char* bgr, COLORREF color) {
  bgr[0] = GetBValue(color);
  bgr[1] = GetGValue(color);
  bgr[2] = GetRValue(color);
}

struct ImageView {
  int width = 0;
  int height = 0;
  std::size_t stride = 0;  // bytes per row, padded to whole 32-bit words
  unsigned char* bits = nullptr;

  bool Empty() const { return !bits || width <= 0 || height <= 0; }
  // The pixel at (x, y), stored blue, green, red; rows run in storage order.
  unsigned char* Pixel(int x, int y) const {
    return bits + static_cast<std::size_t>(y) * stride + 3 * static_cast<std::size_t>(x);
  }
};

inline std::size_t Stride24(long long width) { return static_cast<std::size_t>(DibRowBytes(width, 24)); }

// Row stride of the engine's picture as its header gives it: the image size
// over the height. Loading sets the image size to height rows of
// Stride24(width), so the two agree for every loaded picture.
inline std::size_t HeaderStride(const BITMAPINFOHEADER& header) {
  return header.biHeight > 0 ? header.biSizeImage / static_cast<DWORD>(header.biHeight) : 0;
}

// The view of a packed 24-bit DIB's pixels described by its header.
inline ImageView ViewOf(const BITMAPINFOHEADER& header, unsigned char* bits) {
  ImageView view;
  view.width = header.biWidth;
  view.height = header.biHeight;
  view.stride = Stride24(header.biWidth);
  view.bits = bits;
  return view;
}

// The engine's picture as the segmentation reads it: rows of HeaderStride.
inline ImageView HeaderView(const BITMAPINFOHEADER& header, unsigned char* bits) {
  ImageView view = ViewOf(header, bits);
  view.stride = HeaderStride(header);
  return view;
}

}  // namespace pictrace
