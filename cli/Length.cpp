#include "cli/Length.h"

#include <algorithm>
#include <cmath>

namespace pictrace {

namespace {

struct Unit {
  const char* name;
  double units;  // output units per one of it
};
const Unit kUnits[] = {{"mm", kUnitsPerMm}, {"cm", 10 * kUnitsPerMm}, {"in", 25.4 * kUnitsPerMm}, {"", 1.0}};

const char* kWanted = "expected a length such as 100mm, 10cm or 4in (a bare number is output units, 10 per mm)";

// 0 read, 1 not a number, 2 an unknown unit, 3 out of range.
enum { kRead, kNotANumber, kUnknownUnit, kOutOfRange };
int ReadLength(const std::string& text, long& units, std::string& suffix) {
  // Digits with at most one decimal point; no signs, exponents, NaN or infinities.
  size_t i = 0, digits = 0;
  bool point = false;
  for (; i < text.size(); i++) {
    if (text[i] >= '0' && text[i] <= '9') digits++;
    else if (text[i] == '.' && !point) point = true;
    else break;
  }
  if (digits == 0) return kNotANumber;
  suffix = text.substr(i);
  const Unit* unit = nullptr;
  for (const Unit& u : kUnits)
    if (suffix == u.name) unit = &u;
  if (!unit) return kUnknownUnit;
  const double value = std::strtod(text.substr(0, i).c_str(), nullptr) * unit->units;
  if (!(value >= 0.5) || value >= kMaxOutputUnits + 0.5) return kOutOfRange;
  units = std::lround(value);
  return kRead;
}

}  // namespace

bool ParseLength(const std::string& option, const std::string& text, long& units, std::string& error) {
  std::string suffix;
  const int result = ReadLength(text, units, suffix);
  const std::string what = option + " " + text + ": ";
  if (result == kNotANumber) error = what + kWanted;
  if (result == kUnknownUnit) error = what + "unknown unit \"" + suffix + "\"; " + kWanted;
  if (result == kOutOfRange)
    error = what + "the length must be from 0.1mm (one output unit) to " +
            std::to_string(kMaxOutputUnits / 10000) + " m";
  return result == kRead;
}

bool OutputSize(const SizeRequest& request, int pixelsW, int pixelsH, long& outW, long& outH,
                std::string& error) {
  outW = pixelsW;
  outH = pixelsH;
  if (!request.size.empty()) {
    if (!request.width.empty() || !request.height.empty()) {
      error = "--size cannot be combined with --width or --height";
      return false;
    }
    const std::string& text = request.size;
    const size_t x = text.find_first_of("xX");
    std::string suffix;
    const int rw = x == std::string::npos ? kNotANumber : ReadLength(text.substr(0, x), outW, suffix);
    const int rh = x == std::string::npos ? kNotANumber : ReadLength(text.substr(x + 1), outH, suffix);
    if (rw == kNotANumber || rh == kNotANumber)
      error = "--size " + text + ": expected WIDTHxHEIGHT, for example 100mmx80mm or 1000x800";
    else if (rw == kUnknownUnit || rh == kUnknownUnit)
      error = "--size " + text + ": unknown unit \"" + suffix + "\"; each side takes mm, cm, in or none";
    else if (rw == kOutOfRange || rh == kOutOfRange)
      error = "--size " + text + ": width and height must be between 1 and " + std::to_string(kMaxOutputUnits) +
              " output units (0.1mm to 100 m)";
    return rw == kRead && rh == kRead;
  }
  const bool bWidth = !request.width.empty(), bHeight = !request.height.empty();
  if (bWidth && !ParseLength("--width", request.width, outW, error)) return false;
  if (bHeight && !ParseLength("--height", request.height, outH, error)) return false;
  // One side given: the other follows the picture's proportions.
  if (bWidth && !bHeight) outH = std::max(1L, std::lround(static_cast<double>(outW) * pixelsH / pixelsW));
  if (bHeight && !bWidth) outW = std::max(1L, std::lround(static_cast<double>(outH) * pixelsW / pixelsH));
  if (outW > kMaxOutputUnits || outH > kMaxOutputUnits) {
    error = "the output would be " + std::to_string(outW) + " x " + std::to_string(outH) +
            " units; at most " + std::to_string(kMaxOutputUnits) + " a side";
    return false;
  }
  return true;
}

std::string UnitsAsMm(long units) {
  std::string text = std::to_string(units / 10);
  if (units % 10) text += "." + std::to_string(std::labs(units % 10));
  return text + "mm";
}

}  // namespace pictrace
