// Background regions: the frame-touching regions of the background colour,
// traced again on a picture where everything else is one foreground colour,
// so that the background comes out as a few large regions whose holes are
// exactly where the other regions lie.
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "Pictrace.h"
#include "outline/OutlineRecords.h"

namespace {

// The frame test of the background marking: a bounding box that reaches
// into the 5 % margins of the picture.
struct FrameTest {
  double width, height, mx, my;
  FrameTest(int w, int h) : width(w), height(h), mx(w * 0.05), my(h * 0.05) {}
  bool operator()(const COutlineRegion* pRegion) const {
    const CRect& rc = pRegion->m_rcBound;
    return rc.left < mx || rc.right > width - mx || rc.top < my || rc.bottom > height - my;
  }
};

// The background colour as the background marking chooses it: the colour
// with the largest pixel count over the frame-touching regions, the first
// one met winning a tie. False when no region touches the frame.
bool FindBackgroundColor(const std::list<COutlineRegion*>& regions, const FrameTest& touches,
                         COLORREF& color) {
  std::vector<std::pair<COLORREF, long long>> tally;
  for (const COutlineRegion* pRegion : regions) {
    if (!touches(pRegion)) continue;
    bool found = false;
    for (auto& entry : tally)
      if (entry.first == pRegion->m_crColor) {
        entry.second += pRegion->m_nPixels;
        found = true;
        break;
      }
    if (!found) tally.emplace_back(pRegion->m_crColor, pRegion->m_nPixels);
  }
  if (tally.empty()) return false;
  size_t best = 0;
  for (size_t i = 1; i < tally.size(); i++)
    if (tally[i].second > tally[best].second) best = i;
  color = tally[best].first;
  return true;
}

// A colour that differs from the background in every channel by at least
// 128, so the two can never merge into one component.
COLORREF ForegroundFor(COLORREF background) {
  BYTE r = GetRValue(background) < 128 ? 255 : 0;
  BYTE g = GetGValue(background) < 128 ? 255 : 0;
  BYTE b = GetBValue(background) < 128 ? 255 : 0;
  return RGB(r, g, b);
}

void PaintPixel(unsigned char* p, COLORREF color) {
  p[0] = GetBValue(color);
  p[1] = GetGValue(color);
  p[2] = GetRValue(color);
}

void DeleteRegions(std::list<COutlineRegion*>& regions) {
  while (!regions.empty()) {
    delete regions.front();
    regions.pop_front();
  }
}

// Runs the outline stage on another picture and another region list while
// keeping everything it would change in the engine: the current regions,
// the working image, the work buffers, the colour list, the host mask (which
// the small-region clean-up may write) and the progress state (the side
// trace is not a stage of the host's job and reports nothing). The
// destructor restores all of it, also when an allocation fails on the way.
class SideTrace {
 public:
  // pDIB (may be null) replaces the working image; pPlaced (may be null)
  // lends its regions as the current ones. The copies that can fail come
  // first, so that a failure leaves the engine untouched.
  SideTrace(CPictrace& engine, std::unique_ptr<unsigned char[]> pDIB,
            std::list<COutlineRegion*>* pPlaced)
      : m_e(engine), m_pDIB(std::move(pDIB)), m_pPlaced(pPlaced) {
    m_savedColors.Copy(m_e.m_arrColorList);
    if (m_pDIB && m_e.m_pMask) {
      size_t n = static_cast<size_t>(m_e.m_bmiHeader.biWidth) * m_e.m_bmiHeader.biHeight;
      m_savedMask.assign(m_e.m_pMask, m_e.m_pMask + n);
    }
    m_e.m_listOutlineRegions.swap(m_savedRegions);
    if (m_pPlaced) m_e.m_listOutlineRegions.swap(*m_pPlaced);
    m_e.m_listWorkBuffers.swap(m_savedBuffers);
    m_pSavedWorkDIB = m_e.m_pWorkDIB;
    m_pSavedWorkBits = m_e.m_pWorkBits;
    if (m_pDIB) {
      m_e.m_pWorkDIB = m_pDIB.get();
      m_e.m_pWorkBits = m_pDIB.get() + 40;
    }
    m_pSavedWnd = m_e.m_pProgressWnd;
    m_fSavedPos = m_e.m_fProgressPos;
    m_nSavedShown = m_e.m_nProgressShown;
    m_nSavedLineType = m_e.m_nOutputLineType;
    m_e.m_pProgressWnd = nullptr;
  }

