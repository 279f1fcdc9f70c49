// pictrace lines IN [-o OUT.svg] [--colors N] [--line-color #rrggbb ...]
// [--json OUT.json] [--preview OUT.png]: thins the strokes of a line drawing
// to one-pixel centre lines and writes them as SVG polylines, with their
// tree links in the JSON.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include <nlohmann/json.hpp>

#include "RasterDC.h"
#include "cli/Commands.h"
#include "cli/ImageFile.h"
#include "thinline/LineArtJob.h"
#include "core/ThinLineRecords.h"

namespace pictrace {
namespace cli {

namespace {

struct LinesOptions {
  std::string input;
  std::string output = "-";
  int colors = 2;
  std::vector<std::string> lineColors;
  std::string json;
  std::string preview;
};

std::string Hex(COLORREF c) {
  char text[8];
  std::snprintf(text, sizeof(text), "#%02x%02x%02x", GetRValue(c), GetGValue(c), GetBValue(c));
  return text;
}

bool ParseHex(const std::string& text, COLORREF& color) {
  if (text.size() != 7 || text[0] != '#') return false;
  unsigned value = 0;
  for (size_t i = 1; i < 7; i++) {
    const char ch = text[i];
    int digit;
    if (ch >= '0' && ch <= '9') digit = ch - '0';
    else if (ch >= 'a' && ch <= 'f') digit = ch - 'a' + 10;
    else if (ch >= 'A' && ch <= 'F') digit = ch - 'A' + 10;
    else return false;
    value = value * 16 + static_cast<unsigned>(digit);
  }
  color = RGB((value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF);
  return true;
}

std::string Number(float v) {
  char text[32];
  std::snprintf(text, sizeof(text), "%g", static_cast<double>(v));
  return text;
}

bool WriteText(const std::string& path, const std::string& text, std::string& error) {
  if (path == "-") {
    std::cout << text;
    return true;
  }
  std::ofstream out(path, std::ios::binary);
  out << text;
  out.close();
  if (!out) {
    error = path + ": cannot write the file";
    return false;
  }
  return true;
}

// The points of a polygon line: its first start, then every end.
std::vector<std::pair<float, float>> PointsOf(const CPTPolygonLine& line) {
  std::vector<std::pair<float, float>> points;
  if (line.m_nLines <= 0 || !line.m_pLines) return points;
  points.emplace_back(line.m_pLines[0].m_ptStart.x, line.m_pLines[0].m_ptStart.y);
  for (int j = 0; j < line.m_nLines; j++)
    points.emplace_back(line.m_pLines[j].m_ptEnd.x, line.m_pLines[j].m_ptEnd.y);
  return points;
}

// One polyline per thin line, grouped by colour; a line of a single point
// (a junction on its own) has nothing to draw.
std::string FormatSvg(const CPTThinLines& lines, const CDWordArray& colors, const CRect& rc) {
  std::ostringstream svg;
  svg << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << rc.Width() << "\" height=\""
      << rc.Height() << "\" viewBox=\"" << rc.left << " " << rc.top << " " << rc.Width() << " "
      << rc.Height() << "\">\n";
  int group = -1;
  for (int i = 0; i < lines.m_nThinLines; i++) {
    const CPTThinLine& thin = lines.m_pThinLines[i];
    if (thin.m_nColorIndex != group) {
      if (group >= 0) svg << "</g>\n";
      group = thin.m_nColorIndex;
      COLORREF c = (group >= 1 && group <= colors.GetSize()) ? colors[group - 1] : 0;
      svg << "<g fill=\"none\" stroke=\"" << Hex(c) << "\" stroke-width=\"1\">\n";
    }
    auto points = PointsOf(thin.m_pPolygonLines[0]);
    if (points.empty()) continue;
    svg << "<polyline id=\"line" << i << "\" points=\"";
    for (size_t k = 0; k < points.size(); k++)
      svg << (k ? " " : "") << Number(points[k].first) << "," << Number(points[k].second);
    svg << "\"/>\n";
  }
  if (group >= 0) svg << "</g>\n";
  svg << "</svg>\n";
  return svg.str();
}

// Every line with its colour, points and links; a link is the id of
// another line (its index in "lines"), or -1.
std::string FormatJson(const LinesOptions& o, const CPictrace& engine, const CPTThinLines& lines,
                       const thinline::LineArtResult& result) {
  nlohmann::json doc;
  doc["source"] = o.input;
  doc["width"] = engine.m_bmiHeader.biWidth;
  doc["height"] = engine.m_bmiHeader.biHeight;
  doc["output"] = {engine.m_rcImageReal.left, engine.m_rcImageReal.top,
                   engine.m_rcImageReal.right, engine.m_rcImageReal.bottom};
  doc["background"] = result.bBackground ? nlohmann::json(Hex(result.crBackground)) : nlohmann::json();
  nlohmann::json colors = nlohmann::json::array();
  for (INT_PTR i = 0; i < engine.m_arrLineColors.GetSize(); i++)
    colors.push_back(Hex(engine.m_arrLineColors[i]));
  doc["lineColors"] = colors;
  nlohmann::json out = nlohmann::json::array();
  for (int i = 0; i < lines.m_nThinLines; i++) {
    const CPTThinLine& thin = lines.m_pThinLines[i];
    const CPTPolygonLine& line = thin.m_pPolygonLines[0];
    nlohmann::json entry;
    entry["id"] = i;
    entry["colorIndex"] = thin.m_nColorIndex;
    entry["nextSibling"] = line.m_nAttr1;
    entry["parent"] = line.m_nAttr2;
    entry["firstChild"] = line.m_nAttr3;
    entry["laterBranch"] = line.m_nAttr4;
    entry["selected"] = line.m_nAttr5;
    nlohmann::json points = nlohmann::json::array();
    for (auto& p : PointsOf(line)) points.push_back({p.first, p.second});
    entry["points"] = points;
    out.push_back(entry);
  }
  doc["lines"] = out;
  return doc.dump() + "\n";
}

// The segmented picture faded towards white, the centre lines on top.
bool WritePreview(CPictrace& engine, const std::string& path, std::string& error) {
  const int width = engine.m_bmiHeader.biWidth;
  const int height = engine.m_bmiHeader.biHeight;
  CRasterDC dc(width, height);
  RECT dest{0, 0, width, height};
  engine.DrawDIB(&dc, &dest, FALSE);
  BYTE* bits = dc.GetBits();
  for (int y = 0; y < height; y++)
    for (int x = 0; x < 3 * width; x++) {
      BYTE& b = bits[static_cast<size_t>(y) * dc.GetStride() + x];
      b = static_cast<BYTE>(255 - (255 - b) / 4);
    }
  const int thinning = engine.IsThinning();
  engine.SetThinningFlag(1);
  engine.DrawThinLine(&dc, CRect(0, 0, width, height));
  engine.SetThinningFlag(thinning);
  return WritePng(path, dc.GetBits(), width, height, dc.GetStride(), error);
}

int RunLines(const LinesOptions& o) {
  thinline::LineArtOptions job;
  job.nColors = o.colors;
  for (const std::string& text : o.lineColors) {
    COLORREF c;
    if (!ParseHex(text, c)) return Fail("--line-color " + text + ": expected #rrggbb");
    job.lineColors.push_back(c);
  }

  CPictrace engine;
  std::vector<unsigned char> dib;
  if (!LoadIntoEngine(engine, o.input, dib)) return kExitFailure;
  const int width = engine.m_bmiHeader.biWidth;
  const int height = engine.m_bmiHeader.biHeight;
  // One output unit per pixel: the engine's length thresholds are then the
  // ones meant for a picture shown at its own size.
  engine.SetImageRealRect(0, 0, width, height);

  thinline::LineArtResult result;
  std::string error;
  if (!thinline::RunLineArt(engine, job, result, error)) return Fail(o.input + ": " + error);

  CPTThinLines lines;
  engine.GetThinLines(&lines);
  long points = 0;
  for (int i = 0; i < lines.m_nThinLines; i++) points += lines.m_pThinLines[i].m_pPolygonLines[0].m_nLines + 1;
  long skeleton = 0;
  for (const COutlineThinline* pLine : engine.m_listThinLines) skeleton += pLine->m_nRawPoints;

  if (!WriteText(o.output, FormatSvg(lines, engine.m_arrLineColors, engine.m_rcImageReal), error))
    return Fail(error);
  if (!o.json.empty() && !WriteText(o.json, FormatJson(o, engine, lines, result), error))
    return Fail(error);
  if (!o.preview.empty() && !WritePreview(engine, o.preview, error)) return Fail(error);

  std::ostream& report = SummaryStream(o.output);
  report << "lines: " << lines.m_nThinLines << " lines, " << points << " points (from "
         << skeleton << " skeleton pixels) in "
         << engine.m_arrLineColors.GetSize() << " line colours, " << width << " x " << height
         << " pixels; segmentation " << result.dSegmentSeconds << " s, thinning "
         << result.dThinSeconds << " s, tracing " << result.dTraceSeconds << " s";
  if (o.output != "-") report << " -> " << o.output;
  report << "\n";
  return 0;
}

}  // namespace

Command AddLinesCommand(CLI::App& parent) {
  auto o = std::make_shared<LinesOptions>();
  CLI::App* app = parent.add_subcommand(
      "lines", "Thin the strokes of a line drawing to centre lines and write them as SVG");
  AddPictureAndSvgOptions(app, o->input, o->output);
  app->add_option("--colors", o->colors, "number of colours wanted from the segmentation (1 to 50, default 2)")
      ->check(CLI::Range(1, 50));
  app->add_option("--line-color", o->lineColors,
                  "#rrggbb of a colour to thin (repeatable; default: every colour but the background)")
      ->allow_extra_args(false);
  app->add_option("--json", o->json, "JSON file with every line's points and tree links");
  app->add_option("--preview", o->preview, "PNG preview: the picture faded, the centre lines on top");
  return {app, [o]() { return RunLines(*o); }};
}

}  // namespace cli
}  // namespace pictrace
