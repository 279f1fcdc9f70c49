// Thinning and tracing of line drawings: a real 2-megapixel drawing, and
// synthetic strokes of growing width (each pass is linear in the pixel
// count; the number of passes grows with the stroke width).
#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "bench/BenchSupport.h"

namespace {

const COLORREF kLine = RGB(0, 0, 0);
const COLORREF kPaper = RGB(255, 255, 255);

struct Work {
  std::vector<unsigned char> dib;   // packed 24-bit DIB: strokes black, the rest white
  std::vector<unsigned char> mask;  // 1 on the strokes
  int width = 0;
  int height = 0;
};

Work MakeWork(int width, int height, const std::function<bool(int x, int row)>& isStroke) {
  Work w;
  w.width = width;
  w.height = height;
  w.mask.assign(static_cast<size_t>(width) * height, 0);
  w.dib = bench::MakeDib24(width, height, [&](int x, int y) {
    const bool stroke = isStroke(x, y);
    if (stroke) w.mask[static_cast<size_t>(y) * width + x] = 1;
    return stroke ? kLine : kPaper;
  });
  return w;
}

// The drawing's dark pixels as strokes; empty when the file is absent.
Work LoadDrawing(const std::string& name) {
  std::vector<unsigned char> dib;
  std::string error;
  if (!bench::LoadSharedImage(name, dib, error)) return Work();
  CPictrace reader;
  if (!reader.SetDIBData(dib.data())) return Work();
  const int width = reader.m_bmiHeader.biWidth;
  const int stride = ((width * 3 + 3) / 4) * 4;
  const unsigned char* bits = reader.m_pDIBBits;
  return MakeWork(width, reader.m_bmiHeader.biHeight, [&](int x, int y) {
    const unsigned char* p = bits + static_cast<size_t>(y) * stride + 3 * x;
    return p[0] + p[1] + p[2] < 3 * 128;
  });
}

void ThinAndTrace(benchmark::State& state, const Work& source) {
  CPictrace engine;
  std::vector<unsigned char> blank = source.dib;
  engine.SetDIBData(blank.data());
  engine.SetImageRealRect(0, 0, source.width, source.height);
  engine.m_arrLineColors.Add(kLine);
  double thinSeconds = 0;
  double traceSeconds = 0;
  size_t lines = 0;
  long points = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Work w = source;
    state.ResumeTiming();
    auto start = std::chrono::steady_clock::now();
    engine.ThinningAndFat(w.dib.data(), w.mask.data(), kLine, kPaper);
    thinSeconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    start = std::chrono::steady_clock::now();
    engine.DoTraceThinningLine(w.mask.data(), w.dib.data(), 1.0);
    traceSeconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    lines = engine.m_listThinLines.size();
  }
  CPTThinLines out;
  engine.GetThinLines(&out);
  for (int i = 0; i < out.m_nThinLines; i++) points += out.m_pThinLines[i].m_pPolygonLines[0].m_nLines + 1;
  state.counters["lines"] = static_cast<double>(lines);
  state.counters["points"] = static_cast<double>(points);
  state.counters["thin_s"] = benchmark::Counter(thinSeconds, benchmark::Counter::kAvgIterations);
  state.counters["trace_s"] = benchmark::Counter(traceSeconds, benchmark::Counter::kAvgIterations);
  state.counters["Mpx"] = source.width * static_cast<double>(source.height) / 1e6;
}

void BM_ThinAndTraceStainedGlass(benchmark::State& state) {
  static const Work drawing = LoadDrawing("line_stained_glass.png");
  if (drawing.width == 0) {
    state.SkipWithError("line_stained_glass.png is absent from the shared picture folder");
    return;
  }
  ThinAndTrace(state, drawing);
}
BENCHMARK(BM_ThinAndTraceStainedGlass)->Unit(benchmark::kMillisecond);

// 1000 x 1000 pixels of horizontal strokes, each of the given width, one
// stroke width of paper apart: the stroke area stays half the picture.
void BM_ThinStrokesOfWidth(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0));
  const Work strokes = MakeWork(1000, 1000, [width](int x, int y) {
    return x >= 20 && x < 980 && (y / width) % 2 == 1;
  });
  ThinAndTrace(state, strokes);
}
BENCHMARK(BM_ThinStrokesOfWidth)->Arg(2)->Arg(4)->Arg(8)->Arg(16)->Arg(32)->Unit(benchmark::kMillisecond);

}  // namespace
