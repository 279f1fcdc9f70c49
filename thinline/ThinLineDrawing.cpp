// Preview of the thin lines: each line one stroked path in its (thread)
// colour; a selected line is drawn as a white dotted path overlaid with a
// dashed path that inverts what lies under it, so it shows on any colour.
#include <climits>
#include <cmath>
#include <vector>

#include "Pictrace.h"
#include "thinline/ThinLineOrder.h"
#include "core/ThinLineRecords.h"

using namespace pictrace::thinline;

namespace {

// Truncation toward zero, held inside the int range so that an absurd
// rectangle cannot make the conversion undefined.
LONG TruncToDevice(double v) {
  if (std::isnan(v)) return 0;
  if (v >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (v <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<LONG>(v);
}

void StrokeFigure(CDC* pDC, const std::vector<POINT>& points, const std::vector<BYTE>& types) {
  pDC->BeginPath();
  pDC->PolyDraw(points.data(), types.data(), static_cast<int>(points.size()));
  pDC->EndPath();
  pDC->StrokePath();
}

}  // namespace

void CPictrace::DrawThinLine(CDC* pDC, CRect rcDest) {
  if (!pDC || m_bThinning == 0 || m_listThinLines.empty()) return;
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  if (width <= 0 || height <= 0) return;
  const double sx = rcDest.Width() * 1.0 / width;
  const double sy = rcDest.Height() * 1.0 / height;

  CPen nullPen(PS_NULL, 1, 0x0000FF);
  CPen* pOldPen = pDC->SelectObject(&nullPen);

  std::vector<POINT> points;
  std::vector<BYTE> types;
  ForEachThinLineByColor(*this, [&](COutlineThinline* pLine, int) {
    const CPTPolygonLine* pPoly = pLine->m_pPolygonLine;
    if (!pPoly || pPoly->m_nLines <= 0 || !pPoly->m_pLines) return;  // nothing to stroke
    DWORD color = pLine->m_crColor;
    if (m_nThreadColorCount > 0) GetNearestThreadColorFromList(color);

    const int n = pPoly->m_nLines + 1;
    points.assign(static_cast<size_t>(n), POINT{0, 0});
    types.assign(static_cast<size_t>(n), PT_LINETO);
    for (int j = 0; j < pPoly->m_nLines; j++) {
      const CPTLine& line = pPoly->m_pLines[j];
      points[j].x = TruncToDevice(rcDest.left + line.m_ptStart.x * sx);
      points[j].y = TruncToDevice(rcDest.top + line.m_ptStart.y * sy);
      points[j + 1].x = TruncToDevice(rcDest.left + line.m_ptEnd.x * sx);
      points[j + 1].y = TruncToDevice(rcDest.top + line.m_ptEnd.y * sy);
    }
    types[0] = PT_MOVETO;

    if (pLine->m_bSelected) {
      CPen dotPen(PS_DOT, 1, 0xFFFFFF);
      pDC->SelectObject(&dotPen);
      pDC->SetROP2(R2_COPYPEN);
      StrokeFigure(pDC, points, types);
      pDC->SelectObject(&nullPen);
      dotPen.DeleteObject();

      LOGBRUSH brush;
      brush.lbStyle = BS_SOLID;
      brush.lbColor = 0x000000;
      brush.lbHatch = 0;
      const DWORD dashes[2] = {2, 2};
      CPen dashPen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT, 1, &brush, 2, dashes);
      pDC->SelectObject(&dashPen);
      pDC->SetROP2(R2_NOTXORPEN);
      StrokeFigure(pDC, points, types);
      pDC->SelectObject(&nullPen);
      dashPen.DeleteObject();
    } else {
      CPen pen(PS_SOLID, 2, color);
      pDC->SelectObject(&pen);
      pDC->SetROP2(R2_COPYPEN);
      StrokeFigure(pDC, points, types);
      pDC->SelectObject(&nullPen);
      pen.DeleteObject();
    }
  });

  pDC->SelectObject(pOldPen);
  nullPen.DeleteObject();
}
