// One-sided underlap between neighbouring fills, with Clipper doing every
// offset, intersection and union.
//
// For a shape A and a neighbour B stitched after it, the piece A takes is
//   offset(A, U)  n  B  n  offset(offset(A, e) n offset(B, e), U)
// The first two terms keep what lies in B within U of A, so the piece never
// leaves B: earlier neighbours, the frame and the design's outer edge stay
// untouched, and the union of all shapes stays the same. The last term is
// the shared border (the thin band where A and B come within 2e of each
// other) grown by U: it drops the parts of B that are near A only across a
// third region thinner than U. Shared borders of the tiling output are the
// same points in both neighbours, so e only absorbs rounding.
#include <algorithm>
#include <polyclipping/clipper.hpp>

#include "embroidery/Geometry.h"

namespace pictrace {
namespace embroidery {

namespace {

using ClipperLib::Paths;

constexpr double kScale = 1000.0;  // integer coordinates in thousandths of a unit
constexpr double kBorderBand = 0.05;

Paths ToPaths(const Shape& shape) {
  Paths raw;
  for (const Ring& r : shape) {
    ClipperLib::Path p;
    for (const Point& q : r)
      p.emplace_back(static_cast<ClipperLib::cInt>(std::llround(q.x * kScale)),
                     static_cast<ClipperLib::cInt>(std::llround(q.y * kScale)));
    raw.push_back(p);
  }
  // Orientation as the offsetter wants it: outer rings one way, holes the other.
  Paths out;
  ClipperLib::SimplifyPolygons(raw, out, ClipperLib::pftEvenOdd);
  return out;
}

Paths Offset(const Paths& in, double by) {
  ClipperLib::ClipperOffset off(2.0, 0.01 * kScale);
  off.AddPaths(in, ClipperLib::jtRound, ClipperLib::etClosedPolygon);
  Paths out;
  off.Execute(out, by * kScale);
  return out;
}

Paths Clip(const Paths& a, const Paths& b, ClipperLib::ClipType type) {
  ClipperLib::Clipper c;
  c.AddPaths(a, ClipperLib::ptSubject, true);
  c.AddPaths(b, ClipperLib::ptClip, true);
  Paths out;
  c.Execute(type, out, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
  return out;
}

double Area(const Paths& p) {
  double a = 0.0;
  for (const auto& path : p) a += ClipperLib::Area(path);
  return a / (kScale * kScale);
}

Ring ToRing(const ClipperLib::Path& p) {
  Ring r;
  for (const auto& q : p) r.push_back({q.X / kScale, q.Y / kScale});
  return r;
}

std::vector<Shape> ToShapes(const Paths& p) {
  ClipperLib::Clipper c;
  c.AddPaths(p, ClipperLib::ptSubject, true);
  ClipperLib::PolyTree tree;
  c.Execute(ClipperLib::ctUnion, tree, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
  std::vector<Shape> shapes;
  std::vector<const ClipperLib::PolyNode*> outers(tree.Childs.begin(), tree.Childs.end());
  while (!outers.empty()) {
    const ClipperLib::PolyNode* n = outers.back();
    outers.pop_back();
    Shape s{ToRing(n->Contour)};
    for (const ClipperLib::PolyNode* hole : n->Childs) {
      s.push_back(ToRing(hole->Contour));
      outers.insert(outers.end(), hole->Childs.begin(), hole->Childs.end());  // islands in holes
    }
    shapes.push_back(s);
  }
  return shapes;
}

struct Box {
  double x0, y0, x1, y1;
};

Box BoxOf(const Shape& s) {
  Box b{1e300, 1e300, -1e300, -1e300};
  for (const Ring& r : s)
    for (const Point& p : r) {
      b.x0 = std::min(b.x0, p.x), b.y0 = std::min(b.y0, p.y);
      b.x1 = std::max(b.x1, p.x), b.y1 = std::max(b.y1, p.y);
    }
  return b;
}

}  // namespace

std::vector<std::vector<Shape>> Underlap(const std::vector<Shape>& shapes, const std::vector<int>& rank,
                                         double dGrow, std::vector<double>* grownArea) {
  const size_t n = shapes.size();
  std::vector<Paths> paths(n);
  std::vector<Box> boxes(n);
  for (size_t i = 0; i < n; i++) paths[i] = ToPaths(shapes[i]), boxes[i] = BoxOf(shapes[i]);
  if (grownArea) grownArea->assign(n, 0.0);
  // Every shape's thin band, once: each pair of neighbours meets in theirs.
  std::vector<Paths> thin(dGrow > 0.0 ? n : 0);
  for (size_t i = 0; i < thin.size(); i++) thin[i] = Offset(paths[i], kBorderBand);
  std::vector<std::vector<Shape>> out(n);
  for (size_t a = 0; a < n; a++) {
    Paths grown = paths[a];
    if (dGrow > 0.0) {
      Paths bigA;  // made when a first neighbour is met
      for (size_t b = 0; b < n; b++) {
        if (b == a || rank[b] <= rank[a]) continue;
        const double m = dGrow + 2 * kBorderBand;
        if (boxes[b].x0 > boxes[a].x1 + m || boxes[a].x0 > boxes[b].x1 + m || boxes[b].y0 > boxes[a].y1 + m ||
            boxes[a].y0 > boxes[b].y1 + m)
          continue;
        Paths band = Clip(thin[a], thin[b], ClipperLib::ctIntersection);
        if (band.empty()) continue;
        if (bigA.empty()) bigA = Offset(paths[a], dGrow);
        Paths piece = Clip(Clip(bigA, paths[b], ClipperLib::ctIntersection), Offset(band, dGrow),
                           ClipperLib::ctIntersection);
        if (!piece.empty()) grown = Clip(grown, piece, ClipperLib::ctUnion);
      }
      if (grownArea) (*grownArea)[a] = Area(grown) - Area(paths[a]);
    }
    out[a] = ToShapes(grown);
  }
  return out;
}

}  // namespace embroidery
}  // namespace pictrace
