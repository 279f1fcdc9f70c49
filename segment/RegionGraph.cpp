#include "segment/RegionGraph.h"

CRegion::CRegion()
    : m_fDecrease(0.0f),
      m_pNext(nullptr),
      m_pPrev(nullptr),
      m_pPixelHead(nullptr),
      m_pPixelTail(nullptr),
      m_pNeighbors(nullptr),
      m_pBestNeighbor(nullptr),
      m_nSize(1),
      m_fRed(0.0f),
      m_fGreen(0.0f),
      m_fBlue(0.0f) {}

CRegion::~CRegion() {
  for (RegionPixel* p = m_pPixelHead; p;) {
    RegionPixel* next = p->m_pNext;
    delete p;
    p = next;
  }
  for (CNodeNeighbor* l = m_pNeighbors; l;) {
    CNodeNeighbor* next = l->m_pNext;
    delete l;
    l = next;
  }
}

void DeleteRegionList(CRegion* pHead) {
  while (pHead) {
    CRegion* next = pHead->m_pNext;
    delete pHead;
    pHead = next;
  }
}

void DeleteSnapshotList(CRegionSnapshot* pHead) {
  while (pHead) {
    CRegionSnapshot* next = pHead->m_pNext;
    for (CSnapshotLink* l = pHead->m_pLinks; l;) {
      CSnapshotLink* nl = l->m_pNext;
      delete l;
      l = nl;
    }
    delete[] pHead->m_pPixels;
    delete pHead;
    pHead = next;
  }
}

// The records keep their declared layouts; the pool adds no per-node header.
static_assert(sizeof(void*) != 8 || sizeof(RegionPixel) == 16, "RegionPixel layout");
static_assert(sizeof(void*) != 8 || sizeof(CNodeNeighbor) == 24, "CNodeNeighbor layout");
static_assert(sizeof(void*) != 8 || sizeof(CRegion) == 72, "CRegion layout");
