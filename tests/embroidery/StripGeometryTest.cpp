// Satin columns and underlap on a synthetic picture of strips (1.5 to 3 mm at
// ten units a millimetre) and a block, traced by the engine, and on
// hand-made neighbours.
#include <gtest/gtest.h>

#include <algorithm>

#include "Pictrace.h"
#include "PictraceEmbroidery.h"
#include "common/TestImages.h"
#include "embroidery/Geometry.h"

using namespace pictrace::embroidery;

namespace {

struct Rect {
  int x0, y0, x1, y1;  // units, y downward
  COLORREF color;
};
// A straight strip 2 mm, an L 2.5 mm, a T of a 3 mm bar and a 1.5 mm stem, a block.
const Rect kPicture[] = {{40, 30, 440, 50, RGB(220, 0, 0)},     {40, 90, 240, 115, RGB(0, 160, 0)},
                         {215, 90, 240, 200, RGB(0, 160, 0)},   {280, 90, 460, 120, RGB(0, 0, 220)},
                         {360, 120, 375, 240, RGB(0, 0, 220)},  {40, 150, 160, 270, RGB(230, 200, 0)}};
constexpr int kW = 500, kH = 300;

bool In(const Rect& r, double x, double y) { return x > r.x0 && x < r.x1 && y > r.y0 && y < r.y1; }

// The width a rung at (x, y) should have, or 0 near ends, bends and junctions.
double WidthAt(double x, double y) {
  const int margin = 35;
  if (In({40 + 35, 30, 440 - 35, 50, 0}, x, y)) return 20;
  if (In({40 + 35, 90, 215 - margin, 115, 0}, x, y)) return 25;
  if (In({215, 115 + margin, 240, 200 - 25, 0}, x, y)) return 25;
  if (In({280 + 35, 90, 360 - margin, 120, 0}, x, y) || In({375 + margin, 90, 460 - 35, 120, 0}, x, y)) return 30;
  if (In({360, 120 + margin, 375, 240 - 20, 0}, x, y)) return 15;
  return 0;
}

// Where segment pq crosses the path: the distances along the path.
std::vector<double> Crossings(const Path& path, Point p, Point q) {
  std::vector<double> at;
  double walked = 0;
  for (size_t i = 1; i < path.size(); i++) {
    Point a = path[i - 1], e = Sub(path[i], a), d = Sub(q, p);
    double den = Cross(d, e);
    if (den != 0) {
      double t = Cross(Sub(a, p), e) / den, u = Cross(Sub(a, p), d) / den;
      if (t >= 0 && t <= 1 && u >= 0 && u < 1) at.push_back(walked + u * Norm(e));
    }
    walked += Norm(e);
  }
  return at;
}

Point PointAt(const Path& path, double along) {
  for (size_t i = 1; i < path.size(); i++) {
    double len = Dist(path[i - 1], path[i]);
    if (along <= len) return Add(path[i - 1], Scale(Sub(path[i], path[i - 1]), along / len));
    along -= len;
  }
  return path.back();
}

Shape Outline(const SatinColumn& c) {
  Ring r = c.rails[0];
  r.insert(r.end(), c.rails[1].rbegin(), c.rails[1].rend());
  return {r};
}

// Checks one column; widths of rungs at known places are compared.
void CheckColumn(const SatinColumn& c) {
  ASSERT_GE(c.rails[0].size(), 2u);
  EXPECT_NE(c.rungs.size(), 2u);
  double last[2] = {-1, -1};
  for (const Path& rung : c.rungs) {
    Point hit[2];
    for (int k = 0; k < 2; k++) {
      std::vector<double> at = Crossings(c.rails[k], rung[0], rung[1]);
      ASSERT_EQ(at.size(), 1u) << "rail " << k;
      EXPECT_GT(at[0], last[k]) << "rails run opposite ways";
      last[k] = at[0];
      hit[k] = PointAt(c.rails[k], at[0]);
    }
    Point mid = Scale(Add(hit[0], hit[1]), 0.5);
    double want = WidthAt(mid.x, mid.y);
    if (want > 0) {
      EXPECT_NEAR(Dist(hit[0], hit[1]), want, 2.0) << mid.x << "," << mid.y;
    }
  }
}

struct Traced {
  CPTRegions regions;
  Traced() {
    auto dib = testimg::MakeDib24(kW, kH, [](int x, int row) {
      for (const Rect& r : kPicture)
        if (In(r, x + 0.5, kH - 1 - row + 0.5)) return r.color;
      return RGB(255, 255, 255);
    });
    CPictrace e;
    e.SetDIBData(dib.data());
    e.SetImageRealRect(0, 0, kW, kH);
    e.DoSegmentation(5, nullptr, 1.0, 1, nullptr);
    e.GetRegions(&regions, 1);
  }
};

}  // namespace

