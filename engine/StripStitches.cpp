// A strip's centre lines from the engine's own thinning and line tracing: the
// strip is rasterised on a grid fine enough to hold about ten cells across
// it, thinned as a line colour and traced; the chains come back in output
// units and become satin columns or running stitches.
#include <algorithm>
#include <cstring>
#include <vector>

#include "Pictrace.h"
#include "PictraceEmbroidery.h"
#include "core/ImageView.h"
#include "core/OutlineRecords.h"
#include "core/OwnedList.h"
#include "core/ThinLineRecords.h"
#include "embroidery/Geometry.h"
#include "engine/SatinScale.h"
#include "thinline/LineStage.h"

namespace pictrace {
namespace embroidery {

namespace {

constexpr COLORREF kStrip = RGB(0, 0, 0);
constexpr COLORREF kAround = RGB(255, 255, 255);

struct Grid {
  double x0 = 0.0, y0 = 0.0, cell = 1.0;
  int width = 0, height = 0;
  Point Centre(double x, double y) const { return {x0 + (x + 0.5) * cell, y0 + (y + 0.5) * cell}; }
};

// A 24-bit picture (header and rows, as the thinning reads it) with the
// cells whose centres lie inside the strip (even-odd, row by row) in the
// strip's colour.
std::vector<unsigned char> Rasterise(const Shape& strip, const Grid& g) {
  const size_t stride = Stride24(g.width);
  std::vector<unsigned char> dib(40 + stride * g.height, 255);
  BITMAPINFOHEADER h;
  std::memset(&h, 0, sizeof(h));
  h.biSize = 40;
  h.biWidth = g.width;
  h.biHeight = g.height;
  h.biPlanes = 1;
  h.biBitCount = 24;
  h.biSizeImage = static_cast<DWORD>(stride * g.height);
  std::memcpy(dib.data(), &h, sizeof(h));
  ImageView view = ViewOf(h, dib.data() + 40);
  std::vector<double> xs;
  for (int y = 0; y < g.height; y++) {
    const double cy = g.Centre(0, y).y;
    xs.clear();
    for (const Ring& r : strip)
      for (size_t i = 0, j = r.size() - 1; i < r.size(); j = i++)
        if ((r[i].y > cy) != (r[j].y > cy))
          xs.push_back(r[i].x + (cy - r[i].y) * (r[j].x - r[i].x) / (r[j].y - r[i].y));
    std::sort(xs.begin(), xs.end());
    for (size_t k = 0; k + 1 < xs.size(); k += 2)
      for (int x = std::max(0, static_cast<int>(std::ceil((xs[k] - g.x0) / g.cell - 0.5)));
           x < g.width && g.Centre(x, y).x < xs[k + 1]; x++)
        SetPixelColor(view.Pixel(x, y), kStrip);
  }
  return dib;
}

// The engine's protected setter, reached the way a derived class may.
struct SatinWidthSetter : CPictrace {
  static void Set(CPictrace& engine, double dPixels) {
    void (CPictrace::*set)(double) = &SatinWidthSetter::SetSatinWidth;
    (engine.*set)(dPixels);
  }
};

}  // namespace

void SetSatinWidthInUnits(CPictrace& engine, double dUnits) {
  // In pixels, as DeriveSatinWidth keeps it; unscaled without a size.
  const double scale = pictrace::engine::SatinScale(engine);
  SatinWidthSetter::Set(engine, dUnits / (scale > 0.0 ? scale : 1.0));
}

std::vector<Path> StripCentreLines(const Shape& strip) {
  std::vector<Path> out;
  const double perimeter = ShapePerimeter(strip);
  if (strip.empty() || perimeter <= 0.0) return out;
  const double width = 2.0 * ShapeArea(strip) / perimeter;
  Grid g;
  g.cell = std::clamp(width / 10.0, 0.25, 3.0);
  double x1 = -1e300, y1 = -1e300;
  g.x0 = g.y0 = 1e300;
  for (const Point& p : strip[0]) {
    g.x0 = std::min(g.x0, p.x), g.y0 = std::min(g.y0, p.y);
    x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
  }
  g.x0 -= 2 * g.cell, g.y0 -= 2 * g.cell;
  g.width = static_cast<int>((x1 - g.x0) / g.cell) + 3;
  g.height = static_cast<int>((y1 - g.y0) / g.cell) + 3;
  if (static_cast<double>(g.width) * g.height > 2.5e7) return out;  // a strip this large is no strip
  std::vector<unsigned char> dib = Rasterise(strip, g);
  std::vector<unsigned char> mask(static_cast<size_t>(g.width) * g.height, 1);
  CPictrace engine;
  engine.ThinningAndFat(dib.data(), mask.data(), kStrip, kAround);
  const BITMAPINFOHEADER* h = reinterpret_cast<const BITMAPINFOHEADER*>(dib.data());
  ImageView view = ViewOf(*h, dib.data() + 40);
  CDWordArray colors;
  colors.Add(kStrip);
  // End chains shorter than the strip's width are the thinning's spurs into
  // corners; a strip with nothing longer keeps them all.
  for (double minCells : {width / g.cell, 0.0}) {
    for (int y = 0; y < g.height; y++)
      for (int x = 0; x < g.width; x++)
        mask[static_cast<size_t>(y) * g.width + x] = PixelColor(view.Pixel(x, y)) == kStrip ? 1 : 0;
    thinline::LineTraceInput in;
    in.mask = mask.data();
    in.picture = view;
    in.colors = &colors;
    in.minLength = minCells;
    in.smooth = 1.0f;
    ThinLineList lines = thinline::TraceLines(in);
    // The raw chains, averaged over about a quarter of the width on each
    // side (fewer points near the ends, so that chains meeting at a
    // junction keep meeting there): the staircase of the cells goes, the
    // centre stays where the thinning found it.
    const int reach = std::max(1, static_cast<int>(width / g.cell / 4.0));
    for (const COutlineThinline* line : lines.Items()) {
      const sPoint* raw = line->m_pVector->m_pPoints;
      const int n = line->m_pVector->m_nPoints;
      Path p;
      for (int k = 0; k < n; k++) {
        const int h = std::min({reach, k, n - 1 - k});
        double x = 0.0, y = 0.0;
        for (int j = k - h; j <= k + h; j++) x += raw[j].x, y += raw[j].y;
        p.push_back(g.Centre(x / (2 * h + 1), y / (2 * h + 1)));
      }
      if (p.size() >= 2) out.push_back(p);
    }
    if (!out.empty()) break;
  }
  return out;
}

StripStitches StripToStitches(const Shape& strip, const StripOptions& options) {
  return ColumnsFromCentreLines(strip, StripCentreLines(strip), options);
}

}  // namespace embroidery
}  // namespace pictrace
