// Noise reduction of a one-megapixel photograph. The picture is a shared
// photograph resampled (bilinear) to about 1,000,000 pixels; the benchmark
// is skipped when the shared picture folder is absent.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "bench/BenchSupport.h"
#include "cli/ImageFile.h"

namespace {

bool LoadMegapixel(std::vector<unsigned char>& dib, std::string& error) {
  std::vector<unsigned char> src;
  if (!pictrace::LoadImageFile(bench::SharedImagePath("photo_paintbrushes.png"), src, error) &&
      !pictrace::LoadImageFile(bench::SharedImagePath("photo_fig_large.png"), src, error))
    return false;
  BITMAPINFOHEADER h;
  std::memcpy(&h, src.data(), 40);
  double scale = std::sqrt(1.0e6 / (static_cast<double>(h.biWidth) * h.biHeight));
  dib = bench::Resample(src, static_cast<int>(h.biWidth * scale + 0.5),
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
