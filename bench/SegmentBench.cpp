// Pyramid segmentation plus one mean-shift pass on photographs: the bundled
// astronaut, and the large shared photograph resampled to 0.5, 1 and 2
// megapixels and at its full 4.5 megapixels, so that the growth with the
// pixel count shows. Counters: nanoseconds per pixel (wall and thread CPU
// time, the latter steadier on a busy machine), regions left by the
// pyramid stage, and the peak resident size per pixel, of the process and
// of the engine's runs alone (run one size alone, with --benchmark_filter,
// to read its own peak).
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "cli/ImageFile.h"
#include "cli/ImageResample.h"
#include "segment/RegionGraph.h"

namespace {

class BenchEngine : public CPictrace {
 public:
  using CPictrace::MeanShift;
  using CPictrace::PyramidAlgo;
  int Regions() const;
};

int BenchEngine::Regions() const {
  int n = 0;
  for (const CRegion* r = m_pRegionHead; r; r = r->m_pNext) n++;
  return n;
}

const std::vector<unsigned char>* Picture(const std::string& path, long long pixels) {
  static std::map<std::pair<std::string, long long>, std::vector<unsigned char>> cache;
  auto key = std::make_pair(path, pixels);
  auto it = cache.find(key);
  if (it != cache.end()) return it->second.empty() ? nullptr : &it->second;
  std::vector<unsigned char> dib;
  std::string error;
  if (!pictrace::LoadImageFile(path, dib, error)) {
    cache[key];
    return nullptr;
  }
  if (pixels > 0) dib = pictrace::BoxResampleToPixels(dib, static_cast<double>(pixels));
  return &(cache[key] = std::move(dib));
}

// Resident size now, from /proc (0 where it cannot be read).
double ResidentBytes() {
  FILE* f = std::fopen("/proc/self/statm", "r");
  if (!f) return 0;
  long pages = 0, resident = 0;
  int read = std::fscanf(f, "%ld %ld", &pages, &resident);
  std::fclose(f);
  return read == 2 ? static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) : 0;
}

// CPU time of the calling thread, which another program on the same cores
// does not inflate the way it inflates wall time.
double ThreadSeconds() {
  timespec ts{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) + 1e-9 * static_cast<double>(ts.tv_nsec);
}

double PeakResidentBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

void RunSegmentation(benchmark::State& state, const std::vector<unsigned char>* source) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, source->data(), 40);
  const double pixels = static_cast<double>(h.biWidth) * h.biHeight;
  std::vector<unsigned char> dib = *source;
  const double before = ResidentBytes();
  int regions = 0, colors = 0;
  double pyramidSeconds = 0, pyramidCpuSeconds = 0, shiftSeconds = 0;
  for (auto _ : state) {
    BenchEngine e;
    e.SetDIBData(dib.data());
    e.SetImageRealRect(0, 0, h.biWidth, h.biHeight);
    auto t0 = std::chrono::steady_clock::now();
    const double c0 = ThreadSeconds();
    e.PyramidAlgo();
    pyramidCpuSeconds += ThreadSeconds() - c0;
    auto t1 = std::chrono::steady_clock::now();
    CDWordArray list;
    e.MeanShift(8, &list);
    auto t2 = std::chrono::steady_clock::now();
    pyramidSeconds += std::chrono::duration<double>(t1 - t0).count();
    shiftSeconds += std::chrono::duration<double>(t2 - t1).count();
    regions = e.Regions();
    colors = static_cast<int>(list.GetSize());
    benchmark::DoNotOptimize(e.m_pWorkBits);
  }
  const double runs = static_cast<double>(state.iterations());
  state.counters["pixels"] = pixels;
  state.counters["regions"] = regions;
  state.counters["colors"] = colors;
  state.counters["pyramid_ns_per_px"] = pyramidSeconds / runs * 1e9 / pixels;
  state.counters["pyramid_cpu_ns_per_px"] = pyramidCpuSeconds / runs * 1e9 / pixels;
  state.counters["meanshift_ms"] = shiftSeconds / runs * 1e3;
  state.counters["peak_rss_bytes_per_px"] = PeakResidentBytes() / pixels;
  // The engine's own share: the peak above the resident size before the
  // runs (an upper bound, since the peak may date from loading the file).
  state.counters["engine_peak_bytes_per_px"] = (PeakResidentBytes() - before) / pixels;
}

void BM_SegmentAstronaut(benchmark::State& state) {
  const auto* dib = Picture(std::string(PICTRACE_EXAMPLES_DIR) + "/astronaut.png", 0);
  if (!dib) {
    state.SkipWithError("examples/astronaut.png could not be read");
    return;
  }
  RunSegmentation(state, dib);
}
BENCHMARK(BM_SegmentAstronaut)->Unit(benchmark::kMillisecond)->Iterations(3);

// Argument: pixel count of the resampled picture; 0 keeps the full 4.5 MP.
void BM_SegmentLargePhoto(benchmark::State& state) {
  const auto* dib = Picture(std::string(PICTRACE_SHARED_DIR) + "/images/photo_fig_large.png", state.range(0));
  if (!dib) {
    state.SkipWithError("shared photograph photo_fig_large.png is absent; skipped");
    return;
  }
  RunSegmentation(state, dib);
}
BENCHMARK(BM_SegmentLargePhoto)
    ->Arg(500000)
    ->Arg(1000000)
    ->Arg(2000000)
    ->Arg(0)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace
