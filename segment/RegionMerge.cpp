// The merge value of two neighbouring regions, its refreshes, and the merge
// itself with its link bookkeeping.
#include <cmath>
#include <cstdint>

#include "Pictrace.h"
#include "segment/RegionGraph.h"

namespace {

// Ward's cost of joining two regions: the growth of the summed squared
// error. Products and sums of sizes are formed in 64 bits.
double WardCost(const CRegion* a, const CRegion* b) {
  double dr = static_cast<double>(a->m_fRed) - b->m_fRed;
  double dg = static_cast<double>(a->m_fGreen) - b->m_fGreen;
  double db = static_cast<double>(a->m_fBlue) - b->m_fBlue;
  std::uint64_t product = static_cast<std::uint64_t>(a->m_nSize) * b->m_nSize;
  std::uint64_t sum = static_cast<std::uint64_t>(a->m_nSize) + b->m_nSize;
  return static_cast<double>(product) * (dr * dr + dg * dg + db * db) / static_cast<double>(sum);
}

// 50 exp(-n / 60) for the small sizes that nearly every merge value
// involves, computed once by the same expression; larger sizes compute it
// afresh.
class SmallRegionBonus {
 public:
  SmallRegionBonus() {
    for (DWORD n = 0; n < kTable; n++) m_value[n] = Compute(n);
  }
  double operator()(DWORD n) const { return n < kTable ? m_value[n] : Compute(n); }

 private:
  static double Compute(DWORD n) { return 50.0 * std::exp(-static_cast<double>(n) / 60.0); }
  static constexpr DWORD kTable = 2048;
  double m_value[kTable];
};

const SmallRegionBonus& Bonus() {
  static const SmallRegionBonus s_bonus;
  return s_bonus;
}

// The merge value of a region with the region behind one of its links (see
// CombineDec), with the bonus table fetched once by the caller; inlined
// into the refresh loops.
inline float MergeValue(const SmallRegionBonus& bonus, const CRegion* a, const CNodeNeighbor* link, double dFactor) {
  const CRegion* other = link->m_pRegion;
  double cost = WardCost(a, other);
  DWORD nmin = a->m_nSize < other->m_nSize ? a->m_nSize : other->m_nSize;
  return static_cast<float>(cost - dFactor * (bonus(nmin) + link->m_nWeakEdges));
}

CNodeNeighbor* FindLink(CRegion* owner, const CRegion* target) {
  for (CNodeNeighbor* l = owner->m_pNeighbors; l; l = l->m_pNext)
    if (l->m_pRegion == target) return l;
  return nullptr;
}

}  // namespace

// Negative means the merge is wanted: the colour cost is outweighed by the
// scale-weighted bonus for small regions and for a border without strong
// edges.
float CPictrace::CombineDec(CRegion* pRegion, CNodeNeighbor* pLink, double dFactor) {
  return MergeValue(Bonus(), pRegion, pLink, dFactor);
}

// While one region's links are valued, the regions behind the next
// region's links are already being fetched; the values are the same.
void CPictrace::RemovingDecrease(double dFactor) {
  const SmallRegionBonus& bonus = Bonus();
  for (CRegion* r = m_pRegionHead; r; r = r->m_pNext) {
    if (r->m_pNext)
      for (const CNodeNeighbor* l = r->m_pNext->m_pNeighbors; l; l = l->m_pNext) PrefetchNode(&l->m_pRegion->m_nSize);
    r->m_fDecrease = 0.0f;
    r->m_pBestNeighbor = nullptr;
    for (CNodeNeighbor* l = r->m_pNeighbors; l; l = l->m_pNext) {
      l->m_fDecrease = MergeValue(bonus, r, l, dFactor);
      if (l->m_fDecrease < r->m_fDecrease) {  // ties keep the earlier link
        r->m_pBestNeighbor = l;
        r->m_fDecrease = l->m_fDecrease;
      }
    }
  }
}

// Only the links of the grown region are recomputed. Its neighbours get the
// new value on their link back and re-pick their best among values they
// already hold; their other links are deliberately left stale, and a best
// link is not cleared when nothing is negative any more.
void CPictrace::UpdateRemovingDecrease(CRegion* pRegion, double dFactor) {
  // A neighbour's re-pick reads only its own links, none of which is the
  // grown region's, so the two passes leave what one interleaved walk would.
  RefreshOwnValues(pRegion, dFactor);
  RefreshLinksBack(pRegion);
}

float MergeValueOf(const CRegion* pRegion, const CNodeNeighbor* pLink, double dFactor) {
  return MergeValue(Bonus(), pRegion, pLink, dFactor);
}

