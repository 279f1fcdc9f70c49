#include "cli/SvgWriter.h"

#include <sstream>

namespace pictrace {

namespace {

void AppendPoint(std::string& d, const CPTPoint& p) {
  d += FormatFloat(p.x);
  d += ' ';
  d += FormatFloat(p.y);
}

// The view box: the output rectangle, or the picture in pixels offset by the
// rectangle's corner when the rectangle has no size (the engine then keeps
// the regions in pixels).
void ViewBox(const TraceDocument& doc, long& x, long& y, long& w, long& h) {
  x = doc.output.left;
  y = doc.output.top;
  w = doc.output.right - doc.output.left;
  h = doc.output.bottom - doc.output.top;
  if (w == 0 || h == 0) {
    w = doc.imageWidth;
    h = doc.imageHeight;
  }
}

}  // namespace

std::string FormatRegionPath(const CPTRegion& region) {
  std::string d;
  for (int k = 0; k < region.m_nPolygons && region.m_pPolygons; k++) {
    const CPTPolygon& poly = region.m_pPolygons[k];
    if (poly.m_nLines <= 0 || !poly.m_pLines) continue;
    if (!d.empty()) d += ' ';
    d += 'M';
    AppendPoint(d, poly.m_pLines[0].m_ptStart);
    for (int i = 0; i < poly.m_nLines; i++) {
      const CPTLine& l = poly.m_pLines[i];
      if (l.m_nType == 0) {
        d += 'L';
      } else {
        d += 'C';
        AppendPoint(d, l.m_ptCtrl1);
        d += ' ';
        AppendPoint(d, l.m_ptCtrl2);
        d += ' ';
      }
      AppendPoint(d, l.m_ptEnd);
    }
    d += 'Z';
  }
  return d;
}

std::string FormatSvg(const TraceDocument& doc) {
  long x, y, w, h;
  ViewBox(doc, x, y, w, h);
  std::ostringstream out;
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" << w
      << "\" height=\"" << h << "\" viewBox=\"" << x << ' ' << y << ' ' << w << ' ' << h
      << "\">\n";
  const int nRegions = doc.regions ? doc.regions->m_nRegions : 0;
  const int nColors = static_cast<int>(doc.colors.size());
  // Regions come grouped by colour already; the scan per colour keeps the
  // grouping whatever order a hand-built result has.
  for (int n = 1; n <= nColors; n++) {
    bool bOpen = false;
    for (int i = 0; i < nRegions; i++) {
      const CPTRegion& r = doc.regions->m_pRegions[i];
      if (r.m_nColorIndex != n) continue;
      std::string d = FormatRegionPath(r);
      if (d.empty()) continue;
      if (!bOpen) {
        out << "<g id=\"color-" << n << "\" fill=\"" << ColorToHex(doc.PaintColor(n))
            << "\" fill-rule=\"evenodd\" stroke=\"none\">\n";
        bOpen = true;
      }
      out << "<path d=\"" << d << "\"/>\n";
    }
    if (bOpen) out << "</g>\n";
  }
  out << "</svg>\n";
  return out.str();
}

}  // namespace pictrace
