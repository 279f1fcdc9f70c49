// Colour lists read from the outline regions: the colours of the current
// result, and the colours of the stored regions that thin lines take.
#include <algorithm>
#include <vector>

#include "Pictrace.h"
#include "core/ColorDistance.h"
#include "core/OutlineRecords.h"
#include "segment/ColorOrder.h"

namespace {
const size_t kMaxRegionColors = 100;  // a region list with more is not collected
const size_t kMaxListedColors = 50;   // the brightest this many are handed out
}  // namespace

void CPictrace::GetColorListFromRegion(int& nColors, CDWordArray* pList) {
  if (!HasDIBData() || m_listOutlineRegions.empty()) return;

  // Once round the list, so that it ends in its former order.
  std::vector<DWORD> colors;
  const size_t n = m_listOutlineRegions.size();
  for (size_t i = 0; i < n; i++) {
    COutlineRegion* region = m_listOutlineRegions.front();
    m_listOutlineRegions.pop_front();
    DWORD c = region->m_crColor;
    if (std::find(colors.begin(), colors.end(), c) == colors.end()) {
      if (colors.size() == kMaxRegionColors) {
        // A 101st colour ends the walk at once and the region just taken is
        // deliberately not put back; the list owns it, so it is freed.
        delete region;
        return;
      }
      colors.push_back(c);
    }
    m_listOutlineRegions.push_back(region);
  }

  // Near-duplicates: a later colour closer than the clustering radius to
  // any earlier one (marked or not) is dropped.
  const long long limit = static_cast<long long>(m_nColorRadius) * m_nColorRadius;
  std::vector<bool> removed(colors.size(), false);
  for (size_t i = 0; i < colors.size(); i++)
    for (size_t j = i + 1; j < colors.size(); j++)
      if (pictrace::SquaredDistance(colors[i], colors[j]) < limit) removed[j] = true;

  std::vector<DWORD> kept;
  for (size_t i = 0; i < colors.size(); i++)
    if (!removed[i]) kept.push_back(colors[i]);
  SortByBrightness(kept);
  if (kept.size() > kMaxListedColors) kept.resize(kMaxListedColors);
  PublishColors(kept, pList, m_arrColorList);
  nColors = static_cast<int>(kept.size());
}

// For each stored colour: listed once, by its first unmarked region; counted
// once, by its first region that does not list it (a marked one, or any
// after the listing one). The walk of a colour ends when both are done.
// Returns the count.
short CPictrace::SetLineColorList() {
  m_arrLineColors.RemoveAll();
  int result = 0;
  for (INT_PTR c = 0; c < m_arrStoredColorList.GetSize(); c++) {
    bool added = false, counted = false;
    for (COutlineRegion* region : m_listStoredRegions) {
      if (region->m_nColorIndex != c) continue;
      if (!added && region->m_bMarked == 0) {
        m_arrLineColors.Add(m_arrStoredColorList[c]);
        if (counted) break;
        added = true;
      } else if (!counted) {
        result++;
        if (added) break;
        counted = true;
      }
    }
  }
  return static_cast<short>(result);
}
