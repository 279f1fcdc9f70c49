#include "cli/ImageResample.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "WinTypes.h"

namespace pictrace {

std::vector<unsigned char> BoxResample(const std::vector<unsigned char>& src, int width, int height) {
  BITMAPINFOHEADER sh;
  std::memcpy(&sh, src.data(), 40);
  const int sw = sh.biWidth, shh = sh.biHeight;
  const size_t sstride = static_cast<size_t>(DibRowBytes(sw, 24));
  const size_t stride = static_cast<size_t>(DibRowBytes(width, 24));
  std::vector<unsigned char> out(40 + stride * height, 0);
  BITMAPINFOHEADER h = sh;
  h.biWidth = width;
  h.biHeight = height;
  h.biSizeImage = static_cast<DWORD>(stride * height);
  h.biClrUsed = 0;
  std::memcpy(out.data(), &h, 40);
  const unsigned char* s = src.data() + 40;
  for (int y = 0; y < height; y++) {
    int y0 = static_cast<int>(static_cast<long long>(y) * shh / height);
    int y1 = std::max(y0 + 1, static_cast<int>(static_cast<long long>(y + 1) * shh / height));
    for (int x = 0; x < width; x++) {
      int x0 = static_cast<int>(static_cast<long long>(x) * sw / width);
      int x1 = std::max(x0 + 1, static_cast<int>(static_cast<long long>(x + 1) * sw / width));
      for (int c = 0; c < 3; c++) {
        unsigned sum = 0;
        for (int yy = y0; yy < y1; yy++)
          for (int xx = x0; xx < x1; xx++) sum += s[yy * sstride + 3 * xx + c];
        unsigned n = static_cast<unsigned>((y1 - y0) * (x1 - x0));
        out[40 + y * stride + 3 * x + c] = static_cast<unsigned char>((sum + n / 2) / n);
      }
    }
  }
  return out;
}

std::vector<unsigned char> BoxResampleToPixels(const std::vector<unsigned char>& src, double pixels) {
  BITMAPINFOHEADER sh;
  std::memcpy(&sh, src.data(), 40);
  const double scale = std::sqrt(pixels / (static_cast<double>(sh.biWidth) * sh.biHeight));
  return BoxResample(src, static_cast<int>(sh.biWidth * scale + 0.5),
                     static_cast<int>(sh.biHeight * scale + 0.5));
}

}  // namespace pictrace
