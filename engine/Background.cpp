// Background regions: the frame-touching regions of the background colour,
// traced again on a picture where everything else is one foreground colour,
// so that the background comes out as a few large regions whose holes are
// exactly where the other regions lie.
#include <cstring>
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "core/BackgroundColor.h"
#include "core/OutlineRecords.h"
#include "core/Progress.h"
#include "core/OwnedList.h"
#include "engine/RegionOutput.h"
#include "outline/OutlineStage.h"

namespace {

// A colour that differs from the background in every channel by at least
// 128, so the two can never merge into one component.
COLORREF ForegroundFor(COLORREF background) {
  BYTE r = GetRValue(background) < 128 ? 255 : 0;
  BYTE g = GetGValue(background) < 128 ? 255 : 0;
  BYTE b = GetBValue(background) < 128 ? 255 : 0;
  return RGB(r, g, b);
}

}  // namespace

int CPictrace::ExtractBackground() {
  pictrace::RegionList().Swap(m_listBackgroundRegions);  // the old ones are freed
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  if (!m_pWorkDIB || !m_pWorkBits || width <= 0 || height <= 0) return 0;
  const long long stride = static_cast<long long>(pictrace::HeaderStride(m_bmiHeader));
  if (stride < 3LL * width || m_listOutlineRegions.empty()) return 0;

  const pictrace::FrameTest touches(width, height);
  COLORREF background = 0;
  if (!pictrace::FindBackgroundColor(m_listOutlineRegions, touches, background)) return 0;
  const COLORREF foreground = ForegroundFor(background);

  // The copy: everything foreground, then the pixels of the background
  // regions back in the background colour.
  const size_t size = 40 + static_cast<size_t>(m_bmiHeader.biSizeImage);
  std::unique_ptr<unsigned char[]> pCopy(new unsigned char[size]);
  std::memcpy(pCopy.get(), m_pWorkDIB, size);
  unsigned char* pBits = pCopy.get() + 40;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) pictrace::SetPixelColor(pBits + y * stride + 3 * x, foreground);
  for (const COutlineRegion* pRegion : m_listOutlineRegions) {
    if (!touches(pRegion) || pRegion->m_crColor != background || !pRegion->m_pComponent) continue;
    const CConComponent* pComp = pRegion->m_pComponent;
    for (int i = 0; i < pComp->m_nPoints; i++) {
      const sPoint& pt = pComp->m_pPoints[i];
      if (pt.x < 0 || pt.y < 0 || pt.x >= width || pt.y >= height) continue;
      pictrace::SetPixelColor(pBits + pt.y * stride + 3 * pt.x, background);
    }
  }

  // The outline stage on the copy. The small-region clean-up may write the
  // host mask, so it works on a copy of it; the engine's own regions, picture
  // and mask stay as they are, and nothing is reported to the progress window.
  outline::OutlineInput in = outline::InputOf(*this);
  in.image.bits = pBits;
  std::vector<int> mask;
  if (m_pMask) {
    mask.assign(m_pMask, m_pMask + static_cast<size_t>(width) * height);
    in.hostMask = mask.data();
  }
  unsigned char* pNoMask = nullptr;
  pictrace::RegionList regions = outline::TraceRegions(in, m_dSegmentParam, &pNoMask);

  // Keep the regions traced from background pixels; the component keeps
  // the traced colour, while the region's colour is already the palette's.
  std::list<COutlineRegion*>& items = regions.Items();
  for (auto it = items.begin(); it != items.end();) {
    COutlineRegion* pRegion = *it;
    if (pRegion->m_pComponent && pRegion->m_pComponent->m_crColor == background) {
      ++it;
    } else {
      delete pRegion;
      it = items.erase(it);
    }
  }
  outline::SortRegions(items);
  outline::TieToColors(items, m_arrColorList);
  pictrace::Progress silent;
  pictrace::engine::BuildOutputPolygons(items, static_cast<int>(m_arrColorList.GetSize()),
                                        m_nOutputLineType, width, height, m_dCurveTolerance, silent);
  regions.Swap(m_listBackgroundRegions);
  return m_listBackgroundRegions.empty() ? 0 : 1;
}

void CPictrace::GetBackgroundRegions(CPTRegions* pRegions, int nLineType) {
  if (!pRegions) return;
  // The background regions' polygons are rebuilt in the asked line type
  // each time; the current regions and the engine's line type stay as they are.
  const int nColors = static_cast<int>(m_arrColorList.GetSize());
  pictrace::Progress silent;
  pictrace::engine::BuildOutputPolygons(m_listBackgroundRegions, nColors, nLineType, m_bmiHeader.biWidth,
                                        m_bmiHeader.biHeight, m_dCurveTolerance, silent);
  pictrace::engine::CollectRegions(m_listBackgroundRegions, nColors, m_rcImageReal, m_bmiHeader.biWidth,
                                   m_bmiHeader.biHeight, pRegions);
}
