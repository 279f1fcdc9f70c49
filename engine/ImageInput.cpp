// Image input: the host's packed DIB is kept as a 24-bit image (palette
// pictures converted on the way in) and as a template copy for the
// segmentation's flat colours; the image can be saved aside and restored.
#include <cstdint>
#include <cstring>
#include <new>

#include "Pictrace.h"

namespace {

constexpr size_t kHeaderSize = sizeof(BITMAPINFOHEADER);

// Row stride of an input DIB by bit count (0 for an unsupported count).
std::uint64_t InputStride(LONG width, WORD bitCount) {
  if (bitCount != 1 && bitCount != 4 && bitCount != 8 && bitCount != 24) return 0;
  return DibRowBytes(static_cast<std::uint64_t>(width), bitCount);
}

std::uint64_t Stride24(LONG width) { return DibRowBytes(static_cast<std::uint64_t>(width), 24); }

// Bytes of the colour table in front of the pixel rows.
std::uint64_t ColorTableSize(const BITMAPINFOHEADER& h) {
  if (h.biBitCount == 24) return 0;
  if (h.biClrUsed != 0) return static_cast<std::uint64_t>(h.biClrUsed) * 4;
  switch (h.biBitCount) {
    case 1: return 8;
    case 4: return 64;
    default: return 1024;
  }
}

bool IsSupportedBitCount(WORD bitCount) {
  return bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 24;
}

// Sizes the engine can hold: its point records are 16-bit, and an empty or
// top-down picture has no rows the conversion could read.
bool IsSupportedSize(const BITMAPINFOHEADER& h) {
  return h.biWidth > 0 && h.biHeight > 0 && h.biWidth <= 32767 && h.biHeight <= 32767;
}

}  // namespace

int CPictrace::SetDIBData(unsigned char* pDIB) {
  return SetBMPData(pDIB, m_pDIB, m_pDIBBits, m_pWorkDIB, m_pWorkBits, &m_bmiHeader);
}

int CPictrace::SetBMPData(unsigned char* pSrc, unsigned char*& pDIB, unsigned char*& pBits,
                          unsigned char*& pWorkDIB, unsigned char*& pWorkBits,
                          BITMAPINFOHEADER* pHeader) {
  if (!pSrc || !pHeader) return 0;
  // A refused load leaves the engine as it was, header included.
  const BITMAPINFOHEADER previous = *pHeader;
  std::memcpy(pHeader, pSrc, kHeaderSize);
  if (!IsSupportedBitCount(pHeader->biBitCount) || !IsSupportedSize(*pHeader)) {
    *pHeader = previous;
    AfxMessageBox(PT_MSG_UNSUPPORTED);
    return 0;
  }

  std::uint64_t stride = InputStride(pHeader->biWidth, pHeader->biBitCount);
  pHeader->biSizeImage = static_cast<DWORD>(static_cast<std::uint64_t>(pHeader->biHeight) * stride);
  std::uint64_t total = pHeader->biSizeImage + ColorTableSize(*pHeader) + kHeaderSize;

  // The copy is made before the old buffer goes, so that a source that is the
  // engine's own buffer stays readable; the outcome is the same.
  unsigned char* pCopy = new (std::nothrow) unsigned char[total];
  if (pCopy) std::memcpy(pCopy, pSrc, total);
  delete[] pDIB;
  pDIB = pCopy;
  pBits = pDIB ? pDIB + kHeaderSize : nullptr;
  if (!pDIB) {
    *pHeader = previous;
    AfxMessageBox(PT_MSG_NO_MEMORY_24);
    return 0;
  }

  if (pHeader->biBitCount != 24 && !ConvertTo24(pSrc, pDIB, pBits, pHeader)) {
    delete[] pDIB;
    pDIB = nullptr;
    pBits = nullptr;
    *pHeader = previous;
    return 0;
  }

  delete[] pWorkDIB;
  pWorkDIB = new (std::nothrow) unsigned char[pHeader->biSizeImage + kHeaderSize];
  if (!pWorkDIB) {
    pWorkBits = nullptr;
    delete[] pDIB;
    pDIB = nullptr;
    pBits = nullptr;
    *pHeader = previous;
    AfxMessageBox(PT_MSG_NO_MEMORY_TEMPLATE);
    return 0;
  }
  pWorkBits = pWorkDIB + kHeaderSize;
  std::memcpy(pWorkDIB, pDIB, pHeader->biSizeImage + kHeaderSize);

  DeriveSatinWidth();
  return 1;
}

