// Smoothing of pieces, outline regions in order with their holes and narrow flag, the clean-up's give-up, and
// the assembly's quirks on hand-made pieces.
#include <gtest/gtest.h>

#include <memory>

#include "outline/DiscFit.h"
#include "outline/OutlineKit.h"
#include "outline/RegionAssembly.h"

namespace {

std::vector<COutlineRegion*> Regions(std::list<COutlineRegion*>& l) { return {l.begin(), l.end()}; }

TEST(Smoothing, ReductionAndSimplificationTable) {
  V run = {Pt(0, 4), Pt(1, 4), Pt(2, 4), Pt(3, 4), Pt(4, 4), Pt(5, 4), Pt(6, 4), Pt(7, 4), Pt(8, 4)};
  V sq = {Pt(0, 0), Pt(1, 0), Pt(1, 1), Pt(0, 1), Pt(0, 0)}, tri = {Pt(0, 0), Pt(1, 1), Pt(2, 0)};
  // Below 0: RemoveExtraPoint alone; the run is reduced first; others go to SmoothOutline.
  struct { V in; float t; V out; } cases[] = {
      {{Pt(0, 0), Pt(0, 0)}, -1, {Pt(0, 0), Pt(0, 0)}},
      {{Pt(0, 0), Pt(1, 0), Pt(1, 0), Pt(2, 0), Pt(2, 1)}, -1, {Pt(0, 0), Pt(2, 0), Pt(2, 1)}},  // (2,0) turns to point 0
      {{Pt(0, 0), Pt(0, 2), Pt(3, 2), Pt(1, 2), Pt(9, 9)}, -1, {Pt(0, 0), Pt(0, 2), Pt(3, 2), Pt(1, 2), Pt(9, 9)}},
      {{Pt(0, 0), Pt(5, 5)}, 1, {Pt(0, 0), Pt(5, 5)}},       {run, 0.5f, {Pt(0, 4), Pt(8, 4)}},
      {tri, 1.0f, tri},  /* exactly at the tolerance */     {tri, 1.001f, {Pt(0, 0), Pt(2, 0)}},
      {sq, 2.0f, {Pt(0, 0), Pt(0, 1)}},  /* zero chord */    {sq, 0.5f, sq},
      {{Pt(0, 0), Pt(1, 0), Pt(1002, 0)}, 2.0f, {Pt(0, 0), Pt(1, 0), Pt(1002, 0)}},  // segments within 1000 pixels
      {{Pt(0, 0), Pt(1, 0), Pt(1001, 0)}, 2.0f, {Pt(0, 0), Pt(1001, 0)}},
      {{Pt(0, 0), Pt(1001, 1), Pt(1002, 0)}, 2.0f, {Pt(0, 0), Pt(1001, 1), Pt(1002, 0)}},
      {{Pt(0, 0), Pt(999, 1), Pt(1002, 0)}, 2.0f, {Pt(0, 0), Pt(1002, 0)}}};
  OutlineEngine e;
  for (auto& c : cases) {
    V p = c.in;
    int n = static_cast<int>(p.size());
    if (c.t < 0 || c.in == run) e.RemoveExtraPoint(p.data(), n);
    if (c.t >= 0) e.SmoothOutline(p.data(), n, c.t);
    EXPECT_EQ(Chain(p.data(), n), c.out) << c.in.size() << " points, tolerance " << c.t;
  }
}

TEST(FindAnotherOutline, ChainsEndToStartAndConsumes) {
  std::vector<COutlineVector*> p = {Piece(1, 6, {Pt(2, 0), Pt(9, 9)}), Piece(1, -1, {Pt(0, 0), Pt(2, 0)}),  // other; consumed
                                    Piece(1, 5, {Pt(2, 0), Pt(2, 1), Pt(2, 2)}), Piece(2, 5, {Pt(2, 2), Pt(0, 2), Pt(0, 0)})};
  Owned<COutlineVector> own(p.begin(), p.end());
  sPoint a[16], b[16], cur = Pt(2, 0);
  int na = 0, nb = 0;
  EXPECT_EQ(OutlineEngine().FindAnotherOutline(p.data(), 4, cur, a, na, b, nb, 5), 0);
  EXPECT_TRUE(cur == Pt(0, 0) && Chain(a, na) == Chain(b, nb));
  EXPECT_EQ(p[0]->m_nNeighbor * 100 + p[2]->m_nNeighbor * 10 + p[3]->m_nNeighbor, 600 - 10 - 1);  // only the chain consumed
  EXPECT_EQ(Chain(a, na), (V{Pt(2, 0), Pt(2, 1), Pt(2, 2), Pt(0, 2)}));  // without each piece's last point
}

TEST(GetOutline4Cartoon2, RegionsLargestFirstHolesNarrowFlagsAndTheCleanUp) {
  OutlineEngine e;
  e.m_listOutlineRegions.push_back(new COutlineRegion);  // no picture: 0, the list kept
  ASSERT_EQ(e.GetOutline4Cartoon2(1.0, nullptr) + e.m_listOutlineRegions.size(), 1u);
  e.LoadText({".......", ".......", "..rrr..", "..rrr..", "..rrr..", "..rrr.."});
  ASSERT_EQ(e.GetOutline4Cartoon2(0.0, nullptr), 1);  // the old list replaced
  auto r = Regions(e.m_listOutlineRegions);
  ASSERT_EQ(r.size(), 2u);
  // White: 30 pixels, twice 42 - 12; red: twice 12. Red's piece along the bottom frame keeps (4,6), the point
  // before its end (its follower is taken to be point 0); the shared boundary is white's reduced piece
  // backwards, which keeps (5,5) for the same reason.
  EXPECT_EQ(V({Pt(r[0]->m_nArea, r[0]->m_nPixels), Pt(r[1]->m_nArea, r[1]->m_pComponent->m_nPoints)}),
            V({Pt(60, 30), Pt(24, 12)}));
  EXPECT_EQ(r[0]->m_rcBound, CRect(0, 0, 6, 5));
  EXPECT_EQ(Chain(r[1]->m_pPoints, r[1]->m_nPoints), (V{Pt(2, 6), Pt(4, 6), Pt(5, 6), Pt(5, 5), Pt(5, 2), Pt(2, 2), Pt(2, 6)}));
  EXPECT_TRUE(r[1]->m_crColor == TextColor('r') && r[1]->m_nColorIndex == -1);  // no colour list
  // Enclosed: a hole of 13 raw points, the square's 12 and the repeat.
  e.LoadText({".......", ".......", "..rrr..", "..rrr..", "..rrr..", "......."});
  e.GetOutline4Cartoon2(0.0, nullptr);
  r = Regions(e.m_listOutlineRegions);
  EXPECT_EQ(Chain(r[0]->m_pPoints, r[0]->m_nPoints), (V{Pt(0, 0), Pt(0, 6), Pt(7, 6), Pt(7, 0), Pt(0, 0)}));
  ASSERT_EQ(r[0]->m_arrHoles.GetSize(), 1);
  EXPECT_EQ(Chain(r[0]->m_arrHoles[0]->m_pPoints, 5), Chain(r[1]->m_pPoints, 5));
  COutlineRegion copy;  // deep, with every field
  copy = *r[0];
  EXPECT_EQ(V({Pt(copy.m_nArea, copy.m_nPixels), Pt(copy.m_pComponent->m_nPoints, copy.m_arrHoles[0]->m_nRawPoints)}),
            V({Pt(84, 33), Pt(33, 13)}));
  // Narrow: white and a 30 x 20 red hold the disc of radius 6; a 10 x 10
  // green has min(6, 9, 9) / 40 < 0.2; a 40 x 2 blue min(6, 39, 1) / 84.
  e.Load(60, 30, [](int x, int y) {
    return TextColor(x >= 5 && x < 45 && y >= 3 && y < 5 ? 'b' : x >= 30 && y >= 8 && y < 28 ? 'r'
                     : x >= 5 && x < 15 && y >= 10 && y < 20 ? 'g' : '.');
  });
  for (std::vector<int> want : {std::vector<int>{0, 0, 1, 1}, {0, 0, 0, 1}}) {
    e.GetOutline4Cartoon2(0.0, nullptr);
    std::vector<int> narrow;
    for (COutlineRegion* p : e.m_listOutlineRegions) narrow.push_back(p->m_bNarrow);
    EXPECT_EQ(narrow, want);
    e.SetImageRealRect(0, 0, 210, 105);  // 3.5 units per pixel: satin width 10, green 9 / 40
  }
  // The clean-up gives up: between host-masked green and yellow the middle pixel turns green, yellow, green ...
  // Pass 101 paints it green, ends the clean-up and deletes the mask. When it settles, the mask stays.
  e.LoadText({"gry"});
  int host[3] = {1, 0, 1};
  e.SetMASKData(host);
  unsigned char* mask = new unsigned char[3]{0, 0, 0};
  ASSERT_EQ(e.GetOutline4Cartoon2(0.0, &mask), 1);
  EXPECT_TRUE(mask == nullptr && e.WorkPixel(1, 0) == TextColor('g'));
  e.SetMASKData(nullptr);
  e.LoadText({"rrrrr", "rrbrr", "rrrrr"});
  std::unique_ptr<unsigned char[]> owned(mask = new unsigned char[15]());
  e.GetOutline4Cartoon2(0.0, &mask);
  EXPECT_TRUE(mask == owned.get() && e.WorkPixel(2, 1) == TextColor('r') && e.m_listOutlineRegions.size() == 1);
}

// Region 0: one pixel of a 40 x 40 picture (box 0 wide, no disc round it: narrow); region 1: no piece, dropped.
std::vector<COutlineRegion*> Assemble(std::vector<COutlineVector*> pieces, Owned<COutlineRegion>& out) {
  Owned<COutlineVector> own(pieces.begin(), pieces.end());
  std::list<CConComponent*> comps = {new CConComponent, new CConComponent};
  comps.front()->m_pPoints = new sPoint[1]{Pt(0, 0)}, comps.front()->m_nPoints = 1;
  V disc = outline::BuildDiscTable(6.0);
  std::vector<unsigned char> scratch(1600, 0);
  outline::AssemblyContext ctx{40, 40, 6.0, &disc, scratch.data()};
  outline::AssembleRegions(comps, pieces, ctx, out);
  for (COutlineVector* p : pieces) EXPECT_NE(p->m_nNeighbor, 0) << "piece left unconsumed";
  EXPECT_TRUE(comps.empty());
  return Regions(out);
}

TEST(AssembleRegions, ChainedHolesAndTheOuterOutlineOnHandMadePieces) {
  Owned<COutlineRegion> out;
  auto r = Assemble({Piece(0, -1, {Pt(0, 0), Pt(0, 30), Pt(30, 30), Pt(30, 0), Pt(0, 0)}),
                     Piece(2, 0, {Pt(2, 2), Pt(2, 10), Pt(10, 10), Pt(10, 2), Pt(2, 2)}),  // closed: a hole
                     Piece(3, 0, {Pt(4, 4), Pt(4, 6), Pt(6, 6)}), Piece(4, 0, {Pt(6, 6), Pt(6, 4), Pt(4, 4)}),  // in it
                     Piece(5, 0, {Pt(20, 20), Pt(20, 35)}),  // leaves the outer outline
                     Piece(6, 0, {Pt(20, 35), Pt(25, 35), Pt(25, 20), Pt(20, 20)}),
                     Piece(7, 0, {Pt(12, 12), Pt(12, 14)}),  // does not come back
                     Piece(8, 0, {Pt(15, 15), Pt(15, 18), Pt(18, 18)}), Piece(9, 0, {Pt(18, 18), Pt(18, 15), Pt(15, 15)})},
                    out);
  ASSERT_EQ(r.size() * 10 + r[0]->m_arrHoles.GetSize(), 12u);
  EXPECT_EQ(r[0]->m_arrHoles[0]->m_nPoints * 10 + r[0]->m_bNarrow, 51);  // narrow: 0 / 120 < 0.2
  const CHole* h = r[0]->m_arrHoles[1];
  EXPECT_EQ(Chain(h->m_pPoints, h->m_nPoints), (V{Pt(15, 15), Pt(15, 18), Pt(18, 18), Pt(18, 15)}));
  // After (0,0)-(5,0) the next piece in array order starts at (5,9): same x, so it is examined and passed over,
  // not appended; if it ends at the first start, the outline is complete there.
  for (bool decoyEndsAtStart : {false, true}) {
    Owned<COutlineRegion> o;
    r = Assemble({Piece(0, -1, {Pt(0, 0), Pt(5, 0)}), Piece(0, -1, {Pt(5, 9), decoyEndsAtStart ? Pt(0, 0) : Pt(7, 7)}),
                  Piece(0, -1, {Pt(5, 0), Pt(5, 5), Pt(0, 5)}), Piece(0, -1, {Pt(0, 5), Pt(0, 0)})}, o);
    V want = decoyEndsAtStart ? V{Pt(0, 0), Pt(5, 0)} : V{Pt(0, 0), Pt(5, 0), Pt(5, 5), Pt(0, 5), Pt(0, 0)};
    EXPECT_EQ(Chain(r[0]->m_pPoints, r[0]->m_nPoints), want);
  }
}

}  // namespace
