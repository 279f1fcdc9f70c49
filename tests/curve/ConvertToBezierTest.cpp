// ConvertToBezier on a host's polygons and polygon lines: the straight lines
// are replaced in place by Bezier lines that follow them within the
// tolerance, and the polygon line keeps its attributes.
#include <gtest/gtest.h>

#include <cmath>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "curve/CurveTestSupport.h"

using namespace curvetest;

namespace {

// Lines from one vertex to the next, the last vertex back to the first when
// bClose is set.
CPTLine* MakeLines(const std::vector<double>& xy, bool bClose, int& nLines) {
  int nPoints = static_cast<int>(xy.size() / 2);
  nLines = bClose ? nPoints : nPoints - 1;
  CPTLine* lines = new CPTLine[nLines];
  for (int i = 0; i < nLines; i++) {
    int j = (i + 1) % nPoints;
    lines[i].m_ptStart.x = static_cast<float>(xy[2 * i]);
    lines[i].m_ptStart.y = static_cast<float>(xy[2 * i + 1]);
    lines[i].m_ptEnd.x = static_cast<float>(xy[2 * j]);
    lines[i].m_ptEnd.y = static_cast<float>(xy[2 * j + 1]);
  }
  return lines;
}

std::vector<Seg> SegsOf(const CPTLine* lines, int n) {
  std::vector<Seg> segs;
  for (int i = 0; i < n; i++) {
    const CPTLine& l = lines[i];
    Seg s{};
    s.p[0] = {l.m_ptStart.x, l.m_ptStart.y};
    s.p[1] = {l.m_ptCtrl1.x, l.m_ptCtrl1.y};
    s.p[2] = {l.m_ptCtrl2.x, l.m_ptCtrl2.y};
    s.p[3] = {l.m_ptEnd.x, l.m_ptEnd.y};
    segs.push_back(s);
  }
  return segs;
}

std::vector<double> CirclePoints(int sides, double r, double cx, double cy) {
  std::vector<double> xy;
  for (int i = 0; i < sides; i++) {
    double a = 2.0 * M_PI * i / sides;
    xy.push_back(static_cast<float>(cx + r * std::cos(a)));
    xy.push_back(static_cast<float>(cy + r * std::sin(a)));
  }
  return xy;
}

std::vector<double> Closed(std::vector<double> xy) {
  xy.push_back(xy[0]);
  xy.push_back(xy[1]);
  return xy;
}

}  // namespace

TEST(ConvertToBezier, SquarePolygonBecomesFourStraightBezierLines) {
  CPictrace engine;
  CPTPolygon polygon;
  std::vector<double> square = {10, 10, 90, 10, 90, 90, 10, 90};
  polygon.m_pLines = MakeLines(square, true, polygon.m_nLines);
  ASSERT_EQ(engine.ConvertToBezier(&polygon), 1);
  ASSERT_EQ(polygon.m_nLines, 4);
  for (int i = 0; i < 4; i++) {
    const CPTLine& l = polygon.m_pLines[i];
    EXPECT_EQ(l.m_nType, 1);
    EXPECT_EQ(l.m_ptStart.x, square[2 * i]);
    EXPECT_EQ(l.m_ptStart.y, square[2 * i + 1]);
    EXPECT_EQ(l.m_ptEnd.x, square[(2 * i + 2) % 8]);
    EXPECT_EQ(l.m_ptEnd.y, square[(2 * i + 3) % 8]);
  }
  for (const Seg& s : SegsOf(polygon.m_pLines, 4)) EXPECT_LT(ControlOffLine(s), 1e-4);
}

