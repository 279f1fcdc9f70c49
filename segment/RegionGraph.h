// The region adjacency graph of the pyramid segmentation: regions with
// intrusive pixel and link lists, and the snapshot of the block stage.
#pragma once

#include "core/NoCopy.h"
#include "AfxWin.h"
#include "segment/NodePool.h"

// One pixel of a region; rows are in DIB storage order.
struct RegionPixel {
  short x;
  short y;
  RegionPixel* m_pNext;
  PICTRACE_POOLED_NODE(RegionPixel)
};

class CRegion;

// A directed link from its owning region to one adjacent region.
class CNodeNeighbor {
 public:
  CRegion* m_pRegion;
  float m_fDecrease;    // merge value of the owner with m_pRegion
  DWORD m_nWeakEdges;   // border contacts that are not strong edges
  CNodeNeighbor* m_pNext;
  PICTRACE_POOLED_NODE(CNodeNeighbor)
};

// One node of the region graph. It owns its pixel nodes and its outgoing
// links; the engine's region list owns the regions.
class CRegion : private pictrace::NoCopy {
 public:
  CRegion();
  ~CRegion();

  float m_fDecrease;  // lowest negative merge value among the links, or 0
  CRegion* m_pNext;
  CRegion* m_pPrev;
  RegionPixel* m_pPixelHead;
  RegionPixel* m_pPixelTail;
  CNodeNeighbor* m_pNeighbors;
  CNodeNeighbor* m_pBestNeighbor;
  DWORD m_nSize;
  float m_fRed;
  float m_fGreen;
  float m_fBlue;
  PICTRACE_POOLED_NODE(CRegion)
};

struct CRegionSnapshot;

// A saved link of a saved region.
struct CSnapshotLink {
  CRegionSnapshot* m_pTarget;
  float m_fDecrease;
  DWORD m_nWeakEdges;
  CSnapshotLink* m_pNext;
  PICTRACE_POOLED_NODE(CSnapshotLink)
};

// A saved block-stage region.
struct CRegionSnapshot {
  float m_fDecrease;
  CRegionSnapshot* m_pNext;
  short* m_pPixels;  // (x, y) pairs in pixel order; array-new
  CSnapshotLink* m_pLinks;
  CRegion* m_pRestored;  // the region rebuilt from this record while restoring
  DWORD m_nSize;
  float m_fRed;
  float m_fGreen;
  float m_fBlue;
  PICTRACE_POOLED_NODE(CRegionSnapshot)
};

// Asks the memory system for the cache line at p ahead of its use; a hint
// only, without effect on any value.
inline void PrefetchNode(const void* p) {
#if defined(__GNUC__)
  __builtin_prefetch(p);
#else
  (void)p;
#endif
}

// X's side of merging B into A, in one walk over X's links: its first link
// to A and its first link to B. With both, the border X-B joins X-A (weak
// edges added, the B link removed); with only a B link, it now leads to A.
// Returns X's link to A, or null.
inline CNodeNeighbor* MoveLinkToA(CRegion* x, CRegion* a, CRegion* b) {
  CNodeNeighbor* toA = nullptr;
  CNodeNeighbor** toB = nullptr;
  for (CNodeNeighbor** xp = &x->m_pNeighbors; *xp; xp = &(*xp)->m_pNext) {
    if (!toA && (*xp)->m_pRegion == a) toA = *xp;
    if (!toB && (*xp)->m_pRegion == b) toB = xp;
    if (toA && toB) break;  // only the first of each is used
  }
  if (toA && toB) {
    CNodeNeighbor* gone = *toB;
    toA->m_nWeakEdges += gone->m_nWeakEdges;
    *toB = gone->m_pNext;
    delete gone;
  } else if (toB) {
    (*toB)->m_pRegion = a;
  }
  return toA;
}

// Moves a region list and the regions' links into fresh nodes, in list
// order and each region's links in their order, and returns the new head.
// Sizes, means, values, weak-edge counts, pixel lists and the order of
// regions and links stay as they were; a best link is carried over when it
// is one of the region's links and cleared otherwise (it is stale then).
// After many merges the survivors are scattered over the nodes of the
// seed graph; packed again, the walks over them stay within few cache lines.
// Every link must lead to a region of the list.
CRegion* RepackRegions(CRegion* pHead);
// Appends a region to a list under construction, given its head and its
// last region so far (both null for an empty list).
inline void AppendRegion(CRegion*& pHead, CRegion*& pLast, CRegion* pRegion) {
  pRegion->m_pPrev = pLast;
  if (pLast)
    pLast->m_pNext = pRegion;
  else
    pHead = pRegion;
  pLast = pRegion;
}

// The merge value of a region with the region behind one of its links
// (CombineDec).
float MergeValueOf(const CRegion* pRegion, const CNodeNeighbor* pLink, double dFactor);

// UpdateRemovingDecrease in two halves: the region's own links are valued
// and its best picked (from a zero value); then every neighbour's link back
// takes the value of the region's link to it and the neighbour re-picks its
// best among the values it holds.
void RefreshOwnValues(CRegion* pRegion, double dFactor);
void RefreshLinksBack(CRegion* pRegion);
// The end of a merge of B into A, once B's links are handed over: the
// cost, the size-weighted means, the size, B's pixels after A's, and B's
// leaving the list (pHead moves on when B is the head). Returns the cost.
double AbsorbRegion(CRegion* a, CRegion* b, CRegion*& pHead);

// Frees a whole region list, reading each successor before deleting.
void DeleteRegionList(CRegion* pHead);

// Writes one colour (blue, green, red) into every pixel of the region that
// lies in the w x h picture.
void PaintRegion(const CRegion* r, unsigned char* bits, size_t stride, int w, int h, int blue,
                 int green, int red);
// Frees a whole snapshot list with its links and pixel arrays.
void DeleteSnapshotList(CRegionSnapshot* pHead);
