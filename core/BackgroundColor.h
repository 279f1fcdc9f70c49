// The background colour of a traced picture: the colour with the largest
// pixel count over the regions that reach into the picture's frame margins.
// Background marking, background extraction and the line-art job all choose
// it this way.
#pragma once

#include <list>
#include <utility>
#include <vector>

#include "core/OutlineRecords.h"

namespace pictrace {

// A region touches the frame when its bounding box reaches into the 5 %
// margins of the picture.
class FrameTest {
 public:
  FrameTest(int width, int height)
      : m_width(width), m_height(height), m_mx(width * 0.05), m_my(height * 0.05) {}
  bool operator()(const COutlineRegion* pRegion) const {
    const CRect& rc = pRegion->m_rcBound;
    return rc.left < m_mx || rc.right > m_width - m_mx || rc.top < m_my || rc.bottom > m_height - m_my;
  }

 private:
  double m_width, m_height, m_mx, m_my;
};

// False when no region touches the frame. Pixel counts are summed per colour
// in order of first appearance; the first colour met wins a tie.
inline bool FindBackgroundColor(const std::list<COutlineRegion*>& regions, const FrameTest& touches,
                                COLORREF& color) {
  std::vector<std::pair<COLORREF, long long>> tally;
  for (const COutlineRegion* pRegion : regions) {
    if (!touches(pRegion)) continue;
    bool found = false;
    for (auto& entry : tally)
      if (entry.first == pRegion->m_crColor) {
        entry.second += pRegion->m_nPixels;
        found = true;
        break;
      }
    if (!found) tally.emplace_back(pRegion->m_crColor, pRegion->m_nPixels);
  }
  if (tally.empty()) return false;
  size_t best = 0;
  for (size_t i = 1; i < tally.size(); i++)
    if (tally[i].second > tally[best].second) best = i;
  color = tally[best].first;
  return true;
}

}  // namespace pictrace