  ~SideTrace() {
    if (m_pPlaced) m_e.m_listOutlineRegions.swap(*m_pPlaced);
    DeleteRegions(m_e.m_listOutlineRegions);
    m_e.m_listOutlineRegions.swap(m_savedRegions);
    while (!m_e.m_listWorkBuffers.empty()) {
      delete[] m_e.m_listWorkBuffers.front();
      m_e.m_listWorkBuffers.pop_front();
    }
    m_e.m_listWorkBuffers.swap(m_savedBuffers);
    m_e.m_arrColorList.Copy(m_savedColors);
    m_e.m_pWorkDIB = m_pSavedWorkDIB;
    m_e.m_pWorkBits = m_pSavedWorkBits;
    if (m_e.m_pMask && !m_savedMask.empty())
      std::memcpy(m_e.m_pMask, m_savedMask.data(), m_savedMask.size() * sizeof(int));
    m_e.m_pProgressWnd = m_pSavedWnd;
    m_e.m_fProgressPos = m_fSavedPos;
    m_e.m_nProgressShown = m_nSavedShown;
    m_e.m_nOutputLineType = m_nSavedLineType;
  }

  SideTrace(const SideTrace&) = delete;
  SideTrace& operator=(const SideTrace&) = delete;

 private:
  CPictrace& m_e;
  std::unique_ptr<unsigned char[]> m_pDIB;
  std::list<COutlineRegion*>* m_pPlaced;
  std::list<COutlineRegion*> m_savedRegions;
  std::list<double*> m_savedBuffers;
  CDWordArray m_savedColors;
  unsigned char* m_pSavedWorkDIB;
  unsigned char* m_pSavedWorkBits;
  std::vector<int> m_savedMask;
  CWnd* m_pSavedWnd;
  float m_fSavedPos;
  int m_nSavedShown;
  int m_nSavedLineType;
};

}  // namespace

int CPictrace::ExtractBackground() {
  DeleteRegions(m_listBackgroundRegions);
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  if (!m_pWorkDIB || !m_pWorkBits || width <= 0 || height <= 0) return 0;
  const long long stride = static_cast<long long>(m_bmiHeader.biSizeImage) / height;
  if (stride < 3LL * width || m_listOutlineRegions.empty()) return 0;

  const FrameTest touches(width, height);
  COLORREF background = 0;
  if (!FindBackgroundColor(m_listOutlineRegions, touches, background)) return 0;
  const COLORREF foreground = ForegroundFor(background);

  // The copy: everything foreground, then the pixels of the background
  // regions back in the background colour.
  const size_t size = 40 + static_cast<size_t>(m_bmiHeader.biSizeImage);
  std::unique_ptr<unsigned char[]> pCopy(new unsigned char[size]);
  std::memcpy(pCopy.get(), m_pWorkDIB, size);
  unsigned char* pBits = pCopy.get() + 40;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) PaintPixel(pBits + y * stride + 3 * x, foreground);
  for (const COutlineRegion* pRegion : m_listOutlineRegions) {
    if (!touches(pRegion) || pRegion->m_crColor != background || !pRegion->m_pComponent) continue;
    const CConComponent* pComp = pRegion->m_pComponent;
    for (int i = 0; i < pComp->m_nPoints; i++) {
      const sPoint& pt = pComp->m_pPoints[i];
      if (pt.x < 0 || pt.y < 0 || pt.x >= width || pt.y >= height) continue;
      PaintPixel(pBits + pt.y * stride + 3 * pt.x, background);
    }
  }

  SideTrace scope(*this, std::move(pCopy), nullptr);
  unsigned char* pNoMask = nullptr;
  GetOutline4Cartoon2(m_dSegmentParam, &pNoMask);
  // Keep the regions traced from background pixels; the component keeps
  // the traced colour, while the region's colour is already the palette's.
  for (auto it = m_listOutlineRegions.begin(); it != m_listOutlineRegions.end();) {
    COutlineRegion* pRegion = *it;
    if (pRegion->m_pComponent && pRegion->m_pComponent->m_crColor == background) {
      ++it;
    } else {
      delete pRegion;
      it = m_listOutlineRegions.erase(it);
    }
  }
  SortRegionSeq(m_listOutlineRegions);
  SetOutlineColorIndex(m_listOutlineRegions);
  CreateOutputPolygon(m_nOutputLineType);
  m_listBackgroundRegions.swap(m_listOutlineRegions);
  return m_listBackgroundRegions.empty() ? 0 : 1;
}

void CPictrace::GetBackgroundRegions(CPTRegions* pRegions, int nLineType) {
  if (!pRegions) return;
  // The region output runs on the background list in place of the current
  // regions; its polygons are rebuilt in the asked line type each time.
  SideTrace scope(*this, nullptr, &m_listBackgroundRegions);
  CreateOutputPolygon(nLineType);
  m_nOutputLineType = nLineType;
  GetRegions(pRegions, nLineType);
}
