// The greedy merging loops of the pyramid segmentation at one scale.
//
// Both loops start their cursor at the head, look for a candidate from the
// cursor to the end of the list, merge it with its best neighbour, and
// resume at the region that grew; only a scan from the head that finds
// nothing ends the scale. The block stage takes the first region that
// qualifies under the size limit; the pyramid stage takes the region with
// the lowest value (the earliest of equal ones).
//
// The loops are indexed: they find the candidate that a literal walk of the
// list from the cursor would find, and count the same skips, without
// walking the list (the literal walk is quadratic in the region count on
// photographs). They take the positions of the regions, built once for a
// whole stage (scale after scale) and kept up to date as regions merge
// away.
#pragma once

#include <cstdint>
#include <functional>

#include "AfxWin.h"

class CRegion;
class RegionPositions;

// Merges the candidate's best neighbour into it and refreshes the values
// around it (CombineRegion, then UpdateRemovingDecrease).
using MergeStep = std::function<void(CRegion* pCandidate)>;

struct GreedyCounts {
  std::uint64_t merges = 0;
  std::uint64_t blocked = 0;  // skips for size, counted in every scan that meets them
};

// The block stage's merge in two steps: grow merges the candidate's best
// neighbour into it and values the candidate's own links (CombineRegion,
// then RefreshOwnValues); settle gives its neighbours their links back and
// lets them re-pick (RefreshLinksBack). A region that grows several times
// in a row is settled once, after the last.
struct GrowSteps {
  MergeStep grow;
  MergeStep settle;
  std::function<bool()> stop;  // when set and true, the scale ends early
};

// Block stage: a region qualifies when its value is negative and both it
// and the region behind its best link hold at most nLimit pixels.
GreedyCounts MergeFirstFitIndexed(RegionPositions& positions, CRegion* const& pHead, DWORD nLimit,
                                  const GrowSteps& steps);

// Pyramid stage: the lowest negative value from the cursor on.
GreedyCounts MergeGlobalMinIndexed(RegionPositions& positions, CRegion* const& pHead, const MergeStep& merge);
