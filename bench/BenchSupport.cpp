#include "bench/BenchSupport.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>

#include "cli/ImageFile.h"

namespace bench {

std::vector<unsigned char> MakeDib24(int width, int height,
                                     const std::function<COLORREF(int x, int row)>& fn) {
  const int stride = ((width * 3 + 3) / 4) * 4;
  std::vector<unsigned char> dib(40 + static_cast<size_t>(stride) * height, 0);
  BITMAPINFOHEADER h{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = 24;
  h.biCompression = BI_RGB;
  h.biSizeImage = static_cast<DWORD>(stride) * height;
  std::memcpy(dib.data(), &h, 40);
  for (int row = 0; row < height; row++)
    for (int x = 0; x < width; x++) {
      const COLORREF c = fn(x, row);
      unsigned char* p = dib.data() + 40 + static_cast<size_t>(row) * stride + 3 * x;
      p[0] = GetBValue(c);
      p[1] = GetGValue(c);
      p[2] = GetRValue(c);
    }
  return dib;
}

std::string SharedImagePath(const std::string& name) {
  return std::string(PICTRACE_SHARED_DIR) + "/images/" + name;
}

bool LoadSharedImage(const std::string& name, std::vector<unsigned char>& dib, std::string& error) {
  const std::string path = SharedImagePath(name);
  return std::ifstream(path).good() && pictrace::LoadImageFile(path, dib, error);
}

std::vector<unsigned char> Resample(const std::vector<unsigned char>& src, int width, int height) {
  BITMAPINFOHEADER sh;
  std::memcpy(&sh, src.data(), 40);
  const int sw = sh.biWidth, shh = sh.biHeight;
  const int sstride = ((sw * 3 + 3) / 4) * 4;
  const int stride = ((width * 3 + 3) / 4) * 4;
  std::vector<unsigned char> out(40 + static_cast<size_t>(stride) * height, 0);
  BITMAPINFOHEADER h = sh;
  h.biWidth = width;
  h.biHeight = height;
  h.biSizeImage = static_cast<DWORD>(stride) * height;
  h.biClrUsed = 0;
  std::memcpy(out.data(), &h, 40);
  const unsigned char* s = src.data() + 40;
  for (int y = 0; y < height; y++) {
    double fy = (y + 0.5) * shh / height - 0.5;
    int y0 = std::max(0, std::min(shh - 1, static_cast<int>(std::floor(fy))));
    int y1 = std::min(shh - 1, y0 + 1);
    double ty = std::max(0.0, std::min(1.0, fy - y0));
    for (int x = 0; x < width; x++) {
      double fx = (x + 0.5) * sw / width - 0.5;
      int x0 = std::max(0, std::min(sw - 1, static_cast<int>(std::floor(fx))));
      int x1 = std::min(sw - 1, x0 + 1);
      double tx = std::max(0.0, std::min(1.0, fx - x0));
      for (int c = 0; c < 3; c++) {
        double a = s[y0 * sstride + 3 * x0 + c] * (1 - tx) + s[y0 * sstride + 3 * x1 + c] * tx;
        double b = s[y1 * sstride + 3 * x0 + c] * (1 - tx) + s[y1 * sstride + 3 * x1 + c] * tx;
        out[40 + static_cast<size_t>(y) * stride + 3 * x + c] =
            static_cast<unsigned char>(a * (1 - ty) + b * ty + 0.5);
      }
    }
  }
  return out;
}

}  // namespace bench
