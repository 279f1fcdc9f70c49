// Fitting a prepared chain: cut into runs between its corners (or, without
// corners, into two halves of a smooth loop), each run fitted on its own.
#include <algorithm>
#include <vector>

#include "curve/FitStages.h"

namespace pictrace::curve {

namespace {

// Fits the run pts[0 .. n-1] whose two ends are corners or chain ends: a run
// that is straight within the tolerance becomes one exactly straight cubic.
void FitFreeRun(const Vec2* pts, int n, const PreparedChain& prep, std::vector<FittedPiece>& out) {
  std::vector<Cubic> cubics;
  if (RunIsStraight(pts, n, prep.tolerance)) {
    cubics.push_back(StraightCubic(pts[0], pts[n - 1]));
  } else {
    std::vector<Vec2> guide(pts, pts + n);
    if (prep.smooth) guide = SmoothRun(guide, false, kSmoothHalf, prep.tolerance * 0.5);
    Vec2 t1 = StartTangent(guide.data(), n, prep.window);
    Vec2 t2 = EndTangent(guide.data(), n, prep.window);
    // One-sided estimates are the weakest; when the run nearly fits one
    // cubic, tune them for it.
    auto whole = [&](Vec2 a, Vec2 b) {
      return RunError(pts, guide.data(), n, a, b, prep.tolerance);
    };
    t1 = TuneTangent({[&](Vec2 t) { return whole(t, t2); }}, t1, prep.tolerance);
    t2 = TuneTangent({[&](Vec2 t) { return whole(t1, t); }}, t2, prep.tolerance);
    FitRun(pts, guide.data(), n, t1, t2, prep.tolerance, prep.window, cubics);
  }
  for (size_t i = 0; i < cubics.size(); i++)
    out.push_back({cubics[i], i == 0, i + 1 == cubics.size()});
}

// A closed chain without corners: cut at point 0 and at the point farthest
// from it, both cuts smooth, so the curve keeps its tangent all round.
void FitSmoothLoop(const PreparedChain& prep, std::vector<FittedPiece>& out) {
  const int n = static_cast<int>(prep.pts.size());
  std::vector<Vec2> pts = prep.pts;
  if (prep.smooth) pts = SmoothRun(pts, true, kSmoothHalf, prep.tolerance * 0.5);
  std::vector<Vec2> ring(prep.pts), ringGuide(pts);
  ring.push_back(prep.pts[0]);
  ringGuide.push_back(pts[0]);
  int far = 1;
  double farDist = -1.0;
  for (int i = 1; i < n; i++) {
    double d = Distance(pts[i], pts[0]);
    if (d > farDist) {
      farDist = d;
      far = i;
    }
  }
  // Tangent windows grow with the halves as they do at splits. The tangent
  // at point 0 looks across the closing point.
  int w = std::min(std::min(std::max(prep.window, std::min(far, n - far) / kWindowDivisor),
                            prep.window * kWindowGrowth),
                   (n - 1) / 2);
  std::vector<Vec2> around;
  for (int k = -w; k <= w; k++) around.push_back(pts[((k % n) + n) % n]);
  Vec2 t0 = CentreTangent(around.data(), 0, 2 * w, w, w);
  Vec2 tf = CentreTangent(ringGuide.data(), 0, n, far, w);
  // Tune the tangent at the far cut, then the one at the closing point, for
  // the best single cubic on each half.
  auto first = [&](Vec2 start, Vec2 middle) {
    return RunError(ring.data(), ringGuide.data(), far + 1, start, middle * -1.0, prep.tolerance);
  };
  auto second = [&](Vec2 start, Vec2 middle) {
    return RunError(ring.data() + far, ringGuide.data() + far, n - far + 1, middle,
                           start * -1.0, prep.tolerance);
  };
  tf = TuneTangent({[&](Vec2 t) { return first(t0, t); }, [&](Vec2 t) { return second(t0, t); }},
                          tf, prep.tolerance);
  t0 = TuneTangent({[&](Vec2 t) { return first(t, tf); }, [&](Vec2 t) { return second(t, tf); }},
                          t0, prep.tolerance);
  std::vector<Cubic> cubics;
  FitRun(ring.data(), ringGuide.data(), far + 1, t0, tf * -1.0, prep.tolerance, prep.window,
                cubics);
  FitRun(ring.data() + far, ringGuide.data() + far, n - far + 1, tf, t0 * -1.0,
                prep.tolerance, prep.window, cubics);
  for (const Cubic& c : cubics) out.push_back({c, false, false});
}

}  // namespace

void FitPrepared(const PreparedChain& prep, std::vector<FittedPiece>& out) {
  const int n = static_cast<int>(prep.pts.size());
  if (prep.closed && prep.corners.empty()) {
    FitSmoothLoop(prep, out);
    return;
  }
  // Unroll the chain so that it starts on its first corner (closed) or its
  // first point (open); the cuts are the corners and the chain's ends.
  std::vector<Vec2> run;
  std::vector<int> cuts;
  if (prep.closed) {
    int start = prep.corners[0];
    for (int i = 0; i <= n; i++) run.push_back(prep.pts[(start + i) % n]);
    for (int c : prep.corners) cuts.push_back(c - start);
    cuts.push_back(n);
  } else {
    run = prep.pts;
    cuts.push_back(0);
    for (int c : prep.corners) cuts.push_back(c);
    cuts.push_back(n - 1);
  }
  for (size_t k = 0; k + 1 < cuts.size(); k++)
    FitFreeRun(run.data() + cuts[k], cuts[k + 1] - cuts[k] + 1, prep, out);
}

}  // namespace pictrace::curve
