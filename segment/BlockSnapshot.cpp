// Saving the block-stage regions and rebuilding the region graph from the
// saved copy, so that a new sensitivity reruns only the pyramid stage.
#include <vector>

#include "Pictrace.h"
#include "segment/MergeIndex.h"
#include "segment/RegionGraph.h"

namespace {

void SaveRegions(CRegion* pHead, CRegionSnapshot*& pSaved) {
  DeleteSnapshotList(pSaved);
  pSaved = nullptr;
  RegionPositions pos(pHead);
  std::vector<CRegionSnapshot*> snaps(static_cast<size_t>(pos.Size()));
  CRegionSnapshot* last = nullptr;
  for (int i = 0; i < pos.Size(); i++) {
    const CRegion* r = pos.At(i);
    CRegionSnapshot* s = new CRegionSnapshot{r->m_fDecrease, nullptr, nullptr, nullptr, nullptr,
                                             r->m_nSize, r->m_fRed, r->m_fGreen, r->m_fBlue};
    s->m_pPixels = new short[2 * static_cast<size_t>(r->m_nSize)]();
    DWORD k = 0;
    for (const RegionPixel* p = r->m_pPixelHead; p && k < r->m_nSize; p = p->m_pNext, k++) {
      s->m_pPixels[2 * k] = p->x;
      s->m_pPixels[2 * k + 1] = p->y;
    }
    if (last)
      last->m_pNext = s;
    else
      pSaved = s;
    last = s;
    snaps[static_cast<size_t>(i)] = s;
  }
  for (int i = 0; i < pos.Size(); i++) {
    CSnapshotLink* tail = nullptr;
    for (const CNodeNeighbor* l = pos.At(i)->m_pNeighbors; l; l = l->m_pNext) {
      int t = pos.Of(l->m_pRegion);
      if (t < 0) continue;  // a link out of the list cannot be saved
      CSnapshotLink* sl = new CSnapshotLink{snaps[static_cast<size_t>(t)], l->m_fDecrease, l->m_nWeakEdges, nullptr};
      if (tail)
        tail->m_pNext = sl;
      else
        snaps[static_cast<size_t>(i)]->m_pLinks = sl;
      tail = sl;
    }
  }
}

CRegion* RestoreRegions(CRegionSnapshot* pSaved) {
  CRegion* head = nullptr;
  CRegion* last = nullptr;
  for (CRegionSnapshot* s = pSaved; s; s = s->m_pNext) {
    CRegion* r = new CRegion;
    r->m_fDecrease = s->m_fDecrease;
    r->m_nSize = s->m_nSize;
    r->m_fRed = s->m_fRed;
    r->m_fGreen = s->m_fGreen;
    r->m_fBlue = s->m_fBlue;
    for (DWORD k = 0; k < s->m_nSize; k++) {
      RegionPixel* p = new RegionPixel{s->m_pPixels[2 * k], s->m_pPixels[2 * k + 1], nullptr};
      if (r->m_pPixelTail)
        r->m_pPixelTail->m_pNext = p;
      else
        r->m_pPixelHead = p;
      r->m_pPixelTail = p;
    }
    AppendRegion(head, last, r);
    s->m_pRestored = r;
  }
  for (CRegionSnapshot* s = pSaved; s; s = s->m_pNext) {
    CNodeNeighbor* tail = nullptr;
    for (const CSnapshotLink* sl = s->m_pLinks; sl; sl = sl->m_pNext) {
      CNodeNeighbor* l = new CNodeNeighbor{sl->m_pTarget->m_pRestored, sl->m_fDecrease, sl->m_nWeakEdges, nullptr};
      if (tail)
        tail->m_pNext = l;
      else
        s->m_pRestored->m_pNeighbors = l;
      tail = l;
    }
  }
  return head;
}

}  // namespace

// The stored link values do not matter for the result: the pyramid stage
// recomputes all of them before it merges.
int CPictrace::CopyBlockRegions(int bSave) {
  if (bSave) {
    SaveRegions(m_pRegionHead, m_pBlockRegions);
  } else {
    DeleteRegionList(m_pRegionHead);
    m_pRegionHead = nullptr;
    m_pRegionHead = RestoreRegions(m_pBlockRegions);
  }
  return 1;
}
