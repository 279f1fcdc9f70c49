// DIB pixels onto the raster surface, nearest-neighbour: destination pixel k
// of a run of destWidth takes source pixel (2k + 1) * srcWidth / (2 destWidth),
// the one under its centre (pixel for pixel when the sizes agree).
#include <algorithm>

#include "DibFormat.h"
#include "RasterDC.h"

namespace {

// Source index of destination pixel k in a run of dest pixels mapped onto
// src; 0 <= k < dest < 2^31, so (2k + 1) * src stays below 2^63.
long long SourceIndex(long long k, int src, int dest) {
  return (2 * k + 1) * src / (2LL * dest);
}

}  // namespace

int CRasterDC::RenderDIB(int xDest, int yDest, int destWidth, int destHeight, int xSrc,
                         int ySrc, int srcWidth, int srcHeight, const void* lpBits,
                         const BITMAPINFO* lpbmi, bool bottomUpScanMapping) {
  ptgdi::DibFormat format;
  if (lpBits == nullptr || !format.Init(lpbmi, DIB_RGB_COLORS)) return 0;
  if (destWidth <= 0 || destHeight <= 0 || srcWidth <= 0 || srcHeight <= 0) return 0;
  const BYTE* bits = static_cast<const BYTE*>(lpBits);
  long long top = std::max<long long>(yDest, 0);
  long long bottom = std::min<long long>(static_cast<long long>(yDest) + destHeight, m_nHeight);
  long long left = std::max<long long>(xDest, 0);
  long long right = std::min<long long>(static_cast<long long>(xDest) + destWidth, m_nWidth);
  for (long long y = top; y < bottom; y++) {
    long long j = SourceIndex(y - yDest, srcHeight, destHeight);  // row in the rectangle
    long long storageRow;
    if (format.TopDown())
      storageRow = ySrc + j;
    else if (bottomUpScanMapping)  // ySrc is the rectangle's lowest storage row
      storageRow = static_cast<long long>(ySrc) + srcHeight - 1 - j;
    else  // ySrc counts picture rows from the top
      storageRow = static_cast<long long>(format.Height()) - 1 - (ySrc + j);
    if (storageRow < 0 || storageRow >= format.Height()) continue;
    const BYTE* row = bits + static_cast<std::size_t>(storageRow) * format.Stride();
    for (long long x = left; x < right; x++) {
      long long column = xSrc + SourceIndex(x - xDest, srcWidth, destWidth);
      if (column < 0 || column >= format.Width()) continue;
      SetPixel(static_cast<int>(x), static_cast<int>(y), format.Pixel(row, static_cast<int>(column)));
    }
  }
  return 1;
}
