#include "engine/TilingCurves.h"

#include <algorithm>
#include <cmath>

#include "curve/BezierFit.h"
#include "curve/BorderFit.h"
#include "curve/Crossings.h"

namespace pictrace {
namespace engine {

namespace {

using curve::Cubic;
using curve::Vec2;

// A piece is fitted at the tolerance, at a half and a quarter of it, then
// taken as traced.
constexpr int kTracedLevel = 3;
// From this round on, pieces still crossing are taken as traced at once
// (traced borders never cross), which ends the search.
constexpr int kMaxRounds = 4;
// A new cut keeps this many steps away from the cuts there are.
constexpr int kCutSpacing = 2;
// The last resort takes this many steps on each side of a crossing as traced.
constexpr int kTracedStretch = 6;

Vec2 ToVec(sPoint p) { return Vec2{static_cast<double>(p.x), static_cast<double>(p.y)}; }

}  // namespace

TilingCurves::TilingCurves(const std::vector<OutlineChain>& chains, int width, int height,
                           double dTolerance)
    : chains_(chains),
      graph_(SplitIntoBorders(chains, width, height)),
      tolerance_(std::isfinite(dTolerance) && dTolerance > 0.0 ? dTolerance : 1.0) {
  const size_t n = graph_.borders.size();
  std::vector<Plan> plans(n);
  runs_.resize(n);
  fits_.resize(n);
  flipped_.assign(n, 0);
  // Both neighbours' fits come from the border's canonical run, whichever
  // of them entered it first; so do the places where crossings are cut.
  for (size_t b = 0; b < n; b++) {
    for (sPoint p : graph_.borders[b].run) runs_[b].push_back(ToVec(p));
    flipped_[b] = curve::CanonicalBorder(runs_[b], graph_.borders[b].closed);
    fits_[b] = Fit(b, plans[b]);
  }
  // After the first search only pairs with a changed border can have begun
  // or stopped crossing.
  std::vector<char> suspects;
  for (int round = 1;; round++) {
    std::vector<curve::Crossing> crossings = curve::CrossingCurves(fits_, suspects);
    if (crossings.empty()) break;
    std::vector<std::vector<Vec2>> places(n);
    for (const curve::Crossing& c : crossings) places[c.curve].push_back(c.at);
    std::vector<char> changed(n, 0);
    for (size_t b = 0; b < n; b++)
      if (!places[b].empty()) changed[b] = Mend(b, plans[b], places[b], round >= kMaxRounds);
    bool any = false;
    for (size_t b = 0; b < n; b++) {
      if (!changed[b]) continue;
      fits_[b] = Fit(b, plans[b]);
      any = true;
    }
    if (!any) break;
    suspects.swap(changed);
  }
}

void TilingCurves::PieceOf(const Border& b, const Plan& plan, int i, int& start, int& end) {
  const int m = static_cast<int>(b.run.size());
  if (plan.cuts.empty()) {
    start = 0;
    end = b.closed ? m : m - 1;
    return;
  }
  auto next = std::upper_bound(plan.cuts.begin(), plan.cuts.end(), i);
  if (next == plan.cuts.begin()) {
    // Before the first cut: an open border's first piece, or a closed
    // border's last piece going round.
    start = b.closed ? plan.cuts.back() : 0;
    end = plan.cuts.front();
  } else {
    start = *(next - 1);
    end = next != plan.cuts.end() ? *next : (b.closed ? plan.cuts.front() + m : m - 1);
  }
}

// Cuts the border at the traced points nearest its crossings; where a cut
// or an end is already that near, the pieces there are fitted closer. As a
// last resort a short stretch around each crossing is taken as traced.
bool TilingCurves::Mend(size_t border, Plan& plan, const std::vector<Vec2>& at, bool bLastResort) const {
  const Border& b = graph_.borders[border];
  const std::vector<Vec2>& run = runs_[border];
  const int m = static_cast<int>(run.size());
  std::vector<int> places;
  for (Vec2 p : at) {
    int nearest = 0;
    double best = -1.0;
    for (int i = 0; i < m; i++) {
      double d = curve::Distance(run[i], p);
      if (best < 0.0 || d < best) best = d, nearest = i;
    }
    places.push_back(nearest);
  }
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());

