// Pens on the raster device. One-pixel cosmetic pens are stepped here, one
// pixel per step along the major axis with the end point left out and the
// style advancing per pixel, as GDI draws them; a stroked outline sampled at
// pixel centres cannot give that. Wide and geometric pens are stroked by
// cairo without anti-aliasing into a coverage mask, then mixed here.
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "PathFlattening.h"
#include "RasterDC.h"

namespace {

// On/off run lengths of a pen style, starting with "on"; empty when solid.
std::vector<double> StyleRuns(const CPen& pen, double unit) {
  switch (pen.m_nStyle & PS_STYLE_MASK) {
    case PS_DOT:
    case PS_ALTERNATE: return {unit, unit};
    case PS_DASH: return {18 * unit, 6 * unit};
    case PS_DASHDOT: return {9 * unit, 6 * unit, 3 * unit, 6 * unit};
    case PS_DASHDOTDOT: return {9 * unit, 3 * unit, 3 * unit, 3 * unit, 3 * unit, 3 * unit};
    case PS_USERSTYLE: {
      std::vector<double> runs(pen.m_userStyle.begin(), pen.m_userStyle.end());
      if (runs.size() % 2 != 0) {  // an odd list repeats with on and off swapped
        std::vector<double> twice(runs);
        twice.insert(twice.end(), runs.begin(), runs.end());
        runs.swap(twice);
      }
      return runs;
    }
    default: return {};
  }
}

// Which run of a cosmetic style a pixel falls in; true for "on". The style
// runs on across the segments and figures of one stroke.
class StyleCursor {
 public:
  explicit StyleCursor(const std::vector<double>& runs) {
    for (double r : runs) m_runs.push_back(static_cast<std::int64_t>(r));
    for (std::int64_t r : m_runs) m_period += r;
  }
  bool Solid() const { return m_period == 0; }
  bool On() const {
    if (m_period == 0) return true;
    std::int64_t pos = (m_base + m_offset) % m_period;
    for (std::size_t i = 0; i < m_runs.size(); i++) {
      if (pos < m_runs[i]) return i % 2 == 0;
      pos -= m_runs[i];
    }
    return false;
  }
  // Pixel i of the current segment; Advance moves to the next segment.
  void SeekTo(std::int64_t i) { m_offset = i; }
  void Advance(std::int64_t n) {
    m_base = m_period == 0 ? 0 : (m_base + n) % m_period;
    m_offset = 0;
  }

 private:
  std::vector<std::int64_t> m_runs;
  std::int64_t m_period = 0;
  std::int64_t m_base = 0;    // style position at the segment's start
  std::int64_t m_offset = 0;  // pixels into the segment
};

std::int64_t RoundToPixel(double v) {
  const double kLimit = 1073741824.0;  // 2^30: far beyond any surface
  if (std::isnan(v)) return 0;
  return static_cast<std::int64_t>(std::floor(std::min(std::max(v, -kLimit), kLimit) + 0.5));
}

}  // namespace

BOOL CRasterDC::RenderStroke(const std::vector<PathOp>& path, const CPen& pen, int nROP2,
                             int nBkMode, COLORREF crBk) {
  if (!pen.IsCreated() || (pen.m_nStyle & PS_STYLE_MASK) == PS_NULL) return TRUE;
  bool geometric = (pen.m_nStyle & PS_TYPE_MASK) == PS_GEOMETRIC;
  if (!geometric && pen.m_nWidth <= 1) return StrokeCosmetic(path, pen, nROP2, nBkMode, crBk);
  return StrokeWide(path, pen, nROP2, nBkMode, crBk);
}

