#include "common/TestImages.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <fstream>

#include "cli/ImageFile.h"

namespace testimg {

std::vector<unsigned char> MakeDib24(int width, int height,
                                     const std::function<COLORREF(int x, int row)>& fn) {
  std::vector<unsigned char> dib = MakePackedDib(width, height, 24, {}, 0, fn);
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), 40);
  h.biSizeImage = static_cast<DWORD>(((width * 3 + 3) / 4) * 4 * height);
  std::memcpy(dib.data(), &h, 40);
  return dib;
}

std::vector<unsigned char> MakePackedDib(int width, int height, int bits,
                                         const std::vector<COLORREF>& table, DWORD clrUsed,
                                         const std::function<DWORD(int x, int row)>& value,
                                         unsigned char pad, unsigned char reserved) {
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

std::string ExamplePath(const std::string& name) { return std::string(PICTRACE_EXAMPLES_DIR) + "/" + name; }

std::string SharedImagePath(const std::string& name) {
  return std::string(PICTRACE_SHARED_DIR) + "/images/" + name;
}

bool FileExists(const std::string& path) { return std::ifstream(path).good(); }

std::vector<unsigned char> LoadDib(const std::string& path) {
  std::vector<unsigned char> dib;
  std::string error;
  bool ok = pictrace::LoadImageFile(path, dib, error);
  EXPECT_TRUE(ok) << error;
  return dib;
}

COLORREF PixelAt(const unsigned char* bits, int width, int x, int row) {
  int stride = ((width * 3 + 3) / 4) * 4;
  const unsigned char* p = bits + static_cast<size_t>(row) * stride + 3 * x;
  return RGB(p[2], p[1], p[0]);
}

void ExpectImage(const unsigned char* bits, int width, int height,
                 const std::function<COLORREF(int x, int row)>& want) {
  for (int row = 0; row < height; row++)
    for (int x = 0; x < width; x++)
      EXPECT_EQ(PixelAt(bits, width, x, row), want(x, row)) << "pixel " << x << "," << row;
}

std::string ParamName(const std::string& param) {
  std::string s = param;
  for (char& c : s)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return s;
}

}  // namespace testimg
