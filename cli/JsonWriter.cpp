// JSON: the whole result (every region, polygon and line with all four
// points; every centre line with its tree links) and the colour lists. The
// schema is documented in docs/json-schema.md.
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "cli/Writers.h"

namespace pictrace {

namespace {

using nlohmann::json;

// A float as the double with the same shortest decimal text, so that the
// document shows 0.1 rather than the float's exact binary value.
double Number(float v) { return std::strtod(FormatFloat(v).c_str(), nullptr); }

json Point(const CPTPoint& p) { return json::array({Number(p.x), Number(p.y)}); }

json Lines(const CPTLine* pLines, int nLines) {
  json lines = json::array();
  for (int i = 0; i < nLines && pLines; i++) {
    const CPTLine& l = pLines[i];
    lines.push_back(json{{"type", l.m_nType},
                         {"start", Point(l.m_ptStart)},
                         {"ctrl1", Point(l.m_ptCtrl1)},
                         {"ctrl2", Point(l.m_ptCtrl2)},
                         {"end", Point(l.m_ptEnd)}});
  }
  return lines;
}

json Region(const CPTRegion& r) {
  json polygons = json::array();
  for (int k = 0; k < r.m_nPolygons && r.m_pPolygons; k++) {
    const CPTPolygon& p = r.m_pPolygons[k];
    polygons.push_back(json{{"lineCount", p.m_nLines}, {"lines", Lines(p.m_pLines, p.m_nLines)}});
  }
  return json{{"colorIndex", r.m_nColorIndex},
              {"regionFlag", r.m_nRegionFlag},
              {"polygonCount", r.m_nPolygons},
              {"polygons", std::move(polygons)}};
}

// A centre line: its links are ids of other lines (indexes into "lines"), or -1.
json ThinLine(int id, const CPTThinLine& thin) {
  json entry{{"id", id}, {"colorIndex", thin.m_nColorIndex}};
  if (thin.m_nPolygonLines < 1 || !thin.m_pPolygonLines) return entry;
  const CPTPolygonLine& line = thin.m_pPolygonLines[0];
  entry["nextSibling"] = line.m_nAttr1;
  entry["parent"] = line.m_nAttr2;
  entry["firstChild"] = line.m_nAttr3;
  entry["laterBranch"] = line.m_nAttr4;
  entry["selected"] = line.m_nAttr5;
  entry["lineCount"] = line.m_nLines;
  entry["lines"] = Lines(line.m_pLines, line.m_nLines);
  return entry;
}

json Hexes(const std::vector<COLORREF>& list) {
  json out = json::array();
  for (COLORREF c : list) out.push_back(ColorToHex(c));
  return out;
}

}  // namespace

std::string FormatJson(const OutputDocument& doc, CPictrace&) {
  json out{{"format", doc.hasLines ? "pictrace-lines" : "pictrace-regions"},
           {"version", 1},
           {"source", doc.source},
           {"image", {{"width", doc.imageWidth}, {"height", doc.imageHeight}}},
           {"output",
            {{"left", doc.output.left},
             {"top", doc.output.top},
             {"right", doc.output.right},
             {"bottom", doc.output.bottom}}},
           {"lineType", doc.lineType}};
  if (doc.hasRegions) {
    json threads = json::array();
    for (const ThreadEntry& t : doc.threads)
      threads.push_back(json{{"color", ColorToHex(t.color)},
                             {"name", t.inTable ? json(t.name) : json(nullptr)},
                             {"code", t.inTable ? json(t.code) : json(nullptr)}});
    json regions = json::array();
    for (int i = 0; i < doc.regions.m_nRegions && doc.regions.m_pRegions; i++)
      regions.push_back(Region(doc.regions.m_pRegions[i]));
    out["colors"] = Hexes(doc.colors);
    out["threadColors"] = std::move(threads);
    out["regionCount"] = doc.regions.m_nRegions;
    out["regions"] = std::move(regions);
  }
  if (doc.hasLines) {
    json lines = json::array();
    for (int i = 0; i < doc.lines.m_nThinLines && doc.lines.m_pThinLines; i++)
      lines.push_back(ThinLine(i, doc.lines.m_pThinLines[i]));
    out["lineColors"] = Hexes(doc.lineColors);
    out["background"] = doc.hasBackground ? json(ColorToHex(doc.background)) : json(nullptr);
    out["lineCount"] = doc.lines.m_nThinLines;
    out["lines"] = std::move(lines);
  }
  // Names from thread tables or file names may not be UTF-8 (Latin-1, say):
  // such bytes become U+FFFD rather than failing the whole write.
  return out.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace pictrace
