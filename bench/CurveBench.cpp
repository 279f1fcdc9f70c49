// Curve fitting of long outline chains: the staircase outline of a wavy disc
// at three sizes (the time should grow about linearly with the chain), and a
// chain of simplified vertices. Reports chain points and fitted segments.
#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <vector>

#include "curve/BezierFit.h"

namespace {

// The wavy disc: radius r (1 + 0.15 cos 7a + 0.05 cos 23a) around (c, c).
bool Inside(double r, double c, int x, int y) {
  double dx = x + 0.5 - c, dy = y + 0.5 - c;
  double a = std::atan2(dy, dx);
  double rr = r * (1.0 + 0.15 * std::cos(7.0 * a) + 0.05 * std::cos(23.0 * a));
  return dx * dx + dy * dy <= rr * rr;
}

// Crack boundary of the shape, clockwise on screen, first vertex repeated.
std::vector<int> WavyOutline(double r) {
  const double c = r * 1.3 + 2.0;
  const int size = static_cast<int>(2.0 * c);
  auto in = [&](int x, int y) { return x >= 0 && y >= 0 && x < size && y < size && Inside(r, c, x, y); };
  int sx = -1, sy = -1;
  for (int y = 0; y < size && sx < 0; y++)
    for (int x = 0; x < size; x++)
      if (in(x, y)) {
        sx = x;
        sy = y;
        break;
      }
  const int dx[4] = {1, 0, -1, 0}, dy[4] = {0, 1, 0, -1};
  auto exists = [&](int x, int y, int d) {
    bool ul = in(x - 1, y - 1), ur = in(x, y - 1), ll = in(x - 1, y), lr = in(x, y);
    return d == 0 ? (lr && !ur) : d == 1 ? (ll && !lr) : d == 2 ? (ul && !ll) : (ur && !ul);
  };
  std::vector<int> chain = {sx, sy};
  int x = sx, y = sy, d = 3;
  do {
    for (int nd : {(d + 1) % 4, d, (d + 3) % 4})
      if (exists(x, y, nd)) {
        d = nd;
        break;
      }
    x += dx[d];
    y += dy[d];
    chain.push_back(x);
    chain.push_back(y);
  } while (x != sx || y != sy);
  return chain;
}

const std::vector<int>& CachedOutline(int r) {
  static std::map<int, std::vector<int>> cache;
  auto it = cache.find(r);
  if (it == cache.end()) it = cache.emplace(r, WavyOutline(r)).first;
  return it->second;
}

void BM_FitRawOutline(benchmark::State& state) {
  const std::vector<int>& chain = CachedOutline(static_cast<int>(state.range(0)));
  int nLast = static_cast<int>(chain.size() / 2) - 1;
  int segments = 0;
  for (auto _ : state) {
    double* seg = pictrace::FitBezierChain(chain.data(), nLast, pictrace::kChainRawOutline, 1.0, segments);
    benchmark::DoNotOptimize(seg);
    delete[] seg;
  }
  state.counters["points"] = nLast + 1;
  state.counters["segments"] = segments;
  state.counters["points/s"] = benchmark::Counter(nLast + 1.0, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_FitRawOutline)->Arg(250)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);

void BM_FitVertexChain(benchmark::State& state) {
  // 2000 vertices on the wavy outline of radius 1000, closed.
  std::vector<double> chain;
  const int n = 2000;
  for (int i = 0; i <= n; i++) {
    double a = 2.0 * M_PI * (i % n) / n;
    double rr = 1000.0 * (1.0 + 0.15 * std::cos(7.0 * a) + 0.05 * std::cos(23.0 * a));
    chain.push_back(rr * std::cos(a));
    chain.push_back(rr * std::sin(a));
  }
  int segments = 0;
  for (auto _ : state) {
    double* seg = pictrace::FitBezierChainD(chain.data(), n, pictrace::kChainVertices, 1.0, segments);
    benchmark::DoNotOptimize(seg);
    delete[] seg;
  }
  state.counters["vertices"] = n;
  state.counters["segments"] = segments;
}
BENCHMARK(BM_FitVertexChain)->Unit(benchmark::kMillisecond);

}  // namespace
