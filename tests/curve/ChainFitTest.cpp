// The chain fitter as hosts call it, and ConvertToBezier on a host's lines:
// nothing to fit, corners on hand-made shapes, round shapes, tolerances.
#include <limits>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "curve/CurveCheck.h"

using namespace curvetest;

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();

// n points of a circle (turn = 2 pi) or an arc around (c, c).
std::vector<double> Arc(int n, double r, double c, double turn, bool close) {
  std::vector<double> xy;
  for (int i = 0; i <= n - !close; i++) xy.insert(xy.end(), {c + r * std::cos(turn * (i % n) / n), c + r * std::sin(turn * (i % n) / n)});
  return xy;
}

}  // namespace

TEST(ChainFit, NothingToFitAndTwoPoints) {
  int one[2] = {3, 4}, same[8] = {7, 7, 7, 7, 7, 7, 7, 7}, n = -1;
  double dsame[4] = {1, kNan, 2, 2};  // one point that is a number
  for (int flag : {0, 1}) {
    EXPECT_TRUE(!pictrace::FitBezierChain(nullptr, 5, flag, 1.0, n) && n == 0);
    EXPECT_TRUE(!pictrace::FitBezierChain(one, -1, flag, 1.0, n) && !pictrace::FitBezierChain(one, 0, flag, 1.0, n));
    EXPECT_TRUE(!pictrace::FitBezierChain(same, 3, flag, 1.0, n) && !pictrace::FitBezierChainD(nullptr, 1, flag, 1.0, n));
    n = -1;
    EXPECT_TRUE(!pictrace::FitBezierChainD(dsame, 1, flag, 1.0, n) && n == 0);
  }
  std::vector<Seg> open = Fit(std::vector<int>{0, 0, 0, 0, 9, 3, 9, 3}, 0, 1.0);
  ASSERT_EQ(open.size(), 1u);  // straight, with its controls at the thirds
  for (int k = 0; k < 4; k++) EXPECT_TRUE(open[0].c.p[k] == Vec2({3.0 * k, 1.0 * k})) << k;
  EXPECT_TRUE(open[0].cornerStart && open[0].cornerEnd);
  std::vector<Seg> loop = Fit(std::vector<int>{0, 0, 9, 3, 0, 0}, 1, 1.0);
  EXPECT_TRUE(loop.size() == 2 && loop[1].c.p[1] == Vec2({6, 2}) && loop[1].c.p[3] == Vec2({0, 0}));
  ASSERT_EQ(Fit(std::vector<double>{0, 0, kNan, 1, 10, 0}, 1, 1.0).size(), 1u);  // non-numbers are left out
}

TEST(ChainFit, ShapesWithCornersGiveStraightSegmentsBetweenThem) {
  auto square = [](int x, int y) { return x >= 10 && x < 30 && y >= 10 && y < 30; };
  auto ell = [](int x, int y) { return x >= 5 && x < 35 && y >= 5 && y < 35 && (x < 20 || y < 20); };
  auto diamond = [](int x, int y) { return std::abs(2 * x - 39) + std::abs(2 * y - 39) < 30; };
  std::vector<int> level;
  for (int x = 0; x <= 1000; x++) level.insert(level.end(), {x, 0});
  // x, y of each segment's start, and the last one's end.
  const struct { std::vector<int> chain; int flag; std::vector<int> starts; } cases[] = {
      {TraceOutline(40, 40, square), 0, {10, 10, 30, 10, 30, 30, 10, 30, 10, 10}},
      {TraceOutline(40, 40, ell), 0, {5, 5, 35, 5, 35, 20, 20, 20, 20, 35, 5, 35, 5, 5}},
      {TraceOutline(40, 40, diamond), 0, {20, 6, 34, 20, 20, 34, 6, 20, 20, 6}},  // tips in the middle
      {{0, 0, 100, 0, 100, 100, 0, 100, 0, 0}, 7, {0, 0, 100, 0, 100, 100, 0, 100, 0, 0}},
      {{0, 0, 100, 0, 100, 100, 0, 100, 0, 0}, 1, {0, 0, 100, 0, 100, 100, 0, 100, 0, 0}},
      {level, 0, {0, 0, 1000, 0}},
      {{0, 0, 4, 0, 10, 0, 5, 0}, 1, {0, 0, 10, 0, 5, 0}},
      {{0, 0, 40, 0, 43, 30, 40, 60}, 1, {0, 0, 40, 0, 40, 60}},  // turns by 83 degrees, then by 11
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chain.size());
    std::vector<Seg> segs = Fit(c.chain, c.flag, 1.0);
    ASSERT_EQ(segs.size() * 2 + 2, c.starts.size());
    for (size_t i = 0; i < segs.size(); i++) {
      EXPECT_TRUE(segs[i].c.p[0] == Vec2({double(c.starts[2 * i]), double(c.starts[2 * i + 1])})) << i;
      EXPECT_TRUE(segs[i].c.p[3] == Vec2({double(c.starts[2 * i + 2]), double(c.starts[2 * i + 3])})) << i;
      EXPECT_TRUE(segs[i].cornerStart && segs[i].cornerEnd) << i;
      EXPECT_LT(ControlOffLine(segs[i]), c.chain[5] == 30 && i ? 9.0 : 1e-9) << i;
    }
    EXPECT_LE(MaxDistance(segs, c.chain, c.flag == 1 ? 8 : 1), 1.0 + 1e-9);
  }
  EXPECT_DOUBLE_EQ(Fit(level, 0, 1.0)[0].c.p[2].x, 2000.0 / 3.0);
}