// Step i of a segment lights the pixel i along the major axis and, on the
// minor axis, i * minor / major rounded to nearest (halves away from the
// start). The closed form lets a long segment visit only the steps whose
// major coordinate lies on the surface.
BOOL CRasterDC::StrokeCosmetic(const std::vector<PathOp>& path, const CPen& pen, int nROP2,
                               int nBkMode, COLORREF crBk) {
  typedef __int128 Wide;
  StyleCursor style(StyleRuns(pen, 1.0));
  for (const ptgdi::Figure& figure : ptgdi::FlattenPath(path)) {
    std::size_t n = figure.points.size();
    std::size_t segments = figure.closed ? n : n - 1;
    for (std::size_t s = 0; s < segments; s++) {
      const ptgdi::PathPoint& a = figure.points[s];
      const ptgdi::PathPoint& b = figure.points[(s + 1) % n];
      std::int64_t x0 = RoundToPixel(a.x), y0 = RoundToPixel(a.y);
      std::int64_t dx = RoundToPixel(b.x) - x0, dy = RoundToPixel(b.y) - y0;
      bool xMajor = std::llabs(dx) >= std::llabs(dy);
      std::int64_t major = xMajor ? std::llabs(dx) : std::llabs(dy);
      std::int64_t minor = xMajor ? std::llabs(dy) : std::llabs(dx);
      std::int64_t majorStart = xMajor ? x0 : y0, minorStart = xMajor ? y0 : x0;
      int majorSign = (xMajor ? dx : dy) < 0 ? -1 : 1;
      int minorSign = (xMajor ? dy : dx) < 0 ? -1 : 1;
      std::int64_t limit = xMajor ? m_nWidth : m_nHeight;
      // Steps i in [0, major) (the end point is left out) whose major
      // coordinate majorStart + majorSign * i lies in [0, limit).
      std::int64_t first = majorSign > 0 ? -majorStart : majorStart - limit + 1;
      std::int64_t last = majorSign > 0 ? limit - 1 - majorStart : majorStart;
      first = std::max<std::int64_t>(first, 0);
      last = std::min<std::int64_t>(last, major - 1);
      for (std::int64_t i = first; i <= last; i++) {
        std::int64_t along = majorStart + majorSign * i;
        std::int64_t across = minorStart + minorSign * static_cast<std::int64_t>(
                                                (2 * static_cast<Wide>(i) * minor + major) /
                                                (2 * static_cast<Wide>(major)));
        std::int64_t x = xMajor ? along : across, y = xMajor ? across : along;
        style.SeekTo(i);
        if (style.On())
          MixPixel(x, y, pen.m_crColor, nROP2);
        else if (nBkMode == OPAQUE)
          MixPixel(x, y, crBk, nROP2);
      }
      style.Advance(major);
    }
  }
  return TRUE;
}

