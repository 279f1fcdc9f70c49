// Least-squares cubic fitting of a run of points with fixed end tangents,
// improved by Newton reparameterisation and split at the worst point when it
// still misses the tolerance (the classic digitised-curve fitting method).
#include <algorithm>
#include <cmath>

#include "curve/FitStages.h"

namespace pictrace::curve {

namespace {


struct RunFit {
  Cubic cubic;
  double maxErr2 = 0.0;  // squared largest distance at the points' parameters
  int worst = 0;         // index of the point with that distance
};

// Control arms along the tangents at a third of the chord, used where the
// least-squares arms are unusable.
Cubic ArmCubic(Vec2 a, Vec2 b, Vec2 t1, Vec2 t2, double arm1, double arm2) {
  Cubic c;
  c.p[0] = a;
  c.p[1] = a + t1 * arm1;
  c.p[2] = b + t2 * arm2;
  c.p[3] = b;
  return c;
}

// Arm lengths that minimise the squared distances |Q(u_i) - P_i|.
Cubic LeastSquaresCubic(const Vec2* pts, Vec2 a, Vec2 b, int n, const double* u, Vec2 t1, Vec2 t2,
                        double span) {
  double chord = Distance(a, b);
  double fallback = (chord > 0.0 ? chord : span) / 3.0;
  double c00 = 0.0, c01 = 0.0, c11 = 0.0, x0 = 0.0, x1 = 0.0;
  for (int i = 0; i < n; i++) {
    double t = u[i], s = 1.0 - t;
    double b0 = s * s * s, b1 = 3.0 * s * s * t, b2 = 3.0 * s * t * t, b3 = t * t * t;
    Vec2 a1 = t1 * b1, a2 = t2 * b2;
    c00 += Dot(a1, a1);
    c01 += Dot(a1, a2);
    c11 += Dot(a2, a2);
    Vec2 rest = pts[i] - (a * (b0 + b1) + b * (b2 + b3));
    x0 += Dot(a1, rest);
    x1 += Dot(a2, rest);
  }
  double det = c00 * c11 - c01 * c01;
  if (!(std::fabs(det) > 1e-12 * c00 * c11) || det == 0.0)
    return ArmCubic(a, b, t1, t2, fallback, fallback);
  double arm1 = (x0 * c11 - x1 * c01) / det;
  double arm2 = (c00 * x1 - c01 * x0) / det;
  // Arms that point backwards or reach farther than the whole run would
  // make loops or cusps; the plain arms are safer and splitting does the rest.
  double small = 1e-6 * span;
  if (!(arm1 > small && arm2 > small && arm1 < span && arm2 < span))
    return ArmCubic(a, b, t1, t2, fallback, fallback);
  return ArmCubic(a, b, t1, t2, arm1, arm2);
}

// The ends count too: a run's end points may sit a little off the guide
// points the cubic joins on. Only interior points are candidates for a split.
void MeasureError(const Vec2* pts, int n, const double* u, RunFit& fit) {
  fit.maxErr2 = 0.0;
  fit.worst = n / 2;
  double worstInner = -1.0;
  for (int i = 0; i < n; i++) {
    Vec2 d = CubicPoint(fit.cubic, u[i]) - pts[i];
    double e2 = Dot(d, d);
    if (e2 > fit.maxErr2) fit.maxErr2 = e2;
    if (i > 0 && i < n - 1 && e2 > worstInner) {
      worstInner = e2;
      fit.worst = i;
    }
  }
}

// One Newton step towards the parameter of the nearest curve point.
double Reparameterise(const Cubic& c, Vec2 p, double t) {
  Vec2 d = CubicPoint(c, t) - p;
  Vec2 d1 = CubicDerivative(c, t);
  Vec2 d2 = CubicSecondDerivative(c, t);
  double num = Dot(d, d1);
  double den = Dot(d1, d1) + Dot(d, d2);
  if (!(den > 0.0)) return t;
  double next = t - num / den;
  return next < 0.0 ? 0.0 : (next > 1.0 ? 1.0 : next);
}

// Fits one cubic to the run; reports whether it stays within the tolerance.
// Fits one cubic to the run; reports whether it stays within the tolerance.
// A run of two points has nothing between its ends and always fits.
bool FitOne(const Vec2* pts, const Vec2* guide, int n, Vec2 t1, Vec2 t2, double tol2,
            std::vector<double>& u, RunFit& fit) {
  Vec2 a = guide[0], b = guide[n - 1];
  if (n == 2) {
    double arm = Distance(a, b) / 3.0;
    fit.cubic = ArmCubic(a, b, t1, t2, arm, arm);
    fit.maxErr2 = 0.0;
    return true;
  }
  u.assign(n, 0.0);
  for (int i = 1; i < n; i++) u[i] = u[i - 1] + Distance(guide[i], guide[i - 1]);
  double span = u[n - 1];
  for (int i = 1; i < n; i++) u[i] = span > 0.0 ? u[i] / span : static_cast<double>(i) / (n - 1);
  fit.cubic = LeastSquaresCubic(pts, a, b, n, u.data(), t1, t2, span);
  MeasureError(pts, n, u.data(), fit);
  for (int round = 0; round < kReparamRounds && fit.maxErr2 > tol2; round++) {
    for (int i = 1; i < n - 1; i++) u[i] = Reparameterise(fit.cubic, pts[i], u[i]);
    fit.cubic = LeastSquaresCubic(pts, a, b, n, u.data(), t1, t2, span);
    MeasureError(pts, n, u.data(), fit);
  }
  return fit.maxErr2 <= tol2;
}

}  // namespace

double RunError(const Vec2* pts, const Vec2* guide, int n, Vec2 t1, Vec2 t2, double dTolerance) {
  if (n < 2) return 0.0;
  std::vector<double> u;
  RunFit fit;
  FitOne(pts, guide, n, t1, t2, dTolerance * dTolerance, u, fit);
  return std::sqrt(fit.maxErr2);
}

void FitRun(const Vec2* pts, const Vec2* guide, int n, Vec2 t1, Vec2 t2, double dTolerance,
            int nWindow, std::vector<Cubic>& out) {
  if (n < 2) return;
  struct Task {
    int first, last;
    Vec2 t1, t2;
  };
  // Tasks are taken from the back; the right half of a split is pushed first
  // so that the cubics come out in chain order.
  std::vector<Task> tasks;
  tasks.push_back({0, n - 1, t1, t2});
  std::vector<double> u;
  double tol2 = dTolerance * dTolerance;
  struct Done {
    Task task;
    Cubic cubic;
  };
  std::vector<Done> done;
  while (!tasks.empty()) {
    Task task = tasks.back();
    tasks.pop_back();
    RunFit fit;
    int len = task.last - task.first + 1;
    if (FitOne(pts + task.first, guide + task.first, len, task.t1, task.t2, tol2, u, fit)) {
      done.push_back({task, fit.cubic});
      continue;
    }
    // A run that misses by far is halved: the worst point of a poor single
    // cubic often sits near an end, and cutting there leaves most of the
    // run as poor as before. A near miss is split at its worst point.
    int cut = fit.maxErr2 > kFarMiss * kFarMiss * tol2 ? len / 2 : fit.worst;
    int split = task.first + std::min(std::max(cut, 1), len - 2);
    // Long runs on both sides of the split call for a steadier tangent: the
    // window grows with them (a symmetric window stays exact on arcs). The
    // estimate is then tuned so that both sides fit as well as they can.
    int side = std::min(split - task.first, task.last - split);
    int window = std::min(std::max(nWindow, side / kWindowDivisor), nWindow * kWindowGrowth);
    Vec2 estimate = CentreTangent(guide, task.first, task.last, split, window);
    auto left = [&](Vec2 t) {
      return RunError(pts + task.first, guide + task.first, split - task.first + 1, task.t1, t * -1.0,
                      dTolerance);
    };
    auto right = [&](Vec2 t) {
      return RunError(pts + split, guide + split, task.last - split + 1, t, task.t2, dTolerance);
    };
    Vec2 t = TuneTangent({left, right}, estimate, dTolerance);
    tasks.push_back({split, task.last, t, task.t2});
    tasks.push_back({task.first, split, task.t1, t * -1.0});
  }
  // Splits are chosen one at a time, so two neighbours may together fit one
  // cubic after all; each piece is tried against the merged piece before it.
  std::vector<Done> merged;
  for (const Done& d : done) {
    if (!merged.empty()) {
      Done& back = merged.back();
      RunFit fit;
      int len = d.task.last - back.task.first + 1;
      if (FitOne(pts + back.task.first, guide + back.task.first, len, back.task.t1, d.task.t2, tol2, u,
                 fit)) {
        back.task.last = d.task.last;
        back.task.t2 = d.task.t2;
        back.cubic = fit.cubic;
        continue;
      }
    }
    merged.push_back(d);
  }
  for (const Done& d : merged) out.push_back(d.cubic);
}

}  // namespace pictrace::curve
