// Region output: the output polygons kept inside the outline records (image
// pixels, y downward) and the self-contained regions handed to the host (output
// units of m_rcImageReal).
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "core/Progress.h"
#include "engine/RegionOutput.h"
#include "engine/OwnCurves.h"
#include "engine/TilingCurves.h"
#include "core/OutputMapping.h"
#include "core/OutlineRecords.h"

namespace {

// Straight output: one line per pair of consecutive chain points. The chain of
// a closed outline already repeats its first point where it closes, so no line
// runs from the last point back to the first.
void BuildStraightPolygon(CPTPolygon* pPolygon, const sPoint* pPoints, int nPoints, int nHeight) {
  int nLines = nPoints > 1 ? nPoints - 1 : 0;
  pPolygon->m_nLines = nLines;
  if (nLines == 0 || !pPoints) return;
  pPolygon->m_pLines = new CPTLine[nLines];
  pictrace::engine::FillStraightLines(pPolygon->m_pLines, pPoints, nLines, nHeight);
}

// Curve output: the outline's closed curve from the tiling fit, one Bezier
// line per cubic with y flipped to the top-down image frame.
void BuildCurvePolygon(CPTPolygon* pPolygon, const std::vector<pictrace::curve::Cubic>& curve,
                       int nHeight) {
  pPolygon->m_nLines = static_cast<int>(curve.size());
  if (curve.empty()) return;
  pPolygon->m_pLines = new CPTLine[curve.size()];
  for (size_t i = 0; i < curve.size(); i++) {
    CPTLine& line = pPolygon->m_pLines[i];
    line.m_nType = 1;
    CPTPoint* pts[4] = {&line.m_ptStart, &line.m_ptCtrl1, &line.m_ptCtrl2, &line.m_ptEnd};
    for (int k = 0; k < 4; k++) {
      pts[k]->x = static_cast<float>(curve[i].p[k].x);
      pts[k]->y = static_cast<float>(nHeight - curve[i].p[k].y);
    }
  }
}

// Every outline and hole of the list in list order, holes after their
// region's outline: the order the curves are numbered in.
std::vector<pictrace::engine::OutlineChain> ChainsOf(const std::list<COutlineRegion*>& regions) {
  std::vector<pictrace::engine::OutlineChain> chains;
  for (const COutlineRegion* pRegion : regions) {
    chains.push_back({pRegion->m_pRawPoints, pRegion->m_nRawPoints});
    for (INT_PTR k = 0; k < pRegion->m_arrHoles.GetSize(); k++)
      chains.push_back({pRegion->m_arrHoles[k]->m_pRawPoints, pRegion->m_arrHoles[k]->m_nRawPoints});
  }
  return chains;
}

// Copies an engine polygon into a host polygon, mapping every point (control
// points of straight lines included) into output units.
void MapPolygon(CPTPolygon& dst, const CPTPolygon* pSrc, const CRect& rc, double sx, double sy) {
  // A slot that was never built comes out as an empty outline rather than a
  // crash.
  if (!pSrc || pSrc->m_nLines <= 0 || !pSrc->m_pLines) return;
  dst.m_nLines = pSrc->m_nLines;
  dst.m_pLines = new CPTLine[pSrc->m_nLines];
  for (int i = 0; i < pSrc->m_nLines; i++)
    pictrace::engine::MapLine(dst.m_pLines[i], pSrc->m_pLines[i], rc, sx, sy);
}

}  // namespace

