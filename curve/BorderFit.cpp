// Border fits that do not depend on the walking direction: the run is turned
// into a canonical direction (and, when closed, a canonical start) before it
// is fitted, and the cubics are turned back afterwards.
#include "curve/BorderFit.h"

#include <algorithm>

#include "curve/FitStages.h"

namespace pictrace::curve {

namespace {

bool Before(Vec2 a, Vec2 b) { return a.x < b.x || (a.x == b.x && a.y < b.y); }

std::vector<Vec2> WithoutRepeats(const std::vector<Vec2>& run) {
  std::vector<Vec2> pts;
  for (const Vec2& p : run)
    if (pts.empty() || pts.back() != p) pts.push_back(p);
  return pts;
}

std::vector<Cubic> FitRaw(std::vector<Vec2> pts, bool closed, double tol) {
  PreparedChain prep;
  PrepareRawChain(std::move(pts), closed, tol, prep);
  std::vector<FittedPiece> pieces;
  FitPrepared(prep, pieces);
  std::vector<Cubic> out;
  out.reserve(pieces.size());
  for (const FittedPiece& p : pieces) out.push_back(p.cubic);
  return out;
}

}  // namespace

std::vector<Cubic> ReversedCurve(const std::vector<Cubic>& curve) {
  std::vector<Cubic> out(curve.rbegin(), curve.rend());
  for (Cubic& c : out) {
    std::swap(c.p[0], c.p[3]);
    std::swap(c.p[1], c.p[2]);
  }
  return out;
}

bool CanonicalBorder(std::vector<Vec2>& run, bool bClosed) {
  const size_t n = run.size();
  if (n < 3) return false;
  if (!bClosed) {
    // A border that starts and ends at one point is told apart by its
    // second and last-but-one points.
    bool flip = run[0] == run[n - 1] ? Before(run[n - 2], run[1]) : Before(run[n - 1], run[0]);
    if (flip) std::reverse(run.begin(), run.end());
    return flip;
  }
  size_t first = 0;
  for (size_t i = 1; i < n; i++)
    if (Before(run[i], run[first])) first = i;
  std::rotate(run.begin(), run.begin() + static_cast<long>(first), run.end());
  bool flip = Before(run[n - 1], run[1]);
  if (flip) std::reverse(run.begin() + 1, run.end());
  return flip;
}

std::vector<Cubic> FitOpenBorder(const std::vector<Vec2>& run, double dTolerance) {
  std::vector<Vec2> pts = WithoutRepeats(run);
  const size_t n = pts.size();
  if (n < 2) return {};
  if (n == 2) return {StraightCubic(pts[0], pts[1])};
  bool flip = CanonicalBorder(pts, false);
  std::vector<Cubic> fit = FitRaw(std::move(pts), false, dTolerance);
  return flip ? ReversedCurve(fit) : fit;
}

std::vector<Cubic> FitClosedBorder(const std::vector<Vec2>& run, double dTolerance) {
  std::vector<Vec2> pts = WithoutRepeats(run);
  while (pts.size() > 1 && pts.back() == pts.front()) pts.pop_back();
  const size_t n = pts.size();
  if (n < 2) return {};
  if (n == 2) return {StraightCubic(pts[0], pts[1]), StraightCubic(pts[1], pts[0])};
  bool flip = CanonicalBorder(pts, true);
  std::vector<Cubic> fit = FitRaw(std::move(pts), true, dTolerance);
  return flip ? ReversedCurve(fit) : fit;
}

std::vector<Cubic> StraightBorder(const std::vector<Vec2>& run, bool bClosed) {
  std::vector<Vec2> pts = WithoutRepeats(run);
  if (bClosed)
    while (pts.size() > 1 && pts.back() == pts.front()) pts.pop_back();
  const size_t n = pts.size();
  if (n < 2) return {};
  auto turns = [&](size_t i) {
    Vec2 a = pts[(i + n - 1) % n], b = pts[i], c = pts[(i + 1) % n];
    return Cross(b - a, c - b) != 0.0 || Dot(b - a, c - b) <= 0.0;
  };
  size_t start = 0;
  if (bClosed) {
    while (start < n && !turns(start)) start++;
    if (start == n) start = 0;
  }
  std::vector<Vec2> walk;
  for (size_t k = 0; k < n; k++) walk.push_back(pts[(start + k) % n]);
  if (bClosed) walk.push_back(walk.front());
  std::vector<Cubic> out;
  size_t from = 0;
  for (size_t i = 1; i < walk.size(); i++) {
    bool last = i + 1 == walk.size();
    if (last || Cross(walk[i] - walk[from], walk[i + 1] - walk[i]) != 0.0 ||
        Dot(walk[i] - walk[from], walk[i + 1] - walk[i]) <= 0.0) {
      out.push_back(StraightCubic(walk[from], walk[i]));
      from = i;
    }
  }
  return out;
}

}  // namespace pictrace::curve
