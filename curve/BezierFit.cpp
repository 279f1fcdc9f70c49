// The chain fitter: reads the chain, cuts it into runs between its corners
// (or, without corners, into two halves of a smooth loop), fits each run and
// writes the segments out.
#include "curve/BezierFit.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "curve/FitStages.h"

namespace pictrace {

namespace {

using curve::Cubic;
using curve::Vec2;
using curve::kSmoothHalf;
using curve::kWindowDivisor;
using curve::kWindowGrowth;

struct Piece {
  Cubic cubic;
  bool cornerStart;
  bool cornerEnd;
};

// Fits the run pts[0 .. n-1] whose two ends are corners or chain ends: a run
// that is straight within the tolerance becomes one exactly straight cubic.
void FitFreeRun(const Vec2* pts, int n, const curve::PreparedChain& prep, std::vector<Piece>& out) {
  std::vector<Cubic> cubics;
  if (curve::RunIsStraight(pts, n, prep.tolerance)) {
    Cubic c;
    c.p[0] = pts[0];
    c.p[3] = pts[n - 1];
    c.p[1] = pts[0] + (pts[n - 1] - pts[0]) * (1.0 / 3.0);
    c.p[2] = pts[0] + (pts[n - 1] - pts[0]) * (2.0 / 3.0);
    cubics.push_back(c);
  } else {
    std::vector<Vec2> guide(pts, pts + n);
    if (prep.smooth) guide = curve::SmoothRun(guide, false, kSmoothHalf, prep.tolerance * 0.5);
    Vec2 t1 = curve::StartTangent(guide.data(), n, prep.window);
    Vec2 t2 = curve::EndTangent(guide.data(), n, prep.window);
    // One-sided estimates are the weakest; when the run nearly fits one
    // cubic, tune them for it.
    auto whole = [&](Vec2 a, Vec2 b) {
      return curve::RunError(pts, guide.data(), n, a, b, prep.tolerance);
    };
    t1 = curve::TuneTangent({[&](Vec2 t) { return whole(t, t2); }}, t1, prep.tolerance);
    t2 = curve::TuneTangent({[&](Vec2 t) { return whole(t1, t); }}, t2, prep.tolerance);
    curve::FitRun(pts, guide.data(), n, t1, t2, prep.tolerance, prep.window, cubics);
  }
  for (size_t i = 0; i < cubics.size(); i++)
    out.push_back({cubics[i], i == 0, i + 1 == cubics.size()});
}

// A closed chain without corners: cut at point 0 and at the point farthest
// from it, both cuts smooth, so the curve keeps its tangent all round.
void FitSmoothLoop(const curve::PreparedChain& prep, std::vector<Piece>& out) {
  const int n = static_cast<int>(prep.pts.size());
  std::vector<Vec2> pts = prep.pts;
  if (prep.smooth) pts = curve::SmoothRun(pts, true, kSmoothHalf, prep.tolerance * 0.5);
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
  Vec2 t0 = curve::CentreTangent(around.data(), 0, 2 * w, w, w);
  Vec2 tf = curve::CentreTangent(ringGuide.data(), 0, n, far, w);
  // Tune the tangent at the far cut, then the one at the closing point, for
  // the best single cubic on each half.
  auto first = [&](Vec2 start, Vec2 middle) {
    return curve::RunError(ring.data(), ringGuide.data(), far + 1, start, middle * -1.0, prep.tolerance);
  };
  auto second = [&](Vec2 start, Vec2 middle) {
    return curve::RunError(ring.data() + far, ringGuide.data() + far, n - far + 1, middle,
                           start * -1.0, prep.tolerance);
  };
  tf = curve::TuneTangent({[&](Vec2 t) { return first(t0, t); }, [&](Vec2 t) { return second(t0, t); }},
                          tf, prep.tolerance);
  t0 = curve::TuneTangent({[&](Vec2 t) { return first(t, tf); }, [&](Vec2 t) { return second(t, tf); }},
                          t0, prep.tolerance);
  std::vector<Cubic> cubics;
  curve::FitRun(ring.data(), ringGuide.data(), far + 1, t0, tf * -1.0, prep.tolerance, prep.window,
                cubics);
  curve::FitRun(ring.data() + far, ringGuide.data() + far, n - far + 1, tf, t0 * -1.0,
                prep.tolerance, prep.window, cubics);
  for (const Cubic& c : cubics) out.push_back({c, false, false});
}

void FitPrepared(const curve::PreparedChain& prep, std::vector<Piece>& out) {
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

double* WriteSegments(const std::vector<Piece>& pieces, int& nSegments) {
  nSegments = static_cast<int>(pieces.size());
  if (nSegments == 0) return nullptr;
  double* seg = new double[10 * static_cast<size_t>(nSegments)];
  for (int i = 0; i < nSegments; i++) {
    double* s = seg + 10 * static_cast<size_t>(i);
    for (int k = 0; k < 4; k++) {
      s[2 * k] = pieces[i].cubic.p[k].x;
      s[2 * k + 1] = pieces[i].cubic.p[k].y;
    }
    s[8] = pieces[i].cornerStart ? 1.0 : 0.0;
    s[9] = pieces[i].cornerEnd ? 1.0 : 0.0;
  }
  return seg;
}

double* FitChain(const std::vector<Vec2>& input, int nFlag, double dTolerance, int& nSegments) {
  nSegments = 0;
  double tol = (std::isfinite(dTolerance) && dTolerance > 0.0) ? dTolerance : 1.0;
  bool closed = false;
  std::vector<Vec2> pts = curve::DistinctChain(input, closed);
  std::vector<Piece> pieces;
  if (pts.size() < 2) return nullptr;
  if (pts.size() == 2) {
    // Nothing to bend: one straight segment, or there and back when closed.
    Vec2 ends[2][2] = {{pts[0], pts[1]}, {pts[1], pts[0]}};
    for (int k = 0; k < (closed ? 2 : 1); k++) {
      Cubic c;
      c.p[0] = ends[k][0];
      c.p[3] = ends[k][1];
      c.p[1] = c.p[0] + (c.p[3] - c.p[0]) * (1.0 / 3.0);
      c.p[2] = c.p[0] + (c.p[3] - c.p[0]) * (2.0 / 3.0);
      pieces.push_back({c, true, true});
    }
    return WriteSegments(pieces, nSegments);
  }
  curve::PreparedChain prep;
  if (nFlag == kChainVertices)
    curve::PrepareVertexChain(pts, closed, tol, prep);
  else
    curve::PrepareRawChain(std::move(pts), closed, tol, prep);
  FitPrepared(prep, pieces);
  return WriteSegments(pieces, nSegments);
}

}  // namespace

double* FitBezierChain(const int* pPoints, int nLast, int nFlag, double dTolerance, int& nSegments) {
  nSegments = 0;
  if (!pPoints || nLast < 0) return nullptr;
  std::vector<Vec2> chain(static_cast<size_t>(nLast) + 1);
  for (size_t i = 0; i < chain.size(); i++)
    chain[i] = Vec2{static_cast<double>(pPoints[2 * i]), static_cast<double>(pPoints[2 * i + 1])};
  return FitChain(chain, nFlag, dTolerance, nSegments);
}

double* FitBezierChainD(const double* pPoints, int nLast, int nFlag, double dTolerance,
                        int& nSegments) {
  nSegments = 0;
  if (!pPoints || nLast < 0) return nullptr;
  std::vector<Vec2> chain;
  chain.reserve(static_cast<size_t>(nLast) + 1);
  for (size_t i = 0; i <= static_cast<size_t>(nLast); i++) {
    Vec2 p{pPoints[2 * i], pPoints[2 * i + 1]};
    // A point that is not a number cannot be fitted; it is left out.
    if (std::isfinite(p.x) && std::isfinite(p.y)) chain.push_back(p);
  }
  return FitChain(chain, nFlag, dTolerance, nSegments);
}

}  // namespace pictrace
