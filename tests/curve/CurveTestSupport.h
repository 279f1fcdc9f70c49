// Helpers of the curve tests: staircase outlines of synthetic shapes, fitting
// into a vector, and measurements of a fitted curve.
#pragma once

#include <functional>
#include <vector>

namespace curvetest {

struct Pt {
  double x;
  double y;
};

// One fitted segment: its four points and the two corner flags.
struct Seg {
  Pt p[4];
  bool cornerStart;
  bool cornerEnd;
};

// The outer crack boundary of the 4-connected shape that holds the first
// inside pixel in row order, on the pixel-corner grid (y downward), closed:
// the first vertex is repeated at the end. Pixels outside w x h are outside.
std::vector<int> TraceOutline(int w, int h, const std::function<bool(int x, int y)>& inside);

// A disc of radius r centred on (c, c) in a (2c) x (2c) grid.
std::vector<int> DiscOutline(double r, int c);

// An open staircase from (0, 0) towards (dx, dy): one unit step at a time,
// always the step that keeps closest to the straight line.
std::vector<int> StaircaseLine(int dx, int dy);

// Runs the fitter on an int chain of (x, y) pairs.
std::vector<Seg> Fit(const std::vector<int>& chain, int nFlag, double dTolerance);
std::vector<Seg> FitD(const std::vector<double>& chain, int nFlag, double dTolerance);

// Distance from p to the nearest point of the curve (never less than the
// true distance, and equal to it up to rounding).
double DistanceToCurve(const std::vector<Seg>& segs, Pt p);
// Largest distance from the chain's points (x, y pairs) to the curve.
double MaxChainDistance(const std::vector<Seg>& segs, const std::vector<int>& chain);
// Largest distance from the chain's polyline path to the curve.
double MaxPathDistance(const std::vector<Seg>& segs, const std::vector<double>& chain);

// Sine of the angle between the tangent leaving segment i at its end and the
// tangent entering segment (i + 1) % n at its start; negative cosine gives 1.
double JoinKink(const std::vector<Seg>& segs, size_t i);

// Expects two fits to be the same to the last bit, point by point.
void ExpectSameSegments(const std::vector<Seg>& a, const std::vector<Seg>& b);

// Largest distance of a segment's control points from the line through its
// start and end.
double ControlOffLine(const Seg& s);

}  // namespace curvetest
