// SVG: one even-odd path per region (outer outline and holes), grouped by
// colour in the order of the colour list; then one open path per centre
// line, grouped by line colour. Coordinates are in output units, 10 to the
// millimetre, which the width and height in mm say.
#include <sstream>

#include "cli/Length.h"
#include "cli/Writers.h"

namespace pictrace {

namespace {

std::string RegionPath(const CPTRegion& region) {
  std::string d;
  for (int k = 0; k < region.m_nPolygons && region.m_pPolygons; k++) {
    std::string figure = PathData(ChainOf(region.m_pPolygons[k].m_pLines, region.m_pPolygons[k].m_nLines), true);
    if (figure.empty()) continue;
    if (!d.empty()) d += ' ';
    d += figure;
  }
  return d;
}

}  // namespace

std::string SvgSize(const OutputDocument& doc) {
  long x, y, w, h;
  doc.Page(x, y, w, h);
  return "width=\"" + UnitsAsMm(w) + "\" height=\"" + UnitsAsMm(h) + "\" viewBox=\"" + std::to_string(x) + ' ' +
         std::to_string(y) + ' ' + std::to_string(w) + ' ' + std::to_string(h) + '"';
}

std::string FormatSvg(const OutputDocument& doc, CPictrace& engine) {
  if (doc.inkstitch) return FormatInkstitch(doc, engine);
  std::ostringstream out;
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" " << SvgSize(doc) << ">\n";
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
      std::string d = PathData(ChainOf(thin.m_pPolygonLines[0].m_pLines, thin.m_pPolygonLines[0].m_nLines), false);
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
