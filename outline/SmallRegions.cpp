// Small components take the colour of a neighbour, so that the next
// component search merges them away.
#include <cmath>
#include <cstring>

#include "Pictrace.h"
#include "outline/OutlineImage.h"
#include "outline/OutlineRecords.h"
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

}  // namespace outline

int CPictrace::RemoveSmallRegions(std::list<CConComponent*>& listComp, double dMinArea,
                                  unsigned char* pMask) {
  outline::WorkImage img;
  if (!outline::GetWorkImage(*this, img)) return 0;
  const int W = img.width, H = img.height;
  // This step addresses rows by the header's image size; fall back to the
  // packed stride when the header leaves the size out.
  int stride = static_cast<int>(m_bmiHeader.biSizeImage / static_cast<DWORD>(H));
  if (stride < img.stride) stride = img.stride;

  const int limit = outline::SmallRegionLimit(dMinArea, m_rcImageReal.Width(),
                                              m_rcImageReal.Height(), W, H);
  static const int dx[4] = {-1, 0, 0, 1};  // left, up, down, right
  static const int dy[4] = {0, -1, 1, 0};
  auto pixel = [&](int x, int y) {
    return m_pWorkBits + static_cast<size_t>(y) * stride + 3 * static_cast<size_t>(x);
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
        replacement = outline::PixelColor(pixel(nx, ny));
        if (replacement != comp->m_crColor) {
          found = true;
          break;
        }
      }
    }
    bool maskFound = false;
    int maskValue = 0;
    if (!found && m_pMask) {
      for (int i = 0; i < comp->m_nPoints && !maskFound; i++) {
        last = i;
        const sPoint& p = comp->m_pPoints[i];
        int own = m_pMask[index(p.x, p.y)];
        for (int k = 0; k < 4; k++) {
          int nx = p.x + dx[k], ny = p.y + dy[k];
          if (skipped(nx, ny)) continue;
          if (m_pMask[index(nx, ny)] != own) {
            maskFound = true;
            maskValue = m_pMask[index(nx, ny)];
            break;
          }
        }
      }
    }
    if (found || maskFound) result = 1;

    const sPoint& lp = comp->m_pPoints[last];
    for (int i = 0; i < comp->m_nPoints; i++) {
      const sPoint& p = comp->m_pPoints[i];
      unsigned char* q = pixel(p.x, p.y);
      q[0] = GetBValue(replacement);
      q[1] = GetGValue(replacement);
      q[2] = GetRValue(replacement);
      // Deliberately the one pixel the searches ended on, not the pixel
      // being painted.
      if (pMask && !found && !maskFound) pMask[index(lp.x, lp.y)] = 2;
      if (maskFound) m_pMask[index(lp.x, lp.y)] = maskValue;
    }
  }
  return result;
}
