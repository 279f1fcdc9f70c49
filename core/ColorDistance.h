// Packed colours (red in bits 0-7, green 8-15, blue 16-23) and their squared
// distance in RGB, the one measure of colour nearness the stages share.
#pragma once

#include "WinTypes.h"

namespace pictrace {

inline int SquaredDistance(int r1, int g1, int b1, int r2, int g2, int b2) {
  const int dr = r1 - r2, dg = g1 - g2, db = b1 - b2;
  return dr * dr + dg * dg + db * db;
}

inline int SquaredDistance(COLORREF a, COLORREF b) {
  return SquaredDistance(GetRValue(a), GetGValue(a), GetBValue(a), GetRValue(b), GetGValue(b),
                         GetBValue(b));
}

// A pixel stored blue, green, red against a packed colour.
inline int SquaredDistance(const unsigned char* bgr, COLORREF c) {
  return SquaredDistance(bgr[2], bgr[1], bgr[0], GetRValue(c), GetGValue(c), GetBValue(c));
}

}  // namespace pictrace
