// Packed colours and the brightness order of the colour lists handed out.
#pragma once

#include <vector>

#include "AfxWin.h"

// red | green << 8 | blue << 16, the layout of a COLORREF.
inline DWORD PackColor(int red, int green, int blue) {
  return static_cast<DWORD>(red & 0xFF) | (static_cast<DWORD>(green & 0xFF) << 8) |
         (static_cast<DWORD>(blue & 0xFF) << 16);
}

// Sorts by red + green + blue, largest first; equal sums keep their order.
void SortByBrightness(std::vector<DWORD>& colors);

// Empties both lists and appends the colours to each; when the host hands
// in the engine's own list it is filled once.
void PublishColors(const std::vector<DWORD>& colors, CDWordArray* pList, CDWordArray& engineList);

