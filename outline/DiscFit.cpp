#include "outline/DiscFit.h"

#include <cmath>

namespace outline {

namespace {

short Clamp16(int v) {
  if (v > 32767) return 32767;
  if (v < -32768) return -32768;
  return static_cast<short>(v);
}

}  // namespace

std::vector<sPoint> BuildDiscTable(double r) {
  std::vector<sPoint> table;
  if (!(r > 0.0)) return table;
  if (r > 100000.0) {
    table.push_back(sPoint{32767, 32767});
    return table;
  }
  const double twoPi = 2.0 * 3.14159265358979323846;  // 2 * M_PI
  const double step = 1.0 / r;
  const int room = static_cast<int>(twoPi / step);
  for (double angle = 0.0; angle < twoPi && static_cast<int>(table.size()) < room; angle += step) {
    sPoint e{Clamp16(static_cast<int>(std::cos(angle) * r - 0.5)),
             Clamp16(static_cast<int>(std::sin(angle) * r - 0.5))};
    if (table.empty() || e != table.back()) table.push_back(e);
  }
  return table;
}

bool HoldsDisc(const CConComponent* comp, const sPoint* offsets, int nOffsets, int width,
               int height, unsigned char* scratch) {
  auto inside = [&](int x, int y) { return x >= 0 && y >= 0 && x < width && y < height; };
  auto at = [&](int x, int y) -> unsigned char& {
    return scratch[static_cast<size_t>(y) * width + x];
  };
  for (int i = 0; i < comp->m_nPoints; i++) {
    const sPoint& p = comp->m_pPoints[i];
    if (inside(p.x, p.y)) at(p.x, p.y) = 1;
  }
  bool found = false;
  for (int i = 0; i < comp->m_nPoints && !found; i++) {
    const sPoint& p = comp->m_pPoints[i];
    bool fits = true;
    for (int k = 0; k < nOffsets; k++) {
      int x = p.x + offsets[k].x, y = p.y + offsets[k].y;
      if (inside(x, y) && !at(x, y)) {
        fits = false;
        break;
      }
    }
    found = fits;
  }
  for (int i = 0; i < comp->m_nPoints; i++) {
    const sPoint& p = comp->m_pPoints[i];
    if (inside(p.x, p.y)) at(p.x, p.y) = 0;
  }
  return found;
}

}  // namespace outline
