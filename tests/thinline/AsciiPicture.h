// Small pictures drawn as text for the thin-line tests: one character per
// pixel, one string per storage row (row 0 first).
#pragma once

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"

namespace thintest {

const COLORREF kBlack = RGB(0, 0, 0);
const COLORREF kWhite = RGB(255, 255, 255);
const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kBlue = RGB(0, 0, 255);
const COLORREF kGreen = RGB(0, 255, 0);

// '#' black, '.' white, 'R' red, 'B' blue, 'G' green.
inline COLORREF ColorOf(char c) {
  switch (c) {
    case '#': return kBlack;
    case 'R': return kRed;
    case 'B': return kBlue;
    case 'G': return kGreen;
    default: return kWhite;
  }
}

inline std::vector<unsigned char> DibFromText(const std::vector<std::string>& rows) {
  return testimg::MakeDib24(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()),
                            [&](int x, int row) { return ColorOf(rows[row][x]); });
}

// Mask bytes: the given value where the picture has character c, else 0.
inline std::vector<unsigned char> MaskWhere(const std::vector<std::string>& rows, char c,
                                            unsigned char value = 1) {
  std::vector<unsigned char> mask;
  for (const std::string& row : rows)
    for (char ch : row) mask.push_back(ch == c ? value : 0);
  return mask;
}

// The picture back as text, with '?' for a colour outside the legend.
inline std::vector<std::string> TextFromDib(const std::vector<unsigned char>& dib) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), sizeof(h));
  std::vector<std::string> rows;
  for (int y = 0; y < h.biHeight; y++) {
    std::string row;
    for (int x = 0; x < h.biWidth; x++) {
      COLORREF c = testimg::PixelAt(dib.data() + 40, h.biWidth, x, y);
      const char* legend = "#.RBG";
      char ch = '?';
      for (const char* p = legend; *p; p++)
        if (ColorOf(*p) == c) ch = *p;
      row.push_back(ch);
    }
    rows.push_back(row);
  }
  return rows;
}

// An engine holding a white picture of the given size, so that the members
// that read the picture's size see it.
inline void LoadBlank(CPictrace& engine, int width, int height) {
  std::vector<unsigned char> dib =
      testimg::MakeDib24(width, height, [](int, int) { return kWhite; });
  engine.SetDIBData(dib.data());
}

}  // namespace thintest
