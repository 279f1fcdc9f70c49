// The stages of the chain fitter, shared by its source files: corner
// detection on a simplified polygon of the chain, tangent estimates, and the
// least-squares fit of one run of points between two fixed ends.
#pragma once

#include <functional>
#include <vector>

#include "curve/BezierMath.h"
#include "curve/FitTuning.h"

namespace pictrace::curve {

// A chain made ready for the fit: the points the curve must follow and
// which of them are corners.
struct PreparedChain {
  std::vector<Vec2> pts;     // closed chains: without the repeated first point
  std::vector<int> corners;  // ascending indices into pts
  bool closed = false;
  double tolerance = 1.0;  // the limit for the fit at the points
  int window = 4;          // base tangent window, in points
  bool smooth = false;     // guide the fit by the smoothed chain
};

// Drops points that repeat their predecessor; reports whether the chain is
// closed (last point equal to the first) and then drops the closing repeat.
std::vector<Vec2> DistinctChain(const std::vector<Vec2>& in, bool& closed);
// A raw staircase outline of at least three distinct points: the points are
// the chain itself, corners come from its simplified polygon.
void PrepareRawChain(std::vector<Vec2> pts, bool closed, double tol, PreparedChain& prep);
// A chain of at least three distinct vertices: corners are its sharp
// vertices, the points are samples along its edges.
void PrepareVertexChain(const std::vector<Vec2>& vertices, bool closed, double tol,
                        PreparedChain& prep);

// Vertices of a Douglas-Peucker simplification of pts, as ascending indices:
// every point lies within dTolerance of the polygon. An open chain keeps both
// ends; a closed chain (pts without the repeated first point) starts at 0.
std::vector<int> SimplifyChain(const std::vector<Vec2>& pts, bool bClosed, double dTolerance);

// The chain points where the polygon (vertex indices into pts) turns
// sharply enough to be a corner: seen over arms that reach past edges
// shorter than dShortEdge on each side, the turn is steeper than about 55
// degrees and the vertex lies at least dMinSagitta from the line joining the
// arms' midpoints (a short, blunt bend of a small round shape is no corner).
// Of candidates within one another's arms the sharpest wins; it is then
// moved to the nearby chain point that stands out most. The ends of an open
// polygon are never returned.
std::vector<int> SelectCorners(const std::vector<Vec2>& pts, const std::vector<int>& vertices,
                               bool bClosed, double dMinSagitta, double dShortEdge);

// Unit tangent at pts[i] along the direction of the run, estimated over up to
// nWindow points on each side within [nFirst, nLast].
Vec2 CentreTangent(const Vec2* pts, int nFirst, int nLast, int i, int nWindow);
// Unit tangent at the start of the run pts[0 .. n-1], pointing into it, and
// at its end, pointing back into it.
Vec2 StartTangent(const Vec2* pts, int n, int nWindow);
Vec2 EndTangent(const Vec2* pts, int n, int nWindow);

// The run smoothed for guiding the fit: each point moves to the value of a
// least-squares parabola through up to nHalf neighbours on each side, over
// a window that shrinks towards the run's ends so that the ends stay where
// they are (closed runs wrap round instead). A point never moves farther
// than dMaxShift. Staircase teeth average out to the outline they follow.
std::vector<Vec2> SmoothRun(const std::vector<Vec2>& pts, bool bClosed, int nHalf, double dMaxShift);

// True when every point of the run lies within dTolerance of the chord from
// its first to its last point.
bool RunIsStraight(const Vec2* pts, int n, double dTolerance);

// Largest distance of the run's points from the single cubic fitted to it
// with the given end tangents (see FitRun); 0 for fewer than three points.
double RunError(const Vec2* pts, const Vec2* guide, int n, Vec2 t1, Vec2 t2, double dTolerance);

// Turns the unit tangent estimate within about 19 degrees to minimise the
// largest error of the sides (each side's error for a tangent t) that come
// near the tolerance with the estimate; returns as soon as they all fit.
Vec2 TuneTangent(const std::vector<std::function<double(Vec2)>>& sides, Vec2 estimate,
                 double dTolerance);

// Fits the run pts[0 .. n-1] (n >= 2) with cubics that keep every point
// within dTolerance (measured at its parameter, which is never less than its
// true distance). guide holds the same run smoothed (or pts itself): the
// cubics join on guide points, parameters and tangents come from it. The
// first cubic leaves guide[0] along t1, the last arrives at guide[n-1] along
// -t2 (t2 points back into the run). A run that misses the tolerance is split
// at its worst point, with one tangent for both sides of the split; the
// cubics are appended to out in order.
void FitRun(const Vec2* pts, const Vec2* guide, int n, Vec2 t1, Vec2 t2, double dTolerance,
            int nWindow, std::vector<Cubic>& out);

// One fitted cubic and whether the curve may turn sharply at its ends.
struct FittedPiece {
  Cubic cubic;
  bool cornerStart;
  bool cornerEnd;
};

// Fits a prepared chain, appending the cubics in chain order. An open chain
// runs from its first point to its last; a closed one starts at its first
// corner, or at point 0 when it has none.
void FitPrepared(const PreparedChain& prep, std::vector<FittedPiece>& out);

}  // namespace pictrace::curve
