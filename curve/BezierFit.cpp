// The chain fitter's entries: read the chain, prepare it for its kind, fit
// it and write the segments out.
#include "curve/BezierFit.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "curve/FitStages.h"

namespace pictrace {

namespace {

using curve::Vec2;

double* WriteSegments(const std::vector<curve::FittedPiece>& pieces, int& nSegments) {
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
  std::vector<curve::FittedPiece> pieces;
  if (pts.size() < 2) return nullptr;
  if (pts.size() == 2) {
    // Nothing to bend: one straight segment, or there and back when closed.
    Vec2 ends[2][2] = {{pts[0], pts[1]}, {pts[1], pts[0]}};
    for (int k = 0; k < (closed ? 2 : 1); k++) {
      pieces.push_back({curve::StraightCubic(ends[k][0], ends[k][1]), true, true});
    }
    return WriteSegments(pieces, nSegments);
  }
  curve::PreparedChain prep;
  if (nFlag == kChainVertices)
    curve::PrepareVertexChain(pts, closed, tol, prep);
  else
    curve::PrepareRawChain(std::move(pts), closed, tol, prep);
  curve::FitPrepared(prep, pieces);
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
