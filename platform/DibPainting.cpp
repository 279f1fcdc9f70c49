// Painting device-independent bitmaps with GDI's argument conventions:
// SetDIBitsToDevice copies unscaled and counts the source y from the bottom
// of a bottom-up DIB, with only scan lines startScan .. startScan + cLines - 1
// present in memory; StretchDIBits scales nearest-neighbour and counts the
// source rectangle from the top.
#include <climits>
#include <cstring>
#include <vector>

#include "AfxGdi.h"
#include "DibFormat.h"

int CDC::SetDIBitsToDevice(int xDest, int yDest, DWORD w, DWORD h, int xSrc, int ySrc,
                           UINT startScan, UINT cLines, const void* lpvBits,
                           const BITMAPINFO* lpbmi, UINT colorUse) {
  ptgdi::DibFormat format;
  if (lpvBits == nullptr || !format.Init(lpbmi, colorUse)) return 0;
  if (cLines == 0 || cLines > INT_MAX || w > INT_MAX || h > INT_MAX) return 0;
  if (w == 0 || h == 0) return static_cast<int>(cLines);
  // The scan lines in memory form a DIB of their own, cLines rows high; the
  // source rectangle moves down by startScan rows in it.
  std::vector<BYTE> band(format.InfoBytes());
  std::memcpy(band.data(), lpbmi, band.size());
  LONG bandHeight = format.TopDown() ? -static_cast<LONG>(cLines) : static_cast<LONG>(cLines);
  std::memcpy(band.data() + offsetof(BITMAPINFOHEADER, biHeight), &bandHeight, sizeof(LONG));
  long long bandY = static_cast<long long>(ySrc) - static_cast<long long>(startScan);
  if (bandY < INT_MIN || bandY > INT_MAX) return static_cast<int>(cLines);  // nothing present
  int painted = RenderDIB(xDest, yDest, static_cast<int>(w), static_cast<int>(h), xSrc,
                          static_cast<int>(bandY), static_cast<int>(w), static_cast<int>(h),
                          lpvBits, reinterpret_cast<const BITMAPINFO*>(band.data()), true);
  return painted ? static_cast<int>(cLines) : 0;
}

// Only SRCCOPY is supported; sizes must be positive (no mirroring).
int CDC::StretchDIBits(int xDest, int yDest, int destWidth, int destHeight, int xSrc, int ySrc,
                       int srcWidth, int srcHeight, const void* lpBits, const BITMAPINFO* lpbmi,
                       UINT iUsage, DWORD rop) {
  ptgdi::DibFormat format;
  if (lpBits == nullptr || rop != SRCCOPY || !format.Init(lpbmi, iUsage)) return 0;
  if (destWidth <= 0 || destHeight <= 0 || srcWidth <= 0 || srcHeight <= 0) return 0;
  int painted = RenderDIB(xDest, yDest, destWidth, destHeight, xSrc, ySrc, srcWidth, srcHeight,
                          lpBits, lpbmi, false);
  return painted ? srcHeight : 0;
}

int SetDIBitsToDevice(HDC hdc, int xDest, int yDest, DWORD w, DWORD h, int xSrc, int ySrc,
                      UINT startScan, UINT cLines, const void* lpvBits, const BITMAPINFO* lpbmi,
                      UINT colorUse) {
  if (hdc == nullptr) return 0;
  return hdc->SetDIBitsToDevice(xDest, yDest, w, h, xSrc, ySrc, startScan, cLines, lpvBits,
                                lpbmi, colorUse);
}

int StretchDIBits(HDC hdc, int xDest, int yDest, int destWidth, int destHeight, int xSrc,
                  int ySrc, int srcWidth, int srcHeight, const void* lpBits,
                  const BITMAPINFO* lpbmi, UINT iUsage, DWORD rop) {
  if (hdc == nullptr) return 0;
  return hdc->StretchDIBits(xDest, yDest, destWidth, destHeight, xSrc, ySrc, srcWidth, srcHeight,
                            lpBits, lpbmi, iUsage, rop);
}
