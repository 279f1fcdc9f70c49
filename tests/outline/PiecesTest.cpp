// Vertex classes and steps on the pixel-corner grid, traced pieces, their
// chaining, point reduction and chord simplification.
#include <gtest/gtest.h>

#include "outline/OutlineKit.h"

namespace {

TEST(ContourOrder, FrameAndInteriorClasses) {
  OutlineEngine e;
  e.Load(3, 2, [](int, int) { return RGB(0, 0, 0); });
  int L[6] = {0, 0, 1, 0, 2, 1};  // rows 0 0 1 / 0 2 1
  // corners, left frame, right frame, top frame at 1|0 and 0|0, bottom at 0|2, 2|1
  int xy[][3] = {{0, 0, 0}, {3, 2, 0}, {0, 1, 0}, {3, 1, 0}, {2, 0, 2}, {1, 0, 0}, {1, 2, 2}, {2, 2, 2}};
  for (auto& c : xy) EXPECT_EQ(e.contour_order(L, c[0], c[1]), c[2]) << c[0] << "," << c[1];
  e.Load(2, 2, [](int, int) { return RGB(0, 0, 0); });
  // Vertex (1,1) among UL UR LL LR: four labels, a side pair, a diagonal
  // pair, two side pairs, a checkerboard, three equal.
  int cases[][5] = {{0, 1, 2, 3, 4}, {0, 1, 2, 1, 3}, {5, 1, 5, 3, 3}, {0, 1, 2, 0, 4}, {0, 1, 1, 3, 4},
                    {0, 1, 0, 1, 0}, {0, 1, 1, 0, 0}, {0, 0, 0, 1, 0}, {7, 7, 7, 7, 0}};
  for (auto& c : cases) EXPECT_EQ(e.contour_order(c, 1, 1), c[4]) << c[0] << c[1] << c[2] << c[3];
}

TEST(FindNextStep, RoundAPixelAgainstTheClockAndAlongTheFrame) {
  OutlineEngine e;
  e.Load(3, 3, [](int, int) { return RGB(0, 0, 0); });
  int L[9] = {0, 0, 0, 0, 1, 0, 0, 0, 0}, x = 1, y = 1, d = 6;
  for (auto& s : {V{Pt(1, 2), Pt(6, 0)}, V{Pt(2, 2), Pt(0, 0)}, V{Pt(2, 1), Pt(2, 0)}, V{Pt(1, 1), Pt(4, 0)}}) {
    e.find_next_step(L, 1, x, y, d);
    EXPECT_EQ(Pt(x, y), s[0]);
    EXPECT_EQ(d, s[1].x);
  }
  e.Load(2, 2, [](int, int) { return RGB(0, 0, 0); });
  int F[4] = {0, 0, 1, 1};  // 0 over 1: label 0 leaves the left frame at (0,1)
  x = 0, y = 0, d = 6;
  V path;
  for (int k = 0; k < 7; k++) e.find_next_step(F, 0, x, y, d), path.push_back(Pt(x, y));
  EXPECT_EQ(path, (V{Pt(0, 1), Pt(1, 1), Pt(2, 1), Pt(2, 0), Pt(1, 0), Pt(0, 0), Pt(0, 1)}));
  x = 2, y = 1, d = 2;  // label 1 up the right frame turns left at the change
  e.find_next_step(F, 1, x, y, d);
  EXPECT_EQ(Pt(x, y), Pt(1, 1));
  EXPECT_EQ(d, 4);
}

TEST(GetOutlineList, PiecesRunBetweenJunctionsOnTheFrame) {
  OutlineEngine e;
  e.LoadText({"rrbb", "rrbb", "rrbb"});
  Owned<CConComponent> comps;
  Owned<COutlineVector> l;
  e.GetCompList(comps, nullptr);
  e.GetOutlineList(l, comps, 0.0);
  std::vector<COutlineVector*> v(l.begin(), l.end());
  ASSERT_EQ(v.size(), 4u);
  // Red up the shared boundary, then round the frame; blue down it and
  // round. Reduced at tolerance 0: straight-through points go, except the
  // one before the end, whose follower is taken to be point 0.
  struct { int region, neighbor; V raw, reduced; } want[] = {
      {0, 1, {Pt(2, 3), Pt(2, 2), Pt(2, 1), Pt(2, 0)}, {Pt(2, 3), Pt(2, 1), Pt(2, 0)}},
      {0, -1, {Pt(2, 0), Pt(1, 0), Pt(0, 0), Pt(0, 1), Pt(0, 2), Pt(0, 3), Pt(1, 3), Pt(2, 3)},
       {Pt(2, 0), Pt(0, 0), Pt(0, 3), Pt(1, 3), Pt(2, 3)}},
      {1, 0, {Pt(2, 0), Pt(2, 1), Pt(2, 2), Pt(2, 3)}, {Pt(2, 0), Pt(2, 1), Pt(2, 3)}},  // the twin's, backwards
      {1, -1, {Pt(2, 3), Pt(3, 3), Pt(4, 3), Pt(4, 2), Pt(4, 1), Pt(4, 0), Pt(3, 0), Pt(2, 0)},
       {Pt(2, 3), Pt(4, 3), Pt(4, 0), Pt(3, 0), Pt(2, 0)}}};
  for (int k = 0; k < 4; k++) {
    EXPECT_EQ(v[k]->m_nRegion, want[k].region) << k;
    EXPECT_EQ(v[k]->m_nNeighbor, want[k].neighbor) << k;
    EXPECT_EQ(Chain(v[k]->m_pRawPoints, v[k]->m_nRawPoints), want[k].raw) << k;
    EXPECT_EQ(Chain(v[k]->m_pPoints, v[k]->m_nPoints), want[k].reduced) << k;
    EXPECT_EQ(v[k]->m_ptStart, want[k].raw.front()) << k;
    EXPECT_EQ(v[k]->m_ptEnd, want[k].raw.back()) << k;
  }
}

TEST(GetOutlineList, ComponentLosingItsPixelsToTheRepairIsRemoved) {
  OutlineEngine e;
  e.LoadText({"rrr", "rbr", "grr"});  // blue (1,1) is recoloured by the repair
  Owned<CConComponent> comps;
  Owned<COutlineVector> l;
  e.GetCompList(comps, nullptr);
  CConComponent* green = comps.back();
  e.GetOutlineList(l, comps, 0.0);
  ASSERT_EQ(comps.size(), 2u);
  EXPECT_EQ(comps.back(), green);
  for (COutlineVector* p : l) EXPECT_NE(p->m_nRegion, 1);
}

TEST(FindAnotherOutline, ChainsEndToStartAndConsumes) {
  std::vector<COutlineVector*> p = {
      Piece(1, 6, {Pt(2, 0), Pt(9, 9)}, 100),   // other neighbour
      Piece(1, -1, {Pt(0, 0), Pt(2, 0)}, 100),  // consumed
      Piece(1, 5, {Pt(2, 0), Pt(2, 1), Pt(2, 2)}, 100), Piece(2, 5, {Pt(2, 2), Pt(0, 2), Pt(0, 0)}, 100)};
  Owned<COutlineVector> own(p.begin(), p.end());
  sPoint a[16], b[16], cur = Pt(2, 0);
  int na = 0, nb = 0;
  EXPECT_EQ(OutlineEngine().FindAnotherOutline(p.data(), 4, cur, a, na, b, nb, 5), 0);
  EXPECT_EQ(cur, Pt(0, 0));
  EXPECT_EQ(Chain(a, na), (V{Pt(2, 0), Pt(2, 1), Pt(2, 2), Pt(0, 2)}));
  EXPECT_EQ(Chain(b, nb), (V{Pt(2, 100), Pt(2, 101), Pt(2, 102), Pt(0, 102)}));
  EXPECT_EQ(p[0]->m_nNeighbor + p[2]->m_nNeighbor + p[3]->m_nNeighbor, 4);
}

TEST(Smoothing, ReductionAndSimplificationTable) {
  V run;
  for (int x = 0; x <= 8; x++) run.push_back(Pt(x, 4));
  V sq = {Pt(0, 0), Pt(1, 0), Pt(1, 1), Pt(0, 1), Pt(0, 0)}, tri = {Pt(0, 0), Pt(1, 1), Pt(2, 0)};
  // Tolerance below 0: RemoveExtraPoint alone. Otherwise reduced, then SmoothOutline.
  struct { V in; float t; V out; } cases[] = {
      {{Pt(0, 0), Pt(0, 0)}, -1, {Pt(0, 0), Pt(0, 0)}},
      {{Pt(0, 0), Pt(1, 0), Pt(1, 0), Pt(2, 0), Pt(2, 1)}, -1, {Pt(0, 0), Pt(2, 0), Pt(2, 1)}},
      {{Pt(0, 0), Pt(0, 2), Pt(3, 2), Pt(1, 2), Pt(9, 9)}, -1, {Pt(0, 0), Pt(0, 2), Pt(3, 2), Pt(1, 2), Pt(9, 9)}},
      {{Pt(0, 0), Pt(5, 5)}, 1, {Pt(0, 0), Pt(5, 5)}},
      {run, 0.5f, {Pt(0, 4), Pt(8, 4)}},
      {tri, 1.0f, tri},  // at exactly the tolerance the point stays
      {tri, 1.001f, {Pt(0, 0), Pt(2, 0)}},
      {sq, 2.0f, {Pt(0, 0), Pt(0, 1)}},  // a zero-length chord stops the walk
      {sq, 0.5f, sq},
      {{Pt(0, 0), Pt(1, 0), Pt(1002, 0)}, 2.0f, {Pt(0, 0), Pt(1, 0), Pt(1002, 0)}},  // over 1000 pixels
      {{Pt(0, 0), Pt(1, 0), Pt(1001, 0)}, 2.0f, {Pt(0, 0), Pt(1001, 0)}},
      {{Pt(0, 0), Pt(1001, 1), Pt(1002, 0)}, 2.0f, {Pt(0, 0), Pt(1001, 1), Pt(1002, 0)}},
      {{Pt(0, 0), Pt(999, 1), Pt(1002, 0)}, 2.0f, {Pt(0, 0), Pt(1002, 0)}},
  };
  OutlineEngine e;
  for (auto& c : cases) {
    V p = c.in;
    int n = static_cast<int>(p.size());
    if (c.t < 0 || c.in == run) e.RemoveExtraPoint(p.data(), n);
    if (c.t >= 0) e.SmoothOutline(p.data(), n, c.t);
    p.resize(n);
    EXPECT_EQ(p, c.out) << c.in.size() << " points, tolerance " << c.t;
  }
}

TEST(SmoothOutlineVector, TwinsShareVerticesDuplicatesGoKeptPiecesAreReduced) {
  V stair = {Pt(0, 0), Pt(1, 0), Pt(1, 1), Pt(2, 1), Pt(2, 2), Pt(3, 2)}, other = {Pt(3, 2), Pt(3, 0), Pt(0, 0)};
  std::vector<COutlineVector*> p = {Piece(0, 1, stair), Piece(1, 0, other), Piece(0, 1, stair), Piece(2, 2, other),
                                    Piece(4, 5, {Pt(0, 0), Pt(1, 0), Pt(2, 0), Pt(3, 0), Pt(3, 1)})};
  Owned<COutlineVector> l(p.begin(), p.end());
  OutlineEngine().SmoothOutlineVector(l, 0.8);
  ASSERT_EQ(l.size(), 4u);  // the duplicate went
  EXPECT_EQ(l.front(), p[0]);
  // The staircase's corners lie within 2 / sqrt(13) of its chord; the twin
  // takes exactly those vertices backwards, keeping its own raw points.
  EXPECT_EQ(Chain(p[0]->m_pPoints, p[0]->m_nPoints), (V{Pt(0, 0), Pt(3, 2)}));
  EXPECT_EQ(Chain(p[1]->m_pPoints, p[1]->m_nPoints), (V{Pt(3, 2), Pt(0, 0)}));
  EXPECT_EQ(Chain(p[1]->m_pRawPoints, p[1]->m_nRawPoints), (V{Pt(3, 2), Pt(2, 2), Pt(2, 1), Pt(1, 1), Pt(1, 0), Pt(0, 0)}));
  EXPECT_EQ(p[1]->m_ptStart, Pt(3, 2));
  EXPECT_EQ(Chain(p[3]->m_pRawPoints, p[3]->m_nRawPoints), other);  // region = neighbour: nobody's twin
  // Reduced to (0,0) (3,0) (3,1); (3,0) lies 3 / sqrt(10) from the chord.
  EXPECT_EQ(Chain(p[4]->m_pPoints, p[4]->m_nPoints), (V{Pt(0, 0), Pt(3, 0), Pt(3, 1)}));
  EXPECT_EQ(p[4]->m_nRawPoints, 5);
}

}  // namespace
