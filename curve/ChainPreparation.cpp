// Preparation of a chain for the fit: which points the curve must follow,
// which of them are corners, and how the fit is guided, for raw staircase
// outlines and for chains of simplified vertices.
#include <algorithm>
#include <cmath>
#include <utility>

#include "curve/FitStages.h"

namespace pictrace::curve {

// Drops points that repeat their predecessor, and the closing repeat of a
// closed chain.
std::vector<Vec2> DistinctChain(const std::vector<Vec2>& in, bool& closed) {
  std::vector<Vec2> pts;
  for (const Vec2& p : in)
    if (pts.empty() || pts.back() != p) pts.push_back(p);
  closed = in.size() > 1 && in.front() == in.back();
  if (closed && pts.size() > 1 && pts.back() == pts.front()) pts.pop_back();
  return pts;
}

void PrepareRawChain(std::vector<Vec2> pts, bool closed, double tol, PreparedChain& prep) {
  prep.pts = std::move(pts);
  prep.closed = closed;
  prep.tolerance = tol;
  prep.window = kRawWindow;
  prep.smooth = true;
  std::vector<int> polygon = SimplifyChain(prep.pts, closed, kRawPolygonTolerance);
  prep.corners = SelectCorners(prep.pts, polygon, closed, kRawMinSagitta, kRawShortEdge);
}

// Vertex chains: corners are judged on the vertices themselves, then every
// edge is sampled so that the fit follows the whole path, not only its
// vertices. A path point lies within half a sample spacing of a sample, so
// the samples are held to the tolerance less that.
void PrepareVertexChain(const std::vector<Vec2>& vertices, bool closed, double tol,
                        PreparedChain& prep) {
  std::vector<int> all(vertices.size());
  for (size_t i = 0; i < all.size(); i++) all[i] = static_cast<int>(i);
  std::vector<int> cornerVertices = SelectCorners(vertices, all, closed, 0.0, 0.0);
  double spacing = tol * kSampleFraction;
  prep.closed = closed;
  prep.tolerance = tol - spacing * 0.5;
  prep.window = std::max(1, static_cast<int>(std::ceil(kVertexWindowLength / kSampleFraction)));
  prep.pts.clear();
  std::vector<int> sampleOf(vertices.size(), 0);
  size_t edges = closed ? vertices.size() : vertices.size() - 1;
  for (size_t i = 0; i < edges; i++) {
    Vec2 a = vertices[i], b = vertices[(i + 1) % vertices.size()];
    sampleOf[i] = static_cast<int>(prep.pts.size());
    double pieces = std::ceil(Distance(a, b) / spacing);
    int k = pieces >= kMaxSamplesPerEdge ? kMaxSamplesPerEdge : std::max(1, static_cast<int>(pieces));
    for (int j = 0; j < k; j++) prep.pts.push_back(a + (b - a) * (static_cast<double>(j) / k));
  }
  if (!closed) {
    sampleOf[vertices.size() - 1] = static_cast<int>(prep.pts.size());
    prep.pts.push_back(vertices.back());
  }
  prep.corners.clear();
  for (int v : cornerVertices) prep.corners.push_back(sampleOf[v]);
}

}  // namespace pictrace::curve
