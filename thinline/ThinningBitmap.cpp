// The work picture of the thinning stage: the stored regions painted into a
// fresh 24-bit packed DIB, and the mask that says which pixels may be thinned.
// Also the save and restore of the per-region only-thinning flags.
#include <cstring>
#include <new>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "thinline/PixelAccess.h"

namespace pictrace {
namespace thinline {

BITMAPINFOHEADER ReadHeader(const unsigned char* pDIB) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, pDIB, sizeof(h));
  return h;
}

}  // namespace thinline
}  // namespace pictrace

using namespace pictrace::thinline;

// The stored list is walked in its own order; flag i belongs to region i.
void CPictrace::StoreRegionsOnlyThinningFlag(CWordArray* pFlags) {
  if (!pFlags) return;
  for (COutlineRegion* pRegion : m_listStoredRegions)
    pFlags->Add(static_cast<WORD>(pRegion->m_bMarked));
}

void CPictrace::SetRegionsOnlyThinningFlag(CWordArray* pFlags) {
  if (!pFlags) return;
  INT_PTR n = pFlags->GetSize();
  INT_PTR i = 0;
  for (COutlineRegion* pRegion : m_listStoredRegions) {
    if (i >= n) break;
    pRegion->m_bMarked = static_cast<int>(pFlags->GetAt(i));  // the 16-bit value, widened
    i++;
  }
}

unsigned char* CPictrace::MakeThinningTmpBitmap(unsigned char** ppMask) {
  if (!HasDIBData() || m_listStoredRegions.empty() || !ppMask) return nullptr;
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  if (width <= 0 || height <= 0) return nullptr;
  const long stride = Stride24(width);
  const size_t imageBytes = static_cast<size_t>(stride) * static_cast<size_t>(height);

  unsigned char* pDIB = new (std::nothrow) unsigned char[imageBytes + 40];
  if (!pDIB) return nullptr;
  BITMAPINFOHEADER h;
  std::memset(&h, 0, sizeof(h));  // the pixels-per-metre fields stay 0
  h.biSize = m_bmiHeader.biSize;
  h.biPlanes = m_bmiHeader.biPlanes;
  h.biWidth = width;
  h.biHeight = height;
  h.biBitCount = 24;
  h.biCompression = BI_RGB;
  h.biSizeImage = static_cast<DWORD>(imageBytes);
  h.biClrUsed = 0;
  h.biClrImportant = 0;
  std::memcpy(pDIB, &h, 40);
  unsigned char* pBits = pDIB + 40;
  std::memset(pBits, 255, imageBytes);

  const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  unsigned char* pMask = new (std::nothrow) unsigned char[pixels];
  if (!pMask) {
    delete[] pDIB;
    return nullptr;
  }
  *ppMask = pMask;
  std::memset(pMask, 0, pixels);

  for (COutlineRegion* pRegion : m_listStoredRegions) {
    const CConComponent* pComp = pRegion->m_pComponent;
    if (!pComp || !pComp->m_pPoints) continue;
    for (int i = 0; i < pComp->m_nPoints; i++) {
      const int x = pComp->m_pPoints[i].x;
      const int y = pComp->m_pPoints[i].y;
      // A component of another picture must not write outside this one.
      if (!Inside(x, y, width, height)) continue;
      WritePixel(pBits, stride, x, y, pRegion->m_crColor);
      if (pRegion->m_bMarked == 0) pMask[static_cast<size_t>(y) * width + x] = 1;
    }
  }
  return pDIB;
}
