// Small components take the colour of a neighbour, so that the next
// component search merges them away.
#include <cmath>
#include <cstring>

#include "Pictrace.h"
#include "outline/OutlineStage.h"
#include "core/OutlineRecords.h"
#include "outline/SmallRegions.h"

namespace outline {

int SmallRegionLimit(double minArea, int rectWidth, int rectHeight, int width, int height) {
  double sx = static_cast<double>(rectWidth) / width;
  double sy = static_cast<double>(rectHeight) / height;
  double s = (sy > sx) ? sy : sx;
  double v = minArea * 100.0 / s / s + 0.5;
  if (!std::isfinite(v) || v >= 2147483648.0 || v <= -2147483649.0) return 4;
  int limit = static_cast<int>(v);
  return limit < 4 ? 4 : limit;
}

int RemoveSmallComponents(const OutlineInput& in, std::list<CConComponent*>& listComp, double dMinArea,
                          unsigned char* pMask) {
  if (!Usable(in)) return 0;
  const int W = in.image.width, H = in.image.height;
  int* const pHostMask = in.hostMask;
  // This step addresses rows by the header's image size; fall back to the
  // packed stride when the header leaves the size out.
  const size_t stride = in.headerStride < in.image.stride ? in.image.stride : in.headerStride;

  const int limit = SmallRegionLimit(dMinArea, in.outputRect.Width(), in.outputRect.Height(), W, H);
  static const int dx[4] = {-1, 0, 0, 1};  // left, up, down, right
  static const int dy[4] = {0, -1, 1, 0};
  auto pixel = [&](int x, int y) {
    return in.image.bits + static_cast<size_t>(y) * stride + 3 * static_cast<size_t>(x);
  };
  auto index = [&](int x, int y) { return static_cast<size_t>(y) * W + x; };
  auto skipped = [&](int x, int y) {
    return x < 0 || y < 0 || x >= W || y >= H || (pMask && pMask[index(x, y)] != 0);
  };

  // Once per call: a component that finds no neighbour is painted with
  // whatever colour the previous one left here.
  COLORREF replacement = 0xFFFFFF;
  int result = 0;
  for (CConComponent* comp : listComp) {
    if (comp->m_nPoints > limit || comp->m_nPoints <= 0) continue;
    bool found = false;
    int last = 0;  // the component pixel the last search walked last
    for (int i = 0; i < comp->m_nPoints && !found; i++) {
      last = i;
      const sPoint& p = comp->m_pPoints[i];
      for (int k = 0; k < 4; k++) {
        int nx = p.x + dx[k], ny = p.y + dy[k];
        if (skipped(nx, ny)) continue;
        replacement = pictrace::PixelColor(pixel(nx, ny));
        if (replacement != comp->m_crColor) {
          found = true;
          break;
        }
      }
    }
    bool maskFound = false;
    int maskValue = 0;
    if (!found && pHostMask) {
      for (int i = 0; i < comp->m_nPoints && !maskFound; i++) {
        last = i;
        const sPoint& p = comp->m_pPoints[i];
        int own = pHostMask[index(p.x, p.y)];
        for (int k = 0; k < 4; k++) {
          int nx = p.x + dx[k], ny = p.y + dy[k];
          if (skipped(nx, ny)) continue;
          if (pHostMask[index(nx, ny)] != own) {
            maskFound = true;
            maskValue = pHostMask[index(nx, ny)];
            break;
          }
        }
      }
    }
    if (found || maskFound) result = 1;

    const sPoint& lp = comp->m_pPoints[last];
    for (int i = 0; i < comp->m_nPoints; i++) {
      const sPoint& p = comp->m_pPoints[i];
      pictrace::SetPixelColor(pixel(p.x, p.y), replacement);
      // Deliberately the one pixel the searches ended on, not the pixel
      // being painted.
      if (pMask && !found && !maskFound) pMask[index(lp.x, lp.y)] = 2;
      if (maskFound) pHostMask[index(lp.x, lp.y)] = maskValue;
    }
  }
  return result;
}

}  // namespace outline

int CPictrace::RemoveSmallRegions(std::list<CConComponent*>& listComp, double dMinArea,
                                  unsigned char* pMask) {
  return outline::RemoveSmallComponents(outline::InputOf(*this), listComp, dMinArea, pMask);
}
