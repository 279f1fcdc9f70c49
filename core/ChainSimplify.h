// Simplification of point chains on the pixel-corner grid, shared by the
// outline and the thin-line stages: repeated and collinear points go, and a
// chain is reduced to the points a tolerance band needs.
#pragma once

#include "core/OutlineRecords.h"

namespace pictrace {

// Drops points that repeat the one kept before them and points passed
// straight through in the same direction; the last point always stays.
int RemoveExtraPoints(sPoint* pPoints, int& nPoints);

// Walks the chain keeping a point only where the chord from the last kept
// point would leave a band of fTolerance around the skipped points (or a
// segment would pass 1000 pixels); in place, the ends kept.
int SmoothChain(sPoint* pPoints, int& nPoints, float fTolerance);

}  // namespace pictrace
