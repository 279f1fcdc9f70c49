// Plane vectors and cubic Bezier evaluation for the fitter.
#pragma once

#include <cmath>

namespace pictrace::curve {

struct Vec2 {
  double x = 0.0;
  double y = 0.0;
};

inline Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
inline Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
inline Vec2 operator*(Vec2 a, double s) { return {a.x * s, a.y * s}; }
inline Vec2 operator*(double s, Vec2 a) { return {a.x * s, a.y * s}; }
inline bool operator==(Vec2 a, Vec2 b) { return a.x == b.x && a.y == b.y; }
inline bool operator!=(Vec2 a, Vec2 b) { return !(a == b); }
inline double Dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
inline double Cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }
inline double Length(Vec2 a) { return std::sqrt(Dot(a, a)); }
inline double Distance(Vec2 a, Vec2 b) { return Length(a - b); }

// Unit vector along a, or (0, 0) when a has no length.
inline Vec2 Normalized(Vec2 a) {
  double len = Length(a);
  return len > 0.0 ? a * (1.0 / len) : Vec2{};
}

// Distance from p to the segment a-b (to a when the segment has no length).
inline double DistanceToSegment(Vec2 p, Vec2 a, Vec2 b) {
  Vec2 ab = b - a;
  double len2 = Dot(ab, ab);
  if (len2 <= 0.0) return Distance(p, a);
  double t = Dot(p - a, ab) / len2;
  if (t <= 0.0) return Distance(p, a);
  if (t >= 1.0) return Distance(p, b);
  return Distance(p, a + ab * t);
}

// One cubic segment: start, first control, second control, end.
struct Cubic {
  Vec2 p[4];
};

// The straight line from a to b as a cubic, control points at its thirds.
inline Cubic StraightCubic(Vec2 a, Vec2 b) {
  Cubic c;
  c.p[0] = a;
  c.p[1] = a + (b - a) * (1.0 / 3.0);
  c.p[2] = a + (b - a) * (2.0 / 3.0);
  c.p[3] = b;
  return c;
}

inline Vec2 CubicPoint(const Cubic& c, double t) {
  double s = 1.0 - t;
  double b0 = s * s * s, b1 = 3.0 * s * s * t, b2 = 3.0 * s * t * t, b3 = t * t * t;
  return c.p[0] * b0 + c.p[1] * b1 + c.p[2] * b2 + c.p[3] * b3;
}

inline Vec2 CubicDerivative(const Cubic& c, double t) {
  double s = 1.0 - t;
  return (c.p[1] - c.p[0]) * (3.0 * s * s) + (c.p[2] - c.p[1]) * (6.0 * s * t) +
         (c.p[3] - c.p[2]) * (3.0 * t * t);
}

inline Vec2 CubicSecondDerivative(const Cubic& c, double t) {
  return (c.p[2] - c.p[1] * 2.0 + c.p[0]) * (6.0 * (1.0 - t)) +
         (c.p[3] - c.p[2] * 2.0 + c.p[1]) * (6.0 * t);
}

}  // namespace pictrace::curve
