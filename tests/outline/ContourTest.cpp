// Vertex classes, single steps, traced pieces and chaining of pieces.
#include <gtest/gtest.h>

#include <vector>

#include "outline/OutlineTestEngine.h"

namespace {

std::vector<COutlineVector*> Vec(const std::list<COutlineVector*>& l) { return {l.begin(), l.end()}; }

// An engine holding a width x height picture, so that the vertex members
// know the grid; the labels are passed separately.
struct Grid {
  OutlineEngine e;
  std::vector<int> L;
  Grid(int w, int h, std::vector<int> labels) : L(std::move(labels)) {
    e.Load(w, h, [](int, int) { return RGB(0, 0, 0); });
  }
  int Order(int x, int y) { return e.contour_order(L.data(), x, y); }
};

TEST(ContourOrder, FrameVerticesAreTwoWhereTheLabelChanges) {
  // 3 x 2: row 0 = 0 0 1, row 1 = 0 2 1
  Grid g(3, 2, {0, 0, 1, 0, 2, 1});
  EXPECT_EQ(g.Order(0, 0), 0);  // corners
  EXPECT_EQ(g.Order(3, 2), 0);
  EXPECT_EQ(g.Order(0, 1), 0);  // left frame: (0,1) = (0,0)
  EXPECT_EQ(g.Order(3, 1), 0);  // right frame: 1 above 1
  EXPECT_EQ(g.Order(2, 0), 2);  // top frame: 1 beside 0
  EXPECT_EQ(g.Order(1, 0), 0);
  EXPECT_EQ(g.Order(1, 2), 2);  // bottom frame: 2 beside 0
  EXPECT_EQ(g.Order(2, 2), 2);
}

TEST(ContourOrder, InteriorClasses) {
  // Vertex (1,1) of a 2 x 2 grid: UL = L[0], UR = L[1], LL = L[2], LR = L[3].
  auto order = [](int ul, int ur, int ll, int lr) {
    Grid g(2, 2, {ul, ur, ll, lr});
    return g.Order(1, 1);
  };
  EXPECT_EQ(order(0, 1, 2, 3), 4);  // four labels
  EXPECT_EQ(order(0, 1, 2, 1), 3);  // one side pair (UR = LR)
  EXPECT_EQ(order(5, 1, 5, 3), 3);  // one side pair (UL = LL)
  EXPECT_EQ(order(0, 1, 2, 0), 4);  // one diagonal pair (UL = LR)
  EXPECT_EQ(order(0, 1, 1, 3), 4);  // one diagonal pair (UR = LL)
  EXPECT_EQ(order(0, 1, 0, 1), 0);  // two side pairs: a straight boundary
  EXPECT_EQ(order(0, 1, 1, 0), 0);  // checkerboard
  EXPECT_EQ(order(0, 0, 0, 1), 0);  // three equal
  EXPECT_EQ(order(7, 7, 7, 7), 0);
}

TEST(FindNextStep, GoesRoundASinglePixelAgainstTheClock) {
  // Label 1 at (1,1) of a 3 x 3 grid of 0.
  Grid g(3, 3, {0, 0, 0, 0, 1, 0, 0, 0, 0});
  int x = 1, y = 1, d = 6;
  const int expect[4][3] = {{1, 2, 6}, {2, 2, 0}, {2, 1, 2}, {1, 1, 4}};
  for (const auto& s : expect) {
    g.e.find_next_step(g.L.data(), 1, x, y, d);
    EXPECT_EQ(x, s[0]);
    EXPECT_EQ(y, s[1]);
    EXPECT_EQ(d, s[2]);
  }
}

TEST(FindNextStep, FollowsTheFrameRoundTheCorners) {
  // One label everywhere: down the left, along the bottom, up the right,
  // back along the top.
  Grid g(2, 2, {0, 0, 0, 0});
  int x = 0, y = 0, d = 6;
  std::vector<sPoint> path;
  for (int k = 0; k < 8; k++) {
    g.e.find_next_step(g.L.data(), 0, x, y, d);
    path.push_back(Pt(x, y));
  }
  std::vector<sPoint> expect = {Pt(0, 1), Pt(0, 2), Pt(1, 2), Pt(2, 2),
                                Pt(2, 1), Pt(2, 0), Pt(1, 0), Pt(0, 0)};
  EXPECT_EQ(path, expect);
}

TEST(FindNextStep, TurnsOffTheFrameAtALabelChange) {
  // Left column: 0 over 1. Tracing 0 down the left frame turns right at
  // (0,1); tracing 1 along the top frame is not involved.
  Grid g(2, 2, {0, 0, 1, 1});
  int x = 0, y = 1, d = 6;
  g.e.find_next_step(g.L.data(), 0, x, y, d);
  EXPECT_EQ(d, 0);
  EXPECT_EQ(x, 1);
  // On the right frame at the change, label 1 (below) turns left.
  x = 2, y = 1, d = 2;
  g.e.find_next_step(g.L.data(), 1, x, y, d);
  EXPECT_EQ(d, 4);
  EXPECT_EQ(x, 1);
}

TEST(GetOutlineList, SinglePixelTracesToFiveVerticesWithItsEncloserAsNeighbour) {
  OutlineEngine e;
  e.LoadText({"...", ".r.", "..."});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  Owned<COutlineVector> pieces;
  e.GetOutlineList(pieces, comps, 0.0);
  auto v = Vec(pieces);
  ASSERT_EQ(v.size(), 2u);
  // The white ring runs round the frame without a junction: one closed piece.
  EXPECT_EQ(v[0]->m_nRegion, 0);
  EXPECT_EQ(v[0]->m_nNeighbor, -1);
  EXPECT_EQ(v[0]->m_nRawPoints, 13);
  EXPECT_EQ(v[0]->m_ptStart, v[0]->m_ptEnd);
  // The red pixel.
  const COutlineVector* p = v[1];
  EXPECT_EQ(p->m_nRegion, 1);
  EXPECT_EQ(p->m_nNeighbor, 0);
  std::vector<sPoint> expect = {Pt(1, 1), Pt(1, 2), Pt(2, 2), Pt(2, 1), Pt(1, 1)};
  EXPECT_EQ(Chain(p->m_pRawPoints, p->m_nRawPoints), expect);
  EXPECT_EQ(Chain(p->m_pPoints, p->m_nPoints), expect);  // tolerance 0 keeps every corner
  EXPECT_EQ(p->m_ptStart, Pt(1, 1));
  EXPECT_EQ(p->m_ptEnd, Pt(1, 1));
  EXPECT_EQ(comps.size(), 2u);
}

TEST(GetOutlineList, ComponentTouchingTheFrameIsCutThere) {
  // Red left half, blue right half of a 4 x 3 picture.
  OutlineEngine e;
  e.LoadText({"rrbb", "rrbb", "rrbb"});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);
  Owned<COutlineVector> pieces;
  e.GetOutlineList(pieces, comps, 0.0);
  auto v = Vec(pieces);
  ASSERT_EQ(v.size(), 4u);
  // Red: the closed pass meets the junction (2,3) on the bottom frame; the
  // split pass goes up the shared boundary, then round the frame.
  EXPECT_EQ(v[0]->m_nRegion, 0);
  EXPECT_EQ(v[0]->m_nNeighbor, 1);
  EXPECT_EQ(Chain(v[0]->m_pRawPoints, v[0]->m_nRawPoints),
            (std::vector<sPoint>{Pt(2, 3), Pt(2, 2), Pt(2, 1), Pt(2, 0)}));
  EXPECT_EQ(v[1]->m_nNeighbor, -1);
  EXPECT_EQ(Chain(v[1]->m_pRawPoints, v[1]->m_nRawPoints),
            (std::vector<sPoint>{Pt(2, 0), Pt(1, 0), Pt(0, 0), Pt(0, 1), Pt(0, 2), Pt(0, 3),
                                 Pt(1, 3), Pt(2, 3)}));
  // Blue starts on the junction (2,0) and comes down the same boundary.
  EXPECT_EQ(v[2]->m_nRegion, 1);
  EXPECT_EQ(v[2]->m_nNeighbor, 0);
  EXPECT_EQ(v[2]->m_ptStart, Pt(2, 0));
  EXPECT_EQ(v[2]->m_ptEnd, Pt(2, 3));
  EXPECT_EQ(v[3]->m_nNeighbor, -1);
  EXPECT_EQ(v[3]->m_ptStart, Pt(2, 3));
  EXPECT_EQ(v[3]->m_ptEnd, Pt(2, 0));
  EXPECT_EQ(v[3]->m_nRawPoints, 8);
  // Reduced with tolerance 0: collinear points go, except the one before
  // the end, whose follower is taken to be point 0.
  EXPECT_EQ(Chain(v[0]->m_pPoints, v[0]->m_nPoints),
            (std::vector<sPoint>{Pt(2, 3), Pt(2, 1), Pt(2, 0)}));
  EXPECT_EQ(Chain(v[1]->m_pPoints, v[1]->m_nPoints),
            (std::vector<sPoint>{Pt(2, 0), Pt(0, 0), Pt(0, 3), Pt(1, 3), Pt(2, 3)}));
  // The blue twin has the red piece's vertices backwards.
  EXPECT_EQ(Chain(v[2]->m_pPoints, v[2]->m_nPoints),
            (std::vector<sPoint>{Pt(2, 0), Pt(2, 1), Pt(2, 3)}));
}

