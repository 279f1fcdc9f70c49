// What a run hands to its output writers: the regions of a trace or the
// centre lines of a line drawing, their colour lists, the thread matched to
// each colour, and the picture and output rectangle they belong to. Every
// writer reads only this, so every format serves both commands.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PTResults.h"
#include "cli/ThreadTable.h"

class CPictrace;

namespace pictrace {

struct StitchPlan;

// The thread matched to one colour of the list: its colour, and its name and
// code when the table has an entry of that colour.
struct ThreadEntry {
  COLORREF color = 0;
  bool inTable = false;
  std::string name;
  std::string code;
};

struct OutputDocument {
  OutputDocument() = default;
  OutputDocument(const OutputDocument&) = delete;  // the result classes free their arrays
  OutputDocument& operator=(const OutputDocument&) = delete;

  std::string source;          // the input file, for the record
  int imageWidth = 0;          // the picture, in pixels
  int imageHeight = 0;
  RECT output = {0, 0, 0, 0};  // the output rectangle the coordinates are in
  int lineType = 0;            // 0 straight lines, 1 cubic Beziers
  bool inkstitch = false;      // the SVG in the embroidery digitizer's dialect
  RECT page = {0, 0, 0, 0};    // the SVG page, when not the output rectangle
  // The stitch plan of this document once made (PlanOf in Embroidery.h);
  // the writers and the summary share it. Whoever changes the page drops it.
  mutable std::shared_ptr<const StitchPlan> stitchPlan;
  // The embroidery plan: strips the engine flags narrow as satin columns (a
  // running stitch under 1 mm), and fills grown by `underlap` output units
  // under the neighbours stitched after them.
  bool satin = false;
  double underlap = 0;

  // Regions (trace): a region's colour index n means colors[n - 1].
  bool hasRegions = false;
  std::vector<COLORREF> colors;
  std::vector<ThreadEntry> threads;  // with a thread table: one per colour
  CPTRegions regions;

  // Centre lines (lines): a line's colour index n means lineColors[n - 1].
  bool hasLines = false;
  std::vector<COLORREF> lineColors;
  bool hasBackground = false;  // the colour taken as background, if any
  COLORREF background = 0;
  CPTThinLines lines;

  // The SVG page in output units: the page when set, else the output
  // rectangle, else the picture in pixels offset by the rectangle's corner
  // (with a rectangle of no size the engine keeps the coordinates in pixels).
  void Page(long& x, long& y, long& w, long& h) const;

  // The colour a region of index n is painted with: its thread's when a
  // table was given, else its own; black for a stray index.
  COLORREF PaintColor(int n) const;
  // The colour of a line of index n; black for a stray index.
  COLORREF LineColor(int n) const;
};

// The picture, output rectangle and line type of the engine's current run.
void TakeFrame(OutputDocument& doc, CPictrace& engine, const std::string& source);
// The engine's regions (its background regions when bBackground), its colour
// list and, when it matched thread colours, the table entry of each.
void TakeRegions(OutputDocument& doc, CPictrace& engine, const std::vector<ThreadColor>& table,
                 bool bBackground = false);
// The engine's centre lines and line colour list.
void TakeLines(OutputDocument& doc, CPictrace& engine);
// Turns the document's centre lines into Bezier curves with the engine's
// fitter, within its curve tolerance; every line keeps its two ends, where
// the lines of a tree meet.
void CurveLines(OutputDocument& doc, CPictrace& engine);

// A chain of outline or centre lines copied out of the result classes (which
// own their arrays): what the embroidery plan rotates, reverses and joins.
struct PathPoint {
  float x = 0, y = 0;
};
struct PathLine {
  int type = 0;  // 0 straight, 1 cubic Bezier through c1 and c2
  PathPoint start, c1, c2, end;
};
using PathChain = std::vector<PathLine>;
PathChain ChainOf(const CPTLine* pLines, int nLines);
// SVG path data of a chain: "M x y L x y ..." with "C" for Bezier lines and
// a closing "Z" when closed; empty for no lines.
std::string PathData(const PathChain& chain, bool bClosed);

// The shortest decimal text that reads back as the same float: the one
// number format of every writer.
std::string FormatFloat(float v);

}  // namespace pictrace
