#include "segment/GreedyMerge.h"

#include <limits>
#include <vector>

#include "segment/MergeIndex.h"
#include "segment/RegionGraph.h"

namespace {

enum FitState : unsigned char { kNone, kQualifies, kBlocked };

// The best link is read only when the value is negative: otherwise it may
// point at a link that a merge has freed.
FitState StateOf(const CRegion* r, DWORD nLimit) {
  if (!(r->m_fDecrease < 0.0f)) return kNone;
  if (r->m_nSize <= nLimit && r->m_pBestNeighbor->m_pRegion->m_nSize <= nLimit) return kQualifies;
  return kBlocked;
}

// Merges the region at index position q: the absorbed region leaves the
// index, and the grown region and its neighbours, the only regions whose
// state a merge changes, are refreshed (refresh(i, nullptr) for the one that
// leaves). Returns the grown region.
template <typename Refresh>
CRegion* MergeAt(RegionPositions& pos, int q, const MergeStep& merge, GreedyCounts& counts,
                 Refresh refresh) {
  CRegion* a = pos.At(q);
  int b = pos.Of(a->m_pBestNeighbor->m_pRegion);
  merge(a);
  counts.merges++;
  if (b >= 0) {
    refresh(b, nullptr);
    pos.Remove(b);
  }
  refresh(q, a);
  for (CNodeNeighbor* l = a->m_pNeighbors; l; l = l->m_pNext) {
    int x = pos.Of(l->m_pRegion);
    if (x >= 0) refresh(x, l->m_pRegion);
  }
  return a;
}

// The cursor walk both greedy loops share. step(p) looks for the next merge
// at or after position p; it makes it and returns the grown region with p
// moved to where it stands, or returns null when there is none. The walk
// then starts again at the head, unless it already stands there.
template <class Step>
void WalkFromHead(RegionPositions& pos, CRegion* const& pHead, Step step) {
  CRegion* cursor = pHead;
  int p = pos.Of(pHead);
  while (cursor) {
    if (CRegion* grown = step(p)) {
      cursor = grown;
    } else if (cursor != pHead) {
      cursor = pHead;
      p = pos.Of(pHead);
    } else {
      break;
    }
  }
}

}  // namespace

// After a merge only the grown region and its neighbours change (value,
// best link, size behind the best link), and the absorbed region leaves;
// every other region keeps its state, so the index stays exact by
// refreshing exactly those. While the grown region qualifies again, the
// next scan (from it) takes it again at once and reads no other region, so
// its neighbours are settled only when the run of merges ends.
GreedyCounts MergeFirstFitIndexed(RegionPositions& pos, CRegion* const& pHead, DWORD nLimit,
                                  const GrowSteps& steps) {
  GreedyCounts counts;
  const int n = pos.Size();
  std::vector<unsigned char> isQualified(static_cast<size_t>(n), 0), isBlocked(static_cast<size_t>(n), 0);
  std::vector<FitState> state(static_cast<size_t>(n), kNone);
  for (int i = 0; i < n; i++) {
    if (!pos.At(i)) continue;
    FitState s = StateOf(pos.At(i), nLimit);
    state[static_cast<size_t>(i)] = s;
    isQualified[static_cast<size_t>(i)] = s == kQualifies;
    isBlocked[static_cast<size_t>(i)] = s == kBlocked;
  }
  PositionCounter qualifies(isQualified), blocked(isBlocked);
  auto setState = [&](int i, FitState s) {
    FitState& old = state[static_cast<size_t>(i)];
    if (old == s) return;
    if (old == kQualifies) qualifies.Add(i, -1);
    if (old == kBlocked) blocked.Add(i, -1);
    if (s == kQualifies) qualifies.Add(i, 1);
    if (s == kBlocked) blocked.Add(i, 1);
    old = s;
  };

  WalkFromHead(pos, pHead, [&](int& p) -> CRegion* {
    if (steps.stop && steps.stop()) return nullptr;
    int q = qualifies.FindNth(qualifies.CountBelow(p) + 1);  // n when none
    counts.blocked += static_cast<std::uint64_t>(blocked.CountBelow(q) - blocked.CountBelow(p));
    if (q >= n) return nullptr;
    p = q;
    CRegion* a = pos.At(q);
    do {
      int b = pos.Of(a->m_pBestNeighbor->m_pRegion);
      steps.grow(a);
      counts.merges++;
      if (b >= 0) {
        setState(b, kNone);
        pos.Remove(b);
      }
    } while (StateOf(a, nLimit) == kQualifies);
    steps.settle(a);
    setState(q, StateOf(a, nLimit));
    for (CNodeNeighbor* l = a->m_pNeighbors; l; l = l->m_pNext) {
      int x = pos.Of(l->m_pRegion);
      if (x >= 0) setState(x, StateOf(l->m_pRegion, nLimit));
    }
    return a;
  });
  return counts;
}

GreedyCounts MergeGlobalMinIndexed(RegionPositions& pos, CRegion* const& pHead, const MergeStep& merge) {
  GreedyCounts counts;
  const int n = pos.Size();
  std::vector<float> initial(static_cast<size_t>(n), std::numeric_limits<float>::infinity());
  for (int i = 0; i < n; i++)
    if (pos.At(i)) initial[static_cast<size_t>(i)] = pos.At(i)->m_fDecrease;
  LeftmostMinTree values(initial);

  WalkFromHead(pos, pHead, [&](int& p) -> CRegion* {
    float min = values.MinFrom(p);
    if (!(min < 0.0f)) return nullptr;
    p = values.FirstAtMost(p, min);
    return MergeAt(pos, p, merge, counts, [&](int i, CRegion* r) {
      values.Set(i, r ? r->m_fDecrease : std::numeric_limits<float>::infinity());
    });
  });
  return counts;
}