TEST(GetOutlineList, ComponentLosingItsPixelsToTheRepairIsRemoved) {
  // Blue (1,1) is the right neighbour of the red crossing: on the repaired
  // labels it has no pixel and no start vertex any more.
  OutlineEngine e;
  e.LoadText({"rrr", "rbr", "grr"});
  Owned<CConComponent> comps;
  e.GetCompList(comps, nullptr);  // repairs the image too, returns the old list
  ASSERT_EQ(comps.size(), 3u);
  CConComponent* green = comps.back();
  Owned<COutlineVector> pieces;
  e.GetOutlineList(pieces, comps, 0.0);
  ASSERT_EQ(comps.size(), 2u);
  EXPECT_EQ(comps.back(), green);  // order kept
  for (COutlineVector* p : pieces) EXPECT_NE(p->m_nRegion, 1);
}

TEST(FindAnotherOutline, ChainsEndToStartAndConsumes) {
  std::vector<COutlineVector*> p = {
      Piece(1, 6, {Pt(2, 0), Pt(9, 9)}, 100),   // other neighbour: ignored
      Piece(1, -1, {Pt(0, 0), Pt(2, 0)}, 100),  // already consumed
      Piece(1, 5, {Pt(2, 0), Pt(2, 1), Pt(2, 2)}, 100),
      Piece(2, 5, {Pt(2, 2), Pt(0, 2), Pt(0, 0)}, 100),
  };
  OutlineEngine e;
  sPoint a[16], b[16];
  int na = 0, nb = 0;
  sPoint cur = Pt(2, 0);
  EXPECT_EQ(e.FindAnotherOutline(p.data(), 4, cur, a, na, b, nb, 5), 0);
  EXPECT_EQ(cur, Pt(0, 0));
  EXPECT_EQ(Chain(a, na), (std::vector<sPoint>{Pt(2, 0), Pt(2, 1), Pt(2, 2), Pt(0, 2)}));
  EXPECT_EQ(nb, 4);
  EXPECT_EQ(b[0], Pt(2, 100));
  EXPECT_EQ(p[0]->m_nNeighbor, 6);
  EXPECT_EQ(p[2]->m_nNeighbor, -1);
  EXPECT_EQ(p[3]->m_nNeighbor, -1);
  for (COutlineVector* v : p) delete v;
}

}  // namespace
