// Crossing search over many curves at once: which of them cross another
// curve or themselves. Curves may meet only at their end points (the
// junctions of a tiling), and even there they must not run along each other.
#pragma once

#include <vector>

#include "curve/BezierMath.h"

namespace pictrace::curve {

// A place where a curve crosses or touches a curve (itself or another).
struct Crossing {
  int curve;
  Vec2 at;
};

// Every place where a curve crosses or touches another curve, or itself,
// anywhere but at an end point the two have in common; each meeting is
// listed for both curves. Only pairs with at least one curve flagged in
// `suspects` are looked at (all pairs when it is empty). The curves are
// compared as fine polylines (within 0.02 of the cubics), found through a
// grid of cells so that only near pieces meet.
std::vector<Crossing> CrossingCurves(const std::vector<std::vector<Cubic>>& curves,
                                     const std::vector<char>& suspects);

// The polyline of a cubic within dFlatness of it, without its start point.
void FlattenCubic(const Cubic& c, double dFlatness, std::vector<Vec2>& out);

}  // namespace pictrace::curve
