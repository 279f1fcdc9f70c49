#include "cli/Embroidery.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <utility>

#include "PictraceEmbroidery.h"
#include "cli/Length.h"

namespace pictrace {

namespace {

using Chain = PathChain;

const double kPi = 3.14159265358979323846;
// Bezier lines are sampled this finely for lengths and moments.
const int kCurveSamples = 16;

PathPoint At(const PathLine& l, double t) {
  PathPoint p;
  if (l.type == 0) {
    p.x = static_cast<float>(l.start.x + (l.end.x - l.start.x) * t);
    p.y = static_cast<float>(l.start.y + (l.end.y - l.start.y) * t);
    return p;
  }
  const double u = 1 - t, a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
  p.x = static_cast<float>(a * l.start.x + b * l.c1.x + c * l.c2.x + d * l.end.x);
  p.y = static_cast<float>(a * l.start.y + b * l.c1.y + c * l.c2.y + d * l.end.y);
  return p;
}

// The chain as points: each line's start, samples along a curve, the last end.
std::vector<PathPoint> Flatten(const Chain& chain) {
  std::vector<PathPoint> points;
  for (const PathLine& l : chain) {
    const int n = l.type == 0 ? 1 : kCurveSamples;
    for (int k = 0; k < n; k++) points.push_back(At(l, static_cast<double>(k) / n));
  }
  if (!chain.empty()) points.push_back(chain.back().end);
  return points;
}

double Distance(const PathPoint& a, const PathPoint& b) { return std::hypot(a.x - b.x, a.y - b.y); }

double ChainLength(const Chain& chain) {
  const std::vector<PathPoint> p = Flatten(chain);
  double length = 0;
  for (size_t i = 1; i < p.size(); i++) length += Distance(p[i - 1], p[i]);
  return length;
}

PathLine Reversed(const PathLine& l) {
  PathLine r = l;
  r.start = l.end, r.end = l.start;
  r.c1 = l.c2, r.c2 = l.c1;
  return r;
}

// --- joining centre lines: each line an edge between its end points; an
// Euler walk through a helper vertex joined to every odd vertex covers the
// edges in (odd vertices / 2) trails per component, or one closed trail.

struct Step {
  int line;
  bool forward;
};

std::vector<std::vector<Step>> JoinLines(const std::vector<Chain>& lines) {
  std::map<std::pair<float, float>, int> ids;
  auto vertex = [&](const PathPoint& p) {
    return ids.emplace(std::make_pair(p.x, p.y), static_cast<int>(ids.size())).first->second;
  };
  struct Edge {
    int a, b, line;
  };
  std::vector<Edge> edges;
  for (size_t i = 0; i < lines.size(); i++)
    edges.push_back({vertex(lines[i].front().start), vertex(lines[i].back().end), static_cast<int>(i)});
  const int helper = static_cast<int>(ids.size());
  std::vector<std::vector<int>> adj(ids.size() + 1);
  for (size_t e = 0; e < edges.size(); e++) {
    adj[edges[e].a].push_back(static_cast<int>(e));
    adj[edges[e].b].push_back(static_cast<int>(e));
  }
  for (int v = 0; v < helper; v++)
    if (adj[v].size() % 2) {
      edges.push_back({helper, v, -1});
      adj[helper].push_back(static_cast<int>(edges.size() - 1));
      adj[v].push_back(static_cast<int>(edges.size() - 1));
    }
  std::vector<char> used(edges.size(), 0);
  std::vector<size_t> next(adj.size(), 0);
  std::vector<std::vector<Step>> trails;
  auto walk = [&](int start) {
    // Hierholzer: the circuit comes off the stack backwards.
    std::vector<std::pair<int, int>> stack{{start, -1}};  // vertex, edge that reached it
    std::vector<int> circuit;
    std::vector<int> at;
    while (!stack.empty()) {
      const int v = stack.back().first;
      while (next[v] < adj[v].size() && used[adj[v][next[v]]]) next[v]++;
      if (next[v] == adj[v].size()) {
        circuit.push_back(stack.back().second);
        at.push_back(v);
        stack.pop_back();
        continue;
      }
      const int e = adj[v][next[v]];
      used[e] = 1;
      stack.push_back({edges[e].a == v ? edges[e].b : edges[e].a, e});
    }
    // Walked forwards: at[k + 1] -> at[k] over circuit[k], from the end.
    std::vector<Step> trail;
    for (size_t k = circuit.size(); k-- > 0;) {
      const int e = circuit[k];
      if (e < 0) continue;
      if (edges[e].line < 0) {
        if (!trail.empty()) trails.push_back(trail);
        trail.clear();
        continue;
      }
      trail.push_back({edges[e].line, edges[e].a == at[k + 1]});
    }
    if (!trail.empty()) trails.push_back(trail);
  };
  if (!adj[helper].empty()) walk(helper);
  for (size_t e = 0; e < edges.size(); e++)
    if (!used[e]) walk(edges[e].a);
  return trails;
}

// --- travelling order. The digitizer starts a fill at its border point
// nearest to where the previous piece ended, and ends it there again; a path
// it stitches from its start to its end. A move longer than 3 mm becomes a
// jump with a trim.

const double kLongestStep = 3 * kUnitsPerMm;
// Larger layers keep the nearest-next order as it is.
const size_t kReorderedPieces = 60;

double Distance2(const PathPoint& a, const PathPoint& b) {
  const double dx = a.x - b.x, dy = a.y - b.y;
  return dx * dx + dy * dy;
}

// The point of segment a-b nearest to p.
PathPoint Nearest(const PathPoint& a, const PathPoint& b, const PathPoint& p) {
  const double dx = b.x - a.x, dy = b.y - a.y, l2 = dx * dx + dy * dy;
  const double t = l2 > 0 ? std::max(0.0, std::min(1.0, ((p.x - a.x) * dx + (p.y - a.y) * dy) / l2)) : 0;
  return {static_cast<float>(a.x + t * dx), static_cast<float>(a.y + t * dy)};
}

struct Entry {
  double distance;
  int node;      // the ring's node to start at; -1: an open path reversed
  PathPoint at;  // where stitching enters
};

// Where the piece is entered from p: a fill at the point of its outer border
// nearest to p (its ring then starts at that line), a closed path at its
// nearest node, an open path at its nearer end.
Entry BestEntry(const StitchPiece& piece, const PathPoint& p) {
  const Chain& ring = piece.rings.front();
  Entry best{HUGE_VAL, 0, ring.front().start};
  if (!piece.fill && !piece.closed) {
    best.distance = Distance2(p, ring.front().start);
    if (Distance2(p, ring.back().end) < best.distance) best = {Distance2(p, ring.back().end), -1, ring.back().end};
  }
  for (size_t i = 0; (piece.fill || piece.closed) && i < ring.size(); i++) {
    const PathPoint q = piece.fill ? Nearest(ring[i].start, ring[i].end, p) : ring[i].start;
    const double d2 = Distance2(p, q);
    if (d2 < best.distance) best = {d2, static_cast<int>(i), q};
  }
  best.distance = std::sqrt(best.distance);
  return best;
}

// Enters the piece where BestEntry chose: a ring rotated to start at the
// node, an open path reversed to start at its end.
void EnterAt(StitchPiece& piece, const Entry& entry) {
  Chain& ring = piece.rings.front();
  if (entry.node < 0) {
    // A satin column's rails run the same way: both turn round.
    for (size_t k = 0; k < (piece.satin ? 2u : 1u); k++) {
      Chain reversed;
      for (size_t i = piece.rings[k].size(); i-- > 0;) reversed.push_back(Reversed(piece.rings[k][i]));
      piece.rings[k] = reversed;
    }
  } else {
    std::rotate(ring.begin(), ring.begin() + entry.node, ring.end());
  }
  piece.start = piece.fill ? entry.at : ring.front().start;
  piece.end = piece.fill ? entry.at : ring.back().end;
}

// Where stitching leaves the piece when entered there.
PathPoint ExitOf(const StitchPiece& piece, const Entry& entry) {
  const Chain& ring = piece.rings.front();
  if (piece.fill) return entry.at;
  if (entry.node < 0) return ring.front().start;
  return piece.closed ? ring[static_cast<size_t>(entry.node)].start : ring.back().end;
}

// The moves of the pieces in this order from p: how many are jumps (longer
// than kLongestStep), and their length.
std::pair<int, double> Moves(const std::vector<StitchPiece>& pieces, const std::vector<size_t>& order, PathPoint p) {
  std::pair<int, double> moves{0, 0.0};
  for (size_t i : order) {
    const Entry e = BestEntry(pieces[i], p);
    moves.first += e.distance > kLongestStep;
    moves.second += e.distance;
    p = ExitOf(pieces[i], e);
  }
  return moves;
}

// Nearest next, then single pieces moved elsewhere in the order while that
// makes fewer jumps without longer moves, or shorter moves without more
// jumps (on layers small enough for it).
void OrderPieces(std::vector<StitchPiece>& pieces, PathPoint& at, double& travel) {
  std::vector<size_t> order;
  std::vector<char> used(pieces.size(), 0);
  PathPoint p = at;
  for (size_t k = 0; k < pieces.size(); k++) {
    size_t best = 0;
    Entry entry{HUGE_VAL, 0, p};
    for (size_t i = 0; i < pieces.size(); i++) {
      if (used[i]) continue;
      const Entry e = BestEntry(pieces[i], p);
      if (e.distance < entry.distance) best = i, entry = e;
    }
    used[best] = 1;
    order.push_back(best);
    p = ExitOf(pieces[best], entry);
  }
  std::pair<int, double> moves = Moves(pieces, order, at);
  for (bool improved = pieces.size() <= kReorderedPieces; improved;) {
    improved = false;
    for (size_t i = 0; i < order.size() && !improved; i++)
      for (size_t j = 0; j < order.size() && !improved; j++) {
        if (i == j) continue;
        std::vector<size_t> trial = order;
        const size_t piece = trial[i];
        trial.erase(trial.begin() + static_cast<long>(i));
        trial.insert(trial.begin() + static_cast<long>(j), piece);
        const std::pair<int, double> m = Moves(pieces, trial, at);
        if ((m.first < moves.first && m.second <= moves.second) || (m.first <= moves.first && m.second < moves.second - 1e-6))
          order = trial, moves = m, improved = true;
      }
  }
  std::vector<StitchPiece> ordered;
  for (size_t i : order) {
    ordered.push_back(std::move(pieces[i]));
    const Entry e = BestEntry(ordered.back(), at);
    EnterAt(ordered.back(), e);
    travel += e.distance;
    at = ordered.back().end;
  }
  pieces = std::move(ordered);
}

StitchLayer& LayerFor(std::vector<StitchLayer>& layers, COLORREF color, bool fill) {
  for (StitchLayer& layer : layers)
    if (layer.color == color && layer.fill == fill) return layer;
  layers.emplace_back();
  layers.back().color = color;
  layers.back().fill = fill;
  layers.back().label = ColorToHex(color);
  return layers.back();
}

// --- strips and underlap, from the library's stitch geometry.

Chain StraightChain(const embroidery::Path& points, bool closed) {
  Chain chain;
  const size_t n = points.size();
  for (size_t i = 0; i + 1 < n + (closed ? 1 : 0); i++) {
    PathLine l;
    l.start = {static_cast<float>(points[i].x), static_cast<float>(points[i].y)};
    l.end = {static_cast<float>(points[(i + 1) % n].x), static_cast<float>(points[(i + 1) % n].y)};
    chain.push_back(l);
  }
  return chain;
}

const double kFlatness = 0.25;  // output units: curves flattened for the geometry

// A strip's satin columns, or its running stitches when it is under 1 mm;
// nothing when it stays a fill.
std::vector<StitchPiece> StripPieces(const CPTRegion& region, int source, const Chain& outline) {
  const embroidery::StripStitches st =
      embroidery::StripToStitches(embroidery::FlattenRegion(region, kFlatness), embroidery::StripOptions());
  std::vector<StitchPiece> pieces;
  for (const embroidery::SatinColumn& c : st.columns) {
    StitchPiece p;
    p.fill = false, p.satin = true, p.closed = false, p.narrow = true, p.source = source, p.strip = outline;
    p.rings = {StraightChain(c.rails[0], false), StraightChain(c.rails[1], false)};
    for (const embroidery::Path& rung : c.rungs) p.rings.push_back(StraightChain(rung, false));
    p.length = c.dLength, p.widthMin = c.dMinWidth, p.widthMax = c.dMaxWidth;
    if (p.rings[0].empty() || p.rings[1].empty()) continue;
    pieces.push_back(std::move(p));
  }
  for (const embroidery::Path& run : st.runs) {
    StitchPiece p;
    p.fill = false, p.closed = false, p.narrow = true, p.source = source, p.strip = outline;
    p.rings = {StraightChain(run, false)};
    if (p.rings[0].empty()) continue;
    p.length = ChainLength(p.rings[0]);
    pieces.push_back(std::move(p));
  }
  return pieces;
}

// Grows every fill of the plan under the regions stitched after it (in the
// plan's order, a region ranked by its first piece); regions not in the plan
// count as stitched first, so nothing grows into them.
void ApplyUnderlap(StitchPlan& plan, const OutputDocument& doc) {
  const int n = doc.hasRegions && doc.regions.m_pRegions ? doc.regions.m_nRegions : 0;
  std::vector<embroidery::Shape> shapes;
  for (int i = 0; i < n; i++) shapes.push_back(embroidery::FlattenRegion(doc.regions.m_pRegions[i], kFlatness));
  std::vector<int> rank(static_cast<size_t>(n), -1);
  int next = 0;
  for (const StitchLayer& layer : plan.layers)
    for (const StitchPiece& piece : layer.pieces)
      if (layer.fill && piece.source >= 0 && piece.source < n && rank[piece.source] < 0) rank[piece.source] = next++;
  std::vector<double> area;
  const std::vector<std::vector<embroidery::Shape>> grown = embroidery::Underlap(shapes, rank, doc.underlap, &area);
  for (StitchLayer& layer : plan.layers)
    for (StitchPiece& piece : layer.pieces) {
      if (!layer.fill || !piece.fill || piece.source < 0 || piece.source >= n || area[piece.source] <= 0) continue;
      // One connected piece in one path; should growth ever come apart, the largest part.
      const std::vector<embroidery::Shape>& parts = grown[piece.source];
      size_t best = 0;
      for (size_t k = 1; k < parts.size(); k++)
        if (embroidery::ShapeArea(parts[k]) > embroidery::ShapeArea(parts[best])) best = k;
      if (parts.empty()) continue;
      piece.rings.clear();
      for (const embroidery::Ring& ring : parts[best]) piece.rings.push_back(StraightChain(ring, true));
      layer.underlap += area[piece.source];
    }
}

}  // namespace

bool DesignBounds(const StitchPlan& plan, double& left, double& top, double& right, double& bottom) {
  bool any = false;
  for (const StitchLayer& layer : plan.layers)
    for (const StitchPiece& piece : layer.pieces)
      // A strip's columns or stitches extend as far as the strip.
      for (const PathPoint& p : Flatten(piece.strip.empty() ? piece.rings.front() : piece.strip)) {
        if (!any) left = right = p.x, top = bottom = p.y;
        left = std::min(left, static_cast<double>(p.x)), right = std::max(right, static_cast<double>(p.x));
        top = std::min(top, static_cast<double>(p.y)), bottom = std::max(bottom, static_cast<double>(p.y));
        any = true;
      }
  return any && right > left && bottom > top;
}

double FillArea(const std::vector<Chain>& rings) {
  // Even-odd, as the SVG fills it: between consecutive vertex heights the
  // covered width changes linearly (but where borders cross), so its value
  // at mid-height times the height is the strip's area.
  struct Edge {
    double x0, y0, x1, y1;  // y0 < y1
  };
  std::vector<Edge> edges;
  std::vector<double> ys;
  for (const Chain& ring : rings) {
    const std::vector<PathPoint> p = Flatten(ring);
    for (size_t i = 0; i + 1 < p.size(); i++) {
      ys.push_back(p[i].y);
      if (p[i].y == p[i + 1].y) continue;
      const bool up = p[i].y < p[i + 1].y;
      const PathPoint& a = up ? p[i] : p[i + 1];
      const PathPoint& b = up ? p[i + 1] : p[i];
      edges.push_back({a.x, a.y, b.x, b.y});
    }
  }
  std::sort(ys.begin(), ys.end());
  ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
  std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.y0 < b.y0; });
  double area = 0;
  size_t next = 0;
  std::vector<Edge> active;
  std::vector<double> xs, cuts;
  std::vector<std::pair<double, double>> ends;  // each active border's x at the strip's top and bottom
  auto xAt = [](const Edge& e, double y) { return e.x0 + (e.x1 - e.x0) * (y - e.y0) / (e.y1 - e.y0); };
  for (size_t k = 0; k + 1 < ys.size(); k++) {
    const double ya = ys[k], yb = ys[k + 1], y = (ya + yb) / 2;
    while (next < edges.size() && edges[next].y0 < y) active.push_back(edges[next++]);
    active.erase(std::remove_if(active.begin(), active.end(), [y](const Edge& e) { return e.y1 <= y; }), active.end());
    // Where two borders cross within the strip, it is cut in two there. The
    // borders cross nowhere when their order by x at the strip's top is also
    // their order at its bottom; only then are the pairs looked at.
    cuts = {ya, yb};
    ends.clear();
    for (const Edge& e : active) ends.push_back({xAt(e, ya), xAt(e, yb)});
    std::sort(ends.begin(), ends.end());
    bool reordered = false;
    for (size_t i = 0; i + 1 < ends.size() && !reordered; i++) reordered = ends[i + 1].second < ends[i].second;
    for (size_t i = 0; reordered && i < active.size(); i++)
      for (size_t j = i + 1; j < active.size(); j++) {
        const double da = xAt(active[i], ya) - xAt(active[j], ya), db = xAt(active[i], yb) - xAt(active[j], yb);
        if ((da < 0 && db > 0) || (da > 0 && db < 0)) cuts.push_back(ya + (yb - ya) * da / (da - db));
      }
    std::sort(cuts.begin(), cuts.end());
    for (size_t c = 0; c + 1 < cuts.size(); c++) {
      const double ym = (cuts[c] + cuts[c + 1]) / 2;
      xs.clear();
      for (const Edge& e : active) xs.push_back(xAt(e, ym));
      std::sort(xs.begin(), xs.end());
      for (size_t i = 0; i + 1 < xs.size(); i += 2) area += (xs[i + 1] - xs[i]) * (cuts[c + 1] - cuts[c]);
    }
  }
  return area;
}