TEST(Satin, StripsOfTheTracedPictureBecomeColumnsThatCoverThem) {
  Traced t;
  int strips = 0;
  for (int i = 0; i < t.regions.m_nRegions; i++) {
    const CPTRegion& region = t.regions.m_pRegions[i];
    Shape shape = FlattenRegion(region, 0.2);
    if (!region.m_nRegionFlag) {
      EXPECT_TRUE(ShapeArea(shape) > 14000) << "a strip taken for a fill: area " << ShapeArea(shape);
      continue;
    }
    strips++;
    StripStitches s = StripToStitches(shape, StripOptions());
    SCOPED_TRACE(testing::Message() << "strip of " << ShapeArea(shape) << " units");
    ASSERT_FALSE(s.columns.empty());
    EXPECT_TRUE(s.runs.empty());
    std::vector<Shape> cover;
    for (const SatinColumn& c : s.columns) {
      CheckColumn(c);
      cover.push_back(Outline(c));
    }
    // Columns of one strip meet: each has an end in another or another's end in it.
    auto endIn = [&](size_t a, size_t b) {
      bool in = false;
      for (const Path& rung : {s.columns[a].rungs.front(), s.columns[a].rungs.back()})
        in = in || Inside(cover[b], Scale(Add(rung[0], rung[1]), 0.5));
      return in;
    };
    for (size_t a = 0; a < cover.size() && cover.size() > 1; a++) {
      bool meets = false;
      for (size_t b = 0; b < cover.size(); b++) meets = meets || (b != a && (endIn(a, b) || endIn(b, a)));
      EXPECT_TRUE(meets) << "column " << a << " stands apart";
    }
    // The columns cover the strip: its cells' centres, all but a sliver at the tips.
    int in = 0, covered = 0;
    for (double y = 0.5; y < kH; y += 1)
      for (double x = 0.5; x < kW; x += 1)
        if (Inside(shape, {x, y})) {
          in++;
          covered += std::any_of(cover.begin(), cover.end(), [&](const Shape& c) { return Inside(c, {x, y}); });
        }
    EXPECT_GT(covered, 0.97 * in);
  }
  EXPECT_EQ(strips, 3);
}

TEST(Satin, StripsUnderAMillimetreAreRunningStitches) {
  Shape strip{{{10, 10}, {310, 10}, {310, 18}, {10, 18}}};
  StripStitches s = StripToStitches(strip, StripOptions());
  ASSERT_EQ(s.runs.size(), 1u);
  EXPECT_TRUE(s.columns.empty());
  EXPECT_NEAR(PathLength(s.runs[0]), 300, 3);
  for (const Point& p : s.runs[0]) EXPECT_NEAR(p.y, 14, 1);
}

namespace {

// Grows shapes with the given ranks and checks that each added point lies in
// a neighbour stitched later, and returns the added areas.
std::vector<double> CheckUnderlap(const std::vector<Shape>& shapes, const std::vector<int>& rank, double grow,
                                  double step) {
  std::vector<double> area;
  std::vector<std::vector<Shape>> grown = Underlap(shapes, rank, grow, &area);
  double x0 = 1e9, y0 = 1e9, x1 = -1e9, y1 = -1e9;
  for (const Shape& s : shapes)
    for (const Point& p : s[0]) x0 = std::min(x0, p.x), y0 = std::min(y0, p.y), x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
  for (size_t i = 0; i < shapes.size(); i++) {
    int stray = 0, lost = 0;
    for (double y = y0 - 5 + step / 2; y < y1 + 5; y += step)
      for (double x = x0 - 5 + step / 2; x < x1 + 5; x += step) {
        bool now = std::any_of(grown[i].begin(), grown[i].end(), [&](const Shape& g) { return Inside(g, {x, y}); });
        if (Inside(shapes[i], {x, y})) {
          lost += !now;
          continue;
        }
        if (!now) continue;
        bool later = false;
        for (size_t j = 0; j < shapes.size(); j++) later = later || (rank[j] > rank[i] && Inside(shapes[j], {x, y}));
        stray += !later;
      }
    EXPECT_EQ(stray, 0) << "shape " << i << " grew outside its later neighbours";
    EXPECT_EQ(lost, 0) << "shape " << i << " lost ground";
  }
  return area;
}

}  // namespace

TEST(Underlap, GrowsIntoLaterNeighboursOnlyByTheBorderTimesTheWidth) {
  // A | B over C, in a frame they fill; B first, then A, then C.
  std::vector<Shape> shapes{{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}},
                            {{{100, 0}, {200, 0}, {200, 100}, {100, 100}}},
                            {{{0, 100}, {200, 100}, {200, 150}, {0, 150}}}};
  std::vector<double> area = CheckUnderlap(shapes, {1, 0, 2}, 3.0, 0.5);
  EXPECT_NEAR(area[0], 300, 30);  // A under C
  EXPECT_NEAR(area[1], 600, 60);  // B under A and C
  EXPECT_EQ(area[2], 0.0);
  // A neighbour beyond a region thinner than the underlap is not reached.
  std::vector<Shape> gap{shapes[0], {{{100, 0}, {102, 0}, {102, 100}, {100, 100}}},
                         {{{102, 0}, {200, 0}, {200, 100}, {102, 100}}}};
  area = CheckUnderlap(gap, {0, 2, 1}, 3.0, 0.5);
  EXPECT_NEAR(area[0], 200, 20);
}

TEST(Underlap, TracedPictureTakesTheWidthTimesEachSharedBorder) {
  Traced t;
  std::vector<Shape> shapes;
  std::vector<int> rank;
  for (int i = 0; i < t.regions.m_nRegions; i++) {
    shapes.push_back(FlattenRegion(t.regions.m_pRegions[i], 0.2));
    rank.push_back((i * 7) % t.regions.m_nRegions);
  }
  std::vector<double> area = CheckUnderlap(shapes, rank, 3.0, 1.0);
  for (size_t i = 0; i < shapes.size(); i++) {
    // Shared border: the parts of i's outline on a later neighbour's outline.
    double shared = 0;
    for (const Ring& r : shapes[i])
      for (size_t k = 0, l = r.size() - 1; k < r.size(); l = k++) {
        Point mid = Scale(Add(r[k], r[l]), 0.5);
        for (size_t j = 0; j < shapes.size(); j++)
          if (rank[j] > rank[i] && DistanceToOutline(shapes[j], mid) < 0.01) {
            shared += Dist(r[k], r[l]);
            break;
          }
      }
    EXPECT_NEAR(area[i], 3.0 * shared, 0.1 * 3.0 * shared + 1.0) << "region " << i;
  }
}
