// Preview of the outline regions: each region is one GDI path of its outer
// outline and its holes, filled with the alternate rule so that the holes stay
// unpainted. Skipped (current list) and marked (stored list) regions are drawn
// lightened and crossed with a hatch.
#include <cmath>
#include <climits>
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"

namespace {

const COLORREF kHatchColor = 0xC8C8C8;

// Truncation toward zero, held inside the int range so that absurd
// coordinates cannot make the conversion undefined.
int TruncToDevice(double v) {
  if (std::isnan(v)) return 0;
  if (v >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (v <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<int>(v);
}

COLORREF LightenHalfway(COLORREF c) {
  return RGB((GetRValue(c) >> 1) + 128, (GetGValue(c) >> 1) + 128, (GetBValue(c) >> 1) + 128);
}

COLORREF LightenStrongly(COLORREF c) {
  return RGB(GetRValue(c) / 10 + 229, GetGValue(c) / 10 + 229, GetBValue(c) / 10 + 229);
}

// PolyDraw points of one region: every polygon in turn, the point layout
// following the engine's output line type (3L + 1 points for curves, L + 1
// for straight lines). A polygon without lines adds no figure.
struct RegionPath {
  std::vector<POINT> points;
  std::vector<BYTE> types;
  std::vector<int> figureSizes;  // points per polygon, for one PolyDraw each
};

void AppendPolygon(RegionPath& path, const CPTPolygon* pPolygon, bool bCurves, const CRect& rc,
                   double sx, double sy) {
  if (!pPolygon || pPolygon->m_nLines <= 0 || !pPolygon->m_pLines) return;
  const int nLines = pPolygon->m_nLines;
  const int nPoints = bCurves ? 3 * nLines + 1 : nLines + 1;
  const size_t first = path.points.size();
  path.points.resize(first + nPoints);
  path.types.resize(first + nPoints, bCurves ? PT_BEZIERTO : PT_LINETO);
  auto put = [&](int slot, const CPTPoint& p) {
    path.points[first + slot].x = TruncToDevice(rc.left + p.x * sx);
    path.points[first + slot].y = TruncToDevice(rc.top + p.y * sy);
  };
  for (int i = 0; i < nLines; i++) {
    const CPTLine& line = pPolygon->m_pLines[i];
    if (bCurves) {
      put(3 * i, line.m_ptStart);
      put(3 * i + 1, line.m_ptCtrl1);
      put(3 * i + 2, line.m_ptCtrl2);
      put(3 * i + 3, line.m_ptEnd);
    } else {
      put(i, line.m_ptStart);
      put(i + 1, line.m_ptEnd);
    }
  }
  path.types[first] = PT_MOVETO;
  path.types[first + nPoints - 1] |= PT_CLOSEFIGURE;
  path.figureSizes.push_back(nPoints);
}

void DrawPath(CDC* pDC, const RegionPath& path) {
  pDC->BeginPath();
  size_t offset = 0;
  for (int n : path.figureSizes) {
    pDC->PolyDraw(&path.points[offset], &path.types[offset], n);
    offset += static_cast<size_t>(n);
  }
  pDC->EndPath();
}

}  // namespace

void CPictrace::DrawPolygon(CDC* pDC, CRect rcDest, int bOutlineOnly, int bStored) {
  std::list<COutlineRegion*>& regions = bStored ? m_listStoredRegions : m_listOutlineRegions;
  const CDWordArray& colors = bStored ? m_arrStoredColorList : m_arrColorList;
  if (!pDC || regions.empty()) return;
  // The regions are in this image's pixels; without an image there is no
  // scale to draw them with.
  if (m_bmiHeader.biWidth <= 0 || m_bmiHeader.biHeight <= 0) return;

  const double sx = rcDest.Width() * 1.0 / m_bmiHeader.biWidth;
  const double sy = rcDest.Height() * 1.0 / m_bmiHeader.biHeight;
  const bool bCurves = m_nOutputLineType != 0;

  CPen nullPen(PS_NULL, 1, RGB(255, 0, 0));
  CPen* pOldPen = pDC->SelectObject(&nullPen);

  const int n = static_cast<int>(colors.GetSize());
  for (int c = 0; c < n; c++) {
    for (COutlineRegion* pRegion : regions) {
      if (pRegion->m_nColorIndex != c) continue;

      COLORREF color = pRegion->m_crColor;
      bool bFlagged;
      if (!bStored) {
        if (m_nThreadColorCount > 0) GetNearestThreadColorFromList(color);
        bFlagged = pRegion->m_bSkip != 0;
        if (bFlagged) color = LightenHalfway(color);
      } else {
        bFlagged = pRegion->m_bMarked != 0;
        if (bFlagged) color = LightenStrongly(color);
      }

      CBrush solidBrush(color);
      CBrush hatchBrush(HS_DIAGCROSS, kHatchColor);
      CPen solidPen(PS_SOLID, 1, color);

      RegionPath path;
      AppendPolygon(path, pRegion->m_pPolygon, bCurves, rcDest, sx, sy);
      for (INT_PTR k = 0; k < pRegion->m_arrHoles.GetSize(); k++)
        AppendPolygon(path, pRegion->m_arrHoles[k]->m_pPolygon, bCurves, rcDest, sx, sy);

      if (bOutlineOnly) {
        pDC->SelectObject(&solidPen);
        DrawPath(pDC, path);
        pDC->StrokePath();
        pDC->SelectObject(&nullPen);
      } else if (!bFlagged) {
        pDC->SetROP2(R2_COPYPEN);
        CBrush* pOldBrush = pDC->SelectObject(&solidBrush);
        int nOldFill = pDC->SetPolyFillMode(ALTERNATE);
        DrawPath(pDC, path);
        pDC->FillPath();
        pDC->SetPolyFillMode(nOldFill);
        pDC->SelectObject(pOldBrush);
      } else {
        int nOldFill = pDC->SetPolyFillMode(ALTERNATE);
        pDC->SetROP2(R2_COPYPEN);
        CBrush* pOldBrush = pDC->SelectObject(&solidBrush);
        DrawPath(pDC, path);
        pDC->FillPath();
        // The hatch is mixed in with NOTXOR, which leaves the pixels under
        // the (white) hatch background as they are. The mix mode is left in
        // place on purpose: the next plain region sets COPYPEN again.
        pDC->SetROP2(R2_NOTXORPEN);
        pDC->SelectObject(&hatchBrush);
        DrawPath(pDC, path);
        pDC->FillPath();
        pDC->SelectObject(pOldBrush);
        pDC->SetPolyFillMode(nOldFill);
        if (bStored) {
          CPen blackPen(PS_SOLID, 1, RGB(0, 0, 0));
          pDC->SelectObject(&blackPen);
          DrawPath(pDC, path);
          pDC->StrokePath();
          pDC->SelectObject(&nullPen);
          blackPen.DeleteObject();
        }
      }

      solidBrush.DeleteObject();
      hatchBrush.DeleteObject();
      solidPen.DeleteObject();
    }
  }

  pDC->SelectObject(pOldPen);
  nullPen.DeleteObject();
}