double FillAngle(const std::vector<Chain>& rings) {
  // Area moments of the flattened rings, holes subtracted, about the origin
  // and then about the centroid.
  double a = 0, mx = 0, my = 0, sxx = 0, syy = 0, sxy = 0;
  for (size_t r = 0; r < rings.size(); r++) {
    const std::vector<PathPoint> p = Flatten(rings[r]);
    double ra = 0, rmx = 0, rmy = 0, rxx = 0, ryy = 0, rxy = 0;
    for (size_t i = 0; i + 1 < p.size(); i++) {
      const double x0 = p[i].x, y0 = p[i].y, x1 = p[i + 1].x, y1 = p[i + 1].y, c = x0 * y1 - x1 * y0;
      ra += c / 2;
      rmx += (x0 + x1) * c / 6;
      rmy += (y0 + y1) * c / 6;
      rxx += (x0 * x0 + x0 * x1 + x1 * x1) * c / 12;
      ryy += (y0 * y0 + y0 * y1 + y1 * y1) * c / 12;
      rxy += (x0 * y1 + 2 * x0 * y0 + 2 * x1 * y1 + x1 * y0) * c / 24;
    }
    // The outer ring adds, holes take away, whichever way each one turns.
    const double sign = (ra < 0 ? -1 : 1) * (r == 0 ? 1 : -1);
    a += sign * ra, mx += sign * rmx, my += sign * rmy;
    sxx += sign * rxx, syy += sign * ryy, sxy += sign * rxy;
  }
  if (a <= 0) return 0;
  const double cx = mx / a, cy = my / a;
  sxx -= a * cx * cx, syy -= a * cy * cy, sxy -= a * cx * cy;
  if (std::fabs(sxx - syy) < 1e-9 * (sxx + syy) && std::fabs(sxy) < 1e-9 * (sxx + syy)) return 0;
  // The axis in the picture's coordinates (y down); as seen, y points up.
  const double down = 0.5 * std::atan2(2 * sxy, sxx - syy);
  double degrees = std::round(-down * 180 / kPi);
  while (degrees < 0) degrees += 180;
  while (degrees >= 180) degrees -= 180;
  return degrees;
}

