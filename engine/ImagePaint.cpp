// Painting the image or its saved copy into a device context for previews.
#include "Pictrace.h"

int CPictrace::DrawDIB(CDC* pDC, RECT* pDest, int bOriginal) {
  if (!HasDIBData() || !pDC || !pDest) return 0;
  RECT src{0, 0, m_bmiHeader.biWidth, m_bmiHeader.biHeight};
  return PaintDIB(pDC->m_hDC, pDest, bOriginal ? m_pOriginalDIB : m_pWorkDIB, &src);
}

int CPictrace::PaintDIB(HDC hDC, RECT* pDest, unsigned char* pDIB, RECT* pSrc) {
  if (!pDIB) return 0;
  ::SetStretchBltMode(hDC, COLORONCOLOR);
  const BITMAPINFO* info = reinterpret_cast<const BITMAPINFO*>(pDIB);
  int destWidth = pDest->right - pDest->left;
  int destHeight = pDest->bottom - pDest->top;
  int srcWidth = pSrc->right - pSrc->left;
  int srcHeight = pSrc->bottom - pSrc->top;
  if (destWidth == srcWidth && destHeight == srcHeight) {
    // The source y counts rows from the bottom of the bottom-up picture.
    return ::SetDIBitsToDevice(hDC, pDest->left, pDest->top, static_cast<DWORD>(destWidth),
                               static_cast<DWORD>(destHeight), pSrc->left,
                               m_bmiHeader.biHeight - pSrc->bottom, 0,
                               static_cast<UINT>(m_bmiHeader.biHeight), pDIB + 40, info,
                               DIB_RGB_COLORS);
  }
  return ::StretchDIBits(hDC, pDest->left, pDest->top, destWidth, destHeight, pSrc->left,
                         pSrc->top, srcWidth, srcHeight, pDIB + 40, info, DIB_RGB_COLORS, SRCCOPY);
}
