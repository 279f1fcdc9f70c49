// Outline regions with their holes and narrow flag, the clean-up's give-up,
// the assembly's quirks on hand-made pieces, region order, colour indices
// and the copy of a region.
#include <gtest/gtest.h>

#include "PTResults.h"
#include "outline/DiscFit.h"
#include "outline/OutlineKit.h"
#include "outline/RegionAssembly.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kWhite = RGB(255, 255, 255);

std::vector<COutlineRegion*> Regions(CPictrace& e) { return {e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()}; }

TEST(GetOutline4Cartoon2, EnclosedComponentIsAHoleAndARegion) {
  OutlineEngine e;
  e.Load(7, 6, [](int x, int y) { return (x >= 2 && x <= 4 && y >= 2) ? kRed : kWhite; });
  e.m_listOutlineRegions.push_back(new COutlineRegion);  // replaced
  ASSERT_EQ(e.GetOutline4Cartoon2(0.0, nullptr), 1);
  auto r = Regions(e);
  ASSERT_EQ(r.size(), 2u);
  // Largest first: white, twice 42 - 12, then red, twice 12.
  EXPECT_EQ(r[0]->m_crColor, kWhite);
  EXPECT_EQ(r[0]->m_nArea, 60);
  EXPECT_EQ(r[0]->m_nPixels, 30);
  EXPECT_EQ(r[0]->m_rcBound, CRect(0, 0, 6, 5));
  EXPECT_EQ(r[0]->m_arrHoles.GetSize(), 0);
  EXPECT_EQ(r[1]->m_crColor, kRed);
  EXPECT_EQ(r[1]->m_nArea, 24);
  EXPECT_EQ(r[1]->m_pComponent->m_nPoints, 12);
  // Red's piece along the bottom frame keeps (4,6), the point before its end
  // (its follower is taken to be point 0); the shared boundary is white's
  // reduced piece backwards, which keeps (5,5) for the same reason.
  EXPECT_EQ(Chain(r[1]->m_pPoints, r[1]->m_nPoints),
            (V{Pt(2, 6), Pt(4, 6), Pt(5, 6), Pt(5, 5), Pt(5, 2), Pt(2, 2), Pt(2, 6)}));
  EXPECT_EQ(r[1]->m_nColorIndex, -1);  // no colour list
  // Enclosed in white: a hole of 13 raw points (the square's 12 and the repeat).
  e.Load(7, 7, [](int x, int y) { return (x >= 2 && x <= 4 && y >= 2 && y <= 4) ? kRed : kWhite; });
  e.GetOutline4Cartoon2(0.0, nullptr);
  r = Regions(e);
  EXPECT_EQ(Chain(r[0]->m_pPoints, r[0]->m_nPoints), (V{Pt(0, 0), Pt(0, 7), Pt(7, 7), Pt(7, 0), Pt(0, 0)}));
  ASSERT_EQ(r[0]->m_arrHoles.GetSize(), 1);
  const CHole* h = r[0]->m_arrHoles[0];
  EXPECT_EQ(Chain(h->m_pPoints, h->m_nPoints), Chain(r[1]->m_pPoints, r[1]->m_nPoints));
  EXPECT_EQ(h->m_nRawPoints, 13);
  EXPECT_EQ(r[0]->m_nArea - r[1]->m_nArea, 98 - 18);
  OutlineEngine none;  // no picture: 0, the list kept
  none.m_listOutlineRegions.push_back(new COutlineRegion);
  EXPECT_EQ(none.GetOutline4Cartoon2(1.0, nullptr), 0);
  EXPECT_EQ(none.m_listOutlineRegions.size(), 1u);
}