const char* const kStitchModel =
    "fill: rows 0.25 mm apart with 3 mm stitches (area / 0.75 mm^2) plus one underlay of rows 0.75 mm "
    "apart (area / 2.25 mm^2); running stitch: 2.5 mm stitches (length / 2.5 mm, at least 1 per path); "
    "satin: zigzags 0.4 mm apart, two stitches each (length / 0.2 mm)";

double FillStitches(double areaMm2) { return areaMm2 / 0.75 + areaMm2 / 2.25; }

double RunningStitches(double lengthMm) { return std::max(1.0, std::ceil(lengthMm / 2.5)); }

double SatinStitches(double lengthMm) { return std::max(2.0, std::ceil(lengthMm / 0.4) * 2); }

double PieceStitches(const StitchPiece& piece) {
  if (piece.fill) return FillStitches(piece.area / (kUnitsPerMm * kUnitsPerMm));
  return piece.satin ? SatinStitches(piece.length / kUnitsPerMm) : RunningStitches(piece.length / kUnitsPerMm);
}

const StitchPlan& PlanOf(const OutputDocument& doc) {
  if (!doc.stitchPlan) doc.stitchPlan = std::make_shared<const StitchPlan>(PlanStitches(doc));
  return *doc.stitchPlan;
}

StitchPlan PlanStitches(const OutputDocument& doc) {
  StitchPlan plan;
  long left, top;
  doc.Page(left, top, plan.width, plan.height);
  std::vector<StitchLayer> fills, lines;
  for (int i = 0; doc.hasRegions && i < doc.regions.m_nRegions && doc.regions.m_pRegions; i++) {
    const CPTRegion& r = doc.regions.m_pRegions[i];
    StitchPiece piece;
    piece.source = i;
    piece.narrow = r.m_nRegionFlag == 1;
    for (int k = 0; k < r.m_nPolygons && r.m_pPolygons; k++)
      if (r.m_pPolygons[k].m_nLines > 0) piece.rings.push_back(ChainOf(r.m_pPolygons[k].m_pLines, r.m_pPolygons[k].m_nLines));
    if (piece.rings.empty()) continue;
    piece.area = FillArea(piece.rings);
    piece.angle = FillAngle(piece.rings);
    StitchLayer& layer = LayerFor(fills, doc.PaintColor(r.m_nColorIndex), true);
    std::vector<StitchPiece> strip;
    if (doc.satin && piece.narrow) strip = StripPieces(r, i, piece.rings.front());
    const int n = r.m_nColorIndex;
    if (!layer.inChart && n >= 1 && n <= static_cast<int>(doc.threads.size()) && doc.threads[n - 1].inTable) {
      const ThreadEntry& t = doc.threads[n - 1];
      layer.inChart = true, layer.name = t.name, layer.code = t.code;
      layer.label = t.code.empty() ? t.name : t.name + " " + t.code;
    }
    layer.area += piece.area;
    if (strip.empty()) layer.pieces.push_back(std::move(piece));
    for (StitchPiece& p : strip) layer.pieces.push_back(std::move(p));
  }
  // Centre lines, per colour, joined into trails.
  const int nLineColors = doc.hasLines ? static_cast<int>(doc.lineColors.size()) : 0;
  for (int n = 1; n <= nLineColors; n++) {
    std::vector<Chain> chains;
    std::vector<int> ids;
    for (int i = 0; i < doc.lines.m_nThinLines && doc.lines.m_pThinLines; i++) {
      const CPTThinLine& thin = doc.lines.m_pThinLines[i];
      if (thin.m_nColorIndex != n || thin.m_nPolygonLines < 1 || thin.m_pPolygonLines[0].m_nLines < 1) continue;
      chains.push_back(ChainOf(thin.m_pPolygonLines[0].m_pLines, thin.m_pPolygonLines[0].m_nLines));
      ids.push_back(i);
    }
    if (chains.empty()) continue;
    StitchLayer& layer = LayerFor(lines, doc.LineColor(n), false);
    for (const std::vector<Step>& trail : JoinLines(chains)) {
      StitchPiece piece;
      piece.fill = false;
      piece.source = ids[trail.front().line];
      piece.lineCount = static_cast<int>(trail.size());
      Chain path;
      for (const Step& s : trail) {
        const Chain& c = chains[s.line];
        if (s.forward) path.insert(path.end(), c.begin(), c.end());
        else
          for (size_t k = c.size(); k-- > 0;) path.push_back(Reversed(c[k]));
      }
      piece.closed = path.front().start.x == path.back().end.x &&
                     path.front().start.y == path.back().end.y;
      piece.length = ChainLength(path);
      layer.length += piece.length;
      piece.rings.push_back(std::move(path));
      layer.pieces.push_back(std::move(piece));
    }
  }
  // Large fills first, smaller ones next, centre lines last.
  std::stable_sort(fills.begin(), fills.end(), [](const StitchLayer& a, const StitchLayer& b) { return a.area > b.area; });
  std::stable_sort(lines.begin(), lines.end(), [](const StitchLayer& a, const StitchLayer& b) { return a.length > b.length; });
  plan.layers = std::move(fills);
  for (StitchLayer& layer : lines) plan.layers.push_back(std::move(layer));
  // A machine starts at the middle of the hoop.
  long x, y, w, h;
  doc.Page(x, y, w, h);
  PathPoint origin;
  origin.x = static_cast<float>(x + w / 2.0), origin.y = static_cast<float>(y + h / 2.0);
  PathPoint at = origin;
  for (StitchLayer& layer : plan.layers) OrderPieces(layer.pieces, at, plan.travel);
  if (doc.underlap > 0) ApplyUnderlap(plan, doc);
  return plan;
}

}  // namespace pictrace
