// The line-art job on a loaded picture, as a host drives it through the
// engine's members: segment, store the outlines, choose which colours are
// lines, build the thinning picture, thin every line colour and trace the
// skeleton. Afterwards GetThinLines and DrawThinLine hand out the centre
// lines and m_arrLineColors holds their colours.
#pragma once

#include <string>
#include <vector>

#include "Pictrace.h"

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
  long nSkeletonPixels = 0;     // pixels of the traced skeleton, before smoothing
  double dSegmentSeconds = 0.0;
  double dThinSeconds = 0.0;
  double dTraceSeconds = 0.0;
};

// All of it, on the engine's loaded picture and output rectangle. On
// failure returns false with a message in error.
PICTRACE_API bool RunLineArt(CPictrace& engine, const LineArtOptions& options, LineArtResult& result,
                             std::string& error);

// The steps after the segmentation, for a host that segments itself.
// ChooseLineColors stores the outlines and sets the only-thinning flags of
// the stored regions so that exactly the wanted colours are lines, then
// fills the line colour list; false when there are no outlines.
PICTRACE_API bool ChooseLineColors(CPictrace& engine, const LineArtOptions& options,
                                   LineArtResult& result, std::string& error);
// ThinAndTrace builds the thinning picture, thins every line colour (removed
// pixels with no neighbouring colour take fillColor) and traces the skeleton.
PICTRACE_API bool ThinAndTrace(CPictrace& engine, COLORREF fillColor, double dSmooth,
                               LineArtResult& result, std::string& error);

}  // namespace thinline
}  // namespace pictrace
