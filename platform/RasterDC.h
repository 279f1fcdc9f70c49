// A device context with a 24-bit pixel surface, for previews and tests.
// Geometry (Bezier flattening, scan conversion, stroking, dashes) goes through
// cairo without anti-aliasing; the mix modes and hatch patterns are applied
// here, pixel by pixel, with GDI's meaning.
#pragma once

#include <cstdint>
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

  // Mixes crColor into pixel (x, y) with the mix mode; pixels off the
  // surface are left alone.
  void MixPixel(std::int64_t x, std::int64_t y, COLORREF crColor, int nROP2);
  // One-pixel cosmetic lines, stepped pixel by pixel as GDI draws them.
  BOOL StrokeCosmetic(const std::vector<PathOp>& path, const CPen& pen, int nROP2, int nBkMode,
                      COLORREF crBk);
  // Wide and geometric pens, stroked by cairo into a coverage mask.
  BOOL StrokeWide(const std::vector<PathOp>& path, const CPen& pen, int nROP2, int nBkMode,
                  COLORREF crBk);

  int m_nWidth;
  int m_nHeight;
  int m_nStride;
  std::vector<BYTE> m_bits;
};
