// Outline regions with holes, the narrow flag, the clean-up give-up, region
// order and colour indices.
#include <gtest/gtest.h>

#include <vector>

#include "outline/DiscFit.h"
#include "outline/OutlineTestEngine.h"
#include "outline/PieceSearch.h"
#include "outline/RegionAssembly.h"

namespace {

using V = std::vector<sPoint>;
const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kWhite = RGB(255, 255, 255);

std::vector<COutlineRegion*> Regions(CPictrace& e) {
  return {e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()};
}

TEST(GetOutline4Cartoon2, EnclosedComponentIsAHoleAndARegion) {
  OutlineEngine e;
  e.Load(7, 7, [](int x, int y) { return (x >= 2 && x <= 4 && y >= 2 && y <= 4) ? kRed : kWhite; });
  ASSERT_EQ(e.GetOutline4Cartoon2(0.0, nullptr), 1);
  auto r = Regions(e);
  ASSERT_EQ(r.size(), 2u);
  // Largest first: the white frame (twice 49) and the red square (twice 9).
  EXPECT_EQ(r[0]->m_crColor, kWhite);
  EXPECT_EQ(r[0]->m_nArea, 98);
  EXPECT_EQ(r[0]->m_nPixels, 40);
  EXPECT_EQ(r[0]->m_rcBound, CRect(0, 0, 6, 6));
  EXPECT_EQ(Chain(r[0]->m_pPoints, r[0]->m_nPoints),
            (V{Pt(0, 0), Pt(0, 7), Pt(7, 7), Pt(7, 0), Pt(0, 0)}));
  ASSERT_EQ(r[0]->m_arrHoles.GetSize(), 1);
  const CHole* h = r[0]->m_arrHoles[0];
  V square = {Pt(2, 2), Pt(2, 5), Pt(5, 5), Pt(5, 2), Pt(2, 2)};
  EXPECT_EQ(Chain(h->m_pPoints, h->m_nPoints), square);
  EXPECT_EQ(h->m_nRawPoints, 13);
  EXPECT_EQ(r[1]->m_crColor, kRed);
  EXPECT_EQ(r[1]->m_nArea, 18);
  EXPECT_EQ(Chain(r[1]->m_pPoints, r[1]->m_nPoints), square);
  EXPECT_EQ(r[1]->m_arrHoles.GetSize(), 0);
  EXPECT_EQ(r[1]->m_nColorIndex, -1);  // no colour list yet
  EXPECT_EQ(r[1]->m_pComponent->m_nPoints, 9);
  EXPECT_EQ(r[1]->m_bSkip, 0);
  EXPECT_EQ(r[1]->m_pPolygon, nullptr);
}

TEST(GetOutline4Cartoon2, WithoutImageReturnsZeroAndKeepsTheList) {
  OutlineEngine e;
  e.m_listOutlineRegions.push_back(new COutlineRegion);
  EXPECT_EQ(e.GetOutline4Cartoon2(1.0, nullptr), 0);
  EXPECT_EQ(e.m_listOutlineRegions.size(), 1u);
}

TEST(GetOutline4Cartoon2, NarrowFlagForThinElongatedRegionsOnly) {
  OutlineEngine e;  // satin width 6
  e.Load(60, 30, [](int x, int y) {
    if (x >= 5 && x < 45 && y >= 3 && y < 5) return RGB(0, 0, 255);     // 40 x 2 bar
    if (x >= 30 && x < 50 && y >= 8 && y < 28) return kRed;             // 20 x 20 square
    if (x >= 5 && x < 15 && y >= 10 && y < 20) return RGB(0, 255, 0);   // 10 x 10 square
    return kWhite;
  });
  e.GetOutline4Cartoon2(0.0, nullptr);
  auto r = Regions(e);
  ASSERT_EQ(r.size(), 4u);
  // white, red 400 px, green 100 px, blue 80 px by area.
  EXPECT_EQ(r[0]->m_bNarrow, 0);
  EXPECT_EQ(r[1]->m_crColor, kRed);
  EXPECT_EQ(r[1]->m_bNarrow, 0);  // holds the disc
  // Green holds no disc of radius 6; m = min(6, 9, 9) = 6, perimeter 40.
  EXPECT_EQ(r[2]->m_bNarrow, 1);
  // Blue: m = min(6, 39, 1) = 1 over a perimeter of 84.
  EXPECT_EQ(r[3]->m_crColor, RGB(0, 0, 255));
  EXPECT_EQ(r[3]->m_bNarrow, 1);
  // 3.5 output units per pixel: satin width 10, small-region limit 24.
  e.SetImageRealRect(0, 0, 210, 105);
  ASSERT_DOUBLE_EQ(e.m_dSatinWidth, 10.0);
  e.GetOutline4Cartoon2(0.0, nullptr);
  r = Regions(e);
  ASSERT_EQ(r.size(), 4u);
  // Green: m = min(10, 9, 9) = 9 and 9 / 40 is not below 0.2.
  EXPECT_EQ(r[2]->m_bNarrow, 0);
  EXPECT_EQ(r[3]->m_bNarrow, 1);
}

TEST(GetOutline4Cartoon2, GivesUpAfterAHundredPassesAndDeletesTheMask) {
  // The middle pixel sees green on its left and yellow on its right, both
  // host-masked: it turns green, yellow, green ... and never settles. Pass
  // 101 paints it green and ends the clean-up.
  OutlineEngine e;
  e.LoadText({"gry"});
  int host[3] = {1, 0, 1};
  e.SetMASKData(host);
  unsigned char* mask = new unsigned char[3]{0, 0, 0};
  ASSERT_EQ(e.GetOutline4Cartoon2(0.0, &mask), 1);
  EXPECT_EQ(mask, nullptr);
  EXPECT_EQ(e.WorkPixel(1, 0), RGB(0, 255, 0));
  ASSERT_EQ(e.m_listOutlineRegions.size(), 1u);
  e.SetMASKData(nullptr);
}

TEST(GetOutline4Cartoon2, MaskSurvivesWhenTheCleanUpSettles) {
  OutlineEngine e;
  e.LoadText({"rrrrr", "rrbrr", "rrrrr"});
  unsigned char* mask = new unsigned char[15]();
  e.GetOutline4Cartoon2(0.0, &mask);
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(e.WorkPixel(2, 1), kRed);  // the blue pixel was merged away
  EXPECT_EQ(e.m_listOutlineRegions.size(), 1u);
  delete[] mask;
}

TEST(GetOutline4Cartoon2, RepeatedRunsGiveIdenticalRegions) {
  auto run = [](std::vector<V>& out) {
    OutlineEngine e;
    e.Load(64, 48, [](int x, int y) {
      int v = ((x / 5) * 7 + (y / 3) * 13 + (x * y) / 37) % 5;
      return RGB(v * 50, 255 - v * 40, (v * 91) % 256);
    });
    e.GetOutline4Cartoon2(1.0, nullptr);
    for (COutlineRegion* r : e.m_listOutlineRegions) {
      out.push_back(Chain(r->m_pPoints, r->m_nPoints));
      for (INT_PTR h = 0; h < r->m_arrHoles.GetSize(); h++)
        out.push_back(Chain(r->m_arrHoles[h]->m_pPoints, r->m_arrHoles[h]->m_nPoints));
    }
  };
  std::vector<V> a, b;
  run(a);
  run(b);
  EXPECT_GT(a.size(), 10u);
  EXPECT_EQ(a, b);
}

// ---- assembly on hand-made pieces

CConComponent* Component(int x0, int y0, int x1, int y1) {
  CConComponent* c = new CConComponent;
  c->m_nPoints = (x1 - x0 + 1) * (y1 - y0 + 1);
  c->m_pPoints = new sPoint[c->m_nPoints];
  int k = 0;
  for (int y = y0; y <= y1; y++)
    for (int x = x0; x <= x1; x++) c->m_pPoints[k++] = Pt(x, y);
  c->m_rcBound.SetRect(x0, y0, x1, y1);
  return c;
}

struct Assembly {
  std::vector<COutlineVector*> pieces;
  std::list<CConComponent*> comps;
  std::list<COutlineRegion*> regions;
  std::vector<sPoint> disc = outline::BuildDiscTable(6.0);
  std::vector<unsigned char> scratch = std::vector<unsigned char>(40 * 40, 0);
  void Run() {
    outline::AssemblyContext ctx;
    ctx.width = ctx.height = 40;
    ctx.satinWidth = 6.0;
    ctx.disc = &disc;
    ctx.scratch = scratch.data();
    outline::CPieceIndex index(pieces);
    outline::AssembleRegions(comps, pieces, index, ctx, regions);
  }
  ~Assembly() {
    for (COutlineVector* p : pieces) delete p;
    DeleteAll(comps);
    DeleteAll(regions);
  }
};

TEST(AssembleRegions, ChainedHolesAreCheckedAgainstHolesAndTheOuterOutline) {
  Assembly a;
  a.comps.push_back(Component(0, 0, 29, 29));
  a.comps.push_back(Component(0, 0, 0, 0));  // region 1 has no piece: dropped
  a.pieces = {
      Piece(0, -1, {Pt(0, 0), Pt(0, 30), Pt(30, 30), Pt(30, 0), Pt(0, 0)}),  // outer, closed
      Piece(2, 0, {Pt(2, 2), Pt(2, 10), Pt(10, 10), Pt(10, 2), Pt(2, 2)}),   // closed hole
      // A chained candidate inside the first hole: dropped.
      Piece(3, 0, {Pt(4, 4), Pt(4, 6), Pt(6, 6)}),
      Piece(4, 0, {Pt(6, 6), Pt(6, 4), Pt(4, 4)}),
      // A chained candidate reaching outside the outer outline: dropped.
      Piece(5, 0, {Pt(20, 20), Pt(20, 35)}),
      Piece(6, 0, {Pt(20, 35), Pt(25, 35), Pt(25, 20), Pt(20, 20)}),
      // A chain that does not come back to its start: dropped.
      Piece(7, 0, {Pt(12, 12), Pt(12, 14)}),
      // A chained hole elsewhere: kept, without repeating its first vertex.
      Piece(8, 0, {Pt(15, 15), Pt(15, 18), Pt(18, 18)}),
      Piece(9, 0, {Pt(18, 18), Pt(18, 15), Pt(15, 15)}),
  };
  a.Run();
  ASSERT_EQ(a.regions.size(), 1u);
  COutlineRegion* r = a.regions.front();
  ASSERT_EQ(r->m_arrHoles.GetSize(), 2);
  EXPECT_EQ(Chain(r->m_arrHoles[0]->m_pPoints, r->m_arrHoles[0]->m_nPoints).size(), 5u);
  EXPECT_EQ(Chain(r->m_arrHoles[1]->m_pPoints, r->m_arrHoles[1]->m_nPoints),
            (V{Pt(15, 15), Pt(15, 18), Pt(18, 18), Pt(18, 15)}));
  for (COutlineVector* p : a.pieces)
    if (p->m_nNeighbor == 0) ADD_FAILURE() << "piece left unconsumed";
}

TEST(AssembleRegions, PiecesOfTheOuterBoundaryAreNotHoles) {
  // Region 0 is the left half, region 1 the right half; the right half's
  // piece along the shared boundary has neighbour 0 and ends where a piece
  // of region 0 starts.
  Assembly a;
  a.comps.push_back(Component(0, 0, 1, 2));
  a.pieces = {
      Piece(0, 1, {Pt(2, 3), Pt(2, 0)}),
      Piece(0, -1, {Pt(2, 0), Pt(0, 0), Pt(0, 3), Pt(2, 3)}),
      Piece(1, 0, {Pt(2, 0), Pt(2, 3)}),
  };
  a.Run();
  ASSERT_EQ(a.regions.size(), 1u);
  COutlineRegion* r = a.regions.front();
  EXPECT_EQ(r->m_arrHoles.GetSize(), 0);
  // Outer outline: the first piece, then the one starting at its end; it
  // ends at the first start, with that vertex repeated.
  EXPECT_EQ(Chain(r->m_pPoints, r->m_nPoints),
            (V{Pt(2, 3), Pt(2, 0), Pt(0, 0), Pt(0, 3), Pt(2, 3)}));
  EXPECT_EQ(a.pieces[2]->m_nNeighbor, -1);
}

TEST(AssembleRegions, OneCoordinateMatchIsExaminedButNotAppended) {
  // After the first piece ends at (5,0), the next piece of the region in
  // array order starts at (5,9): same x, so it is examined, not appended,
  // and the search moves past it. The true continuation follows it.
  for (bool decoyEndsAtStart : {false, true}) {
    Assembly a;
    a.comps.push_back(Component(0, 0, 4, 4));
    a.pieces = {
        Piece(0, -1, {Pt(0, 0), Pt(5, 0)}),
        Piece(0, -1, {Pt(5, 9), decoyEndsAtStart ? Pt(0, 0) : Pt(7, 7)}),
        Piece(0, -1, {Pt(5, 0), Pt(5, 5), Pt(0, 5)}),
        Piece(0, -1, {Pt(0, 5), Pt(0, 0)}),
    };
    a.Run();
    ASSERT_EQ(a.regions.size(), 1u);
    V outer = Chain(a.regions.front()->m_pPoints, a.regions.front()->m_nPoints);
    if (decoyEndsAtStart)  // the examined piece ends at the first start: complete
      EXPECT_EQ(outer, (V{Pt(0, 0), Pt(5, 0)}));
    else
      EXPECT_EQ(outer, (V{Pt(0, 0), Pt(5, 0), Pt(5, 5), Pt(0, 5), Pt(0, 0)}));
  }
}

// ---- order and colour index

COutlineRegion* Rect(int x0, int y0, int w, int h, COLORREF c) {
  COutlineRegion* r = new COutlineRegion;
  r->m_nPoints = 4;
  r->m_pPoints = new sPoint[4]{Pt(x0, y0), Pt(x0, y0 + h), Pt(x0 + w, y0 + h), Pt(x0 + w, y0)};
  r->m_crColor = c;
  return r;
}

TEST(SortRegionSeq, ExchangeSortOrdersTies) {
  OutlineEngine e;
  std::list<COutlineRegion*> l;
  EXPECT_EQ(e.SortRegionSeq(l), 0);
  COutlineRegion* a = Rect(0, 0, 5, 1, 1);   // twice the area: 10
  COutlineRegion* b = Rect(9, 9, 1, 5, 2);   // 10
  COutlineRegion* c = Rect(3, 3, 7, 1, 3);   // 14
  COutlineRegion* d = new COutlineRegion;    // two vertices: area 0
  d->m_nPoints = 2;
  d->m_pPoints = new sPoint[2]{Pt(0, 0), Pt(9, 9)};
  l = {a, d, b, c};
  EXPECT_EQ(e.SortRegionSeq(l), 1);
  EXPECT_EQ(a->m_nArea, 10);
  EXPECT_EQ(c->m_nArea, 14);
  EXPECT_EQ(d->m_nArea, 0);
  // i=0: a < c swaps: [c d b a]; i=1: d < b: [c b d a]; d < a: [c b a d].
  // A stable sort would have put a before b.
  std::vector<COutlineRegion*> order(l.begin(), l.end());
  EXPECT_EQ(order, (std::vector<COutlineRegion*>{c, b, a, d}));
  DeleteAll(l);
}

TEST(SetOutlineColorIndex, NearestEntryFirstOfEqualsAndAlwaysTheEngineList) {
  OutlineEngine e;
  e.m_listOutlineRegions = {Rect(0, 0, 1, 1, RGB(10, 10, 10)), Rect(0, 0, 1, 1, RGB(200, 0, 0))};
  std::list<COutlineRegion*> other;
  e.SetOutlineColorIndex(other);  // empty colour list: nothing happens
  EXPECT_EQ(e.m_listOutlineRegions.front()->m_nColorIndex, -1);
  e.m_arrColorList.Add(RGB(0, 0, 0));    // distance 300 from (10,10,10)
  e.m_arrColorList.Add(RGB(20, 20, 20)); // also 300: the first wins
  e.m_arrColorList.Add(RGB(255, 0, 0));
  e.SetOutlineColorIndex(other);
  EXPECT_EQ(e.m_listOutlineRegions.front()->m_nColorIndex, 0);
  EXPECT_EQ(e.m_listOutlineRegions.front()->m_crColor, RGB(0, 0, 0));
  EXPECT_EQ(e.m_listOutlineRegions.back()->m_nColorIndex, 2);
  EXPECT_EQ(e.m_listOutlineRegions.back()->m_crColor, RGB(255, 0, 0));
}

TEST(CopyOutlines, StoredRegionsShareNothingWithTheCurrentOnes) {
  OutlineEngine e;
  e.Load(7, 7, [](int x, int y) { return (x >= 2 && x <= 4 && y >= 2 && y <= 4) ? kRed : kWhite; });
  e.GetOutline4Cartoon2(0.0, nullptr);
  e.CopyOutlines();
  ASSERT_EQ(e.m_listStoredRegions.size(), 2u);
  COutlineRegion* cur = e.m_listOutlineRegions.front();
  COutlineRegion* st = e.m_listStoredRegions.front();
  EXPECT_NE(cur->m_pPoints, st->m_pPoints);
  EXPECT_EQ(Chain(cur->m_pPoints, cur->m_nPoints), Chain(st->m_pPoints, st->m_nPoints));
  ASSERT_EQ(st->m_arrHoles.GetSize(), 1);
  EXPECT_NE(st->m_arrHoles[0], cur->m_arrHoles[0]);
  EXPECT_NE(st->m_pComponent, cur->m_pComponent);
  EXPECT_EQ(st->m_pComponent->m_nPoints, cur->m_pComponent->m_nPoints);
  e.ResetPictrace();  // frees both lists (the sanitizer build checks for leaks)
  EXPECT_TRUE(e.m_listStoredRegions.empty());
}

TEST(IsPointInOutline, LeftAndTopEdgesInsideRightAndBottomOutside) {
  OutlineEngine e;
  sPoint sq[5] = {Pt(2, 2), Pt(2, 5), Pt(5, 5), Pt(5, 2), Pt(2, 2)};
  auto in = [&](int x, int y) {
    sPoint p = Pt(x, y);
    return e.IsPointInOutline(p, sq, 5);
  };
  EXPECT_EQ(in(2, 2), 1);
  EXPECT_EQ(in(4, 4), 1);
  EXPECT_EQ(in(5, 3), 0);
  EXPECT_EQ(in(3, 5), 0);
  EXPECT_EQ(in(1, 3), 0);
  sPoint p = Pt(3, 3);
  EXPECT_EQ(e.IsPointInOutline(p, nullptr, 0), 0);
}

}  // namespace
