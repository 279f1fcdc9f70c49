// The working image as 4-connected components of exactly equal colour, with
// diagonal-only contacts repaired, and the disc test on one component.
#include <cstring>
#include <memory>

#include "Pictrace.h"
#include "outline/ComponentList.h"
#include "outline/CrossingRepair.h"
#include "outline/DiscFit.h"
#include "outline/OutlineStage.h"
#include "core/OutlineRecords.h"

namespace outline {

void ClearComponents(std::list<CConComponent*>& listComp) {
  while (!listComp.empty()) {
    delete listComp.front();
    listComp.pop_front();
  }
}

void FloodComponents(const pictrace::ImageView& img, const int* pHostMask, const unsigned char* pMask,
                     int* labels, sPoint* queue, std::list<CConComponent*>& listComp) {
  const int W = img.width, H = img.height;
  const size_t n = static_cast<size_t>(W) * H;
  // Any nonzero value counts as visited; pixels the host masks never join.
  if (pHostMask)
    std::memcpy(labels, pHostMask, n * sizeof(int));
  else
    std::memset(labels, 0, n * sizeof(int));
  if (pMask)
    for (size_t i = 0; i < n; i++)
      if (pMask[i] == 2) labels[i] = 1;

  static const int dx[4] = {-1, 0, 0, 1};  // left, up, down, right
  static const int dy[4] = {0, -1, 1, 0};
  for (int y = 0; y < H; y++) {
    for (int x = 0; x < W; x++) {
      size_t seed = static_cast<size_t>(y) * W + x;
      if (labels[seed] != 0) continue;
      if (pMask && pMask[seed] == 1) continue;  // absorbing pixels never seed
      labels[seed] = 1;
      const unsigned char* c = img.Pixel(x, y);
      const unsigned char b0 = c[0], b1 = c[1], b2 = c[2];
      int head = 0, tail = 0;
      queue[tail++] = sPoint{static_cast<short>(x), static_cast<short>(y)};
      int left = 100000, top = 100000, right = -1, bottom = -1;
      while (head < tail) {
        sPoint p = queue[head++];
        if (p.x < left) left = p.x;
        if (p.x > right) right = p.x;
        if (p.y < top) top = p.y;
        if (p.y > bottom) bottom = p.y;
        size_t pi = static_cast<size_t>(p.y) * W + p.x;
        if (pMask && pMask[pi] == 1) continue;  // absorbed, not expanded
        for (int k = 0; k < 4; k++) {
          int nx = p.x + dx[k], ny = p.y + dy[k];
          if (nx < 0 || ny < 0 || nx >= W || ny >= H) continue;
          size_t ni = static_cast<size_t>(ny) * W + nx;
          if (labels[ni] != 0) continue;
          const unsigned char* q = img.Pixel(nx, ny);
          if ((q[0] == b0 && q[1] == b1 && q[2] == b2) || (pMask && pMask[ni] == 1)) {
            labels[ni] = 1;
            queue[tail++] = sPoint{static_cast<short>(nx), static_cast<short>(ny)};
          }
        }
      }
      CConComponent* comp = new CConComponent;
      comp->m_pPoints = new sPoint[tail];
      std::memcpy(comp->m_pPoints, queue, sizeof(sPoint) * static_cast<size_t>(tail));
      comp->m_nPoints = tail;
      comp->m_crColor = RGB(b2, b1, b0);
      comp->m_rcBound.SetRect(left, top, right, bottom);
      listComp.push_back(comp);
    }
  }
}

int ComponentList(const OutlineInput& in, std::list<CConComponent*>& listComp, unsigned char* pMask) {
  if (!Usable(in)) return 0;
  const pictrace::ImageView& img = in.image;
  ClearComponents(listComp);

  const size_t n = static_cast<size_t>(img.width) * img.height;
  std::unique_ptr<int[]> labels(new int[n]);
  std::unique_ptr<sPoint[]> queue(new sPoint[n]);
  FloodComponents(img, in.hostMask, pMask, labels.get(), queue.get(), listComp);

  int i = 0;
  for (CConComponent* comp : listComp) {
    comp->m_nIndex = i;
    for (int k = 0; k < comp->m_nPoints; k++)
      labels[static_cast<size_t>(comp->m_pPoints[k].y) * img.width + comp->m_pPoints[k].x] = i;
    i++;
  }

  int repairs = RepairCrossings(labels.get(), img.width, img.height, img.bits, static_cast<int>(img.stride));
  // With a repair the list built before it is returned: the caller rebuilds
  // after its next clean-up pass. Without one, building again from the same
  // image and masks would give the very same components, only unnumbered.
  if (repairs == 0)
    for (CConComponent* comp : listComp) comp->m_nIndex = -1;
  return 1;
}

}  // namespace outline

int CPictrace::GetCompList(std::list<CConComponent*>& listComp, unsigned char* pMask) {
  return outline::ComponentList(outline::InputOf(*this), listComp, pMask);
}

int CPictrace::BeCross24(int* pLabels, int nHeight, int nWidth, int nRow, int nCol) {
  if (!pLabels) return 0;
  return outline::IsCross24(pLabels, nHeight, nWidth, nRow, nCol) ? 1 : 0;
}

int CPictrace::BeCross13(int* pLabels, int nHeight, int nWidth, int nRow, int nCol) {
  if (!pLabels) return 0;
  return outline::IsCross13(pLabels, nHeight, nWidth, nRow, nCol) ? 1 : 0;
}

int CPictrace::DeflateComponent(CConComponent* pComp, sPoint* pOffsets, int nOffsets, int nWidth,
                                int nHeight, unsigned char* pScratch) {
  if (!pComp || !pScratch || (nOffsets > 0 && !pOffsets)) return 0;
  return outline::HoldsDisc(pComp, pOffsets, nOffsets, nWidth, nHeight, pScratch) ? 1 : 0;
}
