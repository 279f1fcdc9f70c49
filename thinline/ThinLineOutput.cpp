// The thin lines as result objects: the output form built once per tracing
// (picture pixels, y from the top edge) and the host's copy of it, mapped
// into the output rectangle.
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "core/OutputMapping.h"
#include "core/OutlineRecords.h"
#include "thinline/ThinLineOrder.h"
#include "core/ThinLineRecords.h"

using namespace pictrace::thinline;

void CPictrace::CreateOutputThinLine() {
  if (m_listThinLines.empty()) return;
  const int height = m_bmiHeader.biHeight;
  ForEachThinLineByColor(*this, [height](COutlineThinline* pLine, int) {
    delete pLine->m_pPolygonLine;
    pLine->m_pPolygonLine = nullptr;
    CPTPolygonLine* pOut = new CPTPolygonLine;
    pLine->m_pPolygonLine = pOut;
    // A chain of one point (a junction on its own) keeps an output form
    // with no lines.
    const int nLines = pLine->m_nSmoothPoints > 1 ? pLine->m_nSmoothPoints - 1 : 0;
    pOut->m_nLines = nLines;
    pOut->m_nAttr1 = pLine->m_nNextSibling;
    pOut->m_nAttr2 = pLine->m_nParent;
    pOut->m_nAttr3 = pLine->m_nFirstChild;
    pOut->m_nAttr4 = pLine->m_bLaterBranch;
    if (nLines == 0 || !pLine->m_pSmoothPoints) return;
    pOut->m_pLines = new CPTLine[nLines];
    pictrace::engine::FillStraightLines(pOut->m_pLines, pLine->m_pSmoothPoints, nLines, height);
  });
}

void CPictrace::GetThinLines(CPTThinLines* pThinLines) {
  if (!pThinLines) return;
  double sx, sy;
  pictrace::engine::OutputScale(m_rcImageReal, m_bmiHeader.biWidth, m_bmiHeader.biHeight, sx, sy);
  const CRect rc = m_rcImageReal;

  std::vector<std::unique_ptr<CPTThinLine>> collected;
  ForEachThinLineByColor(*this, [&](COutlineThinline* pLine, int colorIndex) {
    const CPTPolygonLine* pSrc = pLine->m_pPolygonLine;
    if (!pSrc) return;  // no output form built yet
    std::unique_ptr<CPTThinLine> pThin(new CPTThinLine);
    pThin->m_nColorIndex = colorIndex + 1;
    pThin->m_nThinLineFlag = 0;
    pThin->m_pPolygonLines = new CPTPolygonLine[1];
    pThin->m_nPolygonLines = 1;
    CPTPolygonLine& out = pThin->m_pPolygonLines[0];
    out.m_nAttr1 = pSrc->m_nAttr1;
    out.m_nAttr2 = pSrc->m_nAttr2;
    out.m_nAttr3 = pSrc->m_nAttr3;
    out.m_nAttr4 = pSrc->m_nAttr4;
    out.m_nAttr5 = pLine->m_bSelected;
    out.m_nLines = pSrc->m_nLines;
    if (pSrc->m_nLines > 0 && pSrc->m_pLines) {
      out.m_pLines = new CPTLine[pSrc->m_nLines];
      for (int j = 0; j < pSrc->m_nLines; j++)
        pictrace::engine::MapLine(out.m_pLines[j], pSrc->m_pLines[j], rc, sx, sy);
    }
    collected.push_back(std::move(pThin));
  });

  // The host's container owns what it held before; it is replaced.
  delete[] pThinLines->m_pThinLines;
  pThinLines->m_pThinLines = nullptr;
  pThinLines->m_nThinLines = 0;
  if (collected.empty()) return;
  CPTThinLine* pArray = new CPTThinLine[collected.size()];
  for (size_t i = 0; i < collected.size(); i++) {
    // Shallow move: the array element takes the polygon lines, the
    // collected object gives them up before it is deleted.
    pArray[i] = *collected[i];
    collected[i]->m_nPolygonLines = 0;
    collected[i]->m_pPolygonLines = nullptr;
  }
  pThinLines->m_pThinLines = pArray;
  pThinLines->m_nThinLines = static_cast<int>(collected.size());
}