int CPictrace::ConvertTo24(unsigned char* /*pSrc*/, unsigned char*& pDIB, unsigned char*& pBits,
                           BITMAPINFOHEADER* pHeader) {
  const WORD bitCount = pHeader->biBitCount;
  if (bitCount == 24) return 1;
  if (bitCount != 1 && bitCount != 4 && bitCount != 8) return 0;

  const LONG width = pHeader->biWidth;
  const LONG height = pHeader->biHeight;
  const std::uint64_t stride24 = Stride24(width);
  const std::uint64_t newSize = stride24 * static_cast<std::uint64_t>(height);
  unsigned char* pNew = new (std::nothrow) unsigned char[newSize + kHeaderSize];
  if (!pNew) {
    AfxMessageBox(PT_MSG_NO_MEMORY_24);
    return 0;
  }

  const std::uint64_t colors = pHeader->biClrUsed ? pHeader->biClrUsed : (1u << bitCount);
  const std::uint64_t inStride = InputStride(width, bitCount);
  // The copied buffer: header, colour table, rows.
  const std::uint64_t bufferSize = kHeaderSize + colors * 4 + inStride * static_cast<std::uint64_t>(height);

  pHeader->biCompression = BI_RGB;
  pHeader->biBitCount = 24;
  pHeader->biSizeImage = static_cast<DWORD>(newSize);
  pHeader->biClrUsed = 0;
  pHeader->biClrImportant = 0;
  // The converted buffer carries the rewritten header, so that painting and
  // copying it see a valid 24-bit description.
  std::memcpy(pNew, pHeader, kHeaderSize);

  const unsigned char* table = pBits;
  const unsigned char* rows = pDIB + kHeaderSize + colors * 4;
  // Indices are not checked against the colour count; an entry past the
  // table reads the bytes that follow it, as long as they lie in the buffer.
  auto entry = [&](unsigned index, unsigned char* out) {
    std::uint64_t offset = kHeaderSize + static_cast<std::uint64_t>(index) * 4;
    if (offset + 3 <= bufferSize) {
      const unsigned char* q = table + static_cast<std::uint64_t>(index) * 4;
      out[0] = q[0];
      out[1] = q[1];
      out[2] = q[2];
    } else {
      out[0] = out[1] = out[2] = 0;
    }
  };

  for (LONG row = 0; row < height; row++) {
    const unsigned char* in = rows + static_cast<std::uint64_t>(row) * inStride;
    unsigned char* out = pNew + kHeaderSize + static_cast<std::uint64_t>(row) * stride24;
    if (bitCount == 1) {
      unsigned char mask = 0x80;
      for (LONG x = 0; x < width; x++) {
        entry((*in & mask) ? 1 : 0, out + 3 * x);
        mask >>= 1;
        if (mask == 0) {
          mask = 0x80;
          in++;
        }
      }
    } else if (bitCount == 4) {
      for (LONG x = 0; x < width; x++) {
        unsigned index = (x & 1) ? (in[x / 2] & 0x0F) : (in[x / 2] >> 4);
        entry(index, out + 3 * x);
      }
    } else {
      for (LONG x = 0; x < width; x++) entry(in[x], out + 3 * x);
    }
  }

  delete[] pDIB;
  pDIB = pNew;
  pBits = pDIB + kHeaderSize;
  return 1;
}

void CPictrace::CopyBMPData(unsigned char** ppDest, unsigned char* pSrc) {
  if (!pSrc || !ppDest) return;
  BITMAPINFOHEADER h;
  std::memcpy(&h, pSrc, kHeaderSize);
  // A buffer whose own header describes no picture cannot be sized.
  if (h.biWidth <= 0 || h.biHeight <= 0) return;
  if (*ppDest) {
    delete[] *ppDest;
    *ppDest = nullptr;
  }
  std::uint64_t size = static_cast<std::uint64_t>(h.biHeight) * Stride24(h.biWidth) + kHeaderSize;
  *ppDest = new unsigned char[size];
  std::memcpy(*ppDest, pSrc, size);
}

void CPictrace::CopyBMPData_DataToOriginal() { CopyBMPData(&m_pOriginalDIB, m_pDIB); }

void CPictrace::CopyBMPData_OriginalToData() { SetDIBData(m_pOriginalDIB); }

int CPictrace::HasDIBData() { return m_pDIB ? 1 : 0; }

int CPictrace::GetDIBSize(CSize& size) {
  if (!HasDIBData()) return 0;
  size.cx = m_bmiHeader.biWidth;
  size.cy = m_bmiHeader.biHeight;
  return 1;
}
