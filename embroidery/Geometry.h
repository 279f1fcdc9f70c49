// Plane geometry the stitch builders share: vectors, polyline lengths and
// resampling, and queries against a shape's outlines (ray hits, distance).
#pragma once

#include <cmath>

#include "PictraceEmbroidery.h"

namespace pictrace {
namespace embroidery {

inline Point Add(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point Sub(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point Scale(Point a, double s) { return {a.x * s, a.y * s}; }
inline double Dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
inline double Cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }
inline double Norm(Point a) { return std::sqrt(Dot(a, a)); }
inline double Dist(Point a, Point b) { return Norm(Sub(a, b)); }
inline Point Unit(Point a) {
  double n = Norm(a);
  return n > 0.0 ? Scale(a, 1.0 / n) : Point{1.0, 0.0};
}
inline Point Left(Point a) { return {-a.y, a.x}; }

double PathLength(const Path& path);

// Points every step or closer along the path, its ends and corners kept.
Path Resample(const Path& path, double step);

// Distance along the ray from origin in direction dir (a unit vector) to the
// nearest crossing of the shape's outlines; a negative value when none.
double RayHit(const Shape& shape, Point origin, Point dir);

// Distance from p to the nearest outline of the shape.
double DistanceToOutline(const Shape& shape, Point p);

// How many times segment ab crosses the path.
int CrossingCount(const Path& path, Point a, Point b);

// Even-odd inside test against all rings.
bool Inside(const Shape& shape, Point p);

}  // namespace embroidery
}  // namespace pictrace
