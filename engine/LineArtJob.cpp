// The line-art job: the engine's members called in the order a host calls
// them, with the timings and counts the command line reports.
#include "PictraceLineArt.h"

#include <chrono>
#include <memory>

#include "core/BackgroundColor.h"
#include "core/ColorDistance.h"
#include "core/OutlineRecords.h"
#include "core/ThinLineRecords.h"

namespace pictrace {
namespace thinline {

namespace {

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

bool ChooseLineColors(CPictrace& engine, const LineArtOptions& options, LineArtResult& result,
                      std::string& error) {
  if (!engine.HasOutlines()) {
    error = "the picture has no regions to take lines from";
    return false;
  }
  engine.CopyOutlines();
  // The background colour as background marking chooses it.
  const BITMAPINFOHEADER* pHeader = engine.GetBmpInfoHeader();
  result.bBackground = FindBackgroundColor(engine.m_listOutlineRegions,
                                           FrameTest(pHeader->biWidth, pHeader->biHeight),
                                           result.crBackground);
  if (options.lineColors.empty()) {
    for (COutlineRegion* pRegion : engine.m_listStoredRegions) pRegion->m_bMarked = 0;
    // The background is painted but not thinned.
    if (result.bBackground) engine.MarkRegions(result.crBackground, 1, 1);
  } else {
    // Each wanted colour stands for the segmented colour nearest to it; the
    // first of equally near colours wins.
    std::vector<COLORREF> chosen;
    const CDWordArray& list = engine.m_arrStoredColorList;
    for (COLORREF wanted : options.lineColors) {
      INT_PTR best = -1;
      for (INT_PTR i = 0; i < list.GetSize(); i++)
        if (best < 0 || SquaredDistance(list[i], wanted) < SquaredDistance(list[best], wanted)) best = i;
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

bool ThinAndTrace(CPictrace& engine, COLORREF fillColor, double dSmooth, LineArtResult& result,
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
  result.dThinSeconds = SecondsSince(start);
  start = std::chrono::steady_clock::now();
  engine.DoTraceThinningLine(pMask.get(), pDIB.get(), dSmooth);
  result.dTraceSeconds = SecondsSince(start);
  result.nSkeletonPixels = 0;
  for (const COutlineThinline* pLine : engine.m_listThinLines) result.nSkeletonPixels += pLine->m_nRawPoints;
  return true;
}

bool RunLineArt(CPictrace& engine, const LineArtOptions& options, LineArtResult& result,
                std::string& error) {
  if (!engine.HasDIBData()) {
    error = "no picture is loaded";
    return false;
  }
  auto start = std::chrono::steady_clock::now();
  CDWordArray colors;
  engine.DoSegmentation(options.nColors, &colors, options.dTolerance, 0, nullptr);
  result.dSegmentSeconds = SecondsSince(start);
  if (!ChooseLineColors(engine, options, result, error)) return false;
  const COLORREF fill = result.bBackground ? result.crBackground : RGB(255, 255, 255);
  return ThinAndTrace(engine, fill, options.dSmooth, result, error);
}

}  // namespace thinline
}  // namespace pictrace
