// SVG for the embroidery digitizer Ink/Stitch: its namespaces and version
// element, one layer per thread in stitch order, labelled with the thread's
// name and code; every fill a path per connected piece with its holes and a
// fill angle along its long axis; every running stitch a stroked path
// without fill; every satin column a stroked path of its rails and rungs. Sizes in mm, coordinates in output units.
#include <cmath>
#include <sstream>

#include "cli/Embroidery.h"
#include "cli/Writers.h"

namespace pictrace {

namespace {

// Length of the UTF-8 sequence starting at s[i], 0 when it is not one.
size_t Utf8Length(const std::string& s, size_t i) {
  const unsigned char c = static_cast<unsigned char>(s[i]);
  const size_t n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
  if (n == 0 || i + n > s.size()) return 0;
  for (size_t k = 1; k < n; k++)
    if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return 0;
  return n;
}

// Attribute text: markup escaped; bytes that are not UTF-8 (a Latin-1 chart,
// say) become U+FFFD, so that the file still parses.
std::string XmlText(const std::string& s) {
  std::string out;
  for (size_t i = 0; i < s.size();) {
    const size_t n = Utf8Length(s, i);
    const char c = s[i];
    if (n == 0) out += "\xEF\xBF\xBD";
    else if (c == '&') out += "&amp;";
    else if (c == '<') out += "&lt;";
    else if (c == '>') out += "&gt;";
    else if (c == '"') out += "&quot;";
    else if (static_cast<unsigned char>(c) < 0x20) out += ' ';
    else out.append(s, i, n);
    i += n ? n : 1;
  }
  return out;
}

}  // namespace

std::string FormatInkstitch(const OutputDocument& doc, CPictrace&) {
  const StitchPlan& plan = PlanOf(doc);
  std::ostringstream out;
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\" "
         "xmlns:inkstitch=\"http://inkstitch.org/namespace\" version=\"1.1\" "
      << SvgSize(doc) << ">\n"
      << "<metadata><inkstitch:inkstitch_svg_version>1</inkstitch:inkstitch_svg_version></metadata>\n";
  for (size_t n = 0; n < plan.layers.size(); n++) {
    const StitchLayer& layer = plan.layers[n];
    out << "<g id=\"layer" << n + 1 << "\" inkscape:groupmode=\"layer\" inkscape:label=\"" << XmlText(layer.label)
        << "\">\n";
    for (const StitchPiece& piece : layer.pieces) {
      if (piece.fill) {
        std::string d;
        for (const PathChain& ring : piece.rings) d += (d.empty() ? "" : " ") + PathData(ring, true);
        out << "<path style=\"fill:" << ColorToHex(layer.color) << ";fill-rule:evenodd;stroke:none\" inkstitch:angle=\""
            << piece.angle << "\" d=\"" << d << "\"/>\n";
      } else if (piece.satin) {
        // Rails first, then the rungs, each an open sub-path.
        std::string d;
        for (const PathChain& part : piece.rings) d += (d.empty() ? "" : " ") + PathData(part, false);
        out << "<path style=\"fill:none;stroke:" << ColorToHex(layer.color)
            << ";stroke-width:3\" inkstitch:satin_column=\"true\" d=\"" << d << "\"/>\n";
      } else {
        out << "<path style=\"fill:none;stroke:" << ColorToHex(layer.color)
            << ";stroke-width:3\" inkstitch:running_stitch_length_mm=\"2.5\" d=\""
            << PathData(piece.rings.front(), piece.closed) << "\"/>\n";
      }
    }
    out << "</g>\n";
  }
  out << "</svg>\n";
  return out.str();
}

}  // namespace pictrace
