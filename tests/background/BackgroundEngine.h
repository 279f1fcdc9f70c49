// An engine for the background tests: segments a flat-colour picture with
// the outline stage directly (a known palette, no clustering), and answers
// pixel-level questions about regions.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"

class BackgroundEngine : public CPictrace {
 public:
  using CPictrace::CreateOutputPolygon;
  using CPictrace::GetOutline4Cartoon2;

  // Loads the picture and traces its regions with the palette `colors`.
  void Trace(std::vector<unsigned char>& dib, const std::vector<COLORREF>& colors) {
    ASSERT_EQ(SetDIBData(dib.data()), 1);
    m_arrColorList.RemoveAll();
    for (COLORREF c : colors) m_arrColorList.Add(c);
    m_dSegmentParam = 1.0;
    unsigned char* pNoMask = nullptr;
    ASSERT_EQ(GetOutline4Cartoon2(m_dSegmentParam, &pNoMask), 1);
    CreateOutputPolygon(m_nOutputLineType);
  }
};

typedef std::set<std::pair<int, int>> PixelSet;

// The pixels of the regions' components.
inline PixelSet ComponentPixels(const std::list<COutlineRegion*>& regions) {
  PixelSet s;
  for (const COutlineRegion* r : regions)
    for (int i = 0; r->m_pComponent && i < r->m_pComponent->m_nPoints; i++)
      s.insert({r->m_pComponent->m_pPoints[i].x, r->m_pComponent->m_pPoints[i].y});
  return s;
}

// Whether pixel (x, y) lies inside the raw chain: its top-left corner is
// inside the polygon under the left/top-inclusive rule.
inline bool InChain(const sPoint* pts, int n, int x, int y) {
  std::vector<POINT> poly(static_cast<size_t>(n));
  for (int i = 0; i < n; i++) poly[i] = POINT{pts[i].x, pts[i].y};
  CRgn rgn;
  rgn.CreatePolygonRgn(poly.data(), n, ALTERNATE);
  return rgn.PtInRegion(x, y) != 0;
}

// The pixels the regions' raw outlines cover: inside the outer outline and
// outside every hole.
inline PixelSet OutlinePixels(const std::list<COutlineRegion*>& regions, int width, int height) {
  PixelSet s;
  for (const COutlineRegion* r : regions)
    for (int y = 0; y < height; y++)
      for (int x = 0; x < width; x++) {
        if (!InChain(r->m_pRawPoints, r->m_nRawPoints, x, y)) continue;
        bool inHole = false;
        for (INT_PTR k = 0; k < r->m_arrHoles.GetSize() && !inHole; k++)
          inHole = InChain(r->m_arrHoles[k]->m_pRawPoints, r->m_arrHoles[k]->m_nRawPoints, x, y);
        if (!inHole) s.insert({x, y});
      }
  return s;
}