TEST(GetOutline4Cartoon2, NarrowFlagForThinElongatedRegionsOnly) {
  OutlineEngine e;  // satin width 6
  e.Load(60, 30, [](int x, int y) {
    if (x >= 5 && x < 45 && y >= 3 && y < 5) return RGB(0, 0, 255);  // 40 x 2
    if (x >= 30 && y >= 8 && y < 28) return kRed;                    // 30 x 20, to the edge
    if (x >= 5 && x < 15 && y >= 10 && y < 20) return RGB(0, 255, 0);  // 10 x 10
    return kWhite;
  });
  // White and red hold the disc. Green: min(6, 9, 9) / 40 < 0.2. Blue: min(6, 39, 1) / 84.
  std::vector<int> want = {0, 0, 1, 1};
  for (int pass = 0; pass < 2; pass++) {
    e.GetOutline4Cartoon2(0.0, nullptr);
    std::vector<int> narrow;
    for (COutlineRegion* r : e.m_listOutlineRegions) narrow.push_back(r->m_bNarrow);
    EXPECT_EQ(narrow, want);
    e.SetImageRealRect(0, 0, 210, 105);  // 3.5 units per pixel: satin width 10
    ASSERT_DOUBLE_EQ(e.m_dSatinWidth, 10.0);
    want[2] = 0;  // green: 9 / 40 is not below 0.2
  }
}

TEST(GetOutline4Cartoon2, CleanUpGivesUpAfterAHundredPassesAndDeletesTheMask) {
  // Between host-masked green and yellow the middle pixel turns green,
  // yellow, green ... Pass 101 paints it green and ends the clean-up.
  OutlineEngine e;
  e.LoadText({"gry"});
  int host[3] = {1, 0, 1};
  e.SetMASKData(host);
  unsigned char* mask = new unsigned char[3]{0, 0, 0};
  ASSERT_EQ(e.GetOutline4Cartoon2(0.0, &mask), 1);
  EXPECT_EQ(mask, nullptr);
  EXPECT_EQ(e.WorkPixel(1, 0), RGB(0, 255, 0));
  e.SetMASKData(nullptr);
  e.LoadText({"rrrrr", "rrbrr", "rrrrr"});  // settles: the mask stays
  mask = new unsigned char[15]();
  e.GetOutline4Cartoon2(0.0, &mask);
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(e.WorkPixel(2, 1), kRed);
  EXPECT_EQ(e.m_listOutlineRegions.size(), 1u);
  delete[] mask;
}

// Region 0 is a 40 x 40 component; the pieces are hand-made.
std::vector<COutlineRegion*> Assemble(std::vector<COutlineVector*> pieces, std::list<COutlineRegion*>& out) {
  Owned<COutlineVector> own(pieces.begin(), pieces.end());
  std::list<CConComponent*> comps = {new CConComponent, new CConComponent};  // region 1: no piece, dropped
  comps.front()->m_pPoints = new sPoint[1]{Pt(0, 0)};
  comps.front()->m_nPoints = 1;
  V disc = outline::BuildDiscTable(6.0);
  std::vector<unsigned char> scratch(1600, 0);
  outline::AssemblyContext ctx{40, 40, 6.0, &disc, scratch.data()};
  outline::AssembleRegions(comps, pieces, ctx, out);
  for (COutlineVector* p : pieces) EXPECT_NE(p->m_nNeighbor, 0) << "piece left unconsumed";
  EXPECT_TRUE(comps.empty());
  return {out.begin(), out.end()};
}

TEST(AssembleRegions, ChainedHolesAreCheckedAgainstHolesAndTheOuterOutline) {
  Owned<COutlineRegion> out;
  auto r = Assemble({Piece(0, -1, {Pt(0, 0), Pt(0, 30), Pt(30, 30), Pt(30, 0), Pt(0, 0)}),
                     Piece(2, 0, {Pt(2, 2), Pt(2, 10), Pt(10, 10), Pt(10, 2), Pt(2, 2)}),  // closed: a hole
                     Piece(3, 0, {Pt(4, 4), Pt(4, 6), Pt(6, 6)}), Piece(4, 0, {Pt(6, 6), Pt(6, 4), Pt(4, 4)}),  // in it
                     Piece(5, 0, {Pt(20, 20), Pt(20, 35)}),  // leaves the outer outline
                     Piece(6, 0, {Pt(20, 35), Pt(25, 35), Pt(25, 20), Pt(20, 20)}),
                     Piece(7, 0, {Pt(12, 12), Pt(12, 14)}),  // does not come back
                     Piece(8, 0, {Pt(15, 15), Pt(15, 18), Pt(18, 18)}), Piece(9, 0, {Pt(18, 18), Pt(18, 15), Pt(15, 15)})},
                    out);
  ASSERT_EQ(r.size(), 1u);
  ASSERT_EQ(r[0]->m_arrHoles.GetSize(), 2);
  EXPECT_EQ(r[0]->m_arrHoles[0]->m_nPoints, 5);
  const CHole* h = r[0]->m_arrHoles[1];
  EXPECT_EQ(Chain(h->m_pPoints, h->m_nPoints), (V{Pt(15, 15), Pt(15, 18), Pt(18, 18), Pt(18, 15)}));
  EXPECT_EQ(r[0]->m_bNarrow, 1);  // no disc round the one pixel; its box is 0 wide: 0 / 120
}

