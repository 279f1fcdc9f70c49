// Thread colour tables: CSV files of name, code and #rrggbb colour, one
// thread a line, as embroidery machine vendors publish them; and GIMP
// palettes (.gpl), the charts the digitizer Ink/Stitch keeps.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "WinTypes.h"

namespace pictrace {

struct ThreadColor {
  std::string name;
  std::string code;
  COLORREF color;  // red in bits 0-7, green 8-15, blue 16-23
};

// Reads a table. A first line "name,code,color" is a header; blank lines are
// skipped. Every other line must hold exactly three comma-separated fields
// with a non-empty name and a #rrggbb colour. On failure returns false and
// sets error to a message naming the source and the line.
bool ParseThreadTable(std::istream& in, const std::string& source, std::vector<ThreadColor>& table,
                      std::string& error);
// Either form, told apart by a first line "GIMP Palette".
bool LoadThreadTable(const std::string& path, std::vector<ThreadColor>& table, std::string& error);

// A GIMP palette: "GIMP Palette", "Name: ...", "Columns: N", one comment line
// skipped unread, then "R G B" (decimal) and the thread's name and number,
// split at the last space. Blank lines and further "#" comments are skipped.
// name, when given, receives the chart's name.
bool ParseGimpPalette(std::istream& in, const std::string& source, std::vector<ThreadColor>& table,
                      std::string& error, std::string* name = nullptr);
// The chart as a GIMP palette that ParseGimpPalette reads back the same.
std::string FormatGimpPalette(const std::string& name, const std::vector<ThreadColor>& table);

// A packed colour from "#rrggbb" (hex digits in either case); false for
// any other text.
bool ParseHexColor(const std::string& text, COLORREF& color);

// "#rrggbb" of a packed colour.
std::string ColorToHex(COLORREF color);

}  // namespace pictrace
