// libFuzzer target: arbitrary bytes through the picture file readers and,
// when they produce a DIB, through the engine's image input, its saved copy
// and its painting.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "RasterDC.h"
#include "cli/ImageFile.h"
#include "cli/ImageLimits.h"

namespace {

int Silent(const char*, UINT, UINT) { return IDOK; }

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // Compressed formats can claim huge sizes in a few bytes; 4 megapixels is
  // plenty to reach every code path and keeps each run fast.
  pictrace::SetMaxImagePixels(4u << 20);
  AfxSetMessageBoxHook(Silent);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<unsigned char> dib;
  std::string error;
  if (!pictrace::LoadImageBytes(data, size, "fuzz", dib, error)) return 0;

  CPictrace engine;
  if (!engine.SetDIBData(dib.data())) return 0;
  CSize imageSize;
  engine.GetDIBSize(imageSize);
  engine.CopyBMPData_DataToOriginal();
  engine.CopyBMPData_OriginalToData();

  // Both painting paths: unscaled into a small window (clipped) and
  // stretched.
  CRasterDC dc(16, 16);
  RECT same{0, 0, imageSize.cx, imageSize.cy};
  engine.DrawDIB(&dc, &same, FALSE);
  RECT stretched{0, 0, 16, 16};
  engine.DrawDIB(&dc, &stretched, TRUE);
  return 0;
}