namespace {

// A cairo A8 mask over a window of the surface; pixel (x, y) of the surface is
// mask pixel (x - left, y - top).
class StrokeMask {
 public:
  StrokeMask(int left, int top, int width, int height)
      : m_left(left), m_top(top),
        m_surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)),
        m_cr(cairo_create(m_surface)) {}
  ~StrokeMask() {
    cairo_destroy(m_cr);
    cairo_surface_destroy(m_surface);
  }
  StrokeMask(const StrokeMask&) = delete;
  StrokeMask& operator=(const StrokeMask&) = delete;

  bool Ok() const {
    return cairo_surface_status(m_surface) == CAIRO_STATUS_SUCCESS &&
           cairo_status(m_cr) == CAIRO_STATUS_SUCCESS;
  }
  // Strokes the path shifted by half a pixel, so that the sample at a pixel's
  // centre decides for the point (x, y) itself.
  void Stroke(const std::vector<CDC::PathOp>& path, const CPen& pen,
              const std::vector<double>& dashes) {
    cairo_t* cr = m_cr;
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_set_line_width(cr, pen.m_nWidth);
    bool geometric = (pen.m_nStyle & PS_TYPE_MASK) == PS_GEOMETRIC;
    int cap = geometric ? pen.m_nStyle & PS_ENDCAP_MASK : PS_ENDCAP_ROUND;
    int join = geometric ? pen.m_nStyle & PS_JOIN_MASK : PS_JOIN_ROUND;
    cairo_set_line_cap(cr, cap == PS_ENDCAP_FLAT     ? CAIRO_LINE_CAP_BUTT
                           : cap == PS_ENDCAP_SQUARE ? CAIRO_LINE_CAP_SQUARE
                                                     : CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, join == PS_JOIN_MITER   ? CAIRO_LINE_JOIN_MITER
                            : join == PS_JOIN_BEVEL ? CAIRO_LINE_JOIN_BEVEL
                                                    : CAIRO_LINE_JOIN_ROUND);
    cairo_set_miter_limit(cr, 10.0);  // GDI's default miter limit
    cairo_set_dash(cr, dashes.empty() ? nullptr : dashes.data(), static_cast<int>(dashes.size()),
                   0.0);
    cairo_new_path(cr);
    ptgdi::AppendCairoPath(cr, path, 0.5 - m_left, 0.5 - m_top);
    cairo_set_source_rgba(cr, 0, 0, 0, 1);
    cairo_stroke(cr);
    cairo_surface_flush(m_surface);
  }
  bool Covered(int x, int y) const {
    const unsigned char* data = cairo_image_surface_get_data(m_surface);
    int stride = cairo_image_surface_get_stride(m_surface);
    return data[(y - m_top) * stride + (x - m_left)] != 0;
  }

 private:
  int m_left;
  int m_top;
  cairo_surface_t* m_surface;
  cairo_t* m_cr;
};

}  // namespace

BOOL CRasterDC::StrokeWide(const std::vector<PathOp>& path, const CPen& pen, int nROP2,
                           int nBkMode, COLORREF crBk) {
  if (path.empty() || m_nWidth == 0) return TRUE;
  // Only the window of the surface the pen can reach gets a mask.
  double minX = path[0].x, maxX = path[0].x, minY = path[0].y, maxY = path[0].y;
  for (const PathOp& op : path) {
    minX = std::min(minX, op.x);
    maxX = std::max(maxX, op.x);
    minY = std::min(minY, op.y);
    maxY = std::max(maxY, op.y);
  }
  double reach = pen.m_nWidth * 10.0 + 2.0;  // a miter may reach 10 half-widths out
  double left = std::max(0.0, std::floor(minX - reach));
  double top = std::max(0.0, std::floor(minY - reach));
  double right = std::min(static_cast<double>(m_nWidth), std::ceil(maxX + reach) + 1.0);
  double bottom = std::min(static_cast<double>(m_nHeight), std::ceil(maxY + reach) + 1.0);
  if (!(left < right && top < bottom)) return TRUE;
  int x0 = static_cast<int>(left), y0 = static_cast<int>(top);
  int x1 = static_cast<int>(right), y1 = static_cast<int>(bottom);

  std::vector<double> dashes = StyleRuns(pen, (pen.m_nStyle & PS_STYLE_MASK) == PS_USERSTYLE
                                                  ? 1.0
                                                  : static_cast<double>(pen.m_nWidth));
  StrokeMask drawn(x0, y0, x1 - x0, y1 - y0);
  if (!drawn.Ok()) return FALSE;
  drawn.Stroke(path, pen, dashes);
  // Gaps of a styled pen take the background colour in OPAQUE mode.
  bool fillGaps = !dashes.empty() && nBkMode == OPAQUE;
  StrokeMask whole(x0, y0, fillGaps ? x1 - x0 : 0, fillGaps ? y1 - y0 : 0);
  if (fillGaps) {
    if (!whole.Ok()) return FALSE;
    whole.Stroke(path, pen, {});
  }
  for (int y = y0; y < y1; y++) {
    for (int x = x0; x < x1; x++) {
      if (drawn.Covered(x, y))
        MixPixel(x, y, pen.m_crColor, nROP2);
      else if (fillGaps && whole.Covered(x, y))
        MixPixel(x, y, crBk, nROP2);
    }
  }
  return TRUE;
}
