#include "DibFormat.h"

namespace ptgdi {

bool DibFormat::Init(const BITMAPINFO* lpbmi, UINT colorUse) {
  if (lpbmi == nullptr || colorUse != DIB_RGB_COLORS) return false;
  const BITMAPINFOHEADER& h = lpbmi->bmiHeader;
  if (h.biCompression != BI_RGB || h.biWidth <= 0 || h.biHeight == 0) return false;
  int bits = h.biBitCount;
  if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) return false;
  m_nWidth = h.biWidth;
  m_bTopDown = h.biHeight < 0;
  // LONG_MIN has no positive counterpart: refuse it rather than overflow.
  if (h.biHeight == static_cast<LONG>(0x80000000u)) return false;
  m_nHeight = m_bTopDown ? -h.biHeight : h.biHeight;
  m_nBitCount = bits;
  m_nStride = static_cast<std::size_t>(DibRowBytes(m_nWidth, bits));
  m_pColors = nullptr;
  m_nColors = 0;
  m_nHeaderSize = sizeof(BITMAPINFOHEADER);
  if (bits <= 8) {
    DWORD full = 1u << bits;
    m_nColors = h.biClrUsed != 0 && h.biClrUsed < full ? h.biClrUsed : full;
    // The colour table follows the header; a header size below 40 is
    // taken as 40, the only size this layer writes.
    DWORD headerSize = h.biSize >= sizeof(BITMAPINFOHEADER) ? h.biSize : sizeof(BITMAPINFOHEADER);
    m_nHeaderSize = headerSize;
    m_pColors = reinterpret_cast<const RGBQUAD*>(reinterpret_cast<const BYTE*>(lpbmi) + headerSize);
  }
  return true;
}

COLORREF DibFormat::Pixel(const BYTE* row, int x) const {
  DWORD index;
  switch (m_nBitCount) {
    case 24: return BgrToColor(row + 3 * static_cast<std::size_t>(x));
    case 32: return BgrToColor(row + 4 * static_cast<std::size_t>(x));
    case 16: {
      WORD v = static_cast<WORD>(row[2 * x] | (row[2 * x + 1] << 8));
      BYTE r = static_cast<BYTE>(((v >> 10) & 0x1F) << 3);
      BYTE g = static_cast<BYTE>(((v >> 5) & 0x1F) << 3);
      BYTE b = static_cast<BYTE>((v & 0x1F) << 3);
      return RGB(r, g, b);
    }
    case 8: index = row[x]; break;
    case 4: index = (x & 1) ? (row[x / 2] & 0x0F) : (row[x / 2] >> 4); break;
    default: index = (row[x / 8] >> (7 - (x & 7))) & 1; break;
  }
  if (index >= m_nColors) return RGB(0, 0, 0);  // beyond the table: black
  const RGBQUAD& q = m_pColors[index];
  return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue);
}

}  // namespace ptgdi
