// SVG: one even-odd path per region (outer outline and holes), grouped by
// colour in the order of the colour list; then one open path per centre
// line, grouped by line colour. Coordinates are in output units.
#include <sstream>

#include "cli/Writers.h"

namespace pictrace {

namespace {

void AppendPoint(std::string& d, const CPTPoint& p) {
  d += FormatFloat(p.x);
  d += ' ';
  d += FormatFloat(p.y);
}

// "M x y L x y ..." of a chain of lines, with "C" for Bezier lines and a
// closing "Z" for a polygon. Empty for no lines.
std::string ChainPath(const CPTLine* pLines, int nLines, bool bClosed) {
  std::string d;
  if (nLines <= 0 || !pLines) return d;
  d += 'M';
  AppendPoint(d, pLines[0].m_ptStart);
  for (int i = 0; i < nLines; i++) {
    const CPTLine& l = pLines[i];
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
  if (bClosed) d += 'Z';
  return d;
}

std::string RegionPath(const CPTRegion& region) {
  std::string d;
  for (int k = 0; k < region.m_nPolygons && region.m_pPolygons; k++) {
    std::string figure = ChainPath(region.m_pPolygons[k].m_pLines, region.m_pPolygons[k].m_nLines, true);
    if (figure.empty()) continue;
    if (!d.empty()) d += ' ';
    d += figure;
  }
  return d;
}

// The view box: the output rectangle, or the picture in pixels offset by the
// rectangle's corner when the rectangle has no size (the engine then keeps
// the coordinates in pixels).
void ViewBox(const OutputDocument& doc, long& x, long& y, long& w, long& h) {
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

std::string FormatSvg(const OutputDocument& doc, CPictrace&) {
  long x, y, w, h;
  ViewBox(doc, x, y, w, h);
  std::ostringstream out;
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" << w
      << "\" height=\"" << h << "\" viewBox=\"" << x << ' ' << y << ' ' << w << ' ' << h
      << "\">\n";
  // Regions and lines come grouped by colour already; the scan per colour
  // keeps the grouping whatever order a hand-built result has.
  const int nColors = doc.hasRegions ? static_cast<int>(doc.colors.size()) : 0;
  for (int n = 1; n <= nColors; n++) {
    bool bOpen = false;
    for (int i = 0; i < doc.regions.m_nRegions && doc.regions.m_pRegions; i++) {
      const CPTRegion& r = doc.regions.m_pRegions[i];
      if (r.m_nColorIndex != n) continue;
      std::string d = RegionPath(r);
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
  // A line of a single point (a junction on its own) has nothing to draw.
  const int nLineColors = doc.hasLines ? static_cast<int>(doc.lineColors.size()) : 0;
  for (int n = 1; n <= nLineColors; n++) {
    bool bOpen = false;
    for (int i = 0; i < doc.lines.m_nThinLines && doc.lines.m_pThinLines; i++) {
      const CPTThinLine& thin = doc.lines.m_pThinLines[i];
      if (thin.m_nColorIndex != n || thin.m_nPolygonLines < 1) continue;
      std::string d = ChainPath(thin.m_pPolygonLines[0].m_pLines, thin.m_pPolygonLines[0].m_nLines, false);
      if (d.empty()) continue;
      if (!bOpen) {
        out << "<g id=\"line-color-" << n << "\" fill=\"none\" stroke=\"" << ColorToHex(doc.LineColor(n))
            << "\" stroke-width=\"1\">\n";
        bOpen = true;
      }
      out << "<path id=\"line" << i << "\" d=\"" << d << "\"/>\n";
    }
    if (bOpen) out << "</g>\n";
  }
  out << "</svg>\n";
  return out.str();
}

}  // namespace pictrace
