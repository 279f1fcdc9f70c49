// Shared by the region and the thin-line output: straight lines through a
// chain of picture pixels, and the mapping of output lines into the host's
// output rectangle.
#pragma once

#include "Pictrace.h"
#include "core/OutlineRecords.h"

namespace pictrace {
namespace engine {

// Fills nLines straight lines, line i running from point i to point i + 1,
// with y measured from the picture's bottom edge.
inline void FillStraightLines(CPTLine* pLines, const sPoint* pPoints, int nLines, int nHeight) {
  for (int i = 0; i < nLines; i++) {
    CPTLine& line = pLines[i];
    line.m_nType = 0;
    line.m_ptStart.x = static_cast<float>(pPoints[i].x);
    line.m_ptStart.y = static_cast<float>(nHeight - pPoints[i].y);
    line.m_ptEnd.x = static_cast<float>(pPoints[i + 1].x);
    line.m_ptEnd.y = static_cast<float>(nHeight - pPoints[i + 1].y);
  }
}

// Output units per picture pixel across (sx) and down (sy). Without a
// picture, or with an output rectangle of no width or height, results stay
// in pixels.
inline void OutputScale(const CRect& rcReal, int nWidth, int nHeight, double& sx, double& sy) {
  sx = 1.0;
  sy = 1.0;
  if (nWidth > 0 && nHeight > 0) {
    sx = rcReal.Width() * 1.0 / nWidth;
    sy = rcReal.Height() * 1.0 / nHeight;
  }
  if (sx == 0.0 || sy == 0.0) sx = sy = 1.0;
}

// Copies a line and maps its four points (the control points of straight
// lines too) into the output rectangle rc.
inline void MapLine(CPTLine& dst, const CPTLine& src, const CRect& rc, double sx, double sy) {
  dst = src;
  for (CPTPoint* pt : {&dst.m_ptStart, &dst.m_ptCtrl1, &dst.m_ptCtrl2, &dst.m_ptEnd}) {
    pt->x = static_cast<float>(rc.left + pt->x * sx);
    pt->y = static_cast<float>(rc.top + pt->y * sy);
  }
}

}  // namespace engine
}  // namespace pictrace