namespace pictrace {
namespace engine {

void BuildOutputPolygons(std::list<COutlineRegion*>& regions, int nColors, int nLineType, int nWidth,
                         int nHeight, double dTolerance, Progress& progress) {
  if (regions.empty()) return;
  // Curves are fitted for all outlines at once, border by border, before
  // they are handed out colour by colour.
  std::unique_ptr<TilingCurves> curves;
  if (nLineType != 0) curves.reset(new TilingCurves(ChainsOf(regions), nWidth, nHeight, dTolerance));
  std::vector<size_t> firstChain;
  size_t nChains = 0;
  for (const COutlineRegion* pRegion : regions) {
    firstChain.push_back(nChains);
    nChains += 1 + static_cast<size_t>(pRegion->m_arrHoles.GetSize());
  }
  const double span = progress.Span(PT_WEIGHT_POLYGONS);
  for (int c = 0; c < nColors; c++) {
    progress.ShowAt(span * (static_cast<double>(c) / nColors));
    size_t r = 0;
    for (COutlineRegion* pRegion : regions) {
      const size_t chain = firstChain[r++];
      if (pRegion->m_nColorIndex != c) continue;
      const INT_PTR nHoles = pRegion->m_arrHoles.GetSize();
      for (INT_PTR k = 0; k <= nHoles; k++) {
        CHole* pHole = k == 0 ? nullptr : pRegion->m_arrHoles[k - 1];
        CPTPolygon*& pSlot = pHole ? pHole->m_pPolygon : pRegion->m_pPolygon;
        delete pSlot;
        pSlot = new CPTPolygon;
        if (curves)
          BuildCurvePolygon(pSlot, curves->OutlineCurve(chain + static_cast<size_t>(k)), nHeight);
        else if (pHole)
          BuildStraightPolygon(pSlot, pHole->m_pPoints, pHole->m_nPoints, nHeight);
        else
          BuildStraightPolygon(pSlot, pRegion->m_pPoints, pRegion->m_nPoints, nHeight);
      }
    }
  }
  progress.EndStage(PT_WEIGHT_POLYGONS);
}

void CollectRegions(const std::list<COutlineRegion*>& regions, int nColors, const CRect& rcReal,
                    int nWidth, int nHeight, CPTRegions* pRegions) {
  // Without an image there is no pixel size to scale by; results stay in
  // pixels, as with an empty rectangle.
  double sx, sy;
  OutputScale(rcReal, nWidth, nHeight, sx, sy);

  std::vector<CPTRegion*> collected;
  for (int c = 0; c < nColors; c++) {
    for (COutlineRegion* pRegion : regions) {
      if (pRegion->m_nColorIndex != c || pRegion->m_bSkip != 0) continue;
      CPTRegion* pOut = new CPTRegion;
      const int nHoles = static_cast<int>(pRegion->m_arrHoles.GetSize());
      pOut->m_nPolygons = nHoles + 1;
      pOut->m_pPolygons = new CPTPolygon[nHoles + 1];
      MapPolygon(pOut->m_pPolygons[0], pRegion->m_pPolygon, rcReal, sx, sy);
      for (int k = 0; k < nHoles; k++)
        MapPolygon(pOut->m_pPolygons[k + 1], pRegion->m_arrHoles[k]->m_pPolygon, rcReal, sx, sy);
      pOut->m_nColorIndex = c + 1;
      pOut->m_nRegionFlag = (pRegion->m_bNarrow != 0 && pRegion->m_nArea * sx * sy / 2.0 >= 2500.0);
      collected.push_back(pOut);
    }
  }

  pRegions->m_nRegions = static_cast<int>(collected.size());
  pRegions->m_pRegions = collected.empty() ? nullptr : new CPTRegion[collected.size()];
  // Shallow move: the host's element takes the polygon array, the temporary
  // gives it up before it is deleted.
  for (size_t i = 0; i < collected.size(); i++) {
    pRegions->m_pRegions[i] = *collected[i];
    collected[i]->m_nPolygons = 0;
    collected[i]->m_pPolygons = nullptr;
    delete collected[i];
  }
}

std::vector<std::vector<CPTLine>> OutlinesInOutputUnits(std::list<COutlineRegion*>& regions, int nLineType,
                                                        const CRect& rcReal, int nWidth, int nHeight,
                                                        double dTolerance) {
  double sx, sy;
  OutputScale(rcReal, nWidth, nHeight, sx, sy);
  std::unique_ptr<TilingCurves> curves;
  if (nLineType != 0) curves.reset(new TilingCurves(ChainsOf(regions), nWidth, nHeight, dTolerance));
  std::vector<std::vector<CPTLine>> out;
  for (COutlineRegion* pRegion : regions)
    for (INT_PTR k = 0; k <= pRegion->m_arrHoles.GetSize(); k++) {
      CHole* pHole = k == 0 ? nullptr : pRegion->m_arrHoles[k - 1];
      CPTPolygon built, mapped;
      if (curves)
        BuildCurvePolygon(&built, curves->OutlineCurve(out.size()), nHeight);
      else
        BuildStraightPolygon(&built, pHole ? pHole->m_pPoints : pRegion->m_pPoints,
                             pHole ? pHole->m_nPoints : pRegion->m_nPoints, nHeight);
      MapPolygon(mapped, &built, rcReal, sx, sy);
      out.emplace_back(mapped.m_pLines, mapped.m_pLines + mapped.m_nLines);
    }
  return out;
}

}  // namespace engine
}  // namespace pictrace

void CPictrace::CreateOutputPolygon(int nLineType) {
  // The curves kept for ConvertToBezier belong to the polygons built before.
  delete m_pOwnCurves;
  m_pOwnCurves = nullptr;
  pictrace::Progress progress = JobProgress();
  pictrace::engine::BuildOutputPolygons(m_listOutlineRegions, static_cast<int>(m_arrColorList.GetSize()),
                                        nLineType, m_bmiHeader.biWidth, m_bmiHeader.biHeight,
                                        m_dCurveTolerance, progress);
}

void CPictrace::GetRegions(CPTRegions* pRegions, int nLineType) {
  if (!pRegions) return;
  if (nLineType != m_nOutputLineType) CreateOutputPolygon(nLineType);
  pictrace::engine::CollectRegions(m_listOutlineRegions, static_cast<int>(m_arrColorList.GetSize()),
                                   m_rcImageReal, m_bmiHeader.biWidth, m_bmiHeader.biHeight, pRegions);
}