  // Pieces made or changed here are not changed again in this round.
  std::vector<int> touched;
  auto wasTouched = [&](int piece) { return std::find(touched.begin(), touched.end(), piece) != touched.end(); };
  auto cut = [&](int i) {
    int start, end;
    PieceOf(b, plan, i, start, end);
    int along = i < start ? i + m : i;
    bool wholeRing = b.closed && plan.cuts.empty();
    if (!wholeRing && (along - start < kCutSpacing || end - along < kCutSpacing)) return false;
    int level = plan.Level(start);
    plan.cuts.insert(std::upper_bound(plan.cuts.begin(), plan.cuts.end(), i), i);
    plan.LevelAt(i) = level;
    touched.push_back(start);
    touched.push_back(i);
    return true;
  };
  bool changed = false;
  for (int place : places) {
    int start, end;
    PieceOf(b, plan, place, start, end);
    if (wasTouched(start)) continue;
    if (bLastResort) {
      for (int i : {place - kTracedStretch, place + kTracedStretch})
        if (b.closed || (i > 0 && i < m - 1)) cut(((i % m) + m) % m);
      PieceOf(b, plan, place, start, end);
      plan.LevelAt(start) = kTracedLevel;
      touched.push_back(start);
      changed = true;
      continue;
    }
    if (cut(place)) {
      changed = true;
      continue;
    }
    for (int i : {place - kCutSpacing, place, place + kCutSpacing}) {
      if (!b.closed && (i < 0 || i > m - 1)) continue;
      PieceOf(b, plan, ((i % m) + m) % m, start, end);
      int& level = plan.LevelAt(start);
      if (!wasTouched(start) && level < kTracedLevel) {
        level++;
        touched.push_back(start);
        changed = true;
      }
    }
  }
  return changed;
}

std::vector<Cubic> TilingCurves::Fit(size_t border, const Plan& plan) const {
  const Border& b = graph_.borders[border];
  const std::vector<Vec2>& pts = runs_[border];
  // The frame is straight between the picture's corners, which are junctions.
  if (b.across == Across::kFrame) return curve::StraightBorder(pts, b.closed);
  if (plan.cuts.empty()) {
    int level = plan.Level(0);
    if (level >= kTracedLevel) return curve::StraightBorder(pts, b.closed);
    double tol = std::ldexp(tolerance_, -level);
    return b.closed ? curve::FitClosedBorder(pts, tol) : curve::FitOpenBorder(pts, tol);
  }
  // Pieces between cuts and ends, in run order; a closed border's pieces go
  // round from its first cut.
  const int m = static_cast<int>(pts.size());
  std::vector<int> bounds;
  if (!b.closed) bounds.push_back(0);
  bounds.insert(bounds.end(), plan.cuts.begin(), plan.cuts.end());
  bounds.push_back(b.closed ? plan.cuts.front() + m : m - 1);
  std::vector<Cubic> out;
  for (size_t k = 0; k + 1 < bounds.size(); k++) {
    std::vector<Vec2> run;
    for (int i = bounds[k]; i <= bounds[k + 1]; i++) run.push_back(pts[static_cast<size_t>(i % m)]);
    int level = plan.Level(bounds[k]);
    std::vector<Cubic> fit = level >= kTracedLevel
                                 ? curve::StraightBorder(run, false)
                                 : curve::FitOpenBorder(run, std::ldexp(tolerance_, -level));
    out.insert(out.end(), fit.begin(), fit.end());
  }
  return out;
}

std::vector<Cubic> TilingCurves::OutlineCurve(size_t i) const {
  std::vector<Cubic> out;
  if (i >= graph_.outlines.size()) return out;
  if (graph_.outlines[i].empty()) {
    const OutlineChain& c = chains_[i];
    if (c.count < 2 || !c.points) return out;
    std::vector<int> chain(static_cast<size_t>(c.count) * 2);
    for (int k = 0; k < c.count; k++) {
      chain[2 * k] = c.points[k].x;
      chain[2 * k + 1] = c.points[k].y;
    }
    int nSegments = 0;
    double* s = FitBezierChain(chain.data(), c.count - 1, kChainRawOutline, tolerance_, nSegments);
    for (int k = 0; k < nSegments; k++) {
      Cubic cubic;
      for (int j = 0; j < 4; j++) cubic.p[j] = Vec2{s[10 * k + 2 * j], s[10 * k + 2 * j + 1]};
      out.push_back(cubic);
    }
    delete[] s;
    return out;
  }
  for (const BorderStep& step : graph_.outlines[i]) {
    const std::vector<Cubic>& fit = fits_[step.border];
    if (step.reversed != (flipped_[step.border] != 0)) {
      std::vector<Cubic> back = curve::ReversedCurve(fit);
      out.insert(out.end(), back.begin(), back.end());
    } else {
      out.insert(out.end(), fit.begin(), fit.end());
    }
  }
  return out;
}

}  // namespace engine
}  // namespace pictrace
