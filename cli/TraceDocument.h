// What a trace run hands to its output writers: the regions in output units,
// the colour lists, and where they came from. The writers only read plain
// fields, so they work on any CPTRegions, the engine's or one built by hand.
#pragma once

#include <string>
#include <vector>

#include "PTResults.h"
#include "cli/ThreadTable.h"

namespace pictrace {

struct TraceDocument {
  std::string source;              // the input file, for the record
  int imageWidth = 0;              // the picture, in pixels
  int imageHeight = 0;
  RECT output = {0, 0, 0, 0};      // the output rectangle the regions are mapped into
  int lineType = 0;                // 0 straight lines, 1 cubic Beziers
  std::vector<COLORREF> colors;    // the colour list; a region's index n means colors[n - 1]
  // With a thread table: the nearest thread of each colour of the list, and
  // the table entry it came from (null when no entry has that colour).
  std::vector<COLORREF> threadColors;
  std::vector<const ThreadColor*> threads;
  const CPTRegions* regions = nullptr;

  // The colour a region of one-based index n is painted with: its thread
  // colour when a table was given, else its own. Black for a stray index.
  COLORREF PaintColor(int n) const;
};

// Writes text to a file, or to standard output for the path "-".
bool WriteTextFile(const std::string& path, const std::string& text, std::string& error);

// The shortest decimal text that reads back as the same float.
std::string FormatFloat(float v);

}  // namespace pictrace
