// Cubic Bezier fitting of outline point chains.
//
// A chain is a sequence of points; when its last point equals its first it is
// closed, and the fitted curve then closes exactly (the last segment ends on
// the very coordinates the first one starts from) and is smooth across the
// closing point unless that point is a corner.
//
// The result is an owned array of ten doubles per segment:
//   [0,1] start  [2,3] first control  [4,5] second control  [6,7] end
//   [8]   1.0 when the curve may turn sharply at the segment's start (a corner,
//         or the first point of an open chain), else 0.0
//   [9]   the same for the segment's end
// Consecutive segments share their join point exactly. At a join whose flags
// are 0.0 the two control points next to it lie on opposite sides of it on one
// line, so the curve keeps its tangent there.
#pragma once

namespace pictrace {

// What a chain is made of; the flag argument of the fitters.
enum BezierChainKind {
  // Raw outline chain of unit steps on the pixel-corner grid (a staircase).
  // The fit smooths the staircase, keeps true corners, and every chain point
  // lies within the tolerance of the curve.
  kChainRawOutline = 0,
  // Already simplified vertices, e.g. a host's straight lines. The whole
  // polyline path stays within the tolerance of the curve; sharp vertices stay
  // corners. Any flag other than 0 or 1 is read as 0.
  kChainVertices = 1,
};

// Fits the chain pPoints[0 .. nLast] (x, y pairs, 2 * (nLast + 1) ints; nLast
// is the point count less one). dTolerance is the largest distance allowed
// between the chain and the curve, in chain units; a value that is not a
// positive finite number means 1.0. Returns the segments (new double[10 * n],
// free with delete[]) and sets nSegments to n. A chain with fewer than two
// distinct points, a null chain or a negative nLast gives n = 0 and a null
// array.
double* FitBezierChain(const int* pPoints, int nLast, int nFlag, double dTolerance, int& nSegments);

// The same for a chain of double coordinates (used where points are not on
// the integer grid, such as a host's polygons in output units). Points with
// a coordinate that is not finite are left out.
double* FitBezierChainD(const double* pPoints, int nLast, int nFlag, double dTolerance,
                        int& nSegments);

}  // namespace pictrace
