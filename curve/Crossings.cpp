// Crossing search: every curve is flattened into short pieces, the pieces are
// sorted into grid cells, and pieces sharing a cell are tested pairwise.
#include "curve/Crossings.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace pictrace::curve {

namespace {

constexpr double kFlatness = 0.02;
// Pieces nearer than this count as meeting: the polylines may each be off
// their cubics by the flatness, so cubics that touch come this near.
constexpr double kClearance = 2.5 * kFlatness;
constexpr int kMaxPiecesPerCubic = 256;
constexpr int kLoopPieces = 64;
// Cells hold a few pixels of outline each.
constexpr double kCellSize = 4.0;

// Pieces that come near each other this near an end of either curve, or
// this near each other along one curve, are judged by crossing alone: there
// curves meet or bend on purpose, and short pieces lie within the
// clearance of each other.
constexpr double kEndZone = 0.5;
constexpr double kAlongZone = 1.0;

struct Piece {
  Vec2 a, b;
  int curve;
  double along;  // length of the curve before the piece
};

// A curve's two end points.
struct Ends {
  Vec2 first, last;
};

double Orient(Vec2 a, Vec2 b, Vec2 c) { return Cross(b - a, c - a); }

// Pieces meeting only at a shared end point are fine unless they overlap
// along a line (which also catches a curve folding back on itself between
// two of its own pieces); anything else that crosses or comes within the
// clearance is a crossing.
bool Meet(const Piece& p, const Piece& q, const std::vector<Ends>& ends) {
  Vec2 shared, pOther, qOther;
  bool share = true;
  if (p.a == q.a) shared = p.a, pOther = p.b, qOther = q.b;
  else if (p.a == q.b) shared = p.a, pOther = p.b, qOther = q.a;
  else if (p.b == q.a) shared = p.b, pOther = p.a, qOther = q.b;
  else if (p.b == q.b) shared = p.b, pOther = p.a, qOther = q.a;
  else share = false;
  if (share) {
    if (pOther == qOther) return true;
    return Orient(shared, pOther, qOther) == 0.0 && Dot(pOther - shared, qOther - shared) > 0.0;
  }
  if (std::min(p.a.x, p.b.x) > std::max(q.a.x, q.b.x) + kClearance ||
      std::min(q.a.x, q.b.x) > std::max(p.a.x, p.b.x) + kClearance ||
      std::min(p.a.y, p.b.y) > std::max(q.a.y, q.b.y) + kClearance ||
      std::min(q.a.y, q.b.y) > std::max(p.a.y, p.b.y) + kClearance)
    return false;
  const double o1 = Orient(p.a, p.b, q.a), o2 = Orient(p.a, p.b, q.b);
  const double o3 = Orient(q.a, q.b, p.a), o4 = Orient(q.a, q.b, p.b);
  if (((o1 > 0 && o2 < 0) || (o1 < 0 && o2 > 0)) && ((o3 > 0 && o4 < 0) || (o3 < 0 && o4 > 0)))
    return true;
  // Nearest approach: an end of one piece against the other piece.
  const Vec2 probes[4] = {q.a, q.b, p.a, p.b};
  const Piece* against[4] = {&p, &p, &q, &q};
  double best = -1.0;
  Vec2 at;
  for (int k = 0; k < 4; k++) {
    double d = DistanceToSegment(probes[k], against[k]->a, against[k]->b);
    if (best < 0.0 || d < best) best = d, at = probes[k];
  }
  if (best >= kClearance) return false;
  if (p.curve == q.curve && std::fabs(p.along - q.along) < kAlongZone) return false;
  for (int c : {p.curve, q.curve})
    if (Distance(at, ends[c].first) < kEndZone || Distance(at, ends[c].last) < kEndZone) return false;
  return true;
}

}  // namespace