TEST(ConvertToBezier, CirclePolygonBecomesFewSmoothLinesOnItsPath) {
  CPictrace engine;
  CPTPolygon polygon;
  std::vector<double> circle = CirclePoints(40, 60.0, 100.0, 100.0);
  polygon.m_pLines = MakeLines(circle, true, polygon.m_nLines);
  ASSERT_EQ(engine.ConvertToBezier(&polygon), 1);
  EXPECT_LE(polygon.m_nLines, 8);
  std::vector<Seg> segs = SegsOf(polygon.m_pLines, polygon.m_nLines);
  for (int i = 0; i < polygon.m_nLines; i++) {
    EXPECT_EQ(polygon.m_pLines[i].m_nType, 1);
    // Points are stored as floats: tangents agree up to float rounding.
    EXPECT_LT(JoinKink(segs, i), 1e-4) << i;
  }
  EXPECT_EQ(polygon.m_pLines[polygon.m_nLines - 1].m_ptEnd.x, polygon.m_pLines[0].m_ptStart.x);
  EXPECT_EQ(polygon.m_pLines[polygon.m_nLines - 1].m_ptEnd.y, polygon.m_pLines[0].m_ptStart.y);
  EXPECT_LE(MaxPathDistance(segs, Closed(circle)), 1.0 + 1e-4);
}

TEST(ConvertToBezier, OpenPolygonLineKeepsItsEndsAndAttributes) {
  CPictrace engine;
  CPTPolygonLine line;
  line.m_nAttr1 = 3;
  line.m_nAttr2 = -1;
  line.m_nAttr3 = 7;
  line.m_nAttr4 = 1;
  line.m_nAttr5 = 1;
  // Half a circle as an open chain of 20 lines.
  std::vector<double> arc;
  for (int i = 0; i <= 20; i++) {
    double a = M_PI * i / 20.0;
    arc.push_back(static_cast<float>(50.0 + 40.0 * std::cos(a)));
    arc.push_back(static_cast<float>(50.0 + 40.0 * std::sin(a)));
  }
  line.m_pLines = MakeLines(arc, false, line.m_nLines);
  ASSERT_EQ(engine.ConvertToBezier(&line), 1);
  EXPECT_GE(line.m_nLines, 1);
  EXPECT_LE(line.m_nLines, 4);
  EXPECT_EQ(line.m_nAttr1, 3);
  EXPECT_EQ(line.m_nAttr2, -1);
  EXPECT_EQ(line.m_nAttr3, 7);
  EXPECT_EQ(line.m_nAttr4, 1);
  EXPECT_EQ(line.m_nAttr5, 1);
  EXPECT_EQ(line.m_pLines[0].m_ptStart.x, arc[0]);
  EXPECT_EQ(line.m_pLines[0].m_ptStart.y, arc[1]);
  EXPECT_EQ(line.m_pLines[line.m_nLines - 1].m_ptEnd.x, arc[40]);
  EXPECT_EQ(line.m_pLines[line.m_nLines - 1].m_ptEnd.y, arc[41]);
  EXPECT_LE(MaxPathDistance(SegsOf(line.m_pLines, line.m_nLines), arc), 1.0 + 1e-4);
}

TEST(ConvertToBezier, PolygonLineThatMeetsItsStartIsFittedClosed) {
  CPictrace engine;
  CPTPolygonLine line;
  std::vector<double> loop = Closed(CirclePoints(24, 30.0, 40.0, 40.0));
  line.m_pLines = MakeLines(loop, false, line.m_nLines);
  ASSERT_EQ(engine.ConvertToBezier(&line), 1);
  std::vector<Seg> segs = SegsOf(line.m_pLines, line.m_nLines);
  // Smooth across the closing point too.
  for (size_t i = 0; i < segs.size(); i++) EXPECT_LT(JoinKink(segs, i), 1e-4) << i;
  EXPECT_LE(MaxPathDistance(segs, loop), 1.0 + 1e-4);
}

