// Fitting of the borders of a tiling: runs of a raw staircase outline that
// two neighbouring regions share. Both regions take the same cubics, so the
// fit must not depend on the direction a border is walked in, nor on where a
// closed border is entered.
#pragma once

#include <vector>

#include "curve/BezierMath.h"

namespace pictrace::curve {

// Turns a border's run into the one form its two walkers agree on: an open
// run from its smaller end (a run that ends where it starts: towards its
// smaller second point), a ring (without its repeated first point) from its
// smallest point towards the smaller of that point's neighbours. True when
// the run was walked backwards to get there.
bool CanonicalBorder(std::vector<Vec2>& run, bool bClosed);

// Fits an open border run[0 .. n-1] (unit steps on the pixel-corner grid)
// from its first point to its last, both kept exactly; the two ends may be
// the same point. Every run point lies within dTolerance of the curve. The
// fit of the reversed run is this fit reversed.
std::vector<Cubic> FitOpenBorder(const std::vector<Vec2>& run, double dTolerance);

// Fits a closed border (the run without repeating its first point), walked
// in the run's direction. The curve starts at a point chosen from the ring
// alone, so a rotated or reversed run gives the same curve.
std::vector<Cubic> FitClosedBorder(const std::vector<Vec2>& run, double dTolerance);

// The run as straight lines, one per maximal straight stretch: the border
// exactly as traced. Closed runs start at a point where the run turns.
std::vector<Cubic> StraightBorder(const std::vector<Vec2>& run, bool bClosed);

// The same curve walked the other way.
std::vector<Cubic> ReversedCurve(const std::vector<Cubic>& curve);

}  // namespace pictrace::curve
