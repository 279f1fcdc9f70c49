// Satin columns from a strip's centre lines and outline.
//
// Chains meeting at an end form a graph. At a junction the two chains that
// continue each other most straightly (turning by at most 45 degrees) go on
// as one column and the others end at the junction point, so each reaches
// half a width into the column that passes: no gap opens where they meet. A
// free end is carried along its last direction to just inside the outline,
// since a skeleton stops short of the strip's tip.
//
// Along each column, at short steps, rays along the normal find the two
// sides; a ray that runs much farther than the half-widths nearby has left
// through the mouth of a branch and is cut to them. The rail points on both
// sides come from the same samples in the same order, so the rails run the
// same way; a side point that would step backwards (inside a tight bend) is
// left out. Rungs lie on the sample's normal, reaching a little past each
// rail, every few millimetres and wherever the direction has turned.
#include <algorithm>
#include <cmath>

#include "embroidery/Geometry.h"

namespace pictrace {
namespace embroidery {

namespace {

struct End {
  int chain;
  bool atStart;
};

// The direction leaving a chain's end, taken over about `span` of its length.
Point Outgoing(const Path& c, bool atStart, double span) {
  Point from = atStart ? c.front() : c.back(), to = from;
  double walked = 0.0;
  for (size_t k = 1; k < c.size() && walked < span; k++) {
    Point prev = to;
    to = atStart ? c[k] : c[c.size() - 1 - k];
    walked += Dist(prev, to);
  }
  return Unit(Sub(to, from));
}

// Chains joined into columns: each column's points and whether each end is
// free (true) or ends at a junction.
struct ColumnPath {
  Path points;
  bool freeEnd[2] = {true, true};
};

std::vector<ColumnPath> JoinChains(std::vector<Path> chains, double width) {
  const double tol = std::max(1.5, 0.3 * width);
  // Ends within tol of each other are one node.
  std::vector<std::vector<End>> nodes;
  std::vector<Point> nodeAt;
  std::vector<int> nodeOf(2 * chains.size(), -1);
  for (size_t c = 0; c < chains.size(); c++)
    for (int e = 0; e < 2; e++) {
      Point p = e == 0 ? chains[c].front() : chains[c].back();
      int found = -1;
      for (size_t n = 0; n < nodes.size() && found < 0; n++)
        if (Dist(nodeAt[n], p) <= tol) found = static_cast<int>(n);
      if (found < 0) {
        found = static_cast<int>(nodes.size());
        nodes.emplace_back();
        nodeAt.push_back(p);
      }
      nodes[found].push_back({static_cast<int>(c), e == 0});
      nodeOf[2 * c + e] = found;
    }
  // link[2c+e]: the end this one continues into, or -1.
  std::vector<int> link(2 * chains.size(), -1);
  for (const std::vector<End>& ends : nodes) {
    std::vector<bool> used(ends.size(), false);
    for (;;) {
      double best = -std::cos(M_PI / 4.0);
      int bi = -1, bj = -1;
      for (size_t i = 0; i < ends.size(); i++)
        for (size_t j = i + 1; j < ends.size(); j++) {
          if (used[i] || used[j] || ends[i].chain == ends[j].chain) continue;
          double d = Dot(Outgoing(chains[ends[i].chain], ends[i].atStart, width),
                         Outgoing(chains[ends[j].chain], ends[j].atStart, width));
          if (d < best || ends.size() == 2) best = d, bi = static_cast<int>(i), bj = static_cast<int>(j);
        }
      if (bi < 0) break;
      used[bi] = used[bj] = true;
      int a = 2 * ends[bi].chain + (ends[bi].atStart ? 0 : 1), b = 2 * ends[bj].chain + (ends[bj].atStart ? 0 : 1);
      link[a] = b, link[b] = a;
      if (ends.size() == 2) break;
    }
  }
  std::vector<ColumnPath> columns;
  std::vector<bool> done(chains.size(), false);
  auto walk = [&](int startEnd) {
    ColumnPath col;
    int end = startEnd;  // the end we enter the chain by
    col.freeEnd[0] = nodes[nodeOf[end]].size() == 1;
    for (;;) {
      int c = end / 2;
      done[c] = true;
      Path pts = chains[c];
      if (end % 2 == 1) std::reverse(pts.begin(), pts.end());
      // Through a junction the skeleton bends towards the branch; the
      // column goes straight across instead, from a width before the
      // junction to a width after it.
      size_t from = 0;
      if (!col.points.empty() && nodes[nodeOf[end]].size() > 2) {
        const Point node = nodeAt[nodeOf[end]];
        while (col.points.size() > 1 && Dist(col.points.back(), node) < width) col.points.pop_back();
        while (from + 2 < pts.size() && Dist(pts[from], node) < width) from++;
      }
      for (size_t k = from; k < pts.size(); k++)
        if (col.points.empty() || Dist(col.points.back(), pts[k]) > 1e-9) col.points.push_back(pts[k]);
      int out = end ^ 1;
      col.freeEnd[1] = nodes[nodeOf[out]].size() == 1;
      int next = link[out];
      if (next < 0 || done[next / 2]) break;
      end = next;
    }
    columns.push_back(col);
  };
  for (size_t e = 0; e < 2 * chains.size(); e++)
    if (!done[e / 2] && link[e] < 0) walk(static_cast<int>(e));
  for (size_t c = 0; c < chains.size(); c++)  // closed loops
    if (!done[c]) walk(static_cast<int>(2 * c));
  return columns;
}

double Median(std::vector<double> v) {
  if (v.empty()) return 0.0;
  std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
  return v[v.size() / 2];
}

// One column along the path; the widths of all its samples are appended.
SatinColumn BuildColumn(const Shape& strip, const Path& path, const bool junctionEnd[2], const bool freeEnd[2],
                        double width, const StripOptions& opt, std::vector<double>& widths) {
  const double step = std::clamp(width / 6.0, 0.5, 3.0);
  Path s = Resample(path, step);
  const size_t n = s.size();
  std::vector<double> along(n, 0.0), r(n);
  for (size_t i = 1; i < n; i++) along[i] = along[i - 1] + Dist(s[i - 1], s[i]);
  for (size_t i = 0; i < n; i++) r[i] = DistanceToOutline(strip, s[i]);
  // Tangents over half a width on each side, smoothing the skeleton's steps.
  std::vector<Point> tangent(n);
  size_t lo = 0, hi = 0;
  for (size_t i = 0; i < n; i++) {
    while (along[i] - along[lo] > width / 2) lo++;
    while (hi + 1 < n && along[hi + 1] - along[i] <= width / 2) hi++;
    tangent[i] = Unit(Sub(s[std::max(hi, i + (i + 1 < n ? 1 : 0))], s[std::min(lo, i > 0 ? i - 1 : 0)]));
  }
  // Side points along the normals. A ray that runs past twice the largest
  // nearby distance to the outline has left through the mouth of a branch
  // (or found no side); the side there runs straight from where it left the
  // outline to where it meets it again, or keeps that distance at an end.
  std::vector<Point> at[2];
  std::vector<char> open[2];
  lo = hi = 0;
  for (size_t i = 0; i < n; i++) {
    while (along[i] - along[lo] > width) lo++;
    while (hi + 1 < n && along[hi + 1] - along[i] <= width) hi++;
    const double near = *std::max_element(r.begin() + lo, r.begin() + hi + 1);
    for (int k = 0; k < 2; k++) {
      const Point dir = Scale(Left(tangent[i]), k == 0 ? 1.0 : -1.0);
      const double h = RayHit(strip, s[i], dir);
      open[k].push_back(h < 0.0 || h > 2.0 * near);
      at[k].push_back(Add(s[i], Scale(dir, open[k].back() ? near : h)));
    }
  }
  for (int k = 0; k < 2; k++)
    for (size_t i = 0; i < n; i++) {
      if (!open[k][i] || i == 0) continue;
      size_t j = i;
      while (j < n && open[k][j]) j++;
      if (j < n)
        for (size_t m = i; m < j; m++) {
          const double f = (along[m] - along[i - 1]) / (along[j] - along[i - 1]);
          at[k][m] = Add(at[k][i - 1], Scale(Sub(at[k][j], at[k][i - 1]), f));
        }
      i = j;
    }
  // Within a junction the sides keep the distances where the column enters it.
  for (int e = 0; e < 2; e++) {
    if (!junctionEnd[e] || n < 2) continue;
    const size_t end = e == 0 ? 0 : n - 1;
    size_t i = end;
    while (i != (e == 0 ? n - 1 : 0) && std::fabs(along[i] - along[end]) < r[end]) i += e == 0 ? 1 : -1;
    for (size_t j = std::min(i, end); j <= std::max(i, end); j++)
      for (int k = 0; k < 2; k++) {
        const double d = Dot(Sub(at[k][i], s[i]), Left(tangent[i]));
        at[k][j] = Add(s[j], Scale(Left(tangent[j]), d));
      }
  }
  for (size_t i = 0; i < n; i++) widths.push_back(Dist(at[0][i], at[1][i]));
  // Samples whose side points both step forward along the column.
  SatinColumn col;
  std::vector<size_t> kept;
  for (size_t i = 0; i < n; i++) {
    bool forward = true;
    for (int k = 0; k < 2; k++)
      if (!col.rails[k].empty() && Dot(Sub(at[k][i], col.rails[k].back()), tangent[i]) <= 0.0) forward = false;
    if (!forward) continue;
    for (int k = 0; k < 2; k++) col.rails[k].push_back(at[k][i]);
    kept.push_back(i);
  }
  if (kept.size() < 2) return col;
  // The rungs' range: inside the ends, crossing the rails where they are
  // not ending; at a free end half a width in, where the sides are still
  // the strip's long sides. From there the rails go straight on to the
  // outline, into the corners of the tip, which rays along the normals miss
  // where the tip is cut obliquely.
  size_t first = kept.size() >= 4 ? 1 : 0, last = kept.size() >= 4 ? kept.size() - 2 : kept.size() - 1;
  if (freeEnd[0])
    while (first + 2 < last && along[kept[first]] - along[kept[0]] < width / 2) first++;
  if (freeEnd[1])
    while (last > first + 2 && along[kept.back()] - along[kept[last]] < width / 2) last--;
  std::vector<size_t> rungAt;
  for (size_t j = first; j <= last; j++) {
    const size_t i = kept[j];
    if (j == first || j == last) {
      rungAt.push_back(j);
      continue;
    }
    const size_t before = kept[rungAt.back()];
    const double turn = std::acos(std::clamp(Dot(tangent[i], tangent[before]), -1.0, 1.0)) * 180.0 / M_PI;
    const double gone = along[i] - along[before];
    if (gone >= opt.dRungSpacing || (turn >= opt.dRungTurn && gone >= width / 3)) rungAt.push_back(j);
  }
  if (rungAt.size() == 2 && last > first + 1) rungAt.insert(rungAt.begin() + 1, (first + last) / 2);
  // Each rung with the next samples as fallbacks, before the rails change.
  std::vector<std::vector<Path>> tries;
  for (size_t j : rungAt) {
    tries.emplace_back();
    for (size_t t = j; t < std::min(j + 4, last + 1); t++) {
      const Point across = Unit(Sub(col.rails[0][t], col.rails[1][t]));
      tries.back().push_back({Add(col.rails[0][t], across), Sub(col.rails[1][t], across)});
    }
  }
  col.dLength = along.back();
  col.dMinWidth = 1e300, col.dMaxWidth = 0.0;
  for (size_t j = 0; j < kept.size(); j++) {
    const double w = Dist(col.rails[0][j], col.rails[1][j]);
    col.dMinWidth = std::min(col.dMinWidth, w), col.dMaxWidth = std::max(col.dMaxWidth, w);
  }
  for (int k = 0; k < 2; k++) {
    Path& rail = col.rails[k];
    const size_t lo = freeEnd[0] ? first : 0, hi = freeEnd[1] ? last : rail.size() - 1;
    Path kept2(rail.begin() + static_cast<long>(lo), rail.begin() + static_cast<long>(hi) + 1);
    for (int e = 0; e < 2; e++) {
      if (!freeEnd[e] || kept2.size() < 2) continue;
      const Point end = e == 0 ? kept2.front() : kept2.back();
      const Point centre = s[kept[e == 0 ? lo : hi]];
      const Point dir = Scale(Outgoing(kept2, e == 0, width / 2), -1.0);
      const Point from = Add(end, Scale(Unit(Sub(centre, end)), 0.3));
      const double h = RayHit(strip, from, dir);
      const Point corner = Add(from, Scale(dir, std::max(0.0, h - 0.3)));
      // Where the outline bends in sooner than the samples reached, they stay.
      const Point reached = e == 0 ? rail.front() : rail.back();
      if (h > 0.3 && Dot(Sub(corner, end), dir) >= Dot(Sub(reached, end), dir)) {
        if (e == 0) kept2.insert(kept2.begin(), corner); else kept2.push_back(corner);
      } else if (e == 0) {
        kept2.insert(kept2.begin(), rail.begin(), rail.begin() + static_cast<long>(lo));
      } else {
        kept2.insert(kept2.end(), rail.begin() + static_cast<long>(hi) + 1, rail.end());
      }
    }
    rail = kept2;
  }
  // A rung must cross each rail once; by a sharp corner of a rail it is
  // tried at the next samples, then left out.
  for (const std::vector<Path>& options : tries)
    for (const Path& rung : options)
      if (CrossingCount(col.rails[0], rung[0], rung[1]) == 1 && CrossingCount(col.rails[1], rung[0], rung[1]) == 1) {
        col.rungs.push_back(rung);
        break;
      }
  if (col.rungs.size() == 2) col.rungs.pop_back();  // two rungs would read as rails
  return col;
}

}  // namespace

StripStitches ColumnsFromCentreLines(const Shape& strip, const std::vector<Path>& centreLines,
                                     const StripOptions& options) {
  StripStitches out;
  const double perimeter = ShapePerimeter(strip);
  if (perimeter <= 0.0) return out;
  const double width = 2.0 * ShapeArea(strip) / perimeter;
  std::vector<Path> chains;
  for (const Path& c : centreLines)
    if (c.size() >= 2 && PathLength(c) > 0.0) chains.push_back(c);
  if (chains.empty()) return out;
  std::vector<ColumnPath> paths = JoinChains(chains, width);
  std::vector<double> widths;
  for (ColumnPath& cp : paths) {
    Path& p = cp.points;
    bool loop = Dist(p.front(), p.back()) < 1e-6;
    for (int e = 0; e < 2 && !loop; e++) {
      if (!cp.freeEnd[e]) continue;
      // The skeleton's last half width bends towards a corner of the tip;
      // the column goes on straight from before it.
      if (e == 1) std::reverse(p.begin(), p.end());
      size_t k = 0;
      while (k + 2 < p.size() && Dist(p[k + 1], p.front()) < width / 2) k++;
      if (PathLength(p) > 2 * width) p.erase(p.begin(), p.begin() + static_cast<long>(k));
      if (e == 1) std::reverse(p.begin(), p.end());
      Point tip = e == 0 ? p.front() : p.back();
      Point dir = Scale(Outgoing(p, e == 0, width), -1.0);
      double h = RayHit(strip, tip, dir);
      if (h > 1.0) {
        Point q = Add(tip, Scale(dir, h - 0.5));
        if (e == 0) p.insert(p.begin(), q); else p.push_back(q);
      }
    }
    const bool junctionEnd[2] = {!loop && !cp.freeEnd[0], !loop && !cp.freeEnd[1]};
    const bool freeEnd[2] = {!loop && cp.freeEnd[0], !loop && cp.freeEnd[1]};
    out.columns.push_back(BuildColumn(strip, p, junctionEnd, freeEnd, width, options, widths));
    out.runs.push_back(p);
  }
  out.dWidth = Median(widths);
  if (out.dWidth < options.dRunningBelow)
    out.columns.clear();
  else
    out.runs.clear();
  if (out.dWidth > options.dSatinAbove) out.columns.clear();
  return out;
}

}  // namespace embroidery
}  // namespace pictrace