TEST(ConvertToBezier, TheToleranceSetterLoosensTheFit) {
  std::vector<double> circle = CirclePoints(60, 200.0, 300.0, 300.0);
  CPictrace tight, loose;
  loose.SetCurveTolerance(4.0);
  loose.SetCurveTolerance(-1.0);  // ignored
  EXPECT_EQ(loose.m_dCurveTolerance, 4.0);
  CPTPolygon a, b;
  a.m_pLines = MakeLines(circle, true, a.m_nLines);
  b.m_pLines = MakeLines(circle, true, b.m_nLines);
  tight.m_dCurveTolerance = 0.05;
  ASSERT_EQ(tight.ConvertToBezier(&a), 1);
  ASSERT_EQ(loose.ConvertToBezier(&b), 1);
  EXPECT_LT(b.m_nLines, a.m_nLines);
  EXPECT_LE(MaxPathDistance(SegsOf(a.m_pLines, a.m_nLines), Closed(circle)), 0.05 + 1e-3);
  EXPECT_LE(MaxPathDistance(SegsOf(b.m_pLines, b.m_nLines), Closed(circle)), 4.0 + 1e-3);
}

TEST(ConvertToBezier, EmptyOrPointLikeObjectsAreLeftAlone) {
  CPictrace engine;
  EXPECT_EQ(engine.ConvertToBezier(static_cast<CPTPolygon*>(nullptr)), 0);
  EXPECT_EQ(engine.ConvertToBezier(static_cast<CPTPolygonLine*>(nullptr)), 0);
  CPTPolygon empty;
  EXPECT_EQ(engine.ConvertToBezier(&empty), 0);
  EXPECT_EQ(empty.m_nLines, 0);
  EXPECT_EQ(empty.m_pLines, nullptr);
  // A count without an array is not trusted.
  CPTPolygonLine broken;
  broken.m_nLines = 3;
  EXPECT_EQ(engine.ConvertToBezier(&broken), 0);
  EXPECT_EQ(broken.m_nLines, 3);
  broken.m_nLines = 0;
  // Lines of zero length: nothing to fit, the array stays as it was.
  CPTPolygon dot;
  dot.m_pLines = MakeLines({5, 5, 5, 5}, false, dot.m_nLines);
  CPTLine* before = dot.m_pLines;
  EXPECT_EQ(engine.ConvertToBezier(&dot), 0);
  EXPECT_EQ(dot.m_pLines, before);
  EXPECT_EQ(dot.m_pLines[0].m_nType, 0);
}

TEST(ConvertToBezier, ToleranceFollowsTheOutputScale) {
  // A 100 x 50 picture mapped to 300 x 100 units: scales 3 and 2, so one
  // pixel of tolerance is two units, exactly as a picture-less engine with
  // a tolerance of 2.
  std::vector<unsigned char> dib = testimg::MakeDib24(100, 50, [](int, int) { return RGB(9, 9, 9); });
  CPictrace scaled, plain;
  ASSERT_EQ(scaled.SetDIBData(dib.data()), 1);
  scaled.SetImageRealRect(0, 0, 300, 100);
  plain.m_dCurveTolerance = 2.0;
  std::vector<double> circle = CirclePoints(24, 150.0, 200.0, 200.0);
  CPTPolygon a, b;
  a.m_pLines = MakeLines(circle, true, a.m_nLines);
  b.m_pLines = MakeLines(circle, true, b.m_nLines);
  ASSERT_EQ(scaled.ConvertToBezier(&a), 1);
  ASSERT_EQ(plain.ConvertToBezier(&b), 1);
  ASSERT_EQ(a.m_nLines, b.m_nLines);
  for (int i = 0; i < a.m_nLines; i++) {
    EXPECT_EQ(a.m_pLines[i].m_ptCtrl1.x, b.m_pLines[i].m_ptCtrl1.x);
    EXPECT_EQ(a.m_pLines[i].m_ptCtrl2.y, b.m_pLines[i].m_ptCtrl2.y);
  }
  // ... and differs from a tolerance of one unit.
  CPictrace unit;
  CPTPolygon c;
  c.m_pLines = MakeLines(circle, true, c.m_nLines);
  ASSERT_EQ(unit.ConvertToBezier(&c), 1);
  EXPECT_GT(c.m_nLines, a.m_nLines);
}
