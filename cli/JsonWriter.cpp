#include "cli/JsonWriter.h"

#include <cstdlib>
#include <nlohmann/json.hpp>

namespace pictrace {

namespace {

using nlohmann::json;

// A float as the double with the same shortest decimal text, so that the
// document shows 0.1 rather than the float's exact binary value.
double Number(float v) { return std::strtod(FormatFloat(v).c_str(), nullptr); }

json Point(const CPTPoint& p) { return json::array({Number(p.x), Number(p.y)}); }

json Line(const CPTLine& l) {
  return json{{"type", l.m_nType},
              {"start", Point(l.m_ptStart)},
              {"ctrl1", Point(l.m_ptCtrl1)},
              {"ctrl2", Point(l.m_ptCtrl2)},
              {"end", Point(l.m_ptEnd)}};
}

json Polygon(const CPTPolygon& p) {
  json lines = json::array();
  for (int i = 0; i < p.m_nLines && p.m_pLines; i++) lines.push_back(Line(p.m_pLines[i]));
  return json{{"lineCount", p.m_nLines}, {"lines", std::move(lines)}};
}

json Region(const CPTRegion& r) {
  json polygons = json::array();
  for (int k = 0; k < r.m_nPolygons && r.m_pPolygons; k++) polygons.push_back(Polygon(r.m_pPolygons[k]));
  return json{{"colorIndex", r.m_nColorIndex},
              {"regionFlag", r.m_nRegionFlag},
              {"polygonCount", r.m_nPolygons},
              {"polygons", std::move(polygons)}};
}

}  // namespace

std::string FormatJson(const TraceDocument& doc) {
  json colors = json::array();
  for (COLORREF c : doc.colors) colors.push_back(ColorToHex(c));

  json threads = json::array();
  for (size_t i = 0; i < doc.threadColors.size(); i++) {
    json t{{"color", ColorToHex(doc.threadColors[i])}};
    const ThreadColor* entry = i < doc.threads.size() ? doc.threads[i] : nullptr;
    t["name"] = entry ? json(entry->name) : json(nullptr);
    t["code"] = entry ? json(entry->code) : json(nullptr);
    threads.push_back(std::move(t));
  }

  json regions = json::array();
  const int nRegions = doc.regions ? doc.regions->m_nRegions : 0;
  for (int i = 0; i < nRegions && doc.regions->m_pRegions; i++)
    regions.push_back(Region(doc.regions->m_pRegions[i]));

  json out{{"format", "pictrace-regions"},
           {"version", 1},
           {"source", doc.source},
           {"image", {{"width", doc.imageWidth}, {"height", doc.imageHeight}}},
           {"output",
            {{"left", doc.output.left},
             {"top", doc.output.top},
             {"right", doc.output.right},
             {"bottom", doc.output.bottom}}},
           {"lineType", doc.lineType},
           {"colors", std::move(colors)},
           {"threadColors", std::move(threads)},
           {"regionCount", nRegions},
           {"regions", std::move(regions)}};
  return out.dump() + "\n";
}

}  // namespace pictrace
