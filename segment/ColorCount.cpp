// The grey test and the count of dominant colours of the input picture.
#include <cstdlib>
#include <vector>

#include "Pictrace.h"
#include "core/ImageView.h"
#include "segment/ColorCount.h"
#include "segment/ColorOrder.h"

namespace {

// Above this many dominant colours the picture is not few-coloured.
const size_t kMaxDominantColors = 100;

// A dominant colour must cover more than this many interior pixels per
// square output unit squared; the floor holds for large output scales.
const double kMinCountAtUnitScale = 3.0 * 100;
const double kMinCountFloor = 4.0;

// Pixel bytes blue, green, red as one 24-bit key.
inline DWORD KeyAt(const unsigned char* p) {
  return static_cast<DWORD>(p[0]) | (static_cast<DWORD>(p[1]) << 8) | (static_cast<DWORD>(p[2]) << 16);
}

struct ColorCountEntry {
  DWORD key;
  unsigned count;
};

}  // namespace

namespace pictrace {
namespace segment {

// Blue may differ from green by up to 7 and from red by up to 3: the two
// tolerances differ on purpose.
bool IsGray(const ImageView& picture) {
  const int w = picture.width, h = picture.height;
  if (w <= 0 || h <= 0) return true;
  for (int y = 0; y < h; y++) {
    const unsigned char* p = picture.bits + static_cast<size_t>(y) * picture.stride;
    for (int x = 0; x < w; x++, p += 3) {
      if (std::abs(p[0] - p[1]) > 7 || std::abs(p[0] - p[2]) > 3) return false;
    }
  }
  return true;
}

bool DominantColors(const ImageView& picture, const CRect& rcReal, std::vector<DWORD>& kept) {
  const int w = picture.width, h = picture.height;

  // Each interior pixel votes for the most frequent colour among its eight
  // neighbours (not itself); ties go to the colour met first.
  std::vector<ColorCountEntry> table;
  if (w > 2 && h > 2) {
    const size_t stride = picture.stride;
    const int dx[8] = {-1, -1, -1, 0, 0, 1, 1, 1};
    const int dy[8] = {-1, 0, 1, -1, 1, -1, 0, 1};
    size_t lastFound = 0;  // neighbouring pixels mostly vote alike
    for (int y = 1; y < h - 1; y++) {
      for (int x = 1; x < w - 1; x++) {
        DWORD keys[8];
        int counts[8];
        int distinct = 0;
        for (int k = 0; k < 8; k++) {
          const unsigned char* p = picture.bits + static_cast<size_t>(y + dy[k]) * stride + 3 * static_cast<size_t>(x + dx[k]);
          DWORD key = KeyAt(p);
          int j = 0;
          while (j < distinct && keys[j] != key) j++;
          if (j == distinct) {
            keys[distinct] = key;
            counts[distinct++] = 1;
          } else {
            counts[j]++;
          }
        }
        int best = 0;
        for (int j = 1; j < distinct; j++)
          if (counts[j] > counts[best]) best = j;
        DWORD dominant = keys[best];

        if (lastFound < table.size() && table[lastFound].key == dominant) {
          table[lastFound].count++;
          continue;
        }
        size_t i = 0;
        while (i < table.size() && table[i].key != dominant) i++;
        if (i < table.size()) {
          table[i].count++;
        } else {
          table.push_back(ColorCountEntry{dominant, 1});
          if (table.size() >= kMaxDominantColors) return false;
        }
        lastFound = i;
      }
    }
  }

  // The limit scales with the physical size of a pixel; with the default
  // empty output rectangle r is 0 and the limit is +infinity, so that no
  // colour is kept.
  double rw = (static_cast<double>(rcReal.right) - rcReal.left) / w;
  double rh = (static_cast<double>(rcReal.bottom) - rcReal.top) / h;
  double r = rw < rh ? rh : rw;
  double limit = kMinCountAtUnitScale / r / r;
  if (limit < kMinCountFloor) limit = kMinCountFloor;

  kept.clear();
  for (const ColorCountEntry& e : table)
    if (static_cast<double>(e.count) > limit)
      kept.push_back(PackColor(static_cast<int>((e.key >> 16) & 0xFF), static_cast<int>((e.key >> 8) & 0xFF),
                               static_cast<int>(e.key & 0xFF)));
  return true;
}

}  // namespace segment
}  // namespace pictrace

int CPictrace::IsGrayValued() {
  if (!HasDIBData() || !m_pDIBBits) return 0;
  return pictrace::segment::IsGray(pictrace::HeaderView(m_bmiHeader, m_pDIBBits)) ? 1 : 0;
}

int CPictrace::GetColorNumber(int& nColors, CDWordArray* pList) {
  if (!HasDIBData() || !m_pDIBBits) return 0;
  std::vector<DWORD> kept;
  if (!pictrace::segment::DominantColors(pictrace::HeaderView(m_bmiHeader, m_pDIBBits), m_rcImageReal, kept)) return 0;
  nColors = static_cast<int>(kept.size());
  if (!pList) return 1;
  SortByBrightness(kept);
  PublishColors(kept, pList, m_arrColorList);
  return 1;
}
