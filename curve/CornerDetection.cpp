// Corner detection: the chain is first reduced to a polygon whose vertices sit
// where the outline bends, then each vertex is judged by how far and how
// sharply it turns. A staircase turns by 90 degrees at every step, so the
// angle is only meaningful on the simplified polygon, never on raw points.
#include <algorithm>
#include <utility>

#include "curve/FitStages.h"

namespace pictrace {
namespace curve {

namespace {

// cos(55 degrees): a turn steeper than this may be a corner.
const double kCornerCos = 0.5735764363510461;
// Polygon edges shorter than this may be the cut-off tip of a corner.
const double kShortEdge = 3.0;
// A corner may move this many chain points to its best place.
const int kRefineReach = 3;
const double kTipFlatness = 0.25;

// Douglas-Peucker between the fixed ends a and b of pts (b may equal
// pts.size() on a closed chain, meaning point 0 again); marks kept vertices.
// An explicit stack keeps long chains from deepening the call stack.
void Simplify(const std::vector<Vec2>& pts, int a, int b, double tol, std::vector<char>& keep) {
  const int n = static_cast<int>(pts.size());
  std::vector<std::pair<int, int>> stack;
  stack.push_back({a, b});
  while (!stack.empty()) {
    std::pair<int, int> run = stack.back();
    stack.pop_back();
    Vec2 pa = pts[run.first % n], pb = pts[run.second % n];
    double worst = tol;
    int split = -1;
    for (int i = run.first + 1; i < run.second; i++) {
      double d = DistanceToSegment(pts[i], pa, pb);
      if (d > worst) {
        worst = d;
        split = i;
      }
    }
    if (split < 0) continue;
    keep[split] = 1;
    stack.push_back({split, run.second});
    stack.push_back({run.first, split});
  }
}

// Whether the outline turns at tip by more than a corner's angle, coming
// along a0-a1 and leaving along b0-b1, and stands out enough: the tip's depth
// behind the chord between the two edges' midpoints is how much a smooth
// curve through the midpoints would cut off.
bool IsCorner(Vec2 a0, Vec2 a1, Vec2 b0, Vec2 b1, Vec2 tip, double minSagitta) {
  Vec2 in = a1 - a0, out = b1 - b0;
  double lenIn = Length(in), lenOut = Length(out);
  if (lenIn <= 0.0 || lenOut <= 0.0) return false;
  if (Dot(in, out) >= kCornerCos * lenIn * lenOut) return false;
  Vec2 m1 = (a0 + a1) * 0.5, m2 = (b0 + b1) * 0.5;
  double chord = Distance(m1, m2);
  double depth = chord > 0.0 ? std::fabs(Cross(m2 - m1, tip - m1)) / chord : Distance(tip, m1);
  return depth >= minSagitta;
}

// Moves a corner found at chain point c (between the polygon's neighbouring
// vertices a and b) to the nearby point that stands out farthest from the
// chord a-b. The points of a flat tip stand out about equally (within a
// quarter pixel); the middle one is taken, so that the corner sits on the
// tip's centre rather than on one side of it.
int RefineCorner(const std::vector<Vec2>& pts, bool closed, int a, int c, int b) {
  const int n = static_cast<int>(pts.size());
  int back = closed ? ((c - a) % n + n) % n : c - a;
  int ahead = closed ? ((b - c) % n + n) % n : b - c;
  int lo = -std::min(kRefineReach, back - 1), hi = std::min(kRefineReach, ahead - 1);
  auto at = [&](int o) { return closed ? ((c + o) % n + n) % n : c + o; };
  auto depth = [&](int o) { return DistanceToSegment(pts[at(o)], pts[a], pts[b]); };
  int peak = 0;
  double best = depth(0);
  for (int o = lo; o <= hi; o++) {
    if (depth(o) > best) {
      best = depth(o);
      peak = o;
    }
  }
  int first = peak, last = peak;
  while (first > lo && depth(first - 1) >= best - kTipFlatness) first--;
  while (last < hi && depth(last + 1) >= best - kTipFlatness) last++;
  // A flat that runs on past the reach is the start of a gentle curve, not
  // a tip: the corner stays where it was found, at the flat's end.
  bool bounded = (first > lo || lo == 0) && (last < hi || hi == 0);
  if (!bounded) return first <= 0 && 0 <= last ? c : at(peak);
  return at(first + (last - first) / 2);
}

}  // namespace

std::vector<int> SimplifyChain(const std::vector<Vec2>& pts, bool bClosed, double dTolerance) {
  const int n = static_cast<int>(pts.size());
  std::vector<int> result;
  if (n == 0) return result;
  std::vector<char> keep(n, 0);
  keep[0] = 1;
  if (bClosed) {
    // A closed chain has no natural ends: cut it at point 0 and at the point
    // farthest from it, then simplify both halves.
    int far = 0;
    double farDist = 0.0;
    for (int i = 1; i < n; i++) {
      double d = Distance(pts[i], pts[0]);
      if (d > farDist) {
        farDist = d;
        far = i;
      }
    }
    if (far > 0) {
      keep[far] = 1;
      Simplify(pts, 0, far, dTolerance, keep);
      Simplify(pts, far, n, dTolerance, keep);
    }
  } else {
    keep[n - 1] = 1;
    Simplify(pts, 0, n - 1, dTolerance, keep);
  }
  for (int i = 0; i < n; i++)
    if (keep[i]) result.push_back(i);
  return result;
}

std::vector<int> SelectCorners(const std::vector<Vec2>& pts, const std::vector<int>& vertices,
                               bool bClosed, double dMinSagitta) {
  std::vector<int> corners;
  const int m = static_cast<int>(vertices.size());
  const int n = static_cast<int>(pts.size());
  if (m < 3) return corners;
  auto vertex = [&](int k) { return pts[vertices[((k % m) + m) % m]]; };
  std::vector<char> isCorner(m, 0);
  for (int k = 0; k < m; k++) {
    if (!bClosed && (k == 0 || k == m - 1)) continue;
    if (IsCorner(vertex(k - 1), vertex(k), vertex(k), vertex(k + 1), vertex(k), dMinSagitta)) {
      isCorner[k] = 1;
      corners.push_back(RefineCorner(pts, bClosed, vertices[(k + m - 1) % m], vertices[k],
                                     vertices[(k + 1) % m]));
    }
  }
  // A raster corner is often cut off by one short edge (the blunt tip of a
  // diagonal shape): judge the edges on both sides of a short edge, and put
  // the corner on the chain point halfway along it.
  for (int k = 0; k < m; k++) {
    int k1 = (k + 1) % m;
    if (!bClosed && (k == 0 || k + 2 >= m)) continue;
    if (isCorner[k] || isCorner[k1]) continue;
    if (Distance(vertex(k), vertex(k + 1)) >= kShortEdge) continue;
    int a = vertices[k], b = vertices[k1];
    int mid = b > a ? (a + b) / 2 : ((a + b + n) / 2) % n;
    if (IsCorner(vertex(k - 1), vertex(k), vertex(k + 1), vertex(k + 2), pts[mid], dMinSagitta))
      corners.push_back(RefineCorner(pts, bClosed, vertices[(k + m - 1) % m], mid, vertices[(k + 2) % m]));
  }
  std::sort(corners.begin(), corners.end());
  corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
  return corners;
}

}  // namespace curve
}  // namespace pictrace