TEST(ChainFit, RoundShapesAreFewSmoothSegmentsUsingTheTolerance) {
  // One cubic follows a half circle to about 2 % of its radius, a quarter
  // to 0.03 %; a bad tolerance means 1. The 12-gon is cut at vertex 6.
  const struct { std::vector<int> chain; std::vector<double> xy; double tol; size_t segments; } cases[] = {{Disc(6, 8), {}, 1.0, 2},   {Disc(20, 24), {}, 1.0, 2}, {Disc(50, 54), {}, 1.0, 4}, {Disc(50, 54), {}, kNan, 4},
               {Disc(50, 54), {}, -2, 4},  {Disc(50, 54), {}, 3.0, 2}, {Disc(120, 124), {}, 1.0, 4},
               {{}, Arc(12, 15, 0, 2 * M_PI, true), 1.0, 2}, {{}, Arc(12, 150, 0, 2 * M_PI, true), 10.0, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chain.size() + c.xy.size());
    std::vector<Seg> segs = c.xy.empty() ? Fit(c.chain, 0, c.tol) : Fit(c.xy, 1, c.tol);
    EXPECT_EQ(segs.size(), c.segments);
    double tol = c.tol > 0 ? c.tol : 1.0, worst = c.xy.empty() ? MaxDistance(segs, c.chain) : MaxDistance(segs, c.xy, 40);
    EXPECT_TRUE(worst <= tol + 1e-9 && worst > tol * 0.2) << worst;
    EXPECT_TRUE(segs.back().c.p[3] == segs[0].c.p[0]);
    EXPECT_TRUE(c.xy.empty() || segs[0].c.p[3] == Vec2({c.xy[12], c.xy[13]}));
    for (size_t i = 0; i < segs.size(); i++) EXPECT_TRUE(!segs[i].cornerEnd && Kink(segs, i) < 1e-9) << i;
  }
}

namespace {

// A host's lines through the (float) points; the points get the float values.
template <class T>
void SetLines(T& obj, std::vector<double>& xy, bool close) {
  int n = static_cast<int>(xy.size() / 2);
  obj.m_pLines = new CPTLine[obj.m_nLines = close ? n : n - 1];
  for (int i = 0; i < 2 * n; i++) xy[i] = float(xy[i]);
  for (int i = 0, j = 1; i < obj.m_nLines; i++, j = (i + 1) % n) {
    obj.m_pLines[i].m_ptStart.x = float(xy[2 * i]), obj.m_pLines[i].m_ptStart.y = float(xy[2 * i + 1]);
    obj.m_pLines[i].m_ptEnd.x = float(xy[2 * j]), obj.m_pLines[i].m_ptEnd.y = float(xy[2 * j + 1]);
  }
  if (close) xy.insert(xy.end(), {xy[0], xy[1]});
}

template <class T>
std::vector<Seg> Segs(const T& obj) {
  std::vector<Seg> s(obj.m_nLines);
  for (int i = 0; i < obj.m_nLines; i++) {
    const CPTLine& l = obj.m_pLines[i];
    EXPECT_EQ(l.m_nType, 1);
    s[i].c = {{{l.m_ptStart.x, l.m_ptStart.y}, {l.m_ptCtrl1.x, l.m_ptCtrl1.y}, {l.m_ptCtrl2.x, l.m_ptCtrl2.y}, {l.m_ptEnd.x, l.m_ptEnd.y}}};
  }
  return s;
}

}  // namespace

