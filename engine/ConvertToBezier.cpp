// Bezier conversion of a host's straight outlines: the lines' end points form
// a vertex chain, which is fitted and written back as Bezier lines in place.
#include <cmath>
#include <vector>

#include "Pictrace.h"
#include "curve/BezierFit.h"

namespace {

bool SamePoint(const CPTPoint& a, const CPTPoint& b) { return a.x == b.x && a.y == b.y; }

void Append(std::vector<double>& chain, const CPTPoint& p) {
  chain.push_back(p.x);
  chain.push_back(p.y);
}

// The chain of the lines: the first start, then every end. A line that does
// not start where the previous one ended contributes its start as well, so
// the chain still follows every line.
std::vector<double> ChainOfLines(const CPTLine* pLines, int nLines, bool bCloseLoop) {
  std::vector<double> chain;
  Append(chain, pLines[0].m_ptStart);
  for (int i = 0; i < nLines; i++) {
    if (i > 0 && !SamePoint(pLines[i].m_ptStart, pLines[i - 1].m_ptEnd)) Append(chain, pLines[i].m_ptStart);
    Append(chain, pLines[i].m_ptEnd);
  }
  if (bCloseLoop && !SamePoint(pLines[nLines - 1].m_ptEnd, pLines[0].m_ptStart))
    Append(chain, pLines[0].m_ptStart);
  return chain;
}

// Fits the lines and replaces the array; leaves it untouched when the lines
// hold fewer than two distinct points.
int ReplaceLines(CPTLine*& pLines, int& nLines, bool bCloseLoop, double dTolerance) {
  if (!pLines || nLines <= 0) return 0;
  std::vector<double> chain = ChainOfLines(pLines, nLines, bCloseLoop);
  int nSegments = 0;
  double* pSegments = pictrace::FitBezierChainD(chain.data(), static_cast<int>(chain.size() / 2) - 1,
                                                pictrace::kChainVertices, dTolerance, nSegments);
  if (nSegments <= 0 || !pSegments) {
    delete[] pSegments;
    return 0;
  }
  CPTLine* pNew = new CPTLine[nSegments];
  for (int i = 0; i < nSegments; i++) {
    const double* s = pSegments + 10 * static_cast<size_t>(i);
    CPTLine& line = pNew[i];
    line.m_nType = 1;
    CPTPoint* pts[4] = {&line.m_ptStart, &line.m_ptCtrl1, &line.m_ptCtrl2, &line.m_ptEnd};
    for (int k = 0; k < 4; k++) {
      pts[k]->x = static_cast<float>(s[2 * k]);
      pts[k]->y = static_cast<float>(s[2 * k + 1]);
    }
  }
  delete[] pSegments;
  delete[] pLines;
  pLines = pNew;
  nLines = nSegments;
  return 1;
}

}  // namespace

// The host's lines are in output units, the tolerance in pixels: it is scaled
// by the smaller of the two output scales that GetRegions uses, so that the
// curve stays within the tolerance in pixels along both axes. Without an
// image or an output rectangle the lines are taken to be in pixels.
static double ToleranceInOutputUnits(CPictrace& engine) {
  double tol = engine.m_dCurveTolerance;
  if (!(std::isfinite(tol) && tol > 0.0)) tol = 1.0;
  BITMAPINFOHEADER* pHeader = engine.GetBmpInfoHeader();
  if (!engine.HasDIBData() || pHeader->biWidth <= 0 || pHeader->biHeight <= 0) return tol;
  double sx = std::fabs(engine.m_rcImageReal.Width() * 1.0 / pHeader->biWidth);
  double sy = std::fabs(engine.m_rcImageReal.Height() * 1.0 / pHeader->biHeight);
  double scale = sx < sy ? sx : sy;
  return scale > 0.0 ? tol * scale : tol;
}

int CPictrace::ConvertToBezier(CPTPolygon* pPolygon) {
  if (!pPolygon) return 0;
  return ReplaceLines(pPolygon->m_pLines, pPolygon->m_nLines, true, ToleranceInOutputUnits(*this));
}

int CPictrace::ConvertToBezier(CPTPolygonLine* pLine) {
  if (!pLine) return 0;
  return ReplaceLines(pLine->m_pLines, pLine->m_nLines, false, ToleranceInOutputUnits(*this));
}
