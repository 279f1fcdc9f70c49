// Corner detection: the chain is first reduced to a polygon whose vertices sit
// where the outline bends, then each vertex is judged by how far and how
// sharply it turns. A staircase turns by 90 degrees at every step, so the
// angle is only meaningful on the simplified polygon, never on raw points.
#include <algorithm>
#include <utility>

#include "curve/FitStages.h"

namespace pictrace::curve {

namespace {


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

// Whether the outline turns at cur by more than a corner's angle, coming
// from prev and leaving towards next, and stands out enough: its depth
// behind the chord between the two arms' midpoints is how much a smooth
// curve through the midpoints would cut off. Reports the turn's cosine.
bool TurnsSharply(Vec2 prev, Vec2 cur, Vec2 next, double minSagitta, double& cosTurn) {
  Vec2 in = cur - prev, out = next - cur;
  double lenIn = Length(in), lenOut = Length(out);
  if (lenIn <= 0.0 || lenOut <= 0.0) return false;
  cosTurn = Dot(in, out) / (lenIn * lenOut);
  if (cosTurn >= kCornerCos) return false;
  Vec2 m1 = (prev + cur) * 0.5, m2 = (cur + next) * 0.5;
  double chord = Distance(m1, m2);
  double depth = chord > 0.0 ? std::fabs(Cross(m2 - m1, cur - m1)) / chord : Distance(cur, m1);
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
                               bool bClosed, double dMinSagitta, double dShortEdge) {
  std::vector<int> corners;
  const int m = static_cast<int>(vertices.size());
  if (m < 3) return corners;
  auto wrap = [m](int k) { return ((k % m) + m) % m; };
  auto vertex = [&](int k) { return pts[vertices[wrap(k)]]; };
  // On a closed polygon the two arms together cover at most all other
  // vertices once.
  const int maxSpan = bClosed ? m - 1 : m;
  struct Candidate {
    int k, back, ahead;  // the vertex and the far ends of its arms
    double cosTurn;
  };
  std::vector<Candidate> found;
  for (int k = 0; k < m; k++) {
    if (!bClosed && (k == 0 || k == m - 1)) continue;
    // Arms reach over short edges, so that a corner cut off by one or two
    // short edges still shows its whole turn.
    int b = k - 1, f = k + 1;
    while (Distance(vertex(b), vertex(b + 1)) < dShortEdge && f - b < maxSpan && (bClosed || b > 0)) b--;
    while (Distance(vertex(f - 1), vertex(f)) < dShortEdge && f - b < maxSpan && (bClosed || f < m - 1)) f++;
    double cosTurn = 1.0;
    if (TurnsSharply(vertex(b), vertex(k), vertex(f), dMinSagitta, cosTurn)) found.push_back({k, b, f, cosTurn});
  }
  // Of candidates within one another's arms only the sharpest turn (the
  // first of equals) is a corner.
  const int c = static_cast<int>(found.size());
  for (int x = 0; x < c; x++) {
    const Candidate& cx = found[x];
    bool beaten = false;
    for (int dir = -1; dir <= 1 && !beaten; dir += 2) {
      for (int step = 1; step < c && !beaten; step++) {
        int y = bClosed ? ((x + dir * step) % c + c) % c : x + dir * step;
        if (y < 0 || y >= c || y == x) break;
        const Candidate& cy = found[y];
        int pos = wrap(cy.k - cx.back);
        if (pos <= 0 || pos >= cx.ahead - cx.back) break;
        beaten = cy.cosTurn < cx.cosTurn || (cy.cosTurn == cx.cosTurn && cy.k < cx.k);
      }
    }
    if (!beaten)
      corners.push_back(RefineCorner(pts, bClosed, vertices[wrap(cx.back)], vertices[cx.k],
                                     vertices[wrap(cx.ahead)]));
  }
  std::sort(corners.begin(), corners.end());
  corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
  return corners;
}

}  // namespace pictrace::curve
