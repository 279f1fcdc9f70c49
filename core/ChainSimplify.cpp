#include "core/ChainSimplify.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace pictrace {

namespace {

typedef std::int64_t i64;

i64 Dist2(const sPoint& a, const sPoint& b) {
  i64 dx = a.x - b.x, dy = a.y - b.y;
  return dx * dx + dy * dy;
}

}  // namespace

int RemoveExtraPoints(sPoint* pPoints, int& nPoints) {
  const int n = nPoints;
  if (n < 3 || !pPoints) return 1;
  const sPoint last = pPoints[n - 1];

  // Without the last point, and without points repeating the one kept before.
  std::vector<sPoint> dedup;
  dedup.reserve(n);
  for (int k = 0; k < n - 1; k++)
    if (dedup.empty() || pPoints[k] != dedup.back()) dedup.push_back(pPoints[k]);

  // Drop a point that lies on the straight line from the last kept point to
  // its follower and is passed through in the same direction.
  const int m = static_cast<int>(dedup.size());
  int out = 0;
  pPoints[out++] = dedup[0];
  sPoint prev = dedup[0];
  for (int c = 1; c < m; c++) {
    const sPoint cur = dedup[c];
    const sPoint next = (c + 1 < m) ? dedup[c + 1] : dedup[0];
    i64 ax = prev.x - cur.x, ay = prev.y - cur.y;
    i64 bx = next.x - cur.x, by = next.y - cur.y;
    i64 cross = ax * by - ay * bx;
    i64 dot = (cur.x - prev.x) * static_cast<i64>(next.x - cur.x) +
              (cur.y - prev.y) * static_cast<i64>(next.y - cur.y);
    if (cross == 0 && dot > 0) continue;
    pPoints[out++] = cur;
    prev = cur;
  }
  pPoints[out++] = last;
  nPoints = out;
  return 1;
}

int SmoothChain(sPoint* pPoints, int& nPoints, float fTolerance) {
  const int n = nPoints;
  if (n < 3 || !pPoints) return 1;
  const double t = fTolerance;
  const i64 kBound2 = 1000 * 1000;  // segments stay within 1000 pixels

  // Output is written in place behind the read position: output index
  // never passes the index of the point it copies.
  int out = 1;  // point 0 stays
  int a = 0;
  int j = 2;
  for (; j < n; j++) {
    const sPoint& pa = pPoints[a];
    const sPoint& pj = pPoints[j];
    const i64 cx = pj.x - pa.x, cy = pj.y - pa.y;
    const i64 chord2 = cx * cx + cy * cy;
    if (chord2 == 0) break;  // the walk ends at a zero-length chord
    bool ok = Dist2(pPoints[j - 1], pj) <= kBound2;
    if (ok) {
      const double len = std::sqrt(static_cast<double>(chord2));
      for (int m = a + 1; m < j; m++) {
        const sPoint& pm = pPoints[m];
        i64 mx = pm.x - pa.x, my = pm.y - pa.y;
        i64 cross = mx * cy - my * cx;
        double dist = static_cast<double>(cross < 0 ? -cross : cross) / len;
        if (!(dist < t) || Dist2(pm, pa) > kBound2) {
          ok = false;
          break;
        }
      }
    }
    if (!ok) {
      pPoints[out++] = pPoints[j - 1];
      a = j - 1;
    }
  }
  pPoints[out++] = pPoints[j - 1];
  nPoints = out;
  return 1;
}

}  // namespace pictrace
