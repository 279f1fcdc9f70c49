// Regions from the largest enclosed area to the smallest, and each region's
// colour tied to the nearest entry of the colour list.
#include <cstdint>
#include <vector>

#include "Pictrace.h"
#include "core/ColorDistance.h"
#include "core/OutlineRecords.h"
#include "outline/ExchangeSort.h"
#include "outline/OutlineStage.h"

namespace outline {

int SortRegions(std::list<COutlineRegion*>& listRegions) {
  if (listRegions.empty()) return 0;
  std::vector<COutlineRegion*> regions(listRegions.begin(), listRegions.end());
  listRegions.clear();

  for (COutlineRegion* r : regions) {
    if (r->m_nPoints > 2 && r->m_pPoints) {
      std::int64_t sum = 0;  // wide, so that no partial sum overflows
      for (int i = 0; i < r->m_nPoints; i++) {
        const sPoint& a = r->m_pPoints[i];
        const sPoint& b = r->m_pPoints[(i + 1) % r->m_nPoints];
        sum += static_cast<std::int64_t>(a.x) * b.y - static_cast<std::int64_t>(a.y) * b.x;
      }
      if (sum < 0) sum = -sum;
      r->m_nArea = sum > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(sum);
    } else {
      r->m_nArea = 0;
    }
  }

  // The exchange sort fixes the order of equal areas; another sort would
  // order them differently.
  std::vector<int> areas(regions.size());
  for (size_t k = 0; k < regions.size(); k++) areas[k] = regions[k]->m_nArea;
  for (int k : ExchangeSortOrder(areas)) listRegions.push_back(regions[k]);
  return 1;
}

void TieToColors(std::list<COutlineRegion*>& regions, const CDWordArray& colors) {
  if (regions.empty() || colors.GetSize() == 0) return;
  for (COutlineRegion* r : regions) {
    int best = 10000000, index = -1;
    for (INT_PTR k = 0; k < colors.GetSize(); k++) {
      const int d = pictrace::SquaredDistance(r->m_crColor, colors[k]);
      if (d < best) {
        best = d;
        index = static_cast<int>(k);
      }
    }
    r->m_nColorIndex = index;
    if (index >= 0) r->m_crColor = colors[index];
  }
}

}  // namespace outline

int CPictrace::SortRegionSeq(std::list<COutlineRegion*>& listRegions) {
  return outline::SortRegions(listRegions);
}

void CPictrace::SetOutlineColorIndex(std::list<COutlineRegion*>& /*listRegions*/) {
  // The engine's member keeps its contract: it always works on the current
  // regions, whatever list is passed. Stages that hold a list of their own
  // call TieToColors with it.
  outline::TieToColors(m_listOutlineRegions, m_arrColorList);
}
