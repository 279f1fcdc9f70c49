// The raster device's pixel surface: a top-down 24-bit BGR buffer with
// GDI's pixel access.
#include "RasterDC.h"
#include "RasterOps.h"

CRasterDC::CRasterDC(int width, int height)
    : m_nWidth(width > 0 && height > 0 ? width : 0),
      m_nHeight(width > 0 && height > 0 ? height : 0),
      m_nStride(static_cast<int>(DibRowBytes(m_nWidth, 24))),
      m_bits(static_cast<std::size_t>(m_nStride) * static_cast<std::size_t>(m_nHeight), 0xFF) {}

CRasterDC::~CRasterDC() = default;

COLORREF CRasterDC::GetPixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight) return CLR_INVALID;
  const BYTE* p = m_bits.data() + static_cast<std::size_t>(y) * m_nStride + 3 * x;
  return RGB(p[2], p[1], p[0]);
}

COLORREF CRasterDC::SetPixel(int x, int y, COLORREF crColor) {
  if (x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight) return CLR_INVALID;
  BYTE* p = m_bits.data() + static_cast<std::size_t>(y) * m_nStride + 3 * x;
  p[0] = GetBValue(crColor);
  p[1] = GetGValue(crColor);
  p[2] = GetRValue(crColor);
  return crColor & 0x00FFFFFFu;
}

void CRasterDC::MixPixel(std::int64_t x, std::int64_t y, COLORREF crColor, int nROP2) {
  if (x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight) return;
  int ix = static_cast<int>(x);
  int iy = static_cast<int>(y);
  SetPixel(ix, iy, ptgdi::ApplyRop2(nROP2, GetPixel(ix, iy), crColor));
}