TEST(ConvertToBezier, HostLinesBecomeCurvesWithinTheScaledTolerance) {
  CPictrace engine, scaled;
  engine.SetCurveTolerance(4.0);
  engine.SetCurveTolerance(-1.0);  // ignored
  CPTPolygon square, circle, empty, dot, a, b;
  std::vector<double> sq = {10, 10, 90, 10, 90, 90, 10, 90}, ring = Arc(60, 200, 300, 2 * M_PI, false), one = {5, 5, 5, 5};
  SetLines(square, sq, true), SetLines(circle, ring, true);
  ASSERT_EQ(engine.ConvertToBezier(&square) + engine.ConvertToBezier(&circle), 2);
  ASSERT_TRUE(square.m_nLines == 4 && circle.m_nLines == 2);
  for (const Seg& s : Segs(square)) EXPECT_LT(ControlOffLine(s), 1e-4);
  EXPECT_LE(MaxDistance(Segs(circle), ring, 10), 4.0 * 1.0001);
  // Nothing to fit: the object stays as it was.
  SetLines(dot, one, false);
  CPTLine* before = dot.m_pLines;
  CPTPolygonLine broken;
  broken.m_nLines = 3;  // a count without an array
  EXPECT_EQ(engine.ConvertToBezier(&dot) + engine.ConvertToBezier(&broken) + engine.ConvertToBezier(&empty), 0);
  EXPECT_TRUE(dot.m_pLines == before && dot.m_pLines[0].m_nType == 0 && broken.m_nLines == 3);
  EXPECT_EQ(engine.ConvertToBezier(static_cast<CPTPolygon*>(nullptr)) + engine.ConvertToBezier(static_cast<CPTPolygonLine*>(nullptr)), 0);
  broken.m_nLines = 0;
  // 100 x 50 pixels on 300 x 100 units: one pixel is two units.
  std::vector<unsigned char> dib = testimg::MakeDib24(100, 50, [](int, int) { return RGB(9, 9, 9); });
  ASSERT_EQ(scaled.SetDIBData(dib.data()), 1);
  scaled.SetImageRealRect(0, 0, 300, 100);
  engine.m_dCurveTolerance = 2.0;
  std::vector<double> xa = Arc(24, 150, 200, 2 * M_PI, false), xb = xa;
  SetLines(a, xa, true), SetLines(b, xb, true);
  ASSERT_EQ(scaled.ConvertToBezier(&a) + engine.ConvertToBezier(&b), 2);
  ASSERT_EQ(a.m_nLines, b.m_nLines);  // the same fit
  for (int i = 0; i < a.m_nLines; i++) EXPECT_EQ(a.m_pLines[i].m_ptCtrl1.x, b.m_pLines[i].m_ptCtrl1.x);
  double worst = MaxDistance(Segs(a), xa, 10);
  EXPECT_TRUE(worst <= 2.0 * 1.0001 && worst > 1.0) << worst;
}

TEST(ConvertToBezier, PolygonLinesKeepTheirEndsAndAttributes) {
  for (bool meets : {false, true}) {  // a line that ends where it starts is fitted closed
    CPictrace engine;
    CPTPolygonLine line;  // attributes that are not the defaults
    line.m_nAttr1 = 3, line.m_nAttr2 = -1, line.m_nAttr5 = 1;
    std::vector<double> xy = Arc(meets ? 24 : 20, 40, 50, meets ? 2 * M_PI : M_PI, meets);
    SetLines(line, xy, false);
    ASSERT_EQ(engine.ConvertToBezier(&line), 1);
    EXPECT_TRUE(line.m_nLines <= 4 && line.m_nAttr1 == 3 && line.m_nAttr2 == -1 && line.m_nAttr5 == 1);
    std::vector<Seg> segs = Segs(line);
    EXPECT_TRUE(segs[0].c.p[0].y == xy[1] && segs.back().c.p[3].x == xy[xy.size() - 2]);
    for (size_t i = 0; i + !meets < segs.size(); i++) EXPECT_LT(Kink(segs, i), 1e-4) << i;
    EXPECT_LE(MaxDistance(segs, xy, 10), 1.0001);
  }
}
