// Pictures for the tests: synthetic packed DIBs and the bundled examples; a progress recorder.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "cli/ImageFile.h"

namespace testimg {

// A packed bottom-up DIB of 1, 4, 8 or 24 bits per pixel with a colour table
// of `table` (reserved bytes `reserved`) and `clrUsed` in the header.
// value(x, row) is each pixel's palette index, or its colour at 24 bits. The
// padding bytes of every row are `pad`, so that a reader straying into them
// is noticed.
inline std::vector<unsigned char> MakePackedDib(int width, int height, int bits,
                                                const std::vector<COLORREF>& table, DWORD clrUsed,
                                                const std::function<DWORD(int x, int row)>& value,
                                                unsigned char pad = 0, unsigned char reserved = 0) {
  const int stride = ((width * bits + 31) / 32) * 4;
  std::vector<unsigned char> dib(40 + table.size() * 4 + static_cast<size_t>(stride) * height, pad);
  BITMAPINFOHEADER h{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = static_cast<WORD>(bits);
  h.biClrUsed = clrUsed;
  std::memcpy(dib.data(), &h, 40);
  for (size_t i = 0; i < table.size(); i++) {
    unsigned char* q = dib.data() + 40 + 4 * i;
    q[0] = GetBValue(table[i]);
    q[1] = GetGValue(table[i]);
    q[2] = GetRValue(table[i]);
    q[3] = reserved;
  }
  unsigned char* rows = dib.data() + 40 + table.size() * 4;
  for (int row = 0; row < height; row++) {
    unsigned char* r = rows + static_cast<size_t>(row) * stride;
    std::memset(r, 0, static_cast<size_t>((width * bits + 7) / 8));
    for (int x = 0; x < width; x++) {
      const DWORD v = value(x, row);
      if (bits == 24) {
        r[3 * x] = GetBValue(v);
        r[3 * x + 1] = GetGValue(v);
        r[3 * x + 2] = GetRValue(v);
      } else if (bits == 8) {
        r[x] = static_cast<unsigned char>(v);
      } else if (bits == 4) {
        r[x / 2] |= static_cast<unsigned char>((x & 1) ? v : v << 4);
      } else if (v) {
        r[x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
      }
    }
  }
  return dib;
}

// A packed 24-bit bottom-up DIB of width x height whose pixel at (x, row)
// has colour fn(x, row); row is the storage row (row 0 is stored first).
inline std::vector<unsigned char> MakeDib24(int width, int height,
                                            const std::function<COLORREF(int x, int row)>& fn) {
  std::vector<unsigned char> dib = MakePackedDib(width, height, 24, {}, 0, fn);
  reinterpret_cast<BITMAPINFOHEADER*>(dib.data())->biSizeImage = static_cast<DWORD>(((width * 3 + 3) / 4) * 4 * height);
  return dib;
}

// Paths of a file in examples/ and in the shared picture folder (which may be absent).
inline std::string ExamplePath(const std::string& name) { return std::string(PICTRACE_EXAMPLES_DIR) + "/" + name; }
inline std::string SharedImagePath(const std::string& name) { return std::string(PICTRACE_SHARED_DIR) + "/images/" + name; }
inline bool FileExists(const std::string& path) { return std::ifstream(path).good(); }

// Reads a picture file (PNG, JPEG or BMP) into a packed DIB; fails the
// calling test when it cannot.
inline std::vector<unsigned char> LoadDib(const std::string& path) {
  std::vector<unsigned char> dib;
  std::string error;
  EXPECT_TRUE(pictrace::LoadImageFile(path, dib, error)) << error;
  return dib;
}

// Colour of pixel (x, row) of a packed 24-bit DIB's rows.
inline COLORREF PixelAt(const unsigned char* bits, int width, int x, int row) {
  const unsigned char* p = bits + static_cast<size_t>(row) * (((width * 3 + 3) / 4) * 4) + 3 * x;
  return RGB(p[2], p[1], p[0]);
}

// Expects every pixel (x, row) of a packed 24-bit DIB's rows, width x
// height, to have the colour want(x, row); a failure names the pixel.
inline void ExpectImage(const unsigned char* bits, int width, int height,
                        const std::function<COLORREF(int x, int row)>& want) {
  for (int row = 0; row < height; row++)
    for (int x = 0; x < width; x++) EXPECT_EQ(PixelAt(bits, width, x, row), want(x, row)) << "pixel " << x << "," << row;
}

// A progress window that records the positions it is sent.
struct ProgressLog : CWnd {
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM) override {
    if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
    return 0;
  }
  std::vector<int> positions;
};

// A test name made of a parameter: every character that is not a letter or
// a digit becomes '_'.
inline std::string ParamName(std::string s) {
  for (char& c : s)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return s;
}

}  // namespace testimg
