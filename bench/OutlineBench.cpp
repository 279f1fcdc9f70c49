// The outline stage on large flat-colour pictures: cost per pixel should
// stay flat from 0.5 to 2 megapixels.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "Pictrace.h"
#include "bench/BenchSupport.h"
#include "core/OutlineRecords.h"

namespace {

class OutlineBenchEngine : public CPictrace {
 public:
  using CPictrace::GetOutline4Cartoon2;
};

// Random 8 x 8 blocks in six colours, every fifth with a 4 x 4 square of
// another colour inside (a hole), and a sprinkle of single pixels:
// thousands of components, holes, crossings and small regions.
std::vector<unsigned char> FlatPicture(int width, int height) {
  static const COLORREF palette[6] = {RGB(255, 255, 255), RGB(0, 0, 0),   RGB(230, 30, 30),
                                      RGB(20, 160, 40),   RGB(30, 60, 220), RGB(250, 210, 0)};
  std::uint64_t s = 88172645463325252ull;
  auto next = [&]() {
    s ^= s << 13;
    s ^= s >> 7;
    s ^= s << 17;
    return static_cast<std::uint32_t>(s >> 11);
  };
  int bw = (width + 7) / 8, bh = (height + 7) / 8;
  std::vector<int> blocks(static_cast<size_t>(bw) * bh);
  for (int& b : blocks) b = next() % 6;
  return bench::MakeDib24(width, height, [&](int x, int y) {
    int b = (y / 8) * bw + x / 8;
    COLORREF c = palette[blocks[b]];
    if (b % 5 == 0 && x % 8 >= 2 && x % 8 < 6 && y % 8 >= 2 && y % 8 < 6)
      c = palette[(blocks[b] + 1 + b % 4) % 6];
    if (next() % 500 == 0) c = palette[next() % 6];
    return c;
  });
}

void BM_GetOutline4Cartoon2(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0)), height = width * 3 / 4;
  std::vector<unsigned char> dib = FlatPicture(width, height);
  OutlineBenchEngine e;
  e.SetDIBData(dib.data());
  const size_t bytes = e.m_bmiHeader.biSizeImage;
  std::vector<unsigned char> original(e.m_pWorkBits, e.m_pWorkBits + bytes);
  size_t regions = 0, holes = 0;
  for (auto _ : state) {
    std::memcpy(e.m_pWorkBits, original.data(), bytes);  // the stage repaints the picture
    e.GetOutline4Cartoon2(1.0, nullptr);
    regions = e.m_listOutlineRegions.size();
  }
  for (COutlineRegion* r : e.m_listOutlineRegions) holes += r->m_arrHoles.GetSize();
  const double pixels = static_cast<double>(width) * height;
  state.counters["MP"] = pixels / 1e6;
  state.counters["regions"] = static_cast<double>(regions);
  state.counters["holes"] = static_cast<double>(holes);
  // Seconds per pixel (shown as n for nanoseconds): flat when linear.
  state.counters["per_px"] = benchmark::Counter(
      pixels * static_cast<double>(state.iterations()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Widths for 0.5, 1 and 2 megapixels at 4:3.
BENCHMARK(BM_GetOutline4Cartoon2)->Arg(816)->Arg(1155)->Arg(1633)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
