// A device context with a 24-bit pixel surface, for previews and tests.
// Geometry (Bezier flattening, scan conversion, stroking, dashes) goes through
// cairo without anti-aliasing; the mix modes and hatch patterns are applied
// here, pixel by pixel, with GDI's meaning.
#pragma once

#include <vector>

#include "AfxGdi.h"

class PICTRACE_API CRasterDC : public CDC {
 public:
  // A white surface of width x height pixels.
  CRasterDC(int width, int height);
  ~CRasterDC() override;

  int GetWidth() const { return m_nWidth; }
  int GetHeight() const { return m_nHeight; }
  // Top-down rows of GetStride() bytes, three bytes a pixel: blue, green, red.
  const BYTE* GetBits() const { return m_bits.data(); }
  BYTE* GetBits() { return m_bits.data(); }
  int GetStride() const { return m_nStride; }

  COLORREF GetPixel(int x, int y) const override;
  COLORREF SetPixel(int x, int y, COLORREF crColor) override;

 protected:
  BOOL RenderFill(const std::vector<PathOp>& path, const CBrush& brush, int nFillMode, int nROP2,
                  int nBkMode, COLORREF crBk) override;
  BOOL RenderStroke(const std::vector<PathOp>& path, const CPen& pen, int nROP2, int nBkMode,
                    COLORREF crBk) override;
  int RenderDIB(int xDest, int yDest, int destWidth, int destHeight, int xSrc, int ySrc,
                int srcWidth, int srcHeight, const void* lpBits, const BITMAPINFO* lpbmi,
                bool bottomUpScanMapping) override;

  int m_nWidth;
  int m_nHeight;
  int m_nStride;
  std::vector<BYTE> m_bits;
};
