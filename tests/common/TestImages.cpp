#include "common/TestImages.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <fstream>

#include "cli/ImageFile.h"

namespace testimg {

std::vector<unsigned char> MakeDib24(int width, int height,
                                     const std::function<COLORREF(int x, int row)>& fn) {
  int stride = ((width * 3 + 3) / 4) * 4;
  std::vector<unsigned char> dib(40 + static_cast<size_t>(stride) * height, 0);
  BITMAPINFOHEADER h{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = 24;
  h.biCompression = BI_RGB;
  h.biSizeImage = static_cast<DWORD>(stride * height);
  std::memcpy(dib.data(), &h, 40);
  for (int row = 0; row < height; row++)
    for (int x = 0; x < width; x++) {
      COLORREF c = fn(x, row);
      unsigned char* p = dib.data() + 40 + static_cast<size_t>(row) * stride + 3 * x;
      p[0] = GetBValue(c);
      p[1] = GetGValue(c);
      p[2] = GetRValue(c);
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

std::string ParamName(const std::string& param) {
  std::string s = param;
  for (char& c : s)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return s;
}

}  // namespace testimg
