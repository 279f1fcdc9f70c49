// Noise reduction of a one-megapixel photograph. The picture is a shared
// photograph resampled (bilinear) to about 1,000,000 pixels; the benchmark
// is skipped when the shared picture folder is absent.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "cli/ImageFile.h"

namespace {

// Bilinear resample of a packed 24-bit DIB to width x height.
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

bool LoadMegapixel(std::vector<unsigned char>& dib, std::string& error) {
  const std::string dir = std::string(PICTRACE_SHARED_DIR) + "/images/";
  std::vector<unsigned char> src;
  if (!pictrace::LoadImageFile(dir + "photo_paintbrushes.png", src, error) &&
      !pictrace::LoadImageFile(dir + "photo_fig_large.png", src, error))
    return false;
  BITMAPINFOHEADER h;
  std::memcpy(&h, src.data(), 40);
  double scale = std::sqrt(1.0e6 / (static_cast<double>(h.biWidth) * h.biHeight));
  dib = Resample(src, static_cast<int>(h.biWidth * scale + 0.5),
                 static_cast<int>(h.biHeight * scale + 0.5));
  return true;
}

void BM_NoiseReductionMegapixel(benchmark::State& state) {
  std::vector<unsigned char> dib;
  std::string error;
  if (!LoadMegapixel(dib, error)) {
    state.SkipWithError(("shared photograph unavailable: " + error).c_str());
    return;
  }
  CPictrace engine;
  if (!engine.SetDIBData(dib.data())) {
    state.SkipWithError("the engine refused the picture");
    return;
  }
  for (auto _ : state) engine.NoiseReduction(static_cast<double>(state.range(0)));
  const BITMAPINFOHEADER* h = engine.GetBmpInfoHeader();
  state.counters["pixels"] = static_cast<double>(h->biWidth) * h->biHeight;
}
BENCHMARK(BM_NoiseReductionMegapixel)->Arg(3000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
