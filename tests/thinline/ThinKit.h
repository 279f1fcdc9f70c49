// Pictures drawn as text for the thin-line tests: one character per pixel, one string per storage
// row (row 0 first): '#' black, '.' white, 'R' red, 'B' blue, 'G' green.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"

namespace thintest {

const COLORREF kBlack = RGB(0, 0, 0), kWhite = RGB(255, 255, 255), kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255),
               kGreen = RGB(0, 255, 0);
using Rows = std::vector<std::string>;

inline COLORREF ColorOf(char c) { return c == '#' ? kBlack : c == 'R' ? kRed : c == 'B' ? kBlue : c == 'G' ? kGreen : kWhite; }
inline std::vector<unsigned char> DibFromText(const Rows& rows) {
  return testimg::MakeDib24(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()),
                            [&](int x, int row) { return ColorOf(rows[row][x]); });
}
// Mask bytes: value where the picture has character c, else 0.
inline std::vector<unsigned char> MaskWhere(const Rows& rows, char c, unsigned char value = 1) {
  std::vector<unsigned char> mask;
  for (const std::string& row : rows) mask.insert(mask.end(), row.begin(), row.end());
  for (unsigned char& m : mask) m = m == c ? value : 0;
  return mask;
}
// The picture back as text, '?' for a colour outside the legend.
inline Rows TextFromDib(const unsigned char* dib) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib, sizeof(h));
  Rows rows(h.biHeight, std::string(h.biWidth, '?'));
  for (int k = 0, w = h.biWidth; k < w * h.biHeight; k++)
    for (char c : std::string("#.RBG")) rows[k / w][k % w] = ColorOf(c) == testimg::PixelAt(dib + 40, w, k % w, k / w) ? c : rows[k / w][k % w];
  return rows;
}
// Gives the engine a white picture of the size, for the members that read it.
inline void LoadBlank(CPictrace& e, int w, int h) { e.SetDIBData(testimg::MakeDib24(w, h, [](int, int) { return kWhite; }).data()); }

}  // namespace thintest