// The two halves of UpdateRemovingDecrease, also called apart by a caller
// that lets a region grow several times before its neighbours look at it:
// the values of the neighbours' other links do not depend on the grown
// region, so refreshing them once with its last values gives the same
// values as a refresh after every merge (a neighbour whose value ends at 0
// or more may keep another best link, which nothing reads then).
void RefreshOwnValues(CRegion* pRegion, double dFactor) {
  const SmallRegionBonus& bonus = Bonus();
  pRegion->m_fDecrease = 0.0f;
  for (CNodeNeighbor* l = pRegion->m_pNeighbors; l; l = l->m_pNext) {
    if (l->m_pNext) PrefetchNode(&l->m_pNext->m_pRegion->m_nSize);
    float v = MergeValue(bonus, pRegion, l, dFactor);
    l->m_fDecrease = v;
    if (v < pRegion->m_fDecrease) {
      pRegion->m_pBestNeighbor = l;
      pRegion->m_fDecrease = v;
    }
  }
}

void RefreshLinksBack(CRegion* pRegion) {
  for (CNodeNeighbor* l = pRegion->m_pNeighbors; l; l = l->m_pNext) {
    if (l->m_pNext) PrefetchNode(l->m_pNext->m_pRegion->m_pNeighbors);
    CRegion* x = l->m_pRegion;
    x->m_fDecrease = 0.0f;
    for (CNodeNeighbor* xl = x->m_pNeighbors; xl; xl = xl->m_pNext) {
      if (xl->m_pRegion == pRegion) xl->m_fDecrease = l->m_fDecrease;
      if (xl->m_fDecrease < x->m_fDecrease) {
        x->m_pBestNeighbor = xl;
        x->m_fDecrease = xl->m_fDecrease;
      }
    }
  }
}


// Steps 3 to 6 of a merge, once the links are handed over: cost, means,
// size, pixels, and B's leaving the list (moving the head when B is it).
double AbsorbRegion(CRegion* a, CRegion* b, CRegion*& pHead) {
  // 3.-4. The cost, then the size-weighted means (blue, green, red).
  double cost = WardCost(a, b);
  double na = a->m_nSize, nb = b->m_nSize;
  double n = static_cast<double>(static_cast<std::uint64_t>(a->m_nSize) + b->m_nSize);
  a->m_fBlue = static_cast<float>((na * a->m_fBlue + nb * b->m_fBlue) / n);
  a->m_fGreen = static_cast<float>((na * a->m_fGreen + nb * b->m_fGreen) / n);
  a->m_fRed = static_cast<float>((na * a->m_fRed + nb * b->m_fRed) / n);
  a->m_nSize += b->m_nSize;

  // 5. B's pixels follow A's.
  if (b->m_pPixelHead) {
    if (a->m_pPixelTail)
      a->m_pPixelTail->m_pNext = b->m_pPixelHead;
    else
      a->m_pPixelHead = b->m_pPixelHead;
    a->m_pPixelTail = b->m_pPixelTail;
  }

  // 6. B leaves the region list.
  if (b->m_pPrev)
    b->m_pPrev->m_pNext = b->m_pNext;
  else if (pHead == b)
    pHead = b->m_pNext;
  if (b->m_pNext) b->m_pNext->m_pPrev = b->m_pPrev;
  b->m_pNeighbors = nullptr;
  b->m_pPixelHead = nullptr;
  b->m_pPixelTail = nullptr;
  delete b;
  return cost;
}

double CPictrace::CombineRegion(CRegion* pRegion) {
  CRegion* a = pRegion;
  CNodeNeighbor* best = a->m_pBestNeighbor;
  if (!best) return 0.0;  // nothing chosen to merge
  CRegion* b = best->m_pRegion;
  // The neighbours of B are fetched while A's links are walked.
  for (const CNodeNeighbor* l = b->m_pNeighbors; l; l = l->m_pNext) PrefetchNode(&l->m_pRegion->m_pNeighbors);

  // 1. Drop A's link to B and find the tail of what remains.
  CNodeNeighbor** pp = &a->m_pNeighbors;
  while (*pp && *pp != best) pp = &(*pp)->m_pNext;
  if (!*pp) return 0.0;  // a best link that is not A's own: refuse rather than corrupt
  *pp = best->m_pNext;
  delete best;
  a->m_pBestNeighbor = nullptr;
  CNodeNeighbor* tail = a->m_pNeighbors;
  while (tail && tail->m_pNext) tail = tail->m_pNext;

  // 2. Hand B's links over to A.
  CNodeNeighbor* l = b->m_pNeighbors;
  b->m_pNeighbors = nullptr;
  while (l) {
    CNodeNeighbor* next = l->m_pNext;
    if (next) PrefetchNode(next->m_pRegion->m_pNeighbors);  // the next walk's first link
    CRegion* x = l->m_pRegion;
    if (x == a) {
      delete l;
    } else {
      if (MoveLinkToA(x, a, b)) {
        // The border X-B is now part of the border X-A on both sides.
        CNodeNeighbor* aToX = FindLink(a, x);
        if (aToX) aToX->m_nWeakEdges += l->m_nWeakEdges;
        delete l;
      } else {
        l->m_pNext = nullptr;
        if (tail)
          tail->m_pNext = l;
        else
          a->m_pNeighbors = l;
        tail = l;
      }
    }
    l = next;
  }

  return AbsorbRegion(a, b, m_pRegionHead);
}