void FlattenCubic(const Cubic& c, double dFlatness, std::vector<Vec2>& out) {
  // A uniform step of 1/n keeps the polyline within |B''| / (8 n^2) of the
  // cubic, and |B''| is at most 6 times the larger second difference.
  Vec2 d1 = c.p[0] - c.p[1] * 2.0 + c.p[2], d2 = c.p[1] - c.p[2] * 2.0 + c.p[3];
  double bend = 6.0 * std::max(Length(d1), Length(d2));
  int n = 1;
  if (bend > 0.0) {
    double steps = std::ceil(std::sqrt(bend / (8.0 * dFlatness)));
    n = steps >= kMaxPiecesPerCubic ? kMaxPiecesPerCubic : std::max(1, static_cast<int>(steps));
  }
  const size_t first = out.size();
  for (int pass = 0; pass < 2; pass++) {
    out.resize(first);
    for (int k = 1; k < n; k++) out.push_back(CubicPoint(c, static_cast<double>(k) / n));
    out.push_back(c.p[3]);
    // A turn of more than a right angle inside one cubic may hide a small
    // loop or cusp that so few pieces would pass over: look closer.
    bool sharp = false;
    Vec2 prev = c.p[0];
    for (size_t k = first; k + 1 < out.size() && !sharp; k++) {
      sharp = Dot(out[k] - prev, out[k + 1] - out[k]) < 0.0;
      prev = out[k];
    }
    if (!sharp || n >= kLoopPieces) break;
    n = kLoopPieces;
  }
}

std::vector<Crossing> CrossingCurves(const std::vector<std::vector<Cubic>>& curves,
                                     const std::vector<char>& suspects) {
  std::vector<Crossing> crossing;
  std::vector<Piece> pieces;
  std::vector<Ends> ends(curves.size());
  std::vector<Vec2> line;
  for (size_t i = 0; i < curves.size(); i++) {
    if (curves[i].empty()) continue;
    line.assign(1, curves[i].front().p[0]);
    for (const Cubic& c : curves[i]) FlattenCubic(c, kFlatness, line);
    ends[i] = {line.front(), line.back()};
    double along = 0.0;
    for (size_t k = 1; k < line.size(); k++) {
      if (line[k] == line[k - 1]) continue;
      pieces.push_back({line[k - 1], line[k], static_cast<int>(i), along});
      along += Distance(line[k - 1], line[k]);
    }
  }
  if (pieces.empty()) return crossing;

  double x0 = pieces[0].a.x, y0 = pieces[0].a.y, x1 = x0, y1 = y0;
  for (const Piece& p : pieces)
    for (Vec2 v : {p.a, p.b}) {
      x0 = std::min(x0, v.x), y0 = std::min(y0, v.y);
      x1 = std::max(x1, v.x), y1 = std::max(y1, v.y);
    }
  const int64_t cols = static_cast<int64_t>((x1 - x0) / kCellSize) + 1;
  auto cellRange = [&](const Piece& p, int64_t& c0, int64_t& c1, int64_t& r0, int64_t& r1) {
    c0 = static_cast<int64_t>((std::min(p.a.x, p.b.x) - x0) / kCellSize);
    c1 = static_cast<int64_t>((std::max(p.a.x, p.b.x) - x0) / kCellSize);
    r0 = static_cast<int64_t>((std::min(p.a.y, p.b.y) - y0) / kCellSize);
    r1 = static_cast<int64_t>((std::max(p.a.y, p.b.y) - y0) / kCellSize);
  };
  // Cell lists in one array: count, offsets, fill.
  std::vector<std::pair<int64_t, int>> entries;
  entries.reserve(pieces.size() + pieces.size() / 4);
  for (size_t k = 0; k < pieces.size(); k++) {
    int64_t c0, c1, r0, r1;
    cellRange(pieces[k], c0, c1, r0, r1);
    for (int64_t r = r0; r <= r1; r++)
      for (int64_t c = c0; c <= c1; c++) entries.push_back({r * cols + c, static_cast<int>(k)});
  }
  std::sort(entries.begin(), entries.end());
  const bool all = suspects.empty();
  for (size_t s = 0; s < entries.size();) {
    size_t e = s;
    while (e < entries.size() && entries[e].first == entries[s].first) e++;
    for (size_t i = s; i < e; i++) {
      const Piece& p = pieces[entries[i].second];
      for (size_t j = i + 1; j < e; j++) {
        const Piece& q = pieces[entries[j].second];
        if (!all && !suspects[p.curve] && !suspects[q.curve]) continue;
        if (!Meet(p, q, ends)) continue;
        Vec2 at = (p.a + p.b + q.a + q.b) * 0.25;
        crossing.push_back({p.curve, at});
        crossing.push_back({q.curve, at});
      }
    }
    s = e;
  }
  return crossing;
}

}  // namespace pictrace::curve
