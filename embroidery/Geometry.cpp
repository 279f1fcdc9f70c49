// Outline queries and polyline helpers for the stitch builders, and the
// flattening of a host region's lines into rings.
#include "embroidery/Geometry.h"

#include <algorithm>

namespace pictrace {
namespace embroidery {

namespace {

Point Of(const CPTPoint& p) { return {p.x, p.y}; }

Point CubicAt(const Point* c, double t) {
  const double u = 1.0 - t;
  const double a = u * u * u, b = 3.0 * u * u * t, d = 3.0 * u * t * t, e = t * t * t;
  return {a * c[0].x + b * c[1].x + d * c[2].x + e * c[3].x, a * c[0].y + b * c[1].y + d * c[2].y + e * c[3].y};
}

// Signed area of a ring (shoelace).
double RingArea(const Ring& r) {
  double a = 0.0;
  for (size_t i = 0, j = r.size() - 1; i < r.size(); j = i++) a += Cross(r[j], r[i]);
  return a / 2.0;
}

// Squared distance from p to segment ab.
double SegmentDistance2(Point p, Point a, Point b) {
  Point ab = Sub(b, a);
  double len2 = Dot(ab, ab);
  double t = len2 > 0.0 ? std::clamp(Dot(Sub(p, a), ab) / len2, 0.0, 1.0) : 0.0;
  Point q = Add(a, Scale(ab, t));
  return Dot(Sub(p, q), Sub(p, q));
}

}  // namespace

Shape FlattenRegion(const CPTRegion& region, double dTolerance) {
  Shape shape;
  for (int k = 0; k < region.m_nPolygons; k++) {
    const CPTPolygon& poly = region.m_pPolygons[k];
    Ring ring;
    for (int i = 0; i < poly.m_nLines; i++) {
      const CPTLine& line = poly.m_pLines[i];
      ring.push_back(Of(line.m_ptStart));
      if (line.m_nType != 1) continue;
      Point c[4] = {Of(line.m_ptStart), Of(line.m_ptCtrl1), Of(line.m_ptCtrl2), Of(line.m_ptEnd)};
      // Evaluated from the smaller end, so that the neighbour walking the
      // shared cubic backwards gets the same points in reverse.
      const bool back = c[3].x < c[0].x || (c[3].x == c[0].x && c[3].y < c[0].y);
      if (back) std::swap(c[0], c[3]), std::swap(c[1], c[2]);
      // The control polygon's deviation bounds the curve's: n pieces keep
      // the chord within tolerance (a piece's error falls as 1/n^2).
      double dev = std::max(std::sqrt(SegmentDistance2(c[1], c[0], c[3])),
                            std::sqrt(SegmentDistance2(c[2], c[0], c[3])));
      int n = std::clamp(static_cast<int>(std::ceil(std::sqrt(dev / std::max(dTolerance, 1e-3)))), 1, 64);
      for (int s = 1; s < n; s++) ring.push_back(CubicAt(c, static_cast<double>(back ? n - s : s) / n));
    }
    if (ring.size() >= 3) shape.push_back(ring);
  }
  return shape;
}

double ShapeArea(const Shape& shape) {
  double a = 0.0;
  for (size_t k = 0; k < shape.size(); k++) a += (k == 0 ? 1.0 : -1.0) * std::fabs(RingArea(shape[k]));
  return a;
}

double ShapePerimeter(const Shape& shape) {
  double p = 0.0;
  for (const Ring& r : shape)
    for (size_t i = 0, j = r.size() - 1; i < r.size(); j = i++) p += Dist(r[j], r[i]);
  return p;
}

double PathLength(const Path& path) {
  double len = 0.0;
  for (size_t i = 1; i < path.size(); i++) len += Dist(path[i - 1], path[i]);
  return len;
}

Path Resample(const Path& path, double step) {
  Path out;
  if (path.empty()) return out;
  out.push_back(path[0]);
  for (size_t i = 1; i < path.size(); i++) {
    double len = Dist(path[i - 1], path[i]);
    int n = std::max(1, static_cast<int>(std::ceil(len / step)));
    for (int s = 1; s <= n; s++) out.push_back(Add(path[i - 1], Scale(Sub(path[i], path[i - 1]), double(s) / n)));
  }
  return out;
}

double RayHit(const Shape& shape, Point o, Point d) {
  double best = -1.0;
  for (const Ring& r : shape)
    for (size_t i = 0, j = r.size() - 1; i < r.size(); j = i++) {
      Point a = r[j], e = Sub(r[i], r[j]);
      double den = Cross(d, e);
      if (den == 0.0) continue;
      Point ao = Sub(a, o);
      double t = Cross(ao, e) / den;  // along the ray
      double u = Cross(ao, d) / den;  // along the edge
      if (t > 1e-9 && u >= 0.0 && u <= 1.0 && (best < 0.0 || t < best)) best = t;
    }
  return best;
}

double DistanceToOutline(const Shape& shape, Point p) {
  double best = -1.0;
  for (const Ring& r : shape)
    for (size_t i = 0, j = r.size() - 1; i < r.size(); j = i++) {
      double d2 = SegmentDistance2(p, r[j], r[i]);
      if (best < 0.0 || d2 < best) best = d2;
    }
  return best < 0.0 ? 0.0 : std::sqrt(best);
}

int CrossingCount(const Path& path, Point a, Point b) {
  int count = 0;
  const Point d = Sub(b, a);
  for (size_t i = 1; i < path.size(); i++) {
    const Point e = Sub(path[i], path[i - 1]), ap = Sub(path[i - 1], a);
    const double den = Cross(d, e);
    if (den == 0.0) continue;
    const double t = Cross(ap, e) / den, u = Cross(ap, d) / den;
    // A crossing at a vertex counts once, on the segment it starts.
    if (t >= 0.0 && t <= 1.0 && u >= 0.0 && (u < 1.0 || i + 1 == path.size())) count++;
  }
  return count;
}

bool Inside(const Shape& shape, Point p) {
  bool in = false;
  for (const Ring& r : shape)
    for (size_t i = 0, j = r.size() - 1; i < r.size(); j = i++)
      if ((r[i].y > p.y) != (r[j].y > p.y) &&
          p.x < (r[j].x - r[i].x) * (p.y - r[i].y) / (r[j].y - r[i].y) + r[i].x)
        in = !in;
  return in;
}

}  // namespace embroidery
}  // namespace pictrace
