#include "segment/RegionGraph.h"

#include <cstdint>
#include <memory>
#include <vector>

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

namespace {

struct PackedRegion {
  float m_fDecrease;
  DWORD m_nSize;
  float m_fRed;
  float m_fGreen;
  float m_fBlue;
  int m_nBest;  // index among the region's links, or -1
  RegionPixel* m_pPixelHead;
  RegionPixel* m_pPixelTail;
  std::size_t m_nFirstLink;
};

struct PackedLink {
  std::uint32_t m_nTarget;  // a region number; a picture has fewer than 2^32 pixels
  float m_fDecrease;
  DWORD m_nWeakEdges;
};

// The links in blocks of fixed size: growing never copies them nor holds two
// buffers at once, and the blocks read go back while the new links are made.
class PackedLinks {
 public:
  void Add(const PackedLink& link) {
    if ((m_nSize & kMask) == 0) m_blocks.emplace_back(new PackedLink[kBlock]);
    m_blocks.back()[m_nSize & kMask] = link;
    m_nSize++;
  }
  const PackedLink& operator[](std::size_t k) const { return m_blocks[k >> kShift][k & kMask]; }
  std::size_t Size() const { return m_nSize; }
  // Frees the blocks wholly before link k.
  void DropBefore(std::size_t k) {
    for (std::size_t b = m_nDropped; b < (k >> kShift); b++) m_blocks[b].reset();
    if ((k >> kShift) > m_nDropped) m_nDropped = k >> kShift;
  }

 private:
  static const std::size_t kShift = 16;
  static const std::size_t kBlock = std::size_t(1) << kShift;
  static const std::size_t kMask = kBlock - 1;
  std::vector<std::unique_ptr<PackedLink[]>> m_blocks;
  std::size_t m_nSize = 0;
  std::size_t m_nDropped = 0;
};

}  // namespace

CRegion* RepackRegions(CRegion* pHead) {
  std::vector<CRegion*> old;
  for (CRegion* r = pHead; r; r = r->m_pNext) old.push_back(r);
  const std::size_t n = old.size();
  // While the links are read, each old region carries its number in m_pPrev.
  for (std::size_t i = 0; i < n; i++) old[i]->m_pPrev = reinterpret_cast<CRegion*>(static_cast<std::uintptr_t>(i));

  std::vector<PackedRegion> regions(n);
  PackedLinks links;
  // The old nodes go first (each link as soon as it is read), so that the
  // pool can hand out the new ones in address order when nothing else of
  // their size is live.
  for (std::size_t i = 0; i < n; i++) {
    CRegion* r = old[i];
    if (i + 1 < n)  // the numbers behind the next region's links are fetched meanwhile
      for (const CNodeNeighbor* l = old[i + 1]->m_pNeighbors; l; l = l->m_pNext) PrefetchNode(&l->m_pRegion->m_pPrev);
    PackedRegion& p = regions[i];
    p = PackedRegion{r->m_fDecrease, r->m_nSize, r->m_fRed, r->m_fGreen, r->m_fBlue, -1,
                     r->m_pPixelHead, r->m_pPixelTail, links.Size()};
    int k = 0;
    for (CNodeNeighbor* l = r->m_pNeighbors; l; k++) {
      if (l == r->m_pBestNeighbor && p.m_nBest < 0) p.m_nBest = k;
      links.Add(PackedLink{static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(l->m_pRegion->m_pPrev)),
                           l->m_fDecrease, l->m_nWeakEdges});
      CNodeNeighbor* next = l->m_pNext;
      delete l;
      l = next;
    }
    r->m_pNeighbors = nullptr;
    r->m_pPixelHead = nullptr;
    r->m_pPixelTail = nullptr;
  }
  for (CRegion* r : old) delete r;
  std::vector<CRegion*>().swap(old);

  std::vector<CRegion*> fresh(n);
  CRegion* head = nullptr;
  CRegion* last = nullptr;
  for (std::size_t i = 0; i < n; i++) {
    CRegion* r = new CRegion;
    const PackedRegion& p = regions[i];
    r->m_fDecrease = p.m_fDecrease;
    r->m_nSize = p.m_nSize;
    r->m_fRed = p.m_fRed;
    r->m_fGreen = p.m_fGreen;
    r->m_fBlue = p.m_fBlue;
    r->m_pPixelHead = p.m_pPixelHead;
    r->m_pPixelTail = p.m_pPixelTail;
    AppendRegion(head, last, r);
    fresh[i] = r;
  }
  for (std::size_t i = 0; i < n; i++) {
    CRegion* r = fresh[i];
    const std::size_t end = i + 1 < n ? regions[i + 1].m_nFirstLink : links.Size();
    links.DropBefore(regions[i].m_nFirstLink);
    CNodeNeighbor* tail = nullptr;
    for (std::size_t k = regions[i].m_nFirstLink; k < end; k++) {
      CNodeNeighbor* l = new CNodeNeighbor{fresh[links[k].m_nTarget], links[k].m_fDecrease, links[k].m_nWeakEdges, nullptr};
      if (tail)
        tail->m_pNext = l;
      else
        r->m_pNeighbors = l;
      tail = l;
      if (static_cast<std::size_t>(regions[i].m_nBest) == k - regions[i].m_nFirstLink) r->m_pBestNeighbor = l;
    }
  }
  return head;
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

void PaintRegion(const CRegion* r, unsigned char* bits, size_t stride, int w, int h, int blue,
                 int green, int red) {
  for (RegionPixel* p = r->m_pPixelHead; p; p = p->m_pNext) {
    if (p->x < 0 || p->x >= w || p->y < 0 || p->y >= h) continue;  // not of this picture
    unsigned char* px = bits + static_cast<size_t>(p->y) * stride + 3 * static_cast<size_t>(p->x);
    px[0] = static_cast<unsigned char>(blue);
    px[1] = static_cast<unsigned char>(green);
    px[2] = static_cast<unsigned char>(red);
  }
}
