// The order in which thin lines reach the host: colour index 0, 1, 2 ... of
// the line colour list and, within a colour, the order of m_listThinLines.
#pragma once

#include <vector>

#include "Pictrace.h"
#include "core/ThinLineRecords.h"

namespace pictrace {
namespace thinline {

// Calls fn(line, colourIndex) for every line whose colour index lies in the
// line colour list; other lines are never visited. One pass over the list
// groups the lines by colour, which gives the same order as walking the
// whole list once per colour.
template <class Fn>
void ForEachThinLineByColor(CPictrace& engine, Fn fn) {
  const int nColors = static_cast<int>(engine.m_arrLineColors.GetSize());
  if (nColors <= 0 || engine.m_listThinLines.empty()) return;
  std::vector<std::vector<COutlineThinline*>> byColor(static_cast<size_t>(nColors));
  for (COutlineThinline* pLine : engine.m_listThinLines)
    if (pLine->m_nColorIndex >= 0 && pLine->m_nColorIndex < nColors)
      byColor[static_cast<size_t>(pLine->m_nColorIndex)].push_back(pLine);
  for (int i = 0; i < nColors; i++)
    for (COutlineThinline* pLine : byColor[static_cast<size_t>(i)]) fn(pLine, i);
}

}  // namespace thinline
}  // namespace pictrace
