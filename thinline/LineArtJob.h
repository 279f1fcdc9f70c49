// The whole line-art job on a loaded picture, as a host drives it: segment,
// store the outlines, choose which colours are lines, build the thinning
// picture, thin every line colour and trace the skeleton. Used by the
// command line, the end-to-end tests and the benchmarks. Header-only, so
// that it needs nothing from the library beyond the engine's own members.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"

namespace pictrace {
namespace thinline {

struct LineArtOptions {
  int nColors = 2;            // colours wanted from the segmentation
  double dTolerance = 1.0;    // outline tolerance of the segmentation
  double dSmooth = 1.0;       // smoothing tolerance of the centre lines, pixels
  // Colours to thin (each is matched to the nearest segmented colour). Empty:
  // every colour but the background.
  std::vector<COLORREF> lineColors;
};

struct LineArtResult {
  bool bBackground = false;     // a background colour was found
  COLORREF crBackground = 0xFFFFFF;
  int nThinningResult = 1;      // 0 when some pixel fell back to the fill colour
  double dSegmentSeconds = 0.0;
  double dThinSeconds = 0.0;
  double dTraceSeconds = 0.0;
};

namespace detail {

inline double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline long long Distance(COLORREF a, COLORREF b) {
  const long long dr = static_cast<long long>(GetRValue(a)) - GetRValue(b);
  const long long dg = static_cast<long long>(GetGValue(a)) - GetGValue(b);
  const long long db = static_cast<long long>(GetBValue(a)) - GetBValue(b);
  return dr * dr + dg * dg + db * db;
}

}  // namespace detail

// The background colour as MarkBackground chooses it on the current
// regions; the regions' skip flags are left as they were.
inline bool FindBackgroundColor(CPictrace& engine, COLORREF& color) {
  std::vector<int> saved;
  for (COutlineRegion* pRegion : engine.m_listOutlineRegions) {
    saved.push_back(pRegion->m_bSkip);
    pRegion->m_bSkip = 0;
  }
  engine.MarkBackground();
  bool found = false;
  size_t i = 0;
  for (COutlineRegion* pRegion : engine.m_listOutlineRegions) {
    if (!found && pRegion->m_bSkip) {
      color = pRegion->m_crColor;
      found = true;
    }
    pRegion->m_bSkip = saved[i++];
  }
  return found;
}

// Stores the outlines and sets the only-thinning flags of the stored
// regions so that exactly the wanted colours are lines, then fills the line
// colour list. Returns false with a message when there are no outlines.
inline bool ChooseLineColors(CPictrace& engine, const LineArtOptions& options, LineArtResult& result,
                      std::string& error) {
  if (!engine.HasOutlines()) {
    error = "the picture has no regions to take lines from";
    return false;
  }
  engine.CopyOutlines();
  result.bBackground = FindBackgroundColor(engine, result.crBackground);
  if (options.lineColors.empty()) {
    for (COutlineRegion* pRegion : engine.m_listStoredRegions) pRegion->m_bMarked = 0;
    // The background is painted but not thinned.
    if (result.bBackground) engine.MarkRegions(result.crBackground, 1, 1);
  } else {
    // Each wanted colour stands for the segmented colour nearest to it.
    std::vector<COLORREF> chosen;
    const CDWordArray& list = engine.m_arrStoredColorList;
    for (COLORREF wanted : options.lineColors) {
      INT_PTR best = -1;
      for (INT_PTR i = 0; i < list.GetSize(); i++)
        if (best < 0 || detail::Distance(list[i], wanted) < detail::Distance(list[best], wanted)) best = i;
      if (best >= 0) chosen.push_back(list[best]);
    }
    for (COutlineRegion* pRegion : engine.m_listStoredRegions) {
      bool isLine = false;
      for (COLORREF c : chosen) isLine = isLine || pRegion->m_crColor == c;
      pRegion->m_bMarked = isLine ? 0 : 1;
    }
  }
  engine.SetLineColorList();
  return true;
}

// Builds the thinning picture, thins every line colour (removed pixels with
// no neighbouring colour take fillColor) and traces the skeleton.
inline bool ThinAndTrace(CPictrace& engine, COLORREF fillColor, double dSmooth, LineArtResult& result,
                  std::string& error) {
  auto start = std::chrono::steady_clock::now();
  unsigned char* pMaskRaw = nullptr;
  std::unique_ptr<unsigned char[]> pDIB(engine.MakeThinningTmpBitmap(&pMaskRaw));
  std::unique_ptr<unsigned char[]> pMask(pMaskRaw);
  if (!pDIB) {
    error = "the thinning picture could not be made (no picture or no stored regions)";
    return false;
  }
  result.nThinningResult = 1;
  for (INT_PTR i = 0; i < engine.m_arrLineColors.GetSize(); i++)
    if (!engine.ThinningAndFat(pDIB.get(), pMask.get(), engine.m_arrLineColors[i], fillColor))
      result.nThinningResult = 0;
  result.dThinSeconds = detail::SecondsSince(start);
  start = std::chrono::steady_clock::now();
  engine.DoTraceThinningLine(pMask.get(), pDIB.get(), dSmooth);
  result.dTraceSeconds = detail::SecondsSince(start);
  return true;
}

// All of it, on the engine's loaded picture and output rectangle.
inline bool RunLineArt(CPictrace& engine, const LineArtOptions& options, LineArtResult& result,
                std::string& error) {
  if (!engine.HasDIBData()) {
    error = "no picture is loaded";
    return false;
  }
  auto start = std::chrono::steady_clock::now();
  CDWordArray colors;
  engine.DoSegmentation(options.nColors, &colors, options.dTolerance, 0, nullptr);
  result.dSegmentSeconds = detail::SecondsSince(start);
  if (!ChooseLineColors(engine, options, result, error)) return false;
  const COLORREF fill = result.bBackground ? result.crBackground : RGB(255, 255, 255);
  return ThinAndTrace(engine, fill, options.dSmooth, result, error);
}

}  // namespace thinline
}  // namespace pictrace
