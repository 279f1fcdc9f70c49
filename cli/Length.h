// Lengths on the command line: "100mm", "10cm", "4in", or a bare number in
// output units (10 per mm, the unit every output is written in), and the
// output rectangle a command sets from --width, --height and --size.
#pragma once

#include <string>

namespace pictrace {

constexpr double kUnitsPerMm = 10.0;
// Largest output side, in output units (100 m); far beyond any hoop.
constexpr long kMaxOutputUnits = 1000000;

// LEN into whole output units (rounded). False, with a message naming the
// option and the text, for anything but a positive number with mm, cm, in or
// no unit, or a length of less than one unit or more than kMaxOutputUnits.
bool ParseLength(const std::string& option, const std::string& text, long& units, std::string& error);

// What the user asked for; empty strings are options not given.
struct SizeRequest {
  std::string width;
  std::string height;
  std::string size;  // "WxH", each side a LEN
};

// The output rectangle's size for a picture of pixelsW x pixelsH: --size or
// both --width and --height stretch; one of them keeps the picture's
// proportions; none keeps one unit per pixel.
bool OutputSize(const SizeRequest& request, int pixelsW, int pixelsH, long& outW, long& outH,
                std::string& error);

// Output units as millimetres for SVG: "100mm", "88.7mm".
std::string UnitsAsMm(long units);

}  // namespace pictrace