TEST(AssembleRegions, OuterOutlineQuirks) {
  Owned<COutlineRegion> out;
  // A piece with the region as neighbour that ends where one of the region's
  // pieces starts is part of the outer boundary, not a hole.
  auto r = Assemble({Piece(0, 1, {Pt(2, 3), Pt(2, 0)}), Piece(0, -1, {Pt(2, 0), Pt(0, 0), Pt(0, 3), Pt(2, 3)}),
                     Piece(1, 0, {Pt(2, 0), Pt(2, 3)})},
                    out);
  EXPECT_EQ(r[0]->m_arrHoles.GetSize(), 0);
  EXPECT_EQ(Chain(r[0]->m_pPoints, r[0]->m_nPoints), (V{Pt(2, 3), Pt(2, 0), Pt(0, 0), Pt(0, 3), Pt(2, 3)}));
  // After (0,0)-(5,0) the next piece in array order starts at (5,9): same x,
  // so it is examined and passed over but not appended; if it ends at the
  // first start, the outline is complete there.
  for (bool decoyEndsAtStart : {false, true}) {
    Owned<COutlineRegion> o;
    r = Assemble({Piece(0, -1, {Pt(0, 0), Pt(5, 0)}), Piece(0, -1, {Pt(5, 9), decoyEndsAtStart ? Pt(0, 0) : Pt(7, 7)}),
                  Piece(0, -1, {Pt(5, 0), Pt(5, 5), Pt(0, 5)}), Piece(0, -1, {Pt(0, 5), Pt(0, 0)})},
                 o);
    V want = decoyEndsAtStart ? V{Pt(0, 0), Pt(5, 0)} : V{Pt(0, 0), Pt(5, 0), Pt(5, 5), Pt(0, 5), Pt(0, 0)};
    EXPECT_EQ(Chain(r[0]->m_pPoints, r[0]->m_nPoints), want);
  }
}

COutlineRegion* Rect(int x0, int y0, int w, int h, COLORREF c) {
  COutlineRegion* r = new COutlineRegion;
  r->m_nPoints = 4;
  r->m_pPoints = new sPoint[4]{Pt(x0, y0), Pt(x0, y0 + h), Pt(x0 + w, y0 + h), Pt(x0 + w, y0)};
  r->m_crColor = c;
  return r;
}

TEST(SortRegionSeq, ExchangeSortOrdersTies) {
  OutlineEngine e;
  Owned<COutlineRegion> l;
  EXPECT_EQ(e.SortRegionSeq(l), 0);
  COutlineRegion *a = Rect(0, 0, 5, 1, 1), *b = Rect(9, 9, 1, 5, 2), *c = Rect(3, 3, 7, 1, 3), *d = Rect(0, 0, 9, 9, 4);
  d->m_nPoints = 2;  // two vertices: area 0
  l.assign({a, d, b, c});
  EXPECT_EQ(e.SortRegionSeq(l), 1);
  EXPECT_EQ(a->m_nArea + 100 * c->m_nArea + 10000 * d->m_nArea, 10 + 1400);
  // a < c: [c d b a]; d < b: [c b d a]; d < a: [c b a d]. A stable sort
  // would put a before b.
  EXPECT_EQ(std::vector<COutlineRegion*>(l.begin(), l.end()), (std::vector<COutlineRegion*>{c, b, a, d}));
}

