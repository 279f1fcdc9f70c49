#include "segment/ColorOrder.h"

#include <algorithm>

namespace {
int Brightness(DWORD c) { return static_cast<int>((c & 0xFF) + ((c >> 8) & 0xFF) + ((c >> 16) & 0xFF)); }
}  // namespace

void SortByBrightness(std::vector<DWORD>& colors) {
  std::stable_sort(colors.begin(), colors.end(),
                   [](DWORD a, DWORD b) { return Brightness(a) > Brightness(b); });
}

void PublishColors(const std::vector<DWORD>& colors, CDWordArray* pList, CDWordArray& engineList) {
  if (pList) pList->RemoveAll();
  engineList.RemoveAll();
  for (DWORD color : colors) {
    if (pList && pList != &engineList) pList->Add(color);
    engineList.Add(color);
  }
}
