// The greedy loops of one scale written literally, each scan walking the list
// from the cursor: the reference the indexed loops of segment/GreedyMerge.cpp
// must follow step for step. The candidate a scan finds is merged and the next
// scan starts at it; one that finds nothing goes back to the head, unless it
// started there, and then the scale ends.
#pragma once

#include "segment/GreedyMerge.h"
#include "segment/RegionGraph.h"

template <typename Scan>
GreedyCounts MergeFromCursor(CRegion* const& pHead, const MergeStep& merge, Scan scan) {
  GreedyCounts counts;
  for (CRegion* cursor = pHead; cursor;) {
    if (CRegion* found = scan(cursor, counts)) {
      merge(found);
      counts.merges++;
      cursor = found;
    } else {
      cursor = cursor != pHead ? pHead : nullptr;
    }
  }
  return counts;
}

// The first negative value whose region and best neighbour both hold at
// most nLimit pixels; every other negative one met counts as a skip.
inline GreedyCounts MergeFirstFitScan(CRegion* const& pHead, DWORD nLimit, const MergeStep& merge) {
  return MergeFromCursor(pHead, merge, [nLimit](CRegion* cursor, GreedyCounts& counts) -> CRegion* {
    for (CRegion* r = cursor; r; r = r->m_pNext)
      if (r->m_fDecrease < 0.0f) {
        if (r->m_nSize <= nLimit && r->m_pBestNeighbor->m_pRegion->m_nSize <= nLimit) return r;
        counts.blocked++;
      }
    return nullptr;
  });
}

// The lowest negative value from the cursor on, the earliest of equal ones.
inline GreedyCounts MergeGlobalMinScan(CRegion* const& pHead, const MergeStep& merge) {
  return MergeFromCursor(pHead, merge, [](CRegion* cursor, GreedyCounts&) {
    CRegion* found = nullptr;
    for (CRegion* r = cursor; r; r = r->m_pNext) found = r->m_fDecrease < (found ? found->m_fDecrease : 0.0f) ? r : found;
    return found;
  });
}
