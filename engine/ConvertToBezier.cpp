// Bezier conversion of a host's straight outlines: the lines' end points form
// a vertex chain, which is fitted and written back as Bezier lines in place.
#include <cmath>
#include <vector>

#include <cstring>

#include "Pictrace.h"
#include "curve/BezierFit.h"
#include "engine/OwnCurves.h"
#include "engine/RegionOutput.h"

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

namespace {

std::uint64_t PointKey(const CPTPoint& p) {
  std::uint32_t x, y;
  std::memcpy(&x, &p.x, sizeof x);
  std::memcpy(&y, &p.y, sizeof y);
  return (static_cast<std::uint64_t>(x) << 32) | y;
}

bool SameLines(const CPTLine* a, int n, const std::vector<CPTLine>& b) {
  if (static_cast<size_t>(n) != b.size()) return false;
  for (int i = 0; i < n; i++)
    if (a[i].m_nType != b[i].m_nType || !SamePoint(a[i].m_ptStart, b[i].m_ptStart) || !SamePoint(a[i].m_ptEnd, b[i].m_ptEnd))
      return false;
  return true;
}

}  // namespace

// The curve output's curve of the current outline whose straight output the
// polygon is, or null. The outlines are taken once per output rectangle,
// tolerance and result (CreateOutputPolygon drops them).
static const std::vector<CPTLine>* OwnCurveOf(CPictrace& engine, const CPTPolygon& polygon) {
  if (engine.m_listOutlineRegions.empty() || polygon.m_nLines <= 0 || !polygon.m_pLines) return nullptr;
  COwnCurves*& own = engine.m_pOwnCurves;
  const int w = engine.m_bmiHeader.biWidth, h = engine.m_bmiHeader.biHeight;
  if (own && !(own->rect == engine.m_rcImageReal && own->tolerance == engine.m_dCurveTolerance && own->width == w &&
               own->height == h && own->regions == engine.m_listOutlineRegions.size())) {
    delete own;
    own = nullptr;
  }
  if (!own) {
    own = new COwnCurves;
    own->rect = engine.m_rcImageReal;
    own->tolerance = engine.m_dCurveTolerance;
    own->width = w;
    own->height = h;
    own->regions = engine.m_listOutlineRegions.size();
    using pictrace::engine::OutlinesInOutputUnits;
    own->straight = OutlinesInOutputUnits(engine.m_listOutlineRegions, 0, own->rect, w, h, own->tolerance);
    own->curves = OutlinesInOutputUnits(engine.m_listOutlineRegions, 1, own->rect, w, h, own->tolerance);
    for (size_t i = 0; i < own->straight.size(); i++)
      if (!own->straight[i].empty()) own->byStart.emplace(PointKey(own->straight[i][0].m_ptStart), i);
  }
  auto range = own->byStart.equal_range(PointKey(polygon.m_pLines[0].m_ptStart));
  for (auto it = range.first; it != range.second; ++it)
    if (SameLines(polygon.m_pLines, polygon.m_nLines, own->straight[it->second]) && !own->curves[it->second].empty())
      return &own->curves[it->second];
  return nullptr;
}

int CPictrace::ConvertToBezier(CPTPolygon* pPolygon) {
  if (!pPolygon) return 0;
  if (const std::vector<CPTLine>* own = OwnCurveOf(*this, *pPolygon)) {
    CPTLine* pNew = new CPTLine[own->size()];
    for (size_t i = 0; i < own->size(); i++) pNew[i] = (*own)[i];
    delete[] pPolygon->m_pLines;
    pPolygon->m_pLines = pNew;
    pPolygon->m_nLines = static_cast<int>(own->size());
    return 1;
  }
  return ReplaceLines(pPolygon->m_pLines, pPolygon->m_nLines, true, ToleranceInOutputUnits(*this));
}

int CPictrace::ConvertToBezier(CPTPolygonLine* pLine) {
  if (!pLine) return 0;
  return ReplaceLines(pLine->m_pLines, pLine->m_nLines, false, ToleranceInOutputUnits(*this));
}
