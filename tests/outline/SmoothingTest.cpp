// Point reduction, chord simplification and the sharing of twin pieces.
#include <gtest/gtest.h>

#include <vector>

#include "outline/OutlineTestEngine.h"

namespace {

using V = std::vector<sPoint>;

V Reduce(OutlineEngine& e, V pts) {
  int n = static_cast<int>(pts.size());
  e.RemoveExtraPoint(pts.data(), n);
  pts.resize(n);
  return pts;
}

V Simplify(OutlineEngine& e, V pts, float t) {
  int n = static_cast<int>(pts.size());
  e.SmoothOutline(pts.data(), n, t);
  pts.resize(n);
  return pts;
}

TEST(RemoveExtraPoint, ShortChainsPassUnchanged) {
  OutlineEngine e;
  EXPECT_EQ(Reduce(e, {Pt(0, 0), Pt(0, 0)}), (V{Pt(0, 0), Pt(0, 0)}));
  EXPECT_EQ(Simplify(e, {Pt(0, 0), Pt(5, 5)}, 1.0f), (V{Pt(0, 0), Pt(5, 5)}));
}

TEST(RemoveExtraPoint, DropsRepeatsAndStraightThroughPoints) {
  OutlineEngine e;
  // (1,0) lies on the way from (0,0) to (2,0) and goes; (2,0) is followed by
  // point 0, which turns back, so it stays; the last point is put back.
  EXPECT_EQ(Reduce(e, {Pt(0, 0), Pt(1, 0), Pt(1, 0), Pt(2, 0), Pt(2, 1)}),
            (V{Pt(0, 0), Pt(2, 0), Pt(2, 1)}));
  // A corner stays; a reversal on the line stays.
  EXPECT_EQ(Reduce(e, {Pt(0, 0), Pt(0, 2), Pt(3, 2), Pt(1, 2), Pt(9, 9)}),
            (V{Pt(0, 0), Pt(0, 2), Pt(3, 2), Pt(1, 2), Pt(9, 9)}));
}

TEST(SmoothOutline, StraightUnitRunReducesToItsEnds) {
  OutlineEngine e;
  V run;
  for (int x = 0; x <= 8; x++) run.push_back(Pt(x, 4));
  EXPECT_EQ(Simplify(e, Reduce(e, run), 0.5f), (V{Pt(0, 4), Pt(8, 4)}));
}

TEST(SmoothOutline, PointExactlyAtTheToleranceEndsTheSegment) {
  OutlineEngine e;
  // (1,1) lies at distance 1 from the chord (0,0)-(2,0).
  V tri = {Pt(0, 0), Pt(1, 1), Pt(2, 0)};
  EXPECT_EQ(Simplify(e, tri, 1.0f), tri);
  EXPECT_EQ(Simplify(e, tri, 1.001f), (V{Pt(0, 0), Pt(2, 0)}));
}

TEST(SmoothOutline, ZeroLengthChordStopsTheWalk) {
  OutlineEngine e;
  // The unit square closes on the anchor: the walk stops and outputs the
  // point before, dropping the closing point.
  V sq = {Pt(0, 0), Pt(1, 0), Pt(1, 1), Pt(0, 1), Pt(0, 0)};
  EXPECT_EQ(Simplify(e, sq, 2.0f), (V{Pt(0, 0), Pt(0, 1)}));
  // Small tolerance: every corner becomes an anchor and the square survives.
  EXPECT_EQ(Simplify(e, sq, 0.5f), sq);
}

TEST(SmoothOutline, SegmentsStayWithinAThousandPixels) {
  OutlineEngine e;
  // A step longer than 1000 pixels is never inside a segment.
  EXPECT_EQ(Simplify(e, {Pt(0, 0), Pt(1, 0), Pt(1002, 0)}, 2.0f),
            (V{Pt(0, 0), Pt(1, 0), Pt(1002, 0)}));
  EXPECT_EQ(Simplify(e, {Pt(0, 0), Pt(1, 0), Pt(1001, 0)}, 2.0f), (V{Pt(0, 0), Pt(1001, 0)}));
  // A point within the tolerance but more than 1000 from the anchor ends it.
  EXPECT_EQ(Simplify(e, {Pt(0, 0), Pt(1001, 1), Pt(1002, 0)}, 2.0f),
            (V{Pt(0, 0), Pt(1001, 1), Pt(1002, 0)}));
  EXPECT_EQ(Simplify(e, {Pt(0, 0), Pt(999, 1), Pt(1002, 0)}, 2.0f), (V{Pt(0, 0), Pt(1002, 0)}));
}

TEST(SmoothOutlineVector, TwinsShareVerticesAndDuplicatesGo) {
  OutlineEngine e;
  V stair = {Pt(0, 0), Pt(1, 0), Pt(1, 1), Pt(2, 1), Pt(2, 2), Pt(3, 2)};
  V other = {Pt(3, 2), Pt(3, 0), Pt(0, 0)};  // same ends, another path
  std::list<COutlineVector*> l = {Piece(0, 1, stair), Piece(1, 0, other), Piece(0, 1, stair),
                                  Piece(2, 2, other)};
  COutlineVector* first = l.front();
  COutlineVector* twin = *std::next(l.begin());
  e.SmoothOutlineVector(l, 0.8);
  ASSERT_EQ(l.size(), 3u);  // the duplicate was deleted
  EXPECT_EQ(l.front(), first);
  V a = Chain(first->m_pPoints, first->m_nPoints);
  V b = Chain(twin->m_pPoints, twin->m_nPoints);
  // Every corner of the staircase lies within 0.8 of the chord from (0,0)
  // to (3,2) (at most 2 / sqrt(13)), so it collapses to its ends; the twin
  // has exactly those vertices backwards, not its own path.
  EXPECT_EQ(a, (V{Pt(0, 0), Pt(3, 2)}));
  EXPECT_EQ(b, (V{Pt(3, 2), Pt(0, 0)}));
  V rawB = Chain(twin->m_pRawPoints, twin->m_nRawPoints);
  EXPECT_EQ(rawB, (V{Pt(3, 2), Pt(2, 2), Pt(2, 1), Pt(1, 1), Pt(1, 0), Pt(0, 0)}));
  // Twin starts and ends are its own, unchanged.
  EXPECT_EQ(twin->m_ptStart, Pt(3, 2));
  // A piece whose region equals its neighbour is nobody's twin.
  EXPECT_EQ(Chain(l.back()->m_pRawPoints, l.back()->m_nRawPoints), other);
  DeleteAll(l);
}

TEST(SmoothOutlineVector, KeptPiecesAreReducedThenSimplified) {
  OutlineEngine e;
  std::list<COutlineVector*> l = {Piece(0, 1, {Pt(0, 0), Pt(1, 0), Pt(2, 0), Pt(3, 0), Pt(3, 1)})};
  e.SmoothOutlineVector(l, 0.5);
  // Reduced: (0,0) (3,0) (3,1); (3,0) is at distance 3/sqrt(10) from the
  // chord (0,0)-(3,1), beyond 0.5, so it stays.
  EXPECT_EQ(Chain(l.front()->m_pPoints, l.front()->m_nPoints), (V{Pt(0, 0), Pt(3, 0), Pt(3, 1)}));
  EXPECT_EQ(l.front()->m_nRawPoints, 5);
  DeleteAll(l);
}

}  // namespace