TEST(SetOutlineColorIndex, NearestEntryFirstOfEqualsAlwaysTheEngineList) {
  OutlineEngine e;
  e.m_listOutlineRegions = {Rect(0, 0, 1, 1, RGB(10, 10, 10)), Rect(0, 0, 1, 1, RGB(200, 0, 0))};
  std::list<COutlineRegion*> other;
  e.SetOutlineColorIndex(other);  // empty colour list: nothing happens
  EXPECT_EQ(e.m_listOutlineRegions.front()->m_nColorIndex, -1);
  for (COLORREF c : {RGB(0, 0, 0), RGB(20, 20, 20), RGB(255, 0, 0)}) e.m_arrColorList.Add(c);  // 300, 300
  e.SetOutlineColorIndex(other);
  auto r = Regions(e);
  EXPECT_EQ(r[0]->m_nColorIndex + 10 * r[1]->m_nColorIndex, 20);
  EXPECT_EQ(r[0]->m_crColor, RGB(0, 0, 0));
  EXPECT_EQ(r[1]->m_crColor, RGB(255, 0, 0));
}

TEST(COutlineRegion, CopySharesNothingAndKeepsEveryField) {
  COutlineRegion src;
  COutlineRegion* base = Rect(1, 2, 3, 4, RGB(1, 2, 3));
  src = *base;
  delete base;
  src.m_bNarrow = 1, src.m_nColorIndex = 2, src.m_bSkip = 3, src.m_bMarked = 4, src.m_nArea = 5, src.m_nPixels = 6;
  src.m_rcBound = CRect(1, 2, 3, 4);
  src.m_pPolygon = new CPTPolygon;
  CHole* h = new CHole;
  h->m_pPolygon = new CPTPolygon;
  h->m_pPolygon->m_nLines = 1;
  h->m_pPolygon->m_pLines = new CPTLine[1];
  h->m_pPolygon->m_pLines[0].m_ptEnd.x = 7;
  src.m_arrHoles.Add(h);
  src.m_pComponent = new CConComponent;
  src.m_pComponent->m_nIndex = 3, src.m_pComponent->m_crColor = 9;
  COutlineRegion dst;
  dst = src;
  EXPECT_EQ(dst.m_bNarrow + 10 * dst.m_nColorIndex + 100 * dst.m_bSkip + 1000 * dst.m_bMarked, 4321);
  EXPECT_EQ(dst.m_nArea * 10 + dst.m_nPixels, 56);
  EXPECT_EQ(dst.m_rcBound, CRect(1, 2, 3, 4));
  EXPECT_EQ(dst.m_crColor, RGB(1, 2, 3));
  EXPECT_NE(dst.m_pPoints, src.m_pPoints);
  EXPECT_EQ(Chain(dst.m_pPoints, dst.m_nPoints), Chain(src.m_pPoints, 4));
  ASSERT_EQ(dst.m_arrHoles.GetSize(), 1);
  ASSERT_NE(dst.m_arrHoles[0]->m_pPolygon->m_pLines, h->m_pPolygon->m_pLines);
  EXPECT_EQ(dst.m_arrHoles[0]->m_pPolygon->m_pLines[0].m_ptEnd.x, 7.0f);
  ASSERT_NE(dst.m_pComponent, src.m_pComponent);
  EXPECT_EQ(dst.m_pComponent->m_nIndex + dst.m_pComponent->m_crColor, 12u);
  EXPECT_NE(dst.m_pPolygon, nullptr);
}

TEST(IsPointInOutline, LeftAndTopEdgesInsideRightAndBottomOutside) {
  OutlineEngine e;
  sPoint sq[5] = {Pt(2, 2), Pt(2, 5), Pt(5, 5), Pt(5, 2), Pt(2, 2)};
  int in = 0;
  for (sPoint p : {Pt(2, 2), Pt(4, 4), Pt(5, 3), Pt(3, 5), Pt(1, 3)}) in = 2 * in + e.IsPointInOutline(p, sq, 5);
  EXPECT_EQ(in, 0b11000);
  sPoint p = Pt(3, 3);
  EXPECT_EQ(e.IsPointInOutline(p, nullptr, 0), 0);
}

}  // namespace
