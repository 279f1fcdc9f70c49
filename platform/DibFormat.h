// Reading pixels of an uncompressed device-independent bitmap: 1, 4 and 8
// bits with a colour table, 16 (5-5-5), 24 and 32 bits.
#pragma once

#include <cstddef>

#include "WinTypes.h"

namespace ptgdi {

class DibFormat {
 public:
  // False when the header describes a bitmap this layer cannot read.
  bool Init(const BITMAPINFO* lpbmi, UINT colorUse);

  int Width() const { return m_nWidth; }
  int Height() const { return m_nHeight; }  // number of rows, positive
  bool TopDown() const { return m_bTopDown; }
  std::size_t Stride() const { return m_nStride; }
  // Bytes of the header and colour table in front of the pixels' header copy.
  std::size_t InfoBytes() const { return m_nHeaderSize + 4 * static_cast<std::size_t>(m_nColors); }
  // Colour of pixel x of a row (x within the width).
  COLORREF Pixel(const BYTE* row, int x) const;

 private:
  int m_nWidth = 0;
  int m_nHeight = 0;
  bool m_bTopDown = false;
  int m_nBitCount = 0;
  std::size_t m_nStride = 0;
  const RGBQUAD* m_pColors = nullptr;
  DWORD m_nColors = 0;
  std::size_t m_nHeaderSize = sizeof(BITMAPINFOHEADER);
};

// A DIB row's colour as a COLORREF, from blue, green, red bytes.
inline COLORREF BgrToColor(const BYTE* p) { return RGB(p[2], p[1], p[0]); }

}  // namespace ptgdi
