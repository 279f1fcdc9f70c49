#include "cli/OutputDocument.h"

#include <charconv>

#include "Pictrace.h"

namespace pictrace {

namespace {

COLORREF Entry(const std::vector<COLORREF>& list, int n) {
  if (n < 1 || n > static_cast<int>(list.size())) return 0;
  return list[static_cast<size_t>(n - 1)];
}

std::vector<COLORREF> Copy(const CDWordArray& list) {
  std::vector<COLORREF> out;
  for (INT_PTR i = 0; i < list.GetSize(); i++) out.push_back(list[i]);
  return out;
}

}  // namespace

COLORREF OutputDocument::PaintColor(int n) const {
  if (threads.empty()) return Entry(colors, n);
  if (n < 1 || n > static_cast<int>(threads.size())) return 0;
  return threads[static_cast<size_t>(n - 1)].color;
}

void OutputDocument::Page(long& x, long& y, long& w, long& h) const {
  const RECT& r = page.right > page.left && page.bottom > page.top ? page : output;
  x = r.left;
  y = r.top;
  w = r.right - r.left;
  h = r.bottom - r.top;
  if (w == 0 || h == 0) {
    w = imageWidth;
    h = imageHeight;
  }
}

COLORREF OutputDocument::LineColor(int n) const { return Entry(lineColors, n); }

void TakeFrame(OutputDocument& doc, CPictrace& engine, const std::string& source) {
  doc.source = source;
  doc.imageWidth = engine.m_bmiHeader.biWidth;
  doc.imageHeight = engine.m_bmiHeader.biHeight;
  doc.output = engine.m_rcImageReal;
  doc.lineType = engine.m_nOutputLineType;
}

void TakeRegions(OutputDocument& doc, CPictrace& engine, const std::vector<ThreadColor>& table,
                 bool bBackground) {
  doc.hasRegions = true;
  if (bBackground) engine.GetBackgroundRegions(&doc.regions, engine.m_nOutputLineType);
  else engine.GetRegions(&doc.regions, engine.m_nOutputLineType);
  doc.colors = Copy(engine.m_arrColorList);
  doc.threads.clear();
  for (COLORREF c : Copy(engine.m_arrNearestColors)) {
    ThreadEntry entry;
    entry.color = c;
    for (const ThreadColor& t : table)
      if (t.color == c) {
        entry.inTable = true;
        entry.name = t.name;
        entry.code = t.code;
        break;
      }
    doc.threads.push_back(entry);
  }
}

void TakeLines(OutputDocument& doc, CPictrace& engine) {
  doc.hasLines = true;
  engine.GetThinLines(&doc.lines);
  doc.lineColors = Copy(engine.m_arrLineColors);
}

void CurveLines(OutputDocument& doc, CPictrace& engine) {
  for (int i = 0; i < doc.lines.m_nThinLines; i++) {
    CPTThinLine& line = doc.lines.m_pThinLines[i];
    for (int k = 0; k < line.m_nPolygonLines; k++) engine.ConvertToBezier(&line.m_pPolygonLines[k]);
  }
}

PathChain ChainOf(const CPTLine* pLines, int nLines) {
  PathChain chain;
  for (int i = 0; i < nLines && pLines; i++) {
    const CPTLine& l = pLines[i];
    chain.push_back({l.m_nType, {l.m_ptStart.x, l.m_ptStart.y}, {l.m_ptCtrl1.x, l.m_ptCtrl1.y},
                     {l.m_ptCtrl2.x, l.m_ptCtrl2.y}, {l.m_ptEnd.x, l.m_ptEnd.y}});
  }
  return chain;
}

namespace {

void AppendPoint(std::string& d, const PathPoint& p) {
  d += FormatFloat(p.x);
  d += ' ';
  d += FormatFloat(p.y);
}

}  // namespace

std::string PathData(const PathChain& chain, bool bClosed) {
  std::string d;
  if (chain.empty()) return d;
  d += 'M';
  AppendPoint(d, chain[0].start);
  for (const PathLine& l : chain) {
    if (l.type == 0) {
      d += 'L';
    } else {
      d += 'C';
      AppendPoint(d, l.c1);
      d += ' ';
      AppendPoint(d, l.c2);
      d += ' ';
    }
    AppendPoint(d, l.end);
  }
  if (bClosed) d += 'Z';
  return d;
}

std::string FormatFloat(float v) {
  char buf[32];
  auto r = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, r.ptr);
}

}  // namespace pictrace
