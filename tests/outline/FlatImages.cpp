#include "outline/FlatImages.h"

namespace flat {

std::vector<COLORREF> RandomBlocks(Rng& rng, int width, int height, int colors, int blockW,
                                   int blockH, int sprinkle) {
  static const COLORREF palette[8] = {RGB(255, 255, 255), RGB(0, 0, 0),   RGB(255, 0, 0),
                                      RGB(0, 160, 0),     RGB(0, 0, 255), RGB(255, 255, 0),
                                      RGB(0, 255, 255),   RGB(128, 0, 128)};
  int bw = (width + blockW - 1) / blockW, bh = (height + blockH - 1) / blockH;
  std::vector<int> blocks(static_cast<size_t>(bw) * bh);
  for (int& b : blocks) b = rng.Below(colors);
  std::vector<COLORREF> px(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) px[y * width + x] = palette[blocks[(y / blockH) * bw + x / blockW]];
  for (int k = 0; k < sprinkle; k++) px[rng.Below(width * height)] = palette[rng.Below(colors)];
  return px;
}

COLORREF SnapToCube(COLORREF c) {
  auto snap = [](int v) { return v >= 128 ? 255 : 0; };
  return RGB(snap(GetRValue(c)), snap(GetGValue(c)), snap(GetBValue(c)));
}

}  // namespace flat
