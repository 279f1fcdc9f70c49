// Fuzz target for the tracing stages: small pictures of few colours (random,
// stripes or checkerboards, chosen by the input) go through segmentation,
// region output in both line types, background extraction, marking, the
// preview and the line-art job. Only crashes, sanitizer reports and time
// (run it with -timeout) count; results are not checked here.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "PictraceLineArt.h"
#include "RasterDC.h"

namespace {

// The input, read from the front; zeros once it runs out.
struct Reader {
  const uint8_t* data;
  size_t size, pos = 0;
  uint8_t Next() { return pos < size ? data[pos++] : 0; }
};

std::vector<unsigned char> MakePicture(Reader& in, int& width, int& height) {
  width = in.Next() % 64 + 1;
  height = in.Next() % 64 + 1;
  const int colors = in.Next() % 6 + 1;
  const int pattern = in.Next() % 4;  // 0 input bytes, 1 stripes, 2 checkerboard, 3 blocks
  COLORREF palette[6];
  for (int i = 0; i < colors; i++) palette[i] = RGB(in.Next(), in.Next(), in.Next());
  const int stride = (width * 3 + 3) / 4 * 4;
  std::vector<unsigned char> dib(40 + static_cast<size_t>(stride) * height, 0);
  *reinterpret_cast<BITMAPINFOHEADER*>(dib.data()) = BITMAPINFOHEADER{40, width, height, 1, 24, 0, 0, 0, 0, 0, 0};
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) {
      int k = pattern == 0 ? in.Next() : pattern == 1 ? x : pattern == 2 ? x + y : x / 3 + y / 3;
      const COLORREF c = palette[k % colors];
      unsigned char* p = dib.data() + 40 + static_cast<size_t>(y) * stride + 3 * x;
      p[0] = GetBValue(c), p[1] = GetGValue(c), p[2] = GetRValue(c);
    }
  return dib;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Reader in{data, size};
  int width = 0, height = 0;
  std::vector<unsigned char> dib = MakePicture(in, width, height);
  const uint8_t flags = in.Next();
  const int scale = flags % 4 + 1;  // output units per pixel
  const int wanted = in.Next() % 8 + 1;

  CPictrace engine;
  if (!engine.SetDIBData(dib.data())) return 0;
  engine.SetImageRealRect(0, 0, width * scale, height * scale);
  engine.SetSegmentationSensitivity(flags & 0x40 ? 30 : 90);
  if (flags & 0x80) {
    engine.BeginProgress(0);
    engine.NoiseReduction(1000.0);
  } else {
    engine.BeginProgress(1);
  }
  CDWordArray colors;
  engine.DoSegmentation(wanted, &colors, 1.0, flags & 0x10, nullptr);
  engine.EndProgress();
  for (int type : {0, 1}) {
    CPTRegions regions;
    engine.GetRegions(&regions, type);
    // A host converting the straight regions one by one gets their curves.
    for (int r = 0; type == 0 && r < regions.m_nRegions; r++)
      for (int k = 0; k < regions.m_pRegions[r].m_nPolygons; k++) engine.ConvertToBezier(&regions.m_pRegions[r].m_pPolygons[k]);
  }
  if (engine.ExtractBackground()) {
    CPTRegions background;
    engine.GetBackgroundRegions(&background, flags & 0x20 ? 1 : 0);
  }
  engine.MarkRegion(in.Next() % width, in.Next() % height, 0);
  engine.MarkBackground();
  CRasterDC dc(width, height);
  engine.DrawPolygon(&dc, CRect(0, 0, width, height), 0, 0);

  CPictrace lines;
  if (!lines.SetDIBData(dib.data())) return 0;
  lines.SetImageRealRect(0, 0, width * scale, height * scale);
  pictrace::thinline::LineArtOptions options;
  options.nColors = wanted;
  pictrace::thinline::LineArtResult result;
  std::string error;
  if (pictrace::thinline::RunLineArt(lines, options, result, error)) {
    CPTThinLines thin;
    lines.GetThinLines(&thin);
    lines.DrawThinLine(&dc, CRect(0, 0, width, height));
  }
  return 0;
}
