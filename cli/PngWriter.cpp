// PNG preview, painted by the engine at the picture's size: the regions as
// the engine draws them (marked regions hatched); for centre lines, the
// segmented picture faded towards white with the lines on top.
#include <stdexcept>

#include "Pictrace.h"
#include "RasterDC.h"
#include "cli/ImageFile.h"
#include "cli/Writers.h"

namespace pictrace {

std::string FormatPng(const OutputDocument& doc, CPictrace& engine) {
  const int width = doc.imageWidth;
  const int height = doc.imageHeight;
  CRasterDC dc(width, height);
  if (doc.hasLines) {
    RECT dest{0, 0, width, height};
    engine.DrawDIB(&dc, &dest, FALSE);
    BYTE* bits = dc.GetBits();
    for (int y = 0; y < height; y++)
      for (int x = 0; x < 3 * width; x++) {
        BYTE& b = bits[static_cast<size_t>(y) * dc.GetStride() + x];
        b = static_cast<BYTE>(255 - (255 - b) / 4);
      }
  }
  if (doc.hasRegions) engine.DrawPolygon(&dc, CRect(0, 0, width, height), 0, 0);
  if (doc.hasLines) {
    const int thinning = engine.IsThinning();
    engine.SetThinningFlag(1);
    engine.DrawThinLine(&dc, CRect(0, 0, width, height));
    engine.SetThinningFlag(thinning);
  }
  std::string png, reason;
  if (!EncodePng(dc.GetBits(), width, height, dc.GetStride(), png, reason)) throw std::runtime_error(reason);
  return png;
}

}  // namespace pictrace
