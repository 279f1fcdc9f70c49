// Interactive marking: the region or thin line under a click, or all regions
// or lines of a colour, get a flag set or toggled; and the background frame.
#include <vector>

#include "Pictrace.h"
#include "core/BackgroundColor.h"
#include "core/ColorDistance.h"
#include "core/OutlineRecords.h"
#include "core/ThinLineRecords.h"

namespace {

using pictrace::SquaredDistance;

// Index of the list colour nearest to c; the first of equal distances wins.
int NearestIndex(const CDWordArray& list, DWORD c, long long& best) {
  best = 1000000;
  int index = -1;
  for (INT_PTR i = 0; i < list.GetSize(); i++) {
    const long long d = SquaredDistance(list[i], c);
    if (d < best) {
      best = d;
      index = static_cast<int>(i);
    }
  }
  return index;
}

bool OutsideBox(const sPoint& pt, const CRect& rc) {
  return pt.x < rc.left || pt.x > rc.right || pt.y < rc.top || pt.y > rc.bottom;
}

}  // namespace

int CPictrace::MarkRegion(int x, int y, int bStored) {
  if (x < 0 || y < 0 || x >= m_bmiHeader.biWidth || y >= m_bmiHeader.biHeight) return 0;
  std::list<COutlineRegion*>& regions = bStored ? m_listStoredRegions : m_listOutlineRegions;
  sPoint pt{static_cast<short>(x), static_cast<short>(y)};
  // The region drawn last lies on top: it is found first.
  for (auto it = regions.rbegin(); it != regions.rend(); ++it) {
    COutlineRegion* pRegion = *it;
    if (!IsPointInRegion(pt, pRegion)) continue;
    int& flag = bStored ? pRegion->m_bMarked : pRegion->m_bSkip;
    flag = (flag == 0) ? 1 : 0;
    return 1;
  }
  return 0;
}

int CPictrace::MarkLine(int x, int y) {
  if (m_listThinLines.empty()) return 0;
  if (x < 0 || y < 0 || x >= m_bmiHeader.biWidth || y >= m_bmiHeader.biHeight) return 0;
  sPoint pt{static_cast<short>(x), static_cast<short>(y)};
  for (auto it = m_listThinLines.rbegin(); it != m_listThinLines.rend(); ++it) {
    COutlineThinline* pLine = *it;
    if (!IsPointInLine(pt, pLine)) continue;
    pLine->m_bSelected = (pLine->m_bSelected == 0) ? 1 : 0;
    return 1;
  }
  return 0;
}

int CPictrace::IsPointInRegion(sPoint& pt, COutlineRegion* pRegion) {
  if (!pRegion || OutsideBox(pt, pRegion->m_rcBound)) return 0;
  if (!IsPointInOutline(pt, pRegion->m_pPoints, pRegion->m_nPoints)) return 0;
  for (INT_PTR i = 0; i < pRegion->m_arrHoles.GetSize(); i++) {
    CHole* pHole = pRegion->m_arrHoles[i];
    if (pHole && IsPointInOutline(pt, pHole->m_pPoints, pHole->m_nPoints)) return 0;
  }
  return 1;
}

// Only the vertices are tested, and the box is not widened by the three
// pixels: a click beside an extreme vertex but outside the box misses.
int CPictrace::IsPointInLine(sPoint& pt, COutlineThinline* pLine) {
  if (!pLine || !pLine->m_pVector) return 0;
  const COutlineVector* pVector = pLine->m_pVector;
  if (OutsideBox(pt, pVector->m_rcBound) || !pVector->m_pPoints) return 0;
  for (int i = 0; i < pVector->m_nPoints; i++) {
    const sPoint& v = pVector->m_pPoints[i];
    if (v.x - 3 <= pt.x && pt.x <= v.x + 3 && v.y - 3 <= pt.y && pt.y <= v.y + 3) return 1;
  }
  return 0;
}

void CPictrace::MarkRegions(DWORD color, int nValue, int bStored) {
  CWordArray indices;
  for (INT_PTR i = 0; i < m_arrColorList.GetSize(); i++) {
    if (bStored) {
      if (m_arrColorList[i] == color) {
        indices.Add(static_cast<WORD>(i));
        break;
      }
    } else if (i < m_arrNearestColors.GetSize() && m_arrNearestColors[i] == color) {
      indices.Add(static_cast<WORD>(i));
    }
  }
  std::list<COutlineRegion*>& regions = bStored ? m_listStoredRegions : m_listOutlineRegions;
  const long long radius2 = static_cast<long long>(m_nColorRadius) * m_nColorRadius;

  if (indices.GetSize() == 0) {
    for (COutlineRegion* pRegion : regions) {
      const long long d = SquaredDistance(pRegion->m_crColor, color);
      if (d > radius2) continue;
      if (!bStored)
        pRegion->m_bSkip = nValue;
      else if (d == 0)
        pRegion->m_bMarked = nValue;
    }
    return;
  }
  // A region's nearest list colour does not depend on k: found once each.
  for (COutlineRegion* pRegion : regions) {
    long long best = 0;
    const int nearest = NearestIndex(m_arrColorList, pRegion->m_crColor, best);
    for (INT_PTR k = 0; k < indices.GetSize(); k++) {
      if (nearest != static_cast<int>(indices[k])) continue;
      if (!bStored)
        pRegion->m_bSkip = nValue;
      else if (best == 0)
        pRegion->m_bMarked = nValue;
    }
  }
}

void CPictrace::MarkLines(DWORD color, int nValue) {
  CWordArray indices;
  for (INT_PTR i = 0; i < m_arrLineColors.GetSize(); i++)
    if (i < m_arrNearestLineColors.GetSize() && m_arrNearestLineColors[i] == color)
      indices.Add(static_cast<WORD>(i));

  if (indices.GetSize() == 0) {
    const long long radius2 = static_cast<long long>(m_nColorRadius) * m_nColorRadius;
    for (COutlineThinline* pLine : m_listThinLines)
      if (SquaredDistance(pLine->m_crColor, color) <= radius2) pLine->m_bSelected = nValue;
    return;
  }
  for (COutlineThinline* pLine : m_listThinLines) {
    long long best = 0;
    const int nearest = NearestIndex(m_arrLineColors, pLine->m_crColor, best);
    for (INT_PTR k = 0; k < indices.GetSize(); k++)
      if (nearest == static_cast<int>(indices[k])) pLine->m_bSelected = nValue;
  }
}

void CPictrace::MarkBackground() {
  const pictrace::FrameTest touchesFrame(m_bmiHeader.biWidth, m_bmiHeader.biHeight);
  COLORREF background = 0;
  if (!pictrace::FindBackgroundColor(m_listOutlineRegions, touchesFrame, background)) return;
  for (COutlineRegion* pRegion : m_listOutlineRegions)
    if (touchesFrame(pRegion) && pRegion->m_crColor == background) pRegion->m_bSkip = 1;
}
